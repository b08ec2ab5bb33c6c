#include "PicturePageExports.h"

#include <QBuffer>
#include <QImageWriter>

namespace kestrum::exports {

namespace {

constexpr int kTwipsPerPixel = 15; // at 96 dots per inch

Result<QByteArray> png(const QImage& picture)
{
    if (picture.isNull()) {
        return fail(QStringLiteral("the page holds no picture"));
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "PNG");
    if (!writer.write(picture)) {
        return fail(
            QStringLiteral("Cannot write the picture as PNG: %1").arg(writer.errorString()));
    }
    return bytes;
}

} // namespace

Result<HtmlFragment> PicturePageExports::html(const QImage& picture, const PageSource& page,
                                              const HtmlFragmentOptions& options,
                                              const QString& baseName)
{
    if (picture.isNull()) {
        return HtmlFragment{}; // an empty page shows nothing
    }
    Result<QByteArray> bytes = png(picture);
    if (!bytes) {
        return fail(bytes.error());
    }
    const QString file =
        QStringLiteral("%1%2%3.png").arg(options.filePrefix, baseName).arg(page.pageId);
    const QString src =
        options.folderUrl.isEmpty() ? file : options.folderUrl + QLatin1Char('/') + file;
    HtmlFragment out;
    out.html = QStringLiteral("<IMG SRC=\"%1\" WIDTH=%2 HEIGHT=%3 ALT=\"\">")
                   .arg(src.toHtmlEscaped())
                   .arg(picture.width())
                   .arg(picture.height());
    out.files.emplace_back(file, std::move(*bytes));
    return out;
}

Result<QByteArray> PicturePageExports::rtf(const QImage& picture)
{
    if (picture.isNull()) {
        return QByteArray("{\\rtf1\\ansi\\deff0\n\\par\n}\n");
    }
    Result<QByteArray> bytes = png(picture);
    if (!bytes) {
        return fail(bytes.error());
    }
    QByteArray out = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\n{\\pict\\pngblip\\picw" +
                     QByteArray::number(picture.width()) + "\\pich" +
                     QByteArray::number(picture.height()) + "\\picwgoal" +
                     QByteArray::number(picture.width() * kTwipsPerPixel) + "\\pichgoal" +
                     QByteArray::number(picture.height() * kTwipsPerPixel) + "\n";
    const QByteArray hex = bytes->toHex();
    for (qsizetype i = 0; i < hex.size(); i += 128) {
        out += hex.mid(i, 128) + '\n';
    }
    out += "}\\par\n}\n";
    return out;
}

} // namespace kestrum::exports
