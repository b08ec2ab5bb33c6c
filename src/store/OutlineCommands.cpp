#include "OutlineCommands.h"

#include "store/OutlineModel.h"
#include "store/PageType.h"
#include "store/OutlineStream.h"
#include "store/TRMData.h"

namespace kestrum::store {

OutlineButtons OutlineCommands::buttonsFor(const OutlineNode* selected)
{
    OutlineButtons b;
    if (!selected || !selected->parent()) {
        return b;
    }
    const OutlineNode* parent = selected->parent();
    const int position = selected->row();
    const int level = selected->level();
    // The node just above in tree order: the previous sibling's last descendant, or the parent.
    const OutlineNode* above = parent;
    if (position > 0) {
        above = parent->childAt(position - 1);
        while (above->hasChildren()) {
            above = above->childAt(above->childCount() - 1);
        }
    }
    b.deleteNode = true;
    b.demote = above->level() >= level;
    b.up = position >= 1;
    b.promote = level > 1;
    b.down = position + 1 < parent->childCount();
    b.position = position;
    b.siblings = parent->childCount();
    return b;
}

OutlineNode* OutlineCommands::newItem(OutlineNode* selected, const NewItem& item)
{
    OutlineModel& outline = m_data.outline();
    if (!selected) {
        selected = outline.root();
    }
    if (!selected) {
        return nullptr;
    }
    OutlineNodeData d;
    d.caption = item.title;
    d.imageIndex = item.folder ? PageType::Folder : PageType::Text;
    d.data = -1;
    const bool after = item.after && selected->parent();
    OutlineNode* node = after ? outline.addAfter(selected, d) : outline.addChild(selected, d);
    if (!after) {
        outline.setExpanded(selected, true);
    }
    outline.setSelected(node);
    m_data.setCurrentNodeIndex(outline.indexOf(node));
    try {
        m_data.runInTransaction([&] {
            if (!item.folder) {
                outline.setData(node, m_data.AddRecord(PageType::Text, item.title, {}));
            }
            m_data.SaveTree();
        });
    } catch (...) {
        outline.removeNode(node);
        outline.setSelected(selected);
        m_data.setCurrentNodeIndex(-1);
        throw;
    }
    return node;
}

void OutlineCommands::deleteItem(OutlineNode* selected)
{
    OutlineModel& outline = m_data.outline();
    if (!selected || !m_data.table()) {
        return;
    }
    const int start = outline.indexOf(selected);
    if (start <= 0) {
        return; // the project node is never deleted
    }
    // The walk: from the last node back to the selected one. A node outside the selected
    // subtree keeps the page id read last, which is none at the start of the walk, so only
    // records of the selected subtree are deleted; every node from the selected one on goes.
    std::vector<qint32> doomedRecords;
    qint32 pageId = 0;
    for (int i = outline.count() - 1; i >= start; --i) {
        const OutlineNode* node = outline.nodeAt(i);
        if (i == start || node->isUnder(selected)) {
            pageId = node->data();
        }
        if (pageId > 0) {
            doomedRecords.push_back(pageId);
        }
    }
    // Records and outline change together; if writing fails, the outline comes back as it was.
    const QByteArray before = OutlineStream::write(outline.root());
    try {
        m_data.runInTransaction([&] {
            for (qint32 id : doomedRecords) {
                m_data.DeleteRecord(id);
            }
            for (int i = outline.count() - 1; i >= start; --i) {
                outline.removeNode(outline.nodeAt(i));
            }
            outline.selectIndex(start - 1);
            m_data.setCurrentNodeIndex(-1);
            m_data.SaveTree();
        });
    } catch (...) {
        outline.reset(OutlineStream::read(before, nullptr));
        outline.selectIndex(start);
        throw;
    }
    if (!doomedRecords.empty()) {
        m_data.markModified();
    }
}

void OutlineCommands::rename(OutlineNode* node, const QString& caption)
{
    if (!node) {
        return;
    }
    m_data.outline().setCaption(node, caption);
    m_data.markModified();
    m_data.SaveTree();
}

void OutlineCommands::setColour(OutlineNode* node, std::optional<common::TColor> textColour)
{
    if (!node) {
        return;
    }
    if (textColour) {
        m_data.outline().setColours(node, false, *textColour, common::clWindow);
    } else {
        m_data.outline().setColours(node, true, common::clNone, common::clNone);
    }
    m_data.markModified();
    m_data.SaveTree();
}

void OutlineCommands::finishMove(OutlineNode* node)
{
    m_data.setCurrentNodeIndex(m_data.outline().indexOf(node));
    m_data.markModified();
    m_data.SaveTree();
}

bool OutlineCommands::moveUp(OutlineNode* node)
{
    if (!buttonsFor(node).up) {
        return false;
    }
    m_data.outline().moveNode(node, node->parent(), node->row() - 1);
    finishMove(node);
    return true;
}

bool OutlineCommands::moveDown(OutlineNode* node)
{
    if (!buttonsFor(node).down) {
        return false;
    }
    m_data.outline().moveNode(node, node->parent(), node->row() + 1);
    finishMove(node);
    return true;
}

bool OutlineCommands::promote(OutlineNode* node)
{
    if (!buttonsFor(node).promote) {
        return false;
    }
    OutlineModel& outline = m_data.outline();
    const OutlineNode* previous = outline.nodeAt(outline.indexOf(node) - 1);
    // Only the levels are compared: a deeper node above sends this one into that node's parent.
    if (previous->level() != node->level()) {
        outline.moveNode(node, previous->parent(), previous->row() + 1);
    } else {
        OutlineNode* parent = node->parent();
        outline.moveNode(node, parent->parent(), parent->row() + 1);
    }
    finishMove(node);
    return true;
}

bool OutlineCommands::demote(OutlineNode* node)
{
    if (!buttonsFor(node).demote) {
        return false;
    }
    OutlineModel& outline = m_data.outline();
    OutlineNode* previous = outline.nodeAt(outline.indexOf(node) - 1);
    OutlineNode* newParent = previous->level() != node->level() ? previous->parent() : previous;
    if (!outline.moveNode(node, newParent, newParent->childCount())) {
        return false;
    }
    finishMove(node);
    return true;
}

bool OutlineCommands::canDrop(const OutlineNode* dragged, const OutlineNode* target)
{
    return dragged && target && dragged->parent() && target != dragged && !target->isUnder(dragged);
}

bool OutlineCommands::drop(OutlineNode* dragged, OutlineNode* target, bool ctrl)
{
    OutlineModel& outline = m_data.outline();
    bool moved = false;
    if (canDrop(dragged, target)) {
        if (ctrl) {
            if (OutlineNode* parent = target->parent()) {
                int position = target->row();
                if (dragged->parent() == parent && dragged->row() < position) {
                    --position; // the target moves up once the dragged node has left
                }
                moved = outline.moveNode(dragged, parent, position);
            }
        } else {
            moved = outline.moveNode(dragged, target, target->childCount());
        }
    }
    if (moved) {
        outline.setSelected(dragged);
    }
    m_data.setCurrentNodeIndex(outline.selectedIndex());
    m_data.SaveTree();
    return moved;
}

} // namespace kestrum::store
