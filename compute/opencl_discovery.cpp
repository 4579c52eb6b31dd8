#include "compute/opencl_discovery.h"

#include <algorithm>
#include <concepts>
#include <cstring>
#include <utility>
#include <vector>

#include "compute/driver_limits.h"
#include "compute/opencl_device_fields.h"
#include "compute/opencl_entry_points.h"
#include "compute/opencl_state.h"

namespace compute {
namespace {

constexpr size_t kQueryBufferSize = 1024;
constexpr cl_device_type kAllDeviceTypes = 0xFFFFFFFF;

void unloadModule() {
    clModule().close();
    clearClEntryPoints();
}

// A query bound to one platform or device and one parameter: (size, value, size returned) -> status.
template <typename Query>
concept InfoQuery = requires(Query query, size_t size, void* value, size_t* sizeReturned) {
    { query(size, value, sizeReturned) } -> std::convertible_to<cl_int>;
};

// The buffer is cleared before every query and the driver is told one byte less than it holds, so a text
// without its terminator still ends inside the buffer, and nothing of an earlier answer shows through.
bool readText(InfoQuery auto query, std::string& field) {
    char buffer[kQueryBufferSize];
    std::memset(buffer, 0, sizeof buffer);
    if (query(kQueryBufferSize - 1, buffer, nullptr) != CL_SUCCESS) return false;
    field.assign(buffer, strnlen(buffer, kClMaxTextLength));
    return true;
}

// A value asked at the width the driver answers in; a failed query leaves it as it was.
template <typename T>
bool readValue(InfoQuery auto query, T& value) {
    T answer{};
    if (query(sizeof answer, &answer, nullptr) != CL_SUCCESS) return false;
    value = answer;
    return true;
}

template <typename T>
void readWidened(InfoQuery auto query, uint64_t& field) {
    T value{};
    if (readValue(query, value)) field = value;
}

// The first three dimensions. A device with more refuses the three-slot buffer, so the whole array is
// fetched then, as long as its size is one a device could have.
void readSizeTriple(InfoQuery auto query, uint64_t (&field)[3]) {
    size_t sizes[3] = {};
    if (query(sizeof sizes, sizes, nullptr) != CL_SUCCESS) {
        size_t bytes = 0;
        if (query(0, nullptr, &bytes) != CL_SUCCESS) return;
        if (bytes == 0 || bytes > kMaxClWorkItemDimensions * sizeof(size_t)) return;
        std::vector<size_t> all(bytes / sizeof(size_t) + 1, 0);
        if (query(bytes, all.data(), nullptr) != CL_SUCCESS) return;
        for (size_t i = 0; i < 3 && i < all.size(); ++i) sizes[i] = all[i];
    }
    for (size_t i = 0; i < 3; ++i) field[i] = sizes[i];
}

// The whole extension string, its size asked first; both lists stay empty when either query fails or the
// size is beyond any real driver's.
void readExtensions(InfoQuery auto query, ClExtensionList& listed, ClExtensionList& reported) {
    size_t size = 0;
    if (query(0, nullptr, &size) != CL_SUCCESS || size == 0 || size > kMaxClExtensionBytes) return;
    std::vector<char> text(size + 1, '\0');
    if (query(size, text.data(), nullptr) != CL_SUCCESS) return;
    listed = tokeniseClExtensions(text.data());
    reported = splitClExtensions(text.data());
}

void readDeviceField(const ClDeviceField& field, ClDeviceRecord& device) {
    const auto query = [id = device.deviceId, param = field.query](size_t size, void* value, size_t* sizeReturned) {
        return compute::clGetDeviceInfo(id, param, size, value, sizeReturned);
    };
    switch (field.kind) {
        case ClQuery::Text: readText(query, device.*field.text); break;
        case ClQuery::Uint: readWidened<cl_uint>(query, device.*field.number); break;
        case ClQuery::Ulong: readWidened<cl_ulong>(query, device.*field.number); break;
        case ClQuery::Size: readWidened<size_t>(query, device.*field.number); break;
        case ClQuery::SizeTriple: readSizeTriple(query, device.*field.triple); break;
        case ClQuery::LocalMemType: {
            cl_device_local_mem_type type = 0;
            readValue(query, type);
            device.*field.text = type == CL_LOCAL ? "Local (scratchpad)" : "Global";
            break;
        }
        case ClQuery::NativeKernel: {
            cl_device_exec_capabilities capabilities = 0;
            if (readValue(query, capabilities)) device.*field.number = (capabilities & CL_EXEC_NATIVE_KERNEL) ? 1 : 0;
            break;
        }
        case ClQuery::ExtensionList: readExtensions(query, device.extensions, device.reportedExtensions); break;
    }
}

void readDevice(ClDeviceRecord& device) {
    // The rows that depend on the extension list stand behind it.
    for (const ClDeviceField& field : clDeviceFields())
        if (clFieldApplies(field, device)) readDeviceField(field, device);
}

void readPlatform(ClPlatformRecord& platform, cl_platform_id id) {
    for (const ClPlatformField& field : clPlatformFields()) {
        const auto query = [id, param = field.query](size_t size, void* value, size_t* sizeReturned) {
            return compute::clGetPlatformInfo(id, param, size, value, sizeReturned);
        };
        if (field.kind == ClQuery::ExtensionList) {
            readExtensions(query, platform.extensions, platform.reportedExtensions);
            continue;
        }
        // The handle is kept once the vendor query shows that the driver answers for it.
        if (readText(query, platform.*field.text) && field.query == CL_PLATFORM_VENDOR) platform.platformId = id;
    }
}

// The handles behind a count: at most `limit`, none when the fetch fails, and only those the driver filled
// in, so a count it cannot back up lists nothing it did not hand out.
template <typename Handle>
std::vector<Handle> fetchHandles(cl_uint limit, auto fetch) {
    std::vector<Handle> handles(limit, nullptr);
    if (limit == 0 || fetch(limit, handles.data()) != CL_SUCCESS) return {};
    std::erase(handles, nullptr);
    return handles;
}

void readDevices(base::LogSink& log, ClPlatformRecord& platform, cl_platform_id id) {
    cl_uint reported = 0;
    // A failed count is no count, whatever the driver wrote into it.
    if (compute::clGetDeviceIDs(id, kAllDeviceTypes, 0, nullptr, &reported) != CL_SUCCESS) return;
    const std::vector<cl_device_id> ids = fetchHandles<cl_device_id>(
        std::min<cl_uint>(reported, kMaxClDevicesPerPlatform),
        [id](cl_uint count, cl_device_id* devices) {
            return compute::clGetDeviceIDs(id, kAllDeviceTypes, count, devices, nullptr);
        });
    if (ids.empty()) return;

    base::logTo(log, "Found %d OpenCL-capable devices for platform %s.", int(ids.size()), platform.name.c_str());
    if (reported > kMaxClDevicesPerPlatform)
        base::logTo(log, "The OpenCL driver reported %u devices for platform %s; only the first %u are read.", reported,
                  platform.name.c_str(), kMaxClDevicesPerPlatform);
    platform.devices.assign(ids.size(), ClDeviceRecord{});
    platform.deviceCount = uint32_t(ids.size());
    if (!clEntryPoint(ClEntry::GetDeviceInfo)) return;
    for (size_t i = 0; i < ids.size(); ++i) {
        platform.devices[i].deviceId = ids[i];
        readDevice(platform.devices[i]);
    }
}

}  // namespace

void discoverOpenCl(base::LogSink& log, const char* libraryName) {
    // The first load only tells whether the library is there; the handle that stays comes from a second load.
    {
        base::DynamicLibrary probe(libraryName);
        if (!probe) {
            base::logTo(log, "Could not find %s.", libraryName);
            return;
        }
    }
    base::DynamicLibrary module(libraryName);
    if (!module) {
        base::logTo(log, "Could not find %s.", libraryName);
        return;
    }
    clearClEntryPoints();
    clModule() = std::move(module);
    if (!clEntryPoint(ClEntry::GetPlatformIDs)) {
        unloadModule();
        return;
    }

    cl_uint reported = 0;
    if (compute::clGetPlatformIDs(0, nullptr, &reported) != CL_SUCCESS) {
        unloadModule();
        return;
    }
    const std::vector<cl_platform_id> ids = fetchHandles<cl_platform_id>(
        std::min<cl_uint>(reported, kMaxClPlatforms),
        [](cl_uint count, cl_platform_id* platforms) { return compute::clGetPlatformIDs(count, platforms, nullptr); });
    base::logTo(log, "Found %d OpenCL-capable platform.", int(ids.size()));
    if (reported > kMaxClPlatforms)
        base::logTo(log, "The OpenCL driver reported %u platforms; only the first %u are read.", reported, kMaxClPlatforms);
    if (ids.empty()) {
        unloadModule();
        return;
    }

    auto& platforms = openClState().platforms;
    platforms.assign(ids.size(), ClPlatformRecord{});
    openClState().platformCount = uint32_t(ids.size());
    if (!clEntryPoint(ClEntry::GetPlatformInfo)) return;
    const bool canListDevices = clEntryPoint(ClEntry::GetDeviceIDs) != nullptr;
    for (size_t i = 0; i < ids.size(); ++i) {
        readPlatform(platforms[i], ids[i]);
        if (canListDevices) readDevices(log, platforms[i], ids[i]);
    }
}

void releaseOpenCl() {
    if (openClState().platformCount > 0) {
        freeOpenClPlatforms();
        clModule().close();
    }
    clearClEntryPoints();
}

void freeOpenClPlatforms() {
    openClState().platforms = {};
    openClState().platformCount = 0;
}

}  // namespace compute
