#include "GridFinder.h"

#include "editors/grid/GridDocument.h"

namespace kestrum::grid {

bool GridFinder::matches(const QString& cellText, const QString& text,
                         const GridFindOptions& options)
{
    if (text.isEmpty()) {
        return false;
    }
    const Qt::CaseSensitivity cs = options.matchCase ? Qt::CaseSensitive : Qt::CaseInsensitive;
    if (options.wholeCell) {
        return cellText.compare(text, cs) == 0;
    }
    return cellText.contains(text, cs);
}

std::optional<GridCell> GridFinder::find(const GridDocument& grid, const QString& text,
                                         const GridFindOptions& options,
                                         std::optional<GridCell> after)
{
    const GridRect body = grid.bodyCells();
    if (!body.isValid() || text.isEmpty()) {
        return std::nullopt;
    }
    int col = body.left;
    int row = body.top;
    if (after) {
        col = after->col + 1;
        row = std::max(after->row, body.top);
        if (col > body.right) {
            col = body.left;
            ++row;
        }
        col = std::max(col, body.left);
    }
    for (; row <= body.bottom; ++row, col = body.left) {
        for (; col <= body.right; ++col) {
            if (matches(grid.text(col, row), text, options)) {
                return GridCell{col, row};
            }
        }
    }
    return std::nullopt;
}

QString GridFinder::replaced(const QString& cellText, const QString& text, const QString& with,
                             const GridFindOptions& options)
{
    if (!matches(cellText, text, options)) {
        return cellText;
    }
    if (options.wholeCell) {
        return with;
    }
    QString out = cellText;
    out.replace(text, with, options.matchCase ? Qt::CaseSensitive : Qt::CaseInsensitive);
    return out;
}

} // namespace kestrum::grid
