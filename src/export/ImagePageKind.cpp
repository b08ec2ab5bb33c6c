// Image pages: a 24-bit bitmap; picture files become pages; exported as BMP, PNG or JPEG.

#include "export/KindRegistrations.h"

#include "editors/image/BmpFile.h"
#include "editors/image/ImagePageDocument.h"
#include "editors/image/PictureFiles.h"
#include "export/PicturePageExports.h"

#include <QSaveFile>

namespace kestrum::exports {

namespace {

Result<QImage> readPicture(const PageSource& page)
{
    if (page.content.isEmpty()) {
        return QImage();
    }
    Result<QImage> read = image::BmpFile::read(page.content);
    if (!read) {
        return fail(QStringLiteral("page %1: %2").arg(page.pageId).arg(read.error()));
    }
    return read;
}

PageFormat pictureFormat(QStringList extensions, const QString& description, QByteArray format)
{
    return {std::move(extensions), description,
            [format](const PageSource& page, const QString& outFile) -> Status {
                Result<QImage> picture = readPicture(page);
                if (!picture) {
                    return fail(picture.error());
                }
                Result<QByteArray> bytes = image::PictureFiles::encode(*picture, format);
                if (!bytes) {
                    return fail(bytes.error());
                }
                QSaveFile file(outFile);
                if (!file.open(QIODevice::WriteOnly) || file.write(*bytes) != bytes->size() ||
                    !file.commit()) {
                    return fail(
                        QStringLiteral("Cannot write \"%1\": %2").arg(outFile, file.errorString()));
                }
                return {};
            }};
}

} // namespace

CorePageKind imagePageKind()
{
    CorePageKind kind;
    kind.page.kind = store::EditorKind::Image;
    kind.page.pageTypes = {store::PageType::Image};
    kind.page.name = QStringLiteral("image");
    kind.page.icon = QStringLiteral(":/icons/image.svg");
    kind.page.makeDocument = [] { return std::make_unique<image::ImagePageDocument>(); };
    kind.page.importExtensions = {QStringLiteral(".BMP"), QStringLiteral(".WMF"),
                                  QStringLiteral(".JPG"), QStringLiteral(".JPEG"),
                                  QStringLiteral(".PNG")};
    kind.page.storedWhenAdded = true;

    kind.exports.formats = {
        pictureFormat({QStringLiteral("bmp")}, QStringLiteral("Windows bitmap"), "BMP"),
        pictureFormat({QStringLiteral("png")}, QStringLiteral("Portable Network Graphic"), "PNG"),
        pictureFormat({QStringLiteral("jpg"), QStringLiteral("jpeg")}, QStringLiteral("JPEG"),
                      "JPEG"),
    };
    kind.exports.html = [](const PageSource& page,
                           const HtmlFragmentOptions& options) -> Result<HtmlFragment> {
        Result<QImage> picture = readPicture(page);
        if (!picture) {
            return fail(picture.error());
        }
        return PicturePageExports::html(*picture, page, options, QStringLiteral("image"));
    };
    kind.exports.rtf = [](const PageSource& page) -> Result<QByteArray> {
        Result<QImage> picture = readPicture(page);
        if (!picture) {
            return fail(picture.error());
        }
        return PicturePageExports::rtf(*picture);
    };
    // A picture has no words to find.
    kind.exports.text = [](const PageSource& page) -> Result<QString> {
        Result<QImage> picture = readPicture(page);
        if (!picture) {
            return fail(picture.error());
        }
        return QString();
    };
    return kind;
}

} // namespace kestrum::exports
