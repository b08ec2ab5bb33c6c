#pragma once

#include "common/Result.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace kestrum::common {

// A small sections-and-keys settings file. Unlike QSettings it keeps keys exactly as written
// (spaces included, "Public File Name"), looks sections and keys up case-insensitively, and
// preserves comments, order and line endings of the lines it does not change.
class IniFile
{
public:
    explicit IniFile(QString path = {});

    const QString& path() const { return m_path; }

    // Reads the file; a missing file reads as an empty set. Fails when the file exists but
    // cannot be read.
    Status load();
    // Replaces the file atomically with the current content.
    Status save() const;
    // Parses text already in memory (used by load and by tests).
    void parse(const QString& text);
    QString toText() const;

    QString readString(const QString& section, const QString& key,
                       const QString& defaultValue = {}) const;
    int readInteger(const QString& section, const QString& key, int defaultValue) const;
    bool readBool(const QString& section, const QString& key, bool defaultValue) const;
    bool hasKey(const QString& section, const QString& key) const;

    void writeString(const QString& section, const QString& key, const QString& value);
    void writeInteger(const QString& section, const QString& key, int value);
    void writeBool(const QString& section, const QString& key, bool value);
    void deleteKey(const QString& section, const QString& key);

    QStringList sections() const;
    QStringList keys(const QString& section) const;

private:
    enum class LineKind
    {
        Other,
        Section,
        Entry
    };
    struct Line
    {
        LineKind kind = LineKind::Other;
        QString raw;   // the line as read, for Other lines
        QString name;  // section name or key
        QString value; // entry value
    };

    qsizetype findSection(const QString& section) const;
    qsizetype findEntry(const QString& section, const QString& key) const;

    QString m_path;
    std::vector<Line> m_lines;
    bool m_crlf = false;
    bool m_latin1 = false;
};

} // namespace kestrum::common
