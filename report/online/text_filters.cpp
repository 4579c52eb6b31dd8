#include "report/online/text_filters.h"

namespace online {

namespace {

bool isKept(char c) {
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) return true;
    switch (c) {
        case '(': case ')': case '@': case '/': case '.': case ':': case '|': case '_': case '-': return true;
        default: return false;
    }
}

// `blank` is what a blank behind the first kept character becomes; empty drops it.
std::string filtered(std::string_view source, std::string_view blank, std::string_view whenEmpty) {
    if (source.empty()) return std::string(whenEmpty);
    std::string out;
    bool keptOne = false;
    for (char c : source.substr(0, kFilterSourceLimit)) {
        std::string_view piece;
        if (isKept(c)) {
            piece = std::string_view(&c, 1);
            keptOne = true;
        } else if (c == ' ' && keptOne) {
            piece = blank;
        }
        if (piece.empty()) continue;
        if (out.size() + piece.size() > kFilterResultLimit) break;
        out += piece;
    }
    return out;
}

}  // namespace

std::string sanitizeForUrl(std::string_view source) { return filtered(source, "%20", "NULL"); }
std::string sanitizeForName(std::string_view source) { return filtered(source, "_", "NULL"); }
std::string sanitizeKeepOnly(std::string_view source) { return filtered(source, "", ""); }

}  // namespace online
