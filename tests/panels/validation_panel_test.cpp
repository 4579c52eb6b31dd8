// The Validation panel without a server: what its fields accept, the about text, the links, and the
// newer-version dialog that the update thread hands to the window.
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <thread>

#include "app/message_boxes.h"
#include "app/panels/update_dialog.h"
#include "app/panels/validation_panel.h"
#include "tests/panels/window_machine.h"
#include "tests/panels/window_wait.h"

namespace {

using panels::ValidationPanel;

std::vector<std::string> gOpened;

class ValidationPanelTest : public WindowMachine {
protected:
    void SetUp() override {
        gOpened.clear();
        setUrlOpener([](const char* target) { gOpened.push_back(target); });
    }
    void TearDown() override {
        m_panel.reset();
        setUrlOpener(nullptr);
        WindowMachine::TearDown();
    }
    ValidationPanel& openPanel() {
        m_panel = std::make_unique<ValidationPanel>(nullptr, state, start("amdgpu-rx6800"));
        return *m_panel;
    }
    QLineEdit* edit(int id) const { return panels::findControl<QLineEdit>(m_panel.get(), id); }

    std::unique_ptr<ValidationPanel> m_panel;
};

TEST_F(ValidationPanelTest, FieldsTakeNoMoreThanTheyHoldAndTheLinksGoToTheWebHostInUse) {
    ValidationPanel& panel = openPanel();
    EXPECT_EQ(edit(1141)->text(), "Anonymous");
    edit(1141)->clear();
    QTest::keyClicks(edit(1141), QString(35, 'n'));
    EXPECT_EQ(edit(1141)->text(), QString(30, 'n'));
    // The label says 16; what reaches the program is 14 characters, never shown in clear.
    QTest::keyClicks(edit(1143), "abcdefghijklmnop");
    EXPECT_EQ(edit(1143)->text(), "abcdefghijklmn");
    EXPECT_EQ(edit(1143)->echoMode(), QLineEdit::Password);

    EXPECT_TRUE(panels::findControl<QLabel>(&panel, 1279)->text().contains("panels.\n\nA webpage"));
    EXPECT_EQ(panels::findControl<QPushButton>(&panel, 1142)->text(), "Check for update");
    const QString about = panels::findControl<QLabel>(&panel, 1086)->text();
    const QRegularExpression head(R"(^Lumenscope v1\.26\.0 \(build: [A-Z][a-z]{2} [ \d]\d \d{4}@\d\d:\d\d:\d\d\)\n\n\S)");
    EXPECT_TRUE(head.match(about).hasMatch()) << about.toStdString();

    std::snprintf(state.onlineHost, sizeof state.onlineHost, "%s", "http://127.0.0.1:9");
    for (int id : {1264, 1266}) {
        auto* link = panels::findControl<QLabel>(&panel, id);
        QTest::mouseClick(link, Qt::LeftButton, {}, link->rect().center());
    }
    EXPECT_EQ(gOpened, std::vector<std::string>({"http://127.0.0.1:9/redirect.php?id=400",
                                                 "http://127.0.0.1:9/redirect.php?id=401"}));
}

// The update thread must not wait for the window, and the dialog it asks for must not hold the main window.
TEST(NewerVersionFromTheUpdateThread, OpensAWindowOfItsOwnOnTheMainThreadWithoutWaiting) {
    gOpened.clear();
    setUrlOpener([](const char* target) { gOpened.push_back(target); });
    const online::NewerVersionDialog wanted =
        online::newerVersionDialog(*online::onlineHostsFromUrl("http://127.0.0.1:9"), {1, 27, 0, 0});
    std::thread updateThread([&] { panels::presentNewerVersion(wanted); });
    updateThread.join();  // returned without the main thread having run

    panels::UpdateDialog* shown = nullptr;
    ASSERT_TRUE(waitUntil([&] {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (auto* dialog = dynamic_cast<panels::UpdateDialog*>(window); dialog && dialog->isVisible()) shown = dialog;
        return shown != nullptr;
    }));
    EXPECT_FALSE(shown->isModal());
    EXPECT_EQ(shown->parentWidget(), nullptr);
    EXPECT_EQ(panels::findControl<QLabel>(shown, 1082)->text(), "A newer version is available: 1.27.0.0");
    QTest::mouseClick(panels::findControl(shown, 1083), Qt::LeftButton);
    EXPECT_EQ(gOpened, std::vector<std::string>{"http://127.0.0.1:9/redirect.php?id=401"});

    QPointer<panels::UpdateDialog> closing(shown);
    QTest::mouseClick(panels::findControl(shown, 1), Qt::LeftButton);
    EXPECT_TRUE(waitUntil([&] { return closing.isNull(); })) << "a closed dialog goes away";
    setUrlOpener(nullptr);
}

}  // namespace
