#pragma once

#include "app/DesktopKinds.h"
#include "store/PageType.h"

#include <QObject>

#include <array>
#include <functional>

class QAction;
class QMainWindow;
class QMenu;
class QToolBar;
class QVBoxLayout;
class QWidget;

namespace kestrum::store {
class TRMData;
}
namespace kestrum::ui {
class EditorPanel;
}

namespace kestrum::app {

class OverviewPanel;

// The right-hand editors of the main window with their toolbars and menus: which is visible for
// a page kind, created when first needed or at start-up, as the desktop's kind list says.
class EditorArea : public QObject
{
    Q_OBJECT
public:
    EditorArea(QMainWindow& window, QWidget& container, store::TRMData& data,
               DesktopPageKinds kinds);
    ~EditorArea() override;

    // Creates the editors that exist from start-up.
    void createStartupEditors();

    ui::EditorPanel* panel(store::EditorKind kind) const { return m_panels[std::size_t(kind)]; }
    ui::EditorPanel* visiblePanel() const;
    QToolBar* toolBar(store::EditorKind kind) const { return m_toolBars[std::size_t(kind)]; }
    QMenu* menu(store::EditorKind kind) const { return m_menus[std::size_t(kind)]; }
    // Shown in place of an editor when the page kind has none.
    OverviewPanel* overview() const { return m_overview; }
    QAction* findAction() const { return m_find; }
    QAction* replaceAction() const { return m_replace; }
    void setFindActions(QAction* find, QAction* replace);

    void ShowEditorNo(qint32 kind);
    // Every editor shows its pages but takes no edit; the kinds' toolbars and menus are off.
    void setReadOnly(bool readOnly);
    bool clearedBeforeLoading(store::EditorKind kind) const
    {
        const DesktopPageKind* entry = desktopKind(kind);
        return entry && entry->clearedBeforeLoading;
    }
    void HideAllEditors();
    // The editor menus (DocMenu, ChartMenu, TableMenu) hidden, as on opening a project.
    void hideEditorMenus();

signals:
    // The user changed the page in the editor of `kind`.
    void contentChanged(kestrum::store::EditorKind kind);
    // The editor of `kind` asks for its page to be shown again without its unsaved changes.
    void reloadRequested(kestrum::store::EditorKind kind);

private:
    ui::EditorPanel* ensurePanel(store::EditorKind kind);
    void setPanelVisible(store::EditorKind kind, bool visible);
    void setBarVisible(store::EditorKind kind, bool visible);
    void setMenuVisible(store::EditorKind kind, bool visible);

    QMainWindow& m_window;
    QWidget& m_container;
    QVBoxLayout* m_layout = nullptr;
    QWidget* m_toolBarArea = nullptr;
    bool m_readOnly = false;
    OverviewPanel* m_overview = nullptr;
    store::TRMData& m_data;
    const DesktopPageKind* desktopKind(store::EditorKind kind) const;

    DesktopPageKinds m_kinds;
    std::array<ui::EditorPanel*, store::kEditorKindCount> m_panels{};
    std::array<QToolBar*, store::kEditorKindCount> m_toolBars{};
    std::array<QMenu*, store::kEditorKindCount> m_menus{};
    QAction* m_find = nullptr;
    QAction* m_replace = nullptr;
};

} // namespace kestrum::app
