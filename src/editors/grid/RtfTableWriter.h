#pragma once

#include <QByteArray>

namespace kestrum::grid {

class GridDocument;

// The grid as a word-processor document: an RTF table with the grid's column widths, cell
// fonts, colours, shading and alignment; fixed rows repeat as the table header on every page.
// Pure 7-bit output (text escaped by the common RTF emitter), so any word processor reads it.
class RtfTableWriter
{
public:
    static constexpr int kTwipsPerPixel = 15; // at 96 pixels an inch
    static QByteArray write(const GridDocument& grid);
};

} // namespace kestrum::grid
