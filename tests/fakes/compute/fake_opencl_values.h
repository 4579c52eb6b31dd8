#pragma once

#include <cstdint>

// What the fake OpenCL library answers, shared by the fake and the tests that read it back.
namespace fake_cl {

// Every plain numeric device query of device d answers this, so a field filled from the wrong query shows.
constexpr uint64_t numericValue(int device, uint32_t param) { return uint64_t(device + 1) * 0x10000u + param; }

// The scenario is picked per call from LUMENSCOPE_FAKE_CL: unset for the two-platform machine below,
// "no_platforms" (the count is 0) or "platform_ids_fail" (the count query fails).
constexpr const char* kScenarioVariable = "LUMENSCOPE_FAKE_CL";

constexpr const char* kPlatformExtensions = "cl_khr_icd ab cl_khr_fp64  cl_platform_tail";
// Device 0: CPU and GPU bits, a 200-character name, four work-item dimensions, NVIDIA's attribute query.
constexpr uint64_t kDevice0Type = 6;
constexpr size_t kDevice0NameLength = 200;
constexpr uint64_t kDevice0WorkItemSizes[4] = {11, 22, 33, 44};
constexpr uint32_t kNvValueBase = 0x500;  // attribute 0x4000 + i answers kNvValueBase + i
// Device 1: a plain CPU whose vendor query fails.
constexpr uint64_t kDevice1Type = 2;
constexpr const char* kDevice1Name = "Fake CPU";
constexpr uint64_t kDevice1WorkItemSizes[3] = {1024, 512, 256};

}  // namespace fake_cl
