#include "HtmlTableWriter.h"

#include "editors/grid/ExportColours.h"
#include "editors/grid/GridDocument.h"

namespace kestrum::grid {

namespace {

QString cellStyle(const GridCellFormat& f)
{
    QString style;
    if (f.fontName != GridCellFormat::defaultFontName()) {
        style += QStringLiteral("font-family:'%1';")
                     .arg(f.fontName.toHtmlEscaped().replace(QLatin1Char('\''), QString()));
    }
    if (f.fontSize != GridCellFormat::kDefaultFontSize) {
        style += QStringLiteral("font-size:%1pt;").arg(f.fontSize);
    }
    if (const auto colour = exportFontColour(f.fontColour)) {
        style += QStringLiteral("color:%1;").arg(colour->name());
    }
    if (const auto back = exportBackground(f.background)) {
        style += QStringLiteral("background-color:%1;").arg(back->name());
    }
    if (f.isBold()) {
        style += QStringLiteral("font-weight:bold;");
    }
    if (f.isItalic()) {
        style += QStringLiteral("font-style:italic;");
    }
    if (f.isUnderline()) {
        style += QStringLiteral("text-decoration:underline;");
    }
    return style;
}

QString cellText(const QString& text)
{
    if (text.isEmpty()) {
        return QStringLiteral("&nbsp;");
    }
    QString out = text.toHtmlEscaped();
    out.replace(QLatin1String("\r\n"), QLatin1String("<BR>"));
    out.replace(QLatin1Char('\n'), QLatin1String("<BR>"));
    return out;
}

} // namespace

QString HtmlTableWriter::tableHtml(const GridDocument& grid, const HtmlTableOptions&)
{
    const std::vector<int> columns = grid.visibleColumns();
    QString out;
    out.reserve(qsizetype(grid.cellCount()) * 24 + 256);
    out += QStringLiteral("<TABLE BORDER=\"1\" CELLSPACING=\"0\" CELLPADDING=\"2\" "
                          "STYLE=\"border-collapse:collapse;font-family:Arial;font-size:10pt\">\n");
    for (int r = 0; r < grid.rowCount(); ++r) {
        out += QStringLiteral("<TR>");
        for (const int c : columns) {
            const bool header = r < grid.fixedRows() || c < grid.fixedColumns();
            const GridCellFormat& f = grid.format(c, r);
            out += header ? QStringLiteral("<TH") : QStringLiteral("<TD");
            if (r == 0) {
                out += QStringLiteral(" WIDTH=\"%1\"").arg(grid.columnWidth(c));
            }
            if (f.alignment == CellAlignment::Right) {
                out += QStringLiteral(" ALIGN=\"right\"");
            } else if (f.alignment == CellAlignment::Centre) {
                out += QStringLiteral(" ALIGN=\"center\"");
            } else if (header) {
                out += QStringLiteral(" ALIGN=\"left\"");
            }
            const QString style = cellStyle(f);
            if (!style.isEmpty()) {
                out += QStringLiteral(" STYLE=\"%1\"").arg(style);
            }
            out += QLatin1Char('>');
            out += cellText(grid.text(c, r));
            out += header ? QStringLiteral("</TH>") : QStringLiteral("</TD>");
        }
        out += QStringLiteral("</TR>\n");
    }
    out += QStringLiteral("</TABLE>\n");
    return out;
}

QByteArray HtmlTableWriter::document(const GridDocument& grid, const HtmlTableOptions& options)
{
    QString out = QStringLiteral("<!DOCTYPE html>\n<HTML><HEAD><META charset=\"utf-8\">\n");
    if (!options.title.isEmpty()) {
        out += QStringLiteral("<TITLE>%1</TITLE>\n").arg(options.title.toHtmlEscaped());
    }
    out += QStringLiteral("</HEAD><BODY>\n");
    out += tableHtml(grid, options);
    out += QStringLiteral("</BODY></HTML>\n");
    return out.toUtf8();
}

} // namespace kestrum::grid
