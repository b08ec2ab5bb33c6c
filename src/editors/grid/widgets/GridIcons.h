#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace kestrum::grid {

// The grid toolbar's icons, drawn at run time: a theme icon where the desktop has one, else a
// small glyph.
class GridIcons
{
public:
    enum class Shape
    {
        Save,
        Print,
        Preview,
        Find,
        Replace,
        Copy,
        Paste
    };

    static QIcon themed(const QString& themeName, const QString& glyph);
    static QIcon themed(const QString& themeName, Shape shape);
    // Simple line drawings for the commands that have no letter.
    static QIcon drawn(Shape shape);
    // A letter in the given style ("B" bold, "I" italic, "U" underlined).
    static QIcon letter(const QString& text, bool bold, bool italic, bool underline);
    // Lines aligned left (0), right (1) or centred (2).
    static QIcon alignment(int alignment);
    // A glyph over a bar of `colour` (font and background colour selectors).
    static QIcon colourGlyph(const QString& glyph, const QColor& colour);
    static QIcon glyph(const QString& text);
};

} // namespace kestrum::grid
