#include "Chart.h"

#include <array>

namespace kestrum::chart {

qsizetype Chart::pointCount() const
{
    qsizetype n = 0;
    for (const ChartSeries& s : series) {
        n += qsizetype(s.points.size());
    }
    return n;
}

common::TColor Chart::automaticColour(int index)
{
    using common::rgbColour;
    static constexpr std::array<common::TColor, 12> palette{
        rgbColour(0x4F, 0x81, 0xBD), rgbColour(0xC0, 0x50, 0x4D), rgbColour(0x9B, 0xBB, 0x59),
        rgbColour(0x80, 0x64, 0xA2), rgbColour(0x4B, 0xAC, 0xC6), rgbColour(0xF7, 0x96, 0x46),
        rgbColour(0x2C, 0x4D, 0x75), rgbColour(0x77, 0x2C, 0x2A), rgbColour(0x5F, 0x75, 0x30),
        rgbColour(0xD9, 0xC3, 0x27), rgbColour(0x27, 0x6A, 0x7C), rgbColour(0xB6, 0x5D, 0x16),
    };
    const int n = int(palette.size());
    return palette[std::size_t(((index % n) + n) % n)];
}

common::TColor Chart::seriesColour(int s) const
{
    if (s < 0 || s >= seriesCount()) {
        return automaticColour(0);
    }
    const common::TColor own = series[std::size_t(s)].colour;
    return own == common::clDefault || own == common::clNone ? automaticColour(s) : own;
}

common::TColor Chart::pointColour(int s, int p) const
{
    if (s < 0 || s >= seriesCount()) {
        return automaticColour(0);
    }
    const ChartSeries& ser = series[std::size_t(s)];
    if (p >= 0 && p < int(ser.points.size())) {
        const common::TColor own = ser.points[std::size_t(p)].colour;
        if (own != common::clDefault && own != common::clNone) {
            return own;
        }
    }
    return ser.colourEachPoint ? automaticColour(p) : seriesColour(s);
}

qint32 Chart::normalAngle(qint64 degrees)
{
    return qint32(((degrees % 360) + 360) % 360);
}

} // namespace kestrum::chart
