#pragma once

#include "app/panels/panel.h"

class QComboBox;

namespace panels {

// The "CUDA" tab: the number of CUDA devices and one device's limits at a time, picked in the combo. Filled
// once, when it is made, from the records of CUDA discovery; with no device everything is greyed.
class CudaPanel : public Panel {
public:
    CudaPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library);

    // Writes every field of one device; out of range does nothing.
    void showDevice(int device);

private:
    void _fill();

    QComboBox* m_devices = nullptr;
};

}  // namespace panels
