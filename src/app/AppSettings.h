#pragma once

#include "common/IniFile.h"

#include <QRect>
#include <QStringList>

namespace kestrum::app {

// The program's settings file, "Kestrum.INI" in the folder "Ondrel Research" under the user's
// application-data folder (copied there from beside the executable on first use): window
// layout, language, recent projects.
class AppSettings
{
public:
    explicit AppSettings(QString path);

    // Where the settings live; creates the folder and copies the file shipped beside the
    // executable when the user has none yet.
    static QString defaultPath();

    struct Layout
    {
        int state = 0; // 0 normal, 1 minimised, 2 maximised
        QRect geometry;
        int commentHeight = 0;
        int leftPanelWidth = 0;
    };
    Layout layout() const;
    void setLayout(const Layout& layout);

    QString language() const;
    QStringList recentProjects() const;
    void addRecentProject(const QString& path);
    void removeRecentProject(const QString& path);
    QString lastProject() const;

    bool save();
    const QString& path() const { return m_ini.path(); }

    static constexpr int kMaxRecent = 8;

private:
    void writeRecent(const QStringList& files);

    common::IniFile m_ini;
};

} // namespace kestrum::app
