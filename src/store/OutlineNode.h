#pragma once

#include "common/Colour.h"

#include <QString>

#include <memory>
#include <vector>

namespace kestrum::store {

// What an outline node stores.
struct OutlineNodeData
{
    QString caption;
    qint32 imageIndex = 0; // the page kind
    qint32 data = -1;      // the page id; the root keeps the last selected absolute index
    common::TColor textColor = common::clNone;
    common::TColor backColor = common::clNone;
    bool usesTreeColours = true; // when set the node is drawn in the tree's own colours
    bool expanded = false;

    bool operator==(const OutlineNodeData&) const = default;
};

// A node of the outline tree. Nodes are changed only through OutlineModel, which reports every
// change; reading is free.
class OutlineNode
{
public:
    explicit OutlineNode(OutlineNodeData data = {}) : m_data(std::move(data)) {}
    ~OutlineNode();
    OutlineNode(const OutlineNode&) = delete;
    OutlineNode& operator=(const OutlineNode&) = delete;

    const OutlineNodeData& fields() const { return m_data; }
    const QString& caption() const { return m_data.caption; }
    qint32 imageIndex() const { return m_data.imageIndex; }
    qint32 data() const { return m_data.data; }

    OutlineNode* parent() const { return m_parent; }
    int childCount() const { return int(m_children.size()); }
    bool hasChildren() const { return !m_children.empty(); }
    OutlineNode* childAt(int row) const { return m_children[std::size_t(row)].get(); }
    // Position among its parent's children (0 for the root).
    int row() const { return m_row; }
    // Depth: 0 for the root, 1 for its children.
    int level() const;
    // True when this node lies (at any depth) under `ancestor`.
    bool isUnder(const OutlineNode* ancestor) const;

    // Builds a detached subtree (for readers of the stored outline); no signals.
    OutlineNode* appendChildUnchecked(std::unique_ptr<OutlineNode> child);

private:
    friend class OutlineModel;

    OutlineNodeData m_data;
    OutlineNode* m_parent = nullptr;
    std::vector<std::unique_ptr<OutlineNode>> m_children;
    int m_row = 0;    // position among the siblings, kept up to date on every change
    int m_order = -1; // absolute index, kept by the model
};

// Calls `visit(node, level)` for every node of the subtree in tree order (iteratively).
template <typename Visit> void visitInOrder(const OutlineNode* root, Visit&& visit)
{
    if (!root) {
        return;
    }
    std::vector<std::pair<const OutlineNode*, int>> stack{{root, 0}};
    while (!stack.empty()) {
        const auto [node, level] = stack.back();
        stack.pop_back();
        visit(node, level);
        for (int i = node->childCount() - 1; i >= 0; --i) {
            stack.emplace_back(node->childAt(i), level + 1);
        }
    }
}

} // namespace kestrum::store
