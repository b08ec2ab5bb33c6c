#pragma once

#include "editors/chart/AxisScale.h"

#include <QPointF>
#include <QRectF>

namespace kestrum::chart {

// Where a drawn chart put its plot and how its axes map values to the paint device: what the
// overlays (origin cross, fitted curve) and the mouse zoom need after drawing.
class ChartGeometry
{
public:
    QRectF plot;
    AxisRange left;   // the vertical axis
    AxisRange bottom; // the horizontal axis
    bool leftInverted = false;
    bool bottomInverted = false;
    double leftEnd = 1;   // fraction of the plot height the left axis reaches
    double bottomEnd = 1; // fraction of the plot width the bottom axis reaches
    QPointF depth;        // 3D offset of 2D kinds (0, 0 when flat)
    bool hasAxes = false; // pies and 3D point charts have no 2D axes

    double bottomToX(double value) const;
    double leftToY(double value) const;
    QPointF toDevice(double bottomValue, double leftValue) const
    {
        return {bottomToX(bottomValue), leftToY(leftValue)};
    }
    double xToBottom(double x) const;
    double yToLeft(double y) const;
};

} // namespace kestrum::chart
