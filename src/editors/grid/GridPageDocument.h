#pragma once

#include "common/Colour.h"
#include "editors/grid/GridDocument.h"
#include "editors/grid/GridFinder.h"
#include "editors/grid/GridSelection.h"
#include "store/PageDocument.h"

#include <QStringList>
#include <QUndoStack>

#include <vector>

namespace kestrum::grid {

// The document of grid pages: the store reads pages into it and saves them from it (content:
// the grid stream), and the grid editor changes it only through the commands below. Every
// command can be undone, and tells the page it changed (contentChanged); loading, clearing
// and importing do not.
class GridPageDocument : public store::PageDocument
{
    Q_OBJECT
public:
    explicit GridPageDocument(QObject* parent = nullptr);
    ~GridPageDocument() override;

    // ---- PageDocument
    store::EditorKind kind() const override { return store::EditorKind::Grid; }
    Result<QByteArray> writeContent() override;
    // An empty content clears the grid. Columns are shown again after loading.
    Status readContent(const QByteArray& in) override;
    void clear() override;
    // A table file: first loaded as delimited text with the current delimiter; then a name
    // holding ".CSV" loads as comma-delimited text, one holding ".TAB" as tab-delimited text,
    // any other as the grid's own file (columns unhidden, no fixed column, columns narrower
    // than 4 pixels widened to 20).
    Status importFile(const QString& path) override;
    // Only the grid's own files are stored at once; delimited imports wait until the page is
    // left modified.
    bool storesImportImmediately(const QString& path) const override;

    const GridDocument& grid() const { return m_grid; }
    QUndoStack* undoStack() { return &m_undo; }
    QChar delimiter() const { return m_delimiter; }
    void setDelimiter(QChar delimiter) { m_delimiter = delimiter; }

    // ---- commands
    void setCellText(int col, int row, const QString& text);
    // Alignment 0 left, 1 right, 2 centre on the selection (or the current cell). When the
    // selection holds row count - 1 cells and its first and last cells share a column, the
    // header cell (row 0) of that column is aligned too.
    void setAlignment(const GridSelection& selection, quint8 alignment);
    void setFontColour(const GridSelection& selection, common::TColor colour);
    void setBackColour(const GridSelection& selection, common::TColor colour);
    // Style numbers 0 bold, 1 italic, 2 underline; the other styles of each cell stay.
    void addFontStyle(const GridSelection& selection, int styleNumber);
    void removeFontStyle(const GridSelection& selection, int styleNumber);
    // The font dialog's result: name, size, colour and style written to every cell.
    void setFont(const GridSelection& selection, const QString& name, int size,
                 common::TColor colour, quint8 style);
    void clearCells(const GridSelection& selection);
    // Rows top..bottom; refused (false, nothing changes) when that is every row.
    bool deleteRows(int top, int bottom);
    bool deleteColumns(int left, int right);
    // Pastes rows of texts from `at`, growing the grid when they reach past it.
    void pasteRows(GridCell at, const std::vector<QStringList>& rows);
    void setFixedRows(int count);
    void setFixedColumns(int count);
    void sortByColumn(int col, bool ascending);
    void moveRow(int from, int to);
    void moveColumn(int from, int to);
    void setColumnWidth(int col, int width);
    void setRowHeight(int row, int height);
    // The multi-line mode: word wrap on or off and the rows' new heights.
    void setMultiline(bool on, const std::vector<int>& rowHeights);
    // Unhides every column and widens those narrower than `minimum` (0: unhide only).
    void unhideColumns(int minimum);
    bool replaceCell(GridCell cell, const QString& text, const QString& with,
                     const GridFindOptions& options);
    int replaceAll(const QString& text, const QString& with, const GridFindOptions& options);
    // Tells the page it changed without changing anything (commands that mark the page
    // modified whatever happens).
    void markModified() { emit contentChanged(); }

    // Export to a file (GridExporter formats). The XML export leaves the grid with one fixed
    // row; that is not a change of the page.
    Status exportTo(const QString& fileName, int format);

    // ---- for the undo commands: exchange state with the document
    void exchangeGrid(GridDocument& other);
    struct CellState
    {
        GridCell cell;
        QString text;
        quint32 formatId = 0;
    };
    void exchangeCells(std::vector<CellState>& cells);
    void exchangeSize(Qt::Orientation orientation, int index, int& size);
    quint32 poolFormat(const GridCellFormat& format) { return m_grid.addFormat(format); }

signals:
    // The whole grid is about to change / has changed (load, clear, structure).
    void gridAboutToBeReset();
    void gridReset();
    // Texts or formats of the cells in `rect` changed.
    void cellsChanged(const kestrum::grid::GridRect& rect);
    void columnWidthChanged(int col);
    void rowHeightChanged(int row);

private:
    template <typename Change>
    void changeFormats(const std::vector<GridCell>& cells, const QString& name, Change change);
    // Pushes a change of the whole grid (undoable).
    void pushGrid(GridDocument changed, const QString& name);
    void replaceSilently(GridDocument grid);

    GridDocument m_grid;
    QUndoStack m_undo;
    QChar m_delimiter = QLatin1Char(',');
};

} // namespace kestrum::grid
