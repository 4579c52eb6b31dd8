// Draws the program's icon and the vendor logos of the GPU panel into app/panels/artwork/. The pictures are
// ours: a chip in the vendor's colour with its short name, and a lens over a chip for the program.
//   build/app/panels/draw_artwork app/panels/artwork
#include <QColor>
#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <cstdio>

namespace {

void drawChip(QPainter& p, const QRectF& area, const QColor& colour, const QString& label) {
    const qreal pin = area.width() * 0.07;
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(150, 150, 150));
    for (int i = 0; i < 5; ++i) {
        const qreal along = area.left() + area.width() * (0.2 + 0.15 * i) - pin / 2;
        const qreal down = area.top() + area.height() * (0.2 + 0.15 * i) - pin / 2;
        p.drawRect(QRectF(along, area.top(), pin, area.height()));
        p.drawRect(QRectF(area.left(), down, area.width(), pin));
    }
    const QRectF body = area.adjusted(area.width() * 0.1, area.height() * 0.1, -area.width() * 0.1, -area.height() * 0.1);
    p.setBrush(colour);
    p.drawRoundedRect(body, body.width() * 0.08, body.width() * 0.08);
    const QRectF die = body.adjusted(body.width() * 0.12, body.height() * 0.12, -body.width() * 0.12, -body.height() * 0.12);
    p.setBrush(colour.lighter(125));
    p.drawRoundedRect(die, die.width() * 0.05, die.width() * 0.05);
    if (label.isEmpty()) return;
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setBold(true);
    font.setPixelSize(int(die.height() * (label.size() > 4 ? 0.24 : 0.34)));
    p.setFont(font);
    p.setPen(Qt::white);
    p.drawText(die, Qt::AlignCenter, label);
}

bool saveLogo(const QString& dir, const char* name, const QColor& colour, const QString& label) {
    QImage image(90, 90, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    drawChip(p, QRectF(4, 4, 82, 82), colour, label);
    p.end();
    return image.save(dir + "/" + name);
}

bool saveIcon(const QString& dir) {
    QImage image(64, 64, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    // Handle first, so the ring covers its end.
    p.setPen(QPen(QColor(60, 60, 60), 8, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(42, 42), QPointF(58, 58));
    const QRectF lens(4, 4, 44, 44);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(235, 242, 250));
    p.drawEllipse(lens);
    p.save();
    QPainterPath inside;
    inside.addEllipse(lens);
    p.setClipPath(inside);
    drawChip(p, QRectF(12, 12, 28, 28), QColor(0x2A, 0x71, 0xAF), QString());
    // A beam of light across the glass.
    p.setBrush(QColor(255, 255, 255, 110));
    p.drawEllipse(QRectF(10, 8, 18, 10));
    p.restore();
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(QColor(0x2A, 0x71, 0xAF), 5));
    p.drawEllipse(lens.adjusted(2.5, 2.5, -2.5, -2.5));
    p.end();
    return image.save(dir + "/lumenscope.png");
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s OUTPUT_DIR\n", argv[0]);
        return 2;
    }
    const QString dir = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(dir);
    const bool ok = saveIcon(dir) &&
                    saveLogo(dir, "logo_nvidia.png", QColor(0x4E, 0x8F, 0x12), QStringLiteral("NVIDIA")) &&
                    saveLogo(dir, "logo_amd.png", QColor(0xB0, 0x1E, 0x2D), QStringLiteral("AMD")) &&
                    saveLogo(dir, "logo_intel.png", QColor(0x1F, 0x5F, 0xA8), QStringLiteral("Intel")) &&
                    saveLogo(dir, "logo_s3.png", QColor(0x6E, 0x3B, 0x8E), QStringLiteral("S3")) &&
                    saveLogo(dir, "logo_other.png", QColor(0x6A, 0x6A, 0x6A), QStringLiteral("GPU"));
    return ok ? 0 : 1;
}
