#pragma once

#include "editors/chart/Chart.h"

#include <QPointF>
#include <QRectF>

class QPainter;
class QPalette;

namespace kestrum::chart {

// The projection of 3D point charts: the data cube scaled to -1..1 on each axis, turned by the
// chart's rotation about the vertical axis and tilted by its elevation, drawn orthographically
// into an area. It also draws such a chart: walls, axes, base lines and points, far to near.
class ChartProjection
{
public:
    ChartProjection(qint32 rotation, qint32 elevation, const QRectF& area, double zoom = 1);

    QPointF project(double x, double y, double z) const;
    // Larger is nearer to the viewer.
    double nearness(double x, double y, double z) const;

    static void paint(QPainter& painter, const Chart& chart, const QRectF& area, double zoom,
                      const QPalette* palette);

private:
    double m_cosR, m_sinR, m_cosE, m_sinE;
    QPointF m_centre;
    double m_scale;
};

} // namespace kestrum::chart
