#include "report/online/validation_submission.h"

#include <thread>

#include "report/online/submit_body.h"
#include "report/online/text_filters.h"

namespace online {

SubmitReply submitValidation(const OnlineHosts& hosts, const SubmissionFacts& facts, const char* screenName,
                             const char* password, const ExchangeLimits& limits) {
    SubmitReply reply;
    reply.result = 0;
    if (!screenName || !password) return reply;
    const std::string name = *screenName ? sanitizeForUrl(screenName) : std::string();
    const std::string secret = *password ? sanitizeKeepOnly(password) : std::string();
    std::string body;
    if (!buildSubmitBody(facts, name.c_str(), secret.c_str(), body)) return reply;

    HttpRequest request;
    request.url = pageUrl(hosts.database, "/gpudb/s50.php");
    request.userAgent = kSubmitUserAgent;
    request.formBody = &body;
    request.replyLimit = kSubmitReplyLimit;
    request.limits = limits;
    return parseSubmitReply(exchange(request));
}

SubmitButtonOutcome submitButtonOutcome(const OnlineHosts& hosts, const SubmitReply& reply) {
    SubmitButtonOutcome outcome;
    if (!reply.urlParam.empty()) {
        outcome.pageUrl = pageUrl(hosts.database, "/gpudb/gpu.php?which=" + reply.urlParam);
        return outcome;
    }
    if (reply.result >= 1) {
        outcome.pageUrl = pageUrl(hosts.database, "/gpudb/gpu.php?which=" + std::to_string(reply.result) + "&v=2");
        return outcome;
    }
    if (!reply.message.empty()) {
        outcome.box = BoxKind::Info;
        outcome.boxText = reply.message;
        return outcome;
    }
    switch (reply.result) {
        case -1: outcome.pageUrl = pageUrl(hosts.web, "/redirect.php?id=416"); break;
        case -2:
            outcome.box = BoxKind::Info;
            outcome.boxText = "Submissions are disabled.";
            outcome.pageUrl = pageUrl(hosts.web, "/redirect.php?id=415");
            break;
        case -3:
            outcome.box = BoxKind::Info;
            outcome.boxText = "The GPU Database requires a new version of Lumenscope.";
            outcome.pageUrl = pageUrl(hosts.web, "/redirect.php?id=401");
            break;
        case -4: outcome.pageUrl = pageUrl(hosts.web, "/redirect.php?id=417"); break;
        case -5: outcome.pageUrl = pageUrl(hosts.web, "/redirect.php?id=418"); break;
        default:
            outcome.box = BoxKind::Error;
            outcome.boxText = "Could not send validation data (" + std::to_string(reply.result) + "). Sorry...";
            break;
    }
    return outcome;
}

SubmitButtonOutcome pressSubmitButton(const OnlineHosts& hosts, const SubmissionFacts& facts,
                                      std::string_view screenNameField, std::string_view passwordField,
                                      std::chrono::milliseconds standStill, const ExchangeLimits& limits) {
    const std::string screenName(screenNameField.substr(0, kScreenNameFieldLimit));
    const std::string password(passwordField.substr(0, kPasswordFieldLimit));
    const SubmitReply reply = submitValidation(hosts, facts, screenName.c_str(), password.c_str(), limits);
    std::this_thread::sleep_for(standStill);
    return submitButtonOutcome(hosts, reply);
}

}  // namespace online
