#include "DocumentPictures.h"

#include <QGuiApplication>
#include <QPainter>
#include <QTextDocument>
#include <QUrl>
#include <QVariant>

namespace kestrum::text {

namespace {

constexpr const char* kCounterProperty = "kestrumPictureCounter";

} // namespace

QString DocumentPictures::uniqueName(QTextDocument* document, const char* suffix)
{
    const int next = document->property(kCounterProperty).toInt() + 1;
    document->setProperty(kCounterProperty, next);
    return QStringLiteral("kestrum-picture-%1.%2").arg(next).arg(QLatin1String(suffix));
}

QTextImageFormat DocumentPictures::add(QTextDocument* document, const QImage& image,
                                       const Picture& picture)
{
    const QString name = uniqueName(document, picture.kind == PictureKind::Jpeg ? "jpg" : "png");
    document->addResource(QTextDocument::ImageResource, QUrl(name), QVariant(image));
    QTextImageFormat format;
    format.setName(name);
    const QSizeF size = picture.displaySize.isEmpty() ? QSizeF(image.size()) : picture.displaySize;
    format.setWidth(size.width());
    format.setHeight(size.height());
    format.setProperty(TextProperty::PictureKind, int(picture.kind));
    if (!picture.data.isEmpty()) {
        format.setProperty(TextProperty::PictureData, picture.data);
        format.setProperty(TextProperty::PictureHeader, picture.header);
    }
    return format;
}

QTextImageFormat DocumentPictures::addPlaceholder(QTextDocument* document, const Picture& picture,
                                                  const QString& label)
{
    QSizeF size = picture.displaySize;
    if (size.isEmpty() || size.width() > 4000 || size.height() > 4000) {
        size = QSizeF(160, 90);
    }
    const QSize pixels = size.toSize().expandedTo(QSize(16, 16));
    QImage image(pixels, QImage::Format_RGB32);
    image.fill(QColor(0xEE, 0xEE, 0xEE));
    {
        QPainter painter(&image);
        painter.setPen(QPen(QColor(0x80, 0x80, 0x80), 1, Qt::DashLine));
        painter.drawRect(QRect(QPoint(0, 0), pixels - QSize(1, 1)));
        // Text needs the font database of a GUI application.
        if (qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
            painter.setPen(QColor(0x40, 0x40, 0x40));
            painter.drawText(QRect(QPoint(4, 4), pixels - QSize(8, 8)),
                             Qt::AlignCenter | Qt::TextWordWrap, label);
        }
    }
    const QString name = uniqueName(document, "png");
    document->addResource(QTextDocument::ImageResource, QUrl(name), QVariant(image));
    QTextImageFormat format;
    format.setName(name);
    format.setWidth(size.width());
    format.setHeight(size.height());
    format.setToolTip(label);
    format.setProperty(TextProperty::PictureKind, int(picture.kind));
    if (!picture.data.isEmpty()) {
        format.setProperty(TextProperty::PictureData, picture.data);
        format.setProperty(TextProperty::PictureHeader, picture.header);
    }
    return format;
}

QImage DocumentPictures::image(const QTextDocument& document, const QTextImageFormat& format)
{
    const QVariant v = document.resource(QTextDocument::ImageResource, QUrl(format.name()));
    if (v.canConvert<QImage>()) {
        return v.value<QImage>();
    }
    return {};
}

QString DocumentPictures::kindName(PictureKind kind)
{
    switch (kind) {
    case PictureKind::Png:
        return QStringLiteral("PNG picture");
    case PictureKind::Jpeg:
        return QStringLiteral("JPEG picture");
    case PictureKind::Emf:
        return QStringLiteral("Enhanced metafile");
    case PictureKind::Wmf:
        return QStringLiteral("Windows metafile");
    case PictureKind::Dib:
        return QStringLiteral("Device-independent bitmap");
    case PictureKind::Bitmap:
        return QStringLiteral("Windows bitmap");
    case PictureKind::MacPict:
        return QStringLiteral("Macintosh picture");
    case PictureKind::Other:
    case PictureKind::None:
        break;
    }
    return QStringLiteral("Picture");
}

} // namespace kestrum::text
