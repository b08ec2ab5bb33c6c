// Chart pages: no editor of their own yet; their content is kept byte for byte.

#include "export/KindRegistrations.h"

#include "store/RawPageDocument.h"

namespace kestrum::exports {

CorePageKind chartPageKind()
{
    CorePageKind kind;
    kind.page.kind = store::EditorKind::Chart;
    kind.page.pageTypes = {store::PageType::Chart};
    kind.page.name = QStringLiteral("chart");
    kind.page.icon = QStringLiteral(":/icons/chart.svg");
    kind.page.makeDocument = [] {
        return std::make_unique<store::RawPageDocument>(store::EditorKind::Chart);
    };
    kind.page.importExtensions = {QStringLiteral(".WSX"), QStringLiteral(".TEE")};
    kind.page.storedWhenAdded = true;
    return kind;
}

} // namespace kestrum::exports
