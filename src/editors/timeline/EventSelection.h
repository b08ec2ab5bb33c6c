#pragma once

#include "editors/timeline/TimelineModel.h"

namespace kestrum::timeline {

// The page's selected event: highlighted in the page's blue with white text and a larger
// marker; its own annotation colours are kept to give back when the selection moves.
class EventSelection
{
public:
    static constexpr TColor kHighlight = 0x984E00;

    int selected() const { return m_selected; }
    // Forgets the selection without touching any event (a page was loaded).
    void reset() { m_selected = -1; }

    // The timeline reported a click on event `index`. Returns true when the click was on the
    // event already selected (the page opens its context menu then).
    bool click(TimelineModel& model, int index);
    // Gives the selected event its colours back and selects nothing.
    void deselect(TimelineModel& model);
    // Deleting the selected event: the index stays as it is, naming the next event or none.
    void deleteSelected(TimelineModel& model);

private:
    void restore(TimelineModel& model);

    int m_selected = -1;
    TColor m_annotationColor = 0;
    TColor m_annotationTextColor = 0;
};

} // namespace kestrum::timeline
