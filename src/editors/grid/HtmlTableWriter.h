#pragma once

#include <QByteArray>
#include <QString>

namespace kestrum::grid {

class GridDocument;

struct HtmlTableOptions
{
    // Where pictures of the table go, beside the HTML file, and how they are named
    // ("images/img1.png"...). Cells hold text only, so no picture is written today.
    QString imageFolder = QStringLiteral("images");
    QString imageBaseName = QStringLiteral("img");
    QString title;
};

// The grid as an HTML table: fixed rows and columns as header cells, each cell with its font,
// colours and alignment, column widths on the first row. tableHtml() is the table alone (what
// the report's HTML export embeds); document() a complete UTF-8 page around it.
class HtmlTableWriter
{
public:
    static QString tableHtml(const GridDocument& grid, const HtmlTableOptions& options = {});
    static QByteArray document(const GridDocument& grid, const HtmlTableOptions& options = {});
};

} // namespace kestrum::grid
