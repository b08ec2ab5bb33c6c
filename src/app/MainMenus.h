#pragma once

#include <QList>

class QAction;
class QMenu;
class QMenuBar;
class QToolBar;
class QWidget;

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
    QList<QAction*> changeActions;  // ... and only when it can be written

    // Builds them into `menuBar` and `outlineBar`, the actions owned by `window`; the outline's
    // own keys (F2) are given to `outline`.
    static MainMenus build(TKestrumM* window, QMenuBar* menuBar, QToolBar* outlineBar,
                           QWidget* outline);
};

} // namespace kestrum::app
