#include "ImageView.h"

#include <QPainter>

namespace kestrum::image {

ImageView::ImageView(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("ImageView"));
}

void ImageView::setPicture(const QImage& picture)
{
    m_picture = picture;
    update();
}

void ImageView::paintEvent(QPaintEvent*)
{
    if (m_picture.isNull()) {
        return;
    }
    QPainter p(this);
    p.setRenderHint(QPainter::SmoothPixmapTransform, true);
    p.drawImage(rect(), m_picture);
}

} // namespace kestrum::image
