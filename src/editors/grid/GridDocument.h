#pragma once

#include "editors/grid/GridCellFormat.h"
#include "editors/grid/GridRect.h"

#include <QHash>
#include <QString>

#include <vector>

namespace kestrum::grid {

// The content of a grid page: cell texts, the number of fixed (header) rows and columns,
// column widths, row heights, hidden columns, per-cell formatting and the word-wrap state.
//
// Cells are addressed column first, (col, row), from 0; fixed rows and columns are the first
// ones. Formats are kept in a pool shared by the cells (most cells share the default format),
// so copying a document, or keeping an earlier state of it for undo, stays cheap.
class GridDocument
{
public:
    static constexpr int kDefaultColumnCount = 5;
    static constexpr int kDefaultRowCount = 10;
    static constexpr int kDefaultColumnWidth = 64;
    static constexpr int kDefaultRowHeight = 22;
    static constexpr int kDefaultFixedRowHeight = 24;
    // Bounds that every reader and command respects.
    static constexpr int kMaxRows = 1'048'576;
    static constexpr int kMaxColumns = 16'384;
    static constexpr qint64 kMaxCells = 4'000'000;
    static constexpr int kMaxSize = 10'000; // pixels, for widths and heights

    // A new grid page: five columns 64 wide, ten rows (the fixed row 24 high, the others 22),
    // one fixed row, no fixed column.
    GridDocument();

    void reset();

    int rowCount() const { return m_rows; }
    int columnCount() const { return m_cols; }
    qint64 cellCount() const { return qint64(m_rows) * m_cols; }
    int fixedRows() const { return m_fixedRows; }
    int fixedColumns() const { return m_fixedCols; }
    bool isValidCell(int col, int row) const
    {
        return col >= 0 && row >= 0 && col < m_cols && row < m_rows;
    }
    GridRect allCells() const { return {0, 0, m_cols - 1, m_rows - 1}; }
    // The cells below the fixed rows and right of the fixed columns (may be empty).
    GridRect bodyCells() const { return {m_fixedCols, m_fixedRows, m_cols - 1, m_rows - 1}; }

    // Sizes are clamped to 1..kMaxRows / kMaxColumns and to kMaxCells in all; new cells are
    // empty with the default format; new rows and columns take the default sizes.
    void setSize(int columns, int rows);
    void setRowCount(int rows) { setSize(m_cols, rows); }
    void setColumnCount(int columns) { setSize(columns, m_rows); }
    // Clamped to 0..rowCount (0..columnCount).
    void setFixedRows(int count);
    void setFixedColumns(int count);

    const QString& text(int col, int row) const { return m_texts[index(col, row)]; }
    void setText(int col, int row, const QString& text) { m_texts[index(col, row)] = text; }

    const GridCellFormat& format(int col, int row) const
    {
        return m_formats[m_formatIds[index(col, row)]];
    }
    void setFormat(int col, int row, const GridCellFormat& format);
    // The pool: id 0 is the default format.
    quint32 formatId(int col, int row) const { return m_formatIds[index(col, row)]; }
    void setFormatId(int col, int row, quint32 id);
    quint32 addFormat(const GridCellFormat& format);
    const GridCellFormat& formatAt(quint32 id) const { return m_formats[id]; }
    quint32 formatPoolSize() const { return quint32(m_formats.size()); }
    static const GridCellFormat& defaultFormat();

    int columnWidth(int col) const { return m_colWidths[std::size_t(col)]; }
    void setColumnWidth(int col, int width);
    int rowHeight(int row) const { return m_rowHeights[std::size_t(row)]; }
    void setRowHeight(int row, int height);
    bool isColumnHidden(int col) const { return m_hidden[std::size_t(col)] != 0; }
    void setColumnHidden(int col, bool hidden) { m_hidden[std::size_t(col)] = hidden ? 1 : 0; }
    void unhideAllColumns();
    bool hasHiddenColumns() const;
    // Columns not hidden, in order.
    std::vector<int> visibleColumns() const;

    bool wordWrap() const { return m_wordWrap; }
    void setWordWrap(bool wrap) { m_wordWrap = wrap; }

    // Structure. Counts are clamped to what exists (and to the limits); removing never leaves
    // fewer than one row or column.
    void insertRows(int at, int count);
    void removeRows(int at, int count);
    void insertColumns(int at, int count);
    void removeColumns(int at, int count);
    void moveRow(int from, int to);
    void moveColumn(int from, int to);
    // Rows first..first+order.size()-1 take the rows order[i] (absolute row numbers), with
    // their texts, formats and heights.
    void reorderRows(int first, const std::vector<int>& order);
    // Empties the texts of the cells (formats stay).
    void clearTexts(const GridRect& rect);

    // Compares content and layout; formats by value, not by pool id.
    bool sameContent(const GridDocument& other) const;

private:
    std::size_t index(int col, int row) const
    {
        return std::size_t(row) * std::size_t(m_cols) + std::size_t(col);
    }
    void rebuildColumns(const std::vector<int>& sourceColumns);

    int m_rows = 0;
    int m_cols = 0;
    int m_fixedRows = 0;
    int m_fixedCols = 0;
    std::vector<QString> m_texts;
    std::vector<quint32> m_formatIds;
    std::vector<GridCellFormat> m_formats;
    QHash<GridCellFormat, quint32> m_formatLookup;
    std::vector<int> m_colWidths;
    std::vector<int> m_rowHeights;
    std::vector<char> m_hidden;
    bool m_wordWrap = false;
};

} // namespace kestrum::grid
