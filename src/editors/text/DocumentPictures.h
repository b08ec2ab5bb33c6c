#pragma once

#include "editors/text/TextProperties.h"

#include <QByteArray>
#include <QImage>
#include <QSizeF>
#include <QString>
#include <QTextImageFormat>

class QTextDocument;

namespace kestrum::text {

// Pictures of a rich-text document: each is a resource of the document under a unique name,
// and its image format remembers what it was read from, so that it is written back unchanged.
class DocumentPictures
{
public:
    struct Picture
    {
        PictureKind kind = PictureKind::None;
        QByteArray data;    // the original bytes (may be empty for pictures made in the editor)
        QString header;     // the RTF control words that described the original
        QSizeF displaySize; // pixels; empty: the image's own size
    };

    // Adds a decoded image; returns the format to insert.
    static QTextImageFormat add(QTextDocument* document, const QImage& image,
                                const Picture& picture);
    // Adds a visible stand-in for a picture that cannot be shown (a metafile, a damaged file).
    static QTextImageFormat addPlaceholder(QTextDocument* document, const Picture& picture,
                                           const QString& label);
    // The image of a picture format (null when the document lacks it).
    static QImage image(const QTextDocument& document, const QTextImageFormat& format);
    // A short description of a kind ("Windows metafile").
    static QString kindName(PictureKind kind);

private:
    static QString uniqueName(QTextDocument* document, const char* suffix);
};

} // namespace kestrum::text
