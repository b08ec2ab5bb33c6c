#pragma once

#include "CloudRect.h"

#include <QtGlobal>

#include <bit>
#include <vector>

namespace kestrum::wordcloud {

// The pixels of the drawing area that placed boxes cover, one bit per pixel. A box covers its
// edges too (x from left to right and y from top to bottom, both inclusive), so a box within the
// area overlaps a placed one, in the sense of CloudRect::overlaps, exactly when one of its
// pixels is set.
//
// The bits are kept twice: a line of bits per pixel row and a line per pixel column. Along a
// straight leg of the spiral a box sweeps a band of fixed rows (or columns): `project` ORs the
// lines of that band into one line, in which the walk looks for the first free position.
class OccupancyMap
{
public:
    // An empty map of the area, edges included.
    void reset(const CloudRect& area);
    // Marks a box's pixels; what lies outside the area is left out.
    void add(const CloudRect& box);
    // Whether no marked pixel lies in `box`, which must lie within the area.
    bool isFree(const CloudRect& box) const;

    // One line of bits along an axis: bit i stands for the position `base + i`.
    struct Line
    {
        qint32 base = 0;
        qint32 last = -1; // the last position the line holds
        std::vector<quint64> bits;

        // The lowest (highest) position in from..to whose bit is `set`; to + 1 (from - 1)
        // when there is none.
        qint32 find(bool set, qint32 from, qint32 to) const
        {
            const qint32 a = from - base;
            const qint32 b = to - base;
            const quint64 flip = set ? 0 : ~quint64(0);
            for (qint32 w = a >> 6; w <= (b >> 6); ++w) {
                if (const quint64 hit = (bits[std::size_t(w)] ^ flip) & maskIn(w, a, b)) {
                    return base + w * 64 + std::countr_zero(hit);
                }
            }
            return to + 1;
        }
        qint32 findBackward(bool set, qint32 from, qint32 to) const
        {
            const qint32 a = from - base;
            const qint32 b = to - base;
            const quint64 flip = set ? 0 : ~quint64(0);
            for (qint32 w = b >> 6; w >= (a >> 6); --w) {
                if (const quint64 hit = (bits[std::size_t(w)] ^ flip) & maskIn(w, a, b)) {
                    return base + w * 64 + 63 - std::countl_zero(hit);
                }
            }
            return from - 1;
        }
    };
    // The band of rows crossLo..crossHi (alongX) or of columns crossLo..crossHi (!alongX),
    // folded onto the other axis over (at least) the positions from..to: a position's bit is
    // set when any marked pixel of the band lies at that position. All bounds lie within the
    // area.
    void project(bool alongX, qint32 crossLo, qint32 crossHi, qint32 from, qint32 to,
                 Line& line) const;

    // Bits a..b (inclusive, 0 <= a <= b) of word `w` of a line of bits.
    static quint64 maskIn(qint32 w, qint32 a, qint32 b)
    {
        quint64 m = ~quint64(0);
        if (w == (a >> 6)) {
            m &= ~quint64(0) << (a & 63);
        }
        if (w == (b >> 6)) {
            m &= ~quint64(0) >> (63 - (b & 63));
        }
        return m;
    }

private:
    // Lines of bits side by side: line `i` holds positions `origin`.. of the line's axis.
    struct Plane
    {
        qint32 origin = 0;    // the first position along a line
        qint32 firstLine = 0; // the position across of line 0
        qint32 wordsPerLine = 0;
        std::vector<quint64> bits;

        void reset(qint32 from, qint32 to, qint32 lineFrom, qint32 lineTo);
        quint64* line(qint32 i)
        {
            return bits.data() + std::size_t(i - firstLine) * std::size_t(wordsPerLine);
        }
        const quint64* line(qint32 i) const
        {
            return bits.data() + std::size_t(i - firstLine) * std::size_t(wordsPerLine);
        }
        void mark(qint32 lineLo, qint32 lineHi, qint32 from, qint32 to);
    };

    CloudRect m_area;
    Plane m_rows;    // a line per row, positions along x
    Plane m_columns; // a line per column, positions along y
};

} // namespace kestrum::wordcloud
