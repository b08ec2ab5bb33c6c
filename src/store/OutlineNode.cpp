#include "OutlineNode.h"

namespace kestrum::store {

OutlineNode::~OutlineNode()
{
    // Iterative teardown: a deep outline must not recurse once per level.
    std::vector<std::unique_ptr<OutlineNode>> pending = std::move(m_children);
    while (!pending.empty()) {
        std::unique_ptr<OutlineNode> node = std::move(pending.back());
        pending.pop_back();
        for (auto& child : node->m_children) {
            pending.push_back(std::move(child));
        }
        node->m_children.clear();
    }
}

int OutlineNode::level() const
{
    int depth = 0;
    for (const OutlineNode* n = m_parent; n; n = n->m_parent) {
        ++depth;
    }
    return depth;
}

bool OutlineNode::isUnder(const OutlineNode* ancestor) const
{
    for (const OutlineNode* n = m_parent; n; n = n->m_parent) {
        if (n == ancestor) {
            return true;
        }
    }
    return false;
}

OutlineNode* OutlineNode::appendChildUnchecked(std::unique_ptr<OutlineNode> child)
{
    child->m_parent = this;
    child->m_row = int(m_children.size());
    m_children.push_back(std::move(child));
    return m_children.back().get();
}

} // namespace kestrum::store
