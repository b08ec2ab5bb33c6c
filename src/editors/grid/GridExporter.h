#pragma once

#include "common/Result.h"

#include <QByteArray>
#include <QString>

namespace kestrum::grid {

class GridDocument;

// The export formats, numbered as the export dialog's filters (1 to 7) and the native file (8).
namespace ExportFormat {
constexpr int Ascii = 1;
constexpr int TabDelimited = 2;
constexpr int CommaDelimited = 3;
constexpr int Excel = 4;
constexpr int Word = 5;
constexpr int Html = 6;
constexpr int Xml = 7;
constexpr int Native = 8;
} // namespace ExportFormat

// Writes a grid to a file in one of the export formats.
class GridExporter
{
public:
    // The export dialog's filter, exactly as the program has always offered it.
    static QString saveTableFilter();

    // The extension a format writes: ".TXT", ".TAB", ".CSV", ".XLS", ".DOC", ".HTM", ".xml",
    // ".WGF" (empty for an unknown format).
    static QString extensionFor(int format);
    // The format chosen by a name typed in the export dialog: its extension when it is one of
    // ".TXT", ".TAB", ".CSV", ".XLS", ".DOC", ".HTM", ".XML" (any case), else the filter chosen.
    static int formatFor(const QString& fileName, int filterIndex);
    // The file name with its extension replaced by the format's.
    static QString fileNameFor(const QString& fileName, int format);

    // The bytes of an export (everything but XML's change of the grid, see exportGrid).
    static Result<QByteArray> encode(const GridDocument& grid, int format);
    // Writes `fileName` as given. The XML export gives the grid exactly one fixed row first,
    // which it keeps.
    static Status exportGrid(GridDocument* grid, const QString& fileName, int format);
};

} // namespace kestrum::grid
