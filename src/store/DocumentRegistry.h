#pragma once

#include "store/PageType.h"

#include <array>

namespace kestrum::store {

class PageDocument;

// Which document serves each editor kind. Documents are owned elsewhere (by the editors or by
// the tool that registered them); an unregistered kind loads and saves nothing.
class DocumentRegistry
{
public:
    void set(EditorKind kind, PageDocument* document);
    PageDocument* document(EditorKind kind) const;
    PageDocument* forPageType(qint32 pageType) const { return document(editorKindFor(pageType)); }

private:
    std::array<PageDocument*, kEditorKindCount> m_documents{};
};

} // namespace kestrum::store
