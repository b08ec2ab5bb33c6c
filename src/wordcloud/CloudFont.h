#pragma once

#include "common/Colour.h"

#include <QFont>
#include <QString>

namespace kestrum::wordcloud {

// The font of a cloud or of one word: face name, character set, colour, size and style set
// (bold 1, italic 2, underline 4, strike-out 8), as stored in a cloud document.
//
// Sizes are points on a 96-pixels-per-inch canvas whatever the screen: a size of s draws
// glyphs with an em of s * 96 / 72 pixels. Text is measured and outlined with hinting off, so
// every measurement scales linearly with the size.
struct CloudFont
{
    enum StyleBit
    {
        Bold = 1,
        Italic = 2,
        Underline = 4,
        StrikeOut = 8
    };

    QString name = QStringLiteral("Arial");
    qint32 charset = 1;
    common::TColor color = 0;
    qint32 size = 10;
    qint32 style = 0;

    static double pixelsForSize(double size) { return size * 96.0 / 72.0; }

    // The face at `pixelSize` pixels per em, as measured and outlined.
    QFont toQFont(double pixelSize) const;

    // "name,charset,colour,size,style".
    QString toText() const;

    friend bool operator==(const CloudFont&, const CloudFont&) = default;
};

} // namespace kestrum::wordcloud
