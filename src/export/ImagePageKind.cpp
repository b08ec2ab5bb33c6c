// Image pages: no editor of their own yet; their content is kept byte for byte.

#include "export/KindRegistrations.h"

#include "store/RawPageDocument.h"

namespace kestrum::exports {

CorePageKind imagePageKind()
{
    CorePageKind kind;
    kind.page.kind = store::EditorKind::Image;
    kind.page.pageTypes = {store::PageType::Image};
    kind.page.name = QStringLiteral("image");
    kind.page.icon = QStringLiteral(":/icons/image.svg");
    kind.page.makeDocument = [] {
        return std::make_unique<store::RawPageDocument>(store::EditorKind::Image);
    };
    kind.page.importExtensions = {QStringLiteral(".BMP"), QStringLiteral(".WMF"), QStringLiteral(".JPG"), QStringLiteral(".JPEG"), QStringLiteral(".PNG")};
    return kind;
}

} // namespace kestrum::exports
