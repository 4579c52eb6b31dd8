// A stand-in for the CUDA driver library: two devices, the second refusing its property block.
// LUMENSCOPE_FAKE_CUDA turns it into another machine or a broken driver (fake_cuda_values.h lists the modes).
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/fakes/compute/fake_cuda_values.h"

namespace {

bool isMode(const char* name) {
    const char* value = std::getenv(fake_cuda::kScenarioVariable);
    return value && std::strcmp(value, name) == 0;
}

bool everyCallFails() { return isMode(fake_cuda::mode::kStub) || isMode(fake_cuda::mode::kErrors); }
bool queriesFail() { return everyCallFails() || isMode(fake_cuda::mode::kDeviceErrors); }

int deviceCount() {
    if (isMode(fake_cuda::mode::kNoDevice) || isMode(fake_cuda::mode::kZeroCounts)) return 0;
    if (isMode(fake_cuda::mode::kHugeCounts)) return INT_MAX;
    if (isMode(fake_cuda::mode::kManyCounts)) return fake_cuda::kManyCount;
    if (isMode(fake_cuda::mode::kNegativeCount)) return -1;
    return 2;
}

int fail(int* value) {
    if (value) *value = fake_cuda::kJunkValue;
    return isMode(fake_cuda::mode::kStub) ? fake_cuda::kStubLibrary : fake_cuda::kInvalidValue;
}

}  // namespace

extern "C" {

int cuInit(unsigned int) {
    if (isMode(fake_cuda::mode::kStub)) return fake_cuda::kStubLibrary;
    if (isMode(fake_cuda::mode::kInitFails)) return fake_cuda::kNoDevice;
    return 0;
}

int cuDeviceGetCount(int* count) {
    if (everyCallFails()) {
        *count = fake_cuda::kJunkCount;
        return fail(nullptr);
    }
    *count = deviceCount();
    return 0;
}

int cuDeviceGet(int* device, int ordinal) {
    if (everyCallFails() || ordinal < 0 || ordinal >= deviceCount()) return fail(device);
    *device = 100 + ordinal;
    return 0;
}

int cuDeviceGetName(char* name, int length, int device) {
    if (length <= 0) return fake_cuda::kInvalidValue;
    if (queriesFail()) {
        std::memset(name, fake_cuda::kJunkByte, size_t(length));
        return fail(nullptr);
    }
    if (isMode(fake_cuda::mode::kUnterminated) || isMode(fake_cuda::mode::kLongStrings)) {
        std::memset(name, 'U', size_t(length));  // every byte it was given, no terminator
        return 0;
    }
    if (isMode(fake_cuda::mode::kSpecialChars)) {
        std::snprintf(name, size_t(length), "%s", fake_cuda::kSpecialName);
        return 0;
    }
    std::snprintf(name, size_t(length), "Fake CUDA Device %d", device - 100);
    return 0;
}

int cuDeviceTotalMem_v2(size_t* bytes, int device) {
    if (queriesFail()) {
        *bytes = ~size_t(0);
        return fail(nullptr);
    }
    *bytes = fake_cuda::totalMemory(device - 100);
    return 0;
}

int cuDeviceGetProperties(fake_cuda::DevProp* prop, int device) {
    if (queriesFail()) {
        std::memset(prop, 0x7E, sizeof *prop);
        return fail(nullptr);
    }
    if (device - 100 == 1) return fake_cuda::kInvalidDevice;
    *prop = fake_cuda::kProperties;
    return 0;
}

int cuDeviceComputeCapability(int* major, int* minor, int device) {
    if (queriesFail()) {
        *minor = fake_cuda::kJunkValue;
        return fail(major);
    }
    *major = 8;
    *minor = device - 100 == 0 ? 6 : 9;
    return 0;
}

int cuDeviceGetAttribute(int* value, int attribute, int device) {
    if (queriesFail()) return fail(value);
    const int ordinal = device - 100;
    switch (attribute) {
        case 10: *value = 32; return 0;
        case 13: *value = fake_cuda::kAttributeClockKhz; return 0;
        case 16: *value = fake_cuda::multiprocessors(ordinal); return 0;
        default: return fake_cuda::kInvalidValue;
    }
}

}  // extern "C"
