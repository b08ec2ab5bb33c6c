#include "TimelineModel.h"

namespace kestrum::timeline {

TimelineEvent TimelineModel::newEvent() const
{
    TimelineEvent e;
    e.annotationColor = defaultIndicator.annotationColor;
    e.annotationTextColor = defaultIndicator.annotationTextColor;
    e.annotationRounded = defaultIndicator.annotationRounded;
    e.color = defaultIndicator.color;
    e.colorTo = defaultIndicator.colorTo;
    e.size = defaultIndicator.size;
    e.shape = defaultIndicator.shape;
    return e;
}

void TimelineModel::clearEvents()
{
    events.clear();
    links.clear();
}

} // namespace kestrum::timeline
