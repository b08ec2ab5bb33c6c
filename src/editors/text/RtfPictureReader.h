#pragma once

#include "editors/text/DocumentPictures.h"
#include "editors/text/RtfReaderState.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QStringList>
#include <QTextImageFormat>

class QTextDocument;

namespace kestrum::text {

// The picture destination ({\pict\pngblip\picwgoalN..<hex or \bin data>}): gathers the
// picture's description and bytes (never more than the reader's limit) and makes the image,
// or a placeholder for what cannot be shown, when the group ends.
class RtfPictureReader
{
public:
    explicit RtfPictureReader(qint64 maxBytes) : m_maxBytes(maxBytes) {}

    // A new picture starts (\pict).
    void start() { m_picture = Picture(); }
    // A word of the picture's description (\pngblip, \picwN, \picscalexN...).
    void word(const RtfWord& word);
    // Data as hexadecimal text (blanks and stray characters between digits are ignored).
    void addHex(QByteArrayView text);
    // Data as raw bytes (\binN, \'hh).
    void addBytes(QByteArrayView bytes);

    // The picture ends: its image (or placeholder) is added to `document`, and the format to
    // insert returned. What was left out is told in `warnings`.
    QTextImageFormat finish(QTextDocument* document, QStringList* warnings);

private:
    struct Picture
    {
        PictureKind kind = PictureKind::None;
        QByteArray header;
        int picw = 0;
        int pich = 0;
        int goalWidth = 0;
        int goalHeight = 0;
        int scaleX = 100;
        int scaleY = 100;
        QByteArray data;
        int highNibble = -1;
        bool tooLarge = false;
    };

    static QImage decode(const Picture& picture);

    qint64 m_maxBytes;
    Picture m_picture;
};

} // namespace kestrum::text
