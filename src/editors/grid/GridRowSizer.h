#pragma once

#include <vector>

namespace kestrum::grid {

class GridDocument;

// Row heights fitted to the cells' texts (needs a QGuiApplication: it measures with fonts).
class GridRowSizer
{
public:
    static constexpr int kCellPadding = 4;
    static constexpr int kMultilineMinHeight = 15;
    static constexpr int kMultilineMaxHeight = 150;

    // The height each row needs: every visible cell measured in its font, wrapped to its column
    // width when the grid wraps words, on one line otherwise.
    static std::vector<int> fittedHeights(const GridDocument& grid, bool wrap);
    // The multi-line mode's clamp for rows 1 to the last: 151 or more becomes 150, below 15
    // becomes 15.
    static int clampMultiline(int height);
    // The heights the multi-line command gives: fitted, then rows from 1 clamped (row 0 not).
    static std::vector<int> multilineHeights(const GridDocument& grid, bool wrap);
};

} // namespace kestrum::grid
