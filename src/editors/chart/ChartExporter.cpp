#include "ChartExporter.h"

#include "editors/chart/ChartStream.h"

#include <QBuffer>
#include <QFile>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QSvgGenerator>

namespace kestrum::chart {

namespace {

constexpr qint64 kMaxChartFile = 512LL * 1024 * 1024;

QByteArray svg(const Chart& chart, QSize size, const RenderOptions& options)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(0, 0), size));
    generator.setTitle(chart.title.isEmpty() ? QStringLiteral("Chart") : chart.title);
    QPainter painter(&generator);
    ChartRenderer::paint(painter, QRectF(QPointF(0, 0), QSizeF(size)), chart, options);
    painter.end();
    return bytes;
}

} // namespace

std::optional<ChartFileFormat> ChartExporter::formatForSuffix(const QString& suffix)
{
    QString s = suffix.toLower();
    if (s.startsWith(QLatin1Char('.'))) {
        s.remove(0, 1);
    }
    if (s == QLatin1String("wsx")) {
        return ChartFileFormat::Native;
    }
    if (s == QLatin1String("bmp")) {
        return ChartFileFormat::Bmp;
    }
    if (s == QLatin1String("svg") || s == QLatin1String("wmf") || s == QLatin1String("emf")) {
        return ChartFileFormat::Svg;
    }
    if (s == QLatin1String("png")) {
        return ChartFileFormat::Png;
    }
    if (s == QLatin1String("jpg") || s == QLatin1String("jpeg")) {
        return ChartFileFormat::Jpeg;
    }
    if (s == QLatin1String("pdf")) {
        return ChartFileFormat::Pdf;
    }
    return std::nullopt;
}

Result<QByteArray> ChartExporter::picture(const Chart& chart, ChartFileFormat format, QSize size,
                                          const RenderOptions& options)
{
    size = size.expandedTo(QSize(16, 16)).boundedTo(QSize(16384, 16384));
    if (format == ChartFileFormat::Svg) {
        return svg(chart, size, options);
    }
    const char* imageFormat = format == ChartFileFormat::Bmp    ? "BMP"
                              : format == ChartFileFormat::Png  ? "PNG"
                              : format == ChartFileFormat::Jpeg ? "JPG"
                                                                : nullptr;
    if (!imageFormat) {
        return fail(QStringLiteral("not a picture format"));
    }
    const QImage image = ChartRenderer::image(chart, size, options);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, imageFormat, format == ChartFileFormat::Jpeg ? 90 : -1)) {
        return fail(
            QStringLiteral("the chart cannot be encoded as %1").arg(QLatin1String(imageFormat)));
    }
    return bytes;
}

QByteArray ChartExporter::pdf(const Chart& chart, QSize size, const RenderOptions& options)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setTitle(chart.title.isEmpty() ? QStringLiteral("Chart") : chart.title);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageOrientation(size.width() >= size.height() ? QPageLayout::Landscape
                                                            : QPageLayout::Portrait);
    writer.setPageMargins(QMarginsF(5, 5, 5, 5), QPageLayout::Millimeter);
    writer.setResolution(300);
    QPainter painter(&writer);
    // Drawn at the chart's own size, scaled to the page so that text keeps its proportions.
    const QRect page = painter.viewport();
    const double scale =
        std::min(page.width() / double(size.width()), page.height() / double(size.height()));
    painter.scale(scale, scale);
    ChartRenderer::paint(painter, QRectF(QPointF(0, 0), QSizeF(size)), chart, options);
    painter.end();
    return bytes;
}

Status ChartExporter::write(const Chart& chart, const QString& fileName, ChartFileFormat format,
                            QSize size, const RenderOptions& options)
{
    QByteArray bytes;
    if (format == ChartFileFormat::Native) {
        bytes = ChartStream::write(chart);
    } else if (format == ChartFileFormat::Pdf) {
        bytes = pdf(chart, size, options);
    } else {
        Result<QByteArray> picture = ChartExporter::picture(chart, format, size, options);
        if (!picture) {
            return fail(picture.error());
        }
        bytes = std::move(*picture);
    }
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        return fail(QStringLiteral("Cannot write \"%1\": %2").arg(fileName, file.errorString()));
    }
    return {};
}

Result<Chart> ChartExporter::readFile(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        return fail(QStringLiteral("Cannot read \"%1\": %2").arg(fileName, file.errorString()));
    }
    if (file.size() > kMaxChartFile) {
        return fail(QStringLiteral("\"%1\" is too large for a chart file").arg(fileName));
    }
    Result<Chart> chart = ChartStream::read(file.readAll());
    if (!chart) {
        return fail(
            QStringLiteral("\"%1\" cannot be read as a chart: %2").arg(fileName, chart.error()));
    }
    return chart;
}

} // namespace kestrum::chart
