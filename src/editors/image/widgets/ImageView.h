#pragma once

#include <QImage>
#include <QWidget>

namespace kestrum::image {

// The image page's view: the picture stretched to the view's size (the zoom sets that size).
class ImageView : public QWidget
{
    Q_OBJECT
public:
    explicit ImageView(QWidget* parent = nullptr);

    void setPicture(const QImage& picture);
    const QImage& picture() const { return m_picture; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_picture;
};

} // namespace kestrum::image
