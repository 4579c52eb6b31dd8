#pragma once

#include "app/panels/panel.h"

class QComboBox;

namespace panels {

// The "Tools" tab: a summary of the machine, the running 3D applications, the report dialog and web links
// chosen by the maker of the primary graphics card. Choosing the links here is what gives the report its two
// link sections.
class ToolsPanel : public Panel {
public:
    ToolsPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library);

    void initToolsPanel();

private:
    void _openSelectedReview(int row);
    void _showActive3DApps();
    void _showReportDialog();
    void _startSystemInformationTool();

    QComboBox* m_reviews = nullptr;
};

// Desktop programs that show what the machine is made of, in the order they are tried.
const char* const* systemInformationTools(size_t* count);

}  // namespace panels
