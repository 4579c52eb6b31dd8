#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

// The two reply forms of our servers, read from the whole received bytes, status line and headers included:
// whatever stands between the first "[" and the first "]" behind it is the answer.
namespace online {

// What the database answered to a submission.
struct SubmitReply {
    // Above 0: the submission's number. 0 with urlParam: a private submission. 0 without: no number.
    // Below 0: an answer of the table of answers, -1 also for every failure on the way.
    int32_t result = -1;
    std::string urlParam;  // the whole answer when it holds "&p", at most 127 characters
    std::string message;   // what followed "MSG=", at most 251 characters
};

inline constexpr size_t kSubmitAnswerLimit = 254;  // a longer answer is read as a failure
inline constexpr size_t kUrlParamLimit = 127;
inline constexpr size_t kMessageLimit = 251;

SubmitReply parseSubmitReply(std::string_view bytes);

// Major, minor, patch, build.
using VersionNumber = std::array<int32_t, 4>;

// Reads "[%d.%d.%d.%d]" at the first "[" into `latest`, as far as the numbers can be read; numbers that
// cannot be read keep their values. False when there is no "[".
bool parseVersionReply(std::string_view bytes, VersionNumber& latest);

// One byte a field, major highest; a field above 255 spills into the next one, as the servers expect.
uint32_t packVersion(const VersionNumber& version);
// "a.b.c.d".
std::string versionText(const VersionNumber& version);

// 1 when `latest` packs above this program's version, else 0 (an older version too).
int compareWithThisVersion(const VersionNumber& latest);

}  // namespace online
