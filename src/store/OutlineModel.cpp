#include "OutlineModel.h"

#include <algorithm>

namespace kestrum::store {

OutlineModel::OutlineModel(QObject* parent) : QObject(parent) {}

OutlineModel::~OutlineModel() = default;

void OutlineModel::rebuildOrder() const
{
    m_order.clear();
    if (!m_root) {
        m_orderValid = true;
        return;
    }
    // Iterative pre-order walk: deep outlines must not exhaust the stack.
    std::vector<OutlineNode*> stack{m_root.get()};
    while (!stack.empty()) {
        OutlineNode* node = stack.back();
        stack.pop_back();
        node->m_order = int(m_order.size());
        m_order.push_back(node);
        for (auto it = node->m_children.rbegin(); it != node->m_children.rend(); ++it) {
            stack.push_back(it->get());
        }
    }
    m_orderValid = true;
}

void OutlineModel::renumber(OutlineNode* parent, int from)
{
    for (std::size_t i = std::size_t(std::max(0, from)); i < parent->m_children.size(); ++i) {
        parent->m_children[i]->m_row = int(i);
    }
}

const std::vector<OutlineNode*>& OutlineModel::nodesInOrder() const
{
    if (!m_orderValid) {
        rebuildOrder();
    }
    return m_order;
}

int OutlineModel::count() const
{
    return int(nodesInOrder().size());
}

OutlineNode* OutlineModel::nodeAt(int absoluteIndex) const
{
    const auto& order = nodesInOrder();
    if (absoluteIndex < 0 || absoluteIndex >= int(order.size())) {
        return nullptr;
    }
    return order[std::size_t(absoluteIndex)];
}

int OutlineModel::indexOf(const OutlineNode* node) const
{
    if (!node) {
        return -1;
    }
    nodesInOrder();
    return node->m_order;
}

int OutlineModel::subtreeEnd(const OutlineNode* node) const
{
    const auto& order = nodesInOrder();
    int end = node->m_order + 1;
    while (end < int(order.size()) && order[std::size_t(end)]->isUnder(node)) {
        ++end;
    }
    return end;
}

OutlineNode* OutlineModel::createRoot(const OutlineNodeData& data)
{
    clear();
    emit nodesAboutToBeInserted(nullptr, 0, 1);
    OutlineNodeData rootData = data;
    rootData.caption.truncate(kMaxCaptionLength);
    m_root = std::make_unique<OutlineNode>(rootData);
    invalidateOrder();
    emit nodesInserted(nullptr, 0, 1);
    emit changed();
    return m_root.get();
}

OutlineNode* OutlineModel::insertNode(OutlineNode* parent, int row, const OutlineNodeData& data)
{
    if (!parent) {
        return nullptr;
    }
    const int size = parent->childCount();
    if (row < 0 || row > size) {
        row = size;
    }
    emit nodesAboutToBeInserted(parent, row, 1);
    auto node = std::make_unique<OutlineNode>(data);
    node->m_data.caption.truncate(kMaxCaptionLength);
    node->m_parent = parent;
    OutlineNode* raw = node.get();
    parent->m_children.insert(parent->m_children.begin() + row, std::move(node));
    renumber(parent, row);
    invalidateOrder();
    emit nodesInserted(parent, row, 1);
    emit changed();
    return raw;
}

OutlineNode* OutlineModel::appendChildren(OutlineNode* parent,
                                          const std::vector<OutlineNodeData>& data)
{
    if (!parent || data.empty()) {
        return nullptr;
    }
    const int row = parent->childCount();
    const int n = int(data.size());
    emit nodesAboutToBeInserted(parent, row, n);
    parent->m_children.reserve(parent->m_children.size() + data.size());
    for (const OutlineNodeData& d : data) {
        auto node = std::make_unique<OutlineNode>(d);
        node->m_data.caption.truncate(kMaxCaptionLength);
        node->m_parent = parent;
        node->m_row = int(parent->m_children.size());
        parent->m_children.push_back(std::move(node));
    }
    invalidateOrder();
    emit nodesInserted(parent, row, n);
    emit changed();
    return parent->childAt(row);
}

OutlineNode* OutlineModel::addAfter(OutlineNode* sibling, const OutlineNodeData& data)
{
    if (!sibling || !sibling->m_parent) {
        return nullptr;
    }
    return insertNode(sibling->m_parent, sibling->row() + 1, data);
}

void OutlineModel::removeNode(OutlineNode* node)
{
    if (!node) {
        return;
    }
    if (node == m_root.get()) {
        clear();
        return;
    }
    if (m_selected && (m_selected == node || m_selected->isUnder(node))) {
        m_selected = nullptr;
        emit selectionChanged(nullptr);
    }
    OutlineNode* parent = node->m_parent;
    const int row = node->row();
    emit nodeAboutToBeRemoved(node);
    parent->m_children.erase(parent->m_children.begin() + row);
    renumber(parent, row);
    invalidateOrder();
    emit nodeRemoved(parent, row);
    emit changed();
}

bool OutlineModel::moveNode(OutlineNode* node, OutlineNode* newParent, int position)
{
    if (!node || !newParent || node == m_root.get() || newParent == node ||
        newParent->isUnder(node)) {
        return false;
    }
    OutlineNode* oldParent = node->m_parent;
    const int oldRow = node->row();
    const int maxPosition = newParent->childCount() - (oldParent == newParent ? 1 : 0);
    position = std::clamp(position, 0, maxPosition);
    if (oldParent == newParent && oldRow == position) {
        return true;
    }
    // Row in the destination as counted before the move.
    const int destinationRow =
        (oldParent == newParent && position > oldRow) ? position + 1 : position;
    emit nodeAboutToBeMoved(node, newParent, destinationRow);
    std::unique_ptr<OutlineNode> owned = std::move(oldParent->m_children[std::size_t(oldRow)]);
    oldParent->m_children.erase(oldParent->m_children.begin() + oldRow);
    renumber(oldParent, oldRow);
    owned->m_parent = newParent;
    newParent->m_children.insert(newParent->m_children.begin() + position, std::move(owned));
    renumber(newParent, position);
    invalidateOrder();
    emit nodeMoved(node);
    emit changed();
    return true;
}

void OutlineModel::clear()
{
    if (!m_root) {
        return;
    }
    emit modelAboutToBeReset();
    const bool hadSelection = m_selected != nullptr;
    m_selected = nullptr;
    m_root.reset();
    invalidateOrder();
    emit modelReset();
    if (hadSelection) {
        emit selectionChanged(nullptr);
    }
    emit changed();
}

void OutlineModel::reset(std::unique_ptr<OutlineNode> root)
{
    emit modelAboutToBeReset();
    const bool hadSelection = m_selected != nullptr;
    m_selected = nullptr;
    m_root = std::move(root);
    if (m_root) {
        m_root->m_parent = nullptr;
        m_root->m_row = 0;
    }
    invalidateOrder();
    emit modelReset();
    if (hadSelection) {
        emit selectionChanged(nullptr);
    }
    emit changed();
}

void OutlineModel::setCaption(OutlineNode* node, const QString& caption)
{
    if (node && node->m_data.caption != caption.left(kMaxCaptionLength)) {
        node->m_data.caption = caption.left(kMaxCaptionLength);
        emit nodeChanged(node);
        emit changed();
    }
}

void OutlineModel::setImageIndex(OutlineNode* node, qint32 imageIndex)
{
    if (node && node->m_data.imageIndex != imageIndex) {
        node->m_data.imageIndex = imageIndex;
        emit nodeChanged(node);
        emit changed();
    }
}

void OutlineModel::setData(OutlineNode* node, qint32 data)
{
    if (node && node->m_data.data != data) {
        node->m_data.data = data;
        emit nodeChanged(node);
        emit changed();
    }
}

void OutlineModel::setColours(OutlineNode* node, bool usesTreeColours, common::TColor text,
                              common::TColor back)
{
    if (!node) {
        return;
    }
    node->m_data.usesTreeColours = usesTreeColours;
    node->m_data.textColor = text;
    node->m_data.backColor = back;
    emit nodeChanged(node);
    emit changed();
}

void OutlineModel::setExpanded(OutlineNode* node, bool expanded)
{
    if (node && node->m_data.expanded != expanded) {
        node->m_data.expanded = expanded;
        emit nodeChanged(node);
        emit changed();
    }
}

void OutlineModel::setAllExpanded(bool expanded)
{
    for (OutlineNode* node : nodesInOrder()) {
        if (node->m_data.expanded != expanded) {
            node->m_data.expanded = expanded;
            emit nodeChanged(node);
        }
    }
    emit changed();
}

void OutlineModel::setSelected(OutlineNode* node)
{
    if (m_selected != node) {
        m_selected = node;
        emit selectionChanged(node);
    }
}

bool OutlineModel::selectIndex(int absoluteIndex)
{
    OutlineNode* node = nodeAt(absoluteIndex);
    if (!node) {
        return false;
    }
    setSelected(node);
    return true;
}

} // namespace kestrum::store
