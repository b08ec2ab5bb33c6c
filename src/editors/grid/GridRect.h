#pragma once

#include <QtGlobal>

namespace kestrum::grid {

// An inclusive range of cells, by column and row ("left..right x top..bottom").
struct GridRect
{
    int left = 0;
    int top = 0;
    int right = -1;
    int bottom = -1;

    bool isValid() const { return left <= right && top <= bottom; }
    int width() const { return right - left + 1; }
    int height() const { return bottom - top + 1; }
    bool contains(int col, int row) const
    {
        return col >= left && col <= right && row >= top && row <= bottom;
    }
    friend bool operator==(const GridRect&, const GridRect&) = default;
};

// A cell address, column first as the grid names its cells.
struct GridCell
{
    int col = 0;
    int row = 0;
    friend bool operator==(const GridCell&, const GridCell&) = default;
};

} // namespace kestrum::grid
