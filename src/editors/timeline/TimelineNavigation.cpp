#include "TimelineNavigation.h"

#include "common/Rounding.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kestrum::timeline {

namespace {

using common::roundHalfEven;

const QString kYear = QStringLiteral("yyyy");
const QString kMonthYear = QStringLiteral(" mmm\r\nyyyy");
const QString kTime = QStringLiteral("  hh:mm");

// Rounds to an int, saturating: spans of absurd size must not overflow.
qint64 roundSaturated(double v)
{
    if (!std::isfinite(v)) {
        return v < 0 ? std::numeric_limits<qint32>::min() : std::numeric_limits<qint32>::max();
    }
    constexpr double kMax = 1e15;
    return roundHalfEven(std::clamp(v, -kMax, kMax));
}

void setScale(TimelineModel& m, int type, qint64 divisions, qint64 subDivisions,
              const QString& format)
{
    m.divisionType = type;
    m.divisions = int(divisions);
    m.subDivisions = int(subDivisions);
    m.divisionFormat = format;
}

} // namespace

int TimelineNavigation::AdjustScale(TimelineModel& m, const QString& shortDate)
{
    const qint64 days = roundSaturated(m.rangeTo - m.rangeFrom);
    const qint64 years = roundSaturated(double(days) / 365.0);
    const qint64 hours = roundSaturated((m.rangeTo - m.rangeFrom) * 24.0);
    using namespace DivisionType;
    if (years >= 8 && years <= 23) {
        setScale(m, Month, 12, 12, kYear);
    } else if (years >= 24 && years <= 1000) {
        setScale(m, Year, years / 12, years / 12, kYear);
        m.subDivisionFormat = QStringLiteral(" ");
    } else if (years > 1000) {
        // left as it was
    } else if (years >= 4 && years <= 7) {
        setScale(m, Month, 6, 6, kMonthYear);
    } else if (years == 2 || years == 3) {
        setScale(m, Month, 3, 3, kMonthYear);
    } else if (years < 2) {
        if (days == 0 || days == 1) {
            if (hours < 6) {
                setScale(m, Minute, 15, 15, kTime);
            } else {
                setScale(m, Hour, 24, hours < 12 ? 1 : 2,
                         kTime + QStringLiteral("\r\n") + shortDate);
                m.subDivisionFormat = QStringLiteral("hh:mm");
            }
        } else if (days == 2 || days == 3) {
            setScale(m, Hour, 24, 6, kTime + QStringLiteral("\r\n") + shortDate);
            m.subDivisionFormat = QStringLiteral("hh:mm");
        } else if (days >= 4 && days <= 12) {
            setScale(m, Day, 1, 1, shortDate);
        } else if (days >= 13 && days <= 29) {
            setScale(m, Day, 2, 2, shortDate);
            m.subDivisionFormat.clear();
        } else if (days >= 30 && days <= 200) {
            setScale(m, Day, days / 10, days / 10, shortDate);
        } else if (days >= 201 && days <= 750) {
            setScale(m, Month, 1, 1, kMonthYear);
        }
        // Negative spans and spans above 750 days that round to under two years: unchanged.
    }
    return pageSize(m);
}

int TimelineNavigation::pageSize(const TimelineModel& m)
{
    const double whole = m.maximumRange - m.minimumRange;
    if (whole == 0) {
        return 0;
    }
    return int(std::clamp<qint64>(roundSaturated((m.rangeTo - m.rangeFrom) / whole * 1000.0),
                                  std::numeric_limits<int>::min(),
                                  std::numeric_limits<int>::max()));
}

void TimelineNavigation::zoomInStep(TimelineModel& m)
{
    m.rangeTo = m.rangeFrom + (m.rangeTo - m.rangeFrom) * 0.95;
}

void TimelineNavigation::zoomOutStep(TimelineModel& m)
{
    const double t = m.rangeFrom + (m.rangeTo - m.rangeFrom) * 1.052632;
    if (!(t > m.maximumRange)) {
        m.rangeTo = t;
    } else {
        m.rangeTo = m.maximumRange;
        m.rangeFrom = m.rangeFrom - (t - m.maximumRange);
    }
}

bool TimelineNavigation::canZoomOut(const TimelineModel& m)
{
    return !(m.rangeFrom == m.minimumRange && m.rangeTo == m.maximumRange);
}

void TimelineNavigation::scrollTo(TimelineModel& m, int position)
{
    const double width = m.rangeTo - m.rangeFrom;
    m.rangeFrom = m.minimumRange + (m.maximumRange - m.minimumRange) * position / 1000.0;
    m.rangeTo = m.rangeFrom + width;
}

TimelineNavigation::ScrollBarState TimelineNavigation::scrollBarAfterDrag(const TimelineModel& m,
                                                                          double start)
{
    const double whole = m.maximumRange - m.minimumRange;
    if (whole == 0) {
        return {};
    }
    auto toInt = [](qint64 v) {
        return int(std::clamp<qint64>(v, std::numeric_limits<int>::min(),
                                      std::numeric_limits<int>::max()));
    };
    return {toInt(roundSaturated((start - m.minimumRange) / whole * 100.0)),
            toInt(roundSaturated((m.rangeTo - m.rangeFrom) / whole * 100.0))};
}

} // namespace kestrum::timeline
