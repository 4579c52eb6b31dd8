#pragma once

#include <string>

#include "base/text_format.h"
#include "report/report_buffers.h"
#include "report/report_snapshot.h"
#include "report/xml_text.h"

// The sections of the report in document order, and the small writing helpers they share. Internal to
// the report generator.
namespace report {

inline constexpr const char* kSectionRule = "===================================";

using base::formatText;

void addBlankLine(ReportBuffers& b);
// A section heading: the rule and the bracketed title.
void addHeading(ReportBuffers& b, const char* title);
// One attribute piece: a line feed, `tabs` tabs, name="value", the value escaped for XML.
void addXmlAttribute(ReportBuffers& b, int tabs, const char* name, const std::string& value);

void addBannerSection(ReportBuffers& b, const ReportSnapshot& s);
void addSystemSection(ReportBuffers& b, const ReportSnapshot& s);
void addNoDriverSection(ReportBuffers& b, const ReportSnapshot& s);
void addGraphicsAdaptersSection(ReportBuffers& b, const ReportSnapshot& s);
void addOpenGlCapsSection(ReportBuffers& b, const ReportSnapshot& s);
void addOpenGlExtensionsSection(ReportBuffers& b, const ReportSnapshot& s);
void addOpenGlCatalogueSection(ReportBuffers& b, const ReportSnapshot& s);
void addCudaSection(ReportBuffers& b, const ReportSnapshot& s);
void addOpenClSection(ReportBuffers& b, const ReportSnapshot& s);
void addMiscSection(ReportBuffers& b, const ReportSnapshot& s);
void addLinkSections(ReportBuffers& b, const ReportSnapshot& s);
// Last, so that every line of the sections before it stays where it was; a machine without a display has one.
void addVulkanSection(ReportBuffers& b, const ReportSnapshot& s);

}  // namespace report
