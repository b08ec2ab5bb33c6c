#pragma once

#include "CloudFont.h"
#include "CloudRect.h"
#include "TextShaper.h"

#include <QPainterPath>
#include <QPointF>
#include <QSize>
#include <QString>

#include <memory>

class QPainter;

namespace kestrum::wordcloud {

class TprWordCloud;

// One word of a cloud: its text, weight, font (whose size is the word's font size), colours
// and its box on the canvas. Owned by the cloud's word list.
class TprWord
{
public:
    // A new word with the cloud's font, `text`, `weight` and `textColor`; its font size is the
    // weight and its box sits at the start position.
    TprWord(TprWordCloud* parentCloud, const QString& text, qint32 weight, common::TColor textColor,
            bool placeCenter);

    const QString& Text() const { return m_text; }
    qint32 Weight() const { return m_weight; }
    void SetWeight(qint32 weight) { m_weight = weight; }
    common::TColor TextColor() const { return m_textColor; }
    void SetTextColor(common::TColor colour);
    const CloudFont& Font() const { return m_font; }
    // A copy of `font` (the word's size is set separately by SetSize).
    void SetFont(const CloudFont& font);
    qint32 FontSize() const { return m_font.size; }

    const CloudRect& BoundsRect() const { return m_boundsRect; }
    void SetBoundsRect(const CloudRect& rect) { m_boundsRect = rect; }
    const CloudRect& StartingBoundsRect() const { return m_startingBoundsRect; }
    // Sets the place by explicit positioning; BoundsRect follows.
    void SetStartingBoundsRect(const CloudRect& rect);

    common::TColor BackgroundColor() const { return m_backgroundColor; }
    void SetBackgroundColor(common::TColor colour) { m_backgroundColor = colour; }
    bool PlaceCenter() const { return m_placeCenter; }
    void SetPlaceCenter(bool on) { m_placeCenter = on; }
    bool Shadow() const { return m_shadow; }
    void SetShadow(bool on) { m_shadow = on; }
    float Padding() const { return m_padding; }
    bool Visible() const { return m_visible; }
    void SetVisible(bool on) { m_visible = on; }
    TprWordCloud* ParentCloud() const { return m_parentCloud; }

    // Font size `size`: new padding, new extent; a non-empty box keeps its centre.
    void SetSize(qint32 size);
    // The text extent: width, and 0.75 of the height so that the box hugs the glyphs.
    QSize GetTextWidthAndHeight() const;
    // Widens the box to hold the glyph outlines with the padding; outline scale back to 1.
    void SetDefaultSize();
    // Scales the outline (and the shadow offset) by `scale` without a new font size, as the
    // load fit of a stored cloud does.
    void ScaleOutline(double scale) { m_outlineScale = scale; }
    double OutlineScale() const { return m_outlineScale; }
    // The shadow's offset in pixels, at least 1.
    int ShadowOffset() const;

    // The glyph outlines in the word's own pixel space: moved so that their smallest x and y
    // sit at 1, and (the shadow) further moved by ShadowOffset.
    QPainterPath Outline() const;
    QPainterPath ShadowOutline() const;

    // Gives the box its start position on the cloud's drawing area.
    void SetStartingPosition();

    // Paints the word into its box: the box cleared to BackgroundColor (unless it is
    // `surface`), the shadow when Shadow is set, then the glyphs in TextColor. Raster devices
    // draw through the glyph cache; other devices (SVG) get the outlines as paths.
    void Paint(QPainter& painter, common::TColor surface) const;

    static QColor ShadowColorFor(const QColor& background);

    // Where Paint puts the word's glyphs: the shaped text, drawn scaled by `scale` (pixels per
    // reference pixel) from `origin`, its shadow `shadowOffset` pixels right and down (0: no
    // shadow), clipped to the box when `clipped`.
    struct Placement
    {
        const ShapedText* shaped = nullptr; // null when nothing is inked
        double scale = 1.0;
        QPointF origin;
        int shadowOffset = 0;
        bool clipped = false;
    };
    Placement GlyphPlacement() const;

private:
    const ShapedText& shaped() const;
    double pixelScale() const;

    TprWordCloud* m_parentCloud;
    QString m_text;
    qint32 m_weight;
    common::TColor m_textColor;
    CloudFont m_font;
    CloudRect m_boundsRect;
    CloudRect m_startingBoundsRect;
    common::TColor m_backgroundColor = common::clWhite;
    bool m_placeCenter = true;
    bool m_shadow = true;
    float m_padding = 0;
    bool m_visible = false;
    double m_outlineScale = 1.0;
    mutable std::shared_ptr<const ShapedText> m_shaped;
};

} // namespace kestrum::wordcloud
