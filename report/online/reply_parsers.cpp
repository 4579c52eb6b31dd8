#include "report/online/reply_parsers.h"

#include <climits>

#include "base/text_format.h"
#include "base/version.h"

namespace online {

namespace {

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r'; }

// Reads a decimal number as scanf's %d does: leading white space, an optional sign, at least one digit.
// Out-of-range values saturate instead of being undefined. Moves `at` behind the number.
bool readDecimal(std::string_view text, size_t& at, int32_t& value) {
    size_t i = at;
    while (i < text.size() && isSpace(text[i])) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    const size_t firstDigit = i;
    int64_t magnitude = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
        if (magnitude <= int64_t(INT32_MAX) + 1) magnitude = magnitude * 10 + (text[i] - '0');
    if (i == firstDigit) return false;
    int64_t signedValue = negative ? -magnitude : magnitude;
    if (signedValue > INT32_MAX) signedValue = INT32_MAX;
    if (signedValue < INT32_MIN) signedValue = INT32_MIN;
    value = int32_t(signedValue);
    at = i;
    return true;
}

// atoi of the answer: white space, a sign and the leading digits; 0 when there are none.
int32_t leadingNumber(std::string_view text) {
    size_t at = 0;
    int32_t value = 0;
    return readDecimal(text, at, value) ? value : 0;
}

std::string_view upToNul(std::string_view text) { return text.substr(0, text.find('\0')); }

}  // namespace

SubmitReply parseSubmitReply(std::string_view bytes) {
    SubmitReply reply;
    const size_t open = bytes.find('[');
    if (open == std::string_view::npos) return reply;
    const size_t close = bytes.find(']', open + 1);
    if (close == std::string_view::npos) return reply;
    const std::string_view answer = bytes.substr(open + 1, close - open - 1);
    if (answer.size() > kSubmitAnswerLimit) return reply;

    if (answer.size() > 4 && answer.starts_with("MSG=")) {
        reply.message = std::string(upToNul(answer.substr(4)).substr(0, kMessageLimit));
        return reply;
    }
    if (answer.find("&p") != std::string_view::npos) {
        reply.urlParam = std::string(upToNul(answer).substr(0, kUrlParamLimit));
        reply.result = 0;
        return reply;
    }
    reply.result = leadingNumber(answer);
    return reply;
}

bool parseVersionReply(std::string_view bytes, VersionNumber& latest) {
    const size_t open = bytes.find('[');
    if (open == std::string_view::npos) return false;
    size_t at = open + 1;
    for (size_t field = 0; field < latest.size(); ++field) {
        if (field > 0) {
            if (at >= bytes.size() || bytes[at] != '.') break;
            ++at;
        }
        if (!readDecimal(bytes, at, latest[field])) break;
    }
    return true;
}

std::string versionText(const VersionNumber& v) { return base::versionText(v[0], v[1], v[2], v[3]); }

uint32_t packVersion(const VersionNumber& v) {
    uint32_t packed = 0;
    for (int32_t field : v) packed = (packed << 8) | uint32_t(field);
    return packed;
}

int compareWithThisVersion(const VersionNumber& latest) {
    return packVersion(latest) > lumenscope::kPackedVersion ? 1 : 0;
}

}  // namespace online
