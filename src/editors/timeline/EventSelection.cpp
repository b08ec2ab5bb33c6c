#include "EventSelection.h"

namespace kestrum::timeline {

namespace {

bool valid(const TimelineModel& m, int index)
{
    return index >= 0 && std::size_t(index) < m.events.size();
}

} // namespace

void EventSelection::restore(TimelineModel& m)
{
    if (!valid(m, m_selected)) {
        return;
    }
    TimelineEvent& e = m.events[std::size_t(m_selected)];
    e.annotationColor = m_annotationColor;
    e.annotationTextColor = m_annotationTextColor;
    e.annotationLineColor = 0;
    e.borderColor = 0;
    e.color = e.annotationColor;
    e.colorTo = e.annotationColor;
    e.size = kNormalEventSize;
}

bool EventSelection::click(TimelineModel& m, int index)
{
    if (!valid(m, index)) {
        return false;
    }
    if (index == m_selected) {
        return true;
    }
    restore(m);
    m_selected = index;
    TimelineEvent& e = m.events[std::size_t(index)];
    m_annotationColor = e.annotationColor;
    m_annotationTextColor = e.annotationTextColor;
    e.annotationColor = kHighlight;
    e.annotationTextColor = common::clWhite;
    e.color = kHighlight;
    e.colorTo = kHighlight;
    e.size = kSelectedEventSize;
    return false;
}

void EventSelection::deselect(TimelineModel& m)
{
    restore(m);
    m_selected = -1;
}

void EventSelection::deleteSelected(TimelineModel& m)
{
    if (!valid(m, m_selected)) {
        return;
    }
    m.events.erase(m.events.begin() + m_selected);
}

} // namespace kestrum::timeline
