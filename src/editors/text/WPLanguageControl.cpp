#include "WPLanguageControl.h"

#include <QFile>
#include <QXmlStreamReader>

namespace kestrum::text {

namespace {

constexpr int kMaxEntries = 100000;

} // namespace

bool WPLanguageControl::loadFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > kMaxFileBytes) {
        return false;
    }
    return loadXml(file.readAll());
}

bool WPLanguageControl::loadXml(QByteArrayView xml)
{
    QXmlStreamReader reader(xml.toByteArray());
    QHash<QString, QHash<QString, QString>> strings;
    int entries = 0;
    // Depth 1: <loc>; depth 2: a language; depth 3: a string.
    int depth = 0;
    bool inLoc = false;
    QString language;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::StartElement) {
            ++depth;
            if (depth == 1) {
                inLoc = reader.name() == QLatin1String("loc");
            } else if (depth == 2 && inLoc) {
                language = reader.name().toString();
                strings[language];
            } else if (depth == 3 && inLoc) {
                const QString id = reader.attributes().value(QLatin1String("id")).toString();
                const QString value =
                    reader.readElementText(QXmlStreamReader::IncludeChildElements);
                --depth; // readElementText consumed the end element
                if (!id.isEmpty() && ++entries <= kMaxEntries) {
                    strings[language].insert(id, value);
                }
            }
        } else if (token == QXmlStreamReader::EndElement) {
            --depth;
        }
    }
    if (reader.hasError()) {
        return false;
    }
    m_strings = std::move(strings);
    return true;
}

QString WPLanguageControl::text(const QString& english) const
{
    const auto language = m_strings.constFind(m_language);
    if (language == m_strings.cend()) {
        return english;
    }
    const QString translated = language->value(english);
    return translated.isEmpty() ? english : translated;
}

} // namespace kestrum::text
