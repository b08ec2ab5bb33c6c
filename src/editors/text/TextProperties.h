#pragma once

#include <QTextFormat>

#include <cmath>

// Names and units shared by the rich-text reader, writer, document and editor.
namespace kestrum::text {

// Properties the rich-text document keeps beside Qt's own formats.
namespace TextProperty {
// On a hidden-text object (see HiddenTextObject): the hidden characters.
constexpr int HiddenText = QTextFormat::UserProperty + 1;
// On an image: the picture's kind (PictureKind) and its original bytes, written back unchanged.
constexpr int PictureKind = QTextFormat::UserProperty + 2;
constexpr int PictureData = QTextFormat::UserProperty + 3;
// The RTF control words that described the original picture (kind, size), kept with its bytes.
constexpr int PictureHeader = QTextFormat::UserProperty + 4;
// On a paragraph: its border (sides mask of BorderSide, width and spacing in twips, colour,
// style as QTextFrameFormat::BorderStyle).
constexpr int BorderSides = QTextFormat::UserProperty + 10;
constexpr int BorderWidth = QTextFormat::UserProperty + 11;
constexpr int BorderColour = QTextFormat::UserProperty + 12;
constexpr int BorderStyle = QTextFormat::UserProperty + 13;
constexpr int BorderSpacing = QTextFormat::UserProperty + 14;
// On a footnote's reference mark in the text: the note's number.
constexpr int FootnoteReference = QTextFormat::UserProperty + 20;
// On a note's paragraph at the end of the document: its number. The paragraph's text is the
// number, a space and the note.
constexpr int FootnoteNumber = QTextFormat::UserProperty + 21;
// On a list: the number of its first item when that is not 1 (see ListNumbering).
constexpr int ListStart = QTextFormat::UserProperty + 22;
} // namespace TextProperty

namespace BorderSide {
constexpr int Top = 1;
constexpr int Bottom = 2;
constexpr int Left = 4;
constexpr int Right = 8;
constexpr int All = Top | Bottom | Left | Right;
} // namespace BorderSide

// The object type of hidden text runs.
constexpr int kHiddenTextObjectType = QTextFormat::UserObject + 1;

// What an embedded picture was before it was read.
enum class PictureKind
{
    None = 0,
    Png,
    Jpeg,
    Emf,
    Wmf,
    Dib,
    Bitmap,
    MacPict,
    Other
};

// Document units are pixels at 96 per inch; RTF measures in twips (1440 per inch).
constexpr double kTwipsPerPixel = 15.0;
inline double twipsToPixels(double twips)
{
    return twips / kTwipsPerPixel;
}
inline int pixelsToTwips(double pixels)
{
    return int(std::lround(pixels * kTwipsPerPixel));
}

} // namespace kestrum::text
