#include "CloudDocumentMapping.h"

#include "CollisionIndex.h"
#include "TprWordCloud.h"
#include "common/Rounding.h"

#include <algorithm>
#include <cmath>

namespace kestrum::wordcloud {

using common::halfUp;
using common::roundHalfEven;

CloudDocumentData CloudDocumentMapping::toDocument(const TprWordCloud& cloud)
{
    CloudDocumentData doc;
    doc.backgroundColor = cloud.m_backgroundColor;
    doc.coverage = cloud.m_coverage;
    doc.shadow = cloud.m_shadow;
    if (cloud.m_usePalette) {
        doc.palette = cloud.m_palette;
    }
    doc.startColor = cloud.m_gradient.StartColor();
    doc.middleColor = cloud.m_gradient.MiddleColor();
    doc.endColor = cloud.m_gradient.EndColor();
    doc.fontName = cloud.m_font.name;
    doc.fontCharset = cloud.m_font.charset;
    doc.fontColor = cloud.m_font.color;
    doc.fontSize = cloud.m_font.size;
    doc.fontStyle = cloud.m_font.style;
    doc.startingBounds = cloud.m_startingCanvasRect;
    for (const auto& word : cloud.m_words) {
        CloudDocumentWord w;
        w.text = word->Text();
        w.textColor = word->TextColor();
        w.weight = word->Weight();
        w.fontSize = word->FontSize();
        w.bounds = word->StartingBoundsRect();
        doc.words.append(w);
    }
    return doc;
}

void CloudDocumentMapping::apply(TprWordCloud& cloud, const CloudDocumentData& doc)
{
    if (doc.backgroundColor) {
        cloud.m_backgroundColor = *doc.backgroundColor;
    }
    if (doc.coverage) {
        // As read, not brought into the range the options dialog offers.
        cloud.m_coverage = *doc.coverage;
    }
    if (doc.shadow) {
        cloud.SetShadow(*doc.shadow);
    }
    if (doc.palette) {
        // A palette document's "Gradient", if it has one, is not read.
        cloud.m_palette = quint8(*doc.palette);
        cloud.m_usePalette = true;
    } else {
        cloud.m_usePalette = false;
        if (doc.startColor) {
            cloud.m_gradient.SetStartColor(*doc.startColor);
        }
        if (doc.middleColor) {
            cloud.m_gradient.SetMiddleColor(*doc.middleColor);
        }
        if (doc.endColor) {
            cloud.m_gradient.SetEndColor(*doc.endColor);
        }
    }
    if (doc.fontName) {
        cloud.m_font.name = *doc.fontName;
    }
    if (doc.fontCharset) {
        cloud.m_font.charset = *doc.fontCharset;
    }
    if (doc.fontColor) {
        cloud.m_font.color = *doc.fontColor;
    }
    if (doc.fontSize) {
        cloud.m_font.size = *doc.fontSize;
    }
    if (doc.fontStyle) {
        cloud.m_font.style = *doc.fontStyle;
    }
    if (doc.startingBounds) {
        cloud.m_startingCanvasRect = *doc.startingBounds;
    }

    for (const CloudDocumentWord& w : doc.words) {
        cloud.noteWeight(w.weight);
        auto word =
            std::make_unique<TprWord>(&cloud, w.text, w.weight, w.textColor, cloud.m_placeCenter);
        word->SetBackgroundColor(cloud.BackgroundColor());
        word->SetShadow(cloud.m_shadow);
        word->SetSize(w.fontSize.value_or(w.weight));
        if (w.bounds) {
            word->SetStartingBoundsRect(*w.bounds);
        }
        cloud.m_words.push_back(std::move(word));
    }

    // The document does not say which words were placed. A layout places a prefix of the list
    // on boxes that neither overlap nor touch, so that prefix is what is shown.
    CloudRect extent = cloud.m_startingCanvasRect;
    for (const auto& word : cloud.m_words) {
        const CloudRect& b = word->BoundsRect();
        extent = {std::min(extent.left, b.left), std::min(extent.top, b.top),
                  std::max(extent.right, b.right), std::max(extent.bottom, b.bottom)};
    }
    CollisionIndex shown;
    shown.reset(extent, CollisionIndex::Mode::Grid);
    for (auto& word : cloud.m_words) {
        const CloudRect& box = word->BoundsRect();
        if (box.isEmpty() || shown.firstOverlap(box) >= 0) {
            break;
        }
        shown.add(box);
        word->SetVisible(true);
    }
    cloud.m_countVisibleWords = shown.count();

    if (cloud.m_startingCanvasRect.width() > 0 && cloud.m_startingCanvasRect.height() > 0) {
        fitToCanvas(cloud, cloud.m_startingCanvasRect);
    }
}

void CloudDocumentMapping::fitToCanvas(TprWordCloud& cloud, const CloudRect& from)
{
    const CloudRect area = cloud.GetCanvasDimension();
    if (from.width() <= 0 || from.height() <= 0 || area.width() <= 0 || area.height() <= 0) {
        return;
    }
    const double scale =
        std::min(double(area.width()) / from.width(), double(area.height()) / from.height());
    const qint32 scaledWidth = qint32(std::trunc(from.width() * scale));
    const qint32 scaledHeight = qint32(std::trunc(from.height() * scale));
    const qint32 left = area.left + halfUp(area.width() - scaledWidth);
    const qint32 top = area.top + halfUp(area.height() - scaledHeight);
    // Every edge goes through the same increasing map, so boxes that were apart stay apart.
    auto mapX = [&](qint32 x) {
        return left + qint32(roundHalfEven((qint64(x) - from.left) * scale));
    };
    auto mapY = [&](qint32 y) {
        return top + qint32(roundHalfEven((qint64(y) - from.top) * scale));
    };
    for (auto& word : cloud.m_words) {
        const CloudRect& b = word->StartingBoundsRect();
        word->SetStartingBoundsRect({mapX(b.left), mapY(b.top), mapX(b.right), mapY(b.bottom)});
        word->ScaleOutline(word->OutlineScale() * scale);
    }
    cloud.m_startingCanvasRect = area;
}

void CloudDocumentMapping::adoptLayout(TprWordCloud& to, const TprWordCloud& from)
{
    to.ClearWords();
    for (const auto& source : from.m_words) {
        to.noteWeight(source->Weight());
        auto word = std::make_unique<TprWord>(&to, source->Text(), source->Weight(),
                                              source->TextColor(), source->PlaceCenter());
        word->SetFont(source->Font());
        word->SetBackgroundColor(to.BackgroundColor());
        word->SetShadow(to.m_shadow);
        word->SetSize(source->FontSize());
        word->SetStartingBoundsRect(source->StartingBoundsRect());
        word->SetVisible(source->Visible());
        to.m_words.push_back(std::move(word));
    }
    to.m_currentCoverage = from.m_currentCoverage;
    to.m_stepX = from.m_stepX;
    to.m_stepY = from.m_stepY;
    to.m_startingCanvasRect = from.m_startingCanvasRect;
    to.m_countVisibleWords = from.m_countVisibleWords;
}

} // namespace kestrum::wordcloud
