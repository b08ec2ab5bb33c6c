#pragma once

#include "editors/chart/Chart.h"
#include "editors/chart/ChartGeometry.h"

#include <QImage>
#include <QString>

#include <optional>

class QPainter;
class QPalette;

namespace kestrum::chart {

struct RenderOptions
{
    // The page's chart-info text: it may carry a fitted curve drawn over point charts.
    QString chartInfo;
    // Resolves system colours (the application palette when null).
    const QPalette* palette = nullptr;
    // Mouse zoom of 2D charts: the data window shown (x on the bottom axis, y on the left).
    std::optional<QRectF> zoomWindow;
    // Mouse zoom of 3D point charts.
    double zoom3D = 1;
    // Pixel size of the chart's text.
    int fontPixelSize = 12;
};

// Draws a chart onto any painter (widget, image, SVG, PDF, printer) within `bounds`: panel,
// title, legend, axes with readable tick numbers and titles, grids, the series with their
// marks, the data table, the 3D effect, the origin cross of two-series point maps and the
// fitted curve of the chart info.
class ChartRenderer
{
public:
    static ChartGeometry paint(QPainter& painter, const QRectF& bounds, const Chart& chart,
                               const RenderOptions& options = {});
    // The chart drawn into a 24-bit image of `size`.
    static QImage image(const Chart& chart, QSize size, const RenderOptions& options = {});

    // The red cross at x = 0 and y = 0 of a chart whose two series are active point series.
    static bool hasOriginCross(const Chart& chart);
};

} // namespace kestrum::chart
