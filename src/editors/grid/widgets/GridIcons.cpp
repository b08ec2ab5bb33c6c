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

QIcon GridIcons::themed(const QString& themeName, Shape shape)
{
    return QIcon::fromTheme(themeName, drawn(shape));
}

QIcon GridIcons::drawn(Shape shape)
{
    QPixmap pixmap = blank();
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    const QColor ink(0x30, 0x30, 0x30);
    const QColor paper(Qt::white);
    p.setPen(QPen(ink, 1.4));
    auto page = [&](const QRectF& r) {
        p.setBrush(paper);
        p.drawRect(r);
        p.drawLine(QPointF(r.left() + 2.5, r.top() + 4), QPointF(r.right() - 2.5, r.top() + 4));
        p.drawLine(QPointF(r.left() + 2.5, r.top() + 7), QPointF(r.right() - 2.5, r.top() + 7));
    };
    auto lens = [&](const QPointF& centre, double radius) {
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(ink, 1.8));
        p.drawEllipse(centre, radius, radius);
        p.drawLine(centre + QPointF(radius * 0.7, radius * 0.7),
                   centre + QPointF(radius * 1.9, radius * 1.9));
        p.setPen(QPen(ink, 1.4));
    };
    switch (shape) {
    case Shape::Save:
        p.setBrush(QColor(0x4A, 0x6F, 0xA5));
        p.drawRoundedRect(QRectF(3.5, 3.5, 15, 15), 1.5, 1.5);
        p.setBrush(paper);
        p.drawRect(QRectF(6.5, 3.5, 9, 5));
        p.drawRect(QRectF(6, 12, 10, 6.5));
        break;
    case Shape::Print:
        page(QRectF(6.5, 2.5, 9, 7));
        p.setBrush(QColor(0xB0, 0xB0, 0xB0));
        p.drawRoundedRect(QRectF(2.5, 8.5, 17, 7), 1.5, 1.5);
        p.setBrush(paper);
        p.drawRect(QRectF(6.5, 13.5, 9, 6));
        break;
    case Shape::Preview:
        page(QRectF(3.5, 2.5, 11, 15));
        lens(QPointF(13, 13), 4);
        break;
    case Shape::Find:
        lens(QPointF(9, 9), 5.5);
        break;
    case Shape::Replace:
        lens(QPointF(7.5, 7.5), 4.5);
        p.setPen(QPen(QColor(0x2E, 0x7D, 0x32), 1.8));
        p.drawLine(QPointF(12, 17), QPointF(20, 17));
        p.drawLine(QPointF(17, 14), QPointF(20, 17));
        p.drawLine(QPointF(17, 20), QPointF(20, 17));
        break;
    case Shape::Copy:
        page(QRectF(3.5, 2.5, 10, 12));
        page(QRectF(8.5, 7.5, 10, 12));
        break;
    case Shape::Paste:
        p.setBrush(QColor(0xC8, 0x9B, 0x5A));
        p.drawRoundedRect(QRectF(3.5, 4.5, 13, 15), 1.5, 1.5);
        p.setBrush(QColor(0x90, 0x90, 0x90));
        p.drawRect(QRectF(7.5, 2.5, 5, 3.5));
        page(QRectF(9.5, 9.5, 9, 10));
        break;
    }
    return QIcon(pixmap);
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
