#pragma once

#include "editors/chart/Chart.h"

namespace kestrum::chart {

// The state of the chart toolbar's buttons for a chart just loaded.
struct ChartButtons
{
    bool zoomEnabled = false;
    bool rotateEnabled = false;
    bool rotateDown = false;
    bool animateEnabled = false;
    bool timerRunning = false;
    bool wallsEnabled = false;
    bool wallsDown = false;
    bool baseLineEnabled = false;
    bool baseLineDown = false;
    bool view3DEnabled = true;
    bool view3DDown = false;
    bool kindEnabled = false; // horizontal bar, vertical bar, pie
    bool hBarDown = false;
    bool vBarDown = false;
    bool pieDown = false;
    bool groupEnabled = false; // swap, group bars, group lines
    bool groupBarsDown = false;
    bool groupLinesDown = false;

    bool operator==(const ChartButtons&) const = default;

    // From the chart, the rotation mode and whether the animate button is down.
    static ChartButtons forChart(const Chart& chart, bool rotationMode, bool animateDown);
};

} // namespace kestrum::chart
