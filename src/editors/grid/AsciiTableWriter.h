#pragma once

#include <QByteArray>

namespace kestrum::grid {

class GridDocument;

// Plain text with the cells padded into columns: each visible column is as wide as its longest
// text, columns are two blanks apart, cells aligned as in the grid (left, right or centred).
// Line breaks inside a cell become blanks; trailing blanks are cut. UTF-8, LF line ends.
class AsciiTableWriter
{
public:
    static constexpr int kColumnGap = 2;
    static QByteArray write(const GridDocument& grid);
};

} // namespace kestrum::grid
