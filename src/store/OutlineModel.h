#pragma once

#include "store/OutlineNode.h"

#include <QObject>

#include <memory>
#include <vector>

namespace kestrum::store {

// The outline tree of a project, independent of any widget. Nodes are addressed by pointer or
// by absolute index (tree order, root = 0). Every change is reported with fine-grained signals
// so that a view adapter can follow it; the selection lives here too, because the stored
// outline remembers the selected node.
class OutlineModel : public QObject
{
    Q_OBJECT
public:
    // Captions longer than this are cut, so that outside data cannot bloat the stored outline.
    static constexpr int kMaxCaptionLength = 4096;

    explicit OutlineModel(QObject* parent = nullptr);
    ~OutlineModel() override;

    OutlineNode* root() const { return m_root.get(); }
    // Number of nodes, root included.
    int count() const;
    bool isEmpty() const { return !m_root; }
    OutlineNode* nodeAt(int absoluteIndex) const;
    int indexOf(const OutlineNode* node) const;
    // Every node in tree order.
    const std::vector<OutlineNode*>& nodesInOrder() const;
    // The node after `node`'s subtree in tree order (its index), or count().
    int subtreeEnd(const OutlineNode* node) const;

    // Structure. `row` -1 appends. Returns the new node.
    OutlineNode* createRoot(const OutlineNodeData& data);
    OutlineNode* insertNode(OutlineNode* parent, int row, const OutlineNodeData& data);
    OutlineNode* addChild(OutlineNode* parent, const OutlineNodeData& data)
    {
        return insertNode(parent, -1, data);
    }
    // Appends several children at once (one insertion for a view to follow); returns the first.
    OutlineNode* appendChildren(OutlineNode* parent, const std::vector<OutlineNodeData>& data);
    // Directly after `sibling`, at its level.
    OutlineNode* addAfter(OutlineNode* sibling, const OutlineNodeData& data);
    // Removes the node with its subtree. Removing the root empties the tree.
    void removeNode(OutlineNode* node);
    // Moves the node (with its subtree) so that it ends at `position` among `newParent`'s
    // children (clamped). Refuses moving the root or into its own subtree.
    bool moveNode(OutlineNode* node, OutlineNode* newParent, int position);
    void clear();
    // Replaces the whole tree (as read from a file).
    void reset(std::unique_ptr<OutlineNode> root);

    // Attributes.
    void setCaption(OutlineNode* node, const QString& caption);
    void setImageIndex(OutlineNode* node, qint32 imageIndex);
    void setData(OutlineNode* node, qint32 data);
    void setColours(OutlineNode* node, bool usesTreeColours, common::TColor text,
                    common::TColor back);
    void setExpanded(OutlineNode* node, bool expanded);
    void setAllExpanded(bool expanded);

    // Selection.
    OutlineNode* selected() const { return m_selected; }
    int selectedIndex() const { return m_selected ? indexOf(m_selected) : -1; }
    void setSelected(OutlineNode* node);
    bool selectIndex(int absoluteIndex);

signals:
    // Insertion of `count` children at `row` of `parent` (parent null: the root itself).
    void nodesAboutToBeInserted(kestrum::store::OutlineNode* parent, int row, int count);
    void nodesInserted(kestrum::store::OutlineNode* parent, int row, int count);
    void nodeAboutToBeRemoved(kestrum::store::OutlineNode* node);
    void nodeRemoved(kestrum::store::OutlineNode* parent, int row);
    // `destinationRow` is counted before the node leaves its old place (as item views expect).
    void nodeAboutToBeMoved(kestrum::store::OutlineNode* node,
                            kestrum::store::OutlineNode* newParent, int destinationRow);
    void nodeMoved(kestrum::store::OutlineNode* node);
    void nodeChanged(kestrum::store::OutlineNode* node);
    void modelAboutToBeReset();
    void modelReset();
    void selectionChanged(kestrum::store::OutlineNode* node);
    // Structure or attributes changed (any of the above).
    void changed();

private:
    void invalidateOrder() { m_orderValid = false; }
    void rebuildOrder() const;
    static void renumber(OutlineNode* parent, int from);

    std::unique_ptr<OutlineNode> m_root;
    OutlineNode* m_selected = nullptr;
    mutable std::vector<OutlineNode*> m_order;
    mutable bool m_orderValid = false;
};

} // namespace kestrum::store
