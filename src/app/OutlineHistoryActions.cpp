#include "OutlineHistoryActions.h"

#include "app/PageDisplay.h"
#include "app/TKestrumM.h"
#include "store/TRMData.h"
#include "ui/Dialogs.h"

#include <QAction>
#include <QMenu>
#include <QStatusBar>

namespace kestrum::app {

OutlineHistoryActions::OutlineHistoryActions(TKestrumM& window, QWidget* outline, QMenu* editMenu,
                                             QMenu* itemsMenu)
    : QObject(&window), m_window(window), m_commands(window.data())
{
    auto make = [&](const QString& name, const QString& caption,
                    void (OutlineHistoryActions::*run)()) {
        auto* action = new QAction(caption, &window);
        action->setObjectName(name);
        action->setEnabled(false);
        connect(action, &QAction::triggered, this, run);
        return action;
    };
    m_undo = make(QStringLiteral("Undo1"), QStringLiteral("&Undo"), &OutlineHistoryActions::undo);
    m_redo = make(QStringLiteral("Redo1"), QStringLiteral("&Redo"), &OutlineHistoryActions::redo);
    m_undo->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z));
    m_redo->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z));
    for (QAction* a : {m_undo, m_redo}) {
        // Only while the outline has the focus: a page editor keeps its own Ctrl+Z.
        a->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        outline->addAction(a);
    }
    QAction* first = editMenu->actions().value(0);
    editMenu->insertAction(first, m_undo);
    editMenu->insertAction(first, m_redo);
    editMenu->insertSeparator(first);

    m_recover =
        make(QStringLiteral("RecoverPages1"), QStringLiteral("Recover pages without an item..."),
             &OutlineHistoryActions::recover);
    QAction* keep = window.findChild<QAction*>(QStringLiteral("KeepSelected1"));
    const QList<QAction*> items = itemsMenu->actions();
    const qsizetype at = items.indexOf(keep);
    itemsMenu->insertAction(at >= 0 && at + 1 < items.size() ? items.at(at + 1) : nullptr,
                            m_recover);

    connect(&window.data(), &store::TRMData::historyChanged, this,
            &OutlineHistoryActions::updateState);
}

void OutlineHistoryActions::updateState()
{
    const store::TRMData& data = m_window.data();
    const bool writable = data.isOpen() && !data.isReadOnly();
    m_undo->setEnabled(writable && m_commands.canUndo());
    m_redo->setEnabled(writable && m_commands.canRedo());
    m_recover->setEnabled(writable);
}

void OutlineHistoryActions::undo()
{
    step(true);
}

void OutlineHistoryActions::redo()
{
    step(false);
}

void OutlineHistoryActions::step(bool undo)
{
    store::TRMData& data = m_window.data();
    if (!data.isOpen() || data.isReadOnly()) {
        return;
    }
    // The page on screen is written first, as before every command.
    m_window.pageDisplay().SaveModif();
    const Result<bool> applied = undo ? m_commands.undo() : m_commands.redo();
    if (!applied.ok()) {
        ui::dialogs().warning(&m_window, applied.error());
        return;
    }
    if (!*applied) {
        m_window.statusBar()->showMessage(
            QStringLiteral("The outline was changed since: there is nothing to %1")
                .arg(undo ? QStringLiteral("undo") : QStringLiteral("redo")),
            5000);
        return;
    }
    m_window.pageDisplay().clearComment();
    m_window.ShowNode();
    m_window.CheckButtons();
}

void OutlineHistoryActions::recover()
{
    store::TRMData& data = m_window.data();
    if (!data.isOpen() || data.isReadOnly()) {
        return;
    }
    m_window.pageDisplay().SaveModif();
    const Result<std::vector<store::OutlineNode*>> recovered = m_commands.recoverPages();
    if (!recovered) {
        ui::dialogs().warning(&m_window, recovered.error());
        return;
    }
    const std::size_t added = recovered->size();
    if (added == 0) {
        ui::dialogs().information(&m_window, QStringLiteral("No page is without an item."));
        return;
    }
    m_window.CheckButtons();
    ui::dialogs().information(
        &m_window, added == 1 ? QStringLiteral("1 page came back under \"%1\".")
                                    .arg(QLatin1String(store::OutlineCommands::kRecoveredItems))
                              : QStringLiteral("%1 pages came back under \"%2\".")
                                    .arg(added)
                                    .arg(QLatin1String(store::OutlineCommands::kRecoveredItems)));
}

} // namespace kestrum::app
