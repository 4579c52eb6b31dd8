#include "exporter/basic_auth_header.h"

#include <array>
#include <strings.h>

namespace exporter {

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr size_t kLongestHeader = 4096;  // far beyond any user name and password we would accept

constexpr std::array<int, 256> decodingTable()
{
    std::array<int, 256> table{};
    for (int& value : table)
        value = -1;
    for (size_t i = 0; i < kAlphabet.size(); ++i)
        table[static_cast<unsigned char>(kAlphabet[i])] = static_cast<int>(i);
    return table;
}

constexpr std::array<int, 256> kDecoding = decodingTable();

}  // namespace

std::optional<std::string> decodeBase64(std::string_view text)
{
    if (text.size() % 4 != 0)
        return std::nullopt;
    size_t padding = 0;
    while (padding < 2 && padding < text.size() && text[text.size() - 1 - padding] == '=')
        ++padding;

    std::string out;
    out.reserve(text.size() / 4 * 3);
    unsigned bits = 0;
    int bitCount = 0;
    for (size_t i = 0; i < text.size() - padding; ++i) {
        const int value = kDecoding[static_cast<unsigned char>(text[i])];
        if (value < 0)
            return std::nullopt;
        bits = (bits << 6) | static_cast<unsigned>(value);
        bitCount += 6;
        if (bitCount >= 8) {
            bitCount -= 8;
            out.push_back(static_cast<char>((bits >> bitCount) & 0xFF));
        }
    }
    // The bits left over after the last whole byte must be zero, as an encoder writes them.
    if ((bits & ((1u << bitCount) - 1)) != 0)
        return std::nullopt;
    return out;
}

std::optional<BasicCredential> parseBasicAuthorization(std::string_view header)
{
    if (header.size() > kLongestHeader)
        return std::nullopt;
    constexpr std::string_view kScheme = "Basic";
    if (header.size() <= kScheme.size() || strncasecmp(header.data(), kScheme.data(), kScheme.size()) != 0 ||
        header[kScheme.size()] != ' ')
        return std::nullopt;
    std::string_view encoded = header.substr(kScheme.size());
    while (!encoded.empty() && encoded.front() == ' ')
        encoded.remove_prefix(1);
    while (!encoded.empty() && encoded.back() == ' ')
        encoded.remove_suffix(1);

    const std::optional<std::string> decoded = decodeBase64(encoded);
    if (!decoded)
        return std::nullopt;
    const size_t colon = decoded->find(':');
    if (colon == std::string::npos || colon == 0)
        return std::nullopt;
    return BasicCredential{decoded->substr(0, colon), decoded->substr(colon + 1)};
}

}  // namespace exporter
