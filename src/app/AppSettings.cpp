#include "AppSettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace kestrum::app {

namespace {
const QString kMain = QStringLiteral("MAIN");
const QString kOptions = QStringLiteral("OPTIONS");
const QString kRecent = QStringLiteral("RECENT");
const QString kFileName = QStringLiteral("Kestrum.INI");
} // namespace

AppSettings::AppSettings(QString path) : m_ini(std::move(path))
{
    static_cast<void>(m_ini.load()); // a missing or unreadable file reads as the defaults
}

QString AppSettings::defaultPath()
{
    const QString shipped = QDir(QCoreApplication::applicationDirPath()).filePath(kFileName);
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (data.isEmpty()) {
        return shipped; // no application-data folder: beside the program
    }
    const QString folder = QDir(data).filePath(QStringLiteral("Ondrel Research"));
    QDir().mkpath(folder);
    const QString file = QDir(folder).filePath(kFileName);
    if (!QFile::exists(file) && QFile::exists(shipped)) {
        QFile::copy(shipped, file);
        QFile(file).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    }
    return file;
}

AppSettings::Layout AppSettings::layout() const
{
    Layout l;
    l.state = m_ini.readInteger(kMain, QStringLiteral("STATE"), 0);
    l.geometry = QRect(m_ini.readInteger(kMain, QStringLiteral("LEFT"), -1),
                       m_ini.readInteger(kMain, QStringLiteral("TOP"), -1),
                       m_ini.readInteger(kMain, QStringLiteral("WIDTH"), 0),
                       m_ini.readInteger(kMain, QStringLiteral("HEIGHT"), 0));
    l.commentHeight = m_ini.readInteger(kMain, QStringLiteral("COMMENT"), 0);
    l.leftPanelWidth = m_ini.readInteger(kMain, QStringLiteral("LEFT PANEL"), 0);
    return l;
}

void AppSettings::setLayout(const Layout& l)
{
    m_ini.writeInteger(kMain, QStringLiteral("STATE"), l.state);
    m_ini.writeInteger(kMain, QStringLiteral("LEFT"), l.geometry.x());
    m_ini.writeInteger(kMain, QStringLiteral("TOP"), l.geometry.y());
    m_ini.writeInteger(kMain, QStringLiteral("WIDTH"), l.geometry.width());
    m_ini.writeInteger(kMain, QStringLiteral("HEIGHT"), l.geometry.height());
    m_ini.writeInteger(kMain, QStringLiteral("COMMENT"), l.commentHeight);
    m_ini.writeInteger(kMain, QStringLiteral("LEFT PANEL"), l.leftPanelWidth);
}

QString AppSettings::language() const
{
    return m_ini.readString(kOptions, QStringLiteral("Language"), QStringLiteral("EN"));
}

QStringList AppSettings::recentProjects() const
{
    QStringList files;
    for (int i = 1; i <= kMaxRecent; ++i) {
        const QString f = m_ini.readString(kRecent, QStringLiteral("File%1").arg(i));
        if (!f.isEmpty() && !files.contains(f)) {
            files << f;
        }
    }
    return files;
}

void AppSettings::writeRecent(const QStringList& files)
{
    for (int i = 1; i <= kMaxRecent; ++i) {
        if (i <= files.size()) {
            m_ini.writeString(kRecent, QStringLiteral("File%1").arg(i), files[i - 1]);
        } else {
            m_ini.deleteKey(kRecent, QStringLiteral("File%1").arg(i));
        }
    }
}

void AppSettings::addRecentProject(const QString& path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    QStringList files = recentProjects();
    files.removeAll(absolute);
    files.prepend(absolute);
    writeRecent(files.mid(0, kMaxRecent));
}

void AppSettings::removeRecentProject(const QString& path)
{
    QStringList files = recentProjects();
    files.removeAll(QFileInfo(path).absoluteFilePath());
    writeRecent(files);
}

QString AppSettings::lastProject() const
{
    const QStringList files = recentProjects();
    return files.isEmpty() ? QString() : files.first();
}

bool AppSettings::save()
{
    return m_ini.save().ok();
}

} // namespace kestrum::app
