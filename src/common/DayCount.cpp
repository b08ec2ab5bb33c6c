#include "DayCount.h"

#include <QDate>
#include <QTime>

#include <cmath>

namespace kestrum::common {

namespace {
const QDate kEpoch(1899, 12, 30);
constexpr double kMsPerDay = 86400000.0;
} // namespace

double toDayCount(const QDateTime& dateTime)
{
    const qint64 days = kEpoch.daysTo(dateTime.date());
    const double fraction = dateTime.time().msecsSinceStartOfDay() / kMsPerDay;
    return days >= 0 ? double(days) + fraction : double(days) - fraction;
}

QDateTime fromDayCount(double dayCount)
{
    if (!std::isfinite(dayCount) || std::fabs(dayCount) > 3.0e6) {
        return {};
    }
    const double whole = std::trunc(dayCount);
    double fraction = std::fabs(dayCount - whole);
    qint64 ms = qint64(std::llround(fraction * kMsPerDay));
    qint64 days = qint64(whole);
    if (ms >= qint64(kMsPerDay)) { // rounding reached the next day
        ms = 0;
        days += dayCount >= 0 ? 1 : -1;
    }
    return QDateTime(kEpoch.addDays(days), QTime::fromMSecsSinceStartOfDay(int(ms)));
}

double currentDayCount()
{
    return toDayCount(QDateTime::currentDateTime());
}

} // namespace kestrum::common
