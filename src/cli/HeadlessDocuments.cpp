#include "HeadlessDocuments.h"

#include "editors/grid/GridPageDocument.h"
#include "store/RawPageDocument.h"
#include "store/TRMData.h"

namespace kestrum::cli {

using store::EditorKind;

HeadlessDocuments::HeadlessDocuments(QObject* parent) : QObject(parent)
{
    for (int k = 1; k < store::kEditorKindCount; ++k) {
        if (EditorKind(k) == EditorKind::Grid) {
            m_documents[std::size_t(k)] = new grid::GridPageDocument(this);
        } else {
            m_documents[std::size_t(k)] = new store::RawPageDocument(EditorKind(k), this);
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
