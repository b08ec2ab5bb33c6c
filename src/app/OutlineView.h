#pragma once

#include <QTreeView>

namespace kestrum::store {
class OutlineNode;
}

namespace kestrum::app {

class OutlineItemModel;

// The outline tree. Dragging moves a node within the tree only: the project node never moves
// and a node is never dropped into its own subtree. A drop is reported, not carried out, so
// that the window runs it as an outline command.
class OutlineView : public QTreeView
{
    Q_OBJECT
public:
    explicit OutlineView(QWidget* parent = nullptr);

    void setOutlineModel(OutlineItemModel* model);
    OutlineItemModel* outlineModel() const { return m_model; }
    store::OutlineNode* nodeAt(const QPoint& viewportPos) const;
    store::OutlineNode* draggedNode() const { return m_dragged; }

signals:
    void nodeDropped(kestrum::store::OutlineNode* dragged, kestrum::store::OutlineNode* target,
                     bool ctrl);

protected:
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    bool acceptsDrop(const QPoint& pos) const;

    OutlineItemModel* m_model = nullptr;
    store::OutlineNode* m_dragged = nullptr;
};

} // namespace kestrum::app
