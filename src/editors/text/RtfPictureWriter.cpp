#include "RtfPictureWriter.h"

#include "common/RtfEmitter.h"
#include "editors/text/DocumentPictures.h"
#include "editors/text/TextProperties.h"

#include <QBuffer>
#include <QTextDocument>
#include <QTextFormat>

#include <algorithm>

namespace kestrum::text {

namespace {

// Goal sizes are at most four times 22 inches, in twips.
constexpr int kMaxGoal = 31680 * 4;

} // namespace

void RtfPictureWriter::write(common::RtfEmitter& rtf, const QTextDocument& document,
                             const QTextCharFormat& format)
{
    const QTextImageFormat image = format.toImageFormat();
    const QByteArray original = image.property(TextProperty::PictureData).toByteArray();
    const QString header = image.stringProperty(TextProperty::PictureHeader);
    QByteArray data;
    QByteArray description;
    const QImage picture = DocumentPictures::image(document, image);
    if (!original.isEmpty() && !header.isEmpty()) {
        data = original;
        description = header.toLatin1();
    } else {
        if (picture.isNull()) {
            return;
        }
        QBuffer buffer(&data);
        buffer.open(QIODevice::WriteOnly);
        picture.save(&buffer, "PNG");
        description = "\\pngblip\\picw" + QByteArray::number(picture.width()) + "\\pich" +
                      QByteArray::number(picture.height());
    }
    qreal width = image.width();
    qreal height = image.height();
    if (width <= 0 || height <= 0) {
        width = picture.width();
        height = picture.height();
    }
    rtf.raw("{\\pict");
    rtf.words(description);
    if (width > 0 && height > 0) {
        rtf.word("picwgoal", std::clamp(pixelsToTwips(width), 1, kMaxGoal));
        rtf.word("pichgoal", std::clamp(pixelsToTwips(height), 1, kMaxGoal));
    }
    rtf.raw("\n");
    rtf.hexData(data);
    rtf.raw("}");
}

} // namespace kestrum::text
