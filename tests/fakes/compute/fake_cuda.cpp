// A stand-in for the CUDA driver library. LUMENSCOPE_FAKE_CUDA picks the machine: unset for two devices
// (the second refuses its property block), "no_device", "init_fails" (no usable GPU) or "stub" (the
// toolkit's link-time stub, which answers every call with CUDA_ERROR_STUB_LIBRARY).
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fake_cuda_values.h"

namespace {

std::string scenario() {
    const char* value = std::getenv(fake_cuda::kScenarioVariable);
    return value ? value : "";
}

bool isStub() { return scenario() == "stub"; }

}  // namespace

extern "C" {

int cuInit(unsigned int) {
    if (isStub()) return fake_cuda::kStubLibrary;
    if (scenario() == "init_fails") return fake_cuda::kNoDevice;
    return 0;
}

int cuDeviceGetCount(int* count) {
    if (isStub()) return fake_cuda::kStubLibrary;
    *count = scenario() == "no_device" ? 0 : 2;
    return 0;
}

int cuDeviceGet(int* device, int ordinal) {
    if (isStub() || ordinal < 0 || ordinal > 1) return fake_cuda::kInvalidDevice;
    *device = 100 + ordinal;
    return 0;
}

int cuDeviceGetName(char* name, int length, int device) {
    std::snprintf(name, size_t(length), "Fake CUDA Device %d", device - 100);
    return 0;
}

int cuDeviceTotalMem_v2(size_t* bytes, int device) {
    *bytes = fake_cuda::totalMemory(device - 100);
    return 0;
}

int cuDeviceGetProperties(fake_cuda::DevProp* prop, int device) {
    if (device - 100 == 1) return fake_cuda::kInvalidDevice;
    *prop = fake_cuda::kProperties;
    return 0;
}

int cuDeviceComputeCapability(int* major, int* minor, int device) {
    *major = 8;
    *minor = device - 100 == 0 ? 6 : 9;
    return 0;
}

int cuDeviceGetAttribute(int* value, int attribute, int device) {
    const int ordinal = device - 100;
    switch (attribute) {
        case 10: *value = 32; return 0;
        case 13: *value = fake_cuda::kAttributeClockKhz; return 0;
        case 16: *value = fake_cuda::multiprocessors(ordinal); return 0;
        default: return fake_cuda::kInvalidValue;
    }
}

}  // extern "C"
