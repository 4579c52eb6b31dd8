#pragma once

#include <QDialog>

struct AppState;

namespace Kalidornm {
class Kalidor;
}

namespace report {
struct ReportSnapshot;
}

namespace panels {

// "Report": the text report in a read-only box, and the two exports. The report is generated the first time
// the dialog opens and kept for the rest of the run, so a second opening shows the same values.
class ReportDialog : public QDialog {
public:
    ReportDialog(QWidget* parent, AppState& state, Kalidornm::Kalidor& library);

private:
    void _export(bool xml);

    AppState& m_state;
    Kalidornm::Kalidor& m_library;
};

// What the report prints, read now from the library, with the application's values and the link tables the
// tools panel chose.
void fillWindowReportSnapshot(report::ReportSnapshot& snapshot, const AppState& state, Kalidornm::Kalidor& library);

}  // namespace panels
