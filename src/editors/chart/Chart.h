#pragma once

#include "editors/chart/ChartTypes.h"

#include <QColor>

namespace kestrum::chart {

// A whole chart: its series, axes, legend, title, panel and 3D view. A plain value: the chart
// page document holds one, the renderer draws one, the stream stores one.
class Chart
{
public:
    QString title;
    common::TColor panelColour = common::clWhite;
    bool legendVisible = true;
    bool dataTableVisible = false;
    View3D view3D;
    ChartWalls walls;
    ValueScale valueScale;
    ChartAxis leftAxis;
    ChartAxis bottomAxis;
    ChartAxis depthAxis;
    std::vector<ChartSeries> series;

    bool operator==(const Chart&) const = default;

    int seriesCount() const { return int(series.size()); }
    // The first series' kind, when there is one.
    bool firstIs(SeriesKind kind) const { return !series.empty() && series.front().kind == kind; }
    qsizetype pointCount() const;

    // The automatic colour of position `index` (series, or points of a one-colour-per-point
    // series): a fixed palette, repeated.
    static common::TColor automaticColour(int index);
    // The colour series `s` draws with (its own or the automatic one).
    common::TColor seriesColour(int s) const;
    // The colour point `p` of series `s` is drawn with.
    common::TColor pointColour(int s, int p) const;
    // Rotation and elevation are kept within 0..359.
    static qint32 normalAngle(qint64 degrees);
    void setRotation(qint64 degrees) { view3D.rotation = normalAngle(degrees); }
    void setElevation(qint64 degrees) { view3D.elevation = normalAngle(degrees); }
};

} // namespace kestrum::chart
