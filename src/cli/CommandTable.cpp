#include "CommandTable.h"

namespace kestrum::cli {

bool ArgList::takeFlag(const QString& name)
{
    const qsizetype i = m_args.indexOf(name);
    if (i < 0) {
        return false;
    }
    m_args.removeAt(i);
    return true;
}

std::optional<QString> ArgList::takeOption(const QString& name)
{
    const qsizetype i = m_args.indexOf(name);
    if (i < 0) {
        return std::nullopt;
    }
    if (i + 1 >= m_args.size()) {
        throw CliError{kExitUsage, QStringLiteral("%1 needs a value").arg(name)};
    }
    QString value = m_args.at(i + 1);
    m_args.remove(i, 2);
    return value;
}

std::optional<int> ArgList::takeIntOption(const QString& name)
{
    const std::optional<QString> value = takeOption(name);
    if (!value) {
        return std::nullopt;
    }
    return toInt(*value, name);
}

QStringList ArgList::positional() const
{
    for (const QString& arg : m_args) {
        if (arg.startsWith(QLatin1String("--"))) {
            throw CliError{kExitUsage, QStringLiteral("unknown option %1").arg(arg)};
        }
    }
    return m_args;
}

int ArgList::toInt(const QString& text, const QString& what)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok) {
        throw CliError{kExitUsage,
                       QStringLiteral("%1: \"%2\" is not a whole number").arg(what, text)};
    }
    return value;
}

const CommandSpec* CommandTable::find(const QString& name) const
{
    for (const CommandSpec& command : m_commands) {
        if (command.name == name) {
            return &command;
        }
    }
    return nullptr;
}

} // namespace kestrum::cli
