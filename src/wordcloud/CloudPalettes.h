#pragma once

#include "common/Colour.h"

#include <QList>
#include <QString>

namespace kestrum::wordcloud {

// The built-in word colour palettes, numbered as the options dialog lists them. Number 21 is
// the cloud's own custom list; any other number outside 0..20 means palette 0.
class CloudPalettes
{
public:
    static constexpr int kBuiltInCount = 21;
    static constexpr int kCustom = 21;

    // The colours of palette `number` (0x00BBGGRR); palette 0 for unknown numbers.
    static const QList<common::TColor>& colours(int number);
    // "Excel" ... "Seewash"; an empty string for other numbers.
    static QString name(int number);
    static QStringList names();
};

} // namespace kestrum::wordcloud
