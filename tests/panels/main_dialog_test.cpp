// The main window on fixture machines: tabs and their panels, the refresh timer, minimising, the ways it ends,
// and boxes asked for from other threads.
#include <sys/inotify.h>
#include <unistd.h>

#include <QComboBox>
#include <QGuiApplication>
#include <QMessageBox>
#include <QTabBar>
#include <QWindow>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <set>
#include <thread>
#include <utility>

#include "app/message_boxes.h"
#include "app/panels/cuda_panel.h"
#include "app/panels/gpu_panel.h"
#include "app/panels/main_dialog.h"
#include "app/panels/opencl_panel.h"
#include "app/panels/opengl_panel.h"
#include "app/panels/qt_message_boxes.h"
#include "app/panels/tools_panel.h"
#include "app/panels/validation_panel.h"
#include "app/panels/vulkan_panel.h"
#include "demos/harness/demo_table.h"
#include "tests/panels/window_machine.h"
#include "tests/panels/window_wait.h"

namespace {

using panels::MainDialog;

class MainDialogTest : public WindowMachine {
protected:
    MainDialog& openDialog(Kalidornm::Kalidor& library) {
        m_dialog = std::make_unique<MainDialog>(state, library);
        m_dialog->start(nullptr);
        return *m_dialog;
    }
    void TearDown() override {
        m_dialog.reset();
        WindowMachine::TearDown();
    }
    std::unique_ptr<MainDialog> m_dialog;
};

TEST_F(MainDialogTest, TabItemDataPicksThePanelNotThePosition) {
    MainDialog& dialog = openDialog(start("amdgpu-rx6800"));
    QTabBar* tabs = dialog.tabBar();
    ASSERT_EQ(tabs->count(), 7);
    EXPECT_EQ(tabs->tabText(2), "Vulkan");
    EXPECT_EQ(tabs->tabData(2).toInt(), 5);
    EXPECT_EQ(tabs->tabText(6), "Validation");
    EXPECT_EQ(tabs->tabData(6).toInt(), 6);
    // Seven tabs fit the window: the last one is not cut at its right edge.
    EXPECT_LE(tabs->tabRect(6).right(), tabs->width() - 1);

    const auto visiblePanels = [&] {
        int visible = 0;
        for (int data : {0, 1, 2, 3, 4, 5, 6}) visible += dialog.panelForTabData(data)->isVisibleTo(&dialog) ? 1 : 0;
        return visible;
    };
    EXPECT_TRUE(dynamic_cast<panels::GpuPanel*>(dialog.panelForTabData(tabs->tabData(0).toInt())));
    EXPECT_TRUE(dialog.panelForTabData(0)->isVisibleTo(&dialog));
    EXPECT_EQ(visiblePanels(), 1);

    tabs->setCurrentIndex(6);
    QWidget* shown = dialog.panelForTabData(6);
    EXPECT_TRUE(dynamic_cast<panels::ValidationPanel*>(shown));
    EXPECT_TRUE(shown->isVisibleTo(&dialog));
    EXPECT_EQ(visiblePanels(), 1);

    const std::pair<int, bool (*)(QWidget*)> panelOfTab[] = {
        {1, [](QWidget* w) { return dynamic_cast<panels::OpenGLPanel*>(w) != nullptr; }},
        {2, [](QWidget* w) { return dynamic_cast<panels::VulkanPanel*>(w) != nullptr; }},
        {3, [](QWidget* w) { return dynamic_cast<panels::CudaPanel*>(w) != nullptr; }},
        {4, [](QWidget* w) { return dynamic_cast<panels::OpenCLPanel*>(w) != nullptr; }},
        {5, [](QWidget* w) { return dynamic_cast<panels::ToolsPanel*>(w) != nullptr; }},
    };
    for (auto [index, isExpected] : panelOfTab) {
        tabs->setCurrentIndex(index);
        EXPECT_TRUE(isExpected(dialog.panelForTabData(tabs->tabData(index).toInt()))) << index;
        EXPECT_TRUE(dialog.panelForTabData(tabs->tabData(index).toInt())->isVisibleTo(&dialog)) << index;
        EXPECT_EQ(visiblePanels(), 1) << index;
    }
    // Anything unknown falls back to the OpenGL panel.
    for (int data : {7, -1, 1000}) EXPECT_TRUE(dynamic_cast<panels::OpenGLPanel*>(dialog.panelForTabData(data))) << data;

    // Ctrl+PageDown and Ctrl+PageUp step through the tabs, round the ends.
    tabs->setCurrentIndex(6);
    QTest::keyClick(&dialog, Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(tabs->currentIndex(), 0);
    QTest::keyClick(&dialog, Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(tabs->currentIndex(), 6);
}

TEST_F(MainDialogTest, StartSetsTitleTimerDemoPickersAndHandles) {
    MainDialog& dialog = openDialog(start("amdgpu-rx6800"));
    EXPECT_EQ(dialog.windowTitle(), "Orbiscale Lumenscope 1.26.0.0");
    EXPECT_TRUE(dialog.refreshTimer().isActive());
    EXPECT_EQ(dialog.refreshTimer().interval(), 1000);
    EXPECT_EQ(state.mainWindow, &dialog);
    EXPECT_EQ(state.gpuPanel, dialog.panelForTabData(0));
    EXPECT_EQ(state.validationPanel, dialog.panelForTabData(6));

    auto* glDemos = panels::findControl<QComboBox>(&dialog, 1135);
    auto* clDemos = panels::findControl<QComboBox>(&dialog, 1136);
    ASSERT_TRUE(glDemos && clDemos);
    // The pickers hold the demo table's picker rows, in their order.
    for (auto [combo, picker] : {std::pair(glDemos, DemoPicker::OpenGl), std::pair(clDemos, DemoPicker::OpenCl)}) {
        ASSERT_EQ(combo->count(), demoPickerRows(picker));
        for (int row = 0; row < combo->count(); ++row) {
            EXPECT_EQ(combo->itemText(row), QString::fromLatin1(demoDescriptor(picker, row)->title));
            EXPECT_EQ(combo->itemData(row).toInt(), row);
        }
    }
    EXPECT_EQ(glDemos->currentIndex(), 0);
    glDemos->setCurrentIndex(4);
    clDemos->setCurrentIndex(6);
    EXPECT_EQ(state.selectedGlDemo, 4);
    EXPECT_EQ(state.selectedClDemo, 6);

    m_dialog.reset();
    EXPECT_EQ(state.mainWindow, nullptr);
    EXPECT_EQ(state.gpuPanel, nullptr);
}

TEST_F(MainDialogTest, RefreshGoesOnWhileAnotherTabIsShown) {
    const std::string root = copyOfFixture("amdgpu-rx6800");
    MainDialog& dialog = openDialog(startOn(root));
    QWidget* gpuPanel = dialog.panelForTabData(0);
    ASSERT_EQ(panels::fieldText(gpuPanel, 1015), QString::fromUtf8("45.0\u00B0C / 113.0\u00B0F"));
    dialog.tabBar()->setCurrentIndex(4);
    ASSERT_FALSE(gpuPanel->isVisibleTo(&dialog));

    std::filesystem::path temperature;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
        if (entry.path().filename() == "temp1_input") temperature = entry.path();
    ASSERT_FALSE(temperature.empty());
    std::ofstream(temperature) << "61000\n";
    // The window's own timer, at its own pace.
    EXPECT_TRUE(waitUntil([&] { return panels::fieldText(gpuPanel, 1015) == QString::fromUtf8("61.0\u00B0C / 141.8\u00B0F"); }))
        << panels::fieldText(gpuPanel, 1015).toStdString();
}

// Watches every directory below `top` for files being opened. Directories opened for reading their entries
// come back as "dir:<name>".
class OpenedFiles {
public:
    explicit OpenedFiles(const std::filesystem::path& top) : m_fd(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        addWatch(top);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(top))
            if (entry.is_directory() && !entry.is_symlink()) addWatch(entry.path());
    }
    ~OpenedFiles() { close(m_fd); }
    bool watching() const { return m_fd >= 0 && m_watches > 0; }
    std::multiset<std::string> take() {
        std::multiset<std::string> names;
        alignas(inotify_event) char buffer[8192];
        for (ssize_t got; (got = read(m_fd, buffer, sizeof buffer)) > 0;)
            for (char* at = buffer; at < buffer + got;) {
                const auto* event = reinterpret_cast<const inotify_event*>(at);
                const std::string name = event->len ? event->name : ".";
                names.insert((event->mask & IN_ISDIR) ? "dir:" + name : name);
                at += sizeof(inotify_event) + event->len;
            }
        return names;
    }

private:
    void addWatch(const std::filesystem::path& dir) {
        if (inotify_add_watch(m_fd, dir.c_str(), IN_OPEN) >= 0) ++m_watches;
    }
    int m_fd;
    int m_watches = 0;
};

TEST_F(MainDialogTest, SleepingGpuIsAskedNothingButItsPowerStateOverTenTicks) {
    const std::string root = copyOfFixture("amdgpu-suspended");
    Kalidornm::Kalidor& library = startOn(root);
    ASSERT_GE(state.gpuCount, 1u);
    ASSERT_TRUE(library.isGpuSuspended(0));
    MainDialog& dialog = openDialog(library);
    ASSERT_EQ(state.selectedGpu, 0);

    std::filesystem::path device;
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(root) / "sys/bus/pci/devices"))
        if (std::ifstream(entry.path() / "power/runtime_status").good()) {
            std::string status;
            std::ifstream(entry.path() / "power/runtime_status") >> status;
            if (status == "suspended") device = entry.path();
        }
    ASSERT_FALSE(device.empty());
    OpenedFiles opened(std::filesystem::canonical(device));
    ASSERT_TRUE(opened.watching());
    opened.take();

    // Events are read after each tick: the kernel folds identical events that nobody has read yet.
    for (int tick = 0; tick < 10; ++tick) {
        dialog.refreshTick();
        EXPECT_EQ(opened.take(), std::multiset<std::string>{"runtime_status"}) << "tick " << tick;
    }
    QWidget* gpuPanel = dialog.panelForTabData(0);
    for (int id : panels::kGpuLiveFields) {
        EXPECT_EQ(panels::fieldText(gpuPanel, id), QString()) << id;
        EXPECT_FALSE(enabled(gpuPanel, id)) << id;
    }
}

TEST_F(MainDialogTest, TickOfAnAwakeCardOpensItsOwnFilesOnlyAndListsNoDirectory) {
    namespace fs = std::filesystem;
    const std::string root = copyOfFixture("amdgpu-rx6800");
    MainDialog& dialog = openDialog(startOn(root));
    std::set<std::string> cardFiles;
    for (const auto& device : fs::directory_iterator(fs::path(root) / "sys/bus/pci/devices"))
        for (const auto& entry : fs::recursive_directory_iterator(device.path()))
            if (entry.is_regular_file()) cardFiles.insert(entry.path().filename());
    OpenedFiles opened(root);
    ASSERT_TRUE(opened.watching());
    opened.take();

    dialog.refreshTick();
    const std::multiset<std::string> names = opened.take();
    EXPECT_FALSE(names.empty());
    for (const std::string& name : names) EXPECT_TRUE(cardFiles.count(name)) << name;
}

TEST_F(MainDialogTest, MinimisedWindowSlowsTheDemosDown) {
    MainDialog& dialog = openDialog(start("amdgpu-rx6800"));
    dialog.show();
    dialog.showMinimized();
    EXPECT_EQ(state.demoThrottleMs, 50u);
    EXPECT_TRUE(dialog.refreshTimer().isActive());
    dialog.showNormal();
    EXPECT_EQ(state.demoThrottleMs, 0u);
}

TEST_F(MainDialogTest, EscapeCloseBoxAndRequestFromAnotherThreadEndTheWindowAlike) {
    Kalidornm::Kalidor& library = start("amdgpu-rx6800");
    const std::function<void(MainDialog&)> ways[] = {
        [](MainDialog& d) { QTest::keyClick(&d, Qt::Key_Escape); },
        [](MainDialog& d) { d.close(); },
        [](MainDialog&) { std::thread([] { MainDialog::requestClose(); }).join(); },
    };
    int way = 0;
    for (const auto& end : ways) {
        MainDialog& dialog = openDialog(library);
        // While the window runs, nothing is modal: a window without an owner (the newer-version dialog) must
        // take clicks and keys beside it.
        QWindow* modal = nullptr;
        QTimer::singleShot(0, &dialog, [&] {
            modal = QGuiApplication::modalWindow();
            end(dialog);
        });
        EXPECT_EQ(dialog.runUntilClosed(), 2) << way;
        EXPECT_EQ(modal, nullptr) << way;
        EXPECT_FALSE(dialog.isVisible()) << way;
        EXPECT_FALSE(dialog.refreshTimer().isActive()) << way;
        ++way;
    }
}

TEST_F(MainDialogTest, BoxFromAnotherThreadWaitsUntilTheMainThreadClosedIt) {
    panels::installQtMessageBoxes();
    std::atomic<bool> returned{false};
    QString title, text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    bool askerWaitedForTheBox = false;
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, [&] {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* box = qobject_cast<QMessageBox*>(window);
            if (!box || !box->isVisible()) continue;
            title = box->windowTitle();
            text = box->text();
            icon = box->icon();
            askerWaitedForTheBox = !returned;
            box->accept();
        }
    });
    closer.start(20);
    std::thread asker([&] {
        showWarningBox("Demo %d failed.\n\rSee the log.", 3);
        returned = true;
    });
    EXPECT_TRUE(waitUntil([&] { return returned.load(); }, 5000));
    asker.join();
    closer.stop();
    panels::removeQtMessageBoxes();
    EXPECT_TRUE(askerWaitedForTheBox);
    EXPECT_EQ(title, "Lumenscope Warning");
    EXPECT_EQ(text, "Demo 3 failed.\nSee the log.");
    EXPECT_EQ(icon, QMessageBox::Warning);
}

}  // namespace
