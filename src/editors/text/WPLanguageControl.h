#pragma once

#include <QByteArrayView>
#include <QHash>
#include <QString>

namespace kestrum::text {

// The translated texts of the rich-text editor (its action captions, dialogs and messages),
// held as the tree of an XML file, "WP.XML":
//   <loc><FR><string id="Fonts...">Polices...</string>...</FR><ESN>...</ESN></loc>
// Each element under <loc> is a language code; each element under it with an "id" (the English
// text) gives the translation. An English text without a translation stays English.
class WPLanguageControl
{
public:
    static constexpr qint64 kMaxFileBytes = qint64(8) * 1024 * 1024;

    // Whether the tree has a non-empty "/loc" node.
    bool hasLocNode() const { return !m_strings.isEmpty(); }
    // Loads a file into the tree; false (tree unchanged) when missing, too large or not XML.
    bool loadFile(const QString& path);
    bool loadXml(QByteArrayView xml);
    // Whether "/loc/" followed by the code exists.
    bool hasLanguage(const QString& code) const { return m_strings.contains(code); }

    const QString& language() const { return m_language; }
    void setLanguage(const QString& code) { m_language = code; }
    // The text in the current language.
    QString text(const QString& english) const;

private:
    QHash<QString, QHash<QString, QString>> m_strings;
    QString m_language;
};

} // namespace kestrum::text
