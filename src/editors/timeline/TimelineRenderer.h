#pragma once

#include "common/Result.h"
#include "editors/timeline/TimelineModel.h"

#include <QFont>
#include <QRect>
#include <QSize>

#include <vector>

class QPainter;

namespace kestrum::timeline {

// The timeline control's picture: background and bar gradients, the scale with its divisions
// and subdivisions, and the events as markers with their annotation balloons. The same layout
// serves drawing and hit-testing, so a click lands on what is drawn.
class TimelineRenderer
{
public:
    static constexpr int kBarHeight = 44;
    // Never more ticks than this are drawn, whatever the scale asks for.
    static constexpr int kMaxTicks = 2000;

    struct EventGeometry
    {
        int index = -1;
        QPolygon marker;
        QRect balloon;
        QLine connector;
        QRect image; // where the annotation's picture goes (empty when none)
        QRect text;
    };
    struct Tick
    {
        int x = 0;
        bool major = false;
        QString label;
    };
    struct Layout
    {
        QRect bar;
        std::vector<Tick> ticks;
        std::vector<EventGeometry> events; // in drawing order
    };

    // Where everything goes on a control of `size`.
    static Layout layout(const TimelineModel& model, QSize size);
    static void paint(QPainter& painter, const TimelineModel& model, QSize size);
    // The index of the event drawn at `point` (the topmost), or -1.
    static int hitTest(const TimelineModel& model, QSize size, QPoint point);
    // The horizontal pixel of a day count, and back.
    static double xForPosition(const TimelineModel& model, QSize size, double position);
    static double positionForX(const TimelineModel& model, QSize size, double x);

    // The control's picture at its size.
    static QImage picture(const TimelineModel& model, QSize size);
    // Writes the picture as PNG, JPEG, BMP or GIF (by `format`: "png", "jpg", "bmp", "gif"),
    // quality 100, through a temporary file renamed into place.
    static Status savePicture(const TimelineModel& model, QSize size, const QString& fileName,
                              const QString& format);

    static QFont toFont(const FontStyle& style);
};

} // namespace kestrum::timeline
