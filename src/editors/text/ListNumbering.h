#pragma once

#include <QString>

class QTextBlock;
class QTextListFormat;

namespace kestrum::text {

// List numbers that start elsewhere than 1. A list's first number is kept on its format
// (TextProperty::ListStart, absent for 1); the markers of its items count from there.
class ListNumbering
{
public:
    static int start(const QTextListFormat& format);
    static void setStart(QTextListFormat& format, int start);

    // The marker of a list item as it shows: "7." for the first item of a list that starts
    // at 7; the bullet character for bulleted lists. Empty for a block outside lists.
    static QString itemText(const QTextBlock& block);
    // The marker of the item numbered `number` in a numbered list of this format: prefix,
    // number in the list style, suffix ("." unless the format has one).
    static QString markerText(const QTextListFormat& format, int number);

    // Whether lists of this style show a bullet rather than a number.
    static bool isBulleted(const QTextListFormat& format);

    // `number` written in the list style (decimal, letters, roman numerals), without the
    // prefix and suffix.
    static QString numberText(int style, int number);
};

} // namespace kestrum::text
