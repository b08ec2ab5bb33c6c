#pragma once

#include "editors/chart/Chart.h"

#include <QPoint>
#include <QSize>

#include <functional>

namespace kestrum::chart {

// The interaction state of 3D charts, one set for the program: rotation by the mouse and the
// swinging animation. Drag start, start rotation/elevation, animation offsets and limit and
// the two direction flags survive page changes.
class ChartMotion
{
public:
    bool rotationMode = false;
    bool dragging = false;
    QPoint start;              // x0, y0
    qint32 startRotation = 0;  // R0
    qint32 startElevation = 0; // E0
    int offsetRotation = 0;    // dR
    int offsetElevation = 0;   // dE
    int limit = 13;            // L
    bool upRotation = false;
    bool upElevation = false;

    void mouseDown(QPoint at, const Chart& chart);
    // While dragging: rotation and elevation follow the mouse (100 degrees per chart width or
    // height). Returns whether the chart changed.
    bool mouseMove(QPoint at, QSize chartSize, Chart& chart) const;
    void mouseUp(const Chart& chart);

    void startAnimation(const Chart& chart);
    // One step of the animation (every 100 ms); `coin` gives 0 or 1 at random. The start
    // values cross over: rotation from the start elevation, elevation from the start rotation.
    // Does nothing while dragging; returns whether the chart changed.
    bool tick(Chart& chart, const std::function<int()>& coin);
};

} // namespace kestrum::chart
