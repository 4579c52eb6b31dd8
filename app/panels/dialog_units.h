#pragma once

#include <QFont>
#include <QRect>
#include <QSize>

namespace panels {

// A place and size in dialog units: x counts quarters of the dialog font's average character width, y eighths
// of its height, so a layout keeps its proportions with any font.
struct DuRect {
    int x = 0, y = 0, w = 0, h = 0;
};

class DialogUnits {
public:
    explicit DialogUnits(const QFont& font);

    int toPixelsX(int du) const;
    int toPixelsY(int du) const;
    QRect toPixels(const DuRect& r) const;
    QSize toPixels(int w, int h) const;

    int baseX() const { return m_baseX; }
    int baseY() const { return m_baseY; }

private:
    int m_baseX = 4;  // average character width, pixels
    int m_baseY = 8;  // character height, pixels
};

// The font every window and dialog of the program is laid out in.
QFont dialogFont();

}  // namespace panels
