#include "CloudRenderer.h"

#include "CloudPalettes.h"
#include "CloudSvgWriter.h"
#include "TprWordCloud.h"
#include "common/Rounding.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImageWriter>
#include <QMimeData>
#include <QPainter>
#include <QSaveFile>

#include <algorithm>

namespace kestrum::wordcloud {

using common::roundHalfEven;
using common::TColor;

CloudRenderer::CloudRenderer(TprWordCloud& cloud) : m_cloud(cloud) {}

void CloudRenderer::clearCanvas(QPainter& painter) const
{
    const QColor background = common::toQColor(m_cloud.BackgroundColor());
    painter.fillRect(QRect(QPoint(0, 0), m_cloud.m_clientSize),
                     background.isValid() ? background : QColor(Qt::white));
}

void CloudRenderer::assignColors()
{
    if (m_cloud.m_usePalette) {
        const QList<TColor>& colours =
            m_cloud.m_palette == CloudPalettes::kCustom && !m_cloud.m_customColors.isEmpty()
                ? m_cloud.m_customColors
                : CloudPalettes::colours(m_cloud.m_palette);
        for (std::size_t i = 0; i < m_cloud.m_words.size(); ++i) {
            m_cloud.m_words[i]->SetTextColor(colours[qsizetype(i % std::size_t(colours.size()))]);
        }
    } else {
        m_cloud.m_gradient.GenerateColors();
        const qint64 span = qint64(m_cloud.m_maxWeight) - qint64(m_cloud.m_minWeight);
        for (auto& word : m_cloud.m_words) {
            const int p =
                span == 0 ? 100
                          : int(std::clamp<qint64>(
                                roundHalfEven(double(qint64(word->Weight()) - m_cloud.m_minWeight) /
                                              double(span) * 100.0),
                                -1, 101));
            word->SetTextColor(m_cloud.m_gradient.GetColor(p));
        }
    }
    for (auto& word : m_cloud.m_words) {
        word->SetBackgroundColor(m_cloud.BackgroundColor());
    }
}

void CloudRenderer::paint(QPainter& painter)
{
    clearCanvas(painter);
    assignColors();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setRenderHint(QPainter::TextAntialiasing, true);
    painter.setPen(Qt::NoPen);
    const TColor surface = m_cloud.BackgroundColor();
    for (const auto& word : m_cloud.m_words) {
        if (word->Visible()) {
            word->Paint(painter, surface);
        }
    }
    painter.restore();
}

QImage CloudRenderer::toBitmap()
{
    if (m_cloud.m_clientSize.isEmpty()) {
        return {};
    }
    QImage image(m_cloud.m_clientSize, QImage::Format_RGB32);
    QPainter painter(&image);
    paint(painter);
    painter.end();
    return image;
}

bool CloudRenderer::writeSvg(QIODevice& device)
{
    if (m_cloud.m_clientSize.isEmpty()) {
        return false;
    }
    assignColors();
    const QByteArray bytes = CloudSvgWriter::write(m_cloud);
    return device.write(bytes) == bytes.size();
}

bool CloudRenderer::writeSvg(const QString& fileName)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    return writeSvg(file) && file.commit();
}

Status CloudRenderer::writePictureFile(const QString& fileName, const QString& format)
{
    const QString f = format.toLower();
    if (m_cloud.m_clientSize.isEmpty()) {
        return fail(QStringLiteral("the cloud has no size"));
    }
    if (f == QLatin1String("svg")) {
        if (!writeSvg(fileName)) {
            return fail(QStringLiteral("cannot write %1").arg(fileName));
        }
        return {};
    }
    QByteArray writerFormat;
    int quality = -1;
    if (f == QLatin1String("png")) {
        writerFormat = "png";
    } else if (f == QLatin1String("bmp")) {
        writerFormat = "bmp";
    } else if (f == QLatin1String("jpg") || f == QLatin1String("jpeg")) {
        writerFormat = "jpeg";
        quality = 90;
    } else {
        return fail(QStringLiteral("unknown picture format \"%1\"").arg(format));
    }
    // Written under a temporary name and renamed into place: a reader never sees half a file.
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        return fail(QStringLiteral("cannot write %1: %2").arg(fileName, file.errorString()));
    }
    QImageWriter writer(&file, writerFormat);
    writer.setQuality(quality);
    if (!writer.write(toBitmap())) {
        file.cancelWriting();
        return fail(QStringLiteral("cannot write %1: %2").arg(fileName, writer.errorString()));
    }
    if (!file.commit()) {
        return fail(QStringLiteral("cannot write %1: %2").arg(fileName, file.errorString()));
    }
    return {};
}

void CloudRenderer::copyBitmap()
{
    QGuiApplication::clipboard()->setImage(toBitmap());
}

void CloudRenderer::copySvg()
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!writeSvg(buffer)) {
        return;
    }
    auto* mime = new QMimeData;
    mime->setData(QStringLiteral("image/svg+xml"), buffer.data());
    QGuiApplication::clipboard()->setMimeData(mime);
}

} // namespace kestrum::wordcloud
