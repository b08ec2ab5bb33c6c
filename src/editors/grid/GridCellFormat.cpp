#include "GridCellFormat.h"

namespace kestrum::grid {

QFont GridCellFormat::font() const
{
    QFont f(fontName);
    f.setPointSize(fontSize > 0 ? fontSize : kDefaultFontSize);
    f.setBold(isBold());
    f.setItalic(isItalic());
    f.setUnderline(isUnderline());
    return f;
}

void GridCellFormat::setFont(const QFont& font)
{
    fontName = font.family();
    if (font.pointSize() > 0) {
        fontSize = font.pointSize();
    }
    quint8 style = 0;
    if (font.bold()) {
        style |= FontStyle::Bold;
    }
    if (font.italic()) {
        style |= FontStyle::Italic;
    }
    if (font.underline()) {
        style |= FontStyle::Underline;
    }
    fontStyle = style;
}

size_t qHash(const GridCellFormat& format, size_t seed)
{
    return qHashMulti(seed, format.alignment, format.fontName, format.fontSize, format.fontColour,
                      format.fontStyle, format.background);
}

} // namespace kestrum::grid
