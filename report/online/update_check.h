#pragma once

#include <chrono>
#include <string>

#include "report/online/http_exchange.h"
#include "report/online/online_hosts.h"
#include "report/online/reply_parsers.h"

// Asking the web server which version is current, and what the "Check for update" button and the newer
// version dialog show.
namespace online {

inline constexpr size_t kVersionReplyLimit = 4096;
inline constexpr const char* kUpdateButtonText = "Check for update";
inline constexpr const char* kUpdateButtonBusyText = "Checking...";
inline constexpr const char* kLatestVersionInfo = "You  have the latest version of Lumenscope.";
// The window stands still at least this long during a check from the button.
inline constexpr std::chrono::milliseconds kUpdateStandStill{1000};

enum UpdateCheckResult : int { kUpdateCheckFailed = -1, kUpdateCurrent = 0, kUpdateNewer = 1 };

// One exchange with the web server. `latest` receives the numbers of the reply, as far as they can be
// read. kUpdateNewer when they pack above this program's version, kUpdateCurrent when not (a malformed or
// older one too), kUpdateCheckFailed when nothing came or the reply holds no "[".
int checkForUpdate(const OnlineHosts& hosts, VersionNumber& latest, const ExchangeLimits& limits = {},
                   const std::atomic<bool>* cancel = nullptr);

// The "Check for update" dialog for a newer version.
struct NewerVersionDialog {
    std::string title;          // "Lumenscope - Check for update"
    std::string text;           // "A newer version is available: 1.27.0.0"
    std::string downloadLabel;  // the button that opens downloadUrl
    std::string downloadUrl;
    std::string closeLabel;
};
NewerVersionDialog newerVersionDialog(const OnlineHosts& hosts, const VersionNumber& latest);

// What a press of the "Check for update" button shows once the check is done: the dialog for a newer
// version, else the info box (a failed check too). The button reads kUpdateButtonBusyText meanwhile.
struct UpdateButtonOutcome {
    int result = kUpdateCheckFailed;
    bool showDialog = false;
    NewerVersionDialog dialog;
    std::string infoText;
};

// One press: the check, `standStill` for the window, and the outcome. `latest` as for checkForUpdate.
UpdateButtonOutcome pressUpdateButton(const OnlineHosts& hosts, VersionNumber& latest,
                                      std::chrono::milliseconds standStill = kUpdateStandStill,
                                      const ExchangeLimits& limits = {});

}  // namespace online
