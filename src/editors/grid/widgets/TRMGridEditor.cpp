#include "TRMGridEditor.h"
#include "ui/WaitCursor.h"

#include "editors/grid/GridExporter.h"
#include "editors/grid/GridRowSizer.h"
#include "editors/grid/widgets/GridClipboardData.h"
#include "editors/grid/widgets/GridFindDialog.h"
#include "editors/grid/widgets/GridIcons.h"
#include "editors/grid/widgets/GridPrintJob.h"
#include "editors/grid/widgets/GridReplaceDialog.h"
#include "editors/grid/widgets/GridView.h"
#include "ui/ColourSelector.h"
#include "ui/Dialogs.h"

#include <QActionGroup>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QEvent>
#include <QMenu>
#include <QMimeData>
#include <QPrinter>
#include <QRegularExpression>
#include <QToolBar>
#include <QVBoxLayout>

namespace kestrum::grid {

namespace {

using ui::WaitCursor;

} // namespace

TRMGridEditor::TRMGridEditor(QWidget* parent) : ui::EditorPanel(parent)
{
    setObjectName(QStringLiteral("TRMGridEditor"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_view = new GridView(&m_document, this);
    m_editTriggers = m_view->editTriggers();
    layout->addWidget(m_view);

    // Toolbar widgets exist from the start; populateToolBar places them.
    m_fontColour =
        new ui::ColourSelector(ui::ColourSelector::Kind::Text, QStringLiteral("Font colour"), this);
    m_fontColour->setObjectName(QStringLiteral("GridFontColor2"));
    m_fontColour->hide();
    m_backColour = new ui::ColourSelector(ui::ColourSelector::Kind::Background,
                                          QStringLiteral("Background colour"), this);
    m_backColour->setObjectName(QStringLiteral("GridBackGroundColor2"));
    m_backColour->hide();
    m_multilines = new QCheckBox(QStringLiteral("Multilines"), this);
    m_multilines->setObjectName(QStringLiteral("Multilines"));
    m_multilines->hide();
    connect(m_fontColour, &ui::ColourSelector::colourSelected, this,
            [this](const QColor& c) { GridFontColor2SelectColor(common::fromQColor(c)); });
    connect(m_backColour, &ui::ColourSelector::colourSelected, this,
            [this](const QColor& c) { GridBackGroundColor2SelectColor(common::fromQColor(c)); });
    connect(m_multilines, &QCheckBox::clicked, this, &TRMGridEditor::MultilinesClick);

    buildActions();
    buildPopupMenu();

    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_view, &QWidget::customContextMenuRequested, this, [this](const QPoint& pos) {
        m_popupMenu->popup(m_view->viewport()->mapToGlobal(pos));
    });
    connect(m_view, &GridView::cellSelected, this,
            [this](GridCell cell) { GridViewSelectCell(cell.col, cell.row); });
    connect(m_view, &GridView::cellDoubleClicked, this, &TRMGridEditor::onDoubleClick);
    connect(&m_document, &GridPageDocument::gridReset, this, &TRMGridEditor::onGridReset);
    connect(&m_document, &GridPageDocument::cellsChanged, this, [this] { refreshToolbar(); });
}

TRMGridEditor::~TRMGridEditor()
{
    // The view reads the document, which is a member: it goes first, before QWidget deletes
    // the children after the members are gone.
    delete m_view;
    m_view = nullptr;
}

QPrinter* TRMGridEditor::printer()
{
    if (!m_printer) {
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    }
    return m_printer.get();
}

bool TRMGridEditor::isMultiline() const
{
    return m_document.grid().wordWrap();
}

// ---- actions and menus ---------------------------------------------------------------------

QAction* TRMGridEditor::makeAction(const QString& name, const QString& text, const QIcon& icon)
{
    auto* action = new QAction(icon, text, this);
    action->setObjectName(name);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    m_actions.insert(name, action);
    addAction(action);
    return action;
}

void TRMGridEditor::buildActions()
{
    auto connectTo = [this](QAction* action, void (TRMGridEditor::*slot)()) {
        connect(action, &QAction::triggered, this, slot);
    };
    QAction* a = makeAction(QStringLiteral("GridCutBtn"), QStringLiteral("Cut"),
                            GridIcons::themed(QStringLiteral("edit-cut"), QStringLiteral("✂")));
    a->setShortcut(QKeySequence::Cut);
    a->setToolTip(QStringLiteral("Cut"));
    connectTo(a, &TRMGridEditor::GridCutBtnClick);
    a = makeAction(QStringLiteral("GridCopyBtn"), QStringLiteral("Copy"),
                   GridIcons::themed(QStringLiteral("edit-copy"), GridIcons::Shape::Copy));
    a->setShortcut(QKeySequence::Copy);
    connectTo(a, &TRMGridEditor::GridCopyBtnClick);
    connectTo(makeAction(QStringLiteral("CopySelection"), QStringLiteral("Selection")),
              &TRMGridEditor::CopySelectionClick);
    connectTo(
        makeAction(QStringLiteral("CopySelectionHeaders"), QStringLiteral("Selection + Headers")),
        &TRMGridEditor::CopySelectionHeadersClick);
    connectTo(makeAction(QStringLiteral("CopyTable"), QStringLiteral("Table")),
              &TRMGridEditor::CopyTableClick);
    a = makeAction(QStringLiteral("GridPasteBtn"), QStringLiteral("Paste"),
                   GridIcons::themed(QStringLiteral("edit-paste"), GridIcons::Shape::Paste));
    a->setShortcut(QKeySequence::Paste);
    connectTo(a, &TRMGridEditor::GridPasteBtnClick);
    a = makeAction(QStringLiteral("GridClearBtn"), QStringLiteral("Clear"),
                   GridIcons::themed(QStringLiteral("edit-clear"), QStringLiteral("⌫")));
    a->setShortcut(QKeySequence::Delete);
    connectTo(a, &TRMGridEditor::GridClearBtnClick);
    connectTo(makeAction(QStringLiteral("Row1"), QStringLiteral("Entire row"),
                         GridIcons::glyph(QStringLiteral("−R"))),
              &TRMGridEditor::Row1Click);
    connectTo(makeAction(QStringLiteral("Column1"), QStringLiteral("Entire column"),
                         GridIcons::glyph(QStringLiteral("−C"))),
              &TRMGridEditor::Column1Click);
    connectTo(makeAction(QStringLiteral("GridFontBtn"), QStringLiteral("Font..."),
                         GridIcons::themed(QStringLiteral("preferences-desktop-font"),
                                           QStringLiteral("F"))),
              &TRMGridEditor::GridFontBtnClick);

    m_alignmentGroup = new QActionGroup(this);
    m_alignmentGroup->setExclusive(true);
    const struct
    {
        const char* name;
        const char* text;
        int alignment;
        void (TRMGridEditor::*slot)();
    } alignments[] = {
        {"GridLeftBtn", "Left", CellAlignment::Left, &TRMGridEditor::GridLeftBtnClick},
        {"GridCenterBtn", "Center", CellAlignment::Centre, &TRMGridEditor::GridCenterBtnClick},
        {"GridRightBtn", "Right", CellAlignment::Right, &TRMGridEditor::GridRightBtnClick},
    };
    for (const auto& item : alignments) {
        a = makeAction(QString::fromLatin1(item.name), QString::fromLatin1(item.text),
                       GridIcons::alignment(item.alignment));
        a->setCheckable(true);
        m_alignmentGroup->addAction(a);
        connectTo(a, item.slot);
    }
    a = makeAction(QStringLiteral("Fixedrow1"), QStringLiteral("Fixed row"),
                   GridIcons::glyph(QStringLiteral("FR")));
    a->setCheckable(true);
    connectTo(a, &TRMGridEditor::Fixedrow1Click);
    a = makeAction(QStringLiteral("Fixedcolumn1"), QStringLiteral("Fixed column"),
                   GridIcons::glyph(QStringLiteral("FC")));
    a->setCheckable(true);
    connectTo(a, &TRMGridEditor::Fixedcolumn1Click);
    connectTo(
        makeAction(QStringLiteral("GridSaveBtn"), QStringLiteral("Export..."),
                   GridIcons::themed(QStringLiteral("document-save-as"), GridIcons::Shape::Save)),
        &TRMGridEditor::GridSaveBtnClick);
    makeAction(QStringLiteral("PrintSetup1"), QStringLiteral("Print setup...")); // does nothing
    a = makeAction(QStringLiteral("GridPrintBtn"), QStringLiteral("Print..."),
                   GridIcons::themed(QStringLiteral("document-print"), GridIcons::Shape::Print));
    connectTo(a, &TRMGridEditor::GridPrintBtnClick);
    connectTo(makeAction(QStringLiteral("PrintPreview1"), QStringLiteral("Print preview..."),
                         GridIcons::themed(QStringLiteral("document-print-preview"),
                                           GridIcons::Shape::Preview)),
              &TRMGridEditor::PrintPreviewClick);
    connectTo(makeAction(QStringLiteral("GridFindBtn"), QStringLiteral("Find..."),
                         GridIcons::themed(QStringLiteral("edit-find"), GridIcons::Shape::Find)),
              &TRMGridEditor::GridFindBtnClick);
    connectTo(makeAction(QStringLiteral("GridReplaceBtn"), QStringLiteral("Replace..."),
                         GridIcons::themed(QStringLiteral("edit-find-replace"),
                                           GridIcons::Shape::Replace)),
              &TRMGridEditor::GridReplaceBtnClick);
    a = makeAction(QStringLiteral("GridBoldBtn"), QStringLiteral("Bold"),
                   GridIcons::letter(QStringLiteral("B"), true, false, false));
    a->setCheckable(true);
    a->setShortcut(QKeySequence::Bold);
    connectTo(a, &TRMGridEditor::GridBoldClick);
    a = makeAction(QStringLiteral("GridItalicBtn"), QStringLiteral("Italic"),
                   GridIcons::letter(QStringLiteral("I"), false, true, false));
    a->setCheckable(true);
    a->setShortcut(QKeySequence::Italic);
    connectTo(a, &TRMGridEditor::GridItalicClick);
    a = makeAction(QStringLiteral("GridUnderlineBtn"), QStringLiteral("Underline"),
                   GridIcons::letter(QStringLiteral("U"), false, false, true));
    a->setCheckable(true);
    a->setShortcut(QKeySequence::Underline);
    connectTo(a, &TRMGridEditor::GridUnderlineClick);
    connectTo(makeAction(QStringLiteral("Style1"), QStringLiteral("Style...")),
              &TRMGridEditor::Style1Click);

    QAction* undo = m_document.undoStack()->createUndoAction(this, QStringLiteral("Undo"));
    undo->setObjectName(QStringLiteral("GridUndo"));
    undo->setShortcut(QKeySequence::Undo);
    undo->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction(undo);
    m_actions.insert(undo->objectName(), undo);
    QAction* redo = m_document.undoStack()->createRedoAction(this, QStringLiteral("Redo"));
    redo->setObjectName(QStringLiteral("GridRedo"));
    redo->setShortcut(QKeySequence::Redo);
    redo->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction(redo);
    m_actions.insert(redo->objectName(), redo);
}

void TRMGridEditor::fillMenu(QMenu* menu, bool withUndo)
{
    if (withUndo) {
        menu->addAction(action(QStringLiteral("GridUndo")));
        menu->addAction(action(QStringLiteral("GridRedo")));
        menu->addSeparator();
    }
    menu->addAction(action(QStringLiteral("GridCutBtn")));
    QMenu* copy = menu->addMenu(QStringLiteral("Copy"));
    copy->addAction(action(QStringLiteral("CopySelection")));
    copy->addAction(action(QStringLiteral("CopySelectionHeaders")));
    copy->addAction(action(QStringLiteral("CopyTable")));
    menu->addAction(action(QStringLiteral("GridPasteBtn")));
    menu->addAction(action(QStringLiteral("GridClearBtn")));
    menu->addSeparator();
    QMenu* remove = menu->addMenu(QStringLiteral("Delete"));
    remove->addAction(action(QStringLiteral("Row1")));
    remove->addAction(action(QStringLiteral("Column1")));
    menu->addSeparator();
    menu->addAction(action(QStringLiteral("GridFontBtn")));
    QMenu* align = menu->addMenu(QStringLiteral("Alignment"));
    align->addAction(action(QStringLiteral("GridLeftBtn")));
    align->addAction(action(QStringLiteral("GridCenterBtn")));
    align->addAction(action(QStringLiteral("GridRightBtn")));
    if (withUndo) {
        menu->addAction(action(QStringLiteral("Style1")));
    }
    QMenu* table = menu->addMenu(QStringLiteral("Table"));
    table->addAction(action(QStringLiteral("Fixedrow1")));
    table->addAction(action(QStringLiteral("Fixedcolumn1")));
    menu->addSeparator();
    menu->addAction(action(QStringLiteral("GridSaveBtn")));
    menu->addSeparator();
    menu->addAction(action(QStringLiteral("PrintSetup1")));
    if (withUndo) {
        menu->addAction(action(QStringLiteral("PrintPreview1")));
    }
    menu->addAction(action(QStringLiteral("GridPrintBtn")));
    connect(menu, &QMenu::aboutToShow, this, &TRMGridEditor::refreshFixedChecks);
}

void TRMGridEditor::buildPopupMenu()
{
    m_popupMenu = new QMenu(this);
    m_popupMenu->setObjectName(QStringLiteral("PopupMenu1"));
    fillMenu(m_popupMenu, false);
}

void TRMGridEditor::setReadOnly(bool readOnly)
{
    m_view->setEditTriggers(readOnly ? QAbstractItemView::NoEditTriggers : m_editTriggers);
}

void TRMGridEditor::populateMenu(QMenu* menu)
{
    fillMenu(menu, true);
}

void TRMGridEditor::populateToolBar(QToolBar* toolBar)
{
    m_toolBar = toolBar;
    toolBar->addAction(action(QStringLiteral("GridSaveBtn")));
    toolBar->addAction(action(QStringLiteral("GridPrintBtn")));
    toolBar->addSeparator();
    toolBar->addAction(action(QStringLiteral("GridFindBtn")));
    toolBar->addAction(action(QStringLiteral("GridReplaceBtn")));
    toolBar->addSeparator();
    toolBar->addAction(action(QStringLiteral("GridCutBtn")));
    toolBar->addAction(action(QStringLiteral("GridCopyBtn")));
    toolBar->addAction(action(QStringLiteral("GridPasteBtn")));
    toolBar->addAction(action(QStringLiteral("GridClearBtn")));
    toolBar->addSeparator();
    toolBar->addAction(action(QStringLiteral("GridBoldBtn")));
    toolBar->addAction(action(QStringLiteral("GridItalicBtn")));
    toolBar->addAction(action(QStringLiteral("GridUnderlineBtn")));
    toolBar->addSeparator();
    toolBar->addAction(action(QStringLiteral("GridLeftBtn")));
    toolBar->addAction(action(QStringLiteral("GridCenterBtn")));
    toolBar->addAction(action(QStringLiteral("GridRightBtn")));
    toolBar->addSeparator();
    toolBar->addAction(action(QStringLiteral("GridFontBtn")));
    toolBar->addWidget(m_fontColour)->setVisible(true);
    toolBar->addWidget(m_backColour)->setVisible(true);
    toolBar->addSeparator();
    toolBar->addAction(action(QStringLiteral("Row1")));
    toolBar->addAction(action(QStringLiteral("Column1")));
    toolBar->addAction(action(QStringLiteral("Fixedrow1")));
    toolBar->addAction(action(QStringLiteral("Fixedcolumn1")));
    toolBar->addSeparator();
    toolBar->addWidget(m_multilines)->setVisible(true);
    toolBar->installEventFilter(this);
    refreshFixedChecks();
    refreshToolbar();
}

bool TRMGridEditor::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_toolBar) {
        if (event->type() == QEvent::MouseButtonDblClick) {
            GridBarDblClick();
        } else if (event->type() == QEvent::MouseButtonPress) {
            GridToolBarClick();
        }
    }
    return ui::EditorPanel::eventFilter(watched, event);
}

void TRMGridEditor::refreshFixedChecks()
{
    action(QStringLiteral("Fixedrow1"))->setChecked(m_document.grid().fixedRows() >= 1);
    action(QStringLiteral("Fixedcolumn1"))->setChecked(m_document.grid().fixedColumns() >= 1);
}

void TRMGridEditor::onGridReset()
{
    const QSignalBlocker block(m_multilines);
    m_multilines->setChecked(m_document.grid().wordWrap());
    m_lastMatch.reset();
    refreshFixedChecks();
    refreshToolbar();
}

void TRMGridEditor::refreshToolbar()
{
    if (const std::optional<GridCell> cell = m_view->currentCell()) {
        GridViewSelectCell(cell->col, cell->row);
    }
}

// ---- toolbar following the cell ------------------------------------------------------------

void TRMGridEditor::GridViewSelectCell(int col, int row)
{
    if (!m_document.grid().isValidCell(col, row)) {
        return;
    }
    const GridCellFormat& f = m_document.grid().format(col, row);
    action(QStringLiteral("GridBoldBtn"))->setChecked(f.isBold());
    action(QStringLiteral("GridItalicBtn"))->setChecked(f.isItalic());
    action(QStringLiteral("GridUnderlineBtn"))->setChecked(f.isUnderline());
    const char* alignmentAction = f.alignment == CellAlignment::Right    ? "GridRightBtn"
                                  : f.alignment == CellAlignment::Centre ? "GridCenterBtn"
                                                                         : "GridLeftBtn";
    action(QString::fromLatin1(alignmentAction))->setChecked(true);
    m_fontColour->setColour(common::toQColor(f.fontColour));
    m_backColour->setColour(common::toQColor(f.background));
}

// ---- cell properties -------------------------------------------------------------------------

void TRMGridEditor::SetAlignment(int alignment)
{
    m_document.setAlignment(m_view->gridSelection(), quint8(alignment));
    m_view->viewport()->update();
}

void TRMGridEditor::SetFontColor(common::TColor colour)
{
    m_document.setFontColour(m_view->gridSelection(), colour);
}

void TRMGridEditor::SetBackColor(common::TColor colour)
{
    m_document.setBackColour(m_view->gridSelection(), colour);
}

void TRMGridEditor::AddFontStyle(int styleNumber)
{
    m_document.addFontStyle(m_view->gridSelection(), styleNumber);
}

void TRMGridEditor::RemoveFontStyle(int styleNumber)
{
    m_document.removeFontStyle(m_view->gridSelection(), styleNumber);
}

void TRMGridEditor::GridLeftBtnClick()
{
    SetAlignment(CellAlignment::Left);
    refreshToolbar();
}

void TRMGridEditor::GridCenterBtnClick()
{
    SetAlignment(CellAlignment::Centre);
    refreshToolbar();
}

void TRMGridEditor::GridRightBtnClick()
{
    SetAlignment(CellAlignment::Right);
    refreshToolbar();
}

void TRMGridEditor::GridBoldClick()
{
    if (action(QStringLiteral("GridBoldBtn"))->isChecked()) {
        AddFontStyle(0);
    } else {
        RemoveFontStyle(0);
    }
}

void TRMGridEditor::GridItalicClick()
{
    if (action(QStringLiteral("GridItalicBtn"))->isChecked()) {
        AddFontStyle(1);
    } else {
        RemoveFontStyle(1);
    }
}

void TRMGridEditor::GridUnderlineClick()
{
    if (action(QStringLiteral("GridUnderlineBtn"))->isChecked()) {
        AddFontStyle(2);
    } else {
        RemoveFontStyle(2);
    }
}

void TRMGridEditor::GridFontColor2SelectColor(common::TColor colour)
{
    SetFontColor(colour);
}

void TRMGridEditor::GridBackGroundColor2SelectColor(common::TColor colour)
{
    SetBackColor(colour);
}

void TRMGridEditor::GridFontBtnClick()
{
    const GridSelection selection = m_view->gridSelection();
    const GridCell first = selection.targets().front();
    if (m_document.grid().isValidCell(first.col, first.row)) {
        const GridCellFormat start = m_document.grid().format(first.col, first.row);
        if (const std::optional<QFont> font =
                ui::dialogs().getFont(this, start.font(), QStringLiteral("Font"))) {
            GridCellFormat chosen = start;
            chosen.setFont(*font);
            m_document.setFont(selection, chosen.fontName, chosen.fontSize, start.fontColour,
                               chosen.fontStyle);
        }
    }
    // Marked modified even when the dialog is cancelled.
    m_document.markModified();
}

void TRMGridEditor::Style1Click()
{
    ui::dialogs().information(this, QStringLiteral("Not available yet!"));
}

// ---- rows, columns, fixed cells --------------------------------------------------------------

void TRMGridEditor::Row1Click()
{
    const GridRect range = m_view->gridSelection().range();
    if (!m_document.deleteRows(range.top, range.bottom)) {
        ui::dialogs().information(this, QStringLiteral("Cannot delete all rows"));
    }
}

void TRMGridEditor::Column1Click()
{
    const GridRect range = m_view->gridSelection().range();
    if (!m_document.deleteColumns(range.left, range.right)) {
        ui::dialogs().information(this, QStringLiteral("Cannot delete all collumns"));
    }
}

void TRMGridEditor::Fixedrow1Click()
{
    m_document.setFixedRows(action(QStringLiteral("Fixedrow1"))->isChecked() ? 1 : 0);
    refreshFixedChecks();
}

void TRMGridEditor::Fixedcolumn1Click()
{
    m_document.setFixedColumns(action(QStringLiteral("Fixedcolumn1"))->isChecked() ? 1 : 0);
    refreshFixedChecks();
}

void TRMGridEditor::onDoubleClick(GridCell cell)
{
    if (cell.row == 0) {
        m_document.sortByColumn(cell.col, m_sort.next(cell.col));
    }
    m_document.markModified();
}

void TRMGridEditor::isMultilinesClick()
{
    const bool on = m_multilines->isChecked();
    WaitCursor wait;
    GridDocument measured = m_document.grid();
    measured.setWordWrap(on);
    m_document.setMultiline(on, GridRowSizer::multilineHeights(measured, on));
}

void TRMGridEditor::MultilinesClick()
{
    isMultilinesClick();
    refreshToolbar();
}

void TRMGridEditor::GridBarDblClick()
{
    m_document.unhideColumns(30);
}

void TRMGridEditor::GridToolBarClick()
{
    if (m_document.grid().hasHiddenColumns()) {
        m_document.unhideColumns(0);
    }
    m_view->setColumnSizingAndMoving(true);
}

// ---- clipboard -------------------------------------------------------------------------------

void TRMGridEditor::putOnClipboard(const GridDocument& grid)
{
    QGuiApplication::clipboard()->setMimeData(GridClipboardData::mimeFor(grid));
}

void TRMGridEditor::CopySelectionClick()
{
    putOnClipboard(GridClipboardData::subGrid(m_document.grid(), m_view->gridSelection().range()));
}

void TRMGridEditor::MoveToCGrid()
{
    m_cgrid.MoveToCGrid(m_document.grid(), m_view->gridSelection().range());
}

void TRMGridEditor::MoveColumnsToCGrid(int first, int last)
{
    m_cgrid.MoveColumnsToCGrid(m_document.grid(), first, last);
}

void TRMGridEditor::CopySelectionHeadersClick()
{
    MoveToCGrid();
    putOnClipboard(m_cgrid.document());
}

void TRMGridEditor::CopyTableClick()
{
    putOnClipboard(m_document.grid());
}

void TRMGridEditor::GridCopyBtnClick()
{
    CopySelectionClick();
}

void TRMGridEditor::GridCutBtnClick()
{
    CopySelectionClick();
    m_document.clearCells(m_view->gridSelection());
}

void TRMGridEditor::GridPasteBtnClick()
{
    const std::vector<QStringList> rows =
        GridClipboardData::rowsFrom(QGuiApplication::clipboard()->mimeData());
    if (rows.empty()) {
        return;
    }
    const GridRect range = m_view->gridSelection().range();
    m_document.pasteRows({range.left, range.top}, rows);
}

void TRMGridEditor::GridClearBtnClick()
{
    m_document.clearCells(m_view->gridSelection());
}

// ---- find and replace ------------------------------------------------------------------------

void TRMGridEditor::findFromCurrent(const QString& text, const GridFindOptions& options)
{
    const std::optional<GridCell> found =
        GridFinder::find(m_document.grid(), text, options, m_view->currentCell());
    if (found) {
        m_view->setCurrentCell(*found);
    } else {
        ui::dialogs().information(this, QStringLiteral("Not found!"));
    }
}

void TRMGridEditor::GridFindBtnClick()
{
    if (!m_findDialog) {
        m_findDialog = new GridFindDialog(this);
        connect(m_findDialog, &GridFindDialog::findNextRequested, this,
                [this] { findFromCurrent(m_findDialog->text(), m_findDialog->options()); });
    }
    ui::dialogs().exec(m_findDialog);
}

void TRMGridEditor::replaceCurrent()
{
    const QString text = m_replaceDialog->text();
    const GridFindOptions options = m_replaceDialog->options();
    if (const std::optional<GridCell> cell = m_view->currentCell()) {
        m_document.replaceCell(*cell, text, m_replaceDialog->replacement(), options);
    }
    findFromCurrent(text, options);
}

void TRMGridEditor::replaceAll()
{
    const int count = m_document.replaceAll(m_replaceDialog->text(), m_replaceDialog->replacement(),
                                            m_replaceDialog->options());
    ui::dialogs().information(this, count == 0 ? QStringLiteral("Not found!")
                                               : QStringLiteral("%1 cell(s) replaced.").arg(count));
}

void TRMGridEditor::GridReplaceBtnClick()
{
    if (!m_replaceDialog) {
        m_replaceDialog = new GridReplaceDialog(this);
        connect(m_replaceDialog, &GridFindDialog::findNextRequested, this,
                [this] { findFromCurrent(m_replaceDialog->text(), m_replaceDialog->options()); });
        connect(m_replaceDialog, &GridReplaceDialog::replaceRequested, this,
                &TRMGridEditor::replaceCurrent);
        connect(m_replaceDialog, &GridReplaceDialog::replaceAllRequested, this,
                &TRMGridEditor::replaceAll);
    }
    ui::dialogs().exec(m_replaceDialog);
}

bool TRMGridEditor::findFirst(const QString& text, int optionBits)
{
    m_findText = text;
    m_findOptions = GridFindOptions::fromBits(optionBits);
    m_lastMatch = GridFinder::find(m_document.grid(), m_findText, m_findOptions);
    if (m_lastMatch) {
        m_view->setCurrentCell(*m_lastMatch);
    }
    return m_lastMatch.has_value();
}

bool TRMGridEditor::findNext()
{
    if (!m_lastMatch) {
        return false;
    }
    m_lastMatch = GridFinder::find(m_document.grid(), m_findText, m_findOptions, m_lastMatch);
    if (m_lastMatch) {
        m_view->setCurrentCell(*m_lastMatch);
    }
    return m_lastMatch.has_value();
}

// ---- export and printing ---------------------------------------------------------------------

QStringList TRMGridEditor::saveTableFilters()
{
    // "Label (*.a;*.b)|*.A;*.B|...": the file dialog shows the labels and matches their
    // patterns (case-insensitively), written with blanks between them.
    const QStringList parts = GridExporter::saveTableFilter().split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString label = parts[i];
        const qsizetype open = label.lastIndexOf(QLatin1Char('('));
        if (open >= 0) {
            label = label.left(open) + label.mid(open).replace(QLatin1Char(';'), QLatin1Char(' '));
        }
        filters << label;
    }
    return filters;
}

void TRMGridEditor::SaveTableToDisk(const QString& fileName)
{
    ui::Dialogs::FileRequest request;
    request.caption = QStringLiteral("Export");
    request.fileName = fileName;
    request.filters = saveTableFilters();
    request.filterIndex = 1;
    const std::optional<ui::Dialogs::FileChoice> choice =
        ui::dialogs().getSaveFileName(this, request);
    if (!choice || choice->fileName.isEmpty()) {
        return;
    }
    const int format = GridExporter::formatFor(choice->fileName, choice->filterIndex);
    const QString target = GridExporter::fileNameFor(choice->fileName, format);
    Status written;
    {
        WaitCursor wait;
        // The spreadsheet export runs with the selection hidden.
        const bool hideSelection = format == ExportFormat::Excel;
        if (hideSelection) {
            m_view->setUpdatesEnabled(false);
        }
        written = m_document.exportTo(target, format);
        if (hideSelection) {
            m_view->setUpdatesEnabled(true);
        }
    }
    if (!written) {
        ui::dialogs().warning(this, written.error());
    }
}

void TRMGridEditor::GridSaveBtnClick()
{
    SaveTableToDisk(QString());
}

void TRMGridEditor::PrintTheGrid(const QString& title)
{
    GridPrintJob::print(this, printer(), m_document.grid(), title, isMultiline());
}

void TRMGridEditor::PreviewTheGrid(const QString& title)
{
    GridPrintJob::preview(this, printer(), m_document.grid(), title, isMultiline());
}

void TRMGridEditor::GridPrintBtnClick()
{
    PrintTheGrid(QString());
}

void TRMGridEditor::PrintPreviewClick()
{
    PreviewTheGrid(QString());
}

} // namespace kestrum::grid
