#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace kestrum::test {

// Runs the kestrum-cli of this build (the path is in the KESTRUM_CLI environment variable the
// test environment sets) as a host script does: a real process on real files. Collects the
// exit code and both outputs.
class CliRunner
{
public:
    struct Result
    {
        int code = -1;  // the exit code; -1 when the program did not start, crashed or hung
        QByteArray out; // standard output, as written
        QString err;    // standard error; says what happened when code is -1 for those reasons
        QString text() const { return QString::fromUtf8(out); }
    };

    // Runs in workingDirectory; empty: in the test's own.
    explicit CliRunner(QString workingDirectory = {});

    static QString program();
    Result run(const QStringList& args) const;

private:
    QString m_workingDirectory;
};

} // namespace kestrum::test
