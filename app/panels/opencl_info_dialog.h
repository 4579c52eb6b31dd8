#pragma once

#include <QDialog>

struct AppState;
class QListWidget;

namespace panels {

// "Lumenscope - OpenCL Information": every detail line of the platform and device the OpenCL panel shows.
class OpenClInfoDialog : public QDialog {
public:
    OpenClInfoDialog(QWidget* parent, const AppState& state);

    QListWidget* lines() const { return m_lines; }

private:
    QListWidget* m_lines = nullptr;
};

}  // namespace panels
