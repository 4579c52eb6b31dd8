// The OpenGL panel and its two dialogs on this machine's OpenGL driver (llvmpipe on the build machine), checked
// against the library's own answers.
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <cmath>

#include "app/message_boxes.h"
#include "app/panels/caps_tree.h"
#include "app/panels/extension_dialog.h"
#include "app/panels/extension_lines.h"
#include "app/panels/gl_caps_dialog.h"
#include "app/panels/opengl_panel.h"
#include "kalidor/opengl/extension_link_table.h"
#include "tests/panels/window_machine.h"

namespace {

using panels::OpenGLPanel;
using Kalidornm::extensionLinkTable;

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
        m_library = withOpenGl ? &startWithOpenGl() : &start("amdgpu-rx6800");
        m_panel = std::make_unique<OpenGLPanel>(nullptr, state, *m_library);
        return *m_panel;
    }
    QListWidget* list() const { return panels::findControl<QListWidget>(m_panel.get(), 1047); }

    Kalidornm::Kalidor* m_library = nullptr;
    std::unique_ptr<OpenGLPanel> m_panel;
};

// The first extension table row with (or without) a link that a search of its own name finds.
const Kalidornm::ExtensionLinkEntry& tableRow(bool withLink, bool withNote = false) {
    for (size_t i = 0; i < extensionLinkTable.size(); ++i) {
        const auto& row = extensionLinkTable[i];
        if ((*row.link != '\0') == withLink && (!withNote || *row.note) && Kalidornm::findLinkRowInText(row.name) == int(i))
            return row;
    }
    ADD_FAILURE() << "no such row";
    return extensionLinkTable[0];
}

TEST(ExtensionLine, NoteStandsInParenthesesBehindTheNameAndTheLineKeeps127Characters) {
    const auto& noted = tableRow(true, true);
    EXPECT_EQ(panels::extensionLine(noted.name), std::string(noted.name) + " (" + noted.note + ")");
    EXPECT_EQ(panels::extensionLine("GL_LUMENSCOPE_unknown"), "GL_LUMENSCOPE_unknown");
    const std::string longName = "GL_EXT_" + std::string(200, 'x');
    EXPECT_EQ(panels::extensionLine(longName.c_str()), longName.substr(0, panels::kExtensionLineSize - 1));
}

TEST_F(OpenGlPanelTest, ShowsTheVersionTextsAndEveryExtensionSortedByItsWholeLine) {
    OpenGLPanel& panel = openPanel();
    ASSERT_GT(m_library->getExtensionCount(), 0u) << "no OpenGL context on this machine";
    EXPECT_EQ(text(&panel, 1133), QString::fromUtf8(m_library->getGlRenderer()));
    EXPECT_EQ(text(&panel, 1132), QString::fromUtf8(m_library->getGlVersion()));
    EXPECT_EQ(text(&panel, 1036), QString::fromUtf8(m_library->getGlslVersion()));

    QStringList shown;
    for (int i = 0; i < list()->count(); ++i) shown << list()->item(i)->text();
    ASSERT_EQ(shown.size(), int(m_library->getExtensionCount()));
    for (int i = 1; i < shown.size(); ++i) EXPECT_LE(shown[i - 1].compare(shown[i], Qt::CaseInsensitive), 0) << i;
    for (uint32_t i = 0; i < m_library->getExtensionCount(); ++i) {
        const char* name = m_library->getExtensionName(int(i));
        EXPECT_TRUE(shown.contains(QString::fromStdString(panels::extensionLine(name)))) << name;
    }
    EXPECT_TRUE(list()->selectedItems().isEmpty());

    const QRegularExpressionMatch counts = QRegularExpression(R"(^  OpenGL extensions: (\d+) \(GL=(\d+), WGL=(\d+)\)  $)")
                                               .match(panels::findControl<panels::CaptionBox>(&panel, 1043)->caption());
    ASSERT_TRUE(counts.hasMatch());
    EXPECT_EQ(counts.captured(1).toUInt(), m_library->getExtensionCount());
    EXPECT_EQ(counts.captured(2).toUInt(), m_library->getGlExtensionCount());
    EXPECT_EQ(counts.captured(3).toUInt(), m_library->getWglExtensionCount());
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
    const QList<panels::GlCapsDialog*> made = panel.findChildren<panels::GlCapsDialog*>();
    ASSERT_EQ(made.size(), 1);
    panels::GlCapsDialog* dialog = made.front();
    EXPECT_TRUE(dialog->isVisible() && !dialog->isModal());
    dialog->tree()->topLevelItem(0)->setExpanded(true);
    QTest::keyClick(dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    QTest::mouseClick(moreCaps, Qt::LeftButton);
    QTest::mouseClick(moreCaps, Qt::LeftButton);
    EXPECT_EQ(panel.findChildren<panels::GlCapsDialog*>(), made);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(dialog->tree()->topLevelItem(0)->isExpanded()) << "the tree was made again";
    m_panel.reset();
    EXPECT_EQ(state.glCapsDialog, nullptr);
}

// Each branch is a heading of the fixed list, in its order, with every row of its group: the leaf names the
// row and shows the row's value.
TEST_F(OpenGlPanelTest, CapsTreeHoldsEveryHeadedGroupOfTheCatalogueCollapsed) {
    panels::GlCapsDialog* dialog = openPanel().showCapsDialog();
    EXPECT_EQ(dialog->windowTitle(), "Lumenscope OpenGL Caps List");
    EXPECT_EQ(panels::findControl<QLabel>(dialog, 1278)->text(), "GL_RENDERER: " + QString(m_library->getGlRenderer()));
    std::vector<std::string> shown, expected;
    for (const panels::CapsTreeHeading& heading : panels::capsTreeHeadings())
        if (m_library->capCountInGroup(heading.group, nullptr) > 0) expected.push_back(heading.group);
    ASSERT_FALSE(expected.empty()) << "no OpenGL context on this machine";
    const QTreeWidget* tree = dialog->tree();
    for (int b = 0; b < tree->topLevelItemCount(); ++b) {
        const QTreeWidgetItem* branch = tree->topLevelItem(b);
        EXPECT_FALSE(branch->isExpanded());
        shown.push_back(branch->text(0).section(' ', 0, 0).toStdString());
        int32_t first = -1;
        ASSERT_EQ(branch->childCount(), m_library->capCountInGroup(shown.back().c_str(), &first)) << shown.back();
        for (int leaf = 0; leaf < branch->childCount(); ++leaf) {
            const std::optional<Kalidornm::GlCapFacts> cap = m_library->getCap(first + leaf);
            ASSERT_TRUE(cap);
            const QString name = QString::fromStdString(cap->name);
            const QStringList parts = branch->child(leaf)->text(0).split(": ");
            ASSERT_EQ(parts.size(), 2);
            EXPECT_EQ(parts[0], name);
            const double value = cap->valueType == 2   ? double(cap->floatValue)
                                 : cap->valueType == 4 ? double(cap->int64Value)
                                                       : cap->intValue;
            if (cap->valueType == 5) {
                const int32_t* triple = cap->tripleValue;
                EXPECT_EQ(parts[1], QString("%1/%2/%3").arg(triple[0]).arg(triple[1]).arg(triple[2]))
                    << name.toStdString();
            } else {
                EXPECT_NEAR(parts[1].toDouble(), value, 1e-6 * (1 + std::fabs(value))) << name.toStdString();
            }
        }
    }
    EXPECT_EQ(shown, expected);
}

TEST_F(OpenGlPanelTest, DoubleClickOpensTheExtensionDialogWhoseButtonNeedsARegistryLink) {
    openPanel();
    m_panel->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(m_panel.get()));
    QListWidgetItem* item = list()->item(2);
    QString shownLine;
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, [&] {
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
            shownLine = text(dialog, 1048);
            dialog->reject();
        }
    });
    closer.start(10);
    const QPoint where = list()->visualItemRect(item).center();
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, where);
    QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, where);
    EXPECT_EQ(shownLine, item->text());

    const auto& linked = tableRow(true);
    panels::ExtensionDialog withLink(nullptr, state, *m_library, panels::extensionLine(linked.name).c_str());
    QTest::mouseClick(panels::findControl(&withLink, 1050), Qt::LeftButton);
    EXPECT_EQ(gOpened, std::vector<std::string>{linked.link});
    for (const std::string& line : {panels::extensionLine(tableRow(false).name), std::string("GL_LUMENSCOPE_unknown")}) {
        panels::ExtensionDialog withoutLink(nullptr, state, *m_library, line.c_str());
        EXPECT_FALSE(panels::findControl(&withoutLink, 1050)->isEnabled()) << line;
    }
}

}  // namespace
