#include "TextShaper.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

namespace kestrum::wordcloud {

namespace {

// Sized faces kept for drawing; past this many (outline scales of loaded clouds vary freely)
// the cache starts again.
constexpr int kMaxSizedFonts = 512;

// One line of text: line and paragraph breaks, tabs and other controls show as spaces.
QString displayText(const QString& text)
{
    QString out = text;
    for (QChar& c : out) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator) {
            c = QLatin1Char(' ');
        }
    }
    return out;
}

} // namespace

QString TextShaper::fontKey(const QRawFont& font)
{
    return QStringLiteral("%1|%2|%3|%4")
        .arg(font.familyName(), font.styleName())
        .arg(font.weight())
        .arg(int(font.style()));
}

std::shared_ptr<const ShapedText> TextShaper::shape(const CloudFont& font, const QString& text)
{
    const QString key = QStringLiteral("%1|%2|").arg(font.name).arg(font.style & 0xF) + text;
    if (auto it = m_shapes.constFind(key); it != m_shapes.cend()) {
        return *it;
    }
    auto shaped = std::make_shared<ShapedText>();
    const QFont qfont = font.toQFont(kReferencePixels);
    const QFontMetricsF metrics(qfont);
    shaped->extentHeight = metrics.ascent() + metrics.descent();

    QTextLayout layout(displayText(text), qfont);
    QTextOption option = layout.textOption();
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.setCacheEnabled(true);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    layout.endLayout();
    if (line.isValid()) {
        shaped->advance = line.horizontalAdvance();
        shaped->runs = layout.glyphRuns();
        const double baseline = line.ascent();
        const double thickness = metrics.lineWidth();
        if (font.style & CloudFont::Underline) {
            shaped->decorations << QRectF(0, baseline + metrics.underlinePos(), shaped->advance,
                                          thickness);
        }
        if (font.style & CloudFont::StrikeOut) {
            shaped->decorations << QRectF(0, baseline - metrics.ascent() / 3.0, shaped->advance,
                                          thickness);
        }
    }

    QRectF ink;
    auto unite = [&ink](const QRectF& r) {
        if (!r.isNull()) {
            ink = ink.isNull() ? r : ink.united(r);
        }
    };
    for (QGlyphRun& run : shaped->runs) {
        // Decorations are drawn from `decorations`, the same way on every device.
        run.setUnderline(false);
        run.setStrikeOut(false);
        run.setOverline(false);
        const QRawFont raw = run.rawFont();
        const QString rawKey = fontKey(raw);
        const QList<quint32> glyphs = run.glyphIndexes();
        const QList<QPointF> positions = run.positions();
        for (qsizetype i = 0; i < glyphs.size() && i < positions.size(); ++i) {
            const QString glyphKey = rawKey + QLatin1Char('#') + QString::number(glyphs[i]);
            auto bounds = m_glyphBounds.constFind(glyphKey);
            if (bounds == m_glyphBounds.cend()) {
                bounds = m_glyphBounds.insert(glyphKey,
                                              glyphPath(raw, rawKey, glyphs[i]).boundingRect());
            }
            if (!bounds->isNull()) {
                unite(bounds->translated(positions[i]));
            }
        }
    }
    for (const QRectF& bar : std::as_const(shaped->decorations)) {
        unite(bar);
    }
    shaped->inkBounds = ink;
    m_shapes.insert(key, shaped);
    return shaped;
}

QPainterPath TextShaper::glyphPath(const QRawFont& font, const QString& key, quint32 glyph)
{
    const QString glyphKey = key + QLatin1Char('#') + QString::number(glyph);
    if (auto it = m_glyphPaths.constFind(glyphKey); it != m_glyphPaths.cend()) {
        return *it;
    }
    QPainterPath path = font.pathForGlyph(glyph);
    m_glyphPaths.insert(glyphKey, path);
    return path;
}

QRawFont TextShaper::sizedFont(const QRawFont& font, const QString& key, double pixelSize)
{
    const QString sizedKey = key + QLatin1Char('@') + QString::number(pixelSize, 'g', 17);
    if (auto it = m_sizedFonts.constFind(sizedKey); it != m_sizedFonts.cend()) {
        return *it;
    }
    if (m_sizedFonts.size() >= kMaxSizedFonts) {
        m_sizedFonts.clear();
    }
    QRawFont sized = font;
    sized.setPixelSize(pixelSize);
    m_sizedFonts.insert(sizedKey, sized);
    return sized;
}

QPainterPath TextShaper::outline(const ShapedText& shaped, double scale, QPointF origin,
                                 bool polygons)
{
    QPainterPath out;
    out.setFillRule(Qt::WindingFill);
    for (const QGlyphRun& run : shaped.runs) {
        const QRawFont raw = run.rawFont();
        const QString rawKey = fontKey(raw);
        const QList<quint32> glyphs = run.glyphIndexes();
        const QList<QPointF> positions = run.positions();
        for (qsizetype i = 0; i < glyphs.size() && i < positions.size(); ++i) {
            const QPainterPath glyph = glyphPath(raw, rawKey, glyphs[i]);
            if (glyph.isEmpty()) {
                continue;
            }
            const QPointF at = origin + positions[i] * scale;
            out.addPath(QTransform(scale, 0, 0, scale, at.x(), at.y()).map(glyph));
        }
    }
    for (const QRectF& bar : shaped.decorations) {
        out.addRect(QRectF(origin + bar.topLeft() * scale, bar.size() * scale));
    }
    if (!polygons) {
        return out;
    }
    // Points closer than a fifth of a pixel to the last one kept add nothing at this size.
    constexpr double kMinStep = 0.2;
    QPainterPath flat;
    flat.setFillRule(Qt::WindingFill);
    for (const QPolygonF& polygon : out.toSubpathPolygons()) {
        if (polygon.size() < 3) {
            continue;
        }
        QPolygonF kept;
        kept.reserve(polygon.size());
        kept << polygon.first();
        for (qsizetype i = 1; i + 1 < polygon.size(); ++i) {
            const QPointF d = polygon[i] - kept.last();
            if (qAbs(d.x()) + qAbs(d.y()) >= kMinStep) {
                kept << polygon[i];
            }
        }
        if (kept.size() >= 2) {
            flat.addPolygon(kept);
            flat.closeSubpath();
        }
    }
    return flat;
}

void TextShaper::drawGlyphs(QPainter& painter, const ShapedText& shaped, double scale,
                            QPointF origin)
{
    for (const QGlyphRun& run : shaped.runs) {
        const QRawFont raw = run.rawFont();
        QGlyphRun sized = run;
        sized.setRawFont(sizedFont(raw, fontKey(raw), raw.pixelSize() * scale));
        QList<QPointF> positions = run.positions();
        for (QPointF& p : positions) {
            p *= scale;
        }
        sized.setPositions(positions);
        painter.drawGlyphRun(origin, sized);
    }
    for (const QRectF& bar : shaped.decorations) {
        painter.fillRect(QRectF(origin + bar.topLeft() * scale, bar.size() * scale),
                         painter.pen().color());
    }
}

void TextShaper::prune()
{
    for (auto it = m_shapes.begin(); it != m_shapes.end();) {
        if (it->use_count() == 1) {
            it = m_shapes.erase(it);
        } else {
            ++it;
        }
    }
}

} // namespace kestrum::wordcloud
