#include "app/panels/panel_look.h"

#include <QLineEdit>
#include <QPalette>

namespace panels {

QColor fromColorref(uint32_t colorref) {
    return QColor(int(colorref & 0xFF), int((colorref >> 8) & 0xFF), int((colorref >> 16) & 0xFF));
}

void applyDataFieldLook(QLineEdit* field, uint32_t textColour) {
    QPalette palette = field->palette();
    const QColor text = fromColorref(textColour);
    palette.setColor(QPalette::Active, QPalette::Text, text);
    palette.setColor(QPalette::Inactive, QPalette::Text, text);
    // The field shows through to the panel, as a transparent background on the button-face brush would.
    palette.setColor(QPalette::Base, palette.color(QPalette::Window));
    field->setPalette(palette);
}

}  // namespace panels
