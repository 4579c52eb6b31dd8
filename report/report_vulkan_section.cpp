#include <cstring>

#include "report/report_sections.h"
#include "vulkan/vulkan_fields.h"
#include "vulkan/vulkan_names.h"
#include "vulkan/vulkan_texts.h"

namespace report {

namespace {

using vulkan::VkNameTable;
using vulkan::vkFlagsText;

// A name the driver wrote into a fixed array, cut at the array's end where it has no terminator.
std::string fixedText(const char* text, size_t size) { return std::string(text, strnlen(text, size)); }

// The extension list of the instance or of a device: `indent` leads the text lines, `xmlTabs` the elements.
void addExtensions(ReportBuffers& b, const char* label, const char* element,
                   const std::vector<vulkan::VulkanExtension>& extensions, const char* indent, int xmlTabs) {
    addReportLine(b, "%s- %s: %d", indent, label, int(extensions.size()));
    const std::string tabs(size_t(xmlTabs), '\t');
    addReportXml(b, "\n%s<%s>", tabs.c_str(), element);
    for (const vulkan::VulkanExtension& e : extensions) {
        addReportLine(b, "%s\t- %s (revision %u)", indent, e.name.c_str(), e.version);
        addReportXml(b, "\n%s\t<li revision=\"%u\">%s</li>", tabs.c_str(), e.version,
                     xmlEscaped(e.name).c_str());
    }
    addReportXml(b, "\n%s</%s>", tabs.c_str(), element);
}

// Every group of field rows: a heading line and a line per row, an element with an attribute per row.
void addFieldGroups(ReportBuffers& b, const vulkan::VulkanDeviceRecord& d) {
    for (const vulkan::VkFieldGroup& group : vulkan::vkFieldGroups()) {
        const void* structure = group.locate(d);
        if (!structure) {
            addReportLine(b, "\t- %s: not offered", group.name);
            continue;
        }
        addReportLine(b, "\t- %s:", group.name);
        addReportXml(b, "\n\t\t\t\t<%s ", group.name);
        for (const vulkan::VkFieldRow& row : group.rows) {
            const std::string text = vulkan::vkFieldText(row, structure);
            addReportLine(b, "\t\t- %s: %s", row.name, text.c_str());
            addXmlAttribute(b, 5, row.name, text);
        }
        addReportXml(b, "\n\t\t\t\t />");
    }
}

void addMemory(ReportBuffers& b, const vulkan::VulkanDeviceRecord& d) {
    addReportLine(b, "\t- Memory heaps: %d", int(d.memoryHeaps.size()));
    for (size_t i = 0; i < d.memoryHeaps.size(); ++i) {
        const vulkan::VulkanMemoryHeap& h = d.memoryHeaps[i];
        std::string line = formatText("\t\t- Heap %d: size %llu (%llu MB), flags %s", int(i),
                                      static_cast<unsigned long long>(h.size),
                                      static_cast<unsigned long long>(h.size >> 20),
                                      vkFlagsText(VkNameTable::MemoryHeap, h.flags).c_str());
        addReportXml(b, "\n\t\t\t\t<memory_heap index=\"%d\" size=\"%llu\" flags=\"%s\"", int(i),
                     static_cast<unsigned long long>(h.size),
                     xmlEscaped(vkFlagsText(VkNameTable::MemoryHeap, h.flags)).c_str());
        if (h.budget) {
            line += formatText(", budget %llu", static_cast<unsigned long long>(*h.budget));
            addReportXml(b, " budget=\"%llu\"", static_cast<unsigned long long>(*h.budget));
        }
        if (h.usage) {
            line += formatText(", usage %llu", static_cast<unsigned long long>(*h.usage));
            addReportXml(b, " usage=\"%llu\"", static_cast<unsigned long long>(*h.usage));
        }
        addReportLine(b, "%s", line.c_str());
        addReportXml(b, " />");
    }
    addReportLine(b, "\t- Memory types: %d", int(d.memoryTypes.size()));
    for (size_t i = 0; i < d.memoryTypes.size(); ++i) {
        const vulkan::VulkanMemoryType& t = d.memoryTypes[i];
        const std::string flags = vkFlagsText(VkNameTable::MemoryProperty, t.propertyFlags);
        addReportLine(b, "\t\t- Type %d: heap %u, flags %s", int(i), t.heapIndex, flags.c_str());
        addReportXml(b, "\n\t\t\t\t<memory_type index=\"%d\" heap=\"%u\" flags=\"%s\" />", int(i), t.heapIndex,
                     xmlEscaped(flags).c_str());
    }
}

void addQueueFamilies(ReportBuffers& b, const vulkan::VulkanDeviceRecord& d) {
    addReportLine(b, "\t- Queue families: %d", int(d.queueFamilies.size()));
    for (size_t i = 0; i < d.queueFamilies.size(); ++i) {
        const vulkan::VulkanQueueFamily& q = d.queueFamilies[i];
        const std::string flags = vkFlagsText(VkNameTable::Queue, q.flags);
        const VkExtent3D& g = q.minImageTransferGranularity;
        addReportLine(b, "\t\t- Family %d: flags %s, queues %u, timestamp bits %u, granularity %ux%ux%u", int(i),
                      flags.c_str(), q.count, q.timestampValidBits, g.width, g.height, g.depth);
        addReportXml(b,
                     "\n\t\t\t\t<queue_family index=\"%d\" flags=\"%s\" count=\"%u\" timestamp_valid_bits=\"%u\" "
                     "granularity=\"%ux%ux%u\" />",
                     int(i), xmlEscaped(flags).c_str(), q.count, q.timestampValidBits, g.width, g.height, g.depth);
    }
}

void addFormats(ReportBuffers& b, const vulkan::VulkanDeviceRecord& d) {
    addReportLine(b, "\t- Formats: %d", int(d.formats.size()));
    for (const vulkan::VulkanFormatSupport& f : d.formats) {
        const std::string name = vulkan::vkFormatText(f.format);
        const std::string linear = vkFlagsText(VkNameTable::FormatFeature, f.linearTilingFeatures);
        const std::string optimal = vkFlagsText(VkNameTable::FormatFeature, f.optimalTilingFeatures);
        const std::string buffer = vkFlagsText(VkNameTable::FormatFeature, f.bufferFeatures);
        addReportLine(b, "\t\t- %s: linear %s; optimal %s; buffer %s", name.c_str(), linear.c_str(), optimal.c_str(),
                      buffer.c_str());
        addReportXml(b, "\n\t\t\t\t<format name=\"%s\" linear=\"%s\" optimal=\"%s\" buffer=\"%s\" />",
                     xmlEscaped(name).c_str(), xmlEscaped(linear).c_str(), xmlEscaped(optimal).c_str(),
                     xmlEscaped(buffer).c_str());
    }
}

void addProblems(ReportBuffers& b, const std::vector<std::string>& problems, const char* indent, int xmlTabs) {
    if (problems.empty()) return;
    addReportLine(b, "%s- Not read: %d", indent, int(problems.size()));
    const std::string tabs(size_t(xmlTabs), '\t');
    for (const std::string& p : problems) {
        addReportLine(b, "%s\t- %s", indent, p.c_str());
        addReportXml(b, "\n%s<problem>%s</problem>", tabs.c_str(), xmlEscaped(p).c_str());
    }
}

// The PCI address and, where the snapshot has a GPU at that address, the GPU's number and name.
std::string pciLine(const std::string& address, const ReportSnapshot& s) {
    for (size_t i = 0; i < s.gpus.size(); ++i)
        if (s.gpus[i].pciAddress == address)
            return formatText("%s (GPU %d: %s)", address.c_str(), int(i), s.gpus[i].name.value_or("").c_str());
    return address;
}

void addDevice(ReportBuffers& b, int index, const vulkan::VulkanDeviceRecord& d, const ReportSnapshot& s) {
    const std::string name = fixedText(d.properties.deviceName, sizeof d.properties.deviceName);
    const std::string driverVersion = vulkan::vkDriverVersionText(d);
    const std::optional<std::string> address = vulkan::vkPciAddressText(d);
    addReportLine(b, "- Vulkan Device %d: %s", index, name.c_str());
    addReportLine(b, "\t- Driver version: %s", driverVersion.c_str());
    if (address) addReportLine(b, "\t- PCI address: %s", pciLine(*address, s).c_str());
    addReportXml(b, "\n\t\t\t<vulkan_device index=\"%d\" name=\"%s\" driver_version=\"%s\"", index,
                 xmlEscaped(name).c_str(), xmlEscaped(driverVersion).c_str());
    if (address) addReportXml(b, " pci_address=\"%s\"", address->c_str());
    addReportXml(b, ">");
    addFieldGroups(b, d);
    addExtensions(b, "Extensions", "extensions", d.extensions, "\t", 4);
    addMemory(b, d);
    addQueueFamilies(b, d);
    addFormats(b, d);
    addProblems(b, d.problems, "\t", 4);
    addReportXml(b, "\n\t\t\t</vulkan_device>");
}

}  // namespace

void addVulkanSection(ReportBuffers& b, const ReportSnapshot& s) {
    const vulkan::VulkanInfo& v = s.vulkan;
    addBlankLine(b);
    addBlankLine(b);
    addHeading(b, "Vulkan Capabilities");
    const std::string status = vulkan::vkStatusLine(v);
    addReportXml(b, "\n\t\t<vulkan status=\"%s\"", xmlEscaped(status).c_str());
    if (v.status != vulkan::VulkanStatus::Read) {
        addReportLine(b, "- Vulkan: %s", status.c_str());
        addReportXml(b, " />");
        return;
    }
    const std::string version = v.instanceVersion ? vulkan::vkVersionText(*v.instanceVersion) : "unknown";
    addReportLine(b, "- Vulkan instance version: %s", version.c_str());
    addReportXml(b, " instance_version=\"%s\">", xmlEscaped(version).c_str());
    addExtensions(b, "Instance extensions", "instance_extensions", v.instanceExtensions, "", 3);
    addReportLine(b, "- Instance layers: %d", int(v.layers.size()));
    for (const vulkan::VulkanLayer& l : v.layers) {
        addReportLine(b, "\t- %s (Vulkan %s, implementation %u): %s", l.name.c_str(),
                      vulkan::vkVersionText(l.apiVersion).c_str(), l.implementationVersion, l.description.c_str());
        addReportXml(b, "\n\t\t\t<layer name=\"%s\" api_version=\"%s\" implementation_version=\"%u\" description=\"%s\" />",
                     xmlEscaped(l.name).c_str(), vulkan::vkVersionText(l.apiVersion).c_str(),
                     l.implementationVersion, xmlEscaped(l.description).c_str());
    }
    addProblems(b, v.problems, "", 3);
    addReportLine(b, "- Num Vulkan devices: %d", int(v.devices.size()));
    for (size_t i = 0; i < v.devices.size(); ++i) addDevice(b, int(i), v.devices[i], s);
    addReportXml(b, "\n\t\t</vulkan>");
}

}  // namespace report
