#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// What the fake OpenCL library answers, shared by the fake and the tests that read it back.
namespace fake_cl {

// Every plain numeric device query of device d answers this, so a field filled from the wrong query shows.
constexpr uint64_t numericValue(int device, uint32_t param) { return uint64_t(device + 1) * 0x10000u + param; }

// The machine is picked per call from LUMENSCOPE_FAKE_CL. Unset: the two-platform machine below. Otherwise
// one of the failure modes; a name the fake does not know is the normal machine.
constexpr const char* kScenarioVariable = "LUMENSCOPE_FAKE_CL";
namespace mode {
constexpr const char* kNoPlatforms = "no_platforms";            // the platform count is 0
constexpr const char* kPlatformIdsFail = "platform_ids_fail";   // the platform count query fails
constexpr const char* kIdFetchFails = "id_fetch_fails";         // counts answer, handing out the handles fails
constexpr const char* kErrors = "errors";                       // every call but listing the platforms fails
constexpr const char* kDeviceErrors = "device_errors";          // every device query fails
constexpr const char* kZeroCounts = "zero_counts";              // no devices, empty extension strings
constexpr const char* kHugeCounts = "huge_counts";              // 0xFFFFFFFF counts, 2^40-byte sizes
constexpr const char* kManyCounts = "many_counts";              // 10^8 counts and sizes
constexpr const char* kUnterminated = "unterminated";           // texts fill the buffer without a terminator
constexpr const char* kLongStrings = "long_strings";            // texts longer than any buffer given
constexpr const char* kSpecialChars = "special_chars";          // & < " and bytes that are not UTF-8
}  // namespace mode

// A failing call still writes into its outputs: these counts, this byte over every buffer.
constexpr uint32_t kJunkCount = 3;
constexpr unsigned char kJunkByte = 0xAB;
constexpr uint64_t kHugeSize = uint64_t(1) << 40;
constexpr uint32_t kManyCount = 100000000;

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

// Texts of the special-character machine, for names and extensions alike.
constexpr const char* kSpecialName = "Fake & <Special> \"Quoted\" 'Apostrophe' \xff\xfe\xc3(";
constexpr const char* kSpecialExtensions = "cl_khr_<&\"> cl_\xff\xfe_vendor cl_plain ";
// The long-string machine's names, longer than the 1,023 bytes a text query is given.
constexpr size_t kLongNameLength = 5000;
constexpr size_t kLongExtensionLength = 1000;
constexpr size_t kLongExtensionCount = 200;

}  // namespace fake_cl
