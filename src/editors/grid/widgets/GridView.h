#pragma once

#include "editors/grid/GridSelection.h"

#include <QTableView>

class QAbstractButton;

namespace kestrum::grid {

class GridPageDocument;
class GridTableModel;

// The visible grid of a grid page: a table view over the page document whose fixed rows and
// columns are drawn as frozen headers. Range selection; rows and columns are sized and moved
// with the mouse on the headers; cells are edited in place. Every change goes through the
// document's commands, so it can be undone and marks the page modified.
class GridView : public QTableView
{
    Q_OBJECT
public:
    explicit GridView(GridPageDocument* document, QWidget* parent = nullptr);

    GridPageDocument* document() const { return m_document; }
    GridTableModel* gridModel() const { return m_model; }

    // The selection in grid coordinates, cells in selection order.
    GridSelection gridSelection() const;
    std::optional<GridCell> currentCell() const;
    // Moves the focus to a cell of the body (and selects it).
    void setCurrentCell(GridCell cell);
    void selectRect(const GridRect& rect);

    // The text of the corner where fixed rows and fixed columns meet.
    QString cornerText() const;

    // Column sizing and moving on the header (on by default).
    void setColumnSizingAndMoving(bool on);

signals:
    // The focus moved to a cell (grid coordinates).
    void cellSelected(kestrum::grid::GridCell cell);
    // A double click on a cell or a header; `row` is 0 for the header row.
    void cellDoubleClicked(kestrum::grid::GridCell cell);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    void applyLayout();
    void onColumnResized(int section, int oldSize, int newSize);
    void onRowResized(int section, int oldSize, int newSize);
    void onColumnMoved(int logical, int oldVisual, int newVisual);
    void onRowMoved(int logical, int oldVisual, int newVisual);

    GridPageDocument* m_document;
    GridTableModel* m_model;
    QAbstractButton* m_corner = nullptr;
    bool m_applying = false;
    std::optional<GridCell> m_restoreCell;
};

} // namespace kestrum::grid
