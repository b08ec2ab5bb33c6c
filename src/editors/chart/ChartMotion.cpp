#include "ChartMotion.h"

#include "common/Rounding.h"

#include <cstdlib>

namespace kestrum::chart {

void ChartMotion::mouseDown(QPoint at, const Chart& chart)
{
    start = at;
    startRotation = chart.view3D.rotation;
    startElevation = chart.view3D.elevation;
    dragging = true;
}

bool ChartMotion::mouseMove(QPoint at, QSize chartSize, Chart& chart) const
{
    if (!dragging || chartSize.width() <= 0 || chartSize.height() <= 0) {
        return false;
    }
    const auto rotation =
        common::roundHalfEven(double(at.x() - start.x()) / chartSize.width() * 100) + startRotation;
    const auto elevation =
        common::roundHalfEven(double(start.y() - at.y()) / chartSize.height() * 100) +
        startElevation;
    chart.setRotation(rotation);
    chart.setElevation(elevation);
    return true;
}

void ChartMotion::mouseUp(const Chart& chart)
{
    offsetRotation = 0;
    offsetElevation = 0;
    startRotation = chart.view3D.rotation;
    startElevation = chart.view3D.elevation;
    dragging = false;
}

void ChartMotion::startAnimation(const Chart& chart)
{
    startRotation = chart.view3D.rotation;
    startElevation = chart.view3D.elevation;
    limit = 13;
    offsetRotation = 0;
    offsetElevation = 0;
}

bool ChartMotion::tick(Chart& chart, const std::function<int()>& coin)
{
    if (dragging) {
        return false;
    }
    if (std::abs(offsetRotation) >= limit) {
        upRotation = !upRotation;
        limit = 25;
    }
    offsetRotation += upRotation ? 1 : -1;
    if (offsetRotation == 0) {
        upRotation = coin() == 0;
    }
    if (std::abs(offsetElevation) >= 25) {
        upElevation = !upElevation;
    }
    offsetElevation += upElevation ? 1 : -1;
    if (offsetElevation == 0) {
        // The rotation's direction, not the elevation's: kept as it always was.
        upRotation = coin() == 0;
    }
    chart.setRotation(qint64(startElevation) + offsetRotation);
    chart.setElevation(qint64(startRotation) + offsetElevation);
    return true;
}

} // namespace kestrum::chart
