// The sysfs value parsers (integers, unsigned sizes, PCI hex ids, uevent lines) and the amdgpu driver's DPM
// clock tables, from any file content.
#include <cstdlib>
#include <string>
#include <string_view>

#include "kalidor/platform/sysfs_values.h"
#include "kalidor/vendors/amd_sysfs_values.h"

using namespace Kalidornm;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);

    // A value that parses is exactly the number the text holds: printing it again reads the same.
    if (const std::optional<int64_t> value = parseSysfsInteger(text)) {
        if (parseSysfsInteger(std::to_string(*value)) != value) std::abort();
        const std::optional<int64_t> bounded = parseSysfsInteger(text, 0, 100);
        if (bounded.has_value() != (*value >= 0 && *value <= 100)) std::abort();
    } else if (parseSysfsInteger(text, INT64_MIN, INT64_MAX)) {
        std::abort();
    }

    if (const std::optional<uint64_t> size = parseSysfsUnsigned(text, UINT64_MAX / 2))
        if (*size > UINT64_MAX / 2 || parseSysfsUnsigned(std::to_string(*size), UINT64_MAX / 2) != size) std::abort();
    if (const std::optional<uint32_t> id = parseSysfsHex(text, 0xFFFF))
        if (*id > 0xFFFF) std::abort();
    if (ueventValue(text, "DRIVER").find('\n') != std::string::npos) std::abort();

    if (const auto table = parseDpmTable(text)) {
        if (table->empty()) std::abort();
        for (const DpmLevel& level : *table)
            if (!(level.mhz >= 0.0f && level.mhz <= 100000.0f)) std::abort();
        if (const std::optional<uint32_t> current = currentDpmLevel(*table))
            if (*current >= table->size() || !(*table)[*current].current) std::abort();
    }
    return 0;
}
