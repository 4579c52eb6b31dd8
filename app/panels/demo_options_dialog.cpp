#include "app/panels/demo_options_dialog.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <limits>

#include "app/app_state.h"
#include "app/message_boxes.h"
#include "app/panels/controls.h"
#include "demos/harness/demo_table.h"
#include "kalidor/kalidor.h"

namespace panels {

namespace {

constexpr int kWidth = 270, kHeight = 193;
constexpr int kMaxSizeTextLength = 127;  // what is read of a size field

// Windows line breaks ("\r\n", and "\n\r" in one description) as the one line feed a text box wants.
QString withoutCarriageReturns(const char* text) { return QString::fromLatin1(text).remove(QLatin1Char('\r')); }

}  // namespace

int32_t windowSizeFromText(const QString& text) {
    int at = 0;
    while (at < text.size() && text[at].isSpace()) ++at;
    bool negative = false;
    if (at < text.size() && (text[at] == QLatin1Char('-') || text[at] == QLatin1Char('+')))
        negative = text[at++] == QLatin1Char('-');
    constexpr int64_t kLimit = int64_t(std::numeric_limits<int32_t>::max()) + 1;
    int64_t value = 0;
    for (; at < text.size() && text[at] >= QLatin1Char('0') && text[at] <= QLatin1Char('9'); ++at)
        value = std::min<int64_t>(value * 10 + (text[at].unicode() - '0'), kLimit);
    if (negative) return int32_t(-value);
    return int32_t(std::min<int64_t>(value, std::numeric_limits<int32_t>::max()));
}

int32_t clampToViewport(int32_t size, int32_t maxViewport) {
    return maxViewport > 0 && size > maxViewport ? maxViewport : size;
}

DemoOptionsDialog::DemoOptionsDialog(QWidget* parent, AppState& state, Kalidornm::Kalidor& library,
                                     const DemoDescriptor& demo)
    : QDialog(parent), m_state(state), m_library(library), m_width(state.demo.winWidth), m_height(state.demo.winHeight) {
    setObjectName(QStringLiteral("id161"));
    setFont(dialogFont());
    setWindowTitle(QString::fromLatin1(demo.title));
    setModal(true);
    const DialogUnits units{dialogFont()};
    setFixedSize(units.toPixels(kWidth, kHeight));
    ControlBuilder c(this, units, state.fieldTextColour, state.headerTextColour, state.headerBackColour);

    auto* description = new QPlainTextEdit(this);
    description->setObjectName(controlName(1128));
    description->setAccessibleName(QStringLiteral("Description"));
    description->setReadOnly(true);
    description->setGeometry(units.toPixels({7, 7, 256, 66}));
    description->setPlainText(*demo.description ? withoutCarriageReturns(demo.description)
                                                : QString::fromLatin1(kNoDemoDescriptionText));

    const bool benchmark = *demo.benchmarkUrl != '\0';
    c.label(1125, benchmark ? kBenchmarkAvailableText : kNoBenchmarkText, {7, 78, 256, 9});
    QLineEdit* url = c.field(1124, nullptr, {7, 89, 256, 12});
    url->setAccessibleName(QStringLiteral("Benchmark URL"));
    url->setText(QString::fromLatin1(demo.benchmarkUrl));
    url->setCursorPosition(0);
    QPushButton* openBenchmark = c.button(1126, "Open Benchmark URL", {7, 104, 80, 14});
    openBenchmark->setEnabled(benchmark);
    const char* benchmarkUrl = demo.benchmarkUrl;
    connect(openBenchmark, &QPushButton::clicked, this, [benchmarkUrl] { openUrl(benchmarkUrl); });

    c.groupBox(0, "Window Size", {7, 124, 170, 38});
    auto sizeField = [&](int id, const char* caption, const DuRect& labelPlace, const DuRect& place, int32_t value) {
        QLabel* label = c.label(0, caption, labelPlace);
        auto* field = new QLineEdit(this);
        field->setObjectName(controlName(id));
        field->setAccessibleName(label->text());
        field->setGeometry(units.toPixels(place));
        field->setText(QString::asprintf("%d", value));
        label->setBuddy(field);
        return field;
    };
    QLineEdit* width = sizeField(1108, "Width", {15, 140, 24, 8}, {41, 138, 44, 12}, state.demo.winWidth);
    QLineEdit* height = sizeField(1109, "Height", {95, 140, 26, 8}, {123, 138, 44, 12}, state.demo.winHeight);

    c.groupBox(0, "MSAA", {183, 124, 80, 38});
    QComboBox* msaa = c.dropDownList(1134, {191, 138, 64, 12}, 80);
    msaa->setAccessibleName(QStringLiteral("MSAA"));
    msaa->addItem(QStringLiteral("NONE"));
    for (const int32_t samples : library.snapshot().gl.msaaSampleCounts) msaa->addItem(QString::asprintf("%dX", samples));
    msaa->setCurrentIndex(0);
    m_state.demo.msaaSamples = 0;

    QPushButton* go = c.button(kIdGo, "Go!", {155, 172, 50, 14});
    go->setDefault(true);
    QPushButton* cancel = c.button(kIdCancel, "Cancel", {213, 172, 50, 14});
    connect(go, &QPushButton::clicked, this, [this] { _go(); });
    connect(cancel, &QPushButton::clicked, this, [this] { done(kIdCancel); });

    // Typing a size right away replaces the one shown.
    width->setFocus();
    width->selectAll();
    setTabOrder(width, height);
}

void DemoOptionsDialog::_go() {
    const Kalidornm::OpenGlFacts& gl = m_library.snapshot().gl;
    const int32_t maxViewport = gl.maxViewportSize;
    auto readSize = [&](int id) {
        const auto* field = findControl<QLineEdit>(this, id);
        const QString text = field ? field->text().left(kMaxSizeTextLength) : QString();
        return clampToViewport(windowSizeFromText(text), maxViewport);
    };
    m_width = readSize(1108);
    m_height = readSize(1109);
    const auto* msaa = findControl<QComboBox>(this, 1134);
    const int selected = msaa ? msaa->currentIndex() : 0;
    m_state.demo.msaaSamples =
        selected > 0 && size_t(selected) <= gl.msaaSampleCounts.size() ? gl.msaaSampleCounts[size_t(selected - 1)] : 0;
    done(kIdGo);
}

}  // namespace panels
