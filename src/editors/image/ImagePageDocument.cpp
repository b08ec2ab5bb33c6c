#include "ImagePageDocument.h"

#include "editors/image/BmpFile.h"
#include "editors/image/PictureFiles.h"

namespace kestrum::image {

ImagePageDocument::ImagePageDocument(QObject* parent) : store::PageDocument(parent) {}

bool ImagePageDocument::writeContent(QByteArray& out, QString*)
{
    out = BmpFile::write(m_picture);
    return true;
}

bool ImagePageDocument::readContent(const QByteArray& in, QString* error)
{
    m_picture = QImage();
    if (!in.isEmpty()) {
        Result<QImage> read = BmpFile::read(in);
        if (!read) {
            if (error) {
                *error = read.error();
            }
            emit contentReset();
            return false;
        }
        m_picture = *read;
    }
    emit contentReset();
    return true;
}

void ImagePageDocument::clear()
{
    m_picture = QImage();
    emit contentReset();
}

bool ImagePageDocument::importFile(const QString& path, QString* error)
{
    clear();
    Result<QImage> read = PictureFiles::LoadPictureFile(path);
    if (!read) {
        if (error) {
            *error = read.error();
        }
        return false;
    }
    m_picture = *read;
    emit contentReset();
    return true;
}

void ImagePageDocument::setPicture(const QImage& picture)
{
    m_picture = BmpFile::to24Bit(picture);
    emit contentReset();
    emit contentChanged();
}

} // namespace kestrum::image
