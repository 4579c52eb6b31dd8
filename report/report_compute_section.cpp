#include "compute/cuda_device_fields.h"
#include "compute/opencl_device_fields.h"
#include "report/report_sections.h"

namespace report {

namespace {

// One CUDA device: a text line per line of rows, an attribute per row with an XML name.
void addCudaDevice(ReportBuffers& b, const ReportCudaDevice& d) {
    std::string line, unit, attribute, value;
    const auto endLine = [&] {
        if (!line.empty()) addReportLine(b, "%s%s", line.c_str(), unit.c_str());
        line.clear();
    };
    const auto endAttribute = [&] {
        if (!attribute.empty()) addXmlAttribute(b, 4, attribute.c_str(), value);
        attribute.clear();
    };
    for (const compute::CudaDeviceField& f : compute::cudaDeviceFields()) {
        if (!f.shows(compute::kCudaTextXmlReport)) continue;
        const std::string text = compute::cudaFieldText(f, d);
        if (f.continuesLine()) {
            line += f.join + text;
        } else {
            endLine();
            line = formatText("\t- %s: %s", f.label, text.c_str());
            unit = f.unit;
        }
        if (f.xmlName) {
            endAttribute();
            attribute = f.xmlName;
            value = text;
        } else {
            value += f.join + text;
        }
    }
    endLine();
    endAttribute();
}

// An OpenCL device row: "\t- NAME: value" and an attribute of the same value, under its own name for some.
void addClRow(ReportBuffers& b, const compute::ClDeviceField& f, const ReportClDevice& d) {
    addReportLine(b, "\t- %s: %s%s", f.label, compute::clFieldText(f, d).c_str(), f.unit);
    addXmlAttribute(b, 4, f.xmlName ? f.xmlName : f.label, compute::clFieldXmlValue(f, d));
}

void addClDevice(ReportBuffers& b, const ReportClDevice& d) {
    addReportXml(b, "\n\t\t\t<device ");
    addBlankLine(b);
    for (const compute::ClDeviceField* f : compute::clReportFieldOrder())
        if (f->shows(compute::kClTextXmlReport) && compute::clFieldApplies(*f, d)) addClRow(b, *f, d);
    addReportXml(b, "\t\t\t >");
    if (!d.extensions.empty()) {
        addReportLine(b, "\t- Extensions:");
        addReportXml(b, "\n\t\t\t\t<extensions>");
        for (const std::string& e : d.extensions) {
            addReportLine(b, "\t\t- %s", e.c_str());
            addReportXml(b, "\n\t\t\t\t\t<li>%s</li>", xmlEscaped(e).c_str());
        }
        addReportXml(b, "\n\t\t\t\t</extensions>");
    }
    addReportXml(b, "\n\t\t\t</device>");
}

}  // namespace

void addCudaSection(ReportBuffers& b, const ReportSnapshot& s) {
    if (s.cudaDevices.empty()) return;
    addBlankLine(b);
    addBlankLine(b);
    addHeading(b, "NVIDIA CUDA Capabilities");
    addReportXml(b, "\n\t\t<nvidia_cuda>");
    for (size_t i = 0; i < s.cudaDevices.size(); ++i) {
        addReportLine(b, "- CUDA Device %d", int(i));
        addReportXml(b, "\n\t\t\t<cuda_device ");
        addCudaDevice(b, s.cudaDevices[i]);
        addReportXml(b, "\t\t\t />");
    }
    addReportXml(b, "\n\t\t</nvidia_cuda>");
}

void addOpenClSection(ReportBuffers& b, const ReportSnapshot& s) {
    if (s.clPlatforms.empty()) return;
    addBlankLine(b);
    addBlankLine(b);
    addHeading(b, "OpenCL Capabilities");
    addReportXml(b, "\n\t\t<opencl num_platforms=\"%d\">", int(s.clPlatforms.size()));
    addReportLine(b, "- Num OpenCL platforms: %d", int(s.clPlatforms.size()));
    for (const ReportClPlatform& p : s.clPlatforms) {
        addReportXml(b, "\n\t\t<platform ");
        for (const compute::ClPlatformField& f : compute::clPlatformFields()) {
            if (!f.shows(compute::kClTextXmlReport) || !f.text) continue;
            addReportLine(b, "- %s: %s", f.label, (p.*f.text).c_str());
            addXmlAttribute(b, 3, f.label, p.*f.text);
        }
        addReportLine(b, "- Num devices: %d", int(p.devices.size()));
        addXmlAttribute(b, 3, "devices", formatText("%d", int(p.devices.size())));
        addReportXml(b, "\n\t\t />");
        for (const ReportClDevice& d : p.devices) addClDevice(b, d);
    }
    addReportXml(b, "\n\t\t</opencl>");
}

}  // namespace report
