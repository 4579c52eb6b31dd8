#pragma once

#include <cstddef>
#include <cstdint>

// What the fake CUDA driver answers, shared by the fake and the tests that read it back.
namespace fake_cuda {

constexpr const char* kScenarioVariable = "LUMENSCOPE_FAKE_CUDA";

constexpr int kInvalidValue = 1;
constexpr int kStubLibrary = 34;
constexpr int kNoDevice = 100;
constexpr int kInvalidDevice = 101;

struct DevProp {
    int words[14];
};
// Every word distinct; word 12 is the clock (kHz), which the clock attribute overrides.
constexpr DevProp kProperties = {{1024, 1, 2, 3, 4, 5, 6, 49152, 65536, 32, 2147483647, 65535, 700000, 512}};
constexpr int kAttributeClockKhz = 1500000;

constexpr uint64_t totalMemory(int ordinal) { return (uint64_t(6) + uint64_t(ordinal)) << 30; }  // 6 and 7 GiB
constexpr int multiprocessors(int ordinal) { return 20 + ordinal; }

}  // namespace fake_cuda
