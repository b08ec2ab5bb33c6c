#pragma once

#include "CloudFont.h"

#include <QGlyphRun>
#include <QHash>
#include <QList>
#include <QPainterPath>
#include <QRawFont>
#include <QRectF>
#include <QString>

#include <memory>

class QPainter;

namespace kestrum::wordcloud {

// A word's text shaped once at the reference em size. Everything a word needs at another size
// (its extent, the bounds of its outline, the outline itself, the glyphs to draw) is this
// scaled, so measuring and outlining never disagree and never shape the text twice.
struct ShapedText
{
    QList<QGlyphRun> runs;     // glyphs with positions from the line's top-left corner
    QList<QRectF> decorations; // underline and strike-out bars
    double advance = 0;        // the text extent's width
    double extentHeight = 0;   // the text extent's height: the face's ascent plus descent
    QRectF inkBounds;          // tight bounds of the glyph outlines; null when nothing is inked
};

// Shapes, measures and outlines words, keeping the results so that a cloud of thousands of
// words builds each glyph outline once.
class TextShaper
{
public:
    // Em size, in pixels, at which text is shaped; other sizes scale from it.
    static constexpr double kReferencePixels = 1024.0;

    std::shared_ptr<const ShapedText> shape(const CloudFont& font, const QString& text);

    // The outline scaled by `scale` (pixels per reference pixel), its layout origin at `origin`.
    // `polygons`: curves flattened to polygons fine enough for the size (compact vector output).
    QPainterPath outline(const ShapedText& shaped, double scale, QPointF origin,
                         bool polygons = false);
    // Paints the glyphs through the font engine's glyph cache, as `outline` would fill them.
    void drawGlyphs(QPainter& painter, const ShapedText& shaped, double scale, QPointF origin);

    // One glyph's outline at the reference size, its origin on the baseline (kept once per face
    // and glyph).
    QPainterPath glyphOutline(const QRawFont& font, quint32 glyph)
    {
        return glyphPath(font, fontKey(font), glyph);
    }
    static QString fontKey(const QRawFont& font);

    // Forgets shapes that no word holds any more.
    void prune();
    int shapeCount() const { return int(m_shapes.size()); }

private:
    QPainterPath glyphPath(const QRawFont& font, const QString& key, quint32 glyph);
    QRawFont sizedFont(const QRawFont& font, const QString& key, double pixelSize);

    QHash<QString, std::shared_ptr<ShapedText>> m_shapes;
    QHash<QString, QPainterPath> m_glyphPaths;
    QHash<QString, QRectF> m_glyphBounds;
    QHash<QString, QRawFont> m_sizedFonts;
};

} // namespace kestrum::wordcloud
