#include "report/report_sections.h"

namespace report {

namespace {

constexpr const char* kBannerRule = "===================================================";  // 51

const char* textOr(const std::optional<std::string>& text) { return text ? text->c_str() : ""; }

}  // namespace

// Text only: the XML file carries the same facts in its head comment.
void addBannerSection(ReportBuffers& b, const ReportSnapshot& s) {
    addReportLine(b, "%s", kBannerRule);
    addReportLine(b, "%s v%s", s.programName.c_str(), s.programVersion.c_str());
    addReportLine(b, "%s", s.homePage.c_str());
    addReportLine(b, "%s", kBannerRule);
    addBlankLine(b);
    addBlankLine(b);
}

void addSystemSection(ReportBuffers& b, const ReportSnapshot& s) {
    const ReportSystem& sys = s.system;
    addHeading(b, "System / CPU");
    addReportXml(b, "\n\n\t<system>");
    addReportXml(b, "\n\t\t<cpu ");

    addReportLine(b, "- CPU Name: %s", textOr(sys.cpuName));
    addXmlAttribute(b, 3, "name", textOr(sys.cpuName));
    addReportLine(b, "- CPU Core Speed: %s", formatText("%d MHz", sys.cpuSpeedMhz).c_str());
    addXmlAttribute(b, 3, "core_speed_mhz", formatText("%d", sys.cpuSpeedMhz));
    addReportLine(b, "- CPU logical cores: %d", sys.logicalCores);
    addXmlAttribute(b, 3, "num_logical_cores", formatText("%d", sys.logicalCores));
    addReportLine(b, "- Family: %d - Model: %d - Stepping: %d", sys.cpuFamily, sys.cpuModel, sys.cpuStepping);
    addXmlAttribute(b, 3, "family", formatText("%d", sys.cpuFamily));
    addXmlAttribute(b, 3, "model", formatText("%d", sys.cpuModel));
    addXmlAttribute(b, 3, "stepping", formatText("%d", sys.cpuStepping));
    addReportXml(b, "\n\t\t/>");

    addReportXml(b, "\n\t\t<memory ");
    const int memoryMb = int(sys.installedMemoryMb != 0 ? sys.installedMemoryMb : sys.totalMemoryKb >> 10);
    addReportLine(b, "- Physical Memory Size: %s", formatText("%d MB", memoryMb).c_str());
    addXmlAttribute(b, 3, "megabytes_physical_amount", formatText("%d", memoryMb));
    addReportXml(b, "\n\t\t/>");

    addReportXml(b, "\n\t\t<operating_system ");
    addReportLine(b, "- Operating System: %s", textOr(sys.osDescription));
    addXmlAttribute(b, 3, "description", textOr(sys.osDescription));
    if (sys.physxVersion > 0) {
        addReportLine(b, "- PhysX Version: %d", sys.physxVersion);
        addXmlAttribute(b, 3, "physx_version", formatText("%d", sys.physxVersion));
    } else {
        addReportLine(b, "- PhysX Version: drivers not installed");
        addXmlAttribute(b, 3, "physx_version", "0");
    }
    addReportXml(b, "\n\t\t/>");
    addReportXml(b, "\n\t</system>");
    addBlankLine(b);
    addBlankLine(b);
}

// The report of a machine without a graphics driver ends with this.
void addNoDriverSection(ReportBuffers& b, const ReportSnapshot& s) {
    addHeading(b, "Graphics Adapter / GPU");
    addReportLine(b, "***");
    addReportLine(b, "*** NO GRAPHICS DRIVERS DETECTED ***");
    addReportLine(b, "***");
    addReportLine(b, "- Renderer: %s", s.gl.renderer.c_str());
    addReportXml(b, "\n\t\t<renderer ");
    addXmlAttribute(b, 3, "model", s.gl.renderer);
    addReportXml(b, "\n\t\t />");
}

}  // namespace report
