#pragma once

#include <QWidget>

class QMenu;
class QToolBar;

namespace kestrum::store {
class PageDocument;
}

namespace kestrum::ui {

// A page editor shown in the right panel of the main window. It is a view over the page
// document that the store reads pages into and saves them from; the main window places the
// editor's commands in its own toolbar and menu for the kind, shown only while the editor is.
class EditorPanel : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;

    virtual store::PageDocument& document() = 0;
    // Fills the main window's toolbar for this kind (called once).
    virtual void populateToolBar(QToolBar* toolBar) { Q_UNUSED(toolBar); }
    // Fills the main window's menu for this kind (called once); kinds without one ignore it.
    virtual void populateMenu(QMenu* menu) { Q_UNUSED(menu); }
    // A page of a read-only project: the editor shows it but takes no edit.
    virtual void setReadOnly(bool readOnly) { setEnabled(!readOnly); }
    // Find and replace within the page, for the kinds that offer them.
    virtual bool canFind() const { return false; }
    virtual void find() {}
    virtual void replace() {}

signals:
    // The editor drops its unsaved changes: the page is shown again from the store.
    void reloadRequested();
};

} // namespace kestrum::ui
