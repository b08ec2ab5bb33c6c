#pragma once

#include "store/OutlineCommands.h"

#include <QObject>

class QAction;
class QMenu;
class QWidget;

namespace kestrum::app {

class TKestrumM;

// Edit > Undo / Redo of the outline commands and Items > "Recover pages without an item...".
// Undo and redo answer Ctrl+Z and Ctrl+Shift+Z only while the outline has the focus, so that an
// editor keeps its own; they are on while the project is writable and there is a step to take.
class OutlineHistoryActions : public QObject
{
    Q_OBJECT
public:
    // The actions are owned by `window`; undo and redo go into `editMenu` and onto `outline`,
    // recovery into `itemsMenu` after its "Keep selected item".
    OutlineHistoryActions(TKestrumM& window, QWidget* outline, QMenu* editMenu, QMenu* itemsMenu);

    QAction* undoAction() const { return m_undo; }
    QAction* redoAction() const { return m_redo; }
    QAction* recoverAction() const { return m_recover; }

    // Follows the project: open, writable, and what the history holds.
    void updateState();

    void undo();
    void redo();
    void recover();

private:
    void step(bool undo);

    TKestrumM& m_window;
    store::OutlineCommands m_commands;
    QAction* m_undo = nullptr;
    QAction* m_redo = nullptr;
    QAction* m_recover = nullptr;
};

} // namespace kestrum::app
