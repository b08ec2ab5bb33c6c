#include "CollisionIndex.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kestrum::wordcloud {

namespace {

// About this many buckets cover the drawing area whatever its size: small enough to clear
// quickly, fine enough that a small word's box meets few other boxes in its buckets.
constexpr double kTargetCells = 16384.0;
constexpr int kMinCellShift = 2;

} // namespace

void CollisionIndex::reset(const CloudRect& area, Mode mode)
{
    m_mode = mode;
    m_boxes.clear();
    m_area = area;
    m_cells.clear();
    if (mode != Mode::Grid) {
        return;
    }
    const double w = std::max<qint64>(1, area.width());
    const double h = std::max<qint64>(1, area.height());
    const double side = std::sqrt(w * h / kTargetCells);
    m_cellShift = kMinCellShift;
    while ((1 << m_cellShift) < side && m_cellShift < 24) {
        ++m_cellShift;
    }
    // Boxes are closed on every side for the overlap test, so the last column holds x = right.
    m_columns = int(qint64(w) >> m_cellShift) + 1;
    m_rows = int(qint64(h) >> m_cellShift) + 1;
    m_cells.resize(std::size_t(m_columns) * std::size_t(m_rows));
}

int CollisionIndex::add(const CloudRect& box)
{
    const int index = int(m_boxes.size());
    m_boxes.push_back(box);
    if (m_mode == Mode::Grid) {
        const int c0 = column(std::min(box.left, box.right));
        const int c1 = column(std::max(box.left, box.right));
        const int r0 = row(std::min(box.top, box.bottom));
        const int r1 = row(std::max(box.top, box.bottom));
        for (int r = r0; r <= r1; ++r) {
            for (int c = c0; c <= c1; ++c) {
                m_cells[std::size_t(r) * std::size_t(m_columns) + std::size_t(c)].push_back(
                    {box, index});
            }
        }
    }
    return index;
}

int CollisionIndex::firstOverlap(const CloudRect& box) const
{
    if (m_mode == Mode::LinearScan) {
        for (std::size_t i = 0; i < m_boxes.size(); ++i) {
            if (m_boxes[i].overlaps(box)) {
                return int(i);
            }
        }
        return -1;
    }
    int best = std::numeric_limits<int>::max();
    // An inverted box overlaps what spans its edges, which again meets it in a shared bucket.
    const int c0 = column(std::min(box.left, box.right));
    const int c1 = column(std::max(box.left, box.right));
    const int r0 = row(std::min(box.top, box.bottom));
    const int r1 = row(std::max(box.top, box.bottom));
    for (int r = r0; r <= r1; ++r) {
        for (int c = c0; c <= c1; ++c) {
            // Each bucket lists its boxes in placing order: its first overlap is the only
            // candidate, and nothing at or after the best so far can improve on it.
            for (const Entry& entry :
                 m_cells[std::size_t(r) * std::size_t(m_columns) + std::size_t(c)]) {
                if (entry.index >= best) {
                    break;
                }
                if (entry.box.overlaps(box)) {
                    best = entry.index;
                    break;
                }
            }
        }
    }
    return best == std::numeric_limits<int>::max() ? -1 : best;
}

} // namespace kestrum::wordcloud
