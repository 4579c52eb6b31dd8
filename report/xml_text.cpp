#include "report/xml_text.h"

#include <cstdint>

namespace report {

namespace {

constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";  // U+FFFD

struct DecodedCharacter {
    uint32_t codePoint = 0;
    size_t length = 0;  // bytes taken from the text; at least 1
    bool valid = false;
};

bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// One character at the start of `text`, after the table of well-formed byte sequences of the Unicode
// standard. An ill-formed sequence takes its maximal subpart: the lead byte and the continuation bytes that
// could still have begun a valid character, so the next character starts at the first byte that could not.
DecodedCharacter decodeOne(std::string_view text) {
    const unsigned char lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80) return {lead, 1, true};

    size_t continuationCount = 0;
    unsigned char secondLow = 0x80, secondHigh = 0xBF;
    uint32_t codePoint = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        continuationCount = 1;
        codePoint = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        continuationCount = 2;
        codePoint = lead & 0x0F;
        if (lead == 0xE0) secondLow = 0xA0;   // overlong below U+0800
        if (lead == 0xED) secondHigh = 0x9F;  // surrogates
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        continuationCount = 3;
        codePoint = lead & 0x07;
        if (lead == 0xF0) secondLow = 0x90;   // overlong below U+10000
        if (lead == 0xF4) secondHigh = 0x8F;  // above U+10FFFF
    } else {
        return {0, 1, false};  // a continuation byte, C0, C1 or F5 to FF as lead
    }

    size_t length = 1;
    for (size_t i = 0; i < continuationCount; ++i, ++length) {
        if (length >= text.size()) return {0, length, false};
        const unsigned char byte = static_cast<unsigned char>(text[length]);
        const bool inRange = i == 0 ? byte >= secondLow && byte <= secondHigh : isContinuation(byte);
        if (!inRange) return {0, length, false};
        codePoint = (codePoint << 6) | (byte & 0x3F);
    }
    return {codePoint, length, true};
}

// Walks the text character by character; `emit` gets each valid character with its bytes, and U+FFFD with
// its bytes for each ill-formed subsequence.
template <typename Emit>
void forEachCharacter(std::string_view text, Emit emit) {
    while (!text.empty()) {
        const DecodedCharacter c = decodeOne(text);
        if (c.valid)
            emit(c.codePoint, text.substr(0, c.length));
        else
            emit(0xFFFDu, kReplacementCharacter);
        text.remove_prefix(c.length);
    }
}

}  // namespace

std::string validUtf8(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    forEachCharacter(text, [&out](uint32_t, std::string_view bytes) { out += bytes; });
    return out;
}

std::string xmlEscaped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    forEachCharacter(text, [&out](uint32_t c, std::string_view bytes) {
        switch (c) {
            case '&': out += "&amp;"; return;
            case '<': out += "&lt;"; return;
            case '>': out += "&gt;"; return;
            case '"': out += "&quot;"; return;
            case '\'': out += "&apos;"; return;
            case '\t': out += "&#9;"; return;
            case '\n': out += "&#10;"; return;
            case '\r': out += "&#13;"; return;
            default: break;
        }
        if (c < 0x20 || c == 0xFFFE || c == 0xFFFF)
            out += kReplacementCharacter;
        else
            out += bytes;
    });
    return out;
}

}  // namespace report
