#pragma once

#include <QHash>
#include <QString>

namespace kestrum::text {

// The style sheet destination: only which paragraph styles are headings ("heading 1" to
// "heading 6") is kept.
class RtfStyleSheet
{
public:
    // \sN inside the style sheet: the style the following name describes.
    void startEntry(int number) { m_number = number; }
    // The entry ends (';' or its group closes) with this name.
    void commit(const QString& text);
    // The heading level (1-6) of style `number`; 0 when it is no heading.
    int headingLevel(int number) const { return m_headings.value(number, 0); }

private:
    QHash<int, int> m_headings;
    int m_number = 0;
};

} // namespace kestrum::text
