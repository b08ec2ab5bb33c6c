#pragma once

#include "common/Colour.h"

#include <QFont>
#include <QHashFunctions>
#include <QString>

namespace kestrum::grid {

// Horizontal alignment of a cell, by its stored number.
namespace CellAlignment {
constexpr quint8 Left = 0;
constexpr quint8 Right = 1;
constexpr quint8 Centre = 2;
} // namespace CellAlignment

// Font style bits of a cell. Commands name the styles by number (0 bold, 1 italic,
// 2 underline); the stored set holds the bit 1 << number.
namespace FontStyle {
constexpr quint8 Bold = 1;
constexpr quint8 Italic = 2;
constexpr quint8 Underline = 4;
constexpr quint8 All = Bold | Italic | Underline;
constexpr quint8 bitOf(int styleNumber)
{
    return styleNumber >= 0 && styleNumber <= 2 ? quint8(1u << styleNumber) : quint8(0);
}
} // namespace FontStyle

// The formatting of one cell. The default value is what a fresh cell shows.
struct GridCellFormat
{
    static constexpr int kDefaultFontSize = 10;

    quint8 alignment = CellAlignment::Left;
    QString fontName = defaultFontName();
    int fontSize = kDefaultFontSize; // points
    common::TColor fontColour = common::clWindowText;
    quint8 fontStyle = 0;                       // FontStyle bits
    common::TColor background = common::clNone; // clNone: the grid's own background

    static QString defaultFontName() { return QStringLiteral("Arial"); }

    bool isBold() const { return fontStyle & FontStyle::Bold; }
    bool isItalic() const { return fontStyle & FontStyle::Italic; }
    bool isUnderline() const { return fontStyle & FontStyle::Underline; }

    // The font to draw the cell with (point size; style bits applied).
    QFont font() const;
    // Takes name, size and style from `font` (what a font dialog returns).
    void setFont(const QFont& font);

    friend bool operator==(const GridCellFormat& a, const GridCellFormat& b) = default;
};

size_t qHash(const GridCellFormat& format, size_t seed = 0);

} // namespace kestrum::grid
