#include "EditorArea.h"

#include "ui/EditorPanel.h"
#include "app/OverviewPanel.h"
#include "app/PlaceholderEditor.h"
#include "store/PageDocument.h"
#include "store/TRMData.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QVBoxLayout>

namespace kestrum::app {

using store::EditorKind;

namespace {

struct KindUi
{
    EditorKind kind;
    const char* toolBar; // object name of its main-window toolbar, or null
    const char* menu;    // object name of its main-window menu, or null
    const char* menuTitle;
};

constexpr std::array<KindUi, 7> kKinds{{
    {EditorKind::Text, "WPBar", "DocMenu", "&Document"},
    {EditorKind::Grid, "GridBar", "TableMenu", "&Table"},
    {EditorKind::Chart, "ChartBar", "ChartMenu", "&Chart"},
    {EditorKind::Image, "ImageBar", nullptr, nullptr},
    {EditorKind::Timeline, nullptr, nullptr, nullptr},
    {EditorKind::Diagram, "DiagramBar", nullptr, nullptr},
    {EditorKind::WordCloud, "CloudBar", nullptr, nullptr},
}};

} // namespace

EditorArea::EditorArea(QMainWindow& window, QWidget& container, store::TRMData& data,
                       EditorFactories factories)
    : QObject(&window), m_window(window), m_container(container), m_data(data),
      m_factories(std::move(factories))
{
    m_layout = new QVBoxLayout(&m_container);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_overview = new OverviewPanel(&m_container);
    m_layout->addWidget(m_overview);
    QAction* insertMenusBefore = nullptr;
    for (const QAction* a : m_window.menuBar()->actions()) {
        if (a->objectName() == QLatin1String("HelpMenu")) {
            insertMenusBefore = const_cast<QAction*>(a);
        }
    }
    for (const KindUi& ui : kKinds) {
        if (ui.toolBar) {
            auto* bar = new QToolBar(QString::fromLatin1(ui.toolBar).chopped(3), &m_window);
            bar->setObjectName(QLatin1String(ui.toolBar));
            bar->setIconSize(QSize(20, 20));
            bar->setVisible(false);
            m_window.addToolBar(Qt::TopToolBarArea, bar);
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

EditorArea::~EditorArea()
{
    // The documents go with their panels: the store must not reach them afterwards.
    for (int k = 1; k < store::kEditorKindCount; ++k) {
        m_data.documents().set(EditorKind(k), nullptr);
    }
}

void EditorArea::setFindActions(QAction* find, QAction* replace)
{
    m_find = find;
    m_replace = replace;
}

void EditorArea::createStartupEditors()
{
    for (EditorKind kind : {EditorKind::Text, EditorKind::Grid, EditorKind::Chart,
                            EditorKind::Image, EditorKind::WordCloud}) {
        ensurePanel(kind);
    }
}

ui::EditorPanel* EditorArea::ensurePanel(EditorKind kind)
{
    const std::size_t k = std::size_t(kind);
    if (kind == EditorKind::None) {
        return nullptr;
    }
    if (!m_panels[k]) {
        const auto& make = m_factories.make[k];
        ui::EditorPanel* panel = make ? make(&m_container) : nullptr;
        if (!panel) {
            panel = new PlaceholderEditor(kind, &m_container);
        }
        panel->setVisible(false);
        m_layout->addWidget(panel);
        m_panels[k] = panel;
        m_data.documents().set(kind, &panel->document());
        connect(&panel->document(), &store::PageDocument::contentChanged, this,
                [this, kind] { emit contentChanged(kind); });
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

void EditorArea::ShowEditorNo(qint32 pageType)
{
    const EditorKind kind = store::editorKindFor(pageType);
    const bool findable = kind == EditorKind::Text || kind == EditorKind::Grid;
    if (m_find) {
        m_find->setEnabled(findable);
    }
    if (m_replace) {
        m_replace->setEnabled(findable);
    }

    const bool text = kind == EditorKind::Text;
    setPanelVisible(EditorKind::Text, text);
    setBarVisible(EditorKind::Text, text);
    setMenuVisible(EditorKind::Text, text);
    if (!text) {
        if (ui::EditorPanel* panel = m_panels[std::size_t(EditorKind::Text)]) {
            panel->document().clear();
        }
    }
    if (kind == EditorKind::Timeline) {
        ensurePanel(EditorKind::Timeline);
    }
    setPanelVisible(EditorKind::Timeline, kind == EditorKind::Timeline);

    setPanelVisible(EditorKind::Grid, kind == EditorKind::Grid);
    setBarVisible(EditorKind::Grid, kind == EditorKind::Grid);
    setMenuVisible(EditorKind::Grid, kind == EditorKind::Grid);

    setPanelVisible(EditorKind::Chart, kind == EditorKind::Chart);
    setBarVisible(EditorKind::Chart, kind == EditorKind::Chart);
    setMenuVisible(EditorKind::Chart, kind == EditorKind::Chart);
    setBarVisible(EditorKind::WordCloud, kind == EditorKind::WordCloud);

    setPanelVisible(EditorKind::Image, kind == EditorKind::Image);
    setBarVisible(EditorKind::Image, kind == EditorKind::Image);

    if (kind == EditorKind::Diagram) {
        ensurePanel(EditorKind::Diagram);
    }
    setPanelVisible(EditorKind::Diagram, kind == EditorKind::Diagram);
    setBarVisible(EditorKind::Diagram, kind == EditorKind::Diagram);

    setPanelVisible(EditorKind::WordCloud, kind == EditorKind::WordCloud);
    m_overview->setVisible(visiblePanel() == nullptr);
}

void EditorArea::HideAllEditors()
{
    setPanelVisible(EditorKind::Grid, false);
    setPanelVisible(EditorKind::Chart, false);
    setBarVisible(EditorKind::Grid, false);
    setBarVisible(EditorKind::Chart, false);
    setBarVisible(EditorKind::WordCloud, false);
    setBarVisible(EditorKind::Text, false);
    hideEditorMenus();
}

void EditorArea::hideEditorMenus()
{
    setMenuVisible(EditorKind::Text, false);
    setMenuVisible(EditorKind::Chart, false);
    setMenuVisible(EditorKind::Grid, false);
}

} // namespace kestrum::app
