#pragma once

#include "editors/chart/Chart.h"

namespace kestrum::chart {

// The chart changes behind the chart toolbar: kind switches, grouping and swapping series,
// walls and base lines. Each works on a chart value; the page document wraps them as edits.
class ChartCommands
{
public:
    // The single series becomes horizontal bars against the stored value scale.
    static void switchHBar(Chart& chart);
    static void switchVBar(Chart& chart);
    static void switchPie(Chart& chart);
    static void switchGroupBars(Chart& chart);
    // Every series a line with markers (shape by position), the bottom axis widened by a
    // fortieth of its range (at most 1) on each side.
    static void switchGroupLines(Chart& chart);
    // Series become categories and categories series (needs two series or more).
    static void swapSeries(Chart& chart);
    static void setWalls(Chart& chart, bool shown);
    // The base lines of the first two series, where they are 3D point series.
    static void setBaseLines(Chart& chart, bool shown);

    // The marker shape of the line series at 1-based position i.
    static MarkerShape groupLineMarker(int position);
};

} // namespace kestrum::chart
