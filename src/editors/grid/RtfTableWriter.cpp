#include "RtfTableWriter.h"

#include "editors/grid/ExportColours.h"
#include "editors/grid/GridDocument.h"

#include <QHash>
#include <QStringList>

namespace kestrum::grid {

QString RtfTableWriter::escape(const QString& text)
{
    QString out;
    out.reserve(text.size() + 8);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t u = text[i].unicode();
        switch (u) {
        case '\\':
            out += QLatin1String("\\\\");
            break;
        case '{':
            out += QLatin1String("\\{");
            break;
        case '}':
            out += QLatin1String("\\}");
            break;
        case '\t':
            out += QLatin1String("\\tab ");
            break;
        case '\r':
            if (i + 1 < text.size() && text[i + 1] == QLatin1Char('\n')) {
                ++i;
            }
            out += QLatin1String("\\line ");
            break;
        case '\n':
            out += QLatin1String("\\line ");
            break;
        default:
            if (u < 0x20) {
                break; // other control characters have no place in a document
            }
            if (u < 0x80) {
                out += QChar(u);
            } else {
                // \uN takes a signed 16-bit number; '?' is what readers without Unicode show.
                out += QStringLiteral("\\u%1?").arg(qint16(u));
            }
        }
    }
    return out;
}

QByteArray RtfTableWriter::write(const GridDocument& grid)
{
    const std::vector<int> columns = grid.visibleColumns();

    // Font and colour tables over the formats the cells use.
    QStringList fonts{GridCellFormat::defaultFontName()};
    QList<QColor> colours; // \colortbl entry 0 is "auto"; these are 1..n
    QHash<QRgb, int> colourIndex;
    auto colourNumber = [&](const QColor& c) {
        const auto found = colourIndex.constFind(c.rgb());
        if (found != colourIndex.constEnd()) {
            return found.value();
        }
        colours.append(c);
        colourIndex.insert(c.rgb(), int(colours.size()));
        return int(colours.size());
    };
    QHash<quint32, bool> seen;
    for (int r = 0; r < grid.rowCount(); ++r) {
        for (const int c : columns) {
            const quint32 id = grid.formatId(c, r);
            if (seen.contains(id)) {
                continue;
            }
            seen.insert(id, true);
            const GridCellFormat& f = grid.formatAt(id);
            if (!fonts.contains(f.fontName)) {
                fonts.append(f.fontName);
            }
            if (const auto fc = exportFontColour(f.fontColour)) {
                colourNumber(*fc);
            }
            if (const auto bc = exportBackground(f.background)) {
                colourNumber(*bc);
            }
        }
    }

    QString out;
    out.reserve(qsizetype(grid.cellCount()) * 40 + 1024);
    out += QStringLiteral("{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\n{\\fonttbl");
    for (int i = 0; i < fonts.size(); ++i) {
        out += QStringLiteral("{\\f%1\\fswiss\\fcharset0 %2;}").arg(i).arg(escape(fonts[i]));
    }
    out += QStringLiteral("}\n{\\colortbl;");
    for (const QColor& c : colours) {
        out +=
            QStringLiteral("\\red%1\\green%2\\blue%3;").arg(c.red()).arg(c.green()).arg(c.blue());
    }
    out += QStringLiteral("}\n\\viewkind4\\pard\\plain\\f0\\fs20\n");

    for (int r = 0; r < grid.rowCount(); ++r) {
        out += QStringLiteral("\\trowd\\trgaph70\\trleft0");
        if (r < grid.fixedRows()) {
            out += QStringLiteral("\\trhdr");
        }
        if (grid.rowHeight(r) > 0) {
            out += QStringLiteral("\\trrh%1").arg(grid.rowHeight(r) * kTwipsPerPixel);
        }
        int right = 0;
        for (const int c : columns) {
            const GridCellFormat& f = grid.format(c, r);
            out += QStringLiteral("\\clbrdrt\\brdrs\\brdrw10\\clbrdrl\\brdrs\\brdrw10"
                                  "\\clbrdrb\\brdrs\\brdrw10\\clbrdrr\\brdrs\\brdrw10");
            if (const auto back = exportBackground(f.background)) {
                out += QStringLiteral("\\clcbpat%1").arg(colourNumber(*back));
            }
            right += std::max(grid.columnWidth(c), 8) * kTwipsPerPixel;
            out += QStringLiteral("\\cellx%1").arg(right);
        }
        out += QLatin1Char('\n');
        for (const int c : columns) {
            const GridCellFormat& f = grid.format(c, r);
            out += QStringLiteral("\\pard\\intbl");
            out += f.alignment == CellAlignment::Right    ? QStringLiteral("\\qr")
                   : f.alignment == CellAlignment::Centre ? QStringLiteral("\\qc")
                                                          : QStringLiteral("\\ql");
            out += QStringLiteral("\\plain\\f%1\\fs%2")
                       .arg(fonts.indexOf(f.fontName))
                       .arg(f.fontSize * 2);
            if (const auto fc = exportFontColour(f.fontColour)) {
                out += QStringLiteral("\\cf%1").arg(colourNumber(*fc));
            }
            if (f.isBold() || r < grid.fixedRows()) {
                out += QStringLiteral("\\b");
            }
            if (f.isItalic()) {
                out += QStringLiteral("\\i");
            }
            if (f.isUnderline()) {
                out += QStringLiteral("\\ul");
            }
            out += QLatin1Char(' ');
            out += escape(grid.text(c, r));
            out += QStringLiteral("\\cell\n");
        }
        out += QStringLiteral("\\row\n");
    }
    out += QStringLiteral("\\pard\\par\n}\n");
    return out.toLatin1();
}

} // namespace kestrum::grid
