#include "CloudPageExporter.h"

#include "CloudPageDocument.h"
#include "wordcloud/TprWordCloud.h"

#include <QBuffer>
#include <QFileInfo>
#include <QSaveFile>

namespace kestrum::wordcloud_page {

namespace {

using wordcloud::TprWordCloud;

const QSize kDefaultClient(800, 600);
// Twips per pixel at 96 dots per inch.
constexpr int kTwipsPerPixel = 15;

} // namespace

Result<std::unique_ptr<TprWordCloud>> CloudPageExporter::load(const QByteArray& content)
{
    auto cloud = std::make_unique<TprWordCloud>();
    if (!content.isEmpty()) {
        QByteArray bytes = content;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        // Read without a drawing area, so that the stored places are kept as they are.
        if (const Status loaded = cloud->LoadFromStream(buffer); !loaded) {
            return fail(
                QStringLiteral("the word cloud document is damaged: %1").arg(loaded.error()));
        }
    }
    const wordcloud::CloudRect stored = cloud->StartingCanvasRect();
    const QSize client = CloudPageDocument::storedClientSize(*cloud);
    cloud->SetClientSize(client.isEmpty() ? kDefaultClient : client);
    cloud->FitToCanvas(stored);
    return cloud;
}

Status CloudPageExporter::writeFile(const QByteArray& content, const QString& outFile)
{
    const QString extension = QFileInfo(outFile).suffix().toLower();
    if (extension == QLatin1String("xml")) {
        // The document as stored: other programs read it as the host wrote it.
        auto cloud = load(content);
        if (!cloud) {
            return fail(cloud.error());
        }
        QSaveFile file(outFile);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() ||
            !file.commit()) {
            return fail(QStringLiteral("cannot write %1: %2").arg(outFile, file.errorString()));
        }
        return {};
    }
    auto cloud = load(content);
    if (!cloud) {
        return fail(cloud.error());
    }
    return (*cloud)->SaveToPictureFile(outFile, extension);
}

Result<QByteArray> CloudPageExporter::png(const QByteArray& content)
{
    auto cloud = load(content);
    if (!cloud) {
        return fail(cloud.error());
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!(*cloud)->SaveToBitmap().save(&buffer, "PNG")) {
        return fail(QStringLiteral("cannot draw the word cloud"));
    }
    return bytes;
}

QByteArray CloudPageExporter::rtfPicture(const QImage& image)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    QByteArray out = "{\\pict\\pngblip\\picw" + QByteArray::number(image.width()) + "\\pich" +
                     QByteArray::number(image.height()) + "\\picwgoal" +
                     QByteArray::number(image.width() * kTwipsPerPixel) + "\\pichgoal" +
                     QByteArray::number(image.height() * kTwipsPerPixel) + "\n";
    const QByteArray hex = data.toHex();
    constexpr qsizetype kLine = 128;
    for (qsizetype i = 0; i < hex.size(); i += kLine) {
        out += hex.mid(i, kLine) + '\n';
    }
    out += '}';
    return out;
}

Result<QByteArray> CloudPageExporter::rtf(const QByteArray& content)
{
    auto cloud = load(content);
    if (!cloud) {
        return fail(cloud.error());
    }
    return QByteArray("{\\rtf1\\ansi\\deff0\n{\\pard ") + rtfPicture((*cloud)->SaveToBitmap()) +
           "\\par}\n}";
}

Result<QString> CloudPageExporter::text(const QByteArray& content)
{
    auto cloud = load(content);
    if (!cloud) {
        return fail(cloud.error());
    }
    QString out;
    for (const auto& word : (*cloud)->Words()) {
        if (word->Visible()) {
            out += word->Text() + QLatin1Char('\n');
        }
    }
    return out;
}

} // namespace kestrum::wordcloud_page
