#pragma once

#include "common/Result.h"

#include <QImage>
#include <QString>

class QIODevice;
class QPainter;

namespace kestrum::wordcloud {

class TprWordCloud;

// Paints a cloud and writes it out: the background, the word colours from the palette or the
// gradient, every visible word; as a bitmap, an SVG picture, a picture file or on the clipboard.
class CloudRenderer
{
public:
    explicit CloudRenderer(TprWordCloud& cloud);

    // Fills the client area with the background colour.
    void clearCanvas(QPainter& painter) const;
    // Gives every word its colour from the palette or the gradient.
    void assignColors();
    // Background, word colours, then every visible word, heaviest first, in client coordinates.
    void paint(QPainter& painter);
    QImage toBitmap();
    // The picture as SVG: each distinct glyph once as a path, the words referring to them.
    bool writeSvg(QIODevice& device);
    bool writeSvg(const QString& fileName);
    // PNG, BMP or JPEG (quality 90) by `format` ("png", "bmp", "jpg"), or SVG ("svg").
    Status writePictureFile(const QString& fileName, const QString& format);
    void copyBitmap();
    void copySvg();

private:
    TprWordCloud& m_cloud;
};

} // namespace kestrum::wordcloud
