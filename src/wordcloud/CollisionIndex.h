#pragma once

#include "CloudRect.h"

#include <vector>

namespace kestrum::wordcloud {

// The boxes placed so far in one layout, in placing order, and the question the spiral asks at
// every step: which is the first placed box (in placing order) that overlaps this one?
//
// The grid mode answers through a uniform grid of buckets over the drawing area, each holding
// the indexes of the boxes that reach into it in ascending order; the linear mode scans every
// box. Both give the same answer for any box.
class CollisionIndex
{
public:
    enum class Mode
    {
        Grid,
        LinearScan
    };

    void reset(const CloudRect& area, Mode mode);
    int add(const CloudRect& box);
    // The index of the first placed box that overlaps `box` (touching counts), or -1.
    int firstOverlap(const CloudRect& box) const;

    const CloudRect& box(int index) const { return m_boxes[std::size_t(index)]; }
    int count() const { return int(m_boxes.size()); }
    Mode mode() const { return m_mode; }

private:
    struct Entry
    {
        CloudRect box;
        int index;
    };

    // An arithmetic shift floors, and clamping is monotonic: a box reaching outside the area
    // still shares a bucket with every box it overlaps.
    int column(qint64 x) const
    {
        const qint64 c = (x - m_area.left) >> m_cellShift;
        return int(c < 0 ? 0 : (c >= m_columns ? m_columns - 1 : c));
    }
    int row(qint64 y) const
    {
        const qint64 r = (y - m_area.top) >> m_cellShift;
        return int(r < 0 ? 0 : (r >= m_rows ? m_rows - 1 : r));
    }

    Mode m_mode = Mode::Grid;
    std::vector<CloudRect> m_boxes;
    CloudRect m_area;
    int m_cellShift = 0; // buckets are 2^m_cellShift pixels square
    int m_columns = 0;
    int m_rows = 0;
    std::vector<std::vector<Entry>> m_cells;
};

} // namespace kestrum::wordcloud
