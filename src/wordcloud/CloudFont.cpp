#include "CloudFont.h"

namespace kestrum::wordcloud {

QFont CloudFont::toQFont(double pixelSize) const
{
    QFont font(name);
    font.setPixelSize(qMax(1, int(pixelSize)));
    font.setBold((style & Bold) != 0);
    font.setItalic((style & Italic) != 0);
    font.setUnderline((style & Underline) != 0);
    font.setStrikeOut((style & StrikeOut) != 0);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::PreferOutline);
    return font;
}

QString CloudFont::toText() const
{
    return QStringLiteral("%1,%2,%3,%4,%5").arg(name).arg(charset).arg(color).arg(size).arg(style);
}

} // namespace kestrum::wordcloud
