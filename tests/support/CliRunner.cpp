#include "CliRunner.h"

#include <QProcess>

namespace kestrum::test {

namespace {

// Far beyond what any command takes; a hang fails the test instead of the test timing out.
constexpr int TimeoutMs = 120000;

} // namespace

CliRunner::CliRunner(QString workingDirectory) : m_workingDirectory(std::move(workingDirectory)) {}

QString CliRunner::program()
{
    return qEnvironmentVariable("KESTRUM_CLI");
}

CliRunner::Result CliRunner::run(const QStringList& args) const
{
    QProcess process;
    if (!m_workingDirectory.isEmpty()) {
        process.setWorkingDirectory(m_workingDirectory);
    }
    process.start(program(), args);
    if (!process.waitForStarted()) {
        return {
            -1, {}, QStringLiteral("cannot start %1: %2").arg(program(), process.errorString())};
    }
    Result result;
    if (!process.waitForFinished(TimeoutMs)) {
        process.kill();
        process.waitForFinished();
        result.err = QStringLiteral("timed out after %1 s\n").arg(TimeoutMs / 1000);
    } else if (process.exitStatus() == QProcess::CrashExit) {
        result.err = QStringLiteral("crashed\n");
    } else {
        result.code = process.exitCode();
    }
    result.out = process.readAllStandardOutput();
    result.err += QString::fromUtf8(process.readAllStandardError());
    return result;
}

} // namespace kestrum::test
