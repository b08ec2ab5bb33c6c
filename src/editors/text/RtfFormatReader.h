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
    void tableWord(const RtfWord& word);

    const RtfRowDef& row() const { return m_row; }

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

    const RtfFileColours& m_colours;
    RtfRowDef m_row;
    RtfCellDef m_cell;
    BorderTarget m_borderTarget = BorderTarget::None;
    int m_borderSide = 0;
    bool m_borderBox = false;
};

} // namespace kestrum::text
