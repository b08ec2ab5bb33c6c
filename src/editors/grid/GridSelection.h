#pragma once

#include "editors/grid/GridRect.h"

#include <vector>

namespace kestrum::grid {

// What the commands act on: the cells of the multi-cell selection in selection order (empty
// when only the current cell is selected), their bounding rectangle and the current cell.
struct GridSelection
{
    std::vector<GridCell> cells;
    GridRect rect;
    GridCell current;

    // The cells a cell command changes: the selection, or the current cell when fewer than
    // one cell is selected.
    std::vector<GridCell> targets() const
    {
        return cells.empty() ? std::vector<GridCell>{current} : cells;
    }
    // The rectangle a range command uses: the selection's, or the current cell's.
    GridRect range() const
    {
        return cells.empty() ? GridRect{current.col, current.row, current.col, current.row} : rect;
    }
    // A selection of a whole rectangle, row by row.
    static GridSelection ofRect(const GridRect& rect)
    {
        GridSelection s;
        s.rect = rect;
        s.current = {rect.left, rect.top};
        for (int r = rect.top; r <= rect.bottom; ++r) {
            for (int c = rect.left; c <= rect.right; ++c) {
                s.cells.push_back({c, r});
            }
        }
        return s;
    }
    static GridSelection ofCell(int col, int row)
    {
        GridSelection s;
        s.current = {col, row};
        s.rect = {col, row, col, row};
        return s;
    }
};

} // namespace kestrum::grid
