#include "RtfFontTable.h"

#include "editors/text/RtfCodePage.h"
#include "editors/text/RtfReaderState.h"

namespace kestrum::text {

void RtfFontTable::startEntry(int number)
{
    m_number = number;
    m_codePage = 0;
}

void RtfFontTable::setCharset(int charset)
{
    const int codePage = RtfCodePage::forCharset(charset);
    if (codePage != 0) {
        m_codePage = codePage;
    }
}

void RtfFontTable::setCodePage(int codePage)
{
    if (codePage > 0) {
        m_codePage = codePage;
    }
}

void RtfFontTable::commit(const QString& text)
{
    const QString name = text.trimmed();
    if (name.isEmpty() && m_fonts.contains(m_number)) {
        return;
    }
    if (m_fonts.size() < rtf::kMaxFonts || m_fonts.contains(m_number)) {
        m_fonts.insert(m_number, {name, m_codePage});
    }
    m_codePage = 0;
}

const RtfFont* RtfFontTable::font(int number) const
{
    const auto it = m_fonts.constFind(number >= 0 ? number : m_defaultFont);
    return it == m_fonts.cend() ? nullptr : &*it;
}

} // namespace kestrum::text
