#pragma once

#include <cstddef>
#include <cstdint>

// What the fake CUDA driver answers, shared by the fake and the tests that read it back.
namespace fake_cuda {

// The machine: unset for two devices (the second refuses its property block), or one of the modes below; a
// name the fake does not know is the normal machine.
constexpr const char* kScenarioVariable = "LUMENSCOPE_FAKE_CUDA";
namespace mode {
constexpr const char* kNoDevice = "no_device";
constexpr const char* kInitFails = "init_fails";        // no usable GPU
constexpr const char* kStub = "stub";                   // the toolkit's link-time stub: every call fails
constexpr const char* kErrors = "errors";               // cuInit answers, every other call fails
constexpr const char* kDeviceErrors = "device_errors";  // devices are counted and handed out, every query fails
constexpr const char* kZeroCounts = "zero_counts";      // no device
constexpr const char* kHugeCounts = "huge_counts";      // INT_MAX devices
constexpr const char* kManyCounts = "many_counts";      // 10^8 devices
constexpr const char* kNegativeCount = "negative_count";
constexpr const char* kUnterminated = "unterminated";   // the name fills the buffer without a terminator
constexpr const char* kLongStrings = "long_strings";    // a name longer than the buffer, cut by the driver
constexpr const char* kSpecialChars = "special_chars";  // & < " and bytes that are not UTF-8
}  // namespace mode

constexpr int kInvalidValue = 1;
constexpr int kStubLibrary = 34;
constexpr int kNoDevice = 100;
constexpr int kInvalidDevice = 101;

// A failing call still writes into its outputs: this count, this byte over the name, this value.
constexpr int kJunkCount = 3;
constexpr char kJunkByte = 'J';
constexpr int kJunkValue = 0x7EADBEEF;
constexpr int kManyCount = 100000000;

struct DevProp {
    int words[14];
};
// Every word distinct; word 12 is the clock (kHz), which the clock attribute overrides.
constexpr DevProp kProperties = {{1024, 1, 2, 3, 4, 5, 6, 49152, 65536, 32, 2147483647, 65535, 700000, 512}};
constexpr int kAttributeClockKhz = 1500000;

constexpr uint64_t totalMemory(int ordinal) { return (uint64_t(6) + uint64_t(ordinal)) << 30; }  // 6 and 7 GiB
constexpr int multiprocessors(int ordinal) { return 20 + ordinal; }

constexpr const char* kSpecialName = "Fake & <CUDA> \"Device\" \xff\xfe\xc3(";

}  // namespace fake_cuda
