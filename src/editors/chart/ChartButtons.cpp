#include "ChartButtons.h"

namespace kestrum::chart {

ChartButtons ChartButtons::forChart(const Chart& chart, bool rotationMode, bool animateDown)
{
    ChartButtons b;
    const bool points3D = chart.firstIs(SeriesKind::Point3D);
    b.zoomEnabled = points3D || chart.firstIs(SeriesKind::Point);
    b.rotateEnabled = points3D || chart.view3D.enabled;
    b.rotateDown = rotationMode;
    b.animateEnabled = points3D;
    b.timerRunning = b.animateEnabled && animateDown;
    b.wallsEnabled = points3D;
    b.wallsDown = points3D && chart.walls.visible;
    b.baseLineEnabled = points3D;
    b.baseLineDown = points3D && chart.series.front().baseLine.visible;
    b.view3DEnabled = true;
    b.view3DDown = chart.view3D.enabled;
    const bool single = chart.seriesCount() == 1;
    b.kindEnabled = single && (chart.firstIs(SeriesKind::Bar) || chart.firstIs(SeriesKind::Pie) ||
                               chart.firstIs(SeriesKind::HorizBar));
    b.vBarDown = chart.firstIs(SeriesKind::Bar);
    b.hBarDown = chart.firstIs(SeriesKind::HorizBar);
    b.pieDown = chart.firstIs(SeriesKind::Pie);
    b.groupEnabled = chart.seriesCount() > 1 &&
                     (chart.firstIs(SeriesKind::Bar) || chart.firstIs(SeriesKind::Line));
    b.groupBarsDown = chart.firstIs(SeriesKind::Bar);
    b.groupLinesDown = !b.groupBarsDown;
    return b;
}

} // namespace kestrum::chart
