// The OpenGL panel, its caps dialog and its extension dialog on Mesa's llvmpipe, the context every fixture
// machine gets: what the lines say, how they sort, which tree the catalogue gives, and which buttons work.
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <cmath>
#include <cstring>

#include "app/message_boxes.h"
#include "app/panels/caps_tree.h"
#include "app/panels/extension_dialog.h"
#include "app/panels/extension_lines.h"
#include "app/panels/gl_caps_dialog.h"
#include "app/panels/opengl_panel.h"
#include "kalidor/opengl/extension_link_table.h"
#include "window_machine.h"
#include "window_wait.h"

namespace {

using panels::OpenGLPanel;

std::vector<std::string> gOpened;

class OpenGlPanelTest : public WindowMachine {
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
    OpenGLPanel& openPanel(bool withOpenGl = true) {
        Kalidornm::Kalidor& library = withOpenGl ? startWithOpenGl() : start("amdgpu-rx6800");
        m_panel = std::make_unique<OpenGLPanel>(nullptr, state, library);
        return *m_panel;
    }
    QListWidget* list() const { return panels::findControl<QListWidget>(m_panel.get(), 1047); }
    QStringList lines() const {
        QStringList result;
        for (int i = 0; list() && i < list()->count(); ++i) result << list()->item(i)->text();
        return result;
    }

    std::unique_ptr<OpenGLPanel> m_panel;
};

// The index of the first extension table row that satisfies `wanted` and that a search of its own name finds.
template <typename Predicate>
int tableRowWhere(Predicate wanted) {
    for (size_t i = 0; i < Kalidornm::extensionLinkTable.size(); ++i) {
        const Kalidornm::ExtensionLinkEntry& row = Kalidornm::extensionLinkTable[i];
        if (wanted(row) && Kalidornm::findLinkRowInText(row.name) == int(i)) return int(i);
    }
    return -1;
}

TEST(ExtensionLine, NoteStandsInParenthesesBehindTheNameAndTheLineKeeps127Characters) {
    const int noted = tableRowWhere([](const auto& row) { return *row.note != '\0'; });
    ASSERT_GE(noted, 0);
    const auto& row = Kalidornm::extensionLinkTable[size_t(noted)];
    EXPECT_EQ(panels::extensionLine(row.name), std::string(row.name) + " (" + row.note + ")");

    EXPECT_EQ(panels::extensionLine("GL_LUMENSCOPE_not_in_any_table"), "GL_LUMENSCOPE_not_in_any_table");
    EXPECT_EQ(panels::extensionLine(nullptr), "");

    const std::string longName = "GL_EXT_" + std::string(200, 'x');
    const std::string cut = panels::extensionLine(longName.c_str());
    EXPECT_EQ(cut.size(), panels::kExtensionLineSize - 1);
    EXPECT_EQ(cut, longName.substr(0, cut.size()));
}

TEST_F(OpenGlPanelTest, ShowsTheVersionTextsAndEveryExtensionSortedByItsWholeLine) {
    OpenGLPanel& panel = openPanel();
    Kalidornm::Kalidor& library = *Kalidornm::Kalidor::getInstance();
    ASSERT_GT(library.getExtensionCount(), 0u) << "no OpenGL context on this machine";
    EXPECT_EQ(text(&panel, 1133), QString::fromUtf8(library.getGlRenderer()));
    EXPECT_EQ(text(&panel, 1132), QString::fromUtf8(library.getGlVersion()));
    EXPECT_EQ(text(&panel, 1036), QString::fromUtf8(library.getGlslVersion()));

    const QStringList shown = lines();
    ASSERT_EQ(shown.size(), int(library.getExtensionCount()));
    for (int i = 1; i < shown.size(); ++i)
        EXPECT_LE(shown[i - 1].compare(shown[i], Qt::CaseInsensitive), 0) << shown[i - 1].toStdString() << " before "
                                                                          << shown[i].toStdString();
    // Every extension has its line, with the note where the table has one.
    for (uint32_t i = 0; i < library.getExtensionCount(); ++i) {
        const char* name = library.getExtensionName(int(i));
        const char* note = Kalidornm::extensionNote(name);
        const QString expected = note && *note ? QString("%1 (%2)").arg(name, note) : QString(name);
        EXPECT_TRUE(shown.contains(expected)) << expected.toStdString();
    }
    EXPECT_TRUE(list()->selectedItems().isEmpty());

    const auto* caption = panels::findControl<panels::CaptionBox>(&panel, 1043);
    ASSERT_NE(caption, nullptr);
    const QRegularExpressionMatch counts =
        QRegularExpression(R"(^  OpenGL extensions: (\d+) \(GL=(\d+), WGL=(\d+)\)  $)").match(caption->caption());
    ASSERT_TRUE(counts.hasMatch()) << caption->caption().toStdString();
    EXPECT_EQ(counts.captured(1).toUInt(), library.getExtensionCount());
    EXPECT_EQ(counts.captured(2).toUInt(), library.getGlExtensionCount());
    EXPECT_EQ(counts.captured(3).toUInt(), library.getWglExtensionCount());
}

TEST_F(OpenGlPanelTest, WithoutContextTheCaptionsStandOverEmptyFieldsListAndTree) {
    OpenGLPanel& panel = openPanel(false);
    for (int id : {1133, 1132, 1036}) {
        EXPECT_EQ(text(&panel, id), QString()) << id;
        EXPECT_TRUE(labelOf(&panel, id)->isEnabled()) << id;
    }
    EXPECT_EQ(list()->count(), 0);
    EXPECT_EQ(panels::findControl<panels::CaptionBox>(&panel, 1043)->caption(), "  OpenGL extensions: 0 (GL=0, WGL=0)  ");
    EXPECT_EQ(panel.showCapsDialog()->tree()->topLevelItemCount(), 0);
}

TEST_F(OpenGlPanelTest, MoreCapsPressedTwiceShowsOneWindowThatClosingOnlyHides) {
    OpenGLPanel& panel = openPanel();
    auto* moreCaps = panels::findControl<QPushButton>(&panel, 1041);
    QTest::mouseClick(moreCaps, Qt::LeftButton);
    const QList<panels::GlCapsDialog*> first = panel.findChildren<panels::GlCapsDialog*>();
    ASSERT_EQ(first.size(), 1);
    panels::GlCapsDialog* dialog = first.front();
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_FALSE(dialog->isModal());
    EXPECT_EQ(state.glCapsDialog, dialog);
    EXPECT_EQ(dialog->windowTitle(), "Lumenscope OpenGL Caps List");

    dialog->tree()->topLevelItem(0)->setExpanded(true);
    QTest::keyClick(dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    QTest::mouseClick(moreCaps, Qt::LeftButton);
    QTest::mouseClick(moreCaps, Qt::LeftButton);
    EXPECT_EQ(panel.findChildren<panels::GlCapsDialog*>(), first);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(dialog->tree()->topLevelItem(0)->isExpanded()) << "the tree was made again";

    m_panel.reset();
    EXPECT_EQ(state.glCapsDialog, nullptr);
}

// The tree against the library's catalogue: every branch is a heading of the fixed list with its rows, in
// catalogue order, each leaf naming its row and showing the row's value.
TEST_F(OpenGlPanelTest, CapsTreeHoldsEveryHeadedGroupOfTheCatalogueCollapsed) {
    OpenGLPanel& panel = openPanel();
    Kalidornm::Kalidor& library = *Kalidornm::Kalidor::getInstance();
    panels::GlCapsDialog* dialog = panel.showCapsDialog();
    EXPECT_EQ(panels::findControl<QLabel>(dialog, 1278)->text(),
              QString("GL_RENDERER: ") + QString::fromUtf8(library.getGlRenderer()));

    const QTreeWidget* tree = dialog->tree();
    std::vector<std::string> headingsShown;
    int leaves = 0;
    for (int b = 0; b < tree->topLevelItemCount(); ++b) {
        const QTreeWidgetItem* branch = tree->topLevelItem(b);
        EXPECT_FALSE(branch->isExpanded()) << branch->text(0).toStdString();
        const std::string group = branch->text(0).section(' ', 0, 0).toStdString();
        headingsShown.push_back(group);
        int32_t first = -1;
        const int32_t count = library.capCountInGroup(group.c_str(), &first);
        ASSERT_GT(count, 0) << group << " is shown without rows";
        ASSERT_EQ(branch->childCount(), count) << group;
        for (int leaf = 0; leaf < count; ++leaf) {
            char name[128] = {}, rowGroup[128] = {};
            int32_t type = 0, integer = 0, triple[3] = {};
            int64_t wide = 0;
            float real = 0;
            ASSERT_TRUE(library.getCap(first + leaf, name, &type, &integer, triple, &wide, &real, rowGroup));
            const QString line = branch->child(leaf)->text(0);
            const QString prefix = QString::fromLatin1(name) + ": ";
            ASSERT_TRUE(line.startsWith(prefix)) << line.toStdString() << " is not row " << name;
            const QString value = line.mid(prefix.size());
            switch (type) {
                case 1: EXPECT_EQ(value.toLongLong(), integer) << line.toStdString(); break;
                case 4: EXPECT_EQ(value.toLongLong(), wide) << line.toStdString(); break;
                case 2: EXPECT_NEAR(value.toDouble(), real, std::fabs(real) * 1e-6 + 1e-6) << line.toStdString(); break;
                case 5:
                    EXPECT_EQ(value, QString("%1/%2/%3").arg(triple[0]).arg(triple[1]).arg(triple[2]));
                    break;
                default: ADD_FAILURE() << name << " has value type " << type;
            }
            ++leaves;
        }
    }
    // The branches keep the fixed list's order, and no heading whose group has rows is missing.
    std::vector<std::string> headingsExpected;
    for (const panels::CapsTreeHeading& heading : panels::capsTreeHeadings())
        if (library.capCountInGroup(heading.group, nullptr) > 0) headingsExpected.push_back(heading.group);
    EXPECT_EQ(headingsShown, headingsExpected);
    EXPECT_GT(leaves, 100) << "llvmpipe's catalogue is larger than that";
    EXPECT_LT(leaves, library.capCount()) << "groups without heading stay out of the tree";
}

TEST(CapsTreeHeadings, NoteOfAVersionReadsAsAnOpenGlVersion) {
    for (const panels::CapsTreeHeading& heading : panels::capsTreeHeadings()) {
        if (*heading.note) {
            EXPECT_TRUE(QRegularExpression(R"(^OpenGL \d\.\d$)").match(heading.note).hasMatch()) << heading.group;
        }
    }
    const int32_t triple[3] = {1, 2, 3};
    EXPECT_EQ(panels::capLeafText("GL_X", 4, 0, triple, 5000000000LL, 0), "GL_X: 5000000000");
    EXPECT_EQ(panels::capLeafText("GL_X", 5, 0, triple, 0, 0), "GL_X: 1/2/3");
}

TEST_F(OpenGlPanelTest, SpecificationButtonWorksOnlyForALineWithARegistryLink) {
    openPanel();
    Kalidornm::Kalidor& library = *Kalidornm::Kalidor::getInstance();
    const int linked = tableRowWhere([](const auto& row) { return *row.link != '\0'; });
    const int unlinked = tableRowWhere([](const auto& row) { return *row.link == '\0'; });
    ASSERT_GE(linked, 0);
    ASSERT_GE(unlinked, 0);

    const auto& row = Kalidornm::extensionLinkTable[size_t(linked)];
    const std::string line = panels::extensionLine(row.name);
    panels::ExtensionDialog withLink(m_panel.get(), state, library, line.c_str());
    EXPECT_EQ(withLink.windowTitle(), "Lumenscope OpenGL Extension");
    EXPECT_EQ(text(&withLink, 1048), QString::fromStdString(line));
    auto* button = panels::findControl<QPushButton>(&withLink, 1050);
    ASSERT_TRUE(button->isEnabled());
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(gOpened, std::vector<std::string>{row.link});

    const std::string noLink = panels::extensionLine(Kalidornm::extensionLinkTable[size_t(unlinked)].name);
    panels::ExtensionDialog withoutLink(m_panel.get(), state, library, noLink.c_str());
    EXPECT_FALSE(panels::findControl<QPushButton>(&withoutLink, 1050)->isEnabled());
    panels::ExtensionDialog unknown(m_panel.get(), state, library, "GL_LUMENSCOPE_not_in_any_table");
    EXPECT_EQ(unknown.linkRow(), -1);
    EXPECT_FALSE(panels::findControl<QPushButton>(&unknown, 1050)->isEnabled());
}

TEST_F(OpenGlPanelTest, DoubleClickOpensTheDialogOfTheLineClickedOn) {
    openPanel();
    ASSERT_GT(list()->count(), 3);
    m_panel->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(m_panel.get()));
    QListWidgetItem* item = list()->item(2);
    QString shownLine;
    QTimer closer;
    closer.setInterval(10);
    QObject::connect(&closer, &QTimer::timeout, [&] {
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
            shownLine = text(dialog, 1048);
            dialog->reject();
        }
    });
    closer.start();
    const QPoint where = list()->visualItemRect(item).center();
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, where);
    QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, where);
    closer.stop();
    EXPECT_EQ(shownLine.toStdString(), item->text().toStdString());
}

}  // namespace
