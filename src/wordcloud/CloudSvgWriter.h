#pragma once

#include <QByteArray>

namespace kestrum::wordcloud {

class TprWordCloud;

// The cloud as an SVG picture the size of its client area, as PaintCloud draws it: every
// distinct glyph's outline is written once (at the reference em size) and each word refers to
// its glyphs, its shadow to the word, scaled into place. A cloud of thousands of words stays
// small and is written quickly.
class CloudSvgWriter
{
public:
    // Colours must have been assigned (AssignColors) before.
    static QByteArray write(TprWordCloud& cloud);
};

} // namespace kestrum::wordcloud
