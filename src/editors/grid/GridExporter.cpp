#include "GridExporter.h"

#include "editors/grid/AsciiTableWriter.h"
#include "editors/grid/DelimitedTextWriter.h"
#include "editors/grid/GridDocument.h"
#include "editors/grid/GridFileIo.h"
#include "editors/grid/HtmlTableWriter.h"
#include "editors/grid/RtfTableWriter.h"
#include "editors/grid/WgfFile.h"
#include "editors/grid/XlsWriter.h"
#include "editors/grid/XmlTableWriter.h"

#include <QFileInfo>

#include <array>

namespace kestrum::grid {

namespace {

constexpr std::array<const char*, 8> kExtensions{".TXT", ".TAB", ".CSV", ".XLS",
                                                 ".DOC", ".HTM", ".xml", ".WGF"};

} // namespace

QString GridExporter::saveTableFilter()
{
    return QStringLiteral(
        "ASCII file (*.txt)|*.TXT|Tab delimited (*.tab)|*.TAB|Comma delimited (*.csv)|*.CSV|"
        "Excel (*.xls)|*.XLS|MS Word (*.doc)|*.DOC|HTML file (*.htm;*.html)|*.HTM;*.HMTL|"
        "XML file (*.xml)|*.XML");
}

QString GridExporter::extensionFor(int format)
{
    if (format < 1 || format > int(kExtensions.size())) {
        return {};
    }
    return QString::fromLatin1(kExtensions[std::size_t(format - 1)]);
}

int GridExporter::formatFor(const QString& fileName, int filterIndex)
{
    const QString suffix = QFileInfo(fileName).suffix();
    if (!suffix.isEmpty()) {
        const QString typed = QLatin1Char('.') + suffix.toUpper();
        for (int i = 0; i < 7; ++i) {
            if (typed == QString::fromLatin1(kExtensions[std::size_t(i)]).toUpper()) {
                return i + 1;
            }
        }
    }
    return filterIndex;
}

QString GridExporter::fileNameFor(const QString& fileName, int format)
{
    const qsizetype slash =
        std::max(fileName.lastIndexOf(QLatin1Char('/')), fileName.lastIndexOf(QLatin1Char('\\')));
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    const QString base = dot > slash ? fileName.left(dot) : fileName;
    return base + extensionFor(format);
}

Result<QByteArray> GridExporter::encode(const GridDocument& grid, int format)
{
    switch (format) {
    case ExportFormat::Ascii:
        return AsciiTableWriter::write(grid);
    case ExportFormat::TabDelimited:
        return DelimitedTextWriter::write(grid, QLatin1Char('\t'));
    case ExportFormat::CommaDelimited:
        return DelimitedTextWriter::write(grid, QLatin1Char(','));
    case ExportFormat::Excel:
        return XlsWriter::write(grid);
    case ExportFormat::Word:
        return RtfTableWriter::write(grid);
    case ExportFormat::Html:
        return HtmlTableWriter::document(grid);
    case ExportFormat::Xml:
        return XmlTableWriter::write(grid);
    case ExportFormat::Native:
        return WgfFile::encode(grid);
    default:
        return fail(QStringLiteral("unknown table format %1").arg(format));
    }
}

Status GridExporter::exportGrid(GridDocument* grid, const QString& fileName, int format)
{
    if (format == ExportFormat::Xml) {
        grid->setFixedRows(1);
    }
    const Result<QByteArray> bytes = encode(*grid, format);
    if (!bytes) {
        return fail(QStringLiteral("Cannot write \"%1\": %2").arg(fileName, bytes.error()));
    }
    return writeWholeFile(fileName, *bytes);
}

} // namespace kestrum::grid
