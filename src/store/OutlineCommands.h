#pragma once

#include "common/Colour.h"
#include "common/Result.h"

#include <QString>

#include <optional>
#include <vector>

namespace kestrum::store {

class OutlineNode;
class TRMData;
struct OutlineState;

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
// A command that fails to write leaves the outline and the records as they were and gives the
// Error to show.
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
    Result<OutlineNode*> newItem(OutlineNode* selected, const NewItem& item);

    // Deletes the selected node and every node after it in tree order, walking back from the
    // last node; records of the selected subtree are deleted (one transaction). The node
    // before the deleted one is selected.
    Status deleteItem(OutlineNode* selected);

    Status rename(OutlineNode* node, const QString& caption);
    // A text colour mark; nullopt ("White") gives the node back the tree's colours.
    Status setColour(OutlineNode* node, std::optional<common::TColor> textColour);

    // Each gives whether the node moved.
    Result<bool> moveUp(OutlineNode* node);
    Result<bool> moveDown(OutlineNode* node);
    Result<bool> promote(OutlineNode* node);
    Result<bool> demote(OutlineNode* node);

    static bool canDrop(const OutlineNode* dragged, const OutlineNode* target);
    // With `ctrl` the node goes before the target at its level, otherwise it becomes the
    // target's last child. The dragged node is selected.
    Result<bool> drop(OutlineNode* dragged, OutlineNode* target, bool ctrl);

    // The folder that recoverPages puts pages into.
    static constexpr const char* kRecoveredItems = "Recovered items";
    // Every page record that no node refers to comes back under the folder "Recovered items"
    // (made at the end of the outline when there is none), in page-id order, captioned by
    // recoveredCaption. One transaction; nothing is written when every record has a node.
    // Gives the nodes added.
    Result<std::vector<OutlineNode*>> recoverPages();
    // The caption of a recovered page: the third TAB field of its PageInfo (as a host writes
    // it); a PageInfo without TAB fields is the plain title Kestrum gave the page; otherwise
    // the first field that is not blank; "Page N" when the PageInfo holds no text at all.
    static QString recoveredCaption(qint32 pageId, const QString& info);

    // Every command above that changed something is recorded in the project's history. Undo
    // and redo bring the outline and the page records back together (a deleted record with
    // its id, byte for byte), in one transaction ending with SaveTree; the node the command
    // worked on is selected and no page is current. They give false when there is nothing to
    // take back, and when the outline was changed since by something that is not recorded (an
    // import, the hand-off intake): the history is dropped then, as it no longer fits.
    bool canUndo() const;
    bool canRedo() const;
    Result<bool> undo();
    Result<bool> redo();

private:
    Status finishMove(OutlineNode* node, OutlineState before, const QString& label);
    // The outline as it is, with `focus` (when given) as the node to select on coming back.
    OutlineState captureState(const OutlineNode* focus = nullptr) const;
    // Records the step from `before` to the outline as it is now, with the records it added.
    Status record(const QString& label, OutlineState before,
                  const std::vector<qint32>& addedIds = {});
    Result<bool> apply(OutlineState& from, OutlineState& to);

    TRMData& m_data;
};

} // namespace kestrum::store
