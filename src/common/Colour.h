#pragma once

#include <QColor>
#include <QString>
#include <QtGlobal>

#include <array>

class QPalette;

namespace kestrum::common {

// A colour as stored in every Kestrum format: 0x00BBGGRR, red in the low byte.
// Values 0xFF0000nn name a system colour (index nn) resolved through the palette
// when drawing; clNone and clDefault are markers, not colours.
using TColor = qint32;

constexpr TColor clBlack = 0x000000;
constexpr TColor clMaroon = 0x000080;
constexpr TColor clGreen = 0x008000;
constexpr TColor clOlive = 0x008080;
constexpr TColor clNavy = 0x800000;
constexpr TColor clPurple = 0x800080;
constexpr TColor clTeal = 0x808000;
constexpr TColor clGray = 0x808080;
constexpr TColor clSilver = 0xC0C0C0;
constexpr TColor clRed = 0x0000FF;
constexpr TColor clLime = 0x00FF00;
constexpr TColor clYellow = 0x00FFFF;
constexpr TColor clBlue = 0xFF0000;
constexpr TColor clFuchsia = 0xFF00FF;
constexpr TColor clAqua = 0xFFFF00;
constexpr TColor clWhite = 0xFFFFFF;
constexpr TColor clMoneyGreen = 0xC0DCC0;
constexpr TColor clSkyBlue = 0xF0CAA6;
constexpr TColor clCream = 0xF0FBFF;
constexpr TColor clMedGray = 0xA4A0A0;
constexpr TColor clNone = 0x1FFFFFFF;
constexpr TColor clDefault = 0x20000000;

constexpr TColor systemColour(int index)
{
    return static_cast<TColor>(0xFF000000u | quint32(index));
}
constexpr TColor clWindow = systemColour(0x05);
constexpr TColor clWindowText = systemColour(0x08);
constexpr TColor clBtnFace = systemColour(0x0F);
constexpr TColor clAppWorkSpace = systemColour(0x0C);
constexpr TColor clHighlight = systemColour(0x0D);
constexpr TColor clHighlightText = systemColour(0x0E);

constexpr TColor rgbColour(int red, int green, int blue)
{
    return TColor((quint32(blue & 0xFF) << 16) | (quint32(green & 0xFF) << 8) |
                  quint32(red & 0xFF));
}
constexpr int redOf(TColor c)
{
    return int(quint32(c) & 0xFF);
}
constexpr int greenOf(TColor c)
{
    return int((quint32(c) >> 8) & 0xFF);
}
constexpr int blueOf(TColor c)
{
    return int((quint32(c) >> 16) & 0xFF);
}

bool isSystemColour(TColor colour);

// Plain RGB of a colour: system colours through `palette` (the application palette when null),
// clNone and clDefault give an invalid QColor.
QColor toQColor(TColor colour, const QPalette* palette = nullptr);
TColor fromQColor(const QColor& colour);

// Text form used by the keyed text formats: the standard identifier where the value has one
// ("clRed", "clWindow"), otherwise "$" and eight hexadecimal digits.
QString colourToString(TColor colour);
// Accepts identifiers, "$hhhhhhhh", "#RRGGBB", "0x..." and plain decimals.
bool colourFromString(const QString& text, TColor* colour);

// The standard palette the colour selectors offer, in order: the sixteen basic colours, then
// money green, sky blue, cream and medium grey. Rich-text colour tables start with it too.
const std::array<TColor, 20>& standardPalette();

} // namespace kestrum::common
