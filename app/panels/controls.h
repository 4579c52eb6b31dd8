#pragma once

#include <QLabel>
#include <QString>
#include <QWidget>
#include <cstdint>

#include "app/panels/dialog_units.h"

class QComboBox;
class QLineEdit;
class QPushButton;

namespace panels {

// "id1003": the object name of the control with that number, by which tests and tools find it.
QString controlName(int id);

template <typename T = QWidget>
T* findControl(const QWidget* parent, int id) {
    return parent ? parent->findChild<T*>(controlName(id)) : nullptr;
}

// A group box whose caption stands in the header colours, white on blue unless told otherwise.
class CaptionBox : public QWidget {
public:
    CaptionBox(const QString& caption, uint32_t textColour, uint32_t backColour, QWidget* parent);
    QString caption() const { return m_caption; }
    void setCaption(const QString& caption);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_caption;
    uint32_t m_textColour;
    uint32_t m_backColour;
};

// Makes the controls of one panel or dialog at their places in dialog units. Numbered controls get the name
// "id<number>"; 0 leaves a control unnamed. A field gets its label's text as accessible name and the label
// as buddy, so that the two are greyed together.
class ControlBuilder {
public:
    ControlBuilder(QWidget* parent, const DialogUnits& units, uint32_t fieldTextColour, uint32_t headerTextColour,
                   uint32_t headerBackColour);

    QLabel* label(int id, const char* text, const DuRect& place);
    QLineEdit* field(int id, QLabel* label, const DuRect& place);
    // A field the user types into, named by its label as a data field is.
    QLineEdit* edit(int id, QLabel* label, const DuRect& place);
    // A static line in the data fields' colour, for a line that states a value of its own ("Number of ...").
    QLabel* valueLine(int id, const DuRect& place);
    QPushButton* button(int id, const char* text, const DuRect& place);
    // `place.h` is the height of the closed box; the opened list shows about `listHeight` dialog units.
    QComboBox* dropDownList(int id, const DuRect& place, int listHeight);
    CaptionBox* groupBox(int id, const char* caption, const DuRect& place);

    const DialogUnits& units() const { return m_units; }

private:
    void _place(QWidget* control, int id, const DuRect& place);

    QWidget* m_parent;
    DialogUnits m_units;
    uint32_t m_fieldTextColour, m_headerTextColour, m_headerBackColour;
};

// Sets a label's text a little smaller when it would not fit its box in the dialog font.
void fitLabelText(QLabel* label);

// Field text and greying. A field's label (its buddy) follows the field's state.
void setFieldText(QWidget* panel, int id, const QString& text);
QString fieldText(const QWidget* panel, int id);
void setFieldEnabled(QWidget* panel, int id, bool enabled);
// Empty and greyed, with the label.
void blankField(QWidget* panel, int id);
// Enabled or greyed, together with the control's label.
void setControlEnabled(QWidget* panel, int id, bool enabled);

}  // namespace panels
