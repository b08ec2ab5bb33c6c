#pragma once

#include "common/Colour.h"
#include "editors/grid/CGrid.h"
#include "editors/grid/GridPageDocument.h"
#include "editors/grid/GridSorter.h"
#include "ui/EditorPanel.h"

#include <QAbstractItemView>
#include <QHash>

#include <memory>
#include <optional>

class QAction;
class QActionGroup;
class QCheckBox;
class QMenu;
class QPrinter;
class QToolBar;

namespace kestrum::ui {
class ColourSelector;
}

namespace kestrum::grid {

class GridFindDialog;
class GridReplaceDialog;
class GridView;

// The grid page editor: the grid, its context menu PopupMenu1, the commands of the main
// window's grid toolbar (GridBar) and table menu (TableMenu), find and replace, clipboard,
// export and printing. One editor serves every grid page; the store loads pages into its
// document and saves them from it.
class TRMGridEditor : public ui::EditorPanel
{
    Q_OBJECT
public:
    explicit TRMGridEditor(QWidget* parent = nullptr);
    ~TRMGridEditor() override;

    // ---- EditorPanel
    store::PageDocument& document() override { return m_document; }
    void populateToolBar(QToolBar* toolBar) override;
    void populateMenu(QMenu* menu) override;
    bool canFind() const override { return true; }
    // Read-only: cells can be selected and copied, not edited.
    void setReadOnly(bool readOnly) override;
    void find() override { GridFindBtnClick(); }
    void replace() override { GridReplaceBtnClick(); }

    GridPageDocument& gridDocument() { return m_document; }
    GridView* view() const { return m_view; }
    QMenu* popupMenu() const { return m_popupMenu; }
    // The editor's commands by object name ("GridBoldBtn", "Fixedrow1"...).
    QAction* action(const QString& name) const { return m_actions.value(name); }
    ui::ColourSelector* fontColourSelector() const { return m_fontColour; }
    ui::ColourSelector* backgroundSelector() const { return m_backColour; }
    QCheckBox* multilinesCheck() const { return m_multilines; }
    QPrinter* printer();
    const CGrid& cgrid() const { return m_cgrid; }
    bool isMultiline() const;

    // ---- operations
    // The export dialog, opened with `fileName`; the format follows the typed extension or the
    // chosen filter, and the extension becomes the format's.
    void SaveTableToDisk(const QString& fileName);
    // Asks for a title ("Printing title"); "OK" prints on the printer as it is set up.
    void PrintTheGrid(const QString& title);
    void PreviewTheGrid(const QString& title);
    void SetAlignment(int alignment);
    void SetFontColor(common::TColor colour);
    void SetBackColor(common::TColor colour);
    void AddFontStyle(int styleNumber);
    void RemoveFontStyle(int styleNumber);
    // The selection with its headers into CGrid; then copied as HTML by "Selection + Headers".
    void MoveToCGrid();
    void MoveColumnsToCGrid(int first, int last);
    // Multi-line mode from the "Multilines" check: word wrap, rows fitted and clamped.
    void isMultilinesClick();
    // The toolbar follows the cell that has the focus.
    void GridViewSelectCell(int col, int row);
    // The global find: the first match from the top (bits: 1 match case, 2 whole cell), then
    // the next after the last match. The focus moves to the match.
    bool findFirst(const QString& text, int optionBits);
    bool findNext();

    // The export dialog's filters in the file dialog's form, from the filter string.
    static QStringList saveTableFilters();

public slots:
    void GridSaveBtnClick();
    void GridPrintBtnClick();
    void GridFindBtnClick();
    void GridReplaceBtnClick();
    void GridCutBtnClick();
    void GridCopyBtnClick();
    void GridPasteBtnClick();
    void GridClearBtnClick();
    void GridLeftBtnClick();
    void GridCenterBtnClick();
    void GridRightBtnClick();
    void GridFontBtnClick();
    void Row1Click();
    void Column1Click();
    void Fixedrow1Click();
    void Fixedcolumn1Click();
    void GridBoldClick();
    void GridItalicClick();
    void GridUnderlineClick();
    void GridFontColor2SelectColor(common::TColor colour);
    void GridBackGroundColor2SelectColor(common::TColor colour);
    void MultilinesClick();
    void GridBarDblClick();
    void GridToolBarClick();
    void Style1Click();
    void CopySelectionClick();
    void CopySelectionHeadersClick();
    void CopyTableClick();
    void PrintPreviewClick();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QAction* makeAction(const QString& name, const QString& text, const QIcon& icon = {});
    void buildActions();
    void buildPopupMenu();
    void fillMenu(QMenu* menu, bool withUndo);
    void refreshFixedChecks();
    void refreshToolbar();
    void onGridReset();
    void onDoubleClick(GridCell cell);
    void findFromCurrent(const QString& text, const GridFindOptions& options);
    void replaceCurrent();
    void replaceAll();
    void putOnClipboard(const GridDocument& grid);

    GridPageDocument m_document;
    GridView* m_view = nullptr;
    QAbstractItemView::EditTriggers m_editTriggers;
    QMenu* m_popupMenu = nullptr;
    QHash<QString, QAction*> m_actions;
    QActionGroup* m_alignmentGroup = nullptr;
    ui::ColourSelector* m_fontColour = nullptr;
    ui::ColourSelector* m_backColour = nullptr;
    QCheckBox* m_multilines = nullptr;
    QToolBar* m_toolBar = nullptr;
    GridFindDialog* m_findDialog = nullptr;
    GridReplaceDialog* m_replaceDialog = nullptr;
    std::unique_ptr<QPrinter> m_printer;
    CGrid m_cgrid;
    HeaderSortState m_sort;
    QString m_findText;
    GridFindOptions m_findOptions;
    std::optional<GridCell> m_lastMatch;
};

} // namespace kestrum::grid
