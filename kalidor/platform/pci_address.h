#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Kalidornm {

// Where a device sits: "dddd:bb:dd.f" in hex. The domain tells host bridges apart, so 0000:03:00.0 and
// 0001:03:00.0 are two devices.
struct PciAddress {
    uint32_t domain = 0;    // four hex digits, more behind some bridges
    uint32_t bus = 0;       // 0 to 0xFF
    uint32_t device = 0;    // 0 to 0x1F
    uint32_t function = 0;  // 0 to 7

    auto operator<=>(const PciAddress&) const = default;
    // The kernel's spelling: "0000:01:00.0".
    std::string text() const;
};

// A sysfs device name ("0000:01:00.0"); nullopt for anything else, fields out of range included.
std::optional<PciAddress> parsePciAddress(std::string_view text);

}  // namespace Kalidornm
