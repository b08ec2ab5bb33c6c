#pragma once

#include "editors/grid/GridRect.h"

#include <QString>

#include <optional>

namespace kestrum::grid {

class GridDocument;

struct GridFindOptions
{
    bool matchCase = false;
    bool wholeCell = false; // the whole cell text must equal the text sought

    // The global find's option bits: 1 match case, 2 whole cell.
    static GridFindOptions fromBits(int bits) { return {(bits & 1) != 0, (bits & 2) != 0}; }
};

// Find and replace over the cells below the fixed rows and right of the fixed columns, row by
// row from the top left.
class GridFinder
{
public:
    static bool matches(const QString& cellText, const QString& text,
                        const GridFindOptions& options);
    // The first matching cell after `after` (from the first cell when none).
    static std::optional<GridCell> find(const GridDocument& grid, const QString& text,
                                        const GridFindOptions& options,
                                        std::optional<GridCell> after = std::nullopt);
    // The cell text with the sought text replaced (the whole text when matching whole cells).
    static QString replaced(const QString& cellText, const QString& text, const QString& with,
                            const GridFindOptions& options);
};

} // namespace kestrum::grid
