// The one list of the desktop's page kinds: each kind's editor, toolbar and menu. Adding a kind:
// one line here, one in the core's list (export/CoreKinds.cpp).

#include "app/DesktopKinds.h"

#include "editors/chart/widgets/TRMChartEditor.h"
#include "editors/diagram/widgets/TRMDiagramEditor.h"
#include "editors/grid/widgets/TRMGridEditor.h"
#include "editors/image/widgets/TRMImageEditor.h"
#include "editors/text/widgets/TRMWPEditor.h"
#include "editors/timeline/widgets/TRMTimeLineDlg.h"
#include "editors/wordcloud_page/widgets/TRMWordCloudEditor.h"

namespace kestrum::app {

namespace {

template <class Editor> std::function<ui::EditorPanel*(QWidget*)> editor()
{
    return [](QWidget* parent) -> ui::EditorPanel* { return new Editor(parent); };
}

} // namespace

DesktopPageKinds desktopPageKinds()
{
    using store::EditorKind;
    return {
        {.kind = EditorKind::Text,
         .makeEditor = editor<text::TRMWPEditor>(),
         .toolBar = "WPBar",
         .menu = "DocMenu",
         .menuTitle = "&Document",
         .findable = true,
         .clearedWhenHidden = true,
         .toolBarHiddenWithAll = true},
        {.kind = EditorKind::Grid,
         .makeEditor = editor<grid::TRMGridEditor>(),
         .toolBar = "GridBar",
         .menu = "TableMenu",
         .menuTitle = "&Table",
         .findable = true,
         .hiddenWithAll = true,
         .toolBarHiddenWithAll = true,
         .clearedBeforeLoading = true},
        {.kind = EditorKind::Chart,
         .makeEditor = editor<chart::TRMChartEditor>(),
         .toolBar = "ChartBar",
         .menu = "ChartMenu",
         .menuTitle = "&Chart",
         .hiddenWithAll = true,
         .toolBarHiddenWithAll = true},
        {.kind = EditorKind::Image,
         .makeEditor = editor<image::TRMImageEditor>(),
         .toolBar = "ImageBar"},
        {.kind = EditorKind::Timeline,
         .makeEditor = editor<timeline::TRMTimeLineDlg>(),
         .createdAtStartup = false},
        {.kind = EditorKind::Diagram,
         .makeEditor = editor<diagram::TRMDiagramEditor>(),
         .toolBar = "DiagramBar",
         .createdAtStartup = false},
        {.kind = EditorKind::WordCloud,
         .makeEditor = editor<wordcloud_page::TRMWordCloudEditor>(),
         .toolBar = "CloudBar",
         .toolBarHiddenWithAll = true},
    };
}

} // namespace kestrum::app
