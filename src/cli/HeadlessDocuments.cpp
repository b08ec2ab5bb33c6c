#include "HeadlessDocuments.h"

#include "editors/grid/GridPageDocument.h"
#include "editors/text/TextPageDocument.h"
#include "store/RawPageDocument.h"
#include "store/TRMData.h"

namespace kestrum::cli {

using store::EditorKind;

HeadlessDocuments::HeadlessDocuments(QObject* parent) : QObject(parent)
{
    for (int k = 1; k < store::kEditorKindCount; ++k) {
        store::PageDocument*& document = m_documents[std::size_t(k)];
        switch (EditorKind(k)) {
        case EditorKind::Text: document = new text::TextPageDocument(this); break; // imports become RTF
        case EditorKind::Grid: document = new grid::GridPageDocument(this); break;
        default: document = new store::RawPageDocument(EditorKind(k), this); break;
        }
    }
}

void HeadlessDocuments::registerOn(store::TRMData& data) const
{
    for (int k = 1; k < store::kEditorKindCount; ++k) {
        data.documents().set(EditorKind(k), m_documents[std::size_t(k)]);
    }
}

store::PageDocument* HeadlessDocuments::document(EditorKind kind) const
{
    return m_documents[std::size_t(kind)];
}

} // namespace kestrum::cli
