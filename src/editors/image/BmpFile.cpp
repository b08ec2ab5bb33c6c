#include "BmpFile.h"

#include "common/ByteStream.h"

#include <QPainter>

#include <cstdlib>

namespace kestrum::image {

namespace {

constexpr int kFileHeaderSize = 14;
constexpr int kInfoHeaderSize = 40;
constexpr int kPixelsPerMetre = 3780; // 96 dots per inch

qint32 le32(const QByteArray& b, int at)
{
    return qint32(quint32(quint8(b[at])) | quint32(quint8(b[at + 1])) << 8 |
                  quint32(quint8(b[at + 2])) << 16 | quint32(quint8(b[at + 3])) << 24);
}

qint16 le16(const QByteArray& b, int at)
{
    return qint16(quint16(quint8(b[at])) | quint16(quint8(b[at + 1])) << 8);
}

} // namespace

QImage BmpFile::to24Bit(const QImage& image)
{
    if (image.isNull()) {
        return {};
    }
    if (image.format() == QImage::Format_RGB888) {
        return image;
    }
    if (!image.hasAlphaChannel()) {
        return image.convertToFormat(QImage::Format_RGB888);
    }
    QImage flat(image.size(), QImage::Format_RGB888);
    flat.fill(Qt::white);
    QPainter p(&flat);
    p.drawImage(0, 0, image);
    p.end();
    return flat;
}

QByteArray BmpFile::write(const QImage& source)
{
    const QImage image = to24Bit(source);
    const int width = image.isNull() ? 0 : image.width();
    const int height = image.isNull() ? 0 : image.height();
    const int stride = (width * 3 + 3) & ~3;
    const quint32 pixelBytes = quint32(stride) * quint32(height);
    common::ByteWriter w;
    w.reserve(kFileHeaderSize + kInfoHeaderSize + qsizetype(pixelBytes));
    w.raw("BM", 2);
    w.u32(kFileHeaderSize + kInfoHeaderSize + pixelBytes);
    w.u32(0); // reserved
    w.u32(kFileHeaderSize + kInfoHeaderSize);
    w.u32(kInfoHeaderSize);
    w.i32(width);
    w.i32(height); // positive: bottom-up rows
    w.u16(1);      // planes
    w.u16(24);     // bits per pixel
    w.u32(0);      // no compression
    w.u32(pixelBytes);
    w.i32(kPixelsPerMetre);
    w.i32(kPixelsPerMetre);
    w.u32(0);
    w.u32(0);
    QByteArray row(stride, '\0');
    char* out = row.data();
    for (int y = height - 1; y >= 0; --y) {
        const uchar* src = image.constScanLine(y);
        for (int x = 0; x < width; ++x) {
            out[3 * x] = char(src[3 * x + 2]); // blue, green, red
            out[3 * x + 1] = char(src[3 * x + 1]);
            out[3 * x + 2] = char(src[3 * x]);
        }
        w.raw(row);
    }
    return w.take();
}

Result<QImage> BmpFile::read(const QByteArray& bytes)
{
    if (bytes.size() < kFileHeaderSize + 12 || !bytes.startsWith("BM")) {
        return fail(QStringLiteral("the picture is not a Windows bitmap"));
    }
    const qint32 headerSize = le32(bytes, kFileHeaderSize);
    qint64 width = 0;
    qint64 height = 0;
    if (headerSize == 12) {
        width = le16(bytes, kFileHeaderSize + 4);
        height = le16(bytes, kFileHeaderSize + 6);
    } else if (headerSize >= kInfoHeaderSize && bytes.size() >= kFileHeaderSize + kInfoHeaderSize) {
        width = le32(bytes, kFileHeaderSize + 4);
        height = le32(bytes, kFileHeaderSize + 8);
    } else {
        return fail(QStringLiteral("the bitmap's header is damaged"));
    }
    height = std::llabs(height);
    if (width < 0 || width > kMaxSide || height > kMaxSide || width * height > kMaxPixels) {
        return fail(QStringLiteral("the bitmap claims %1 by %2 pixels, more than a page holds")
                        .arg(width)
                        .arg(height));
    }
    if (width == 0 || height == 0) {
        return QImage(); // an empty picture
    }
    // Uncompressed pixels must all be there (the picture library would make up the rest).
    {
        const bool core = headerSize == 12;
        const int bits = le16(bytes, kFileHeaderSize + (core ? 10 : 14));
        const qint32 compression = core ? 0 : le32(bytes, kFileHeaderSize + 16);
        const qint64 offset = quint32(le32(bytes, 10));
        const qint64 stride = ((width * bits + 31) / 32) * 4;
        if ((compression == 0 || compression == 3) && bits > 0 &&
            offset + stride * height > bytes.size()) {
            return fail(QStringLiteral("the bitmap is damaged: its pixels are cut short"));
        }
    }
    QImage image;
    if (!image.loadFromData(bytes, "BMP") || image.isNull()) {
        return fail(QStringLiteral("the bitmap is damaged and cannot be read"));
    }
    return to24Bit(image);
}

} // namespace kestrum::image
