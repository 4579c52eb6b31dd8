#include "vulkan/vulkan_names.h"

#include "base/text_format.h"

namespace vulkan {

const char* vkValueName(VkNameTable table, uint32_t value) {
    for (const VkNamedValue& named : vkNames(table))
        if (named.value == value) return named.name;
    return nullptr;
}

std::string vkResultText(VkResult result) {
    const char* name = vkValueName(VkNameTable::Result, uint32_t(result));
    return name ? std::string(name) : base::formatText("VkResult %d", int(result));
}

std::string vkFlagsText(VkNameTable table, uint32_t flags) {
    if (flags == 0) return "0";
    std::string out;
    vkForEachFlag(table, flags, [&](const char* name, uint32_t bits) {
        if (!out.empty()) out += " | ";
        out += name ? std::string(name) : base::formatText("0x%x", bits);
    });
    return out;
}

}  // namespace vulkan
