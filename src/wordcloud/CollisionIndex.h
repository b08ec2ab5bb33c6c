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

    int column(qint64 x) const;
    int row(qint64 y) const;

    Mode m_mode = Mode::Grid;
    std::vector<CloudRect> m_boxes;
    CloudRect m_area;
    int m_cellShift = 0; // buckets are 2^m_cellShift pixels square
    int m_columns = 0;
    int m_rows = 0;
    std::vector<std::vector<Entry>> m_cells;
};

} // namespace kestrum::wordcloud
