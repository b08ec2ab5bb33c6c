#include "GridCellDelegate.h"

namespace kestrum::grid {

void GridCellDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (option->textElideMode == Qt::ElideNone) {
        return; // word wrap
    }
    if (option->displayAlignment & Qt::AlignRight) {
        option->textElideMode = Qt::ElideLeft;
    } else if (option->displayAlignment & Qt::AlignHCenter) {
        option->textElideMode = Qt::ElideMiddle;
    }
}

} // namespace kestrum::grid
