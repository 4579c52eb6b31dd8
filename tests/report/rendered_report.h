#pragma once

#include <string>
#include <utility>
#include <vector>

#include "report/report_snapshot.h"

// The three files of one snapshot as the batch branch writes them, read back into memory.
struct RenderedReport {
    std::string displayText;
    std::string text;
    std::string xml;
    std::string json;
};

RenderedReport renderReport(const report::ReportSnapshot& snapshot);

// The golden machines, by the file name stem their golden files carry.
std::vector<std::pair<std::string, report::ReportSnapshot>> goldenMachines();
