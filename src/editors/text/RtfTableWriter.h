#pragma once

#include "common/RtfEmitter.h"
#include "editors/text/PageLayout.h"

#include <vector>

class QColor;
class QTextLength;
class QTextTable;

namespace kestrum::text {

class ColourTable;

// The row definitions of a table as RTF writes them (\trowd ... \cellxN): row alignment and
// indent, the cell padding, merges, vertical alignment, shading and borders of every cell, and
// the column widths, as \cellx boundaries and as the widths the table asked for (fixed or a
// share of the page) so that a reader can give the table its own column widths back.
class RtfTableWriter
{
public:
    // Tables nested deeper than this are written as the text of their cells.
    static constexpr int kMaxDepth = 8;

    RtfTableWriter(common::RtfEmitter& rtf, ColourTable& colours, const PageLayout& layout);

    // The width of each column in twips.
    std::vector<int> columnWidths(const QTextTable* table) const;
    void writeRowDefinition(const QTextTable* table, int row, const std::vector<int>& widths);

    // The RTF word of a border style (dot-dash styles have none of their own: dashed).
    static const char* borderStyleWord(int style);

private:
    int colourNumber(const QColor& colour);
    // \clftsWidthN\clwWidthN of a cell of one column.
    void writePreferredWidth(const QTextLength& length, int twipsWidth);

    common::RtfEmitter& m_rtf;
    ColourTable& m_colours;
    const PageLayout& m_layout;
};

} // namespace kestrum::text
