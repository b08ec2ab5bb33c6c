#pragma once

#include "CliRunner.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace kestrum::test {

// A project in a temporary folder driven through kestrum-cli, as the page kinds' export tests
// use it: made empty or as the demo report, pages put in as a host does or added from files,
// looked up by kind, and exported.
class CliProject
{
public:
    explicit CliProject(const QString& name = QStringLiteral("p.kst"));

    bool valid() const { return m_dir.isValid() && !CliRunner::program().isEmpty(); }
    const QString& path() const { return m_path; }
    // A file of the project's folder.
    QString file(const QString& name) const { return m_dir.filePath(name); }

    CliRunner::Result run(const QStringList& args) const;
    // `new` or `demo`: false (with a warning) when the command failed.
    bool create();
    bool createDemo();

    // The last page of `type` in `pages`; empty when there is none.
    QString pageOfType(qint32 type) const;
    // `put --type TYPE --info INFO --content FILE`: the new page id, empty on failure.
    QString put(qint32 type, const QString& info, const QByteArray& content) const;
    // `add FILE`: the page id of the node added (the fourth field of the line printed), empty
    // when none was; the run's result in `result` when wanted.
    QString add(const QString& fileName, CliRunner::Result* result = nullptr) const;
    // `export-page PROJECT PAGEID OUT` into file(outName).
    CliRunner::Result exportPage(const QString& pageId, const QString& outName) const;

    static QByteArray readFile(const QString& path);
    static bool writeFile(const QString& path, const QByteArray& bytes);

private:
    QTemporaryDir m_dir;
    QString m_path;
};

} // namespace kestrum::test
