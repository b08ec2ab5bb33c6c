#pragma once

#include <QColor>
#include <QHash>
#include <QList>

namespace kestrum::text {

// The colour table of a rich-text document. Text and background colours are numbers into it;
// number 0 is "automatic" (no colour of its own). A new table holds the standard colours in a
// fixed order, so that numbers mean the same colours in every document; colours entered later
// follow them. Written RTF carries the table as it is, so colour numbers survive a round trip.
class ColourTable
{
public:
    static constexpr int kAutomatic = 0;
    // The background number that choosing black sets (the light "sky blue" of the standard set).
    static constexpr int kBlackBackgroundNumber = 18;
    // A table never grows beyond this; colours past it are still shown but have no number.
    static constexpr int kMaxEntries = 65536;

    ColourTable();

    // Back to the standard colours only.
    void reset();
    int count() const { return int(m_entries.size()); }
    // The colour of a number; invalid for 0 and for numbers outside the table.
    QColor colour(int number) const;
    // The first number of an RGB colour, or -1.
    int indexOf(const QColor& colour) const;
    // The number of the colour, adding it when new; -1 for an invalid colour or a full table.
    int enter(const QColor& colour);
    const QList<QColor>& entries() const { return m_entries; } // entry 0 is invalid (automatic)

    static const QList<QColor>& standardColours();

private:
    QList<QColor> m_entries;
    QHash<QRgb, int> m_index;
};

} // namespace kestrum::text
