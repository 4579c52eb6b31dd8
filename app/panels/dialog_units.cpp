#include "app/panels/dialog_units.h"

#include <QFontMetrics>
#include <QStringList>

namespace panels {

namespace {

// a * b / c rounded to the nearest whole number.
int mulDiv(int a, int b, int c) {
    const long long product = static_cast<long long>(a) * b;
    return int(product >= 0 ? (product + c / 2) / c : (product - c / 2) / c);
}

}  // namespace

DialogUnits::DialogUnits(const QFont& font) {
    const QFontMetrics metrics(font);
    // The average width is the width of the 52 letters divided by 52, rounded to a whole pixel, which is how
    // dialog units are defined; the height is the font's full line height.
    const int lettersWidth = metrics.horizontalAdvance(QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"));
    m_baseX = (lettersWidth / 26 + 1) / 2;
    m_baseY = metrics.height();
    if (m_baseX < 1) m_baseX = 4;
    if (m_baseY < 1) m_baseY = 8;
}

int DialogUnits::toPixelsX(int du) const { return mulDiv(du, m_baseX, 4); }
int DialogUnits::toPixelsY(int du) const { return mulDiv(du, m_baseY, 8); }

// Corners are mapped, not sizes, so that two controls that touch in dialog units touch in pixels too.
QRect DialogUnits::toPixels(const DuRect& r) const {
    const int left = toPixelsX(r.x), top = toPixelsY(r.y);
    return QRect(left, top, toPixelsX(r.x + r.w) - left, toPixelsY(r.y + r.h) - top);
}

QSize DialogUnits::toPixels(int w, int h) const { return QSize(toPixelsX(w), toPixelsY(h)); }

QFont dialogFont() {
    // A narrow sans serif at 8 points keeps the texts inside the boxes they were measured for; the families
    // are tried in order and fontconfig fills in whatever the machine lacks.
    QFont font;
    font.setFamilies({QStringLiteral("DejaVu Sans Condensed"), QStringLiteral("Liberation Sans Narrow"),
                      QStringLiteral("Liberation Sans"), QStringLiteral("Arial"), QStringLiteral("Sans Serif")});
    font.setPointSize(8);
    font.setStyleHint(QFont::SansSerif);
    return font;
}

}  // namespace panels
