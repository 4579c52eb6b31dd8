#include "report/online/update_check.h"

#include <cstdio>
#include <thread>

#include "base/version.h"

namespace online {

namespace {

std::string programSignature() {
    return std::string("Lumenscope_v") + lumenscope::kVersionText;
}

}  // namespace

int checkForUpdate(const OnlineHosts& hosts, VersionNumber& latest, const ExchangeLimits& limits,
                   const std::atomic<bool>* cancel) {
    HttpRequest request;
    request.url = pageUrl(hosts.web, "/lumenscope/version.php");
    request.userAgent = programSignature();
    request.referer = programSignature();
    request.replyLimit = kVersionReplyLimit;
    request.limits = limits;
    request.cancel = cancel;
    const std::string reply = exchange(request);
    if (!parseVersionReply(reply, latest)) return kUpdateCheckFailed;
    return compareWithThisVersion(latest) ? kUpdateNewer : kUpdateCurrent;
}

NewerVersionDialog newerVersionDialog(const OnlineHosts& hosts, const VersionNumber& latest) {
    const std::string text = "A newer version is available: " + versionText(latest);
    NewerVersionDialog dialog;
    dialog.title = std::string(lumenscope::kDisplayName) + " - Check for update";
    dialog.text = text;
    dialog.downloadLabel = "Download Lumenscope";
    dialog.downloadUrl = pageUrl(hosts.web, "/redirect.php?id=401");
    dialog.closeLabel = "Close";
    return dialog;
}

UpdateButtonOutcome pressUpdateButton(const OnlineHosts& hosts, VersionNumber& latest,
                                      std::chrono::milliseconds standStill, const ExchangeLimits& limits) {
    UpdateButtonOutcome outcome;
    outcome.result = checkForUpdate(hosts, latest, limits);
    std::this_thread::sleep_for(standStill);
    if (outcome.result > 0) {
        outcome.showDialog = true;
        outcome.dialog = newerVersionDialog(hosts, latest);
    } else {
        outcome.infoText = kLatestVersionInfo;
    }
    return outcome;
}

}  // namespace online
