#pragma once

#include <QDialog>
#include <cstdint>

struct AppState;
struct DemoDescriptor;

namespace Kalidornm {
class Kalidor;
}

namespace panels {

// The dialog a Start button opens before a demo: what the demo shows, where a full benchmark of it lives, the
// window size and the multisampling. "Go!" ends it accepted with the size in chosenWidth() and
// chosenHeight(), each cut down to the largest viewport the OpenGL driver allows; the size is for this start
// only. Opening it sets demo.msaaSamples to 0 ("NONE"), and Go! sets it to the chosen mode's samples.
class DemoOptionsDialog : public QDialog {
public:
    static constexpr int kIdGo = 1;
    static constexpr int kIdCancel = 2;

    DemoOptionsDialog(QWidget* parent, AppState& state, Kalidornm::Kalidor& library, const DemoDescriptor& demo);

    int32_t chosenWidth() const { return m_width; }
    int32_t chosenHeight() const { return m_height; }

private:
    void _go();

    AppState& m_state;
    Kalidornm::Kalidor& m_library;
    int32_t m_width = 0;
    int32_t m_height = 0;
};

// A window size typed by the user, read as the integer its text starts with: leading blanks and a sign are
// taken, reading stops at the first other character, and a text that is no number gives 0. Values beyond
// the int32 range stay at its ends.
int32_t windowSizeFromText(const QString& text);

// `size` cut down to `maxViewport`, the first value of GL_MAX_VIEWPORT_DIMS; nothing holds a lower bound. A
// driver that answered no positive limit cuts nothing.
int32_t clampToViewport(int32_t size, int32_t maxViewport);

}  // namespace panels
