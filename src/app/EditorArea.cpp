#include "EditorArea.h"

#include "app/OverviewPanel.h"
#include "app/PlaceholderEditor.h"
#include "store/PageDocument.h"
#include "store/TRMData.h"
#include "ui/EditorPanel.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QVBoxLayout>

namespace kestrum::app {

using store::EditorKind;

EditorArea::EditorArea(QMainWindow& window, QWidget& container, store::TRMData& data,
                       DesktopPageKinds kinds)
    : QObject(&window), m_window(window), m_container(container), m_data(data),
      m_kinds(std::move(kinds))
{
    m_layout = new QVBoxLayout(&m_container);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    // The kinds' toolbars head the editor's side of the window, one at a time, so that the
    // outline never moves when a page of another kind is shown.
    m_toolBarArea = new QWidget(&m_container);
    m_toolBarArea->setObjectName(QStringLiteral("EditorToolBars"));
    auto* bars = new QVBoxLayout(m_toolBarArea);
    bars->setContentsMargins(0, 0, 0, 0);
    bars->setSpacing(0);
    m_layout->addWidget(m_toolBarArea);
    m_overview = new OverviewPanel(&m_container);
    m_layout->addWidget(m_overview);
    QAction* insertMenusBefore = nullptr;
    for (const QAction* a : m_window.menuBar()->actions()) {
        if (a->objectName() == QLatin1String("HelpMenu")) {
            insertMenusBefore = const_cast<QAction*>(a);
        }
    }
    for (const DesktopPageKind& ui : m_kinds) {
        if (ui.toolBar) {
            auto* bar = new QToolBar(QString::fromLatin1(ui.toolBar).chopped(3), m_toolBarArea);
            bar->setObjectName(QLatin1String(ui.toolBar));
            bar->setIconSize(QSize(20, 20));
            bar->setVisible(false);
            bars->addWidget(bar);
            m_toolBars[std::size_t(ui.kind)] = bar;
        }
        if (ui.menu) {
            auto* menu = new QMenu(QString::fromLatin1(ui.menuTitle), &m_window);
            menu->setObjectName(QLatin1String(ui.menu));
            m_window.menuBar()->insertMenu(insertMenusBefore, menu);
            menu->menuAction()->setVisible(false);
            m_menus[std::size_t(ui.kind)] = menu;
        }
    }
}

EditorArea::~EditorArea() = default;

void EditorArea::setFindActions(QAction* find, QAction* replace)
{
    m_find = find;
    m_replace = replace;
}

void EditorArea::createStartupEditors()
{
    for (const DesktopPageKind& kind : m_kinds) {
        if (kind.createdAtStartup) {
            ensurePanel(kind.kind);
        }
    }
}

ui::EditorPanel* EditorArea::ensurePanel(EditorKind kind)
{
    const std::size_t k = std::size_t(kind);
    if (kind == EditorKind::None) {
        return nullptr;
    }
    if (!m_panels[k]) {
        const DesktopPageKind* desktop = desktopKind(kind);
        ui::EditorPanel* panel =
            desktop && desktop->makeEditor ? desktop->makeEditor(&m_container) : nullptr;
        if (!panel) {
            panel = new PlaceholderEditor(kind, &m_container);
        }
        panel->setVisible(false);
        panel->setReadOnly(m_readOnly); // an editor made on first use follows the project
        m_layout->addWidget(panel);
        m_panels[k] = panel;
        connect(&panel->document(), &store::PageDocument::contentChanged, this,
                [this, kind] { emit contentChanged(kind); });
        connect(panel, &ui::EditorPanel::reloadRequested, this,
                [this, kind] { emit reloadRequested(kind); });
        if (QToolBar* bar = m_toolBars[k]) {
            panel->populateToolBar(bar);
        }
        if (QMenu* menu = m_menus[k]) {
            panel->populateMenu(menu);
        }
    }
    return m_panels[k];
}

ui::EditorPanel* EditorArea::visiblePanel() const
{
    for (ui::EditorPanel* panel : m_panels) {
        if (panel && !panel->isHidden() && panel != static_cast<QWidget*>(m_overview)) {
            return panel;
        }
    }
    return nullptr;
}

void EditorArea::setPanelVisible(EditorKind kind, bool visible)
{
    if (ui::EditorPanel* panel = m_panels[std::size_t(kind)]) {
        panel->setVisible(visible);
    }
}

void EditorArea::setBarVisible(EditorKind kind, bool visible)
{
    if (QToolBar* bar = m_toolBars[std::size_t(kind)]) {
        bar->setVisible(visible && !bar->actions().isEmpty());
    }
}

void EditorArea::setMenuVisible(EditorKind kind, bool visible)
{
    if (QMenu* menu = m_menus[std::size_t(kind)]) {
        menu->menuAction()->setVisible(visible && !menu->actions().isEmpty());
    }
}

const DesktopPageKind* EditorArea::desktopKind(EditorKind kind) const
{
    for (const DesktopPageKind& entry : m_kinds) {
        if (entry.kind == kind) {
            return &entry;
        }
    }
    return nullptr;
}

void EditorArea::ShowEditorNo(qint32 pageType)
{
    const EditorKind kind = store::editorKindFor(pageType);
    const DesktopPageKind* shown = desktopKind(kind);
    const bool findable = shown && shown->findable;
    if (m_find) {
        m_find->setEnabled(findable);
    }
    if (m_replace) {
        m_replace->setEnabled(findable);
    }
    if (shown) {
        ensurePanel(kind); // kinds created on first use
    }
    for (const DesktopPageKind& entry : m_kinds) {
        const bool visible = entry.kind == kind;
        setPanelVisible(entry.kind, visible);
        setBarVisible(entry.kind, visible);
        setMenuVisible(entry.kind, visible);
        if (!visible && entry.clearedWhenHidden) {
            if (ui::EditorPanel* panel = m_panels[std::size_t(entry.kind)]) {
                panel->document().clear();
            }
        }
    }
    m_overview->setVisible(visiblePanel() == nullptr);
}

void EditorArea::setReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
    for (ui::EditorPanel* panel : m_panels) {
        if (panel) {
            panel->setReadOnly(readOnly);
        }
    }
    for (QToolBar* bar : m_toolBars) {
        if (bar) {
            bar->setEnabled(!readOnly);
        }
    }
    for (QMenu* menu : m_menus) {
        if (menu) {
            menu->setEnabled(!readOnly);
        }
    }
}

void EditorArea::HideAllEditors()
{
    for (const DesktopPageKind& entry : m_kinds) {
        if (entry.hiddenWithAll) {
            setPanelVisible(entry.kind, false);
        }
        if (entry.toolBarHiddenWithAll) {
            setBarVisible(entry.kind, false);
        }
    }
    hideEditorMenus();
}

void EditorArea::hideEditorMenus()
{
    for (const DesktopPageKind& entry : m_kinds) {
        setMenuVisible(entry.kind, false);
    }
}

} // namespace kestrum::app
