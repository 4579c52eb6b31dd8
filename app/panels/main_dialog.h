#pragma once

#include <QDialog>
#include <QTimer>
#include <cstdint>

struct AppState;
enum class DemoPicker : uint8_t;
class QComboBox;
class QTabBar;

namespace Kalidornm {
class Kalidor;
}

namespace panels {

class GpuPanel;

// The tab control: a tab bar over the page area in which the panels lie, one shown at a time.
class TabControl : public QWidget {
public:
    explicit TabControl(QWidget* parent);
    QTabBar* tabBar() const { return m_tabBar; }
    // Where a panel lies: the page area inside the frame, below the tab bar.
    QRect pageRect() const;
    // Puts the bar back to the height the pages were placed under.
    void fitTabBar();
    // Narrows the blank beside each tab's label where the tabs are wider than the control.
    void narrowTabsToFit();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QTabBar* m_tabBar;
    int m_barHeight = 0;
};

// The program's one main window: seven panels in a tab control, the two demo pickers and the one refresh timer.
class MainDialog : public QDialog {
public:
    // What a tab's item data selects; the data, not the tab's position, picks the panel.
    enum TabData {
        kTabGpu = 0,
        kTabOpenGl = 1,
        kTabCuda = 2,
        kTabOpenCl = 3,
        kTabTools = 4,
        kTabVulkan = 5,
        kTabValidation = 6
    };
    static constexpr int kRefreshPeriodMs = 1000;
    static constexpr int kInterruptWatchMs = 100;

    MainDialog(AppState& state, Kalidornm::Kalidor& library);
    ~MainDialog() override;

    // Title and icon, the panels, the tab items, the refresh timer, the demo pickers; then closes `splash`
    // (queued, so it goes when the window's event loop runs) and logs that start-up is done.
    void start(QWidget* splash);

    // Shows the window and runs the event loop until the window ends; returns the code it ended with. Unlike
    // QDialog::exec the window is not application-modal: Qt would then refuse input to every window without
    // an owner, such as the newer-version dialog the update check opens.
    int runUntilClosed();

    // One tick of the refresh timer: the OpenGL memory line, then the selected GPU's temperature and live
    // values.
    void refreshTick();

    // The panel a tab item data value shows; 1 and any value not in the tab table show the OpenGL panel.
    QWidget* panelForTabData(int tabData) const;
    GpuPanel* gpuPanel() const { return m_gpuPanel; }
    QTabBar* tabBar() const;
    const QTimer& refreshTimer() const { return m_refreshTimer; }

    // The two Start buttons: the selected demo's tests, its options dialog, then its start. False when
    // nothing started.
    bool startOpenGlDemo();
    bool startOpenClDemo();

    // Ends the window as its close box does; from any thread, queued to the window's own.
    static void requestClose();

protected:
    void reject() override;
    void accept() override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void _createPanels();
    void _insertTabItems();
    void _fillDemoPickers();
    bool _runDemoOptions(DemoPicker picker, int row, int32_t* width, int32_t* height);
    void _showPanelOfTab(int index);
    void _endMainDialog(int code);

    AppState& m_state;
    Kalidornm::Kalidor& m_library;
    TabControl* m_tabControl = nullptr;
    QComboBox* m_glDemos = nullptr;
    QComboBox* m_clDemos = nullptr;
    GpuPanel* m_gpuPanel = nullptr;
    QWidget* m_panels[7] = {};  // by tab item data
    QTimer m_refreshTimer;
    QTimer m_interruptWatch;  // Ctrl-C or SIGTERM from outside end the window as its close box does
};

}  // namespace panels
