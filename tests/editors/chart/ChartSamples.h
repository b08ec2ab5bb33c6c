#pragma once

#include "editors/chart/Chart.h"

namespace kestrum::chart::samples {

// Bars of `values` with category labels "C1", "C2"...
inline ChartSeries bars(const QString& title, std::vector<double> values,
                        SeriesKind kind = SeriesKind::Bar)
{
    ChartSeries s;
    s.kind = kind;
    s.title = title;
    for (std::size_t i = 0; i < values.size(); ++i) {
        ChartPoint p;
        p.x = double(i);
        p.y = values[i];
        p.label = QStringLiteral("C%1").arg(i + 1);
        s.points.push_back(p);
    }
    return s;
}

inline ChartSeries points(const QString& title, std::vector<std::pair<double, double>> xy,
                          SeriesKind kind = SeriesKind::Point)
{
    ChartSeries s;
    s.kind = kind;
    s.title = title;
    for (const auto& [x, y] : xy) {
        ChartPoint p;
        p.x = x;
        p.y = y;
        p.z = x + y;
        s.points.push_back(p);
    }
    return s;
}

// Three groups of four categories.
inline Chart grouped()
{
    Chart c;
    c.title = QStringLiteral("Code frequencies");
    c.series.push_back(bars(QStringLiteral("Managers"), {4, 8, 15, 16}));
    c.series.push_back(bars(QStringLiteral("Staff"), {23, 42, 7, 1}));
    c.series.push_back(bars(QStringLiteral("Newcomers"), {3, 5, 9, 11}));
    c.series[1].points[0].label = QStringLiteral("Trust");
    c.series[1].points[1].label = QStringLiteral("Rhythm");
    c.series[1].points[2].label = QStringLiteral("Silence");
    c.series[1].points[3].label = QStringLiteral("Belonging");
    return c;
}

// Every setting away from its default, for round trips.
inline Chart everything()
{
    Chart c = grouped();
    c.title = QStringLiteral("Tütle – ∑");
    c.panelColour = common::clBtnFace;
    c.legendVisible = false;
    c.dataTableVisible = true;
    c.view3D = {true, 12, 300, 40};
    c.walls = {false, {false, common::clRed, 3}, true};
    c.valueScale = {-5, 55, 5};
    c.leftAxis = {false, -5, 55, 5, true, false, false, 45, 99, QStringLiteral("Passages")};
    c.bottomAxis.title = QStringLiteral("Codes");
    c.bottomAxis.labelAngle = 90;
    c.depthAxis.automatic = false;
    c.depthAxis.maximum = 3;
    ChartSeries& s = c.series[2];
    s.kind = SeriesKind::Point3D;
    s.colour = common::clTeal;
    s.colourEachPoint = true;
    s.active = false;
    s.marks = {true, MarkStyle::LabelPercent,  true, 5, false, false,
               true, QStringLiteral(" ##0.0%")};
    s.pointerVisible = false;
    s.pointerShape = MarkerShape::DiagCross;
    s.pointerWidth = 7;
    s.pointerHeight = 9;
    s.penWidth = 2;
    s.baseLine = {true, common::clNavy, 2};
    s.circled = false;
    s.points[1].z = -2.5e-300;
    s.points[1].colour = common::clFuchsia;
    return c;
}

} // namespace kestrum::chart::samples
