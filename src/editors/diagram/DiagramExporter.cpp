#include "DiagramExporter.h"

#include "editors/diagram/DiagramDocument.h"
#include "editors/diagram/DiagramRenderer.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QSvgGenerator>

namespace kestrum::diagram {

namespace {

QByteArray encodeImage(const QImage& image, const char* format, int quality = -1)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, quality);
    return bytes;
}

QByteArray pdf(const DiagramDocument& diagram)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setCreator(QStringLiteral("Kestrum"));
    writer.setResolution(96);
    const QSize size = DiagramRenderer::pictureSize(diagram);
    // One page the size of the picture (96 pixels an inch).
    writer.setPageSize(
        QPageSize(QSizeF(size.width() * 72.0 / 96, size.height() * 72.0 / 96), QPageSize::Point));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    QPainter painter(&writer);
    DiagramRenderer::paintPicture(painter, diagram);
    painter.end();
    return bytes;
}

} // namespace

QByteArray DiagramExporter::png(const DiagramDocument& diagram)
{
    return encodeImage(DiagramRenderer::toImage(diagram), "PNG");
}

QByteArray DiagramExporter::svg(const DiagramDocument& diagram)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    const QSize size = DiagramRenderer::pictureSize(diagram);
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(0, 0), size));
    generator.setResolution(96);
    generator.setTitle(QStringLiteral("Diagram"));
    QPainter painter(&generator);
    DiagramRenderer::paintPicture(painter, diagram);
    painter.end();
    return bytes;
}

Status DiagramExporter::writeFile(const DiagramDocument& diagram, const QString& fileName)
{
    const QString ext = QFileInfo(fileName).suffix().toLower();
    QByteArray bytes;
    if (ext == QLatin1String("png")) {
        bytes = png(diagram);
    } else if (ext == QLatin1String("jpg") || ext == QLatin1String("jpeg")) {
        bytes = encodeImage(DiagramRenderer::toImage(diagram), "JPEG", 90);
    } else if (ext == QLatin1String("bmp")) {
        bytes = encodeImage(DiagramRenderer::toImage(diagram), "BMP");
    } else if (ext == QLatin1String("svg")) {
        bytes = svg(diagram);
    } else if (ext == QLatin1String("pdf")) {
        bytes = pdf(diagram);
    } else {
        return fail(QStringLiteral("a diagram cannot be written as .%1").arg(ext));
    }
    if (bytes.isEmpty()) {
        return fail(QStringLiteral("the picture for %1 could not be made").arg(fileName));
    }
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        return fail(QStringLiteral("cannot write %1: %2").arg(fileName, file.errorString()));
    }
    return {};
}

QByteArray DiagramExporter::rtf(const DiagramDocument& diagram)
{
    const QImage image = DiagramRenderer::toImage(diagram);
    const QByteArray picture = encodeImage(image, "PNG");
    // Twips at 96 pixels an inch: 15 a pixel.
    QByteArray out = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\n{\\pard{\\pict\\pngblip";
    out += "\\picw" + QByteArray::number(image.width()) + "\\pich" +
           QByteArray::number(image.height());
    out += "\\picwgoal" + QByteArray::number(image.width() * 15) + "\\pichgoal" +
           QByteArray::number(image.height() * 15) + "\n";
    const QByteArray hex = picture.toHex();
    for (qsizetype i = 0; i < hex.size(); i += 128) {
        out += hex.mid(i, 128);
        out += '\n';
    }
    out += "}\\par}\n}";
    return out;
}

QString DiagramExporter::text(const DiagramDocument& diagram)
{
    QString out;
    const auto add = [&out](const std::vector<DiagramTextCell>& cells) {
        const DiagramTextCell* cell = DiagramDocument::firstCell(cells);
        if (cell && !cell->text.isEmpty()) {
            out += cell->text;
            out += QLatin1Char('\n');
        }
    };
    for (const DiagramBlock& b : diagram.blocks()) {
        add(b.cells);
    }
    for (const DiagramLink& l : diagram.links()) {
        add(l.cells);
    }
    return out;
}

} // namespace kestrum::diagram
