#pragma once

#include "store/PageType.h"

#include <functional>
#include <vector>

class QWidget;

namespace kestrum::ui {
class EditorPanel;
}

namespace kestrum::app {

// What the main window needs of a page kind: its editor and where the editor's commands go.
struct DesktopPageKind
{
    store::EditorKind kind = store::EditorKind::None;
    // Makes the kind's editor; a kind without one shows a placeholder that keeps its pages.
    std::function<ui::EditorPanel*(QWidget* parent)> makeEditor = nullptr;
    const char* toolBar = nullptr;   // object name of its main-window toolbar
    const char* menu = nullptr;      // object name of its main-window menu
    const char* menuTitle = nullptr; // the menu's caption
    // Created with the window; the others are created when a page of theirs is first shown.
    bool createdAtStartup = true;
    // The window's Find and Replace work in this editor.
    bool findable = false;
    // When another kind is shown, the editor's document is emptied.
    bool clearedWhenHidden = false;
    // HideAllEditors hides the editor (its toolbar and menu are hidden in any case).
    bool hiddenWithAll = false;
    // HideAllEditors hides the toolbar.
    bool toolBarHiddenWithAll = false;
    // Showing a page empties the editor and lets the window repaint before the page loads.
    bool clearedBeforeLoading = false;
};

using DesktopPageKinds = std::vector<DesktopPageKind>;

// The page kinds of the desktop, one line each.
DesktopPageKinds desktopPageKinds();

} // namespace kestrum::app
