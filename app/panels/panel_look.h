#pragma once

#include <QColor>
#include <cstdint>

class QLineEdit;

namespace panels {

// Colours are kept as 0x00BBGGRR words: red in the lowest byte.
QColor fromColorref(uint32_t colorref);

// Links drawn by makeHyperlink.
inline constexpr uint32_t kHyperlinkColour = 0xC00000;

// Read-only data field: the field text colour on the panel's own background.
void applyDataFieldLook(QLineEdit* field, uint32_t textColour);

}  // namespace panels
