#pragma once

#include <QString>

#include <vector>

class QTextBlock;
class QTextDocument;

namespace kestrum::text {

// The place of every list item of a document in its list, counted in one pass over the
// blocks. QTextList::itemNumber and QTextList::itemText search the list for the block on every
// call, so numbering all items of a long list through them takes time that grows with the
// square of its length; writers that number every item use this instead. The numbers hold for
// the document as it was when counted.
class ListItemNumbers
{
public:
    explicit ListItemNumbers(const QTextDocument& document);

    // 0 for the first item of its list, -1 for a block outside lists.
    int itemNumber(const QTextBlock& block) const;
    // The marker, as ListNumbering::itemText gives it.
    QString itemText(const QTextBlock& block) const;

private:
    std::vector<int> m_numbers; // by block number
};

} // namespace kestrum::text
