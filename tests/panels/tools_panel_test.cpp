// The tools panel: machine summary, link tables by primary vendor, the review combo and its links, the
// hyperlinks and the active-applications box.
#include <QComboBox>
#include <QLabel>
#include <QRegularExpression>
#include <QTest>
#include <filesystem>
#include <fstream>

#include "app/message_boxes.h"
#include "app/panels/tools_panel.h"
#include "app/panels/web_links.h"
#include "tests/panels/window_machine.h"
#include "tests/panels/window_wait.h"

namespace {

using panels::ToolsPanel;

// What openUrl and the message boxes were asked for while a test ran.
std::vector<std::string> gOpened;
std::vector<std::string> gBoxes;

class ToolsPanelTest : public WindowMachine {
protected:
    void SetUp() override {
        gOpened.clear();
        gBoxes.clear();
        setUrlOpener([](const char* target) { gOpened.push_back(target); });
        setMessageBoxPresenter([](MessageBoxKind, const char* title, const char* text) {
            gBoxes.push_back(std::string(title) + "|" + text);
        });
    }
    void TearDown() override {
        m_panel.reset();
        setUrlOpener(nullptr);
        setMessageBoxPresenter(nullptr);
        WindowMachine::TearDown();
    }
    ToolsPanel& openPanel(Kalidornm::Kalidor& library, const char* cardName) {
        std::snprintf(state.cardNameText, sizeof state.cardNameText, "%s", cardName);
        m_panel = std::make_unique<ToolsPanel>(nullptr, state, library);
        m_panel->initToolsPanel();
        return *m_panel;
    }
    QComboBox* reviews() const { return panels::findControl<QComboBox>(m_panel.get(), 1068); }

    std::unique_ptr<ToolsPanel> m_panel;
};

TEST_F(ToolsPanelTest, SystemFieldsAndTheTablesOfThePrimaryVendor) {
    Kalidornm::Kalidor& library = start("amdgpu-rx6800");
    ToolsPanel& panel = openPanel(library, "");
    EXPECT_EQ(text(&panel, 1260), "2600 MHz");
    EXPECT_EQ(text(&panel, 1261), QString::number(library.getCpuLogicalCores()));
    EXPECT_TRUE(QRegularExpression("^\\d+ MB$").match(text(&panel, 1030)).hasMatch()) << text(&panel, 1030).toStdString();
    EXPECT_TRUE(QRegularExpression("^\\d+x\\d+ @ \\d+Hz - \\d+bpp$").match(text(&panel, 1025)).hasMatch());
    EXPECT_EQ(text(&panel, 1029), QString::fromUtf8(library.getOsDescription()));
    EXPECT_EQ(panels::findControl<QLabel>(&panel, 1078)->text(), "AMD/ATI graphics cards news and reviews:");
    EXPECT_EQ(state.driverLinkTable, panels::webLinkTablesFor(2).drivers);
    EXPECT_EQ(state.reviewLinkTable, panels::webLinkTablesFor(2).reviews);
}

TEST_F(ToolsPanelTest, ReviewComboListsBothKeysOfAGtx560TiAndOpensWhatIsPicked) {
    openPanel(start("nvidia-desktop", rtx3090()), "NVIDIA GeForce GTX 560 Ti");
    QComboBox* combo = reviews();
    ASSERT_EQ(combo->count(), 4);
    EXPECT_TRUE(combo->itemText(0).contains("560 Ti"));
    EXPECT_TRUE(combo->itemText(1).contains("560 Ti"));
    EXPECT_FALSE(combo->itemText(2).contains("Ti"));
    EXPECT_FALSE(combo->itemText(3).contains("Ti"));
    EXPECT_EQ(combo->currentIndex(), 0);
    EXPECT_TRUE(combo->isEnabled());
    EXPECT_TRUE(gOpened.empty());  // the row selected at start opens nothing

    combo->setCurrentIndex(2);
    ASSERT_EQ(gOpened.size(), 1u);
    const auto rows = panels::listedReviewRows(panels::webLinkTablesFor(1).reviews, state.cardNameText, "");
    EXPECT_EQ(gOpened[0], rows[2]->url);
    combo->setCurrentIndex(0);
    ASSERT_EQ(gOpened.size(), 2u);
    EXPECT_EQ(gOpened[1], rows[0]->url);
}

TEST_F(ToolsPanelTest, CardThatNoKeyMatchesGreysTheComboButTheDriverLinksWork) {
    ToolsPanel& panel = openPanel(start("nvidia-desktop", rtx3090()), "NVIDIA Quadro RTX 8000");
    EXPECT_EQ(reviews()->count(), 0);
    EXPECT_FALSE(reviews()->isEnabled());
    EXPECT_FALSE(panels::findControl(&panel, 1078)->isEnabled());

    QTest::mouseClick(panels::findControl(&panel, 1262), Qt::LeftButton);
    QTest::mouseClick(panels::findControl(&panel, 1263), Qt::LeftButton);
    ASSERT_EQ(gOpened.size(), 2u);
    EXPECT_EQ(gOpened[0], std::string(panels::kWebHost) + "/redirect.php?id=20");
    EXPECT_EQ(gOpened[1], std::string(panels::kWebHost) + "/redirect.php?id=21");
}

TEST_F(ToolsPanelTest, Active3DAppsListsTheDriversProcessesOrSaysThereAreNone) {
    // Process names come from the machine's process table, which a copied fixture can hold.
    const std::string root = copyOfFixture("nvidia-desktop");
    std::filesystem::create_directories(root + "/proc/4242");
    std::ofstream(root + "/proc/4242/comm") << "glxgears\n";
    ToolsPanel& panel = openPanel(startOn(root, rtx3090("gpu 0 pids 4242\n")), "");
    QTest::mouseClick(panels::findControl(&panel, 1104), Qt::LeftButton);
    ASSERT_EQ(gBoxes.size(), 1u);
    EXPECT_EQ(gBoxes[0],
              "Lumenscope Info|Current active 3D applications:\n\r-glxgears (PID: 4242)"
              "\n\r\n\rReal time monitoring available in Ferritewatch!");

    stop();
    m_panel.reset();
    ToolsPanel& quiet = openPanel(start("amdgpu-rx6800"), "");
    QTest::mouseClick(panels::findControl(&quiet, 1104), Qt::LeftButton);
    ASSERT_EQ(gBoxes.size(), 2u);
    EXPECT_EQ(gBoxes[1], "Lumenscope Info|No 3D application detected.\n\r\n\rReal time monitoring available in Ferritewatch!");
}

TEST_F(ToolsPanelTest, MoreSystemInformationStartsTheFirstInstalledToolOfTheList) {
    namespace fs = std::filesystem;
    const fs::path bin = fs::path(::testing::TempDir()) / ("system_tools_" + std::to_string(::getpid()));
    fs::create_directories(bin);
    size_t count = 0;
    const char* const* tools = panels::systemInformationTools(&count);
    ASSERT_GE(count, 2u);
    // The last two tools of the list are installed, and nothing else is on the path; the first of them starts.
    for (size_t i = count - 2; i < count; ++i) {
        const fs::path tool = bin / tools[i];
        std::ofstream(tool) << "#!/bin/sh\n: > '" << (bin / (std::string(tools[i]) + ".started")).string() << "'\n";
        fs::permissions(tool, fs::perms::owner_all);
    }
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QByteArray::fromStdString(bin.string()));
    ToolsPanel& panel = openPanel(start("amdgpu-rx6800"), "");
    QTest::mouseClick(panels::findControl(&panel, 1101), Qt::LeftButton);
    qputenv("PATH", path);

    EXPECT_TRUE(waitUntil([&] { return fs::exists(bin / (std::string(tools[count - 2]) + ".started")); }));
    QTest::qWait(200);
    EXPECT_FALSE(fs::exists(bin / (std::string(tools[count - 1]) + ".started")));
    fs::remove_all(bin);
}

}  // namespace
