// kestrum-cli: the headless face of the Kestrum core. Tab-separated output; exit 0 on success,
// 1 with a message on standard error for input that cannot be used, 2 for a usage error.

#include "cli/CommandTable.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QGuiApplication>

#include <unistd.h>

#include <cstdio>
#include <memory>

using namespace kestrum::cli;

namespace {

void printUsage(const CommandTable& table, QTextStream& to)
{
    to << "usage: kestrum-cli COMMAND [ARGS]\n\ncommands:\n";
    for (const CommandSpec& command : table.all()) {
        to << "  " << command.name << ' ' << command.usage << "\n      " << command.summary << '\n';
    }
}

} // namespace

int main(int argc, char** argv)
{
    CommandTable table;
    registerStoreCommands(table);
    registerDemoCommand(table);
    registerOutlineCommand(table);
    registerCloudCommand(table);
    registerExportPageCommand(table);

    QTextStream out(stdout);
    QTextStream err(stderr);
    CliIo io{out, err};

    QStringList args;
    for (int i = 1; i < argc; ++i) {
        args << QString::fromLocal8Bit(argv[i]);
    }
    if (args.isEmpty() || args[0] == QLatin1String("--help") || args[0] == QLatin1String("-h")) {
        printUsage(table, args.isEmpty() ? err : out);
        return args.isEmpty() ? kExitUsage : kExitOk;
    }
    const CommandSpec* command = table.find(args[0]);
    if (!command) {
        err << "kestrum-cli: unknown command \"" << args[0] << "\"\n";
        printUsage(table, err);
        return kExitUsage;
    }

    std::unique_ptr<QCoreApplication> app;
    if (command->needsGui) {
        // A private runtime folder, as the desktop session would give (silences Qt's warning).
        if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
            const QByteArray runtime =
                QDir::tempPath().toLocal8Bit() + "/kestrum-runtime-" + QByteArray::number(getuid());
            QDir().mkpath(QString::fromLocal8Bit(runtime));
            QFile::setPermissions(QString::fromLocal8Bit(runtime), QFileDevice::ReadOwner |
                                                                       QFileDevice::WriteOwner |
                                                                       QFileDevice::ExeOwner);
            qputenv("XDG_RUNTIME_DIR", runtime);
        }
        // Fonts and painting without a display.
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        app = std::make_unique<QGuiApplication>(argc, argv);
    } else {
        app = std::make_unique<QCoreApplication>(argc, argv);
    }
    QCoreApplication::setApplicationName(QStringLiteral("kestrum-cli"));

    ArgList commandArgs(args.mid(1));
    try {
        const int code = command->run(commandArgs, io);
        out.flush();
        return code;
    } catch (const CliError& e) {
        out.flush();
        err << "kestrum-cli " << command->name << ": " << e.message << '\n';
        if (e.exitCode == kExitUsage) {
            err << "usage: kestrum-cli " << command->name << ' ' << command->usage << '\n';
        }
        return e.exitCode;
    }
}
