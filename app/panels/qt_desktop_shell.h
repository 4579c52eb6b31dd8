#pragma once

#include <memory>

#include "app/desktop_shell.h"

class QApplication;

namespace panels {

class SplashDialog;

// The desktop shell on Qt Widgets. `argc` and `argv` are main's own: the toolkit keeps them for its life.
class QtDesktopShell : public DesktopShell {
public:
    QtDesktopShell(int& argc, char** argv);
    ~QtDesktopShell() override;

    bool connect(std::string* why) override;
    void showSplash() override;
    void closeSplash() override;
    void runMainDialog(AppState& state, Kalidornm::Kalidor& library) override;
    void disconnect() override;

private:
    int& m_argc;
    char** m_argv;
    std::unique_ptr<QApplication> m_application;
    std::unique_ptr<SplashDialog> m_splash;
};

}  // namespace panels
