// The report dialog: its title and text, one report per run, and the two exports through the file dialog.
#include <QApplication>
#include <QFileDialog>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/panels/report_dialog.h"
#include "app/panels/tools_panel.h"
#include "tests/panels/window_machine.h"

namespace {

using panels::ReportDialog;

class ReportDialogTest : public WindowMachine {
protected:
    QString reportText(ReportDialog& dialog) {
        auto* box = panels::findControl<QPlainTextEdit>(&dialog, 1090);
        return box ? box->toPlainText() : QString();
    }
    static std::string fileText(const std::string& path) {
        std::ifstream in(path);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }
};

TEST_F(ReportDialogTest, ShowsOneReportPerRunWithTheLinksTheToolsPanelChose) {
    const std::string root = copyOfFixture("amdgpu-rx6800");
    Kalidornm::Kalidor& library = startOn(root);
    panels::ToolsPanel tools(nullptr, state, library);
    tools.initToolsPanel();

    ReportDialog first(nullptr, state, library);
    EXPECT_EQ(first.windowTitle(), "Lumenscope Full Report - ");  // a fixture machine has no OpenGL renderer
    const QString text = reportText(first);
    EXPECT_TRUE(text.contains("===================================[ Graphics Adapters / GPUs ]"));
    EXPECT_TRUE(text.contains("Related Graphics Drivers"));
    EXPECT_FALSE(text.contains(QLatin1Char('\r')));

    // A later opening shows the first report, even after the sensors changed.
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
        if (entry.path().filename() == "temp1_input") std::ofstream(entry.path()) << "77000\n";
    ReportDialog second(nullptr, state, library);
    EXPECT_EQ(reportText(second), text);
}

TEST_F(ReportDialogTest, ExportsGoThroughTheFileDialogWithTheirNamesAndFilters) {
    Kalidornm::Kalidor& library = start("amdgpu-rx6800");
    ReportDialog dialog(nullptr, state, library);
    const std::string dir = ::testing::TempDir() + "report_dialog_" + std::to_string(::getpid());
    std::filesystem::create_directories(dir);

    struct Seen {
        QString title, filter, offered;
    };
    // Answers the file dialog the button opens: notes what it offers, then saves under `path` or cancels.
    auto answer = [](Seen& seen, const std::string& path) {
        QTimer::singleShot(0, [&seen, path] {
            auto* chooser = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (!chooser) return;
            seen.title = chooser->windowTitle();
            seen.filter = chooser->nameFilters().join(";");
            seen.offered = QFileInfo(chooser->selectedFiles().value(0)).fileName();
            if (path.empty()) {
                chooser->reject();
                return;
            }
            chooser->selectFile(QString::fromStdString(path));
            static_cast<QDialog*>(chooser)->accept();  // the file dialog's own check of the name runs
        });
    };

    Seen xml, txt, cancelled;
    answer(xml, dir + "/mine.xml");
    QTest::mouseClick(panels::findControl(&dialog, 1092), Qt::LeftButton);
    EXPECT_EQ(xml.title, "Export report to XML File (*.xml)");
    EXPECT_EQ(xml.filter, "XML data File (*.xml)");
    EXPECT_EQ(xml.offered, "lumenscope_report.xml");
    EXPECT_EQ(fileText(dir + "/mine.xml").rfind("<?xml version=\"1.0\"", 0), 0u);

    answer(txt, dir + "/mine.txt");
    QTest::mouseClick(panels::findControl(&dialog, 1093), Qt::LeftButton);
    EXPECT_EQ(txt.title, "Export report to text File (*.txt)");
    EXPECT_EQ(txt.filter, "Text File (*.txt)");
    EXPECT_EQ(txt.offered, "lumenscope_report.txt");
    const std::string written = fileText(dir + "/mine.txt");
    EXPECT_NE(written.find("[ Graphics Adapters / GPUs ]"), std::string::npos);
    EXPECT_EQ(written.find('\r'), std::string::npos);

    answer(cancelled, "");
    QTest::mouseClick(panels::findControl(&dialog, 1093), Qt::LeftButton);
    EXPECT_EQ(cancelled.offered, "lumenscope_report.txt");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir), std::filesystem::directory_iterator()), 2);
    std::filesystem::remove_all(dir);
}

}  // namespace
