#pragma once

#include <QStyledItemDelegate>

namespace kestrum::grid {

// Draws the grid's cells. A right-aligned text too long for its cell loses its start rather
// than its end ("…end of the sentence"), as the left context of a keyword-in-context table
// needs; a centred one loses its middle.
class GridCellDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace kestrum::grid
