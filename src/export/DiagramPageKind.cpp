// Diagram pages: no editor of their own yet; their content is kept byte for byte.

#include "export/KindRegistrations.h"

#include "store/RawPageDocument.h"

namespace kestrum::exports {

CorePageKind diagramPageKind()
{
    CorePageKind kind;
    kind.page.kind = store::EditorKind::Diagram;
    kind.page.pageTypes = {store::PageType::Diagram};
    kind.page.name = QStringLiteral("diagram");
    kind.page.icon = QStringLiteral(":/icons/diagram.svg");
    kind.page.makeDocument = [] {
        return std::make_unique<store::RawPageDocument>(store::EditorKind::Diagram);
    };
    return kind;
}

} // namespace kestrum::exports
