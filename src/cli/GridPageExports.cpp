// export-page for grid pages: the page's grid stream written in the format of OUT's extension.

#include "cli/CommandTable.h"
#include "cli/PageExporters.h"

#include "editors/grid/GridDocument.h"
#include "editors/grid/GridExporter.h"
#include "editors/grid/GridStream.h"

namespace kestrum::cli {

namespace {

void writeGrid(const QByteArray& content, const QString& outFile, int format)
{
    grid::GridDocument document;
    QString error;
    if (!content.isEmpty() && !grid::GridStream::read(content, &document, &error)) {
        throw CliError{kExitBadInput, error};
    }
    if (!grid::GridExporter::exportGrid(&document, outFile, format, &error)) {
        throw CliError{kExitBadInput, error};
    }
}

} // namespace

void registerGridPageExporters(PageExporterTable& exporters)
{
    const struct
    {
        QStringList extensions;
        int format;
    } formats[] = {
        {{QStringLiteral("txt")}, grid::ExportFormat::Ascii},
        {{QStringLiteral("tab")}, grid::ExportFormat::TabDelimited},
        {{QStringLiteral("csv")}, grid::ExportFormat::CommaDelimited},
        {{QStringLiteral("xls")}, grid::ExportFormat::Excel},
        {{QStringLiteral("doc")}, grid::ExportFormat::Word},
        {{QStringLiteral("htm"), QStringLiteral("html")}, grid::ExportFormat::Html},
        {{QStringLiteral("xml")}, grid::ExportFormat::Xml},
        {{QStringLiteral("wgf")}, grid::ExportFormat::Native},
    };
    for (const auto& f : formats) {
        const int format = f.format;
        exporters.add({store::EditorKind::Grid, f.extensions,
                       [format](const QByteArray& content, const QString&, const QString& outFile) {
                           writeGrid(content, outFile, format);
                       }});
    }
}

} // namespace kestrum::cli
