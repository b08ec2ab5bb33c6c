#pragma once

#include "common/Result.h"

#include <QByteArray>
#include <QImage>
#include <QString>

#include <memory>

namespace kestrum::wordcloud {
class TprWordCloud;
}

namespace kestrum::wordcloud_page {

// Word cloud pages written for other programs: the stored cloud drawn again at the size it was
// laid out for (no new layout), as a picture file, an HTML picture, an RTF picture or the
// words a find looks through.
class CloudPageExporter
{
public:
    // The page's cloud, read from its stored content, with its client size set to the stored
    // one (800 x 600 when the document has no drawing area).
    static Result<std::unique_ptr<wordcloud::TprWordCloud>> load(const QByteArray& content);

    // .png .bmp .jpg (JPEG at quality 90) .svg or .xml (the cloud document itself), by the
    // extension of `outFile`, written under a temporary name and renamed into place.
    static Status writeFile(const QByteArray& content, const QString& outFile);

    static Result<QByteArray> png(const QByteArray& content);
    // A complete RTF document holding the picture as PNG (\pict\pngblip).
    static Result<QByteArray> rtf(const QByteArray& content);
    // The placed words, one per line, heaviest first.
    static Result<QString> text(const QByteArray& content);

    // The picture as an RTF \pict group (hexadecimal PNG data), sized in twips at 96 dpi.
    static QByteArray rtfPicture(const QImage& image);
};

} // namespace kestrum::wordcloud_page
