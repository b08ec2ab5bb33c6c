#pragma once

#include <QString>
#include <QtGlobal>

namespace kestrum::store {

// The kind of a page, stored as PageType and used as the outline node's image index.
namespace PageType {
constexpr qint32 Text = 0;
constexpr qint32 Grid = 1;
constexpr qint32 Chart = 2;
constexpr qint32 Image = 3;
constexpr qint32 Reserved4 = 4;
constexpr qint32 TextVariant5 = 5;
constexpr qint32 TextVariant6 = 6;
constexpr qint32 TextVariant7 = 7;
constexpr qint32 Timeline = 8;
constexpr qint32 Reserved9 = 9;
constexpr qint32 OutlineRoot = 10;
constexpr qint32 Folder = 11;
constexpr qint32 Diagram = 12;
constexpr qint32 WordCloud = 13;
} // namespace PageType

// The editor that serves a page kind.
enum class EditorKind
{
    None,
    Text,
    Grid,
    Chart,
    Image,
    Timeline,
    Diagram,
    WordCloud
};
constexpr int kEditorKindCount = 8;

constexpr EditorKind editorKindFor(qint32 pageType)
{
    switch (pageType) {
    case PageType::Text:
    case PageType::TextVariant5:
    case PageType::TextVariant6:
    case PageType::TextVariant7:
        return EditorKind::Text;
    case PageType::Grid:
        return EditorKind::Grid;
    case PageType::Chart:
        return EditorKind::Chart;
    case PageType::Image:
        return EditorKind::Image;
    case PageType::Timeline:
        return EditorKind::Timeline;
    case PageType::Diagram:
        return EditorKind::Diagram;
    case PageType::WordCloud:
        return EditorKind::WordCloud;
    default:
        return EditorKind::None;
    }
}

constexpr bool isTextPage(qint32 pageType)
{
    return editorKindFor(pageType) == EditorKind::Text;
}

// A short English name of the kind ("text", "table", "folder"...), for messages and tools.
QString pageKindName(qint32 pageType);
QString editorKindName(EditorKind kind);

} // namespace kestrum::store
