#include "app/panels/controls.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>

#include "app/panels/panel_look.h"

namespace panels {

QString controlName(int id) { return QStringLiteral("id%1").arg(id); }

CaptionBox::CaptionBox(const QString& caption, uint32_t textColour, uint32_t backColour, QWidget* parent)
    : QWidget(parent), m_caption(caption), m_textColour(textColour), m_backColour(backColour) {
    setAccessibleName(caption.trimmed());
    // Drawn under the controls it frames, which are its siblings.
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void CaptionBox::setCaption(const QString& caption) {
    m_caption = caption;
    setAccessibleName(caption.trimmed());
    update();
}

void CaptionBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QFontMetrics metrics(font());
    const int captionHeight = metrics.height();
    const int captionWidth = metrics.horizontalAdvance(m_caption);
    const int indent = metrics.averageCharWidth();

    // An etched frame from the caption's middle down: a dark line with a light one inside it.
    const QRect frame = rect().adjusted(0, captionHeight / 2, -2, -2);
    painter.setPen(palette().color(QPalette::Light));
    painter.drawRect(frame.translated(1, 1));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(frame);

    const QRect captionRect(indent, 0, qMin(captionWidth, width() - 2 * indent), captionHeight);
    painter.fillRect(captionRect, fromColorref(m_backColour));
    painter.setPen(fromColorref(m_textColour));
    painter.drawText(captionRect, Qt::AlignLeft | Qt::AlignVCenter, m_caption);
}

ControlBuilder::ControlBuilder(QWidget* parent, const DialogUnits& units, uint32_t fieldTextColour,
                               uint32_t headerTextColour, uint32_t headerBackColour)
    : m_parent(parent),
      m_units(units),
      m_fieldTextColour(fieldTextColour),
      m_headerTextColour(headerTextColour),
      m_headerBackColour(headerBackColour) {}

void ControlBuilder::_place(QWidget* control, int id, const DuRect& place) {
    if (id != 0) control->setObjectName(controlName(id));
    control->setGeometry(m_units.toPixels(place));
}

QLabel* ControlBuilder::label(int id, const char* text, const DuRect& place) {
    auto* label = new QLabel(QString::fromLatin1(text), m_parent);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    _place(label, id, place);
    fitLabelText(label);
    return label;
}

void fitLabelText(QLabel* label) {
    // The boxes were measured for a narrower font than most machines have; a text that would be cut is set a
    // little smaller instead, never below 85% of the dialog font.
    QFont font = label->parentWidget() ? label->parentWidget()->font() : label->font();
    const qreal full = font.pointSizeF();
    for (qreal size = full; size >= full * 0.85; size -= 0.25) {
        font.setPointSizeF(size);
        if (QFontMetrics(font).horizontalAdvance(label->text()) <= label->width()) break;
    }
    if (font.pointSizeF() != full) label->setFont(font);
}

QLineEdit* ControlBuilder::field(int id, QLabel* label, const DuRect& place) {
    auto* field = new QLineEdit(m_parent);
    field->setReadOnly(true);
    field->setFrame(true);
    field->setTextMargins(0, 0, 0, 0);
    applyDataFieldLook(field, m_fieldTextColour);
    if (label) {
        field->setAccessibleName(label->text());
        label->setBuddy(field);
        field->setProperty("label", QVariant::fromValue(static_cast<QObject*>(label)));
    }
    _place(field, id, place);
    return field;
}

QLineEdit* ControlBuilder::edit(int id, QLabel* label, const DuRect& place) {
    auto* edit = new QLineEdit(m_parent);
    edit->setTextMargins(0, 0, 0, 0);
    if (label) {
        edit->setAccessibleName(label->text());
        label->setBuddy(edit);
        edit->setProperty("label", QVariant::fromValue(static_cast<QObject*>(label)));
    }
    _place(edit, id, place);
    return edit;
}

QLabel* ControlBuilder::valueLine(int id, const DuRect& place) {
    QLabel* line = label(id, "", place);
    QPalette palette = line->palette();
    // Active and inactive only: a greyed line keeps the greyed look.
    palette.setColor(QPalette::Active, QPalette::WindowText, fromColorref(m_fieldTextColour));
    palette.setColor(QPalette::Inactive, QPalette::WindowText, fromColorref(m_fieldTextColour));
    line->setPalette(palette);
    return line;
}

QPushButton* ControlBuilder::button(int id, const char* text, const DuRect& place) {
    auto* button = new QPushButton(QString::fromLatin1(text), m_parent);
    button->setAutoDefault(false);
    _place(button, id, place);
    return button;
}

QComboBox* ControlBuilder::dropDownList(int id, const DuRect& place, int listHeight) {
    auto* combo = new QComboBox(m_parent);
    combo->setEditable(false);
    const int rowHeight = qMax(1, place.h - 4);
    combo->setMaxVisibleItems(qMax(1, (listHeight - place.h) / rowHeight));
    _place(combo, id, place);
    return combo;
}

CaptionBox* ControlBuilder::groupBox(int id, const char* caption, const DuRect& place) {
    auto* box = new CaptionBox(QString::fromLatin1(caption), m_headerTextColour, m_headerBackColour, m_parent);
    _place(box, id, place);
    box->lower();
    return box;
}

namespace {

QWidget* labelOf(const QWidget* field) {
    return field ? qobject_cast<QWidget*>(field->property("label").value<QObject*>()) : nullptr;
}

}  // namespace

void setFieldText(QWidget* panel, int id, const QString& text) {
    if (auto* field = findControl<QLineEdit>(panel, id)) {
        if (field->text() != text) field->setText(text);
        field->setCursorPosition(0);
    }
}

QString fieldText(const QWidget* panel, int id) {
    const auto* field = findControl<QLineEdit>(panel, id);
    return field ? field->text() : QString();
}

void setControlEnabled(QWidget* panel, int id, bool enabled) {
    QWidget* control = findControl(panel, id);
    if (!control) return;
    control->setEnabled(enabled);
    if (QWidget* label = labelOf(control)) label->setEnabled(enabled);
}

void setFieldEnabled(QWidget* panel, int id, bool enabled) { setControlEnabled(panel, id, enabled); }

void blankField(QWidget* panel, int id) {
    setFieldText(panel, id, QString());
    setControlEnabled(panel, id, false);
}

}  // namespace panels
