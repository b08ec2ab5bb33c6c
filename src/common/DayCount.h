#pragma once

#include <QDateTime>

namespace kestrum::common {

// Date-times stored as day counts from 30 December 1899, the time of day as the fraction
// (28491.0 is 1 January 1978, 00:00). Before the epoch the whole part counts days back and the
// fraction is still the time of day (-1.25 is 29 December 1899, 06:00). Local time.
double toDayCount(const QDateTime& dateTime);
QDateTime fromDayCount(double dayCount);
double currentDayCount();

} // namespace kestrum::common
