#include "CliProject.h"

#include <QDebug>
#include <QFile>

namespace kestrum::test {

CliProject::CliProject(const QString& name) : m_path(m_dir.filePath(name)) {}

CliRunner::Result CliProject::run(const QStringList& args) const
{
    return CliRunner(m_dir.path()).run(args);
}

bool CliProject::create()
{
    const CliRunner::Result made = run({QStringLiteral("new"), m_path});
    if (made.code != 0) {
        qWarning() << "kestrum-cli new:" << made.err;
    }
    return made.code == 0;
}

bool CliProject::createDemo()
{
    const CliRunner::Result made = run({QStringLiteral("demo"), m_path});
    if (made.code != 0) {
        qWarning() << "kestrum-cli demo:" << made.err;
    }
    return made.code == 0;
}

QString CliProject::pageOfType(qint32 type) const
{
    const CliRunner::Result pages = run({QStringLiteral("pages"), m_path});
    QString id;
    for (const QString& line : pages.text().split(QLatin1Char('\n'))) {
        const QStringList fields = line.split(QLatin1Char('\t'));
        if (fields.size() >= 2 && fields[1] == QString::number(type)) {
            id = fields[0];
        }
    }
    return id;
}

QString CliProject::put(qint32 type, const QString& info, const QByteArray& content) const
{
    const QString contentFile = file(QStringLiteral("put-content.bin"));
    if (!writeFile(contentFile, content)) {
        return {};
    }
    const CliRunner::Result put =
        run({QStringLiteral("put"), m_path, QStringLiteral("--type"), QString::number(type),
             QStringLiteral("--info"), info, QStringLiteral("--content"), contentFile});
    if (put.code != 0) {
        qWarning() << "kestrum-cli put:" << put.err;
        return {};
    }
    return put.text().trimmed();
}

QString CliProject::add(const QString& fileName, CliRunner::Result* result) const
{
    const CliRunner::Result added = run({QStringLiteral("add"), m_path, fileName});
    if (result) {
        *result = added;
    }
    const QStringList fields = added.text().trimmed().split(QLatin1Char('\t'));
    return added.code == 0 && fields.size() >= 4 ? fields[3] : QString();
}

CliRunner::Result CliProject::exportPage(const QString& pageId, const QString& outName) const
{
    return run({QStringLiteral("export-page"), m_path, pageId, file(outName)});
}

QByteArray CliProject::readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

bool CliProject::writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
}

} // namespace kestrum::test
