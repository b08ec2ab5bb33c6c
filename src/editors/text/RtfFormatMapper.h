#pragma once

#include "editors/text/RtfDocumentBuilder.h"
#include "editors/text/RtfReaderState.h"

#include <QTextCharFormat>

namespace kestrum::text {

class RtfFileColours;
class RtfFontTable;
class RtfListTable;
class RtfStyleSheet;

// Turns the reader's character and paragraph states into Qt formats, through the file's
// font, colour, style and list tables. The last character format is kept: runs of text in
// the same state share it.
class RtfFormatMapper
{
public:
    RtfFormatMapper(const RtfFontTable& fonts, const RtfFileColours& colours,
                    const RtfStyleSheet& styles, const RtfListTable& lists)
        : m_fonts(fonts), m_colours(colours), m_styles(styles), m_lists(lists)
    {}

    QTextCharFormat charFormat(const RtfCharState& state);
    RtfParagraph paragraph(const RtfParaState& state) const;

private:
    void setBorder(const RtfParaState& state, QTextBlockFormat& block) const;

    const RtfFontTable& m_fonts;
    const RtfFileColours& m_colours;
    const RtfStyleSheet& m_styles;
    const RtfListTable& m_lists;

    RtfCharState m_cachedState;
    QTextCharFormat m_cachedFormat;
    bool m_cacheValid = false;
};

} // namespace kestrum::text
