#pragma once

#include "editors/chart/Chart.h"

#include <vector>

namespace kestrum::chart {

// The range an axis shows and the step between its labelled ticks.
struct AxisRange
{
    double minimum = 0;
    double maximum = 1;
    double increment = 0.2;

    bool operator==(const AxisRange&) const = default;
};

// Axis ranges: manual axes as stored, automatic axes around the data with readable ("nice")
// tick numbers: steps of 1, 2, 2.5 or 5 times a power of ten.
class AxisScale
{
public:
    // The nice step for about `ticks` intervals over `span`.
    static double niceStep(double span, int ticks);
    // A range that covers minimum..maximum with ends on multiples of a nice step.
    static AxisRange niceRange(double minimum, double maximum, int ticks = 6);
    // Tick values of a range (its ends included when they fall on a step); at most 1,000.
    static std::vector<double> ticks(const AxisRange& range);

    // The data extent on each axis of a chart's 2D kinds. Bars, lines and pies count points
    // by index on the category axis; point series use x. Value axes of bars include 0.
    static AxisRange valueRange(const Chart& chart);
    static AxisRange categoryRange(const Chart& chart);
    // The ranges the chart draws with: the vertical (left) and horizontal (bottom) axes.
    // Horizontal bars swap the roles: values along the bottom, categories along the left.
    static AxisRange leftRange(const Chart& chart);
    static AxisRange bottomRange(const Chart& chart);
    static AxisRange depthRange(const Chart& chart);
    // An axis with the data range `data`: as stored when manual, nice otherwise.
    static AxisRange resolve(const ChartAxis& axis, AxisRange data, bool nice = true);
    // The range widened by 2 % on each side (room for point markers).
    static AxisRange padded(AxisRange data);
    // Whether the chart's categories run along the left axis (horizontal bars).
    static bool horizontal(const Chart& chart);
    // Whether the chart is drawn as a pie (no axes).
    static bool isPie(const Chart& chart);
};

} // namespace kestrum::chart
