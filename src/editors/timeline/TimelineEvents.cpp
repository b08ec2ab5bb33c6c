#include "TimelineEvents.h"

#include "editors/timeline/TimelineText.h"

#include <algorithm>

namespace kestrum::timeline {

void TimelineEvents::sortEvents(TimelineModel& m)
{
    QStringList lines;
    lines.reserve(qsizetype(m.events.size()));
    for (const TimelineEvent& e : m.events) {
        lines << TimelineText::floatText(e.position) + QLatin1Char('\t') + e.annotation +
                     QLatin1Char('\t') + e.hint;
    }
    std::stable_sort(lines.begin(), lines.end(), [](const QString& a, const QString& b) {
        return QString::compare(a, b, Qt::CaseInsensitive) < 0;
    });
    for (qsizetype i = 0; i < lines.size(); ++i) {
        TimelineEvent& e = m.events[std::size_t(i)];
        double position = 0;
        if (TimelineText::readFloat(TimelineText::field(lines[i], 1), &position)) {
            e.position = position;
        }
        e.annotation = TimelineText::field(lines[i], 2);
        e.hint = TimelineText::field(lines[i], 3);
    }
}

int TimelineEvents::verticalMarginFor(int mode, int height)
{
    switch (mode) {
    case LayoutMode::AllOnTop:
        return height - 60;
    case LayoutMode::Alternate:
        return (height - 20) / 2;
    default:
        return 5;
    }
}

void TimelineEvents::placeEvent(TimelineEvent& e, int annotationPosition)
{
    e.annotationPosition = annotationPosition;
    e.shape =
        annotationPosition == AnnotationPosition::Top ? Shape::TriangleDown : Shape::TriangleUp;
}

void TimelineEvents::applyLayoutMode(TimelineModel& m, int mode, int height)
{
    m.verticalMargin = verticalMarginFor(mode, height);
    if (mode == LayoutMode::Alternate) {
        sortEvents(m);
    }
    for (std::size_t i = 0; i < m.events.size(); ++i) {
        int side = AnnotationPosition::Bottom;
        if (mode == LayoutMode::AllOnTop || (mode == LayoutMode::Alternate && i % 2 == 0)) {
            side = AnnotationPosition::Top;
        }
        placeEvent(m.events[i], side);
    }
}

void TimelineEvents::AdjustColors(TimelineModel& m, const Colours& c)
{
    m.backgroundColor = c.background;
    m.backgroundColorTo = c.backgroundTo;
    m.barColor = c.bar;
    m.barColorTo = c.barTo;
    const TColor old = m.defaultIndicator.annotationColor;
    m.defaultIndicator.annotationColor = c.annotation;
    for (TimelineEvent& e : m.events) {
        if (e.annotationColor == old) {
            e.annotationColor = c.annotation;
            e.color = c.annotation;
            e.colorTo = c.annotation;
        }
        m.defaultIndicator.annotationRounded = c.rounded;
        e.annotationRounded = c.rounded;
    }
}

} // namespace kestrum::timeline
