#include "OccupancyMap.h"

#include <algorithm>

namespace kestrum::wordcloud {

void OccupancyMap::Plane::reset(qint32 from, qint32 to, qint32 lineFrom, qint32 lineTo)
{
    origin = from;
    firstLine = lineFrom;
    const qint64 positions = std::max<qint64>(0, qint64(to) - from + 1);
    const qint64 lines = std::max<qint64>(0, qint64(lineTo) - lineFrom + 1);
    wordsPerLine = qint32((positions + 63) / 64);
    bits.assign(std::size_t(lines) * std::size_t(wordsPerLine), 0);
}

void OccupancyMap::Plane::mark(qint32 lineLo, qint32 lineHi, qint32 from, qint32 to)
{
    const qint32 a = from - origin;
    const qint32 b = to - origin;
    for (qint32 i = lineLo; i <= lineHi; ++i) {
        quint64* words = line(i);
        for (qint32 w = a >> 6; w <= (b >> 6); ++w) {
            words[w] |= maskIn(w, a, b);
        }
    }
}

void OccupancyMap::reset(const CloudRect& area)
{
    m_area = area;
    m_rows.reset(area.left, area.right, area.top, area.bottom);
    m_columns.reset(area.top, area.bottom, area.left, area.right);
}

void OccupancyMap::add(const CloudRect& box)
{
    const qint32 left = std::max(box.left, m_area.left);
    const qint32 right = std::min(box.right, m_area.right);
    const qint32 top = std::max(box.top, m_area.top);
    const qint32 bottom = std::min(box.bottom, m_area.bottom);
    if (left > right || top > bottom) {
        return;
    }
    m_rows.mark(top, bottom, left, right);
    m_columns.mark(left, right, top, bottom);
}

bool OccupancyMap::isFree(const CloudRect& box) const
{
    const qint32 a = box.left - m_rows.origin;
    const qint32 b = box.right - m_rows.origin;
    for (qint32 y = box.top; y <= box.bottom; ++y) {
        const quint64* bits = m_rows.line(y);
        for (qint32 w = a >> 6; w <= (b >> 6); ++w) {
            if (bits[w] & maskIn(w, a, b)) {
                return false;
            }
        }
    }
    return true;
}

void OccupancyMap::project(bool alongX, qint32 crossLo, qint32 crossHi, qint32 from, qint32 to,
                           Line& line) const
{
    const Plane& plane = alongX ? m_rows : m_columns;
    const qint32 w0 = (from - plane.origin) >> 6;
    const qint32 w1 = (to - plane.origin) >> 6;
    const qint32 count = w1 - w0 + 1;
    line.base = plane.origin + w0 * 64;
    line.last = line.base + count * 64 - 1;
    line.bits.assign(std::size_t(count), 0);
    // Word by word, so that a word the band blocks wholly (as the packed middle of a cloud
    // does) is done after a few lines.
    const quint64* first = plane.line(crossLo) + w0;
    const std::size_t stride = std::size_t(plane.wordsPerLine);
    const qint32 lines = crossHi - crossLo + 1;
    for (qint32 w = 0; w < count; ++w) {
        const quint64* bits = first + w;
        quint64 any = 0;
        for (qint32 i = 0; i < lines && any != ~quint64(0); ++i, bits += stride) {
            any |= *bits;
        }
        line.bits[std::size_t(w)] = any;
    }
}

} // namespace kestrum::wordcloud
