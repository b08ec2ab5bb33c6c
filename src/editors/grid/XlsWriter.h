#pragma once

#include "common/Result.h"

#include <QByteArray>
#include <QString>

namespace kestrum::grid {

class GridDocument;

struct XlsOptions
{
    QString sheetName = QStringLiteral("Sheet1");
};

// The grid as an Excel 97-2003 workbook (.XLS): one BIFF8 worksheet in a compound file. Texts
// go to the shared string table; cells whose text is a plain decimal number ("12", "-3.50")
// or a percentage ("45.2%") are written as numbers with a format that shows them as typed.
// Fonts, colours (through the workbook palette), fills, alignment, word wrap, column widths,
// row heights and hidden columns are kept; fixed rows and columns become frozen panes.
class XlsWriter
{
public:
    static constexpr int kMaxRows = 65536;
    static constexpr int kMaxColumns = 256;
    static constexpr int kMaxTextLength = 32767;

    // Fails (with a message) for a grid larger than a BIFF8 sheet.
    static Result<QByteArray> write(const GridDocument& grid, const XlsOptions& options = {});
    // The BIFF8 workbook stream alone (without the compound file around it).
    static Result<QByteArray> workbookStream(const GridDocument& grid,
                                             const XlsOptions& options = {});
};

} // namespace kestrum::grid
