#include "PictureFiles.h"

#include "editors/image/BmpFile.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QSaveFile>

namespace kestrum::image {

namespace {
constexpr int kJpegQuality = 90;
constexpr int kAllocationLimitMb = 512;
} // namespace

QStringList PictureFiles::saveFilters()
{
    return {QStringLiteral("Portable Network Graphic (*.png)"),
            QStringLiteral("Windows Bitmap (*.bmp)"),
            // The caption is kept as the page has always shown it; the pattern follows it.
            QStringLiteral("JPEG (*,jpg) (*.jpg)")};
}

QStringList PictureFiles::openFilters()
{
    return {QStringLiteral("All pictures (*.bmp *.jpg *.jpeg *.png *.gif)"),
            QStringLiteral("JPEG Image File (*.jpg *.jpeg)"),
            QStringLiteral("Portable Network Graphic (*.png)"),
            QStringLiteral("GIF Image (*.gif)"),
            QStringLiteral("Bitmaps (*.bmp)"),
            QStringLiteral("All files (*)")};
}

Result<QImage> PictureFiles::LoadPictureFile(const QString& fileName)
{
    const QString upper = fileName.toUpper();
    QByteArray format;
    if (upper.contains(QLatin1String(".JP"))) {
        format = "JPEG";
    } else if (upper.contains(QLatin1String(".GIF"))) {
        format = "GIF";
    } else if (upper.contains(QLatin1String(".PNG"))) {
        format = "PNG";
    }
    QImageReader::setAllocationLimit(kAllocationLimitMb);
    QImageReader reader(fileName, format);
    if (!format.isEmpty()) {
        reader.setDecideFormatFromContent(false);
    }
    const QSize size = reader.size();
    if (size.isValid() && (size.width() > BmpFile::kMaxSide || size.height() > BmpFile::kMaxSide ||
                           qint64(size.width()) * size.height() > BmpFile::kMaxPixels)) {
        return fail(QStringLiteral("\"%1\" is %2 by %3 pixels, more than a page holds")
                        .arg(fileName)
                        .arg(size.width())
                        .arg(size.height()));
    }
    const QImage image = reader.read();
    if (image.isNull()) {
        return fail(QStringLiteral("Cannot read the picture \"%1\": %2")
                        .arg(fileName, reader.errorString()));
    }
    return BmpFile::to24Bit(image);
}

QString PictureFiles::forcedFileName(const QString& fileName, int filterIndex)
{
    static const char* const kExtensions[] = {".PNG", ".BMP", ".JPG"};
    if (filterIndex < 1 || filterIndex > 3) {
        return {};
    }
    const QFileInfo info(fileName);
    QString name = info.fileName();
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot >= 0) {
        name.truncate(dot);
    }
    name += QLatin1String(kExtensions[filterIndex - 1]);
    const qsizetype slash = fileName.size() - info.fileName().size();
    return fileName.left(slash) + name;
}

Result<QByteArray> PictureFiles::encode(const QImage& image, const QByteArray& format)
{
    if (format == "BMP") {
        return BmpFile::write(image);
    }
    if (image.isNull()) {
        return fail(QStringLiteral("the page holds no picture"));
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    if (format == "JPEG") {
        writer.setQuality(kJpegQuality);
        writer.setOptimizedWrite(true);
        writer.setProgressiveScanWrite(true);
    }
    if (!writer.write(BmpFile::to24Bit(image))) {
        return fail(QStringLiteral("Cannot write the picture: %1").arg(writer.errorString()));
    }
    return bytes;
}

Result<QString> PictureFiles::SavePicture(const QImage& image, const QString& fileName,
                                          int filterIndex)
{
    static const char* const kFormats[] = {"PNG", "BMP", "JPEG"};
    const QString target = forcedFileName(fileName, filterIndex);
    if (target.isEmpty()) {
        return fail(QStringLiteral("Unknown picture format %1").arg(filterIndex));
    }
    Result<QByteArray> bytes = encode(image, kFormats[filterIndex - 1]);
    if (!bytes) {
        return fail(bytes.error());
    }
    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly) || file.write(*bytes) != bytes->size() || !file.commit()) {
        return fail(QStringLiteral("Cannot write \"%1\": %2").arg(target, file.errorString()));
    }
    return target;
}

} // namespace kestrum::image
