#pragma once

#include "common/Result.h"

#include <QString>
#include <QStringList>
#include <QTextStream>

#include <functional>
#include <optional>
#include <vector>

namespace kestrum::cli {

// Exit codes of kestrum-cli.
constexpr int kExitOk = 0;
constexpr int kExitBadInput = 1;
constexpr int kExitUsage = 2;

// Thrown by a command: `exitCode` kExitUsage for a malformed command line, kExitBadInput for
// input that cannot be used.
struct CliError
{
    int exitCode;
    QString message;
};

// What a core call gave, or a CliError (kExitBadInput) with the call's message when it failed:
// the commands stop at the first failure of the project file.
template <class T> T checked(Result<T> result)
{
    if (!result.ok()) {
        throw CliError{kExitBadInput, result.error()};
    }
    return std::move(result).value();
}

inline void checked(const Status& status)
{
    if (!status) {
        throw CliError{kExitBadInput, status.error()};
    }
}

// The arguments of one command: options are taken out by name, what is left is positional.
class ArgList
{
public:
    explicit ArgList(QStringList args) : m_args(std::move(args)) {}

    bool takeFlag(const QString& name);
    std::optional<QString> takeOption(const QString& name);
    std::optional<int> takeIntOption(const QString& name);
    // The remaining arguments; an unknown option among them is a usage error.
    QStringList positional() const;
    static int toInt(const QString& text, const QString& what);

private:
    QStringList m_args;
};

struct CliIo
{
    QTextStream& out;
    QTextStream& err;
};

struct CommandSpec
{
    QString name;
    QString usage;         // arguments after the name
    QString summary;       // one line
    bool needsGui = false; // fonts, text layout or painting
    std::function<int(ArgList&, CliIo&)> run;
};

class CommandTable
{
public:
    void add(CommandSpec command) { m_commands.push_back(std::move(command)); }
    const CommandSpec* find(const QString& name) const;
    const std::vector<CommandSpec>& all() const { return m_commands; }

private:
    std::vector<CommandSpec> m_commands;
};

// Each group of commands registers itself.
void registerStoreCommands(CommandTable& table);
void registerDemoCommand(CommandTable& table);
void registerOutlineCommand(CommandTable& table);
void registerCloudCommand(CommandTable& table);
// export-page: one page to a file, in the formats its kind registered.
void registerExportPageCommand(CommandTable& table);

} // namespace kestrum::cli
