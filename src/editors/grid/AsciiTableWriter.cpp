#include "AsciiTableWriter.h"

#include "editors/grid/GridDocument.h"

#include <QString>

namespace kestrum::grid {

namespace {

QString flatten(const QString& text)
{
    QString out = text;
    out.replace(QLatin1String("\r\n"), QLatin1String(" "));
    out.replace(QLatin1Char('\n'), QLatin1Char(' '));
    out.replace(QLatin1Char('\r'), QLatin1Char(' '));
    out.replace(QLatin1Char('\t'), QLatin1Char(' '));
    return out;
}

} // namespace

QByteArray AsciiTableWriter::write(const GridDocument& grid)
{
    const std::vector<int> columns = grid.visibleColumns();
    std::vector<int> widths(columns.size(), 0);
    for (int r = 0; r < grid.rowCount(); ++r) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            widths[i] = std::max(widths[i], int(flatten(grid.text(columns[i], r)).size()));
        }
    }
    QString out;
    QString line;
    for (int r = 0; r < grid.rowCount(); ++r) {
        line.clear();
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (i > 0) {
                line.append(QString(kColumnGap, QLatin1Char(' ')));
            }
            const QString text = flatten(grid.text(columns[i], r));
            const int pad = widths[i] - int(text.size());
            switch (grid.format(columns[i], r).alignment) {
            case CellAlignment::Right:
                line.append(QString(pad, QLatin1Char(' ')));
                line.append(text);
                break;
            case CellAlignment::Centre:
                line.append(QString(pad / 2, QLatin1Char(' ')));
                line.append(text);
                line.append(QString(pad - pad / 2, QLatin1Char(' ')));
                break;
            default:
                line.append(text);
                line.append(QString(pad, QLatin1Char(' ')));
                break;
            }
        }
        while (!line.isEmpty() && line.back() == QLatin1Char(' ')) {
            line.chop(1);
        }
        out.append(line);
        out.append(QLatin1Char('\n'));
    }
    return out.toUtf8();
}

} // namespace kestrum::grid
