#pragma once

#include "editors/timeline/TimelineModel.h"

namespace kestrum::timeline {

// Zoom, scroll and the scale that follows the visible span, as functions of the model.
class TimelineNavigation
{
public:
    static constexpr int kZoomSteps = 10;
    static constexpr int kScrollBarMax = 1000;

    // Chooses the scale for the visible span (`shortDate` in the scale's tokens) and returns
    // the scroll bar's new page size.
    static int AdjustScale(TimelineModel& model, const QString& shortDate);
    // One of the ten steps of a zoom in: the window shrinks by 5 %, its left end fixed.
    static void zoomInStep(TimelineModel& model);
    // One step of a zoom out: the window grows by 1/0.95; past the maximum it grows to the left
    // instead (with no check against the minimum).
    static void zoomOutStep(TimelineModel& model);
    // Zoom out is possible unless the window is exactly the whole range.
    static bool canZoomOut(const TimelineModel& model);
    // The scroll bar (0 to 1000) moved: the window keeps its width and starts there.
    static void scrollTo(TimelineModel& model, int position);
    // Where the scroll bar goes when the timeline was dragged to start at `start` (on a scale
    // of 100, on a bar of 1000: kept as the page has always done it).
    struct ScrollBarState
    {
        int position = 0;
        int pageSize = 0;
    };
    static ScrollBarState scrollBarAfterDrag(const TimelineModel& model, double start);
    // The page size the bar gets from the visible span.
    static int pageSize(const TimelineModel& model);
};

} // namespace kestrum::timeline
