#include "DiagramFontConvert.h"

#include "editors/diagram/DiagramStream.h"

#include <algorithm>

namespace kestrum::diagram {

QFont toDialogFont(const DiagramFont& font)
{
    QFont f(font.name);
    f.setPointSize(std::max(1, font.size));
    f.setBold(font.style & FontStyle::Bold);
    f.setItalic(font.style & FontStyle::Italic);
    f.setUnderline(font.style & FontStyle::Underline);
    f.setStrikeOut(font.style & FontStyle::StrikeOut);
    return f;
}

DiagramFont fromDialogFont(const QFont& font, common::TColor colour)
{
    DiagramFont f;
    f.name = font.family();
    const int points =
        font.pointSize() > 0 ? font.pointSize() : int(font.pixelSize() * 72.0 / 96.0 + 0.5);
    f.size = std::clamp(points, 1, DiagramStream::kMaxFontSize);
    f.style = quint8((font.bold() ? FontStyle::Bold : 0) | (font.italic() ? FontStyle::Italic : 0) |
                     (font.underline() ? FontStyle::Underline : 0) |
                     (font.strikeOut() ? FontStyle::StrikeOut : 0));
    f.colour = colour;
    return f;
}

} // namespace kestrum::diagram
