// Timeline pages: no editor of their own yet; their content is kept byte for byte.

#include "export/KindRegistrations.h"

#include "store/RawPageDocument.h"

namespace kestrum::exports {

CorePageKind timelinePageKind()
{
    CorePageKind kind;
    kind.page.kind = store::EditorKind::Timeline;
    kind.page.pageTypes = {store::PageType::Timeline};
    kind.page.name = QStringLiteral("timeline");
    kind.page.icon = QStringLiteral(":/icons/timeline.svg");
    kind.page.makeDocument = [] {
        return std::make_unique<store::RawPageDocument>(store::EditorKind::Timeline);
    };
    return kind;
}

} // namespace kestrum::exports
