#pragma once

#include <cstdint>

namespace Kalidornm {

// Bounds past which a number from NVIDIA's library is garbage rather than a reading: the driver answers
// 0xFFFFFFFF (or a type's largest value) for "not available" on some boards, and such a value must read as
// not read, never reach a report as "-1MHz" or "4294967295 MHz".
namespace nvidia_limits {
inline constexpr unsigned int kMaxCelsius = 300;
inline constexpr unsigned int kMaxClockMhz = 100000;
inline constexpr int kMaxClockOffsetMhz = 100000;
inline constexpr unsigned int kMaxPercent = 100;
inline constexpr unsigned int kMaxFanPercent = 200;  // some boards report a little over 100 %
inline constexpr unsigned int kMaxFanRpm = 100000;
inline constexpr unsigned int kMaxMilliwatts = 10000000;  // 10 kW
inline constexpr unsigned long long kMaxMillijoules = 1ULL << 53;  // about 285 years at 1 kW
inline constexpr unsigned long long kMaxMemoryBytes = 1ULL << 50;
inline constexpr unsigned int kMaxCores = 1000000;
inline constexpr unsigned int kMaxBusWidthBits = 65536;
}  // namespace nvidia_limits

}  // namespace Kalidornm
