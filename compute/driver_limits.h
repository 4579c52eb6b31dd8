#pragma once

#include <cstddef>
#include <cstdint>

// Counts and sizes that compute drivers report are capped here before anything is allocated from them. A
// driver answering 0xFFFFFFFF platforms or a 1 TB extension string is broken, and the run must survive it.
// Each cap stands far above any machine built so far.
namespace compute {

constexpr uint32_t kMaxClPlatforms = 64;
constexpr uint32_t kMaxClDevicesPerPlatform = 256;
constexpr size_t kMaxClExtensionBytes = size_t(1) << 20;  // real strings stay under 8 KB
constexpr size_t kMaxClWorkItemDimensions = 64;
constexpr int32_t kMaxCudaDevices = 64;

}  // namespace compute
