#pragma once

#include "common/Result.h"

#include <QByteArray>
#include <QImage>

namespace kestrum::image {

// Image page content: a complete Windows bitmap file (file header included), 24 bits per pixel,
// rows bottom-up. An empty picture is a bitmap of 0 by 0 pixels.
class BmpFile
{
public:
    // Larger pictures are refused before any pixel is allocated.
    static constexpr int kMaxSide = 32767;
    static constexpr qint64 kMaxPixels = qint64(64) * 1024 * 1024;

    static QByteArray write(const QImage& image);
    // Any bitmap depth the picture library reads is accepted and converted to 24 bits.
    static Result<QImage> read(const QByteArray& bytes);
    // The picture as a 24-bit bitmap holds it: transparent areas over white, no alpha.
    static QImage to24Bit(const QImage& image);
};

} // namespace kestrum::image
