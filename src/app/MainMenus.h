#pragma once

#include <QList>

class QAction;
class QMenu;
class QMenuBar;
class QToolBar;

namespace kestrum::app {

class TKestrumM;

// The main window's menus (File, Edit, Items, Help), the outline's context menu and the
// outline toolbar; their actions call the window's handlers.
struct MainMenus
{
    QMenu* fileMenu = nullptr;
    QMenu* itemsMenu = nullptr;
    QMenu* contextMenu = nullptr;
    QList<QAction*> projectActions; // enabled only while a project is open

    // Builds them into `menuBar` and `outlineBar`, the actions owned by `window`.
    static MainMenus build(TKestrumM* window, QMenuBar* menuBar, QToolBar* outlineBar);
};

} // namespace kestrum::app
