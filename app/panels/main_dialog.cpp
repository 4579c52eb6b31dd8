#include "app/panels/main_dialog.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QPushButton>
#include <QStyleOptionTabWidgetFrame>
#include <QTabBar>
#include <algorithm>
#include <iterator>
#include <utility>

#include "app/app_log.h"
#include "app/app_state.h"
#include "app/demo_launch.h"
#include "app/online_check.h"
#include "app/platform/interrupt.h"
#include "base/version.h"
#include "app/panels/controls.h"
#include "app/panels/cuda_panel.h"
#include "app/panels/demo_options_dialog.h"
#include "demos/harness/demo_table.h"
#include "app/panels/gpu_panel.h"
#include "app/panels/opencl_demo_choice.h"
#include "app/panels/opencl_panel.h"
#include "app/panels/opengl_panel.h"
#include "app/panels/tools_panel.h"
#include "app/panels/validation_panel.h"
#include "app/panels/vendor_logo.h"
#include "app/panels/vulkan_panel.h"
#include "vulkan/vulkan_discovery.h"

namespace panels {

namespace {

struct TabItem {
    const char* label;
    int data;
};

constexpr TabItem kTabItems[] = {
    {"GPU", MainDialog::kTabGpu},       {"OpenGL", MainDialog::kTabOpenGl}, {"Vulkan", MainDialog::kTabVulkan},
    {"CUDA", MainDialog::kTabCuda},     {"OpenCL", MainDialog::kTabOpenCl}, {"Tools", MainDialog::kTabTools},
    {"Validation", MainDialog::kTabValidation},
};
static_assert(std::size(kTabItems) == 7);

constexpr int kWidth = 256, kHeight = 331;
constexpr int kIdCancel = 2;  // the code the window ends with when closed, whichever way

// The tab bar's style with the blank beside each label narrowed, so that seven tabs fit the window's width.
class NarrowTabStyle : public QProxyStyle {
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        const int value = QProxyStyle::pixelMetric(metric, option, widget);
        return metric == PM_TabBarTabHSpace && m_hspace >= 0 ? std::min(value, m_hspace) : value;
    }
    void setTabHSpace(int pixels) { m_hspace = pixels; }

private:
    int m_hspace = -1;  // the style's own
};

// The main window while it runs, for requests from other threads; touched on the main thread only.
QPointer<MainDialog> gRunningMainDialog;

}  // namespace

TabControl::TabControl(QWidget* parent) : QWidget(parent), m_tabBar(new QTabBar(this)) {
    m_tabBar->setDrawBase(false);
    m_tabBar->setExpanding(false);
    m_tabBar->setUsesScrollButtons(false);
    // The bar's height is fixed before the tabs exist, since the panels are placed before the tabs are added.
    m_tabBar->ensurePolished();
    m_tabBar->addTab(QStringLiteral("GPU"));
    m_barHeight = m_tabBar->sizeHint().height();
    m_tabBar->removeTab(0);
}

void TabControl::fitTabBar() { m_tabBar->setGeometry(0, 0, width(), m_barHeight); }

void TabControl::narrowTabsToFit() {
    const int overflow = m_tabBar->sizeHint().width() - width();
    if (overflow <= 0 || m_tabBar->count() == 0) return;
    auto* style = new NarrowTabStyle;
    style->setParent(this);  // deleted after the bar, which was made first
    const int hspace = style->pixelMetric(QStyle::PM_TabBarTabHSpace, nullptr, m_tabBar);
    style->setTabHSpace(std::max(4, hspace - (overflow + m_tabBar->count() - 1) / m_tabBar->count()));
    m_tabBar->setStyle(style);
}

QRect TabControl::pageRect() const { return QRect(2, m_barHeight, width() - 4, height() - m_barHeight - 2); }

void TabControl::resizeEvent(QResizeEvent*) { fitTabBar(); }

void TabControl::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QStyleOptionTabWidgetFrame frame;
    frame.initFrom(this);
    const int top = m_barHeight;
    frame.rect = QRect(0, top - 1, width(), height() - top + 1);
    frame.shape = QTabBar::RoundedNorth;
    frame.tabBarSize = m_tabBar->sizeHint();
    frame.tabBarRect = m_tabBar->geometry();
    style()->drawPrimitive(QStyle::PE_FrameTabWidget, &frame, &painter, this);
}

MainDialog::MainDialog(AppState& state, Kalidornm::Kalidor& library)
    : QDialog(nullptr), m_state(state), m_library(library) {
    setObjectName(QStringLiteral("id129"));
    setFont(dialogFont());
    const DialogUnits units{dialogFont()};
    setFixedSize(units.toPixels(kWidth, kHeight));
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                   Qt::WindowCloseButtonHint);

    ControlBuilder c(this, units, state.fieldTextColour, state.headerTextColour, state.headerBackColour);
    m_tabControl = new TabControl(this);
    m_tabControl->setObjectName(controlName(1000));
    m_tabControl->setGeometry(units.toPixels({3, 2, 250, 276}));
    c.groupBox(1110, "OpenGL demos  ", {3, 284, 122, 42});
    m_glDemos = c.dropDownList(1135, {8, 295, 110, 12}, 100);
    m_glDemos->setAccessibleName(QStringLiteral("OpenGL demos"));
    QPushButton* startGl = c.button(1111, "Start |>", {30, 310, 60, 12});
    c.groupBox(1113, "OpenCL demos", {131, 284, 122, 42});
    m_clDemos = c.dropDownList(1136, {138, 295, 110, 12}, 100);
    m_clDemos->setAccessibleName(QStringLiteral("OpenCL demos"));
    QPushButton* startCl = c.button(1112, "Start |>", {163, 310, 60, 12});

    connect(m_tabControl->tabBar(), &QTabBar::currentChanged, this, [this](int index) { _showPanelOfTab(index); });
    connect(m_glDemos, &QComboBox::currentIndexChanged, this, [this](int row) { m_state.selectedGlDemo = row; });
    connect(m_clDemos, &QComboBox::currentIndexChanged, this, [this](int row) { m_state.selectedClDemo = row; });
    connect(startGl, &QPushButton::clicked, this, [this] { startOpenGlDemo(); });
    connect(startCl, &QPushButton::clicked, this, [this] { startOpenClDemo(); });
    connect(&m_refreshTimer, &QTimer::timeout, this, [this] { refreshTick(); });
    connect(&m_interruptWatch, &QTimer::timeout, this, [this] {
        if (lumenscope::platform::interruptRequested()) close();
    });
}

MainDialog::~MainDialog() {
    m_refreshTimer.stop();
    for (void** handle : {&m_state.mainWindow, &m_state.tabControl, &m_state.gpuPanel, &m_state.openglPanel,
                          &m_state.toolsPanel, &m_state.cudaPanel, &m_state.openclPanel, &m_state.validationPanel})
        *handle = nullptr;
}

QTabBar* MainDialog::tabBar() const { return m_tabControl->tabBar(); }

void MainDialog::start(QWidget* splash) {
    m_state.mainWindow = this;
    m_state.tabControl = m_tabControl;
    setWindowTitle(QString::asprintf("Orbiscale %s %s", lumenscope::kDisplayName, lumenscope::kVersionText));
    setWindowIcon(applicationIcon());
    _createPanels();
    _insertTabItems();
    m_state.refreshTimerId = 1;
    m_refreshTimer.start(kRefreshPeriodMs);
    lumenscope::platform::catchFirstInterrupt();
    m_interruptWatch.start(kInterruptWatchMs);
    _fillDemoPickers();
    if (splash) QMetaObject::invokeMethod(splash, &QWidget::close, Qt::QueuedConnection);
    gRunningMainDialog = this;
    setMainWindowCloser(&MainDialog::requestClose);
    startAutomaticDemo(m_state);
    startUpdateThread(m_state);
    appLog().write("%s startup ok.", lumenscope::kDisplayName);
}

int MainDialog::runUntilClosed() {
    QEventLoop loop;
    connect(this, &QDialog::finished, &loop, &QEventLoop::quit);
    show();
    if (isVisible()) loop.exec(QEventLoop::DialogExec);
    return result();
}

void MainDialog::_createPanels() {
    const QRect page = m_tabControl->pageRect();
    auto place = [&](QWidget* panel, void*& handle, int tabData) {
        panel->setGeometry(page);
        panel->setObjectName(QStringLiteral("panel%1").arg(tabData));
        panel->setVisible(tabData == kTabGpu);
        handle = panel;
        m_panels[tabData] = panel;
    };
    m_gpuPanel = new GpuPanel(m_tabControl, m_state, m_library);
    place(m_gpuPanel, m_state.gpuPanel, kTabGpu);
    m_gpuPanel->initGpuPanel();
    auto* opengl = new OpenGLPanel(m_tabControl, m_state, m_library);
    place(opengl, m_state.openglPanel, kTabOpenGl);
    m_gpuPanel->setOpenGlPanel(opengl);
    auto* tools = new ToolsPanel(m_tabControl, m_state, m_library);
    place(tools, m_state.toolsPanel, kTabTools);
    tools->initToolsPanel();
    place(new CudaPanel(m_tabControl, m_state, m_library), m_state.cudaPanel, kTabCuda);
    place(new OpenCLPanel(m_tabControl, m_state, m_library), m_state.openclPanel, kTabOpenCl);
    void* vulkanHandle = nullptr;  // the application state keeps no handle of this panel
    place(new VulkanPanel(m_tabControl, m_state, m_library, vulkan::vulkanInfo()), vulkanHandle, kTabVulkan);
    place(new ValidationPanel(m_tabControl, m_state, m_library), m_state.validationPanel, kTabValidation);
}

void MainDialog::_insertTabItems() {
    QTabBar* tabs = tabBar();
    const QSignalBlocker quiet(tabs);
    for (const TabItem& item : kTabItems) {
        const int index = tabs->addTab(QString::fromLatin1(item.label));
        tabs->setTabData(index, item.data);
    }
    tabs->setCurrentIndex(0);
    // A bar that gets tabs may grow itself; it keeps the height the pages were placed under.
    m_tabControl->fitTabBar();
    m_tabControl->narrowTabsToFit();
}

void MainDialog::_fillDemoPickers() {
    const QSignalBlocker quietGl(m_glDemos), quietCl(m_clDemos);
    for (auto [combo, picker] : {std::pair(m_glDemos, DemoPicker::OpenGl), std::pair(m_clDemos, DemoPicker::OpenCl)}) {
        combo->clear();
        for (int row = 0; row < demoPickerRows(picker); ++row)
            if (const DemoDescriptor* demo = demoDescriptor(picker, row))
                combo->addItem(QString::fromLatin1(demo->title), row);
        combo->setCurrentIndex(0);
    }
    m_state.selectedGlDemo = 0;
    m_state.selectedClDemo = 0;
}

bool MainDialog::_runDemoOptions(DemoPicker picker, int row, int32_t* width, int32_t* height) {
    const DemoDescriptor* demo = demoDescriptor(picker, row);
    if (!demo) return false;
    DemoOptionsDialog options(this, m_state, m_library, *demo);
    if (options.exec() != DemoOptionsDialog::kIdGo) return false;
    *width = options.chosenWidth();
    *height = options.chosenHeight();
    return true;
}

bool MainDialog::startOpenGlDemo() {
    return startOpenGlDemoFromButton(m_state, readDemoCapabilities(m_library),
                                     [this](DemoPicker picker, int row, int32_t* width, int32_t* height) {
                                         return _runDemoOptions(picker, row, width, height);
                                     });
}

bool MainDialog::startOpenClDemo() {
    return startOpenClDemoFromButton(m_state, readOpenClDemoChoice(m_panels[kTabOpenCl]),
                                     [this](DemoPicker picker, int row, int32_t* width, int32_t* height) {
                                         return _runDemoOptions(picker, row, width, height);
                                     });
}

QWidget* MainDialog::panelForTabData(int tabData) const {
    if (tabData < 0 || tabData >= int(std::size(m_panels)) || !m_panels[tabData]) return m_panels[kTabOpenGl];
    return m_panels[tabData];
}

void MainDialog::_showPanelOfTab(int index) {
    QWidget* shown = panelForTabData(tabBar()->tabData(index).toInt());
    for (QWidget* panel : m_panels)
        if (panel && panel != shown) panel->hide();
    if (shown) shown->show();
}

void MainDialog::refreshTick() {
    refreshOpenGlMemory(m_panels[kTabOpenGl], m_library);
    if (m_gpuPanel) m_gpuPanel->refreshOnTick();
}

void MainDialog::_endMainDialog(int code) {
    m_refreshTimer.stop();
    m_interruptWatch.stop();
    gRunningMainDialog = nullptr;
    done(code);
}

void MainDialog::reject() { _endMainDialog(kIdCancel); }
void MainDialog::accept() { _endMainDialog(QDialog::Accepted); }

void MainDialog::closeEvent(QCloseEvent* event) {
    _endMainDialog(kIdCancel);
    event->accept();
}

void MainDialog::changeEvent(QEvent* event) {
    // Demos slow down while nobody can see the window.
    if (event->type() == QEvent::WindowStateChange) m_state.demoThrottleMs = isMinimized() ? 50 : 0;
    QDialog::changeEvent(event);
}

void MainDialog::keyPressEvent(QKeyEvent* event) {
    const bool control = event->modifiers() & Qt::ControlModifier;
    const int step = (control && (event->key() == Qt::Key_Tab || event->key() == Qt::Key_PageDown))      ? 1
                     : (control && (event->key() == Qt::Key_Backtab || event->key() == Qt::Key_PageUp)) ? -1
                                                                                                        : 0;
    if (step == 0) {
        QDialog::keyPressEvent(event);
        return;
    }
    QTabBar* tabs = tabBar();
    tabs->setCurrentIndex((tabs->currentIndex() + step + tabs->count()) % tabs->count());
    event->accept();
}

void MainDialog::requestClose() {
    QCoreApplication* app = QCoreApplication::instance();
    if (!app) return;
    QMetaObject::invokeMethod(
        app, [] {
            if (gRunningMainDialog) gRunningMainDialog->close();
        },
        Qt::QueuedConnection);
}

}  // namespace panels
