#pragma once

#include <QByteArray>
#include <QChar>

namespace kestrum::grid {

class GridDocument;

// Writes every row and every visible column as delimited text (UTF-8, CRLF line ends). A field
// is quoted when it holds the delimiter, a quote or a line break, or begins or ends with blanks;
// quotes inside are doubled, so DelimitedTextReader reads the text back cell for cell.
class DelimitedTextWriter
{
public:
    static QByteArray write(const GridDocument& grid, QChar delimiter);
    static QString quoteField(const QString& text, QChar delimiter);
};

} // namespace kestrum::grid
