#include "IniFile.h"

#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>

namespace kestrum::common {

namespace {
// Settings files are small; anything larger is not one of ours.
constexpr qint64 kMaxIniBytes = 16 * 1024 * 1024;
} // namespace

IniFile::IniFile(QString path) : m_path(std::move(path)) {}

Status IniFile::load()
{
    m_lines.clear();
    QFile file(m_path);
    if (!file.exists()) {
        return {};
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return fail(QStringLiteral("Cannot read \"%1\": %2").arg(m_path, file.errorString()));
    }
    if (file.size() > kMaxIniBytes) {
        return fail(QStringLiteral("\"%1\" is too large to be a settings file").arg(m_path));
    }
    QByteArray bytes = file.readAll();
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        bytes.remove(0, 3);
    }
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(bytes);
    m_latin1 = utf8.hasError();
    if (m_latin1) {
        text = QString::fromLatin1(bytes);
    }
    m_crlf = bytes.contains("\r\n");
    parse(text);
    return {};
}

void IniFile::parse(const QString& text)
{
    m_lines.clear();
    QString normalised = text;
    normalised.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    const QStringList rows = normalised.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const QString& row = rows[i];
        if (i == rows.size() - 1 && row.isEmpty()) {
            break; // the final line break
        }
        Line line;
        line.raw = row;
        const QString trimmed = row.trimmed();
        if (trimmed.startsWith(QLatin1Char('[')) && trimmed.endsWith(QLatin1Char(']'))) {
            line.kind = LineKind::Section;
            line.name = trimmed.mid(1, trimmed.size() - 2).trimmed();
        } else if (!trimmed.startsWith(QLatin1Char(';')) && !trimmed.startsWith(QLatin1Char('#')) &&
                   trimmed.contains(QLatin1Char('='))) {
            const qsizetype eq = trimmed.indexOf(QLatin1Char('='));
            line.kind = LineKind::Entry;
            line.name = trimmed.left(eq).trimmed();
            line.value = trimmed.mid(eq + 1).trimmed();
            if (line.value.size() >= 2 && line.value.startsWith(QLatin1Char('"')) &&
                line.value.endsWith(QLatin1Char('"'))) {
                line.value = line.value.mid(1, line.value.size() - 2);
            }
        }
        m_lines.push_back(std::move(line));
    }
}

QString IniFile::toText() const
{
    const QString eol = m_crlf ? QStringLiteral("\r\n") : QStringLiteral("\n");
    QString out;
    for (const Line& line : m_lines) {
        switch (line.kind) {
        case LineKind::Section:
            out += QLatin1Char('[') + line.name + QLatin1Char(']');
            break;
        case LineKind::Entry:
            out += line.name + QLatin1Char('=') + line.value;
            break;
        case LineKind::Other:
            out += line.raw;
            break;
        }
        out += eol;
    }
    return out;
}

Status IniFile::save() const
{
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly)) {
        return fail(QStringLiteral("Cannot write \"%1\": %2").arg(m_path, file.errorString()));
    }
    const QString text = toText();
    file.write(m_latin1 ? text.toLatin1() : text.toUtf8());
    if (!file.commit()) {
        return fail(QStringLiteral("Cannot write \"%1\": %2").arg(m_path, file.errorString()));
    }
    return {};
}

qsizetype IniFile::findSection(const QString& section) const
{
    for (qsizetype i = 0; i < qsizetype(m_lines.size()); ++i) {
        if (m_lines[i].kind == LineKind::Section &&
            m_lines[i].name.compare(section, Qt::CaseInsensitive) == 0) {
            return i;
        }
    }
    return -1;
}

qsizetype IniFile::findEntry(const QString& section, const QString& key) const
{
    bool inSection = false;
    for (qsizetype i = 0; i < qsizetype(m_lines.size()); ++i) {
        const Line& line = m_lines[i];
        if (line.kind == LineKind::Section) {
            inSection = line.name.compare(section, Qt::CaseInsensitive) == 0;
        } else if (inSection && line.kind == LineKind::Entry &&
                   line.name.compare(key, Qt::CaseInsensitive) == 0) {
            return i;
        }
    }
    return -1;
}

QString IniFile::readString(const QString& section, const QString& key,
                            const QString& defaultValue) const
{
    const qsizetype i = findEntry(section, key);
    return i < 0 ? defaultValue : m_lines[i].value;
}

int IniFile::readInteger(const QString& section, const QString& key, int defaultValue) const
{
    bool ok = false;
    const int value = readString(section, key).toInt(&ok);
    return ok ? value : defaultValue;
}

bool IniFile::readBool(const QString& section, const QString& key, bool defaultValue) const
{
    const QString v = readString(section, key).trimmed().toUpper();
    if (v == QLatin1String("1") || v == QLatin1String("T") || v == QLatin1String("TRUE") ||
        v == QLatin1String("YES")) {
        return true;
    }
    if (v == QLatin1String("0") || v == QLatin1String("F") || v == QLatin1String("FALSE") ||
        v == QLatin1String("NO")) {
        return false;
    }
    return defaultValue;
}

bool IniFile::hasKey(const QString& section, const QString& key) const
{
    return findEntry(section, key) >= 0;
}

void IniFile::writeString(const QString& section, const QString& key, const QString& value)
{
    QString clean = value;
    clean.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\r'), QLatin1Char(' '));
    const qsizetype entry = findEntry(section, key);
    if (entry >= 0) {
        m_lines[entry].value = clean;
        return;
    }
    Line line;
    line.kind = LineKind::Entry;
    line.name = key;
    line.value = clean;
    qsizetype at = findSection(section);
    if (at < 0) {
        Line header;
        header.kind = LineKind::Section;
        header.name = section;
        m_lines.push_back(header);
        m_lines.push_back(line);
        return;
    }
    // After the last entry of the section (blank lines and comments at its end stay after).
    qsizetype insertAt = at + 1;
    for (qsizetype i = at + 1; i < qsizetype(m_lines.size()); ++i) {
        if (m_lines[i].kind == LineKind::Section) {
            break;
        }
        if (m_lines[i].kind == LineKind::Entry) {
            insertAt = i + 1;
        }
    }
    m_lines.insert(m_lines.begin() + insertAt, line);
}

void IniFile::writeInteger(const QString& section, const QString& key, int value)
{
    writeString(section, key, QString::number(value));
}

void IniFile::writeBool(const QString& section, const QString& key, bool value)
{
    writeString(section, key, value ? QStringLiteral("1") : QStringLiteral("0"));
}

void IniFile::deleteKey(const QString& section, const QString& key)
{
    const qsizetype i = findEntry(section, key);
    if (i >= 0) {
        m_lines.erase(m_lines.begin() + i);
    }
}

QStringList IniFile::sections() const
{
    QStringList out;
    for (const Line& line : m_lines) {
        if (line.kind == LineKind::Section && !out.contains(line.name, Qt::CaseInsensitive)) {
            out << line.name;
        }
    }
    return out;
}

QStringList IniFile::keys(const QString& section) const
{
    QStringList out;
    bool inSection = false;
    for (const Line& line : m_lines) {
        if (line.kind == LineKind::Section) {
            inSection = line.name.compare(section, Qt::CaseInsensitive) == 0;
        } else if (inSection && line.kind == LineKind::Entry) {
            out << line.name;
        }
    }
    return out;
}

} // namespace kestrum::common
