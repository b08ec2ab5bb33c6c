#pragma once

#include "common/Colour.h"

#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>

#include <vector>

namespace kestrum::timeline {

using common::TColor;

// Units of the scale, by ordinal as the page text and the scale rules count them.
namespace DivisionType {
constexpr int Fixed = 0;
constexpr int Millisecond = 1;
constexpr int Second = 2;
constexpr int Minute = 3;
constexpr int Hour = 4;
constexpr int Day = 5;
constexpr int Month = 6;
constexpr int Year = 7;
} // namespace DivisionType

namespace Shape {
constexpr int TriangleUp = 0;
constexpr int TriangleDown = 1;
} // namespace Shape

namespace AnnotationPosition {
constexpr int Top = 0;
constexpr int Bottom = 1;
} // namespace AnnotationPosition

constexpr int kNormalEventSize = 8;
constexpr int kSelectedEventSize = 12;

// A font as the timeline keeps it: the name is kept as written even where the machine draws
// another face.
struct FontStyle
{
    QString name = QStringLiteral("Segoe UI");
    double pointSize = 8;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    TColor colour = common::clBlack;

    bool operator==(const FontStyle&) const = default;
};

// One dated event (an indicator): a marker on the bar with its annotation balloon.
struct TimelineEvent
{
    QString annotation;
    QString hint;
    double position = 0; // day count
    int annotationImageIndex = -1;
    TColor annotationColor = 0xAAD9FF;
    TColor annotationTextColor = common::clWhite;
    TColor annotationLineColor = common::clBlack;
    TColor borderColor = common::clBlack;
    TColor color = 0xAAD9FF;
    TColor colorTo = 0x6EBBFF;
    int size = kNormalEventSize;
    int shape = Shape::TriangleDown;
    int annotationPosition = AnnotationPosition::Top;
    bool annotationRounded = false;
    int tag = -1; // index into the link list

    bool operator==(const TimelineEvent&) const = default;
};

// The template new events are made from.
struct DefaultIndicator
{
    TColor annotationColor = 0xAAD9FF;
    TColor annotationTextColor = common::clWhite;
    bool annotationRounded = false;
    TColor color = 0xAAD9FF;
    TColor colorTo = 0x6EBBFF;
    int opacity = 200;
    int opacityTo = 150;
    int size = kNormalEventSize;
    int shape = Shape::TriangleDown;
};

// Everything a timeline page shows: range and scale, appearance, the events and the page's
// link list (an event's tag is the index of its link text). A new model is an empty page.
struct TimelineModel
{
    // Range (day counts).
    double minimumRange = 28491; // 1 January 1978
    double maximumRange = 40544; // 1 January 2011
    double rangeFrom = 28491;
    double rangeTo = 35243;

    // Scale.
    int divisionType = DivisionType::Year;
    int divisions = 1;
    int subDivisions = 1;
    QString divisionFormat = QStringLiteral("yyyy");
    QString subDivisionFormat = QStringLiteral("yyyy");
    FontStyle divisionFont;
    FontStyle subDivisionFont;
    int divisionTickSize = 8;
    int subDivisionTickSize = 4;
    double scrollStep = 1;

    // Appearance.
    TColor backgroundColor = 0x984E00;
    TColor backgroundColorTo = 0xFFF0D2;
    TColor barColor = 0xFFEFE3;
    TColor barColorTo = 0xFFD2AF;
    FontStyle annotationFont;
    int verticalMargin = 200;
    int horizontalMargin = 20;

    // The pictures annotations can show, by index; all of the same size.
    int imageWidth = 16;
    int imageHeight = 16;
    QList<QImage> images;

    DefaultIndicator defaultIndicator;
    std::vector<TimelineEvent> events;
    QStringList links;

    // An event as the collection adds it: marker and balloon colours from the default
    // indicator.
    TimelineEvent newEvent() const;
    // Removes the events and empties the link list.
    void clearEvents();
};

} // namespace kestrum::timeline
