#include "TprWord.h"

#include "TprWordCloud.h"
#include "common/Rounding.h"

#include <QPaintEngine>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kestrum::wordcloud {

using common::halfUp;
using common::roundHalfEven;

namespace {

// Measurements beyond this many pixels are held there, so that a very long word at a huge size
// cannot overflow the box arithmetic.
constexpr double kMaxExtent = 1 << 24;

// Em size from which words are painted as filled outlines rather than from the glyph cache.
constexpr double kMaxCachedGlyphPixels = 48.0;

qint32 clampedRound(double v)
{
    return qint32(roundHalfEven(std::clamp(v, -kMaxExtent, kMaxExtent)));
}

} // namespace

TprWord::TprWord(TprWordCloud* parentCloud, const QString& text, qint32 weight,
                 common::TColor textColor, bool placeCenter)
    : m_parentCloud(parentCloud), m_text(text), m_weight(weight), m_textColor(textColor),
      m_font(parentCloud->Font()), m_placeCenter(placeCenter)
{
    m_font.color = textColor;
    SetSize(weight);
    SetStartingPosition();
}

void TprWord::SetTextColor(common::TColor colour)
{
    m_textColor = colour;
    m_font.color = colour;
}

void TprWord::SetFont(const CloudFont& font)
{
    if (font.name != m_font.name || (font.style & 0xF) != (m_font.style & 0xF)) {
        m_shaped.reset();
    }
    m_font = font;
}

void TprWord::SetStartingBoundsRect(const CloudRect& rect)
{
    m_startingBoundsRect = rect;
    m_boundsRect = rect;
}

const ShapedText& TprWord::shaped() const
{
    if (!m_shaped) {
        m_shaped = m_parentCloud->Shaper().shape(m_font, m_text);
    }
    return *m_shaped;
}

double TprWord::pixelScale() const
{
    return CloudFont::pixelsForSize(m_font.size) / TextShaper::kReferencePixels;
}

QSize TprWord::GetTextWidthAndHeight() const
{
    const ShapedText& s = shaped();
    const double scale = pixelScale();
    const qint32 width = clampedRound(s.advance * scale);
    const qint32 extentHeight = clampedRound(s.extentHeight * scale);
    return {width, clampedRound(extentHeight * 0.75)};
}

void TprWord::SetSize(qint32 size)
{
    m_font.size = size;
    m_padding = float(size * 0.02);
    const QSize extent = GetTextWidthAndHeight();
    const qint32 padding = clampedRound(m_padding);
    const qint32 width = extent.width() + padding;
    const qint32 height = extent.height() + padding;
    CloudRect box = m_boundsRect;
    if (!box.isEmpty()) {
        const qint32 dw = halfUp(width - box.width());
        const qint32 dh = halfUp(height - box.height());
        box = {box.left - dw, box.top - dh, box.right + dw, box.bottom + dh};
    } else {
        box = {0, 0, width, height};
    }
    SetStartingBoundsRect(box);
}

void TprWord::SetDefaultSize()
{
    const QRectF ink = shaped().inkBounds;
    const double scale = pixelScale();
    qint64 inkWidth = 0;
    qint64 inkHeight = 0;
    if (!ink.isNull()) {
        inkWidth = qint64(std::ceil(std::min(ink.right() * scale, kMaxExtent))) -
                   qint64(std::floor(std::max(ink.left() * scale, -kMaxExtent)));
        inkHeight = qint64(std::ceil(std::min(ink.bottom() * scale, kMaxExtent))) -
                    qint64(std::floor(std::max(ink.top() * scale, -kMaxExtent)));
    }
    CloudRect box = m_boundsRect;
    const qint32 padding = clampedRound(m_padding);
    box.right += padding;
    box.bottom += padding;
    if (inkWidth >= box.width()) {
        box.right += qint32(inkWidth - box.width() + 2);
    }
    if (inkHeight >= box.height()) {
        box.bottom += qint32(inkHeight - box.height() + 2);
    }
    SetStartingBoundsRect(box);
    m_outlineScale = 1.0;
}

int TprWord::ShadowOffset() const
{
    return std::max<qint32>(1, clampedRound(double(m_padding) * m_outlineScale));
}

QPainterPath TprWord::Outline() const
{
    const ShapedText& s = shaped();
    const double scale = pixelScale() * m_outlineScale;
    if (s.inkBounds.isNull()) {
        return {};
    }
    const QPointF origin(1.0 - s.inkBounds.left() * scale, 1.0 - s.inkBounds.top() * scale);
    return m_parentCloud->Shaper().outline(s, scale, origin);
}

QPainterPath TprWord::ShadowOutline() const
{
    const int d = ShadowOffset();
    return Outline().translated(d, d);
}

void TprWord::SetStartingPosition()
{
    const CloudRect area = m_parentCloud->GetCanvasDimension();
    const qint32 w = m_boundsRect.width();
    const qint32 h = m_boundsRect.height();
    const qint32 cx = area.left + halfUp(area.width());
    const qint32 cy = area.top + halfUp(area.height());
    CloudRect box;
    if (m_placeCenter) {
        box = {cx - halfUp(w), cy - halfUp(h), cx + halfUp(w), cy + halfUp(h)};
    } else {
        CloudRandom& random = m_parentCloud->m_random;
        random.reseedFromClock();
        const qint32 x = random.range(cx - halfUp(cx), cx + halfUp(cx));
        const qint32 y = random.range(area.top, area.bottom);
        box.left = x - halfUp(w);
        box.top = y - halfUp(h);
        box.right = box.left + w;
        box.bottom = box.top + h;
    }
    SetStartingBoundsRect(box);
}

TprWord::Placement TprWord::GlyphPlacement() const
{
    Placement at;
    const ShapedText& s = shaped();
    const CloudRect& box = m_boundsRect;
    if (s.inkBounds.isNull() || box.isEmpty()) {
        return at;
    }
    at.shaped = &s;
    at.scale = pixelScale() * m_outlineScale;
    at.origin = QPointF(box.left + 1.0 - s.inkBounds.left() * at.scale,
                        box.top + 1.0 - s.inkBounds.top() * at.scale);
    at.shadowOffset = m_shadow ? ShadowOffset() : 0;
    // The word's ink stays inside its box, as it would on a bitmap of the box's size.
    const double inkRight = box.left + 1.0 + s.inkBounds.width() * at.scale + at.shadowOffset;
    const double inkBottom = box.top + 1.0 + s.inkBounds.height() * at.scale + at.shadowOffset;
    at.clipped = inkRight > box.right || inkBottom > box.bottom;
    return at;
}

QColor TprWord::ShadowColorFor(const QColor& background)
{
    // Half way between the background and a middle grey: a soft shade on light backgrounds, a
    // faint glow on dark ones.
    return QColor((background.red() + 128) / 2, (background.green() + 128) / 2,
                  (background.blue() + 128) / 2);
}

void TprWord::Paint(QPainter& painter, common::TColor surface) const
{
    const CloudRect& box = m_boundsRect;
    if (box.isEmpty()) {
        return;
    }
    const QColor background = common::toQColor(m_backgroundColor);
    if (m_backgroundColor != surface && background.isValid()) {
        painter.fillRect(box.toQRect(), background);
    }
    const Placement place = GlyphPlacement();
    if (!place.shaped) {
        return;
    }
    const ShapedText& s = *place.shaped;
    const double scale = place.scale;
    const QPointF origin = place.origin;
    const int d = place.shadowOffset;
    const bool clip = place.clipped;
    if (clip) {
        painter.save();
        painter.setClipRect(box.toQRect(), Qt::IntersectClip);
    }
    // Small text goes through the font engine's glyph cache, which is many times quicker than
    // filling outlines; large text (which that cache would not hold anyway) gets the outline
    // itself, and vector devices (SVG) get it as polygons at the device's resolution.
    const bool raster =
        painter.paintEngine() && painter.paintEngine()->type() == QPaintEngine::Raster;
    const double emPixels = CloudFont::pixelsForSize(m_font.size) * m_outlineScale;
    const bool glyphCache = raster && emPixels < kMaxCachedGlyphPixels;
    const QColor text =
        common::toQColor(m_textColor).isValid() ? common::toQColor(m_textColor) : QColor(Qt::black);
    auto draw = [&](const QPointF& at, const QColor& colour) {
        if (glyphCache) {
            painter.setPen(colour);
            m_parentCloud->Shaper().drawGlyphs(painter, s, scale, at);
        } else {
            // One brush and one path per colour keeps vector output free of state groups.
            painter.setPen(Qt::NoPen);
            painter.setBrush(colour);
            painter.drawPath(m_parentCloud->Shaper().outline(s, scale, at, !raster));
        }
    };
    if (m_shadow) {
        draw(origin + QPointF(d, d),
             ShadowColorFor(background.isValid() ? background : QColor(Qt::white)));
    }
    draw(origin, text);
    if (clip) {
        painter.restore();
    }
}

} // namespace kestrum::wordcloud
