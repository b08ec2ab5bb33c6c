#include "ChartProjection.h"

#include "editors/chart/AxisScale.h"
#include "editors/chart/SeriesPainter.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kestrum::chart {

namespace {

constexpr double kDegree = std::numbers::pi / 180;

double unit(double v, const AxisRange& r)
{
    const double span = r.maximum - r.minimum;
    return span > 0 ? (v - r.minimum) / span * 2 - 1 : 0;
}

struct Drawn
{
    double nearness;
    QPointF at;
    QPointF floor;
    int series;
    int point;
};

} // namespace

ChartProjection::ChartProjection(qint32 rotation, qint32 elevation, const QRectF& area, double zoom)
    : m_cosR(std::cos(rotation * kDegree)), m_sinR(std::sin(rotation * kDegree)),
      m_cosE(std::cos(elevation * kDegree)), m_sinE(std::sin(elevation * kDegree)),
      m_centre(area.center()), m_scale(std::min(area.width(), area.height()) / 3.6 * zoom)
{}

QPointF ChartProjection::project(double x, double y, double z) const
{
    const double xr = x * m_cosR + z * m_sinR;
    const double zr = -x * m_sinR + z * m_cosR;
    const double yr = y * m_cosE + zr * m_sinE;
    return {m_centre.x() + xr * m_scale, m_centre.y() - yr * m_scale};
}

double ChartProjection::nearness(double x, double y, double z) const
{
    const double zr = -x * m_sinR + z * m_cosR;
    return -y * m_sinE + zr * m_cosE;
}

void ChartProjection::paint(QPainter& painter, const Chart& chart, const QRectF& area, double zoom,
                            const QPalette* palette)
{
    const ChartProjection pr(chart.view3D.rotation, chart.view3D.elevation, area, zoom);
    const AxisRange xr = AxisScale::resolve(chart.bottomAxis, AxisScale::categoryRange(chart));
    const AxisRange yr = AxisScale::resolve(chart.leftAxis, AxisScale::valueRange(chart));
    const AxisRange zr = AxisScale::depthRange(chart);

    // The walls away from the viewer: the floor (or ceiling), one side and the back.
    const double floorY = pr.nearness(0, -1, 0) < pr.nearness(0, 1, 0) ? -1 : 1;
    const double wallX = pr.nearness(-1, 0, 0) < pr.nearness(1, 0, 0) ? -1 : 1;
    const double wallZ = pr.nearness(0, 0, -1) < pr.nearness(0, 0, 1) ? -1 : 1;
    auto face = [&](auto corner) {
        QPolygonF poly;
        for (int i = 0; i < 4; ++i) {
            poly << corner(i);
        }
        return poly;
    };
    static constexpr double a[4] = {-1, 1, 1, -1};
    static constexpr double b[4] = {-1, -1, 1, 1};
    const QPen wallPen = chart.walls.backPen.visible
                             ? QPen(common::toQColor(chart.walls.backPen.colour, palette),
                                    std::max(0, chart.walls.backPen.width))
                             : QPen(Qt::NoPen);
    if (chart.walls.visible) {
        painter.setPen(wallPen);
        painter.setBrush(QColor(236, 236, 236));
        painter.drawPolygon(face([&](int i) { return pr.project(a[i], floorY, b[i]); }));
        painter.setBrush(QColor(224, 228, 236));
        painter.drawPolygon(face([&](int i) { return pr.project(wallX, a[i], b[i]); }));
        painter.setBrush(QColor(230, 232, 240));
        painter.drawPolygon(face([&](int i) { return pr.project(a[i], b[i], wallZ); }));
    } else {
        painter.setPen(QPen(QColor(Qt::gray), 0, Qt::DotLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawPolygon(face([&](int i) { return pr.project(a[i], floorY, b[i]); }));
    }

    // Tick labels along the near edges of the floor and the far vertical edge.
    painter.setPen(QColor(Qt::black));
    const QFontMetricsF fm(painter.font());
    auto label = [&](QPointF at, double value) {
        const QString text = SeriesPainter::formatValue(value);
        const QRectF box(at.x() - fm.horizontalAdvance(text) / 2 - 2, at.y() + 2,
                         fm.horizontalAdvance(text) + 4, fm.height());
        painter.drawText(box, Qt::AlignCenter, text);
    };
    for (double v : AxisScale::ticks(xr)) {
        label(pr.project(unit(v, xr), floorY, -wallZ), v);
    }
    for (double v : AxisScale::ticks(zr)) {
        label(pr.project(-wallX, floorY, unit(v, zr)), v);
    }
    for (double v : AxisScale::ticks(yr)) {
        const QPointF at = pr.project(wallX, unit(v, yr), -wallZ);
        const QString text = SeriesPainter::formatValue(v);
        painter.drawText(QRectF(at.x() - fm.horizontalAdvance(text) - 6, at.y() - fm.height() / 2,
                                fm.horizontalAdvance(text) + 4, fm.height()),
                         Qt::AlignRight | Qt::AlignVCenter, text);
    }

    std::vector<Drawn> points;
    for (int s = 0; s < chart.seriesCount(); ++s) {
        const ChartSeries& ser = chart.series[std::size_t(s)];
        if (!ser.active || ser.kind != SeriesKind::Point3D) {
            continue;
        }
        for (int p = 0; p < int(ser.points.size()); ++p) {
            const ChartPoint& pt = ser.points[std::size_t(p)];
            const double x = unit(pt.x, xr);
            const double y = unit(pt.y, yr);
            const double z = unit(pt.z, zr);
            points.push_back(
                {pr.nearness(x, y, z), pr.project(x, y, z), pr.project(x, floorY, z), s, p});
        }
    }
    std::stable_sort(points.begin(), points.end(),
                     [](const Drawn& l, const Drawn& r) { return l.nearness < r.nearness; });
    painter.save();
    if (chart.walls.clipPoints) {
        painter.setClipRect(area);
    }
    for (const Drawn& d : points) {
        const ChartSeries& ser = chart.series[std::size_t(d.series)];
        if (ser.baseLine.visible) {
            painter.setPen(QPen(common::toQColor(ser.baseLine.colour, palette),
                                std::max(0, ser.baseLine.width)));
            painter.drawLine(d.at, d.floor);
        }
        QColor colour = common::toQColor(chart.pointColour(d.series, d.point), palette);
        painter.setPen(QPen(colour.darker(160), 0));
        painter.setBrush(colour);
        SeriesPainter::paintMarker(painter, d.at, ser.pointerShape, std::max(1, ser.pointerWidth),
                                   std::max(1, ser.pointerHeight));
    }
    painter.restore();
}

} // namespace kestrum::chart
