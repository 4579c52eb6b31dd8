#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "report/online/http_exchange.h"
#include "report/online/online_hosts.h"
#include "report/online/reply_parsers.h"
#include "report/online/submission_facts.h"

// Sending the machine's description to the GPU database, and what the Submit button makes of the answer.
namespace online {

inline constexpr size_t kSubmitReplyLimit = 262144;
inline constexpr size_t kScreenNameFieldLimit = 30;  // what the screen-name field holds
inline constexpr size_t kPasswordFieldLimit = 14;    // what the password field holds
inline constexpr const char* kSubmitUserAgent = "Lumenscope";
// The window stands still this long after a submission, so the press reads as one deliberate act.
inline constexpr std::chrono::milliseconds kSubmitStandStill{500};

// Filters the screen name and password (an empty one stays empty), builds the body and posts it to the
// database. The result as parseSubmitReply reads it; 0 without a text when the body cannot be built, -1
// when nothing usable came back. The password leaves only inside the body.
SubmitReply submitValidation(const OnlineHosts& hosts, const SubmissionFacts& facts, const char* screenName,
                             const char* password, const ExchangeLimits& limits = {});

enum class BoxKind { None, Info, Error };

// What the window does after a submission, in this order: show the box, then open the page. The Submit
// button is disabled after every outcome: one submission a run.
struct SubmitButtonOutcome {
    BoxKind box = BoxKind::None;
    std::string boxText;  // plain text, not a format
    std::string pageUrl;  // empty: no page
};

// The Submit button's answer to a reply.
SubmitButtonOutcome submitButtonOutcome(const OnlineHosts& hosts, const SubmitReply& reply);

// One press of the Submit button with the texts of its two fields, of which only the first 30 and 14
// characters are read. Blocks for the exchange and `standStill` after it.
SubmitButtonOutcome pressSubmitButton(const OnlineHosts& hosts, const SubmissionFacts& facts,
                                      std::string_view screenNameField, std::string_view passwordField,
                                      std::chrono::milliseconds standStill = kSubmitStandStill,
                                      const ExchangeLimits& limits = {});

}  // namespace online
