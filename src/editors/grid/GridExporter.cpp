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

bool GridExporter::encode(const GridDocument& grid, int format, QByteArray* out, QString* error)
{
    switch (format) {
    case ExportFormat::Ascii:
        *out = AsciiTableWriter::write(grid);
        return true;
    case ExportFormat::TabDelimited:
        *out = DelimitedTextWriter::write(grid, QLatin1Char('\t'));
        return true;
    case ExportFormat::CommaDelimited:
        *out = DelimitedTextWriter::write(grid, QLatin1Char(','));
        return true;
    case ExportFormat::Excel:
        return XlsWriter::write(grid, out, error);
    case ExportFormat::Word:
        *out = RtfTableWriter::write(grid);
        return true;
    case ExportFormat::Html:
        *out = HtmlTableWriter::document(grid);
        return true;
    case ExportFormat::Xml:
        *out = XmlTableWriter::write(grid);
        return true;
    case ExportFormat::Native:
        *out = WgfFile::encode(grid);
        return true;
    default:
        if (error) {
            *error = QStringLiteral("unknown table format %1").arg(format);
        }
        return false;
    }
}

bool GridExporter::exportGrid(GridDocument* grid, const QString& fileName, int format,
                              QString* error)
{
    if (format == ExportFormat::Xml) {
        grid->setFixedRows(1);
    }
    QByteArray bytes;
    QString why;
    if (!encode(*grid, format, &bytes, &why)) {
        if (error) {
            *error = QStringLiteral("Cannot write \"%1\": %2").arg(fileName, why);
        }
        return false;
    }
    return writeWholeFile(fileName, bytes, error);
}

} // namespace kestrum::grid
