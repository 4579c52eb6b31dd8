#include "kalidor/platform/amdgpu_drm_info.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <string_view>

extern "C" {
#include <amdgpu.h>
#include <amdgpu_drm.h>
}

#include "base/dynamic_library.h"

namespace Kalidornm {

namespace {

// Indexed by AMDGPU_VRAM_TYPE_*, as the kernel's uapi header numbers them (newer kernels add at the end).
constexpr std::array<std::string_view, 17> kVramTypeNames{
    "", "GDDR1", "DDR2", "GDDR3", "GDDR4", "GDDR5", "HBM", "DDR3", "DDR4",
    "GDDR6", "DDR5", "LPDDR4", "LPDDR5", "HBM3E", "HBM4", "HBM4E", "GDDR7",
};
static_assert(kVramTypeNames.size() == 17);
static_assert(AMDGPU_VRAM_TYPE_GDDR5 == 5 && AMDGPU_VRAM_TYPE_GDDR6 == 9);

class NodeDescriptor {
public:
    explicit NodeDescriptor(const std::string& path)
        : m_fd(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC | O_NOCTTY)) {}
    ~NodeDescriptor() {
        if (m_fd >= 0) ::close(m_fd);
    }
    NodeDescriptor(const NodeDescriptor&) = delete;
    NodeDescriptor& operator=(const NodeDescriptor&) = delete;
    int get() const { return m_fd; }

private:
    int m_fd;
};

}  // namespace

const char* amdgpuVramTypeName(uint32_t vramType) {
    return vramType < kVramTypeNames.size() ? kVramTypeNames[vramType].data() : "";
}

std::optional<AmdgpuMemoryInfo> queryAmdgpuMemoryInfo(const std::string& library, const std::string& nodePath) {
    if (library.empty() || nodePath.empty()) return std::nullopt;
    base::DynamicLibrary drm(library.c_str());
    auto initialize = drm.function<decltype(amdgpu_device_initialize)>("amdgpu_device_initialize");
    auto deinitialize = drm.function<decltype(amdgpu_device_deinitialize)>("amdgpu_device_deinitialize");
    auto queryInfo = drm.function<decltype(amdgpu_query_info)>("amdgpu_query_info");
    if (!initialize || !deinitialize || !queryInfo) return std::nullopt;

    const NodeDescriptor node(nodePath);
    if (node.get() < 0) return std::nullopt;
    uint32_t major = 0, minor = 0;
    amdgpu_device_handle device = nullptr;
    if (initialize(node.get(), &major, &minor, &device) != 0 || !device) return std::nullopt;
    drm_amdgpu_info_device info{};
    const int result = queryInfo(device, AMDGPU_INFO_DEV_INFO, sizeof info, &info);
    deinitialize(device);
    if (result != 0) return std::nullopt;
    return AmdgpuMemoryInfo{info.vram_type};
}

}  // namespace Kalidornm
