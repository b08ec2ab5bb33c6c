#include "DocumentRegistry.h"

namespace kestrum::store {

void DocumentRegistry::set(EditorKind kind, PageDocument* document)
{
    if (kind != EditorKind::None) {
        m_documents[std::size_t(kind)] = document;
    }
}

PageDocument* DocumentRegistry::document(EditorKind kind) const
{
    return kind == EditorKind::None ? nullptr : m_documents[std::size_t(kind)];
}

} // namespace kestrum::store
