#include "report/report_sections.h"

namespace report {

namespace {

void addControlPanel(ReportBuffers& b, const ReportNvidiaControlPanel& cpl) {
    addBlankLine(b);
    addBlankLine(b);
    addHeading(b, "NVIDIA Control Panel");
    addReportXml(b, "\n\t\t<NVIDIA_CPL ");
    addReportLine(b, "- NVIDIA CPL: Core Temperature: %d degrees", cpl.coreTemperatureC);
    addXmlAttribute(b, 3, "core_temperature", formatText("%d", cpl.coreTemperatureC));
    if (!cpl.displayAdapter.empty()) {
        addReportLine(b, "- NVIDIA CPL: Display Adapter: %s", cpl.displayAdapter.c_str());
        addXmlAttribute(b, 3, "display_adapter", cpl.displayAdapter);
    }
    if (!cpl.displayBoard.empty()) {
        addReportLine(b, "- NVIDIA CPL: Display Board: [%s]", cpl.displayBoard.c_str());
        addXmlAttribute(b, 3, "display_board", formatText("[%s]", cpl.displayBoard.c_str()));
    }
    if (!cpl.displayDriver.empty()) {
        addReportLine(b, "- NVIDIA CPL: Display Driver: %s", cpl.displayDriver.c_str());
        addXmlAttribute(b, 3, "display_driver", cpl.displayDriver);
    }
    if (!cpl.busMode.empty()) {
        addReportLine(b, "- NVIDIA CPL: Bus Mode: %s", cpl.busMode.c_str());
        addXmlAttribute(b, 3, "bus_mode", cpl.busMode);
    }
    addReportLine(b, "- NVIDIA CPL: Bus transfer rate: %dX", cpl.busTransferRate);
    addXmlAttribute(b, 3, "bus_transfert_rate", formatText("%d", cpl.busTransferRate));
    addReportLine(b, "- NVIDIA CPL: Video Memory Size: %d MBytes", cpl.videoMemoryMb);
    addXmlAttribute(b, 3, "video_memory_size", formatText("%d", cpl.videoMemoryMb));
    addReportLine(b, "- NVIDIA CPL: Number of GPUs: %ld", cpl.gpuCount);
    addXmlAttribute(b, 3, "num_gpus", formatText("%ld", cpl.gpuCount));
    addReportLine(b, "- NVIDIA CPL: Number of SLI GPUs: %ld", cpl.sliGpuCount);
    addXmlAttribute(b, 3, "num_sli_gpus", formatText("%ld", cpl.sliGpuCount));
    addReportLine(b, "- NVIDIA CPL: SLI rendering mode: %s", cpl.sliRenderingMode.c_str());
    addXmlAttribute(b, 3, "sli_rendering_mode", cpl.sliRenderingMode);
    addReportXml(b, "\n\t\t/>");
}

}  // namespace

// Linux drivers publish no OpenGL threading setting to read, so this section shows the control panel values
// alone.
void addMiscSection(ReportBuffers& b, const ReportSnapshot& s) {
    if (s.system.osIsVista) return;
    addBlankLine(b);
    addBlankLine(b);
    addHeading(b, "Misc.");
    if (s.primaryIsNvidia && s.nvidiaControlPanel && s.nvidiaControlPanel->coreTemperatureC != 0)
        addControlPanel(b, *s.nvidiaControlPanel);
}

// Only a report made after the tools panel chose its link tables has these; a batch report never does.
void addLinkSections(ReportBuffers& b, const ReportSnapshot& s) {
    if (!s.links) return;
    addBlankLine(b);
    addBlankLine(b);
    addHeading(b, "Related Graphics Drivers");
    addReportXml(b, "\n\t<graphics_drivers>");
    for (const ReportLink& link : s.links->drivers) {
        addReportLine(b, "- %s", link.url.c_str());
        addReportXml(b, "\n\t\t<driver url=\"%s\" />", xmlEscaped(link.url).c_str());
    }
    addReportXml(b, "\n\t</graphics_drivers>");

    addBlankLine(b);
    addBlankLine(b);
    addHeading(b, "Related Graphics Cards Reviews");
    addReportXml(b, "\n\t<graphics_cards_reviews>");
    const std::string& adapter =
        s.primaryDisplayDeviceString.empty() ? s.gl.renderer : s.primaryDisplayDeviceString;
    for (const ReportLink& link : s.links->reviews) {
        if (adapter.find(link.key) == std::string::npos) continue;
        addReportLine(b, "- %s", link.url.c_str());
        addReportXml(b, "\n\t\t\t<review url=\"%s\" />", xmlEscaped(link.url).c_str());
    }
    addReportXml(b, "\n\t</graphics_cards_reviews>");
}

}  // namespace report
