// The options dialog a Start button opens: what it shows for a demo, how Go! reads and cuts the window size
// and picks the multisampling, and what Cancel, Esc and the benchmark button leave behind.
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

#include "app/message_boxes.h"
#include "app/panels/demo_options_dialog.h"
#include "demos/harness/demo_table.h"
#include "tests/panels/window_machine.h"
#include "tests/panels/window_wait.h"

namespace {

using panels::DemoOptionsDialog;
using panels::findControl;

std::vector<std::string> gOpened;
void recordOpened(const char* target) { gOpened.push_back(target); }

class DemoOptionsDialogTest : public WindowMachine {
protected:
    // A machine whose driver offers 2, 4 and 8 samples and viewports up to 4096 pixels.
    Kalidornm::Kalidor& startWithDriverLimits() {
        Kalidornm::Kalidor& library = start("amdgpu-rx6800");
        library.caps()->gl.msaaModes = {{11, 2}, {12, 4}, {13, 8}};
        Kalidornm::gGlobals.summary.glNumbers.maxViewportSize = 4096;
        Kalidornm::gGlobals.snapshot.reset();  // read again, with the limits set here
        return library;
    }
    static const DemoDescriptor& demo(int row) { return *demoDescriptor(DemoPicker::OpenGl, row); }
    static void type(DemoOptionsDialog& dialog, int id, const QString& text) {
        auto* field = findControl<QLineEdit>(&dialog, id);
        ASSERT_NE(field, nullptr) << id;
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, text);
    }
    static void click(DemoOptionsDialog& dialog, int id) {
        auto* button = findControl<QPushButton>(&dialog, id);
        ASSERT_NE(button, nullptr) << id;
        QTest::mouseClick(button, Qt::LeftButton);
    }
};

TEST_F(DemoOptionsDialogTest, ShowsTheDemoItsBenchmarkTheCommandLineSizeAndTheDriversModes) {
    Kalidornm::Kalidor& library = startWithDriverLimits();
    state.demo.winWidth = 640;
    state.demo.winHeight = 480;
    state.demo.msaaSamples = 4;  // what the command line asked for; the dialog starts from "NONE"

    int benchmarkRow = -1, plainRow = -1;
    for (int row = 0; row < demoPickerRows(DemoPicker::OpenGl); ++row)
        (*demo(row).benchmarkUrl ? benchmarkRow : plainRow) = row;
    ASSERT_GE(benchmarkRow, 0);
    ASSERT_GE(plainRow, 0);

    DemoOptionsDialog withBenchmark(nullptr, state, library, demo(benchmarkRow));
    EXPECT_EQ(withBenchmark.objectName(), "id161");
    EXPECT_EQ(withBenchmark.windowTitle(), QString::fromLatin1(demo(benchmarkRow).title));
    const QString description = findControl<QPlainTextEdit>(&withBenchmark, 1128)->toPlainText();
    EXPECT_FALSE(description.contains('\r'));
    EXPECT_EQ(description, QString::fromLatin1(demo(benchmarkRow).description).remove('\r'));
    EXPECT_EQ(findControl<QLabel>(&withBenchmark, 1125)->text(), kBenchmarkAvailableText);
    EXPECT_EQ(findControl<QLineEdit>(&withBenchmark, 1124)->text(),
              QString::fromLatin1(demo(benchmarkRow).benchmarkUrl));
    EXPECT_TRUE(findControl<QPushButton>(&withBenchmark, 1126)->isEnabled());
    EXPECT_EQ(findControl<QLineEdit>(&withBenchmark, 1108)->text(), "640");
    EXPECT_EQ(findControl<QLineEdit>(&withBenchmark, 1109)->text(), "480");
    const auto* msaa = findControl<QComboBox>(&withBenchmark, 1134);
    ASSERT_EQ(msaa->count(), 4);
    EXPECT_EQ(msaa->itemText(0), "NONE");
    EXPECT_EQ(msaa->itemText(1), "2X");
    EXPECT_EQ(msaa->itemText(3), "8X");
    EXPECT_EQ(msaa->currentIndex(), 0);
    EXPECT_EQ(state.demo.msaaSamples, 0);

    // The benchmark button hands its page to the desktop and leaves the dialog open.
    gOpened.clear();
    setUrlOpener(recordOpened);
    withBenchmark.open();
    click(withBenchmark, 1126);
    setUrlOpener(nullptr);
    EXPECT_EQ(gOpened, std::vector<std::string>{demo(benchmarkRow).benchmarkUrl});
    EXPECT_TRUE(withBenchmark.isVisible());

    DemoOptionsDialog plain(nullptr, state, library, demo(plainRow));
    EXPECT_EQ(findControl<QLabel>(&plain, 1125)->text(), kNoBenchmarkText);
    EXPECT_EQ(findControl<QLineEdit>(&plain, 1124)->text(), "");
    EXPECT_FALSE(findControl<QPushButton>(&plain, 1126)->isEnabled());

    const DemoDescriptor undescribed{"Bare", "", ""};
    DemoOptionsDialog bare(nullptr, state, library, undescribed);
    EXPECT_EQ(findControl<QPlainTextEdit>(&bare, 1128)->toPlainText(), kNoDemoDescriptionText);
}

TEST_F(DemoOptionsDialogTest, GoCutsTheSizeToTheLargestViewportAndKeepsTheChosenSamples) {
    Kalidornm::Kalidor& library = startWithDriverLimits();
    state.demo.winWidth = 600;
    state.demo.winHeight = 600;
    struct Case {
        QString width, height;
        int msaaRow;
        int32_t expectedWidth, expectedHeight, expectedMsaa;
    };
    const Case cases[] = {
        {"800", "450", 0, 800, 450, 0},
        {"5000", "4096", 2, 4096, 4096, 4},        // above the viewport limit: cut down to it
        {"wide", "  300px", 3, 0, 300, 8},         // no number gives 0; a number goes up to its first non-digit
        {"-20", "99999999999999", 1, -20, 4096, 2},  // no lower bound; an overflowing text is still cut
    };
    for (const Case& c : cases) {
        DemoOptionsDialog dialog(nullptr, state, library, demo(2));
        type(dialog, 1108, c.width);
        type(dialog, 1109, c.height);
        findControl<QComboBox>(&dialog, 1134)->setCurrentIndex(c.msaaRow);
        QTimer::singleShot(0, &dialog, [&] {
            click(dialog, DemoOptionsDialog::kIdGo);
            if (dialog.isVisible()) dialog.done(0);  // Go! did not end it
        });
        EXPECT_EQ(dialog.exec(), DemoOptionsDialog::kIdGo) << c.width.toStdString();
        EXPECT_EQ(dialog.chosenWidth(), c.expectedWidth) << c.width.toStdString();
        EXPECT_EQ(dialog.chosenHeight(), c.expectedHeight) << c.height.toStdString();
        EXPECT_EQ(state.demo.msaaSamples, c.expectedMsaa) << c.msaaRow;
    }
    // The size typed is for one start; the command line's stays for the next dialog.
    EXPECT_EQ(state.demo.winWidth, 600);
    EXPECT_EQ(state.demo.winHeight, 600);
}

TEST_F(DemoOptionsDialogTest, CancelEscapeAndTheCloseBoxEndItWithoutGo) {
    Kalidornm::Kalidor& library = startWithDriverLimits();
    const std::function<void(DemoOptionsDialog&)> ways[] = {
        [](DemoOptionsDialog& d) { click(d, DemoOptionsDialog::kIdCancel); },
        [](DemoOptionsDialog& d) { QTest::keyClick(&d, Qt::Key_Escape); },
        [](DemoOptionsDialog& d) { d.close(); },
    };
    int way = 0;
    for (const auto& end : ways) {
        state.demo.msaaSamples = 8;
        DemoOptionsDialog dialog(nullptr, state, library, demo(1));
        findControl<QComboBox>(&dialog, 1134)->setCurrentIndex(2);
        QTimer::singleShot(0, &dialog, [&] {
            end(dialog);
            if (dialog.isVisible()) dialog.done(DemoOptionsDialog::kIdGo);  // it stayed open: fail, never hang
        });
        EXPECT_NE(dialog.exec(), DemoOptionsDialog::kIdGo) << way;
        EXPECT_EQ(state.demo.msaaSamples, 0) << way;  // set when the dialog opened, and not chosen since
        ++way;
    }
}

}  // namespace
