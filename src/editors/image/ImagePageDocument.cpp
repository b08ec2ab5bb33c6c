#include "ImagePageDocument.h"

#include "editors/image/BmpFile.h"
#include "editors/image/PictureFiles.h"

namespace kestrum::image {

ImagePageDocument::ImagePageDocument(QObject* parent) : store::PageDocument(parent) {}

Result<QByteArray> ImagePageDocument::writeContent()
{
    return BmpFile::write(m_picture);
}

Status ImagePageDocument::readContent(const QByteArray& in)
{
    m_picture = QImage();
    if (!in.isEmpty()) {
        Result<QImage> read = BmpFile::read(in);
        if (!read) {
            emit contentReset();
            return fail(read.error());
        }
        m_picture = *read;
    }
    emit contentReset();
    return {};
}

void ImagePageDocument::clear()
{
    m_picture = QImage();
    emit contentReset();
}

Status ImagePageDocument::importFile(const QString& path)
{
    clear();
    Result<QImage> read = PictureFiles::LoadPictureFile(path);
    if (!read) {
        return fail(read.error());
    }
    m_picture = *read;
    emit contentReset();
    return {};
}

void ImagePageDocument::setPicture(const QImage& picture)
{
    m_picture = BmpFile::to24Bit(picture);
    emit contentReset();
    emit contentChanged();
}

} // namespace kestrum::image
