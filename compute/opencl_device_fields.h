#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "compute/opencl_records.h"

// One row per OpenCL field: how discovery asks the driver for it, where the record keeps it, and how the
// detail list, the text, XML and JSON reports (and anything else that lists fields) print and name it.
// The rows stand in the order the detail list and the reports show them; discovery walks them in the same
// order, so the extension list is read before the rows that depend on it. A reader that shows a few fields
// (a panel, a form) finds each row by its query and prints clFieldText with the row's unit.
namespace compute {

// How a field is asked of the driver and kept in the record.
enum class ClQuery : uint8_t {
    Text,           // a string, kept to 127 characters
    Uint,           // cl_uint
    Ulong,          // cl_ulong and the bit fields
    Size,           // size_t
    SizeTriple,     // size_t per dimension, of which the first three are kept
    LocalMemType,   // cl_device_local_mem_type, kept as the words the lines show
    NativeKernel,   // cl_device_exec_capabilities, kept as 1 when CL_EXEC_NATIVE_KERNEL is set
    ExtensionList,  // the extension string, kept as both of the record's lists
};

// How a value reads in the detail list and the text and XML reports.
enum class ClShow : uint8_t {
    Text,
    Decimal,         // the number shifted by the row's shift
    Hex4,            // "0x%.4X"
    YesNo,           // "YES" for any value but 0
    TypeWords,       // "CPU / GPU ..." of the device type bits
    Triple,          // "[%d ; %d ; %d]"
    QueueFlags,      // one line per set flag; the detail list only
    ExtensionCount,  // the number of names in the extension list
};

// How the JSON report writes a value. Numbers there are never shifted: sizes stay in bytes.
enum class ClJson : uint8_t { Text, Number, Bool, Numbers, Extensions };

// Rows read and shown only for some devices.
enum class ClCondition : uint8_t { Always, NvAttributeQuery };

// Where a row shows; every row is queried.
enum ClOutput : uint8_t {
    kClDetailList = 1,
    kClTextXmlReport = 2,
    kClJsonReport = 4,
    kClEverywhere = kClDetailList | kClTextXmlReport | kClJsonReport,
};

struct ClDeviceField {
    cl_device_info query;
    ClQuery kind;
    // Where the record keeps the value: exactly one of them, none for the extension list.
    uint64_t ClDeviceRecord::*number = nullptr;
    std::string ClDeviceRecord::*text = nullptr;
    uint64_t (ClDeviceRecord::*triple)[3] = nullptr;

    const char* label;  // the name the lines show, and the XML attribute's name unless xmlName says otherwise
    ClShow show = ClShow::Decimal;
    unsigned shift = 0;          // bits: 10 for KB, 20 for MB
    const char* unit = "";       // behind the value on the lines: "MHz", "KB", " Bytes"
    const char* xmlName = nullptr;
    bool xmlShowsNumber = false;  // the attribute holds the stored number where the line shows words
    const char* detailLabel = nullptr;  // where the detail list words the field otherwise
    const char* detailUnit = nullptr;
    const char* jsonName = nullptr;
    const char* jsonGroup = nullptr;  // the JSON object the value sits in, where it is not the device itself
    ClJson json = ClJson::Number;
    ClCondition condition = ClCondition::Always;
    uint8_t outputs = kClEverywhere;

    constexpr bool shows(ClOutput output) const { return (outputs & output) != 0; }
};

struct ClPlatformField {
    cl_platform_info query;
    ClQuery kind;                                    // Text or ExtensionList
    std::string ClPlatformRecord::*text = nullptr;  // none for the extension list
    const char* label;
    const char* jsonName;
    uint8_t outputs = kClEverywhere;

    constexpr bool shows(ClOutput output) const { return (outputs & output) != 0; }
};

std::span<const ClDeviceField> clDeviceFields();
// The rows in the order the reports write them: the extension list after every value, because XML holds
// its names as child elements behind the attributes (and the JSON report keeps the same order).
std::span<const ClDeviceField* const> clReportFieldOrder();
std::span<const ClPlatformField> clPlatformFields();
// The row of one query; null when no row asks it.
const ClDeviceField* findClDeviceField(cl_device_info query);

// Whether the row applies to this device at all (NVIDIA's attribute rows need their extension).
bool clFieldApplies(const ClDeviceField& field, const ClDeviceRecord& device);
// The stored number (one dimension of a triple); 0 for texts and lists.
uint64_t clFieldNumber(const ClDeviceField& field, const ClDeviceRecord& device, size_t dimension = 0);
// The value as the detail list and the text report print it, without the unit.
std::string clFieldText(const ClDeviceField& field, const ClDeviceRecord& device);
// The value of the XML attribute.
std::string clFieldXmlValue(const ClDeviceField& field, const ClDeviceRecord& device);
// "CPU", "GPU", "ACCELERATOR", "DEFAULT" for the bits 2, 4, 8 and 1, in that order, joined by " / ".
std::string clDeviceTypeWords(uint64_t type);

}  // namespace compute
