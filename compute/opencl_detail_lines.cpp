#include <cstdarg>
#include <cstdio>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "compute/opencl_device_fields.h"
#include "compute/opencl_discovery.h"

namespace compute {
namespace {

constexpr char kRule[] = "--------------------------------------";

class LineList {
public:
    void add(const char* format, ...) __attribute__((format(printf, 2, 3))) {
        char line[512];
        va_list args;
        va_start(args, format);
        std::vsnprintf(line, sizeof line, format, args);
        va_end(args);
        m_lines.emplace_back(line);
    }
    std::vector<std::string> take() { return std::move(m_lines); }

private:
    std::vector<std::string> m_lines;
};

constexpr struct {
    uint64_t bit;
    const char* name;
} kQueueFlags[] = {{CL_QUEUE_OUT_OF_ORDER_EXEC_MODE_ENABLE, "CL_QUEUE_OUT_OF_ORDER_EXEC_MODE_ENABLE"},
                   {CL_QUEUE_PROFILING_ENABLE, "CL_QUEUE_PROFILING_ENABLE"}};
static_assert(std::size(kQueueFlags) == 2);

// The two rows that take several lines: the extension list and the queue flags.
void addDeviceField(LineList& out, const ClDeviceField& field, const ClDeviceRecord& device) {
    const char* label = field.detailLabel ? field.detailLabel : field.label;
    switch (field.show) {
        case ClShow::ExtensionCount:
            out.add("- %s:", label);
            out.add("\t- Number: %d", int(device.extensions.size()));
            for (const std::string& extension : device.extensions) out.add("\t- %s", extension.c_str());
            return;
        case ClShow::QueueFlags:
            out.add("- %s:", label);
            for (const auto& flag : kQueueFlags)
                if (clFieldNumber(field, device) & flag.bit) out.add("\t- %s", flag.name);
            return;
        default:
            out.add("- %s: %s%s", label, clFieldText(field, device).c_str(),
                    field.detailUnit ? field.detailUnit : field.unit);
    }
}

}  // namespace

std::vector<std::string> clDetailLines(uint32_t platformIndex, uint32_t deviceIndex) {
    const ClPlatformRecord* platform = clPlatform(platformIndex);
    if (!platform || deviceIndex >= platform->devices.size()) return {};
    return clDetailLines(*platform, platform->devices[deviceIndex]);
}

std::vector<std::string> clDetailLines(const ClPlatformRecord& platform, const ClDeviceRecord& device) {
    LineList out;
    out.add("%s", kRule);
    for (const ClPlatformField& field : clPlatformFields())
        if (field.shows(kClDetailList) && field.text) out.add("- %s: %s", field.label, (platform.*field.text).c_str());
    out.add("%s", kRule);
    for (const ClDeviceField& field : clDeviceFields())
        if (field.shows(kClDetailList) && clFieldApplies(field, device)) addDeviceField(out, field, device);
    return out.take();
}

}  // namespace compute
