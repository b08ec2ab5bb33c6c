#include "ListItemNumbers.h"

#include "editors/text/ListNumbering.h"

#include <QHash>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>

namespace kestrum::text {

ListItemNumbers::ListItemNumbers(const QTextDocument& document)
{
    m_numbers.assign(std::size_t(document.blockCount()), -1);
    QHash<const QTextList*, int> counts;
    std::size_t index = 0;
    for (QTextBlock block = document.begin(); block.isValid() && index < m_numbers.size();
         block = block.next(), ++index) {
        if (const QTextList* list = block.textList()) {
            m_numbers[index] = counts[list]++;
        }
    }
}

int ListItemNumbers::itemNumber(const QTextBlock& block) const
{
    const int index = block.blockNumber();
    return index >= 0 && std::size_t(index) < m_numbers.size() ? m_numbers[std::size_t(index)] : -1;
}

QString ListItemNumbers::itemText(const QTextBlock& block) const
{
    const QTextList* list = block.textList();
    const int number = itemNumber(block);
    if (!list || number < 0) {
        return {};
    }
    const QTextListFormat format = list->format();
    if (ListNumbering::isBulleted(format)) {
        return ListNumbering::itemText(block);
    }
    return ListNumbering::markerText(format, ListNumbering::start(format) + number);
}

} // namespace kestrum::text
