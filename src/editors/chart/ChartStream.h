#pragma once

#include "common/Result.h"
#include "editors/chart/Chart.h"

#include <QByteArray>

namespace kestrum::chart {

// The native chart stream: the content of chart pages and the ".WSX" chart file, byte for
// byte the same. Little-endian, magic "KCHT", version 1 (layout in docs/formats.md).
class ChartStream
{
public:
    static constexpr char kMagic[5] = "KCHT";
    static constexpr quint16 kVersion = 1;
    static constexpr quint32 kMaxSeries = 1024;
    static constexpr qsizetype kMaxPoints = 4'000'000; // all series together
    static constexpr qsizetype kMaxText = 64 * 1024;   // bytes of one title or label

    static QByteArray write(const Chart& chart);
    // Reads a whole stream; any damage (bad magic or version, counts past the data or the
    // limits, values that are not finite, unknown kinds, bytes left over) is refused with a
    // message that says what was wrong.
    static Result<Chart> read(const QByteArray& bytes);
};

} // namespace kestrum::chart
