// Project commands: new, tree, pages, add, cat, put, intake, keep.

#include "cli/CommandTable.h"
#include "cli/ProjectSession.h"

#include "common/Colour.h"
#include "common/DayCount.h"
#include "common/TabFields.h"
#include "store/HandOffFile.h"
#include "store/OutlineModel.h"
#include "store/PageTable.h"
#include "store/ProjectReader.h"
#include "store/SqliteDatabase.h"
#include "store/TRMData.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>

namespace kestrum::cli {

namespace {

using store::OutlineNode;

QString nodeLine(int index, int level, const OutlineNode* node)
{
    return QStringLiteral("%1\t%2\t%3\t%4\t%5")
        .arg(index)
        .arg(level)
        .arg(node->imageIndex())
        .arg(node->data())
        .arg(common::escapeTabs(node->caption()));
}

QString colourColumns(const OutlineNode* node)
{
    if (node->fields().usesTreeColours) {
        return QStringLiteral("\tdefault\tdefault");
    }
    return QStringLiteral("\t%1\t%2")
        .arg(common::colourToString(node->fields().textColor),
             common::colourToString(node->fields().backColor));
}

int runNew(ArgList& args, CliIo& io)
{
    const QStringList pos = args.positional();
    if (pos.size() != 1) {
        throw CliError{kExitUsage, QStringLiteral("new needs exactly one PROJECT")};
    }
    ProjectSession session(&io);
    checked(session.data().DBCreate(pos[0]));
    session.data().CloseFile();
    return kExitOk;
}

int runTree(ArgList& args, CliIo& io)
{
    const bool colours = args.takeFlag(QStringLiteral("--colours"));
    const QStringList pos = args.positional();
    if (pos.size() != 1) {
        throw CliError{kExitUsage, QStringLiteral("tree needs exactly one PROJECT")};
    }
    store::ProjectReader project;
    checked(project.open(pos[0]));
    int index = 0;
    store::visitInOrder(project.outline(), [&](const OutlineNode* node, int level) {
        io.out << nodeLine(index++, level, node) << (colours ? colourColumns(node) : QString())
               << '\n';
    });
    return kExitOk;
}

int runPages(ArgList& args, CliIo& io)
{
    const QStringList pos = args.positional();
    if (pos.size() != 1) {
        throw CliError{kExitUsage, QStringLiteral("pages needs exactly one PROJECT")};
    }
    store::ProjectReader project;
    checked(project.open(pos[0]));
    for (const store::PageSummary& page : checked(project.table().summaries())) {
        const QDateTime when = common::fromDayCount(page.date);
        io.out << page.storedId << '\t' << page.type << '\t'
               << (when.isValid() ? when.toString(Qt::ISODate) : QStringLiteral("invalid")) << '\t'
               << (page.infoDamaged ? QStringLiteral("(damaged)") : common::escapeTabs(page.info))
               << '\n';
    }
    return kExitOk;
}

int runAdd(ArgList& args, CliIo& io)
{
    const int under = args.takeIntOption(QStringLiteral("--under")).value_or(0);
    const QStringList pos = args.positional();
    if (pos.size() < 2) {
        throw CliError{kExitUsage, QStringLiteral("add needs a PROJECT and at least one FILE")};
    }
    for (qsizetype i = 1; i < pos.size(); ++i) {
        if (!QFileInfo(pos[i]).isFile()) {
            throw CliError{kExitBadInput, QStringLiteral("\"%1\" is not a file").arg(pos[i])};
        }
    }
    ProjectSession session(&io);
    store::TRMData& data = session.open(pos[0]);
    OutlineNode* parent = data.outline().nodeAt(under);
    if (!parent) {
        throw CliError{kExitBadInput, QStringLiteral("the outline has no node %1").arg(under)};
    }
    for (qsizetype i = 1; i < pos.size(); ++i) {
        OutlineNode* node = checked(data.AppendFile(pos[i], parent, true));
        if (data.lastImportUnsaved()) {
            // The desktop leaves such a page modified, which stores it when the page is left.
            checked(data.writePageContent(node->data(), data.unsavedImport()));
        }
        io.out << nodeLine(data.outline().indexOf(node), node->level(), node) << '\n';
    }
    data.CloseFile();
    return kExitOk;
}

int runCat(ArgList& args, CliIo& io)
{
    const bool comment = args.takeFlag(QStringLiteral("--comment"));
    const bool info = args.takeFlag(QStringLiteral("--info"));
    const QStringList pos = args.positional();
    if (pos.size() != 2 || (comment && info)) {
        throw CliError{kExitUsage, QStringLiteral("cat needs PROJECT PAGEID and at most one of "
                                                  "--comment, --info")};
    }
    const int pageId = ArgList::toInt(pos[1], QStringLiteral("PAGEID"));
    store::ProjectReader project;
    checked(project.open(pos[0]));
    QByteArray bytes;
    if (comment || info) {
        const std::optional<QString> text = checked(comment ? project.table().readComment(pageId)
                                                            : project.table().readInfo(pageId));
        if (!text) {
            throw CliError{kExitBadInput,
                           QStringLiteral("\"%1\" has no page %2").arg(pos[0]).arg(pageId)};
        }
        bytes = text->toUtf8();
    } else {
        const std::optional<QByteArray> content = checked(project.table().readContent(pageId));
        if (!content) {
            throw CliError{kExitBadInput,
                           QStringLiteral("\"%1\" has no page %2").arg(pos[0]).arg(pageId)};
        }
        bytes = *content;
    }
    io.out.flush();
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stdout);
    std::fflush(stdout);
    return kExitOk;
}

int runPut(ArgList& args, CliIo& io)
{
    const std::optional<int> type = args.takeIntOption(QStringLiteral("--type"));
    const std::optional<QString> info = args.takeOption(QStringLiteral("--info"));
    const std::optional<QString> contentFile = args.takeOption(QStringLiteral("--content"));
    const QString comment = args.takeOption(QStringLiteral("--comment")).value_or(QString());
    const std::optional<QString> folder = args.takeOption(QStringLiteral("--folder"));
    const bool handOff = args.takeFlag(QStringLiteral("--handoff")) || folder.has_value();
    const QStringList pos = args.positional();
    if (pos.size() != 1 || !type || !info) {
        throw CliError{kExitUsage, QStringLiteral("put needs PROJECT, --type N and --info TEXT")};
    }
    QByteArray content;
    if (contentFile) {
        QFile file(*contentFile);
        if (!file.open(QIODevice::ReadOnly)) {
            throw CliError{
                kExitBadInput,
                QStringLiteral("Cannot read \"%1\": %2").arg(*contentFile, file.errorString())};
        }
        content = file.readAll();
    }
    QString handOffPath;
    if (handOff) {
        handOffPath = store::HandOffFile::nameFor(pos[0], true);
        if (handOffPath.isEmpty()) {
            throw CliError{
                kExitBadInput,
                QStringLiteral("\"%1\" is neither a session project (\".session\" in its "
                               "name) nor a kept-items project (\".sup\"): no hand-off "
                               "file belongs to it")
                    .arg(pos[0])};
        }
    }
    // What a host program does: a record in the table, no outline node.
    store::SqliteDatabase db;
    checked(db.open(pos[0], store::SqliteDatabase::OpenMode::ReadWrite));
    store::PageTable table(db);
    checked(table.validate(false));
    const qint32 id =
        checked(table.insert(common::currentDayCount(), *info, *type, content, comment));
    db.close();
    if (handOff) {
        // Written under a temporary name and renamed into place: an intake never reads it
        // half written.
        QSaveFile file(handOffPath);
        if (file.open(QIODevice::WriteOnly) && folder) {
            file.write(folder->toUtf8() + "\r\n");
        }
        if (!file.commit()) {
            throw CliError{
                kExitBadInput,
                QStringLiteral("Cannot write \"%1\": %2").arg(handOffPath, file.errorString())};
        }
    }
    io.out << id << '\n';
    return kExitOk;
}

int runIntake(ArgList& args, CliIo& io)
{
    const QStringList pos = args.positional();
    if (pos.size() != 1) {
        throw CliError{kExitUsage, QStringLiteral("intake needs exactly one PROJECT")};
    }
    ProjectSession session(&io);
    store::TRMData& data = session.data();
    std::vector<const OutlineNode*> added;
    QObject::connect(&data.outline(), &store::OutlineModel::nodesInserted, &data,
                     [&](OutlineNode* parent, int row, int count) {
                         if (parent) {
                             for (int i = 0; i < count; ++i) {
                                 added.push_back(parent->childAt(row + i));
                             }
                         }
                     });
    session.open(pos[0]);
    checked(data.pollHandOff());
    std::vector<std::pair<int, const OutlineNode*>> ordered;
    for (const OutlineNode* node : added) {
        ordered.emplace_back(data.outline().indexOf(node), node);
    }
    std::sort(ordered.begin(), ordered.end());
    for (const auto& [index, node] : ordered) {
        io.out << nodeLine(index, node->level(), node) << '\n';
    }
    data.CloseFile();
    return kExitOk;
}

int runKeep(ArgList& args, CliIo& io)
{
    const QStringList pos = args.positional();
    if (pos.size() != 2) {
        throw CliError{kExitUsage, QStringLiteral("keep needs PROJECT and INDEX")};
    }
    const int index = ArgList::toInt(pos[1], QStringLiteral("INDEX"));
    ProjectSession session(&io);
    store::TRMData& data = session.open(pos[0]);
    if (!data.outline().selectIndex(index)) {
        throw CliError{kExitBadInput, QStringLiteral("the outline has no node %1").arg(index)};
    }
    const int copied = checked(data.MoveToSup());
    const QString keptFile = data.keptItemsFileName();
    data.CloseFile();
    io.out << copied << '\t' << keptFile << '\n';
    return kExitOk;
}

} // namespace

void registerStoreCommands(CommandTable& table)
{
    table.add({QStringLiteral("new"), QStringLiteral("PROJECT"),
               QStringLiteral("create a project with two empty text pages"), false, runNew});
    table.add({QStringLiteral("tree"), QStringLiteral("PROJECT [--colours]"),
               QStringLiteral("the outline: index, level, image index, data, caption"), false,
               runTree});
    table.add({QStringLiteral("pages"), QStringLiteral("PROJECT"),
               QStringLiteral("the page records: PageId, PageType, PageDate, PageInfo"), false,
               runPages});
    table.add({QStringLiteral("add"), QStringLiteral("PROJECT FILE... [--under INDEX]"),
               QStringLiteral("append files as pages under outline node INDEX (default 0)"), true,
               runAdd});
    table.add({QStringLiteral("cat"), QStringLiteral("PROJECT PAGEID [--comment|--info]"),
               QStringLiteral("write a page's content (or comment, or title) to standard output"),
               false, runCat});
    table.add({QStringLiteral("put"),
               QStringLiteral("PROJECT --type N --info TEXT [--content FILE] [--comment TEXT] "
                              "[--handoff] [--folder CAPTION]"),
               QStringLiteral("append a record as a host program does (no outline node)"), false,
               runPut});
    table.add({QStringLiteral("intake"), QStringLiteral("PROJECT"),
               QStringLiteral("take in handed-over pages now; prints the nodes added"), true,
               runIntake});
    table.add({QStringLiteral("keep"), QStringLiteral("PROJECT INDEX"),
               QStringLiteral("keep node INDEX in the kept-items file; prints the count and file"),
               true, runKeep});
}

} // namespace kestrum::cli
