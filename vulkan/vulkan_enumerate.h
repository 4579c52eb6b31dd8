#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <vulkan/vulkan_core.h>

#include "base/text_format.h"
#include "vulkan/vulkan_limits.h"
#include "vulkan/vulkan_names.h"

// Vulkan's two-call enumerations (ask the count, then fill that many) made safe against a driver that lies:
// the count is capped before anything is allocated, a count that changes between the calls (VK_INCOMPLETE) is
// asked again a few times, and what the driver writes back beyond the room it was given is never read.
namespace vulkan {

// `call(uint32_t* count, T* items)` is the driver's enumeration with its other arguments bound. Returns what
// could be read; each thing that went wrong adds one line, "<what>: <why>", to `problems`.
// A `firstRoom` above zero makes the first call with that much room and no count asked: the loader answers
// each instance-level enumeration by reading every manifest and opening every driver again, so one call where
// two were made halves that cost whenever the list fits.
template <typename T, typename Call>
std::vector<T> enumerateCapped(Call call, uint32_t cap, const char* what, std::vector<std::string>& problems,
                               uint32_t firstRoom = 0) {
    std::vector<T> items;
    if (firstRoom > 0) {
        const uint32_t room = std::min(firstRoom, cap);
        items.assign(room, T{});
        uint32_t written = room;
        const VkResult result = call(&written, items.data());
        if (result == VK_SUCCESS) {
            items.resize(std::min(written, room));
            return items;
        }
        if (result != VK_INCOMPLETE) {
            problems.push_back(std::string(what) + ": " + vkResultText(result));
            return {};
        }
    }
    for (int attempt = 0; attempt < kVulkanEnumerationTries; ++attempt) {
        uint32_t reported = 0;
        VkResult result = call(&reported, nullptr);
        if (result != VK_SUCCESS && result != VK_INCOMPLETE) {
            problems.push_back(std::string(what) + ": " + vkResultText(result));
            return {};
        }
        const uint32_t room = std::min(reported, cap);
        items.assign(room, T{});
        uint32_t written = room;
        result = room ? call(&written, items.data()) : VK_SUCCESS;
        if (result != VK_SUCCESS && result != VK_INCOMPLETE) {
            problems.push_back(std::string(what) + ": " + vkResultText(result));
            return {};
        }
        items.resize(std::min(written, room));
        if (reported > cap) {
            problems.push_back(base::formatText("%s: %u reported, the first %u read", what, reported, cap));
            return items;
        }
        if (result == VK_SUCCESS) return items;
    }
    problems.push_back(std::string(what) + ": VK_INCOMPLETE after every try, " + std::to_string(items.size()) +
                       " read");
    return items;
}

}  // namespace vulkan
