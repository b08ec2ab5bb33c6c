// export-page PROJECT PAGEID OUT: one page to a file whose extension chooses the format.

#include "cli/CommandTable.h"

#include "export/PageExports.h"
#include "store/PageTable.h"
#include "store/ProjectReader.h"

namespace kestrum::cli {

void registerExportPageCommand(CommandTable& table)
{
    auto run = [](ArgList& args, CliIo&) {
        const QStringList pos = args.positional();
        if (pos.size() != 3) {
            throw CliError{kExitUsage, QStringLiteral("export-page needs PROJECT PAGEID OUT")};
        }
        const int pageId = ArgList::toInt(pos[1], QStringLiteral("PAGEID"));
        store::ProjectReader project;
        checked(project.open(pos[0]));
        const std::optional<qint32> type = checked(project.table().readType(pageId));
        if (!type) {
            throw CliError{kExitBadInput,
                           QStringLiteral("\"%1\" has no page %2").arg(pos[0]).arg(pageId)};
        }
        exports::PageSource page;
        page.pageId = pageId;
        page.pageType = *type;
        page.content = checked(project.table().readContent(pageId)).value_or(QByteArray());
        page.info = checked(project.table().readInfo(pageId)).value_or(QString());
        if (const Status written = exports::exportPage(page, pos[2]); !written) {
            throw CliError{kExitBadInput, written.error()};
        }
        return kExitOk;
    };
    table.add({QStringLiteral("export-page"), QStringLiteral("PROJECT PAGEID OUT"),
               QStringLiteral("write one page to OUT; the extension chooses the format"), true,
               run});
}

} // namespace kestrum::cli
