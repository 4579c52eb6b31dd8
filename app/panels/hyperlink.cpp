#include "app/panels/hyperlink.h"

#include <QEvent>
#include <QLabel>
#include <QMouseEvent>

#include "app/panels/panel_look.h"

namespace panels {

namespace {

class HyperlinkBehaviour : public QObject {
public:
    HyperlinkBehaviour(QLabel* label, std::function<void()> onClick)
        : QObject(label), m_label(label), m_onClick(std::move(onClick)) {}

    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
            case QEvent::Enter: _underline(true); break;
            case QEvent::Leave: _underline(false); break;
            case QEvent::MouseButtonRelease: {
                const auto* mouse = static_cast<QMouseEvent*>(event);
                if (mouse->button() == Qt::LeftButton && m_label->rect().contains(mouse->position().toPoint()) &&
                    m_onClick)
                    m_onClick();
                return true;
            }
            default: break;
        }
        return false;
    }

private:
    void _underline(bool on) {
        QFont font = m_label->font();
        font.setUnderline(on);
        m_label->setFont(font);
    }

    QLabel* m_label;
    std::function<void()> m_onClick;
};

}  // namespace

void makeHyperlink(QLabel* label, std::function<void()> onClick) {
    if (!label) return;
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, fromColorref(kHyperlinkColour));
    label->setPalette(palette);
    label->setCursor(Qt::PointingHandCursor);
    label->installEventFilter(new HyperlinkBehaviour(label, std::move(onClick)));
}

}  // namespace panels
