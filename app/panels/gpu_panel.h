#pragma once

#include "app/panels/panel.h"

class QComboBox;
class QLabel;

namespace panels {

// Fields the timer refreshes: fan, load, power, temperature, voltage, current and highest clocks.
inline constexpr int kGpuLiveFields[] = {1012, 1013, 1014, 1015, 1129, 1137, 1140};

// The "GPU" tab: one GPU at a time, picked in the combo, with its fixed values, its live sensors and the
// machine's OpenGL, OpenCL, CUDA, PhysX and multi-GPU support. Everything shown is read from the library
// when it is shown; the panel keeps nothing.
class GpuPanel : public Panel {
public:
    GpuPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library);

    // Fills the panel once, at creation: the GPU list and the first GPU, or the primary summary, or the
    // no-driver state.
    void initGpuPanel();
    void selectGpu(int gpu);
    void refreshGpuStatic(int gpu);
    void refreshMachineSummary();
    void refreshGpuLive(int gpu);
    void refreshTemperature();
    // One tick of the main window's timer for the selected GPU. A GPU that sleeps is only asked whether it
    // still sleeps, and its live fields stay empty.
    void refreshOnTick();

    // The OpenGL panel whose memory line a selection refreshes; null leaves it alone.
    void setOpenGlPanel(QWidget* panel) { m_openglPanel = panel; }

private:
    void _enterNoDriverState();
    void _showPrimarySummary();
    void _blankLiveFields();
    void _setLiveFieldsEnabled(bool enabled);
    void _showVendorLogo();
    void _startCompanionTool();

    QComboBox* m_gpuList = nullptr;
    QLabel* m_logo = nullptr;
    QWidget* m_openglPanel = nullptr;
};

// The OpenGL panel's memory line from the library's OpenGL memory queries; leaves the line as it is when the
// driver offers neither query or the panel has no such line.
void refreshOpenGlMemory(QWidget* openglPanel, Kalidornm::Kalidor& library);

// The text of the temperature field: "%.1f°C / %.1f°F", empty for 0 or below.
QString temperatureText(float celsius);

}  // namespace panels
