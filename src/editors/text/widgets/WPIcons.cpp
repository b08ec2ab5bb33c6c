#include "WPIcons.h"

#include <QGuiApplication>
#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace kestrum::text {

namespace {

const QHash<QString, QString>& themeNames()
{
    static const QHash<QString, QString> names = {
        {QStringLiteral("bold"), QStringLiteral("format-text-bold")},
        {QStringLiteral("italic"), QStringLiteral("format-text-italic")},
        {QStringLiteral("underline"), QStringLiteral("format-text-underline")},
        {QStringLiteral("strike"), QStringLiteral("format-text-strikethrough")},
        {QStringLiteral("left"), QStringLiteral("format-justify-left")},
        {QStringLiteral("center"), QStringLiteral("format-justify-center")},
        {QStringLiteral("right"), QStringLiteral("format-justify-right")},
        {QStringLiteral("justify"), QStringLiteral("format-justify-fill")},
        {QStringLiteral("outdent"), QStringLiteral("format-indent-less")},
        {QStringLiteral("indent"), QStringLiteral("format-indent-more")},
        {QStringLiteral("undo"), QStringLiteral("edit-undo")},
        {QStringLiteral("redo"), QStringLiteral("edit-redo")},
        {QStringLiteral("cut"), QStringLiteral("edit-cut")},
        {QStringLiteral("copy"), QStringLiteral("edit-copy")},
        {QStringLiteral("paste"), QStringLiteral("edit-paste")},
        {QStringLiteral("print"), QStringLiteral("document-print")},
        {QStringLiteral("find"), QStringLiteral("edit-find")},
    };
    return names;
}

QPixmap drawn(const QString& name)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    const QColor ink = qobject_cast<QGuiApplication*>(QCoreApplication::instance())
                           ? QGuiApplication::palette().color(QPalette::ButtonText)
                           : QColor(Qt::black);
    p.setPen(QPen(ink, 1.2));
    QFont font(QStringLiteral("Serif"));
    font.setPixelSize(13);
    auto letter = [&](const QString& text, bool bold, bool italic, bool underline, bool strike) {
        font.setBold(bold);
        font.setItalic(italic);
        font.setUnderline(underline);
        font.setStrikeOut(strike);
        p.setFont(font);
        p.drawText(QRect(0, 0, 16, 16), Qt::AlignCenter, text);
    };
    auto lines = [&](const QList<std::pair<int, int>>& spans) {
        int y = 3;
        for (const auto& [x0, x1] : spans) {
            p.drawLine(x0, y, x1, y);
            y += 3;
        }
    };
    if (name == QLatin1String("bold")) {
        letter(QStringLiteral("B"), true, false, false, false);
    } else if (name == QLatin1String("italic")) {
        letter(QStringLiteral("I"), false, true, false, false);
    } else if (name == QLatin1String("underline")) {
        letter(QStringLiteral("U"), false, false, true, false);
    } else if (name == QLatin1String("strike")) {
        letter(QStringLiteral("S"), false, false, false, true);
    } else if (name == QLatin1String("subscript") || name == QLatin1String("superscript")) {
        font.setPixelSize(11);
        p.setFont(font);
        p.drawText(QRect(0, 2, 11, 12), Qt::AlignCenter, QStringLiteral("x"));
        font.setPixelSize(8);
        p.setFont(font);
        p.drawText(QRect(9, name == QLatin1String("subscript") ? 8 : 0, 7, 8), Qt::AlignCenter,
                   QStringLiteral("2"));
    } else if (name == QLatin1String("left")) {
        lines({{1, 14}, {1, 10}, {1, 14}, {1, 10}});
    } else if (name == QLatin1String("center")) {
        lines({{1, 14}, {4, 11}, {1, 14}, {4, 11}});
    } else if (name == QLatin1String("right")) {
        lines({{1, 14}, {5, 14}, {1, 14}, {5, 14}});
    } else if (name == QLatin1String("justify")) {
        lines({{1, 14}, {1, 14}, {1, 14}, {1, 14}});
    } else if (name == QLatin1String("bullets") || name == QLatin1String("numbers")) {
        for (int i = 0; i < 3; ++i) {
            const int y = 3 + i * 5;
            if (name == QLatin1String("bullets")) {
                p.setBrush(ink);
                p.drawEllipse(QPointF(2.5, y), 1.5, 1.5);
            } else {
                font.setPixelSize(6);
                p.setFont(font);
                p.drawText(QRect(0, y - 3, 5, 7), Qt::AlignCenter, QString::number(i + 1));
            }
            p.drawLine(6, y, 15, y);
        }
    } else if (name == QLatin1String("outdent") || name == QLatin1String("indent")) {
        lines({{1, 14}, {7, 14}, {7, 14}, {1, 14}});
        QPainterPath arrow;
        if (name == QLatin1String("indent")) {
            arrow.moveTo(1, 6);
            arrow.lineTo(5, 8);
            arrow.lineTo(1, 10);
        } else {
            arrow.moveTo(5, 6);
            arrow.lineTo(1, 8);
            arrow.lineTo(5, 10);
        }
        p.setBrush(ink);
        p.drawPath(arrow);
    } else if (name == QLatin1String("table")) {
        p.drawRect(QRectF(1.5, 2.5, 13, 11));
        p.drawLine(QPointF(1.5, 6.5), QPointF(14.5, 6.5));
        p.drawLine(QPointF(1.5, 10), QPointF(14.5, 10));
        p.drawLine(QPointF(6, 2.5), QPointF(6, 13.5));
        p.drawLine(QPointF(10.5, 2.5), QPointF(10.5, 13.5));
    } else if (name == QLatin1String("undo") || name == QLatin1String("redo")) {
        QPainterPath path;
        const bool undo = name == QLatin1String("undo");
        path.moveTo(undo ? 13 : 3, 12);
        path.cubicTo(undo ? 13 : 3, 4, undo ? 6 : 10, 4, undo ? 4 : 12, 7);
        p.drawPath(path);
        QPainterPath head;
        head.moveTo(undo ? 2 : 14, 9);
        head.lineTo(undo ? 3 : 13, 4);
        head.lineTo(undo ? 7 : 9, 7);
        p.setBrush(ink);
        p.drawPath(head);
    } else if (name == QLatin1String("cut")) {
        p.drawEllipse(QPointF(4.5, 12), 2.5, 2.5);
        p.drawEllipse(QPointF(11.5, 12), 2.5, 2.5);
        p.drawLine(QPointF(6, 10), QPointF(11, 1.5));
        p.drawLine(QPointF(10, 10), QPointF(5, 1.5));
    } else if (name == QLatin1String("copy")) {
        p.drawRect(QRectF(1.5, 1.5, 8, 10));
        p.setBrush(QGuiApplication::palette().color(QPalette::Base));
        p.drawRect(QRectF(6.5, 4.5, 8, 10));
    } else if (name == QLatin1String("paste")) {
        p.drawRect(QRectF(2.5, 2.5, 11, 12.5));
        p.setBrush(ink);
        p.drawRect(QRectF(5.5, 1, 5, 3));
        p.drawLine(QPointF(5, 8), QPointF(11, 8));
        p.drawLine(QPointF(5, 11), QPointF(11, 11));
    } else if (name == QLatin1String("print")) {
        p.drawRect(QRectF(4.5, 1.5, 7, 4));
        p.drawRoundedRect(QRectF(1.5, 5.5, 13, 6), 1.5, 1.5);
        p.setBrush(QGuiApplication::palette().color(QPalette::Base));
        p.drawRect(QRectF(4.5, 9.5, 7, 5));
    } else if (name == QLatin1String("find")) {
        p.drawEllipse(QPointF(6.5, 6.5), 4.5, 4.5);
        p.setPen(QPen(ink, 2));
        p.drawLine(QPointF(10, 10), QPointF(14.5, 14.5));
    } else {
        letter(name.left(1).toUpper(), false, false, false, false);
    }
    return pixmap;
}

} // namespace

QIcon WPIcons::icon(const QString& name)
{
    const QString theme = themeNames().value(name);
    if (!theme.isEmpty() && QIcon::hasThemeIcon(theme)) {
        return QIcon::fromTheme(theme);
    }
    return QIcon(drawn(name));
}

} // namespace kestrum::text
