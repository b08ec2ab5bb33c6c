#include "RtfFileColours.h"

#include "editors/text/ColourTable.h"
#include "editors/text/RtfReaderState.h"

namespace kestrum::text {

void RtfFileColours::setRed(int value)
{
    m_red = value;
    m_hasValue = true;
}

void RtfFileColours::setGreen(int value)
{
    m_green = value;
    m_hasValue = true;
}

void RtfFileColours::setBlue(int value)
{
    m_blue = value;
    m_hasValue = true;
}

void RtfFileColours::commit(ColourTable* colours)
{
    if (m_colours.size() < rtf::kMaxFileColours) {
        if (m_hasValue) {
            const QColor colour(qBound(0, m_red, 255), qBound(0, m_green, 255),
                                qBound(0, m_blue, 255));
            m_colours << colour;
            colours->enter(colour);
        } else {
            m_colours << QColor(); // automatic
        }
    }
    m_red = m_green = m_blue = 0;
    m_hasValue = false;
}

QColor RtfFileColours::colour(int number) const
{
    if (number <= 0 || number >= m_colours.size()) {
        return {};
    }
    return m_colours[number];
}

} // namespace kestrum::text
