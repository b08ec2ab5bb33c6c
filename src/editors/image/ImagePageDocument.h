#pragma once

#include "store/PageDocument.h"

#include <QImage>

namespace kestrum::image {

// The document of image pages: one picture, always held at 24 bits per pixel and stored full
// size as a Windows bitmap file whatever the view's zoom.
class ImagePageDocument : public store::PageDocument
{
    Q_OBJECT
public:
    explicit ImagePageDocument(QObject* parent = nullptr);

    store::EditorKind kind() const override { return store::EditorKind::Image; }
    Result<QByteArray> writeContent() override;
    // An empty content is an empty picture; any bitmap depth is converted to 24 bits.
    Status readContent(const QByteArray& in) override;
    void clear() override;
    // A picture file (see PictureFiles::LoadPictureFile); the picture is cleared first.
    Status importFile(const QString& path) override;

    const QImage& picture() const { return m_picture; }
    // The user opened a picture: the page changes.
    void setPicture(const QImage& picture);

private:
    QImage m_picture;
};

} // namespace kestrum::image
