#pragma once

#include "editors/diagram/DiagramPageDocument.h"
#include "editors/diagram/DiagramSizing.h"
#include "ui/EditorPanel.h"

#include <QHash>
#include <QImage>

#include <memory>

class QAction;
class QMenu;
class QPrinter;
class QToolBar;

namespace kestrum::diagram {

class DiagramScene;
class DiagramView;
class TRMEditBlockDlg;
class TRMEditBlocksDlg;
class TRMSizingDlg;

// The diagram page editor: the diagram surface, its context menu and copy menu, and the
// commands of the main window's diagram toolbar (DiagramBar). The page edits, restyles,
// deletes and exports what a diagram holds; it never makes blocks or links.
class TRMDiagramEditor : public ui::EditorPanel
{
    Q_OBJECT
public:
    explicit TRMDiagramEditor(QWidget* parent = nullptr);
    ~TRMDiagramEditor() override;

    // ---- EditorPanel
    store::PageDocument& document() override { return m_document; }
    void populateToolBar(QToolBar* toolBar) override;

    DiagramPageDocument& diagramDocument() { return m_document; }
    DiagramView* view() const { return m_view; }
    DiagramScene* scene() const { return m_scene; }
    // Toolbar and menu commands by object name ("btnDiagramZoomIn", "Delete1"...).
    QAction* action(const QString& name) const { return m_actions.value(name); }
    QMenu* popupMenu() const { return m_popupMenu; }
    QMenu* copyMenu() const { return m_copyMenu; }
    // Set by zoom, range, the text and sizing buttons; cleared by the cancel button.
    bool diagramChanged() const { return m_diagramChanged; }
    SizingValues& sizingValues() { return m_sizing; }
    TRMEditBlockDlg* editBlockDialog();
    TRMSizingDlg* sizingDialog();
    TRMEditBlocksDlg* editBlocksDialog();
    // The file the block styling dialog keeps its styles in.
    static QString blockStylesFile();

    // The diagram as a picture (what "Copy as bitmap" copies).
    QImage picture() const;
    QByteArray svgPicture() const;

    // ---- commands
    void Delete1Click();
    void Edit1Click();
    void MenuItem1Click(); // "Copy as bitmap"
    void MenuItem2Click(); // "Copy as metafile" (SVG here)
    // Zooms so that the whole diagram fits with a margin of 10, then centres it horizontally.
    void FitToCenter();
    // The block styling dialog over the diagram's grouping, its styles kept in
    // blockStylesFile().
    void EditBlockStyles();
    void atDiagram1DControlMouseUp(Qt::MouseButton button, const QPoint& globalPos);
    void atDiagram1Click() { m_document.markModified(); }
    void atDiagram1Enter() { m_document.markModified(); }
    void atDiagram1AfterMove() { m_document.markModified(); }

    void btnDiagramSaveClick();
    void btnDiagramPrintClick();
    void btnDiagramZoomInClick();
    void btnDiagramZoomOutClick();
    void BtnDiagramPhotoClick();
    void btnDiagramSelectClick();
    void btnDiagramDragClick();
    void btnDiagramRangeClick();
    void btnDiagramTextClick();
    void btnDiagramSizingClick();
    void btnDiagramCancelClick();

    // The page for a printer: the diagram scaled to fit the page.
    void paintOnPrinter(QPrinter* printer) const;
    // A picture saved through the save dialog (PNG, bitmap or JPEG by the chosen filter, the
    // extension replaced by the filter's).
    void savePicture(const QImage& picture);

private:
    QAction* makeAction(const QString& name, const QString& text, const QString& themeIcon = {});
    void buildActions();
    void setZoom(int zoom);
    void followDocument();
    QPoint belowButton(QAction* action) const;

    DiagramPageDocument m_document;
    DiagramScene* m_scene = nullptr;
    DiagramView* m_view = nullptr;
    QMenu* m_popupMenu = nullptr;
    QMenu* m_copyMenu = nullptr;
    QToolBar* m_toolBar = nullptr;
    QHash<QString, QAction*> m_actions;
    TRMEditBlockDlg* m_editDialog = nullptr;
    TRMSizingDlg* m_sizingDialog = nullptr;
    TRMEditBlocksDlg* m_blocksDialog = nullptr;
    std::unique_ptr<QPrinter> m_printer;
    SizingValues m_sizing;
    bool m_diagramChanged = false;
};

} // namespace kestrum::diagram
