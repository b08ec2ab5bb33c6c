#include "GridRowSizer.h"

#include "editors/grid/GridDocument.h"

#include <QFontMetrics>
#include <QHash>

#include <algorithm>

namespace kestrum::grid {

std::vector<int> GridRowSizer::fittedHeights(const GridDocument& grid, bool wrap)
{
    const std::vector<int> columns = grid.visibleColumns();
    QHash<quint32, QFontMetrics> metrics;
    auto metricsFor = [&](quint32 id) -> const QFontMetrics& {
        auto found = metrics.find(id);
        if (found == metrics.end()) {
            found = metrics.insert(id, QFontMetrics(grid.formatAt(id).font()));
        }
        return found.value();
    };
    std::vector<int> heights(std::size_t(grid.rowCount()), 0);
    for (int r = 0; r < grid.rowCount(); ++r) {
        int height = metricsFor(0).height();
        for (const int c : columns) {
            const QFontMetrics& fm = metricsFor(grid.formatId(c, r));
            const QString& text = grid.text(c, r);
            if (text.isEmpty()) {
                height = std::max(height, fm.height());
                continue;
            }
            const int width = std::max(1, grid.columnWidth(c) - kCellPadding);
            const int flags = wrap ? int(Qt::TextWordWrap) : int(Qt::TextSingleLine);
            // Bounded: a huge text is measured over a height it can exceed, not more.
            const QRect box = fm.boundingRect(QRect(0, 0, width, 100000), flags, text.left(20000));
            height = std::max(height, box.height());
        }
        heights[std::size_t(r)] = height + kCellPadding;
    }
    return heights;
}

int GridRowSizer::clampMultiline(int height)
{
    if (height >= kMultilineMaxHeight + 1) {
        return kMultilineMaxHeight;
    }
    if (height < kMultilineMinHeight) {
        return kMultilineMinHeight;
    }
    return height;
}

std::vector<int> GridRowSizer::multilineHeights(const GridDocument& grid, bool wrap)
{
    std::vector<int> heights = fittedHeights(grid, wrap);
    for (std::size_t r = 1; r < heights.size(); ++r) {
        heights[r] = clampMultiline(heights[r]);
    }
    return heights;
}

} // namespace kestrum::grid
