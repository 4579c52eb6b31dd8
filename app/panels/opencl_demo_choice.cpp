#include "app/panels/opencl_demo_choice.h"

#include <QComboBox>

#include "app/panels/controls.h"

namespace panels {

namespace {

int32_t selectedNumber(const QWidget* panel, int id) {
    const auto* combo = findControl<QComboBox>(panel, id);
    if (!combo || combo->currentIndex() < 0) return 0;
    bool isNumber = false;
    const int value = combo->currentData().toInt(&isNumber);
    return isNumber && value >= 0 ? value : 0;
}

}  // namespace

OpenClDemoChoice readOpenClDemoChoice(const QWidget* openclPanel) {
    OpenClDemoChoice choice;
    choice.platform = uint32_t(selectedNumber(openclPanel, 1183));
    choice.gpuDevice = selectedNumber(openclPanel, 1237);
    choice.cpuDevice = selectedNumber(openclPanel, 1238);
    return choice;
}

}  // namespace panels
