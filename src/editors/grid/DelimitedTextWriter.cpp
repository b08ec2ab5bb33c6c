#include "DelimitedTextWriter.h"

#include "editors/grid/GridDocument.h"

namespace kestrum::grid {

QString DelimitedTextWriter::quoteField(const QString& text, QChar delimiter)
{
    bool quote = text.contains(delimiter) || text.contains(QLatin1Char('"')) ||
                 text.contains(QLatin1Char('\n')) || text.contains(QLatin1Char('\r'));
    if (!quote && !text.isEmpty()) {
        quote = text.front().isSpace() || text.back().isSpace();
    }
    if (!quote) {
        return text;
    }
    QString out;
    out.reserve(text.size() + 2);
    out.append(QLatin1Char('"'));
    for (const QChar c : text) {
        if (c == QLatin1Char('"')) {
            out.append(QLatin1Char('"'));
        }
        out.append(c);
    }
    out.append(QLatin1Char('"'));
    return out;
}

QByteArray DelimitedTextWriter::write(const GridDocument& grid, QChar delimiter)
{
    const std::vector<int> columns = grid.visibleColumns();
    QString out;
    out.reserve(qsizetype(grid.cellCount()) * 8);
    for (int r = 0; r < grid.rowCount(); ++r) {
        bool first = true;
        for (const int c : columns) {
            if (!first) {
                out.append(delimiter);
            }
            first = false;
            out.append(quoteField(grid.text(c, r), delimiter));
        }
        out.append(QLatin1String("\r\n"));
    }
    return out.toUtf8();
}

} // namespace kestrum::grid
