#include "RtfTableWriter.h"

#include "editors/grid/ExportColours.h"
#include "editors/grid/GridDocument.h"

#include "common/RtfEmitter.h"

#include <QHash>
#include <QStringList>

#include <algorithm>

namespace kestrum::grid {

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

    common::RtfEmitter out;
    out.reserve(qsizetype(grid.cellCount()) * 40 + 1024);
    out.raw("{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\n{\\fonttbl");
    for (int i = 0; i < fonts.size(); ++i) {
        out.raw("{");
        out.word("f", i);
        out.word("fswiss");
        out.word("fcharset", 0);
        out.text(fonts[i]);
        out.raw(";}");
    }
    out.raw("}\n{\\colortbl;");
    for (const QColor& c : colours) {
        out.word("red", c.red());
        out.word("green", c.green());
        out.word("blue", c.blue());
        out.raw(";");
    }
    out.raw("}\n\\viewkind4\\pard\\plain\\f0\\fs20\n");

    for (int r = 0; r < grid.rowCount(); ++r) {
        out.words("\\trowd\\trgaph70\\trleft0");
        if (r < grid.fixedRows()) {
            out.word("trhdr");
        }
        if (grid.rowHeight(r) > 0) {
            out.word("trrh", grid.rowHeight(r) * kTwipsPerPixel);
        }
        int right = 0;
        for (const int c : columns) {
            const GridCellFormat& f = grid.format(c, r);
            out.words("\\clbrdrt\\brdrs\\brdrw10\\clbrdrl\\brdrs\\brdrw10"
                      "\\clbrdrb\\brdrs\\brdrw10\\clbrdrr\\brdrs\\brdrw10");
            if (const auto back = exportBackground(f.background)) {
                out.word("clcbpat", colourNumber(*back));
            }
            right += std::max(grid.columnWidth(c), 8) * kTwipsPerPixel;
            out.word("cellx", right);
        }
        out.raw("\n");
        for (const int c : columns) {
            const GridCellFormat& f = grid.format(c, r);
            out.words("\\pard\\intbl");
            out.word(f.alignment == CellAlignment::Right    ? "qr"
                     : f.alignment == CellAlignment::Centre ? "qc"
                                                            : "ql");
            out.word("plain");
            out.word("f", int(fonts.indexOf(f.fontName)));
            out.word("fs", f.fontSize * 2);
            if (const auto fc = exportFontColour(f.fontColour)) {
                out.word("cf", colourNumber(*fc));
            }
            if (f.isBold() || r < grid.fixedRows()) {
                out.word("b");
            }
            if (f.isItalic()) {
                out.word("i");
            }
            if (f.isUnderline()) {
                out.word("ul");
            }
            out.text(grid.text(c, r));
            out.raw("\\cell\n");
        }
        out.raw("\\row\n");
    }
    out.raw("\\pard\\par\n}\n");
    return out.bytes();
}

} // namespace kestrum::grid
