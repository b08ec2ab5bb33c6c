// outline PROJECT OP INDEX [ARGS]: the outline commands of the desktop, on node INDEX.
// recover PROJECT: pages without an item come back under "Recovered items".

#include "cli/CommandTable.h"
#include "cli/ProjectSession.h"

#include "common/Colour.h"
#include "common/TabFields.h"
#include "store/OutlineCommands.h"
#include "store/OutlineModel.h"

namespace kestrum::cli {

namespace {

using store::OutlineNode;

std::optional<common::TColor> parseColour(const QString& name)
{
    const QString n = name.toLower();
    if (n == QLatin1String("white")) {
        return std::nullopt;
    }
    if (n == QLatin1String("yellow")) {
        return common::TColor(0x00FFFF);
    }
    if (n == QLatin1String("red")) {
        return common::TColor(0x0000FF);
    }
    if (n == QLatin1String("green")) {
        return common::TColor(0x00FF00);
    }
    if (n == QLatin1String("blue")) {
        return common::TColor(0xFFFF00); // the outline's "Blue" mark shows as aqua
    }
    common::TColor colour = 0;
    if (n.startsWith(QLatin1Char('#')) && common::colourFromString(n, &colour)) {
        return colour;
    }
    throw CliError{kExitUsage, QStringLiteral("unknown colour \"%1\" (white, yellow, red, green, "
                                              "blue or #RRGGBB)")
                                   .arg(name)};
}

int runOutline(ArgList& args, CliIo& io)
{
    const bool folder = args.takeFlag(QStringLiteral("--folder"));
    const bool after = args.takeFlag(QStringLiteral("--after"));
    const bool ctrl = args.takeFlag(QStringLiteral("--ctrl"));
    const QString title =
        args.takeOption(QStringLiteral("--title")).value_or(QStringLiteral("{untitled}"));
    const QStringList pos = args.positional();
    if (pos.size() < 3) {
        throw CliError{kExitUsage, QStringLiteral("outline needs PROJECT OP INDEX")};
    }
    const QString op = pos[1];
    const int index = ArgList::toInt(pos[2], QStringLiteral("INDEX"));
    const QStringList rest = pos.mid(3);
    auto needArgs = [&](int n) {
        if (rest.size() != n) {
            throw CliError{
                kExitUsage,
                QStringLiteral("outline %1 takes %2 argument(s) after INDEX").arg(op).arg(n)};
        }
    };

    // Everything that can be refused without the project is refused before it is opened.
    static const QStringList kOps{"new", "delete", "rename",  "colour", "color",
                                  "up",  "down",   "promote", "demote", "drop"};
    if (!kOps.contains(op)) {
        throw CliError{kExitUsage, QStringLiteral("unknown outline command \"%1\"").arg(op)};
    }
    std::optional<common::TColor> colour;
    if (op == QLatin1String("colour") || op == QLatin1String("color")) {
        needArgs(1);
        colour = parseColour(rest[0]);
    }

    ProjectSession session(&io);
    store::TRMData& data = session.open(pos[0]);
    store::OutlineModel& outline = data.outline();
    // A refused command leaves the file as it was: not even the selection is written.
    auto restoreAndThrow = [&](CliError error) {
        data.closeUnchanged();
        throw error;
    };
    OutlineNode* node = outline.nodeAt(index);
    if (!node) {
        restoreAndThrow({kExitBadInput, QStringLiteral("the outline has no node %1").arg(index)});
    }
    outline.setSelected(node);
    store::OutlineCommands commands(data);
    auto refuse = [&](const QString& why) {
        restoreAndThrow(
            {kExitBadInput, QStringLiteral("cannot %1 node %2: %3").arg(op).arg(index).arg(why)});
    };

    if (op == QLatin1String("new")) {
        needArgs(0);
        const OutlineNode* added = checked(commands.newItem(node, {folder, after, title}));
        io.out << outline.indexOf(added) << '\t' << added->level() << '\t' << added->imageIndex()
               << '\t' << added->data() << '\t' << common::escapeTabs(added->caption()) << '\n';
    } else if (op == QLatin1String("delete")) {
        needArgs(0);
        if (index == 0) {
            refuse(QStringLiteral("the project node is never deleted"));
        }
        checked(commands.deleteItem(node));
    } else if (op == QLatin1String("rename")) {
        needArgs(1);
        checked(commands.rename(node, rest[0]));
    } else if (op == QLatin1String("colour") || op == QLatin1String("color")) {
        checked(commands.setColour(node, colour));
    } else if (op == QLatin1String("up")) {
        needArgs(0);
        if (!checked(commands.moveUp(node))) {
            refuse(QStringLiteral("it is the first of its siblings"));
        }
    } else if (op == QLatin1String("down")) {
        needArgs(0);
        if (!checked(commands.moveDown(node))) {
            refuse(QStringLiteral("it is the last of its siblings"));
        }
    } else if (op == QLatin1String("promote")) {
        needArgs(0);
        if (!checked(commands.promote(node))) {
            refuse(QStringLiteral("it is not below the first level"));
        }
    } else if (op == QLatin1String("demote")) {
        needArgs(0);
        if (!checked(commands.demote(node))) {
            refuse(QStringLiteral("the node above it is not at its level or deeper"));
        }
    } else if (op == QLatin1String("drop")) {
        needArgs(1);
        OutlineNode* target = outline.nodeAt(ArgList::toInt(rest[0], QStringLiteral("TARGET")));
        if (!target) {
            restoreAndThrow(
                {kExitBadInput, QStringLiteral("the outline has no node %1").arg(rest[0])});
        }
        if (!checked(commands.drop(node, target, ctrl))) {
            refuse(QStringLiteral("it cannot be dropped on node %1").arg(rest[0]));
        }
    }
    data.CloseFile();
    return kExitOk;
}

int runRecover(ArgList& args, CliIo& io)
{
    const QStringList pos = args.positional();
    if (pos.size() != 1) {
        throw CliError{kExitUsage, QStringLiteral("recover needs exactly one PROJECT")};
    }
    ProjectSession session(&io);
    store::TRMData& data = session.open(pos[0]);
    store::OutlineCommands commands(data);
    const std::vector<OutlineNode*> added = checked(commands.recoverPages());
    for (const OutlineNode* node : added) {
        io.out << data.outline().indexOf(node) << '\t' << node->level() << '\t'
               << node->imageIndex() << '\t' << node->data() << '\t'
               << common::escapeTabs(node->caption()) << '\n';
    }
    if (added.empty()) {
        io.err << "No page is without an item.\n";
        data.closeUnchanged();
    } else {
        io.err << added.size() << " page(s) recovered under \""
               << store::OutlineCommands::kRecoveredItems << "\"\n";
        data.CloseFile();
    }
    return kExitOk;
}

} // namespace

void registerOutlineCommand(CommandTable& table)
{
    table.add({QStringLiteral("recover"), QStringLiteral("PROJECT"),
               QStringLiteral("bring back every page that no item refers to, under \"Recovered "
                              "items\"; prints the items added"),
               true, runRecover});
    table.add(
        {QStringLiteral("outline"),
         QStringLiteral("PROJECT OP INDEX [ARGS]; OP: new [--folder] [--after] [--title T] | "
                        "delete | rename T | colour white|yellow|red|green|blue|#RRGGBB | up | "
                        "down | promote | demote | drop TARGET [--ctrl]"),
         QStringLiteral("run an outline command on node INDEX, as the desktop does"), true,
         runOutline});
}

} // namespace kestrum::cli
