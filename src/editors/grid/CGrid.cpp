#include "CGrid.h"

#include <algorithm>

namespace kestrum::grid {

namespace {

void copyCell(const GridDocument& from, int fc, int fr, GridDocument& to, int tc, int tr)
{
    to.setText(tc, tr, from.text(fc, fr));
    to.setFormat(tc, tr, from.format(fc, fr));
}

} // namespace

void CGrid::MoveToCGrid(const GridDocument& grid, const GridRect& selection)
{
    const int fixedRows = grid.fixedRows();
    const int fixedCols = grid.fixedColumns();
    const int left = std::clamp(selection.left, 0, grid.columnCount() - 1);
    const int right = std::clamp(selection.right, left, grid.columnCount() - 1);
    const int top = std::clamp(selection.top, 0, grid.rowCount() - 1);
    const int bottom = std::clamp(selection.bottom, top, grid.rowCount() - 1);

    m_grid = GridDocument();
    m_grid.setSize(right - left + fixedCols + 1, bottom - top + fixedRows + 1);
    m_grid.setFixedRows(fixedRows);
    m_grid.setFixedColumns(fixedCols);
    m_grid.setWordWrap(grid.wordWrap());
    for (int r = 0; r < m_grid.rowCount(); ++r) {
        m_grid.setRowHeight(r, GridDocument::kDefaultRowHeight);
    }

    // 1. The fixed rows over the selected columns.
    for (int r = 0; r < fixedRows; ++r) {
        m_grid.setRowHeight(r, grid.rowHeight(r));
        for (int c = left; c <= right; ++c) {
            m_grid.setColumnWidth(c - left + fixedCols, grid.columnWidth(c));
            copyCell(grid, c, r, m_grid, c - left + fixedCols, r);
        }
    }
    // 2. The fixed columns beside the selected rows.
    for (int c = 0; c < fixedCols; ++c) {
        m_grid.setColumnWidth(c, grid.columnWidth(c));
        for (int r = top; r <= bottom; ++r) {
            m_grid.setRowHeight(r - top + fixedRows, grid.rowHeight(r));
            copyCell(grid, c, r, m_grid, c, r - top + fixedRows);
        }
    }
    // 3. The selected cells.
    for (int r = top; r <= bottom; ++r) {
        for (int c = left; c <= right; ++c) {
            copyCell(grid, c, r, m_grid, c - left + fixedCols, r - top + fixedRows);
        }
    }
    // Widths and heights that steps 1 and 2 do not cover (no fixed rows or columns).
    if (fixedRows == 0) {
        for (int c = left; c <= right; ++c) {
            m_grid.setColumnWidth(c - left + fixedCols, grid.columnWidth(c));
        }
    }
    if (fixedCols == 0) {
        for (int r = top; r <= bottom; ++r) {
            m_grid.setRowHeight(r - top + fixedRows, grid.rowHeight(r));
        }
    }
}

void CGrid::MoveColumnsToCGrid(const GridDocument& grid, int first, int last)
{
    first = std::max(first, 0);
    last = std::min(last, grid.columnCount() - 1);
    m_grid = GridDocument();
    if (last < first) {
        m_grid.setSize(1, grid.rowCount());
        m_grid.setFixedRows(grid.fixedRows());
        return;
    }
    m_grid.setSize(last - first + 1, grid.rowCount());
    m_grid.setFixedRows(grid.fixedRows());
    m_grid.setFixedColumns(std::clamp(grid.fixedColumns() - first, 0, last - first + 1));
    m_grid.setWordWrap(grid.wordWrap());
    for (int r = 0; r < grid.rowCount(); ++r) {
        m_grid.setRowHeight(r, grid.rowHeight(r));
        for (int c = first; c <= last; ++c) {
            copyCell(grid, c, r, m_grid, c - first, r);
        }
    }
    for (int c = first; c <= last; ++c) {
        m_grid.setColumnWidth(c - first, grid.columnWidth(c));
        m_grid.setColumnHidden(c - first, grid.isColumnHidden(c));
    }
}

} // namespace kestrum::grid
