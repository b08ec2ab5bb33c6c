// Word cloud pages: no editor of their own yet; their content is kept byte for byte.

#include "export/KindRegistrations.h"

#include "store/RawPageDocument.h"

namespace kestrum::exports {

CorePageKind wordCloudPageKind()
{
    CorePageKind kind;
    kind.page.kind = store::EditorKind::WordCloud;
    kind.page.pageTypes = {store::PageType::WordCloud};
    kind.page.name = QStringLiteral("word cloud");
    kind.page.icon = QStringLiteral(":/icons/wordcloud.svg");
    kind.page.makeDocument = [] {
        return std::make_unique<store::RawPageDocument>(store::EditorKind::WordCloud);
    };
    return kind;
}

} // namespace kestrum::exports
