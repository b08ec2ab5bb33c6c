#pragma once

#include "editors/grid/GridRect.h"

#include <QAbstractTableModel>
#include <QFont>

#include <vector>

namespace kestrum::grid {

class GridPageDocument;

// The item model over a grid page document. Its rows and columns are the grid's body (below
// the fixed rows, right of the fixed columns); the fixed rows and columns are the header data,
// so the view draws them frozen as headers. Data is read from the document on demand: no
// item objects per cell, so large tables stay fast.
class GridTableModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    explicit GridTableModel(GridPageDocument* document, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    GridCell cellAt(const QModelIndex& index) const;
    QModelIndex indexOf(GridCell cell) const;
    // Grid column of a horizontal header section (and row of a vertical one).
    int gridColumn(int section) const;
    int gridRow(int section) const;
    int sectionOfColumn(int col) const;
    int sectionOfRow(int row) const;

    GridPageDocument* document() const { return m_document; }

private:
    QVariant cellRole(int col, int row, int role) const;
    const QFont& fontFor(quint32 formatId) const;
    void onCellsChanged(const GridRect& rect);

    GridPageDocument* m_document;
    mutable std::vector<QFont> m_fonts; // by format id, filled on demand
    mutable std::vector<bool> m_fontKnown;
};

} // namespace kestrum::grid
