#include "PageKind.h"

#include "store/PageDocument.h"

#include <QFileInfo>

namespace kestrum::store {

PageKindTable::PageKindTable(std::vector<PageKind> kinds) : m_kinds(std::move(kinds)) {}

void PageKindTable::add(PageKind kind)
{
    m_kinds.push_back(std::move(kind));
}

const PageKind* PageKindTable::find(EditorKind kind) const
{
    for (const PageKind& entry : m_kinds) {
        if (entry.kind == kind) {
            return &entry;
        }
    }
    return nullptr;
}

qint32 PageKindTable::pageTypeForFile(const QString& fileName) const
{
    const QString suffix = QFileInfo(fileName).suffix();
    if (suffix.isEmpty()) {
        return PageType::Text;
    }
    // A plain substring test, as users' files have always been sorted: ".G" finds ".GRID2".
    const QString ext = QLatin1Char('.') + suffix.toUpper();
    for (const PageKind& entry : m_kinds) {
        if (!entry.importExtensions.isEmpty() && !entry.pageTypes.empty() &&
            entry.importExtensions.join(QString()).contains(ext)) {
            return entry.pageTypes.front();
        }
    }
    return PageType::Text;
}

std::unique_ptr<PageDocument> PageKindTable::makeDocument(EditorKind kind) const
{
    const PageKind* entry = find(kind);
    return entry && entry->makeDocument ? entry->makeDocument() : nullptr;
}

} // namespace kestrum::store
