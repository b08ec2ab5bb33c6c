#pragma once

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

// How the editor of each kind is made; a kind without a factory gets a placeholder.
struct EditorFactories
{
    std::array<std::function<ui::EditorPanel*(QWidget* parent)>, store::kEditorKindCount> make{};
};

// The right-hand editors of the main window with their toolbars and menus: which is visible for
// a page kind, created when first needed (timeline, diagram) or at start-up (the others).
class EditorArea : public QObject
{
    Q_OBJECT
public:
    EditorArea(QMainWindow& window, QWidget& container, store::TRMData& data,
               EditorFactories factories);
    ~EditorArea() override;

    // Creates the editors that exist from start-up and registers their documents in the store.
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
    void HideAllEditors();
    // The editor menus (DocMenu, ChartMenu, TableMenu) hidden, as on opening a project.
    void hideEditorMenus();

signals:
    // The user changed the page in the editor of `kind`.
    void contentChanged(kestrum::store::EditorKind kind);

private:
    ui::EditorPanel* ensurePanel(store::EditorKind kind);
    void setPanelVisible(store::EditorKind kind, bool visible);
    void setBarVisible(store::EditorKind kind, bool visible);
    void setMenuVisible(store::EditorKind kind, bool visible);

    QMainWindow& m_window;
    QWidget& m_container;
    QVBoxLayout* m_layout = nullptr;
    OverviewPanel* m_overview = nullptr;
    store::TRMData& m_data;
    EditorFactories m_factories;
    std::array<ui::EditorPanel*, store::kEditorKindCount> m_panels{};
    std::array<QToolBar*, store::kEditorKindCount> m_toolBars{};
    std::array<QMenu*, store::kEditorKindCount> m_menus{};
    QAction* m_find = nullptr;
    QAction* m_replace = nullptr;
};

} // namespace kestrum::app
