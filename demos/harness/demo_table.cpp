#include "demos/harness/demo_table.h"

#include <string_view>

namespace {

constexpr bool rowsStandInIdOrder() {
    for (size_t i = 0; i < kDemoCount; ++i)
        if (size_t(kDemoRows[i].id) != i) return false;
    return true;
}
static_assert(rowsStandInIdOrder(), "row i is the demo of id i");

// The parser finds options by substring, so no start option may hold another, nor two demos share one.
constexpr bool optionsAreApart() {
    for (const DemoRow& a : kDemoRows) {
        if (!std::string_view(a.option).starts_with("/start_demo_") || !*a.optionHelp) return false;
        for (const DemoRow& b : kDemoRows)
            if (a.id != b.id && std::string_view(b.option).find(a.option) != std::string_view::npos) return false;
    }
    return true;
}
static_assert(optionsAreApart(), "every start option is its own, and none holds another");

// The option list keeps the table's order: the rows whose option is listed last stand last.
constexpr bool optionsListedLastStandLast() {
    bool lastSeen = false;
    for (const DemoRow& demo : kDemoRows) {
        if (lastSeen && !demo.optionListedLast) return false;
        lastSeen = demo.optionListedLast;
    }
    return true;
}
static_assert(optionsListedLastStandLast(), "rows whose option is listed last stand at the end of the table");

// Each picker row holds exactly one demo, and the rows run from 0 without a gap: an OpenCL demo holds its
// GPU row and the CPU row below it.
constexpr bool pickerRowsAreDense(DemoPicker picker) {
    const int rows = demoPickerRows(picker);
    for (int row = 0; row < rows; ++row) {
        int holders = 0;
        for (const DemoRow& demo : kDemoRows) {
            if (demo.picker != picker) continue;
            const int held = picker == DemoPicker::OpenCl ? 2 : 1;
            if (row >= demo.pickerRow && row < demo.pickerRow + held) ++holders;
        }
        if (holders != 1) return false;
    }
    return true;
}
static_assert(pickerRowsAreDense(DemoPicker::OpenGl), "OpenGL picker rows are unique and without gaps");
static_assert(pickerRowsAreDense(DemoPicker::OpenCl), "OpenCL picker rows are unique and without gaps");

constexpr bool rowsAreComplete() {
    for (const DemoRow& demo : kDemoRows) {
        const bool openCl = demo.family == DemoFamily::OpenCl;
        if (openCl != (demo.picker == DemoPicker::OpenCl)) return false;
        if (!demo.shown.title || !*demo.shown.title || !demo.shown.description || !demo.shown.benchmarkUrl)
            return false;
        if (openCl != (demo.shownOnCpu.title != nullptr)) return false;
        if (openCl && (!*demo.shownOnCpu.title || !demo.shownOnCpu.description || !demo.shownOnCpu.benchmarkUrl))
            return false;
        if (!openCl && demo.warnsWithoutGlInterop) return false;
        if (openCl && demo.needs != DemoNeeds::Nothing) return false;  // the OpenCL Start button tests no GL
        // Whether a function pointer is null is no constant under the sanitizers: the tests check those.
        if (!demo.resultName || !*demo.resultName || !demo.windowFailureText) return false;
        for (const DemoRow& other : kDemoRows)
            if (other.id != demo.id && std::string_view(other.resultName) == demo.resultName) return false;
    }
    return true;
}
static_assert(rowsAreComplete(), "every row names and shows its demo, and its result name is its own");

}  // namespace

const DemoDescriptor* demoDescriptor(DemoPicker picker, int row) {
    const std::optional<DemoPick> pick = demoAtPickerRow(picker, row);
    if (!pick) return nullptr;
    const DemoRow& demo = demoRow(pick->id);
    return pick->clDeviceType == kClDeviceTypeCpu ? &demo.shownOnCpu : &demo.shown;
}

const DemoDescriptor& demoShown(DemoId id, uint32_t clDeviceType) {
    const DemoRow& demo = demoRow(id);
    return demo.family == DemoFamily::OpenCl && clDeviceType == kClDeviceTypeCpu ? demo.shownOnCpu : demo.shown;
}
