#include "report/report_generator.h"

#include "report/report_file.h"
#include "report/report_sections.h"
#include "report/xml_text.h"

namespace report {

void addBlankLine(ReportBuffers& b) { addReportLine(b, "%s", ""); }

void addHeading(ReportBuffers& b, const char* title) { addReportLine(b, "%s[ %s ]", kSectionRule, title); }

void addXmlAttribute(ReportBuffers& b, int tabs, const char* name, const std::string& value) {
    addReportXml(b, "\n%.*s%s=\"%s\"", tabs, "\t\t\t\t\t\t\t\t", name, xmlEscaped(value).c_str());
}

void generateReport(ReportBuffers& b, const ReportSnapshot& s) {
    if (b.generated) return;
    addBannerSection(b, s);
    addSystemSection(b, s);
    if (!s.hasDisplayDevice) {
        addNoDriverSection(b, s);
    } else {
        addGraphicsAdaptersSection(b, s);
        addOpenGlCapsSection(b, s);
        addOpenGlExtensionsSection(b, s);
        addOpenGlCatalogueSection(b, s);
        addCudaSection(b, s);
        addOpenClSection(b, s);
        addMiscSection(b, s);
        addLinkSections(b, s);
    }
    addVulkanSection(b, s);
    b.generated = true;
}

std::string xmlReportText(const ReportBuffers& b, const ReportSnapshot& s) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
    xml += "<!--**********************************************************\n";
    xml += formatText("* %s v%s\n", s.programName.c_str(), s.programVersion.c_str());
    xml += formatText("* Made by the %s developers\n", s.programName.c_str());
    xml += formatText("* %s\n", s.homePage.c_str());
    xml += "***********************************************************-->\n";
    xml += "\n<lumen_scope>";
    xml += b.xmlBody;
    xml += "\n\n</lumen_scope>";
    return xml;
}

bool writeTextReport(const ReportBuffers& b, const char* path, int* error) {
    return writeReportFile(path, b.fileText, error);
}

bool writeXmlReport(const ReportBuffers& b, const ReportSnapshot& s, const char* path, int* error) {
    return writeReportFile(path, xmlReportText(b, s), error);
}

}  // namespace report
