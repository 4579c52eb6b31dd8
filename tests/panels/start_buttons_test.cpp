// The main window's two Start buttons on fixture machines: what the OpenGL button refuses and with which box,
// which demo's options it opens, and what the OpenCL button reads from the OpenCL panel.
#include <QComboBox>
#include <QPushButton>
#include <QTimer>
#include <memory>
#include <string>
#include <vector>

#include "app/message_boxes.h"
#include "app/panels/demo_options_dialog.h"
#include "app/panels/main_dialog.h"
#include "app/panels/opencl_demo_choice.h"
#include "demos/harness/demo_launcher.h"
#include "demos/harness/demo_table.h"
#include "tests/panels/window_machine.h"
#include "tests/panels/window_wait.h"

namespace {

using panels::findControl;
using panels::MainDialog;

struct ShownBox {
    MessageBoxKind kind;
    std::string title, text;
};
std::vector<ShownBox> gBoxes;
void recordBox(MessageBoxKind kind, const char* title, const char* text) { gBoxes.push_back({kind, title, text}); }

class StartButtonsTest : public WindowMachine {
protected:
    MainDialog& openDialog(Kalidornm::Kalidor& library) {
        m_dialog = std::make_unique<MainDialog>(state, library);
        m_dialog->start(nullptr);
        gBoxes.clear();
        setMessageBoxPresenter(recordBox);
        return *m_dialog;
    }
    void TearDown() override {
        setMessageBoxPresenter(nullptr);
        m_dialog.reset();
        WindowMachine::TearDown();
    }
    // Presses a Start button; an options dialog that opens is noted and cancelled.
    QStringList press(int buttonId) {
        QStringList optionsShown;
        QTimer watcher;
        QObject::connect(&watcher, &QTimer::timeout, [&] {
            for (QWidget* window : QApplication::topLevelWidgets())
                if (auto* options = dynamic_cast<panels::DemoOptionsDialog*>(window); options && options->isVisible()) {
                    optionsShown << options->windowTitle();
                    options->done(panels::DemoOptionsDialog::kIdCancel);
                }
        });
        watcher.start(10);
        QTest::mouseClick(findControl<QPushButton>(m_dialog.get(), buttonId), Qt::LeftButton);
        return optionsShown;
    }
    std::unique_ptr<MainDialog> m_dialog;
};

TEST_F(StartButtonsTest, OldOpenGlGetsTheRowsErrorBoxAndNoOptionsDialog) {
    // The fixture machine has no OpenGL 2.0: no capability flag is set and the version stays 1.1.
    Kalidornm::Kalidor& library = start("amdgpu-rx6800");
    ASSERT_FALSE(library.isGlVersionAtLeast(2, 0));
    MainDialog& dialog = openDialog(library);

    findControl<QComboBox>(&dialog, 1135)->setCurrentIndex(3);
    EXPECT_TRUE(press(1111).isEmpty());
    ASSERT_EQ(gBoxes.size(), 1u);
    EXPECT_EQ(gBoxes[0].kind, MessageBoxKind::Error);
    EXPECT_EQ(gBoxes[0].title, "Lumenscope Error");
    EXPECT_EQ(gBoxes[0].text, "This demo requires the support of OpenGL 2.0.");

    // A selection the table does not hold starts the cel-shading row, which needs OpenGL 2.0 as well.
    state.selectedGlDemo = 42;
    EXPECT_TRUE(press(1111).isEmpty());
    ASSERT_EQ(gBoxes.size(), 2u);
    EXPECT_EQ(gBoxes[1].text, "This demo requires the support of OpenGL 2.0.");

    // Enough OpenGL for the shadows but no framebuffer objects: that row's own message.
    library.caps()->capabilityFlags[25] = true;
    findControl<QComboBox>(&dialog, 1135)->setCurrentIndex(6);
    EXPECT_TRUE(press(1111).isEmpty());
    ASSERT_EQ(gBoxes.size(), 3u);
    EXPECT_EQ(gBoxes[2].text, "This demo requires the support of OpenGL 2.0 and FBO.");
    EXPECT_FALSE(anyDemoRunning());
}

TEST_F(StartButtonsTest, ADemoThatNeedsNothingOpensItsOwnOptionsAndCancelStartsNothing) {
    MainDialog& dialog = openDialog(start("amdgpu-rx6800"));
    findControl<QComboBox>(&dialog, 1135)->setCurrentIndex(2);
    const QStringList shown = press(1111);
    EXPECT_EQ(shown, QStringList{QString::fromLatin1(demoDescriptor(DemoPicker::OpenGl, 2)->title)});
    EXPECT_TRUE(gBoxes.empty());
    EXPECT_FALSE(anyDemoRunning());
}

TEST_F(StartButtonsTest, OpenClChoiceIsReadFromThePanelsCombosAndFallsBackToTheFirst) {
    const OpenClDemoChoice none = panels::readOpenClDemoChoice(nullptr);
    EXPECT_EQ(none.platform, 0u);
    EXPECT_EQ(none.gpuDevice, 0);
    EXPECT_EQ(none.cpuDevice, 0);

    QWidget panel;
    auto combo = [&](int id, int items, int selected) {
        auto* box = new QComboBox(&panel);
        box->setObjectName(panels::controlName(id));
        for (int i = 0; i < items; ++i) box->addItem(QString::asprintf("dev %d", i), i);
        box->setCurrentIndex(selected);
        return box;
    };
    combo(1183, 2, 1);
    combo(1237, 3, 2);
    QComboBox* cpu = combo(1238, 2, 1);
    // A platform without CPU devices greys the combo and leaves the choice made before.
    cpu->setEnabled(false);
    const OpenClDemoChoice chosen = panels::readOpenClDemoChoice(&panel);
    EXPECT_EQ(chosen.platform, 1u);
    EXPECT_EQ(chosen.gpuDevice, 2);
    EXPECT_EQ(chosen.cpuDevice, 1);

    // Combos the panel has not filled, or filled with lines that carry no number, choose the first.
    QWidget unfilled;
    auto* empty = new QComboBox(&unfilled);
    empty->setObjectName(panels::controlName(1237));
    auto* textOnly = new QComboBox(&unfilled);
    textOnly->setObjectName(panels::controlName(1238));
    textOnly->addItem("dev 0");
    const OpenClDemoChoice fallback = panels::readOpenClDemoChoice(&unfilled);
    EXPECT_EQ(fallback.gpuDevice, 0);
    EXPECT_EQ(fallback.cpuDevice, 0);
}

}  // namespace
