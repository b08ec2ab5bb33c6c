#pragma once

#include "common/Colour.h"

#include <QString>

#include <optional>

namespace kestrum::store {

class OutlineNode;
class TRMData;

// The enabled state of the outline buttons and the position shown in the status bar.
struct OutlineButtons
{
    bool deleteNode = false;
    bool up = false;
    bool down = false;
    bool promote = false; // LeftBtn
    bool demote = false;  // RightBtn
    int position = -1;    // among the siblings, 0-based; -1 when nothing to show
    int siblings = 0;
};

// The outline commands as operations on the store's outline and page table. The window asks
// the user and then calls these; kestrum-cli calls them directly. Each leaves the outline
// written (SaveTree) as the command does in the window; none shows a page (the window does).
class OutlineCommands
{
public:
    explicit OutlineCommands(TRMData& data) : m_data(data) {}

    static OutlineButtons buttonsFor(const OutlineNode* selected);

    struct NewItem
    {
        bool folder = false;
        bool after = false; // after the selected node instead of under it
        QString title;
    };
    // A document (with its record) or a folder under or after `selected`; the new node is
    // selected and becomes the current node. After the project node, "after" means "under".
    OutlineNode* newItem(OutlineNode* selected, const NewItem& item);

    // Deletes the selected node and every node after it in tree order, walking back from the
    // last node; records of the selected subtree are deleted (one transaction). The node
    // before the deleted one is selected.
    void deleteItem(OutlineNode* selected);

    void rename(OutlineNode* node, const QString& caption);
    // A text colour mark; nullopt ("White") gives the node back the tree's colours.
    void setColour(OutlineNode* node, std::optional<common::TColor> textColour);

    bool moveUp(OutlineNode* node);
    bool moveDown(OutlineNode* node);
    bool promote(OutlineNode* node);
    bool demote(OutlineNode* node);

    static bool canDrop(const OutlineNode* dragged, const OutlineNode* target);
    // With `ctrl` the node goes before the target at its level, otherwise it becomes the
    // target's last child. The dragged node is selected.
    bool drop(OutlineNode* dragged, OutlineNode* target, bool ctrl);

private:
    void finishMove(OutlineNode* node);

    TRMData& m_data;
};

} // namespace kestrum::store
