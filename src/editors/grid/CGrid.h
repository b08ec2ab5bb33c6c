#pragma once

#include "editors/grid/GridDocument.h"

namespace kestrum::grid {

// The scratch grid: part of a grid copied out for the clipboard ("Selection + Headers") and for
// the report exports, which take wide tables a few columns at a time.
class CGrid
{
public:
    // The selection with the fixed rows above it and the fixed columns left of it: (bottom - top
    // + FR + 1) rows and (right - left + FC + 1) columns, FR fixed rows and FC fixed columns.
    // Cells carry their texts and formats; widths and heights come along. The corner cells where
    // fixed rows and fixed columns meet stay empty.
    void MoveToCGrid(const GridDocument& grid, const GridRect& selection);
    // Columns first..last (clamped to the grid) with all their rows.
    void MoveColumnsToCGrid(const GridDocument& grid, int first, int last);

    const GridDocument& document() const { return m_grid; }

private:
    GridDocument m_grid;
};

} // namespace kestrum::grid
