// export-page PROJECT PAGEID OUT: one page to a file whose extension chooses the format.

#include "cli/CommandTable.h"
#include "cli/PageExporters.h"

#include "store/PageTable.h"
#include "store/ProjectReader.h"

#include <QFileInfo>

namespace kestrum::cli {

const PageExporter* PageExporterTable::find(store::EditorKind kind, const QString& extension) const
{
    for (const PageExporter& exporter : m_exporters) {
        if (exporter.kind == kind && exporter.extensions.contains(extension.toLower())) {
            return &exporter;
        }
    }
    return nullptr;
}

QStringList PageExporterTable::extensionsFor(store::EditorKind kind) const
{
    QStringList out;
    for (const PageExporter& exporter : m_exporters) {
        if (exporter.kind == kind) {
            for (const QString& ext : exporter.extensions) {
                out << QLatin1Char('.') + ext;
            }
        }
    }
    return out;
}

void registerExportPageCommand(CommandTable& table, const PageExporterTable& exporters)
{
    auto run = [exporters](ArgList& args, CliIo&) {
        const QStringList pos = args.positional();
        if (pos.size() != 3) {
            throw CliError{kExitUsage, QStringLiteral("export-page needs PROJECT PAGEID OUT")};
        }
        const int pageId = ArgList::toInt(pos[1], QStringLiteral("PAGEID"));
        store::ProjectReader project(pos[0]);
        const std::optional<qint32> type = project.table().readType(pageId);
        if (!type) {
            throw CliError{kExitBadInput, QStringLiteral("\"%1\" has no page %2").arg(pos[0]).arg(pageId)};
        }
        const store::EditorKind kind = store::editorKindFor(*type);
        const QString extension = QFileInfo(pos[2]).suffix();
        const PageExporter* exporter = exporters.find(kind, extension);
        if (!exporter) {
            const QStringList known = exporters.extensionsFor(kind);
            throw CliError{kExitBadInput,
                           known.isEmpty()
                               ? QStringLiteral("page %1 is a %2 page, which cannot be exported yet")
                                     .arg(pageId)
                                     .arg(store::pageKindName(*type))
                               : QStringLiteral("page %1 is a %2 page; it can be written as %3")
                                     .arg(pageId)
                                     .arg(store::pageKindName(*type), known.join(QLatin1Char(' ')))};
        }
        const QByteArray content = project.table().readContent(pageId).value_or(QByteArray());
        const QString info = project.table().readInfo(pageId).value_or(QString());
        exporter->write(content, info, pos[2]);
        return kExitOk;
    };
    table.add({QStringLiteral("export-page"), QStringLiteral("PROJECT PAGEID OUT"),
               QStringLiteral("write one page to OUT; the extension chooses the format"), true,
               run});
}

} // namespace kestrum::cli
