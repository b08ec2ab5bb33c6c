#pragma once

#include <QByteArray>
#include <QImage>

namespace kestrum::timeline {

// Writes a picture as a GIF89a file: one frame, a 256-entry palette (the picture's own colours
// when it has few, otherwise a colour cube with dithering), LZW-compressed.
class GifWriter
{
public:
    static QByteArray write(const QImage& image);
};

} // namespace kestrum::timeline
