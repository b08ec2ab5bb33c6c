#include "HeadlessDocuments.h"

#include "editors/text/TextPageDocument.h"
#include "store/RawPageDocument.h"
#include "store/TRMData.h"

namespace kestrum::cli {

using store::EditorKind;

HeadlessDocuments::HeadlessDocuments(QObject* parent) : QObject(parent)
{
    for (int k = 1; k < store::kEditorKindCount; ++k) {
        m_documents[std::size_t(k)] = new store::RawPageDocument(EditorKind(k), this);
    }
    // Text pages: read and written by the rich-text document (imports become RTF).
    delete m_documents[std::size_t(EditorKind::Text)];
    m_documents[std::size_t(EditorKind::Text)] = new text::TextPageDocument(this);
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
