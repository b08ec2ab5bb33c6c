#include "PageType.h"

namespace kestrum::store {

QString pageKindName(qint32 pageType)
{
    switch (pageType) {
    case PageType::Text:
        return QStringLiteral("text");
    case PageType::Grid:
        return QStringLiteral("table");
    case PageType::Chart:
        return QStringLiteral("chart");
    case PageType::Image:
        return QStringLiteral("image");
    case PageType::TextVariant5:
    case PageType::TextVariant6:
    case PageType::TextVariant7:
        return QStringLiteral("text");
    case PageType::Timeline:
        return QStringLiteral("timeline");
    case PageType::OutlineRoot:
        return QStringLiteral("project");
    case PageType::Folder:
        return QStringLiteral("folder");
    case PageType::Diagram:
        return QStringLiteral("diagram");
    case PageType::WordCloud:
        return QStringLiteral("word cloud");
    default:
        return QStringLiteral("kind %1").arg(pageType);
    }
}

QString editorKindName(EditorKind kind)
{
    switch (kind) {
    case EditorKind::Text:
        return QStringLiteral("text");
    case EditorKind::Grid:
        return QStringLiteral("table");
    case EditorKind::Chart:
        return QStringLiteral("chart");
    case EditorKind::Image:
        return QStringLiteral("image");
    case EditorKind::Timeline:
        return QStringLiteral("timeline");
    case EditorKind::Diagram:
        return QStringLiteral("diagram");
    case EditorKind::WordCloud:
        return QStringLiteral("word cloud");
    case EditorKind::None:
        break;
    }
    return QStringLiteral("none");
}

} // namespace kestrum::store
