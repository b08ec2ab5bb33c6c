#include "CloudSvgWriter.h"

#include "TprWordCloud.h"

#include <QColor>
#include <QHash>

#include <cmath>

namespace kestrum::wordcloud {

namespace {

// A number with at most `decimals` decimals, no trailing zeros.
void appendNumber(QByteArray& out, double v, int decimals)
{
    const double factor = std::pow(10.0, decimals);
    const double r = std::round(v * factor) / factor;
    if (r == std::trunc(r) && std::abs(r) < 1e15) {
        out += QByteArray::number(qint64(r));
        return;
    }
    QByteArray text = QByteArray::number(r, 'f', decimals);
    while (text.endsWith('0')) {
        text.chop(1);
    }
    if (text.endsWith('.')) {
        text.chop(1);
    }
    out += text;
}

// Element ids: letters and digits, short.
QByteArray shortId(char prefix, int n)
{
    return prefix + QByteArray::number(n, 36);
}

// Glyph outlines are kept at the reference em size: whole units are fine enough.
QByteArray pathData(const QPainterPath& path)
{
    QByteArray d;
    auto point = [&](double x, double y) {
        appendNumber(d, x, 0);
        d += ' ';
        appendNumber(d, y, 0);
    };
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        switch (e.type) {
        case QPainterPath::MoveToElement:
            d += 'M';
            point(e.x, e.y);
            break;
        case QPainterPath::LineToElement:
            d += 'L';
            point(e.x, e.y);
            break;
        case QPainterPath::CurveToElement:
            d += 'C';
            point(e.x, e.y);
            break;
        case QPainterPath::CurveToDataElement:
            d += ' ';
            point(e.x, e.y);
            break;
        }
    }
    return d;
}

QByteArray colourName(const QColor& colour)
{
    return colour.name(QColor::HexRgb).toLatin1();
}

} // namespace

QByteArray CloudSvgWriter::write(TprWordCloud& cloud)
{
    const QSize size = cloud.ClientSize();
    const QByteArray w = QByteArray::number(size.width());
    const QByteArray h = QByteArray::number(size.height());
    const common::TColor surface = cloud.BackgroundColor();
    const QColor surfaceColour =
        common::toQColor(surface).isValid() ? common::toQColor(surface) : QColor(Qt::white);

    QHash<QString, int> glyphIds; // "face key#glyph" -> number
    QByteArray glyphDefs;         // every distinct glyph, once
    QByteArray wordDefs;          // every word's glyphs, scaled into place
    QByteArray backgrounds;
    QByteArray clips;
    // Words never overlap, so all shadows can go under all words: one group per colour.
    QHash<QByteArray, QByteArray> shadows;
    QList<QByteArray> shadowColours;
    QByteArray words;
    int wordCount = 0;
    int clipCount = 0;
    TextShaper& shaper = cloud.Shaper();

    for (const auto& word : cloud.Words()) {
        if (!word->Visible() || word->BoundsRect().isEmpty()) {
            continue;
        }
        const CloudRect& box = word->BoundsRect();
        const QColor background = common::toQColor(word->BackgroundColor());
        if (word->BackgroundColor() != surface && background.isValid()) {
            backgrounds += "<rect x=\"" + QByteArray::number(box.left) + "\" y=\"" +
                           QByteArray::number(box.top) + "\" width=\"" +
                           QByteArray::number(box.width()) + "\" height=\"" +
                           QByteArray::number(box.height()) + "\" fill=\"" +
                           colourName(background) + "\"/>\n";
        }
        const TprWord::Placement place = word->GlyphPlacement();
        if (!place.shaped) {
            continue;
        }
        // A single line: the glyphs share their baseline, which joins the word's transform.
        double baseline = 0;
        bool first = true;
        for (const QGlyphRun& run : place.shaped->runs) {
            for (const QPointF& p : run.positions()) {
                if (first) {
                    baseline = p.y();
                    first = false;
                } else if (p.y() != baseline) {
                    baseline = 0;
                }
            }
        }
        const QByteArray id = shortId('w', wordCount++);
        wordDefs += "<g id=\"" + id + "\" transform=\"matrix(";
        appendNumber(wordDefs, place.scale, 6);
        wordDefs += " 0 0 ";
        appendNumber(wordDefs, place.scale, 6);
        wordDefs += ' ';
        appendNumber(wordDefs, place.origin.x(), 2);
        wordDefs += ' ';
        appendNumber(wordDefs, place.origin.y() + baseline * place.scale, 2);
        wordDefs += ")\">";
        for (const QGlyphRun& run : place.shaped->runs) {
            const QRawFont raw = run.rawFont();
            const QString face = TextShaper::fontKey(raw) + QLatin1Char('#');
            const QList<quint32> indexes = run.glyphIndexes();
            const QList<QPointF> positions = run.positions();
            for (qsizetype i = 0; i < indexes.size() && i < positions.size(); ++i) {
                const QString key = face + QString::number(indexes[i]);
                auto it = glyphIds.constFind(key);
                if (it == glyphIds.cend()) {
                    const QPainterPath outline = shaper.glyphOutline(raw, indexes[i]);
                    if (outline.isEmpty()) {
                        continue;
                    }
                    it = glyphIds.insert(key, int(glyphIds.size()));
                    glyphDefs += "<path id=\"" + shortId('g', *it) + "\" d=\"" + pathData(outline) +
                                 "\"/>\n";
                }
                wordDefs += "<use xlink:href=\"#" + shortId('g', *it) + '"';
                // Whole reference units: a thousandth of the em.
                if (std::round(positions[i].x()) != 0) {
                    wordDefs += " x=\"";
                    appendNumber(wordDefs, positions[i].x(), 0);
                    wordDefs += '"';
                }
                if (std::round(positions[i].y() - baseline) != 0) {
                    wordDefs += " y=\"";
                    appendNumber(wordDefs, positions[i].y() - baseline, 0);
                    wordDefs += '"';
                }
                wordDefs += "/>";
            }
        }
        for (const QRectF& bar : place.shaped->decorations) {
            wordDefs += "<rect x=\"";
            appendNumber(wordDefs, bar.x(), 0);
            wordDefs += "\" y=\"";
            appendNumber(wordDefs, bar.y() - baseline, 0);
            wordDefs += "\" width=\"";
            appendNumber(wordDefs, bar.width(), 0);
            wordDefs += "\" height=\"";
            appendNumber(wordDefs, bar.height(), 0);
            wordDefs += "\"/>";
        }
        wordDefs += "</g>\n";

        QByteArray clip;
        if (place.clipped) {
            const QByteArray clipId = shortId('c', clipCount++);
            clips += "<clipPath id=\"" + clipId + "\"><rect x=\"" + QByteArray::number(box.left) +
                     "\" y=\"" + QByteArray::number(box.top) + "\" width=\"" +
                     QByteArray::number(box.width()) + "\" height=\"" +
                     QByteArray::number(box.height()) + "\"/></clipPath>\n";
            clip = " clip-path=\"url(#" + clipId + ")\"";
        }
        if (place.shadowOffset > 0) {
            const QByteArray colour = colourName(
                TprWord::ShadowColorFor(background.isValid() ? background : QColor(Qt::white)));
            if (!shadows.contains(colour)) {
                shadowColours << colour;
            }
            const QByteArray d = QByteArray::number(place.shadowOffset);
            shadows[colour] +=
                "<use xlink:href=\"#" + id + "\" x=\"" + d + "\" y=\"" + d + '"' + clip + "/>\n";
        }
        const QColor text = common::toQColor(word->TextColor());
        words += "<use xlink:href=\"#" + id + "\" fill=\"" +
                 colourName(text.isValid() ? text : QColor(Qt::black)) + '"' + clip + "/>\n";
    }

    QByteArray out;
    out.reserve(glyphDefs.size() + wordDefs.size() + words.size() + 1024);
    out += "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n"
           "<svg xmlns=\"http://www.w3.org/2000/svg\" "
           "xmlns:xlink=\"http://www.w3.org/1999/xlink\" version=\"1.2\" baseProfile=\"tiny\" "
           "width=\"" +
           w + "\" height=\"" + h + "\" viewBox=\"0 0 " + w + ' ' + h +
           "\">\n<title>Word cloud</title>\n";
    out += "<defs>\n" + glyphDefs + wordDefs + clips + "</defs>\n";
    out += "<rect width=\"" + w + "\" height=\"" + h + "\" fill=\"" + colourName(surfaceColour) +
           "\"/>\n";
    out += backgrounds;
    for (const QByteArray& colour : shadowColours) {
        out += "<g fill=\"" + colour + "\">\n" + shadows.value(colour) + "</g>\n";
    }
    out += words;
    out += "</svg>\n";
    return out;
}

} // namespace kestrum::wordcloud
