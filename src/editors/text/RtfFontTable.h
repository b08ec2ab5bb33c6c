#pragma once

#include <QHash>
#include <QString>

namespace kestrum::text {

struct RtfFont
{
    QString name;
    int codePage = 0; // 0: the document's code page
};

// The font table destination ({\fonttbl{\f0\fcharset0 Arial;}...}) and \deffN.
class RtfFontTable
{
public:
    // \fN inside the table: the entry that the following words and name describe.
    void startEntry(int number);
    // \fcharsetN and \cpgN of the current entry.
    void setCharset(int charset);
    void setCodePage(int codePage);
    // The entry ends (';' or its group closes) with this name.
    void commit(const QString& text);

    void setDefaultFont(int number) { m_defaultFont = number; }
    int defaultFont() const { return m_defaultFont; }
    // The font numbered `number` (a negative number: the default font); null when unknown.
    const RtfFont* font(int number) const;

private:
    QHash<int, RtfFont> m_fonts;
    int m_number = 0;
    int m_codePage = 0;
    int m_defaultFont = 0;
};

} // namespace kestrum::text
