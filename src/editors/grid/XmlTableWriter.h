#pragma once

#include <QByteArray>
#include <QString>

namespace kestrum::grid {

class GridDocument;

// The grid as XML: a "Table" element with one "Row" element per row below the header row, and
// in each row one element per visible column, named after the column's header text (row 0)
// by xmlElementName().
class XmlTableWriter
{
public:
    // Header text to element name: every "#" becomes "no"; every character other than A-Z,
    // a-z, 0-9, "-", "." , ":" and "_" becomes "_"; then "__" becomes "_" until none is left
    // ("Age (#)" gives "Age_no_"). A name that would still not be a valid XML name (empty, or
    // starting with a digit, "-" or ".") gets a leading "_".
    static QString xmlElementName(const QString& header);
    static QByteArray write(const GridDocument& grid);
};

} // namespace kestrum::grid
