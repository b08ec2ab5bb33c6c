#pragma once

#include <QList>
#include <functional>

class QAction;
class QMenu;
class QToolBar;
class QWidget;

namespace kestrum::text {

// Where the text page's actions are placed: the context menu MemoPopup2, the main window's
// text toolbar (WPBar) and its document menu (DocMenu). Actions are looked up by object name.
class WPActionMenus
{
public:
    using Lookup = std::function<QAction*(const char* name)>;

    // The property holding a caption's English text, from which translations are looked up.
    static constexpr const char* kEnglish = "kestrumEnglishCaption";

    // Fills MemoPopup2 in its fixed order; returns its "Table" submenu.
    static QMenu* fillPopup(QMenu* popup, const Lookup& action);
    static void fillToolBar(QToolBar* toolBar, const Lookup& action, QWidget* fontColour,
                            QWidget* backColour);
    // Fills the document menu; returns the submenus it made (titled in English).
    static QList<QMenu*> fillMenu(QMenu* menu, const Lookup& action);
};

} // namespace kestrum::text
