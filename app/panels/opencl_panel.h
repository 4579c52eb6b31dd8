#pragma once

#include "app/panels/panel.h"

class QComboBox;

namespace panels {

// The demo devices picked in the OpenCL panel for its current platform: ordinals among the platform's
// devices whose type is exactly GPU or exactly CPU, not positions in its device list. -1 where a combo has no
// line. A greyed combo (the platform has no such device) still answers the line it kept.
struct ClDemoDeviceChoice {
    int gpuOrdinal = -1;
    int cpuOrdinal = -1;
};

// The "OpenCL" tab: the platforms, one device of the chosen platform at a time with its limits, the detail
// dialog, and the devices the OpenCL demos are to use. Filled once, when it is made, from the records of
// OpenCL discovery; it writes the platform and the shown device into the application state.
class OpenCLPanel : public Panel {
public:
    OpenCLPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library);

    void showPlatform(int platform);
    // Writes every field of one device; nothing happens when either index is out of range.
    void showDevice(int platform, int device);
    // What the OpenCL Start button reads.
    ClDemoDeviceChoice demoDeviceChoice() const;
    // "More OpenCL information...": the detail dialog of the shown device, modal.
    void openDetailDialog();

private:
    void _fill();
    void _fillDemoDeviceCombos(int platform);
    void _setDeviceGroupEnabled(bool enabled);

    QComboBox* m_platforms = nullptr;
    QComboBox* m_devices = nullptr;
    QComboBox* m_gpuDemoDevices = nullptr;
    QComboBox* m_cpuDemoDevices = nullptr;
};

}  // namespace panels
