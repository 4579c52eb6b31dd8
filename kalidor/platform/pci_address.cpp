#include "kalidor/platform/pci_address.h"

#include <cstdio>

namespace Kalidornm {

namespace {

// `digits` hex digits at the front of `text`, consumed; nullopt without at least `minDigits`.
std::optional<uint32_t> takeHex(std::string_view& text, size_t minDigits, size_t maxDigits) {
    uint32_t value = 0;
    size_t used = 0;
    for (; used < text.size() && used < maxDigits; ++used) {
        const char c = text[used];
        uint32_t digit = 0;
        if (c >= '0' && c <= '9') digit = uint32_t(c - '0');
        else if (c >= 'a' && c <= 'f') digit = uint32_t(c - 'a' + 10);
        else if (c >= 'A' && c <= 'F') digit = uint32_t(c - 'A' + 10);
        else break;
        value = value * 16 + digit;
    }
    if (used < minDigits) return std::nullopt;
    text.remove_prefix(used);
    return value;
}

bool take(std::string_view& text, char c) {
    if (text.empty() || text.front() != c) return false;
    text.remove_prefix(1);
    return true;
}

}  // namespace

std::string PciAddress::text() const {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%04x:%02x:%02x.%x", domain, bus, device, function);
    return buffer;
}

std::optional<PciAddress> parsePciAddress(std::string_view text) {
    PciAddress address;
    const auto domain = takeHex(text, 4, 8);
    if (!domain || !take(text, ':')) return std::nullopt;
    const auto bus = takeHex(text, 2, 2);
    if (!bus || !take(text, ':')) return std::nullopt;
    const auto device = takeHex(text, 2, 2);
    if (!device || *device > 0x1F || !take(text, '.')) return std::nullopt;
    const auto function = takeHex(text, 1, 1);
    if (!function || *function > 7 || !text.empty()) return std::nullopt;
    address.domain = *domain, address.bus = *bus, address.device = *device, address.function = *function;
    return address;
}

}  // namespace Kalidornm
