#pragma once

#include "common/Colour.h"

#include <QString>

#include <vector>

namespace kestrum::chart {

// The kinds of series a chart draws. The numbers are stored in the chart stream.
enum class SeriesKind : quint8
{
    Bar = 0,
    HorizBar = 1,
    Pie = 2,
    Line = 3,
    Point = 4,
    Point3D = 5,
};
constexpr quint8 kSeriesKindCount = 6;

// Point marker shapes of line, point and 3D point series (stored numbers).
enum class MarkerShape : quint8
{
    Rectangle = 0,
    Triangle = 1,
    Cross = 2,
    Star = 3,
    DownTriangle = 4,
    DiagCross = 5,
    Circle = 6,
};
constexpr quint8 kMarkerShapeCount = 7;

// What the marks beside each point show (stored numbers).
enum class MarkStyle : quint8
{
    Value = 0,
    Percent = 1,
    Label = 2,
    LabelPercent = 3,
    XValue = 4,
};
constexpr quint8 kMarkStyleCount = 5;

struct ChartPen
{
    bool visible = true;
    common::TColor colour = common::clBlack;
    qint32 width = 1;

    bool operator==(const ChartPen&) const = default;
};

// One point of a series. Bar, line and pie series use y as their value and the point's index
// as its category; point series use x and y; 3D point series x, y and z.
struct ChartPoint
{
    double x = 0;
    double y = 0;
    double z = 0;
    QString label;
    common::TColor colour = common::clDefault; // clDefault: the series' or automatic colour

    bool operator==(const ChartPoint&) const = default;
};

struct SeriesMarks
{
    bool visible = false;
    MarkStyle style = MarkStyle::Value;
    bool transparent = false;
    qint32 arrowLength = 8;
    bool frameVisible = true;
    bool arrowVisible = true;
    bool clipped = false;
    // Pie percent labels: '#' optional digit, '0' digit, '.' decimal point, text kept.
    QString percentFormat = QStringLiteral("##0.##%");

    bool operator==(const SeriesMarks&) const = default;
};

struct ChartSeries
{
    SeriesKind kind = SeriesKind::Bar;
    QString title;
    common::TColor colour = common::clDefault; // clDefault: automatic by position
    bool colourEachPoint = false;
    bool active = true;
    std::vector<ChartPoint> points;
    SeriesMarks marks;
    bool pointerVisible = true;
    MarkerShape pointerShape = MarkerShape::Rectangle;
    qint32 pointerWidth = 4;
    qint32 pointerHeight = 4;
    qint32 penWidth = 1;
    ChartPen baseLine{false, common::clGray, 1}; // 3D point series: the drop line to the floor
    bool circled = true;                         // pie: kept circular

    bool operator==(const ChartSeries&) const = default;
};

struct ChartAxis
{
    bool automatic = true;
    double minimum = 0;
    double maximum = 0;
    double increment = 0; // 0: chosen from the range
    bool inverted = false;
    bool gridVisible = true;
    bool visible = true;
    qint32 labelAngle = 0;    // degrees, 0 to 359
    qint32 endPosition = 100; // percent of the chart rectangle the axis reaches
    QString title;

    bool operator==(const ChartAxis&) const = default;
};

// The value axis range the host stores with a chart, used when bars switch direction.
struct ValueScale
{
    double minimum = 0;
    double maximum = 100;
    double increment = 10;

    bool operator==(const ValueScale&) const = default;
};

struct View3D
{
    bool enabled = false;
    qint32 rotation = 345;    // degrees, 0 to 359
    qint32 elevation = 345;   // degrees, 0 to 359
    qint32 depthPercent = 15; // depth of 2D kinds in 3D, percent of the chart's width

    bool operator==(const View3D&) const = default;
};

struct ChartWalls
{
    bool visible = true;
    ChartPen backPen{true, common::clGray, 1};
    bool clipPoints = false;

    bool operator==(const ChartWalls&) const = default;
};

} // namespace kestrum::chart
