#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace kestrum::grid {

class GridDocument;

// Sorts the rows below the fixed rows by one column. The kind of the column is detected from
// its texts: numbers when every non-empty cell reads as a number (in the user's format or with
// a decimal point, with an optional percent sign), dates when every one reads as a date,
// otherwise text (case-insensitive, digits by value: "item 2" before "item 10"). Empty cells
// go last in both directions; rows that compare equal keep their order.
class GridSorter
{
public:
    enum class Kind
    {
        Number,
        Date,
        Text
    };

    static Kind detect(const GridDocument& grid, int col);
    static void sort(GridDocument* grid, int col, bool ascending);

    static std::optional<double> toNumber(const QString& text);
    static std::optional<QDateTime> toDate(const QString& text);
};

// The header double click: the same column as last time reverses the direction first; the
// column is remembered for the next time.
class HeaderSortState
{
public:
    // Returns whether the next sort of `col` is ascending.
    bool next(int col)
    {
        if (col == m_lastColumn) {
            m_ascending = !m_ascending;
        }
        m_lastColumn = col;
        return m_ascending;
    }
    int lastColumn() const { return m_lastColumn; }
    bool ascending() const { return m_ascending; }

private:
    int m_lastColumn = -1;
    bool m_ascending = true;
};

} // namespace kestrum::grid
