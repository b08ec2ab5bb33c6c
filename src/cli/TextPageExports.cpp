// export-page for text pages: RTF, HTML (pictures in a "_files" folder beside it), plain text
// and OpenDocument text.

#include "cli/CommandTable.h"
#include "cli/PageExporters.h"

#include "editors/text/TextExporter.h"
#include "editors/text/TextPageDocument.h"

#include <QFileInfo>

namespace kestrum::cli {

void registerTextPageExporters(PageExporterTable& table)
{
    table.add(
        {store::EditorKind::Text,
         {QStringLiteral("rtf"), QStringLiteral("html"), QStringLiteral("htm"),
          QStringLiteral("txt"), QStringLiteral("odt")},
         [](const QByteArray& content, const QString&, const QString& outFile) {
             text::TextPageDocument document;
             QString error;
             if (!document.readContent(content, &error)) {
                 throw CliError{kExitBadInput, QStringLiteral("the page cannot be read: ") + error};
             }
             const auto format = text::TextExporter::formatForSuffix(QFileInfo(outFile).suffix());
             if (!format || !document.exportFile(outFile, *format, &error)) {
                 throw CliError{kExitBadInput, error};
             }
         }});
}

} // namespace kestrum::cli
