#include "ChartCommands.h"

#include "editors/chart/AxisScale.h"

#include <algorithm>

namespace kestrum::chart {

namespace {

void takeValueScale(const Chart& chart, ChartAxis& axis)
{
    axis.automatic = false;
    axis.minimum = chart.valueScale.minimum;
    axis.maximum = chart.valueScale.maximum;
    axis.increment = chart.valueScale.increment;
}

void oneColourPerSeries(ChartSeries& s)
{
    s.colourEachPoint = false;
    s.marks.visible = false;
}

} // namespace

void ChartCommands::switchHBar(Chart& chart)
{
    if (chart.series.empty()) {
        return;
    }
    ChartSeries& s = chart.series.front();
    s.kind = SeriesKind::HorizBar;
    oneColourPerSeries(s);
    chart.leftAxis.automatic = true;
    chart.leftAxis.inverted = true;
    takeValueScale(chart, chart.bottomAxis);
    chart.bottomAxis.gridVisible = true;
    chart.leftAxis.gridVisible = false;
    chart.bottomAxis.labelAngle = 0;
}

void ChartCommands::switchVBar(Chart& chart)
{
    if (chart.series.empty()) {
        return;
    }
    ChartSeries& s = chart.series.front();
    s.kind = SeriesKind::Bar;
    oneColourPerSeries(s);
    chart.bottomAxis.labelAngle = 0;
    takeValueScale(chart, chart.leftAxis);
    chart.leftAxis.inverted = false;
    chart.bottomAxis.gridVisible = false;
    chart.leftAxis.gridVisible = true;
    chart.bottomAxis.automatic = true;
}

void ChartCommands::switchPie(Chart& chart)
{
    if (chart.series.empty()) {
        return;
    }
    ChartSeries& s = chart.series.front();
    s.kind = SeriesKind::Pie;
    s.colourEachPoint = true;
    s.marks.visible = true;
    s.marks.style = MarkStyle::LabelPercent;
    s.marks.transparent = true;
    s.circled = true;
    chart.bottomAxis.labelAngle = 0;
    s.marks.percentFormat = QStringLiteral(" ##0.0%");
}

void ChartCommands::switchGroupBars(Chart& chart)
{
    for (ChartSeries& s : chart.series) {
        s.penWidth = 1;
        s.kind = SeriesKind::Bar;
    }
    chart.bottomAxis.automatic = true;
    chart.leftAxis.endPosition = 100;
}

MarkerShape ChartCommands::groupLineMarker(int position)
{
    switch (position % 7) {
    case 1:
        return MarkerShape::Rectangle;
    case 2:
        return MarkerShape::Triangle;
    case 3:
        return MarkerShape::Cross;
    case 4:
        return MarkerShape::Star;
    case 5:
        return MarkerShape::DownTriangle;
    case 6:
        return MarkerShape::DiagCross;
    default:
        return MarkerShape::Circle;
    }
}

void ChartCommands::switchGroupLines(Chart& chart)
{
    for (std::size_t i = 0; i < chart.series.size(); ++i) {
        ChartSeries& s = chart.series[i];
        s.kind = SeriesKind::Line;
        s.pointerVisible = true;
        s.pointerWidth = 3;
        s.pointerHeight = 3;
        s.penWidth = 2;
        s.pointerShape = groupLineMarker(int(i) + 1);
    }
    const AxisRange current = AxisScale::bottomRange(chart);
    const double margin = std::min((current.maximum - current.minimum) / 40, 1.0);
    chart.bottomAxis.automatic = false;
    chart.bottomAxis.minimum = current.minimum - margin;
    chart.bottomAxis.maximum = current.maximum + margin;
    chart.bottomAxis.increment = current.increment;
    chart.leftAxis.endPosition = 99;
}

void ChartCommands::swapSeries(Chart& chart)
{
    const int seriesCount = chart.seriesCount();
    if (seriesCount < 2) {
        return;
    }
    // The second series is the reference for the number of categories.
    const std::vector<ChartPoint>& reference = chart.series[1].points;
    const std::size_t categories = reference.size();
    std::vector<ChartSeries> swapped;
    swapped.reserve(categories);
    for (std::size_t k = 0; k < categories; ++k) {
        ChartSeries s;
        s.kind = SeriesKind::Bar;
        s.marks.visible = false;
        s.marks.arrowLength = 5;
        s.marks.style = MarkStyle::Value;
        s.marks.frameVisible = true;
        s.marks.arrowVisible = true;
        s.title = reference[k].label;
        for (const ChartSeries& old : chart.series) {
            ChartPoint p;
            // A series shorter than the reference counts its missing points as 0.
            p.y = k < old.points.size() ? old.points[k].y : 0;
            p.label = old.title;
            s.points.push_back(std::move(p));
        }
        swapped.push_back(std::move(s));
    }
    std::vector<common::TColor> colours;
    for (int i = 0; i < seriesCount; ++i) {
        colours.push_back(chart.seriesColour(i));
    }
    for (std::size_t i = 0; i < swapped.size() && i < colours.size(); ++i) {
        swapped[i].colour = colours[i];
    }
    chart.series = std::move(swapped);
    chart.bottomAxis.automatic = true;
}

void ChartCommands::setWalls(Chart& chart, bool shown)
{
    chart.walls.visible = shown;
    chart.walls.backPen.visible = shown;
    chart.walls.clipPoints = shown;
    if (!chart.series.empty()) {
        chart.series.front().marks.clipped = shown;
    }
}

void ChartCommands::setBaseLines(Chart& chart, bool shown)
{
    for (std::size_t i = 0; i < chart.series.size() && i < 2; ++i) {
        if (chart.series[i].kind == SeriesKind::Point3D) {
            chart.series[i].baseLine.visible = shown;
        }
    }
}

} // namespace kestrum::chart
