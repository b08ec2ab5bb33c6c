#include "ListNumbering.h"

#include "editors/text/TextProperties.h"

#include <QTextBlock>
#include <QTextList>

namespace kestrum::text {

namespace {

// Numbers a list shows are kept within these bounds (roman numerals end at 3999).
constexpr int kMaxNumber = 32767;
constexpr int kMaxRoman = 3999;

QString letters(int number, char16_t first)
{
    // 1 is a, 26 z, 27 aa...
    QString out;
    for (int n = number; n > 0; n = (n - 1) / 26) {
        out.prepend(QChar(char16_t(first + (n - 1) % 26)));
    }
    return out;
}

QString roman(int number, bool upper)
{
    static constexpr struct
    {
        int value;
        const char* text;
    } kParts[] = {{1000, "m"}, {900, "cm"}, {500, "d"}, {400, "cd"}, {100, "c"},
                  {90, "xc"},  {50, "l"},   {40, "xl"}, {10, "x"},   {9, "ix"},
                  {5, "v"},    {4, "iv"},   {1, "i"}};
    QString out;
    int rest = number;
    for (const auto& part : kParts) {
        while (rest >= part.value) {
            out += QLatin1String(part.text);
            rest -= part.value;
        }
    }
    return upper ? out.toUpper() : out;
}

} // namespace

int ListNumbering::start(const QTextListFormat& format)
{
    return format.hasProperty(TextProperty::ListStart) ? format.intProperty(TextProperty::ListStart)
                                                       : 1;
}

void ListNumbering::setStart(QTextListFormat& format, int start)
{
    const int bounded = qBound(0, start, kMaxNumber);
    if (bounded == 1) {
        format.clearProperty(TextProperty::ListStart);
    } else {
        format.setProperty(TextProperty::ListStart, bounded);
    }
}

QString ListNumbering::numberText(int style, int number)
{
    switch (style) {
    case QTextListFormat::ListLowerAlpha:
        return number > 0 ? letters(number, u'a') : QString::number(number);
    case QTextListFormat::ListUpperAlpha:
        return number > 0 ? letters(number, u'A') : QString::number(number);
    case QTextListFormat::ListLowerRoman:
    case QTextListFormat::ListUpperRoman:
        if (number > 0 && number <= kMaxRoman) {
            return roman(number, style == QTextListFormat::ListUpperRoman);
        }
        return QString::number(number);
    default:
        return QString::number(number);
    }
}

QString ListNumbering::itemText(const QTextBlock& block)
{
    const QTextList* list = block.textList();
    if (!list) {
        return {};
    }
    const QTextListFormat format = list->format();
    if (isBulleted(format)) {
        return list->itemText(block);
    }
    return markerText(format, start(format) + list->itemNumber(block));
}

bool ListNumbering::isBulleted(const QTextListFormat& format)
{
    switch (format.style()) {
    case QTextListFormat::ListDisc:
    case QTextListFormat::ListSquare:
    case QTextListFormat::ListCircle:
    case QTextListFormat::ListStyleUndefined:
        return true;
    default:
        return false;
    }
}

QString ListNumbering::markerText(const QTextListFormat& format, int number)
{
    const QString suffix = format.hasProperty(QTextFormat::ListNumberSuffix) ? format.numberSuffix()
                                                                             : QStringLiteral(".");
    return format.numberPrefix() + numberText(format.style(), number) + suffix;
}

} // namespace kestrum::text
