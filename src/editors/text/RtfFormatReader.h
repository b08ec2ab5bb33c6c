#pragma once

#include "editors/text/RtfDocumentBuilder.h"
#include "editors/text/RtfReaderState.h"

namespace kestrum::text {

class RtfFileColours;

// The format words of RTF: character formats (\b, \fsN, \cfN...), paragraph formats (\qc,
// \liN, \txN...), borders (\brdrt\brdrs\brdrwN...) and table row definitions (\trowd, \cellxN,
// \clvmgf...). Character and paragraph words change the group's state; row words build the
// row definition the next \row uses.
class RtfFormatReader
{
public:
    explicit RtfFormatReader(const RtfFileColours& colours) : m_colours(colours) {}

    void characterWord(const RtfWord& word, RtfCharState& state) const;
    void paragraphWord(const RtfWord& word, RtfParaState& state);
    void borderWord(const RtfWord& word, RtfParaState& state);
    // `nested`: a word of {\*\nesttableprops ...}, describing a row of a nested table.
    void tableWord(const RtfWord& word, bool nested);

    const RtfRowDef& row() const { return m_defs[0].row; }
    const RtfRowDef& nestedRow() const { return m_defs[1].row; }

private:
    // What the border words that follow \brdrX, \clbrdrX or \trbrdrX describe.
    enum class BorderTarget
    {
        None,
        Paragraph,
        Cell,
        Row
    };

    template <typename F> void forBorders(RtfParaState& state, F apply);
    void setBorderStyle(RtfParaState& state, int style);

    struct RowDefinition
    {
        RtfRowDef row;
        RtfCellDef cell; // the cell whose \cellxN comes next
    };

    RtfRowDef& activeRow() { return m_defs[m_active].row; }
    RtfCellDef& activeCell() { return m_defs[m_active].cell; }

    const RtfFileColours& m_colours;
    // The row of the outermost table and the row of the nested table being described.
    RowDefinition m_defs[2];
    std::size_t m_active = 0;
    BorderTarget m_borderTarget = BorderTarget::None;
    int m_borderSide = 0;
    bool m_borderBox = false;
};

} // namespace kestrum::text
