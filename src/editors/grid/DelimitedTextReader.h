#pragma once

#include "common/Result.h"

#include <QByteArray>
#include <QChar>
#include <QString>
#include <QStringList>

#include <vector>

namespace kestrum::grid {

class GridDocument;

// Reads delimited text (CSV, tab-separated) as spreadsheet programs write it: fields may be
// quoted with '"', a doubled quote stands for one, quoted fields may hold delimiters and line
// breaks; line ends are CRLF, LF or CR. Rows may have different lengths (short rows are padded
// with empty cells). A quote that is never closed is taken as an ordinary character. Files are
// decoded by TextDecoder; binary files and files beyond the grid's limits are refused.
class DelimitedTextReader
{
public:
    static constexpr qint64 kMaxFileBytes = qint64(64) * 1024 * 1024;

    // Splits text into rows of fields. Fails only when the grid's limits are exceeded.
    static Status parse(const QString& text, QChar delimiter, std::vector<QStringList>* rows);
    // Replaces the grid's cells with the rows of `bytes`; fixed rows and columns and the
    // word-wrap state are kept, formats and sizes start afresh. *grid is untouched on failure.
    static Status load(const QByteArray& bytes, QChar delimiter, GridDocument* grid);
    static Status loadFile(const QString& path, QChar delimiter, GridDocument* grid);
    // Fills a grid from parsed rows (as load does).
    static void fill(const std::vector<QStringList>& rows, GridDocument* grid);
};

} // namespace kestrum::grid
