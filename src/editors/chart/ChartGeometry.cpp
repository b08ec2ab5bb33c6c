#include "ChartGeometry.h"

namespace kestrum::chart {

namespace {

double fraction(double value, const AxisRange& range, bool inverted)
{
    const double span = range.maximum - range.minimum;
    const double f = span > 0 ? (value - range.minimum) / span : 0.5;
    return inverted ? 1 - f : f;
}

double valueAt(double f, const AxisRange& range, bool inverted)
{
    if (inverted) {
        f = 1 - f;
    }
    return range.minimum + f * (range.maximum - range.minimum);
}

} // namespace

double ChartGeometry::bottomToX(double value) const
{
    return plot.left() + fraction(value, bottom, bottomInverted) * plot.width() * bottomEnd;
}

double ChartGeometry::leftToY(double value) const
{
    return plot.bottom() - fraction(value, left, leftInverted) * plot.height() * leftEnd;
}

double ChartGeometry::xToBottom(double x) const
{
    const double w = plot.width() * bottomEnd;
    return valueAt(w > 0 ? (x - plot.left()) / w : 0, bottom, bottomInverted);
}

double ChartGeometry::yToLeft(double y) const
{
    const double h = plot.height() * leftEnd;
    return valueAt(h > 0 ? (plot.bottom() - y) / h : 0, left, leftInverted);
}

} // namespace kestrum::chart
