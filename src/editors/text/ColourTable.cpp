#include "ColourTable.h"

#include "common/Colour.h"

namespace kestrum::text {

const QList<QColor>& ColourTable::standardColours()
{
    using namespace common;
    static const QList<QColor> colours = [] {
        QList<QColor> out;
        for (TColor c : standardPalette()) {
            out << toQColor(c);
        }
        return out;
    }();
    return colours;
}

ColourTable::ColourTable()
{
    reset();
}

void ColourTable::reset()
{
    m_entries.clear();
    m_index.clear();
    m_entries << QColor();
    for (const QColor& c : standardColours()) {
        enter(c);
    }
}

QColor ColourTable::colour(int number) const
{
    if (number <= 0 || number >= m_entries.size()) {
        return {};
    }
    return m_entries[number];
}

int ColourTable::indexOf(const QColor& colour) const
{
    if (!colour.isValid()) {
        return -1;
    }
    return m_index.value(colour.rgb() | 0xFF000000u, -1);
}

int ColourTable::enter(const QColor& colour)
{
    if (!colour.isValid()) {
        return -1;
    }
    const QRgb key = colour.rgb() | 0xFF000000u;
    const auto it = m_index.constFind(key);
    if (it != m_index.cend()) {
        return it.value();
    }
    if (m_entries.size() >= kMaxEntries) {
        return -1;
    }
    const int number = int(m_entries.size());
    m_entries << QColor::fromRgb(key);
    m_index.insert(key, number);
    return number;
}

} // namespace kestrum::text
