#include "GridClipboardData.h"

#include "editors/grid/DelimitedTextReader.h"
#include "editors/grid/DelimitedTextWriter.h"
#include "editors/grid/GridDocument.h"
#include "editors/grid/HtmlTableWriter.h"
#include "editors/grid/RtfTableWriter.h"

#include <QMimeData>

namespace kestrum::grid {

GridDocument GridClipboardData::subGrid(const GridDocument& grid, const GridRect& rect)
{
    const int left = std::clamp(rect.left, 0, grid.columnCount() - 1);
    const int right = std::clamp(rect.right, left, grid.columnCount() - 1);
    const int top = std::clamp(rect.top, 0, grid.rowCount() - 1);
    const int bottom = std::clamp(rect.bottom, top, grid.rowCount() - 1);
    GridDocument out;
    out.setSize(right - left + 1, bottom - top + 1);
    out.setFixedRows(0);
    out.setFixedColumns(0);
    out.setWordWrap(grid.wordWrap());
    for (int r = top; r <= bottom; ++r) {
        out.setRowHeight(r - top, grid.rowHeight(r));
        for (int c = left; c <= right; ++c) {
            out.setText(c - left, r - top, grid.text(c, r));
            out.setFormat(c - left, r - top, grid.format(c, r));
        }
    }
    for (int c = left; c <= right; ++c) {
        out.setColumnWidth(c - left, grid.columnWidth(c));
        out.setColumnHidden(c - left, grid.isColumnHidden(c));
    }
    return out;
}

QString GridClipboardData::plainText(const GridDocument& grid)
{
    QString text = QString::fromUtf8(DelimitedTextWriter::write(grid, QLatin1Char('\t')));
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return text;
}

QMimeData* GridClipboardData::mimeFor(const GridDocument& grid)
{
    auto* mime = new QMimeData;
    mime->setText(plainText(grid));
    mime->setHtml(QStringLiteral("<HTML><BODY>\n") + HtmlTableWriter::tableHtml(grid) +
                  QStringLiteral("</BODY></HTML>\n"));
    mime->setData(QStringLiteral("text/rtf"), RtfTableWriter::write(grid));
    return mime;
}

std::vector<QStringList> GridClipboardData::rowsFrom(const QMimeData* mime)
{
    std::vector<QStringList> rows;
    if (!mime || !mime->hasText()) {
        return rows;
    }
    QString text = mime->text();
    if (text.endsWith(QLatin1String("\r\n"))) {
        text.chop(2);
    } else if (text.endsWith(QLatin1Char('\n'))) {
        text.chop(1);
    }
    if (text.isEmpty()) {
        rows.push_back(QStringList{QString()});
        return rows;
    }
    if (!DelimitedTextReader::parse(text, QLatin1Char('\t'), &rows)) {
        rows.clear();
    }
    return rows;
}

} // namespace kestrum::grid
