#pragma once

#include "CloudRect.h"
#include "common/Colour.h"
#include "common/Result.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

class QIODevice;

namespace kestrum::wordcloud {

// One "Word" element of a cloud document.
struct CloudDocumentWord
{
    QString text;
    common::TColor textColor = 0;
    qint32 weight = 1;
    std::optional<qint32> fontSize;
    std::optional<CloudRect> bounds;
};

// What a cloud document holds. On reading, an element that is absent stays empty and leaves the
// cloud's option as it was; on writing every element the cloud has is set.
struct CloudDocumentData
{
    std::optional<common::TColor> backgroundColor;
    std::optional<float> coverage;
    std::optional<bool> shadow;
    std::optional<qint32> palette; // present: colours from a palette ("Palette" element)
    std::optional<common::TColor> startColor;
    std::optional<common::TColor> middleColor;
    std::optional<common::TColor> endColor;
    std::optional<QString> fontName;
    std::optional<qint32> fontCharset;
    std::optional<common::TColor> fontColor;
    std::optional<qint32> fontSize;
    std::optional<qint32> fontStyle;
    std::optional<CloudRect> startingBounds;
    QList<CloudDocumentWord> words;
};

// The XML cloud document: root "WordCloud" version "1.0" (see docs/formats.md).
class CloudDocument
{
public:
    static constexpr qint64 kMaxBytes = 16 * 1024 * 1024;
    static constexpr int kMaxWords = 100000;
    static constexpr int kMaxTextLength = 1000;
    static constexpr qint32 kMaxFontSize = 4096;
    static constexpr qint32 kMaxCoordinate = 1000000;
    static constexpr double kMaxCoverage = 10.0;

    static QByteArray write(const CloudDocumentData& data);

    // Reads at most kMaxBytes from `device`. Refuses bytes that are not a well-formed document
    // whose root (of any name) has version "1.0"; out-of-range values are clamped or left out,
    // each with a line in *warnings. "Coverage" is kept as read within kMaxCoverage either side
    // of 0; a "Gradient" is read whether or not a "Palette" is there (the cloud uses it only
    // without one).
    static Result<CloudDocumentData> read(QIODevice& device, QStringList* warnings);
};

} // namespace kestrum::wordcloud
