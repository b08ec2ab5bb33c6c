#pragma once

#include <QAbstractItemModel>
#include <QColor>

namespace kestrum::store {
class OutlineModel;
class OutlineNode;
} // namespace kestrum::store

namespace kestrum::app {

// The outline as an item model for the tree view: follows every change of the store's outline
// model and shows captions, kind icons and colour marks.
class OutlineItemModel : public QAbstractItemModel
{
    Q_OBJECT
public:
    static constexpr int kNodeRole = Qt::UserRole + 1;
    // What a node without a caption shows, in the grey of disabled text; its caption stays
    // empty.
    static constexpr const char* kUntitled = "{untitled}";
    static QColor untitledColour();

    explicit OutlineItemModel(store::OutlineModel& outline, QObject* parent = nullptr);

    QModelIndex indexFor(const store::OutlineNode* node) const;
    store::OutlineNode* nodeFor(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    Qt::DropActions supportedDropActions() const override;
    Qt::DropActions supportedDragActions() const override;

private:
    store::OutlineModel& m_outline;
};

} // namespace kestrum::app
