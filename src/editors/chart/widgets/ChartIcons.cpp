#include "ChartIcons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <functional>

namespace kestrum::chart {

namespace {

constexpr int kSize = 24;
const QColor kBlue(0x4F, 0x81, 0xBD);
const QColor kRed(0xC0, 0x50, 0x4D);
const QColor kGreen(0x9B, 0xBB, 0x59);

QIcon drawn(const std::function<void(QPainter&)>& draw)
{
    QPixmap pixmap(kSize, kSize);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(40, 40, 40), 1.2));
    draw(p);
    p.end();
    return QIcon(pixmap);
}

void bars(QPainter& p, bool horizontal)
{
    const int values[3] = {10, 16, 7};
    const QColor colours[3] = {kBlue, kRed, kGreen};
    for (int i = 0; i < 3; ++i) {
        p.setBrush(colours[i]);
        if (horizontal) {
            p.drawRect(QRectF(3, 3 + i * 6.5, values[i], 5));
        } else {
            p.drawRect(QRectF(3 + i * 6.5, 21 - values[i], 5, values[i]));
        }
    }
}

} // namespace

QIcon ChartIcons::forCommand(const QString& name)
{
    if (name == QLatin1String("VBarBtn") || name == QLatin1String("GroupBarBtn")) {
        return drawn([](QPainter& p) { bars(p, false); });
    }
    if (name == QLatin1String("HBarBtn")) {
        return drawn([](QPainter& p) { bars(p, true); });
    }
    if (name == QLatin1String("PieBtn")) {
        return drawn([](QPainter& p) {
            p.setBrush(kBlue);
            p.drawPie(QRectF(3, 3, 18, 18), 0, 250 * 16);
            p.setBrush(kRed);
            p.drawPie(QRectF(3, 3, 18, 18), 250 * 16, 110 * 16);
        });
    }
    if (name == QLatin1String("GroupLineBtn")) {
        return drawn([](QPainter& p) {
            p.setPen(QPen(kBlue, 2));
            p.drawPolyline(QPolygonF{{3, 18}, {9, 10}, {15, 13}, {21, 4}});
            p.setPen(QPen(kRed, 2));
            p.drawPolyline(QPolygonF{{3, 8}, {9, 15}, {15, 17}, {21, 20}});
        });
    }
    if (name == QLatin1String("SwapSeriesBtn")) {
        return drawn([](QPainter& p) {
            p.drawLine(QPointF(4, 8), QPointF(20, 8));
            p.drawLine(QPointF(16, 4), QPointF(20, 8));
            p.drawLine(QPointF(4, 16), QPointF(20, 16));
            p.drawLine(QPointF(4, 16), QPointF(8, 20));
        });
    }
    if (name == QLatin1String("View3D") || name == QLatin1String("ViewWalls")) {
        const bool walls = name == QLatin1String("ViewWalls");
        return drawn([walls](QPainter& p) {
            p.setBrush(walls ? QColor(220, 224, 236) : QColor(Qt::transparent));
            p.drawPolygon(QPolygonF{{4, 8}, {10, 3}, {20, 3}, {20, 14}, {14, 20}, {4, 20}});
            p.drawLine(QPointF(4, 8), QPointF(14, 8));
            p.drawLine(QPointF(14, 8), QPointF(20, 3));
            p.drawLine(QPointF(14, 8), QPointF(14, 20));
        });
    }
    if (name == QLatin1String("RotationBtn") || name == QLatin1String("AnimateBtn")) {
        const bool animate = name == QLatin1String("AnimateBtn");
        return drawn([animate](QPainter& p) {
            p.setBrush(Qt::NoBrush);
            p.drawArc(QRectF(4, 4, 16, 16), 30 * 16, 280 * 16);
            p.drawLine(QPointF(19, 6), QPointF(19, 11));
            p.drawLine(QPointF(19, 11), QPointF(14, 10));
            if (animate) {
                p.setBrush(kRed);
                p.drawEllipse(QPointF(12, 12), 2.5, 2.5);
            }
        });
    }
    if (name == QLatin1String("BaseLineBtn")) {
        return drawn([](QPainter& p) {
            p.drawLine(QPointF(3, 21), QPointF(21, 21));
            for (int i = 0; i < 3; ++i) {
                const double x = 6 + i * 6;
                const double y = 6 + (i % 2) * 6;
                p.drawLine(QPointF(x, y), QPointF(x, 21));
                p.setBrush(kBlue);
                p.drawEllipse(QPointF(x, y), 2.5, 2.5);
            }
        });
    }
    if (name == QLatin1String("ZoomInBtn") || name == QLatin1String("ZoomOutBtn")) {
        const bool in = name == QLatin1String("ZoomInBtn");
        return drawn([in](QPainter& p) {
            p.setBrush(Qt::white);
            p.drawEllipse(QRectF(3, 3, 13, 13));
            p.setPen(QPen(QColor(40, 40, 40), 2.5));
            p.drawLine(QPointF(14, 14), QPointF(21, 21));
            p.setPen(QPen(QColor(40, 40, 40), 1.5));
            p.drawLine(QPointF(6, 9.5), QPointF(13, 9.5));
            if (in) {
                p.drawLine(QPointF(9.5, 6), QPointF(9.5, 13));
            }
        });
    }
    if (name == QLatin1String("PhotoBtn")) {
        return drawn([](QPainter& p) {
            p.setBrush(QColor(90, 90, 90));
            p.drawRoundedRect(QRectF(3, 7, 18, 13), 2, 2);
            p.drawRect(QRectF(8, 4, 6, 3));
            p.setBrush(Qt::white);
            p.drawEllipse(QPointF(12, 13.5), 4, 4);
        });
    }
    if (name == QLatin1String("ChartEdit")) {
        return drawn([](QPainter& p) {
            bars(p, false);
            p.setPen(QPen(QColor(40, 40, 40), 2.5));
            p.drawLine(QPointF(12, 20), QPointF(21, 11));
        });
    }
    if (name == QLatin1String("ChartExport") || name == QLatin1String("ChartImport")) {
        const bool out = name == QLatin1String("ChartExport");
        return drawn([out](QPainter& p) {
            p.setBrush(Qt::white);
            p.drawRect(QRectF(4, 3, 13, 18));
            const double from = out ? 10 : 21;
            const double to = out ? 21 : 10;
            p.setPen(QPen(kBlue, 2));
            p.drawLine(QPointF(from, 12), QPointF(to, 12));
            const double tip = out ? to - 4 : to + 4;
            p.drawLine(QPointF(to, 12), QPointF(tip, 8));
            p.drawLine(QPointF(to, 12), QPointF(tip, 16));
        });
    }
    if (name == QLatin1String("ChartPrint")) {
        return drawn([](QPainter& p) {
            p.setBrush(Qt::white);
            p.drawRect(QRectF(7, 3, 10, 7));
            p.setBrush(QColor(150, 150, 150));
            p.drawRect(QRectF(3, 10, 18, 8));
            p.setBrush(Qt::white);
            p.drawRect(QRectF(7, 15, 10, 6));
        });
    }
    return {};
}

} // namespace kestrum::chart
