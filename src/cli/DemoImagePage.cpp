#include "DemoImagePage.h"

#include "editors/image/BmpFile.h"

#include <QFont>
#include <QImage>
#include <QPainter>

namespace kestrum::cli {

QByteArray demoImageContent()
{
    // "Sense of belonging by tenure": mean score (1 to 5) for four tenure groups.
    struct Bar
    {
        const char* label;
        double score;
    };
    const Bar bars[] = {
        {"< 1 year", 2.6}, {"1-2 years", 3.1}, {"3-5 years", 3.8}, {"> 5 years", 4.2}};
    QImage image(520, 320, QImage::Format_RGB888);
    image.fill(Qt::white);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing, true);
    QFont title(QStringLiteral("Arial"));
    title.setPixelSize(16);
    title.setBold(true);
    p.setFont(title);
    p.setPen(QColor(0x20, 0x30, 0x40));
    p.drawText(QRect(0, 8, image.width(), 24), Qt::AlignCenter,
               QStringLiteral("Sense of belonging by tenure (mean, 1-5)"));

    const QRect plot(60, 48, 430, 220);
    QFont small(QStringLiteral("Arial"));
    small.setPixelSize(12);
    p.setFont(small);
    for (int v = 0; v <= 5; ++v) {
        const int y = plot.bottom() - plot.height() * v / 5;
        p.setPen(QColor(0xDD, 0xDD, 0xDD));
        p.drawLine(plot.left(), y, plot.right(), y);
        p.setPen(QColor(0x40, 0x40, 0x40));
        p.drawText(QRect(plot.left() - 40, y - 8, 32, 16), Qt::AlignRight | Qt::AlignVCenter,
                   QString::number(v));
    }
    const int slot = plot.width() / 4;
    const QColor fills[] = {QColor(0xD6, 0x8A, 0x3C), QColor(0xE3, 0xB0, 0x4B),
                            QColor(0x6F, 0xA8, 0xDC), QColor(0x2E, 0x6E, 0xA6)};
    for (int i = 0; i < 4; ++i) {
        const int h = int(plot.height() * bars[i].score / 5.0);
        const QRect r(plot.left() + i * slot + slot / 5, plot.bottom() - h, slot * 3 / 5, h);
        p.fillRect(r, fills[i]);
        p.setPen(QColor(0x20, 0x20, 0x20));
        p.drawText(QRect(r.left() - 10, r.top() - 18, r.width() + 20, 16), Qt::AlignCenter,
                   QString::number(bars[i].score, 'f', 1));
        p.drawText(QRect(plot.left() + i * slot, plot.bottom() + 6, slot, 16), Qt::AlignCenter,
                   QString::fromUtf8(bars[i].label));
    }
    p.setPen(QPen(QColor(0x40, 0x40, 0x40), 1));
    p.drawLine(plot.bottomLeft(), plot.bottomRight());
    p.drawLine(plot.bottomLeft(), plot.topLeft());
    p.setFont(small);
    p.drawText(QRect(0, plot.bottom() + 26, image.width(), 16), Qt::AlignCenter,
               QStringLiteral("Survey 2025, n = 312"));
    p.end();
    return image::BmpFile::write(image);
}

} // namespace kestrum::cli
