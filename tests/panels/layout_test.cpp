// Every window as a user sees it: controls inside their parents and clear of each other, texts that fit their
// boxes, names for tests and screen readers, and the program's colours.
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabBar>

#include "app/panels/controls.h"
#include "app/panels/demo_options_dialog.h"
#include "app/panels/extension_dialog.h"
#include "app/panels/gl_caps_dialog.h"
#include "app/panels/vulkan_caps_dialog.h"
#include "app/panels/opencl_info_dialog.h"
#include "app/panels/update_dialog.h"
#include "app/panels/main_dialog.h"
#include "app/panels/panel.h"
#include "app/panels/report_dialog.h"
#include "app/panels/splash_dialog.h"
#include "demos/harness/demo_table.h"
#include "tests/panels/window_machine.h"
#include "tests/report/vulkan_records_by_hand.h"

namespace {

using namespace panels;

std::string describe(const QWidget* w) {
    const QString text = qobject_cast<const QLabel*>(w)          ? qobject_cast<const QLabel*>(w)->text()
                         : qobject_cast<const QAbstractButton*>(w) ? qobject_cast<const QAbstractButton*>(w)->text()
                                                                   : QString();
    return (w->metaObject()->className() + QStringLiteral(" ") + w->objectName() + " \"" + text + "\"").toStdString();
}

bool isPanel(const QWidget* w) { return w->objectName().startsWith("panel"); }

// The widgets a window is made of: the children of the window itself, of its tab control and of its panels.
void expectTidy(const QWidget* container) {
    const QRect inside = container->rect();
    QList<const QWidget*> controls;
    for (const QObject* child : container->children())
        if (const auto* w = qobject_cast<const QWidget*>(child); w && !w->isWindow()) controls << w;
    ASSERT_FALSE(controls.isEmpty()) << describe(container) << " has no controls to check";

    for (const QWidget* control : controls) {
        EXPECT_TRUE(inside.contains(control->geometry())) << describe(control) << " leaves " << describe(container);
        const QFontMetrics metrics(control->font());
        if (const auto* label = qobject_cast<const QLabel*>(control); label && label->pixmap().isNull()) {
            if (label->wordWrap()) {
                EXPECT_LE(label->heightForWidth(label->width()), label->height()) << describe(label);
            } else {
                for (const QString& line : label->text().split('\n'))
                    EXPECT_LE(metrics.horizontalAdvance(line), label->width()) << describe(label);
            }
        }
        if (const auto* button = qobject_cast<const QPushButton*>(control)) {
            EXPECT_LE(metrics.horizontalAdvance(button->text()) + 6, button->width()) << describe(button);
        }
        if (const auto* box = dynamic_cast<const CaptionBox*>(control)) {
            EXPECT_LE(metrics.horizontalAdvance(box->caption()) + 2 * metrics.averageCharWidth(), box->width())
                << describe(box);
        }
        if (const auto* field = qobject_cast<const QLineEdit*>(control)) {
            EXPECT_TRUE(QRegularExpression("^id\\d+$").match(field->objectName()).hasMatch()) << describe(field);
            EXPECT_FALSE(field->accessibleName().isEmpty()) << describe(field);
        }
    }
    for (int i = 0; i < controls.size(); ++i)
        for (int j = i + 1; j < controls.size(); ++j) {
            const QWidget* a = controls[i];
            const QWidget* b = controls[j];
            if (isPanel(a) && isPanel(b)) continue;  // the pages of the tab control lie on one another
            if (!a->geometry().intersects(b->geometry())) continue;
            const bool framed = (dynamic_cast<const CaptionBox*>(a) && a->geometry().contains(b->geometry())) ||
                                (dynamic_cast<const CaptionBox*>(b) && b->geometry().contains(a->geometry()));
            EXPECT_TRUE(framed) << describe(a) << " overlaps " << describe(b) << " in " << describe(container);
        }
}

class LayoutTest : public WindowMachine {};

TEST_F(LayoutTest, NoControlOverlapsAnotherOrLeavesItsParentAndEveryTextFits) {
    Kalidornm::Kalidor& library = start("nvidia-desktop", rtx3090());
    MainDialog dialog(state, library);
    dialog.start(nullptr);
    EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
    expectTidy(&dialog);
    const QWidget* tabControl = findControl(&dialog, 1000);
    ASSERT_NE(tabControl, nullptr);
    expectTidy(tabControl);
    for (int data : {0, 1, 2, 3, 4, 5, 6}) expectTidy(dialog.panelForTabData(data));
    // The pages fill the tab control below its tabs.
    const QRect page = dialog.panelForTabData(0)->geometry();
    EXPECT_GE(page.top(), dialog.tabBar()->geometry().bottom());

    ReportDialog report(nullptr, state, library);
    expectTidy(&report);
    GlCapsDialog caps(nullptr, state, library);
    expectTidy(&caps);
    panels::VulkanCapsDialog vulkanCaps(nullptr, state, vulkan_by_hand::softwareDevice());
    expectTidy(&vulkanCaps);
    ExtensionDialog extension(nullptr, state, library, "GL_ARB_multitexture");
    expectTidy(&extension);
    OpenClInfoDialog openCl(nullptr, state);
    expectTidy(&openCl);
    UpdateDialog update(nullptr, online::newerVersionDialog(online::defaultOnlineHosts(), {1, 27, 0, 0}));
    expectTidy(&update);
    SplashDialog splash;
    expectTidy(&splash);
}

TEST_F(LayoutTest, DemoOptionsDialogIsTidyForEveryDemo) {
    Kalidornm::Kalidor& library = start("amdgpu-rx6800");
    for (DemoPicker picker : {DemoPicker::OpenGl, DemoPicker::OpenCl})
        for (int row = 0; row < demoPickerRows(picker); ++row) {
            DemoOptionsDialog options(nullptr, state, library, *demoDescriptor(picker, row));
            EXPECT_EQ(options.minimumSize(), options.maximumSize());
            expectTidy(&options);
        }
}

TEST_F(LayoutTest, CaptionsFieldsAndLinksWearTheProgramsColours) {
    Kalidornm::Kalidor& library = start("amdgpu-rx6800");
    MainDialog dialog(state, library);
    dialog.start(nullptr);
    dialog.tabBar()->setCurrentIndex(5);

    auto* caption = findControl<CaptionBox>(&dialog, 1245);
    ASSERT_NE(caption, nullptr);
    const QImage picture = caption->grab().toImage();
    const QFontMetrics metrics(caption->font());
    // Inside the caption's band, left of its text: the header's back colour, 0xAF712A as stored.
    const QColor band = picture.pixelColor(metrics.averageCharWidth() + 1, metrics.height() / 2);
    EXPECT_EQ(band, QColor(0x2A, 0x71, 0xAF)) << band.name().toStdString();
    bool whiteText = false;
    for (int x = 0; x < picture.width() && !whiteText; ++x)
        for (int y = 0; y < metrics.height() && !whiteText; ++y) whiteText = picture.pixelColor(x, y) == QColor(Qt::white);
    EXPECT_TRUE(whiteText);

    const auto* field = findControl<QLineEdit>(&dialog, 1026);
    EXPECT_EQ(field->palette().color(QPalette::Active, QPalette::Text), QColor(0x46, 0x50, 0x82));
    const auto* link = findControl<QLabel>(&dialog, 1262);
    EXPECT_EQ(link->palette().color(QPalette::WindowText), QColor(0x00, 0x00, 0xC0));
    EXPECT_EQ(link->cursor().shape(), Qt::PointingHandCursor);
}

}  // namespace
