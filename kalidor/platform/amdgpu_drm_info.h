#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Kalidornm {

// What the amdgpu kernel driver itself says about a card's video memory.
struct AmdgpuMemoryInfo {
    uint32_t vramType = 0;  // AMDGPU_VRAM_TYPE_*; 0 unknown
};

// Asks the amdgpu driver through libdrm_amdgpu (`library`, loaded for the call) on a DRM node of the card
// (`nodePath`, a render node needs no DRM master). Opening the node wakes a sleeping card: the caller asks
// the sleep rule first. nullopt when the library, the node or the query is missing.
std::optional<AmdgpuMemoryInfo> queryAmdgpuMemoryInfo(const std::string& library, const std::string& nodePath);

// "GDDR6" for AMDGPU_VRAM_TYPE_GDDR6 and so on; "" for unknown types.
const char* amdgpuVramTypeName(uint32_t vramType);

}  // namespace Kalidornm
