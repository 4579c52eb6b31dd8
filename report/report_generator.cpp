#include "report_generator.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "report_sections.h"

namespace report {

std::string formatText(const char* format, ...) {
    char text[4096];
    va_list args;
    va_start(args, format);
    const int written = std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    return written < 0 ? std::string() : std::string(text);
}

void addBlankLine(ReportBuffers& b) { addReportLine(b, "%s", ""); }

void addHeading(ReportBuffers& b, const char* title) { addReportLine(b, "%s[ %s ]", kSectionRule, title); }

void addXmlAttribute(ReportBuffers& b, int tabs, const char* name, const std::string& value) {
    addReportXml(b, "\n%.*s%s=\"%s\"", tabs, "\t\t\t\t\t\t\t\t", name, value.c_str());
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
    b.generated = true;
}

namespace {

bool writeUpToZero(FILE* file, const char* text) {
    if (!text) return true;
    const size_t length = std::strlen(text);
    return std::fwrite(text, 1, length, file) == length;
}

}  // namespace

bool writeTextReport(const ReportBuffers& b, const char* path) {
    if (!path) return false;
    FILE* file = std::fopen(path, "w");
    if (!file) return false;
    writeUpToZero(file, b.fileText);
    std::fclose(file);
    return true;
}

bool writeXmlReport(const ReportBuffers& b, const ReportSnapshot& s, const char* path) {
    if (!path) return false;
    FILE* file = std::fopen(path, "w");
    if (!file) return false;
    std::fputs("<?xml version=\"1.0\" encoding=\"ISO-8859-1\" standalone=\"yes\"?>\n", file);
    std::fputs("<!--**********************************************************\n", file);
    std::fprintf(file, "* %s v%d.%d.%d.%d\n", s.programName.c_str(), s.versionMajor, s.versionMinor,
                 s.versionPatch, s.versionBuild);
    std::fprintf(file, "* Made by the %s developers\n", s.programName.c_str());
    std::fprintf(file, "* %s\n", s.homePage.c_str());
    std::fputs("***********************************************************-->\n", file);
    std::fputs("\n<lumen_scope>", file);
    writeUpToZero(file, b.xmlBody);
    std::fputs("\n\n</lumen_scope>", file);
    std::fclose(file);
    return true;
}

}  // namespace report
