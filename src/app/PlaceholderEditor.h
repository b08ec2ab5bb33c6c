#pragma once

#include "store/RawPageDocument.h"
#include "ui/EditorPanel.h"

class QLabel;

namespace kestrum::app {

// The panel of a page kind whose editor this version does not have: it says so, and keeps the
// page's content exactly as stored so that nothing is lost when the page is saved.
class PlaceholderEditor : public ui::EditorPanel
{
    Q_OBJECT
public:
    PlaceholderEditor(store::EditorKind kind, QWidget* parent = nullptr);

    store::PageDocument& document() override { return m_document; }
    // The kind's toolbar and menu still show, saying that its commands are not there yet.
    void populateToolBar(QToolBar* toolBar) override;
    void populateMenu(QMenu* menu) override;

private:
    void refresh();
    QString kindTitle() const;

    store::RawPageDocument m_document;
    QLabel* m_title = nullptr;
    QLabel* m_detail = nullptr;
};

} // namespace kestrum::app
