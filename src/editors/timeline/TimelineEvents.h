#pragma once

#include "editors/timeline/TimelineModel.h"

namespace kestrum::timeline {

// Layout modes of the page: all balloons on top, alternating, all at the bottom.
namespace LayoutMode {
constexpr int AllOnTop = 0;
constexpr int Alternate = 1;
constexpr int AllAtBottom = 2;
} // namespace LayoutMode

// What the page does to its events as a whole.
class TimelineEvents
{
public:
    // Sorts by the text "position TAB annotation TAB hint", ascending and case-insensitive:
    // positions compare as text, not as numbers. Only position, annotation and hint move;
    // colours, image, shape and link stay with their slot.
    static void sortEvents(TimelineModel& model);
    // The bar's distance from the top for a layout mode on a timeline `height` pixels high.
    static int verticalMarginFor(int mode, int height);
    // Applies a layout mode: the margin, then the balloon side and marker shape of every event
    // (mode 1 sorts first, then alternates from the top).
    static void applyLayoutMode(TimelineModel& model, int mode, int height);
    // Puts one event's balloon on top (triangle down) or at the bottom (triangle up).
    static void placeEvent(TimelineEvent& event, int annotationPosition);

    // The settings dialog's colours: the fills, then the default annotation colour; events that
    // had the old default take the new one, and every event (and with them the default) takes
    // the rounding.
    struct Colours
    {
        TColor background = 0;
        TColor backgroundTo = 0;
        TColor bar = 0;
        TColor barTo = 0;
        TColor annotation = 0;
        bool rounded = false;
    };
    static void AdjustColors(TimelineModel& model, const Colours& colours);
};

} // namespace kestrum::timeline
