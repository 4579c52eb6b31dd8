#pragma once

#include <functional>

class QLabel;

namespace panels {

// Turns a static text into a link: blue, underlined while the pointer is over it, a hand cursor, and
// `onClick` when it is clicked. The behaviour lives as long as the label.
void makeHyperlink(QLabel* label, std::function<void()> onClick);

}  // namespace panels
