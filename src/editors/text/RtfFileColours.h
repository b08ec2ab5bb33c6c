#pragma once

#include <QColor>
#include <QList>

namespace kestrum::text {

class ColourTable;

// The colour table destination ({\colortbl;\red0\green0\blue255;}): the file's colours by
// number; an entry without values is the automatic colour.
class RtfFileColours
{
public:
    void setRed(int value);
    void setGreen(int value);
    void setBlue(int value);
    // An entry ends (';'); a real colour is also entered into `colours`.
    void commit(ColourTable* colours);

    // Colour `number` of the file; invalid for 0 (automatic), unknown numbers and automatic
    // entries.
    QColor colour(int number) const;

private:
    QList<QColor> m_colours;
    int m_red = 0;
    int m_green = 0;
    int m_blue = 0;
    bool m_hasValue = false;
};

} // namespace kestrum::text
