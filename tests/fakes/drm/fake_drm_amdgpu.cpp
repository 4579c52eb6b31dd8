// A stand-in for libdrm_amdgpu: a device on any file that opens, whose device info tells the memory type in
// FAKE_AMDGPU_VRAM_TYPE (an AMDGPU_VRAM_TYPE_* number, GDDR6 when unset). With FAKE_AMDGPU_CALL_LOG naming a
// file each initialisation appends a line to it, so a test can see that a card was asked.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" {
#include <amdgpu.h>
#include <amdgpu_drm.h>
}

struct amdgpu_device {
    int fd;
};

namespace {
amdgpu_device device{-1};
}

extern "C" {

int amdgpu_device_initialize(int fd, uint32_t* major, uint32_t* minor, amdgpu_device_handle* handle) {
    if (const char* log = std::getenv("FAKE_AMDGPU_CALL_LOG"))
        if (FILE* file = std::fopen(log, "a")) {
            std::fputs("initialize\n", file);
            std::fclose(file);
        }
    if (fd < 0 || !major || !minor || !handle) return -EINVAL;
    *major = 3, *minor = 0;
    device.fd = fd;
    *handle = &device;
    return 0;
}

int amdgpu_device_deinitialize(amdgpu_device_handle handle) { return handle == &device ? 0 : -EINVAL; }

int amdgpu_query_info(amdgpu_device_handle handle, unsigned id, unsigned size, void* value) {
    if (handle != &device || id != AMDGPU_INFO_DEV_INFO || !value) return -EINVAL;
    drm_amdgpu_info_device info{};
    const char* type = std::getenv("FAKE_AMDGPU_VRAM_TYPE");
    info.vram_type = type ? uint32_t(std::strtoul(type, nullptr, 0)) : AMDGPU_VRAM_TYPE_GDDR6;
    info.vram_bit_width = 256;
    std::memcpy(value, &info, size < sizeof info ? size : sizeof info);
    return 0;
}

}  // extern "C"
