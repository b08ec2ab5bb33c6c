#include "GridIcons.h"

#include <QPainter>
#include <QPixmap>

namespace kestrum::grid {

namespace {

constexpr int kSize = 22;

QPixmap blank()
{
    QPixmap pixmap(kSize, kSize);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

} // namespace

QIcon GridIcons::themed(const QString& themeName, const QString& glyphText)
{
    return QIcon::fromTheme(themeName, glyph(glyphText));
}

QIcon GridIcons::glyph(const QString& text)
{
    QPixmap pixmap = blank();
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    QFont f;
    f.setPixelSize(text.size() > 2 ? 9 : 13);
    f.setBold(true);
    p.setFont(f);
    p.setPen(QColor(0x30, 0x30, 0x30));
    p.drawText(QRect(0, 0, kSize, kSize), Qt::AlignCenter, text);
    return QIcon(pixmap);
}

QIcon GridIcons::letter(const QString& text, bool bold, bool italic, bool underline)
{
    QPixmap pixmap = blank();
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    QFont f(QStringLiteral("Serif"));
    f.setPixelSize(15);
    f.setBold(bold);
    f.setItalic(italic);
    f.setUnderline(underline);
    p.setFont(f);
    p.setPen(QColor(0x20, 0x20, 0x20));
    p.drawText(QRect(0, 0, kSize, kSize), Qt::AlignCenter, text);
    return QIcon(pixmap);
}

QIcon GridIcons::alignment(int alignment)
{
    QPixmap pixmap = blank();
    QPainter p(&pixmap);
    p.setPen(QPen(QColor(0x30, 0x30, 0x30), 2));
    const int widths[] = {16, 10, 14, 8};
    for (int i = 0; i < 4; ++i) {
        const int w = widths[i];
        const int y = 5 + i * 4;
        int x = 3;
        if (alignment == 1) {
            x = kSize - 3 - w;
        } else if (alignment == 2) {
            x = (kSize - w) / 2;
        }
        p.drawLine(x, y, x + w, y);
    }
    return QIcon(pixmap);
}

QIcon GridIcons::colourGlyph(const QString& glyphText, const QColor& colour)
{
    QPixmap pixmap = blank();
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    QFont f;
    f.setPixelSize(12);
    f.setBold(true);
    p.setFont(f);
    p.setPen(QColor(0x30, 0x30, 0x30));
    p.drawText(QRect(0, 0, kSize, kSize - 6), Qt::AlignCenter, glyphText);
    p.fillRect(QRect(3, kSize - 6, kSize - 6, 4), colour.isValid() ? colour : QColor(Qt::white));
    return QIcon(pixmap);
}

} // namespace kestrum::grid
