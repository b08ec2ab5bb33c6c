#pragma once

#include "editors/grid/GridRect.h"

#include <QStringList>

#include <vector>

class QMimeData;

namespace kestrum::grid {

class GridDocument;

// What the grid puts on the clipboard and takes from it: a part of a grid as tab-separated
// text, an HTML table and an RTF table (so spreadsheets and word processors paste it
// formatted); pasted text is read as tab-separated rows.
class GridClipboardData
{
public:
    // A new grid of the cells in `rect`, with their formats and sizes, without fixed cells.
    static GridDocument subGrid(const GridDocument& grid, const GridRect& rect);
    // The mime data for a whole grid (the caller owns it).
    static QMimeData* mimeFor(const GridDocument& grid);
    static QString plainText(const GridDocument& grid);
    // The rows of tab-separated text ("" for none); one trailing line end is not a row.
    static std::vector<QStringList> rowsFrom(const QMimeData* mime);
};

} // namespace kestrum::grid
