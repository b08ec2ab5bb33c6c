#include "OutlineItemModel.h"

#include "app/Icons.h"
#include "common/Colour.h"
#include "store/OutlineModel.h"
#include "store/PageType.h"

#include <QBrush>
#include <QFont>
#include <QGuiApplication>
#include <QPalette>

namespace kestrum::app {

using store::OutlineNode;

QColor OutlineItemModel::untitledColour()
{
    return QGuiApplication::palette().color(QPalette::Disabled, QPalette::Text);
}

OutlineItemModel::OutlineItemModel(store::OutlineModel& outline, QObject* parent)
    : QAbstractItemModel(parent), m_outline(outline)
{
    using M = store::OutlineModel;
    connect(&outline, &M::nodesAboutToBeInserted, this,
            [this](OutlineNode* parent, int row, int count) {
                beginInsertRows(parent ? indexFor(parent) : QModelIndex(), row, row + count - 1);
            });
    connect(&outline, &M::nodesInserted, this, [this] { endInsertRows(); });
    connect(&outline, &M::nodeAboutToBeRemoved, this, [this](OutlineNode* node) {
        const QModelIndex index = indexFor(node);
        beginRemoveRows(index.parent(), index.row(), index.row());
    });
    connect(&outline, &M::nodeRemoved, this, [this] { endRemoveRows(); });
    connect(&outline, &M::nodeAboutToBeMoved, this,
            [this](OutlineNode* node, OutlineNode* newParent, int destinationRow) {
                const QModelIndex from = indexFor(node);
                beginMoveRows(from.parent(), from.row(), from.row(), indexFor(newParent),
                              destinationRow);
            });
    connect(&outline, &M::nodeMoved, this, [this] { endMoveRows(); });
    connect(&outline, &M::nodeChanged, this, [this](OutlineNode* node) {
        const QModelIndex index = indexFor(node);
        emit dataChanged(index, index);
    });
    connect(&outline, &M::modelAboutToBeReset, this, [this] { beginResetModel(); });
    connect(&outline, &M::modelReset, this, [this] { endResetModel(); });
}

QModelIndex OutlineItemModel::indexFor(const OutlineNode* node) const
{
    if (!node) {
        return {};
    }
    return createIndex(node->row(), 0, const_cast<OutlineNode*>(node));
}

OutlineNode* OutlineItemModel::nodeFor(const QModelIndex& index) const
{
    return index.isValid() ? static_cast<OutlineNode*>(index.internalPointer()) : nullptr;
}

QModelIndex OutlineItemModel::index(int row, int column, const QModelIndex& parent) const
{
    if (column != 0 || row < 0) {
        return {};
    }
    if (!parent.isValid()) {
        OutlineNode* root = m_outline.root();
        return root && row == 0 ? createIndex(0, 0, root) : QModelIndex();
    }
    const OutlineNode* node = nodeFor(parent);
    if (row >= node->childCount()) {
        return {};
    }
    return createIndex(row, 0, node->childAt(row));
}

QModelIndex OutlineItemModel::parent(const QModelIndex& child) const
{
    const OutlineNode* node = nodeFor(child);
    return node ? indexFor(node->parent()) : QModelIndex();
}

int OutlineItemModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid()) {
        return m_outline.root() ? 1 : 0;
    }
    if (parent.column() != 0) {
        return 0;
    }
    return nodeFor(parent)->childCount();
}

int OutlineItemModel::columnCount(const QModelIndex&) const
{
    return 1;
}

QVariant OutlineItemModel::data(const QModelIndex& index, int role) const
{
    const OutlineNode* node = nodeFor(index);
    if (!node) {
        return {};
    }
    const store::OutlineNodeData& d = node->fields();
    switch (role) {
    case Qt::DisplayRole:
        return d.caption.isEmpty() ? QString::fromLatin1(kUntitled) : d.caption;
    case Qt::EditRole:
        return d.caption; // a title is edited from what is stored, empty or not
    case Qt::DecorationRole:
        return Icons::forPageKind(d.imageIndex);
    case Qt::ToolTipRole: {
        const QString caption = d.caption.isEmpty() ? QString::fromLatin1(kUntitled) : d.caption;
        if (!node->parent() || d.imageIndex == store::PageType::Folder) {
            return caption;
        }
        return QStringLiteral("%1\n%2 page %3")
            .arg(caption, store::pageKindName(d.imageIndex))
            .arg(d.data);
    }
    case Qt::ForegroundRole:
        if (!d.usesTreeColours) {
            const QColor c = common::toQColor(d.textColor);
            if (c.isValid()) {
                return QBrush(c);
            }
        }
        if (d.caption.isEmpty()) {
            return QBrush(untitledColour()); // the placeholder reads as one
        }
        return {};
    case Qt::BackgroundRole:
        if (!d.usesTreeColours) {
            const QColor c = common::toQColor(d.backColor);
            if (c.isValid()) {
                return QBrush(c);
            }
        }
        return {};
    case Qt::FontRole:
        if (!node->parent()) {
            QFont bold;
            bold.setBold(true);
            return bold;
        }
        return {};
    case kNodeRole:
        return QVariant::fromValue(static_cast<void*>(const_cast<OutlineNode*>(node)));
    default:
        return {};
    }
}

Qt::ItemFlags OutlineItemModel::flags(const QModelIndex& index) const
{
    const OutlineNode* node = nodeFor(index);
    if (!node) {
        return Qt::NoItemFlags;
    }
    Qt::ItemFlags f = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDropEnabled;
    if (node->parent()) {
        f |= Qt::ItemIsDragEnabled; // the project node never moves
    }
    return f;
}

Qt::DropActions OutlineItemModel::supportedDropActions() const
{
    return Qt::MoveAction;
}

Qt::DropActions OutlineItemModel::supportedDragActions() const
{
    return Qt::MoveAction;
}

} // namespace kestrum::app
