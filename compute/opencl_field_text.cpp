#include <cinttypes>
#include <cstdio>
#include <iterator>

#include "compute/opencl_device_fields.h"
#include "compute/opencl_discovery.h"

namespace compute {
namespace {

std::string decimal(uint64_t value) {
    char text[24];
    std::snprintf(text, sizeof text, "%" PRIu64, value);
    return text;
}

}  // namespace

bool clFieldApplies(const ClDeviceField& field, const ClDeviceRecord& device) {
    switch (field.condition) {
        case ClCondition::NvAttributeQuery: return deviceHasExtension(&device, "cl_nv_device_attribute_query");
        case ClCondition::Always: break;
    }
    return true;
}

uint64_t clFieldNumber(const ClDeviceField& field, const ClDeviceRecord& device, size_t dimension) {
    if (field.number) return device.*field.number;
    if (field.triple && dimension < 3) return (device.*field.triple)[dimension];
    return 0;
}

// Numbers print unsigned: a driver's 0xFFFFFFFF reads as what it is, never as -1.
std::string clFieldText(const ClDeviceField& field, const ClDeviceRecord& device) {
    const uint64_t number = clFieldNumber(field, device);
    switch (field.show) {
        case ClShow::Text: return field.text ? device.*field.text : std::string();
        case ClShow::Decimal: return decimal(number >> field.shift);
        case ClShow::Hex4: {
            char text[24];
            std::snprintf(text, sizeof text, "0x%.4" PRIX64, number);
            return text;
        }
        case ClShow::YesNo: return number ? "YES" : "NO";
        case ClShow::TypeWords: return clDeviceTypeWords(number);
        case ClShow::Triple:
            return "[" + decimal(clFieldNumber(field, device, 0)) + " ; " + decimal(clFieldNumber(field, device, 1)) +
                   " ; " + decimal(clFieldNumber(field, device, 2)) + "]";
        case ClShow::QueueFlags: return decimal(number);
        case ClShow::ExtensionCount: return decimal(device.extensions.size());
    }
    return {};
}

std::string clFieldXmlValue(const ClDeviceField& field, const ClDeviceRecord& device) {
    return field.xmlShowsNumber ? decimal(clFieldNumber(field, device)) : clFieldText(field, device);
}

std::string clDeviceTypeWords(uint64_t type) {
    static constexpr struct {
        uint64_t bit;
        const char* word;
    } kWords[] = {{CL_DEVICE_TYPE_CPU, "CPU"},
                  {CL_DEVICE_TYPE_GPU, "GPU"},
                  {CL_DEVICE_TYPE_ACCELERATOR, "ACCELERATOR"},
                  {CL_DEVICE_TYPE_DEFAULT, "DEFAULT"}};
    static_assert(std::size(kWords) == 4);
    std::string words;
    for (const auto& entry : kWords) {
        if (!(type & entry.bit)) continue;
        if (!words.empty()) words += " / ";
        words += entry.word;
    }
    return words;
}

}  // namespace compute
