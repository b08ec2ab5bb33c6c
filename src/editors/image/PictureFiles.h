#pragma once

#include "common/Result.h"

#include <QImage>
#include <QStringList>

namespace kestrum::image {

// Picture files of the image page: opening any picture the library reads, and saving as PNG,
// BMP or JPEG with the extension of the chosen filter.
class PictureFiles
{
public:
    // The save dialog's filters, in order (index 1 PNG, 2 BMP, 3 JPEG).
    static QStringList saveFilters();
    // The open dialog's filters.
    static QStringList openFilters();

    // Reads a picture, choosing the reader by the upper-cased name: ".JP" anywhere a JPEG
    // reader, else ".GIF" a GIF reader, else ".PNG" a PNG reader, else whatever the file's
    // bytes say. The result is a 24-bit picture (transparency over white).
    static Result<QImage> LoadPictureFile(const QString& fileName);
    // `fileName` with its extension replaced by that of filter `filterIndex` (".PNG", ".BMP",
    // ".JPG"); empty for an unknown index.
    static QString forcedFileName(const QString& fileName, int filterIndex);
    // Writes `image` to forcedFileName(...) (PNG without transparency, BMP, or JPEG at quality
    // 90, optimised and progressive) through a temporary file; returns the name written.
    static Result<QString> SavePicture(const QImage& image, const QString& fileName,
                                       int filterIndex);
    // The picture encoded in a format ("PNG", "BMP", "JPEG").
    static Result<QByteArray> encode(const QImage& image, const QByteArray& format);
};

} // namespace kestrum::image
