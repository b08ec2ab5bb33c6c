#include "OutlineCommands.h"

#include "store/OutlineHistory.h"
#include "store/OutlineModel.h"
#include "store/OutlineStream.h"
#include "store/PageType.h"
#include "store/TRMData.h"

#include <QSet>

#include <algorithm>

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

Result<OutlineNode*> OutlineCommands::newItem(OutlineNode* selected, const NewItem& item)
{
    OutlineModel& outline = m_data.outline();
    if (!selected) {
        selected = outline.root();
    }
    if (!selected) {
        return nullptr;
    }
    OutlineState before = captureState(selected);
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
    const Status stored = m_data.runInTransaction([&]() -> Status {
        if (!item.folder) {
            const Result<qint32> id = m_data.AddRecord(PageType::Text, item.title, {});
            if (!id) {
                return fail(id.error());
            }
            outline.setData(node, *id);
        }
        return m_data.SaveTree();
    });
    if (!stored) {
        outline.removeNode(node);
        outline.setSelected(selected);
        m_data.setCurrentNodeIndex(-1);
        return fail(stored.error());
    }
    std::vector<qint32> added;
    if (!item.folder && node->data() > 0) {
        added.push_back(node->data());
    }
    if (Status recorded = record(QStringLiteral("New"), std::move(before), added); !recorded) {
        return fail(recorded.error());
    }
    return node;
}

Status OutlineCommands::deleteItem(OutlineNode* selected)
{
    OutlineModel& outline = m_data.outline();
    if (!selected || !m_data.table()) {
        return {};
    }
    const int start = outline.indexOf(selected);
    if (start <= 0) {
        return {}; // the project node is never deleted
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
    // What undo brings back: the outline and the stored rows of the doomed records.
    OutlineState before = captureState(selected);
    for (qint32 id : doomedRecords) {
        if (std::find(before.ownIds.begin(), before.ownIds.end(), id) != before.ownIds.end()) {
            continue;
        }
        Result<std::optional<RawPageRow>> row = m_data.table()->readRaw(id);
        if (!row) {
            return fail(row.error());
        }
        if (*row) {
            before.ownIds.push_back(id);
            before.ownRows.push_back(std::move(**row));
        }
    }
    // Records and outline change together; if writing fails, the outline comes back as it was.
    const Status deleted = m_data.runInTransaction([&]() -> Status {
        for (qint32 id : doomedRecords) {
            if (Status done = m_data.DeleteRecord(id); !done) {
                return done;
            }
        }
        for (int i = outline.count() - 1; i >= start; --i) {
            outline.removeNode(outline.nodeAt(i));
        }
        outline.selectIndex(start - 1);
        m_data.setCurrentNodeIndex(-1);
        return m_data.SaveTree();
    });
    if (!deleted) {
        outline.reset(OutlineStream::read(before.outline).value_or(nullptr));
        outline.selectIndex(start);
        return deleted;
    }
    if (!doomedRecords.empty()) {
        m_data.markModified();
    }
    // The rows go with the step that deletes them: undo puts them back.
    OutlineStep step;
    step.label = QStringLiteral("Delete");
    step.before = std::move(before);
    step.after = captureState();
    m_data.history().record(std::move(step));
    return {};
}

Status OutlineCommands::rename(OutlineNode* node, const QString& caption)
{
    if (!node) {
        return {};
    }
    OutlineState before = captureState(node);
    const bool changed = node->caption() != caption.left(OutlineModel::kMaxCaptionLength);
    m_data.outline().setCaption(node, caption);
    m_data.markModified();
    if (Status saved = m_data.SaveTree(); !saved) {
        return saved;
    }
    return changed ? record(QStringLiteral("Rename"), std::move(before)) : Status();
}

Status OutlineCommands::setColour(OutlineNode* node, std::optional<common::TColor> textColour)
{
    if (!node) {
        return {};
    }
    OutlineState before = captureState(node);
    const OutlineNodeData old = node->fields();
    if (textColour) {
        m_data.outline().setColours(node, false, *textColour, common::clWindow);
    } else {
        m_data.outline().setColours(node, true, common::clNone, common::clNone);
    }
    m_data.markModified();
    if (Status saved = m_data.SaveTree(); !saved) {
        return saved;
    }
    return node->fields() != old ? record(QStringLiteral("Colour"), std::move(before)) : Status();
}

Status OutlineCommands::finishMove(OutlineNode* node, OutlineState before, const QString& label)
{
    m_data.setCurrentNodeIndex(m_data.outline().indexOf(node));
    m_data.markModified();
    if (Status saved = m_data.SaveTree(); !saved) {
        return saved;
    }
    return record(label, std::move(before));
}

Result<bool> OutlineCommands::moveUp(OutlineNode* node)
{
    if (!buttonsFor(node).up) {
        return false;
    }
    OutlineState before = captureState(node);
    m_data.outline().moveNode(node, node->parent(), node->row() - 1);
    if (Status finished = finishMove(node, std::move(before), QStringLiteral("Move up"));
        !finished) {
        return fail(finished.error());
    }
    return true;
}

Result<bool> OutlineCommands::moveDown(OutlineNode* node)
{
    if (!buttonsFor(node).down) {
        return false;
    }
    OutlineState before = captureState(node);
    m_data.outline().moveNode(node, node->parent(), node->row() + 1);
    if (Status finished = finishMove(node, std::move(before), QStringLiteral("Move down"));
        !finished) {
        return fail(finished.error());
    }
    return true;
}

Result<bool> OutlineCommands::promote(OutlineNode* node)
{
    if (!buttonsFor(node).promote) {
        return false;
    }
    OutlineState before = captureState(node);
    OutlineModel& outline = m_data.outline();
    const OutlineNode* previous = outline.nodeAt(outline.indexOf(node) - 1);
    // Only the levels are compared: a deeper node above sends this one into that node's parent.
    if (previous->level() != node->level()) {
        outline.moveNode(node, previous->parent(), previous->row() + 1);
    } else {
        OutlineNode* parent = node->parent();
        outline.moveNode(node, parent->parent(), parent->row() + 1);
    }
    if (Status finished = finishMove(node, std::move(before), QStringLiteral("Promote"));
        !finished) {
        return fail(finished.error());
    }
    return true;
}

Result<bool> OutlineCommands::demote(OutlineNode* node)
{
    if (!buttonsFor(node).demote) {
        return false;
    }
    OutlineState before = captureState(node);
    OutlineModel& outline = m_data.outline();
    OutlineNode* previous = outline.nodeAt(outline.indexOf(node) - 1);
    OutlineNode* newParent = previous->level() != node->level() ? previous->parent() : previous;
    if (!outline.moveNode(node, newParent, newParent->childCount())) {
        return false;
    }
    if (Status finished = finishMove(node, std::move(before), QStringLiteral("Demote"));
        !finished) {
        return fail(finished.error());
    }
    return true;
}

bool OutlineCommands::canDrop(const OutlineNode* dragged, const OutlineNode* target)
{
    return dragged && target && dragged->parent() && target != dragged && !target->isUnder(dragged);
}

Result<bool> OutlineCommands::drop(OutlineNode* dragged, OutlineNode* target, bool ctrl)
{
    OutlineModel& outline = m_data.outline();
    OutlineState before = captureState(dragged);
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
    if (Status saved = m_data.SaveTree(); !saved) {
        return fail(saved.error());
    }
    if (moved) {
        if (Status recorded = record(QStringLiteral("Drop"), std::move(before)); !recorded) {
            return fail(recorded.error());
        }
    }
    return moved;
}

QString OutlineCommands::recoveredCaption(qint32 pageId, const QString& info)
{
    // The first line that is not blank: a caption is one row of the outline.
    const auto firstLine = [](const QString& text) {
        for (const QString& line : text.split(QLatin1Char('\n'))) {
            if (const QString trimmed = line.trimmed(); !trimmed.isEmpty()) {
                return trimmed;
            }
        }
        return QString();
    };
    const QStringList fields = info.split(QLatin1Char('\t'));
    QString caption = fields.size() >= 3 ? firstLine(fields.at(2)) : QString();
    for (qsizetype i = 0; caption.isEmpty() && i < fields.size(); ++i) {
        caption = firstLine(fields.at(i));
    }
    return caption.isEmpty() ? QStringLiteral("Page %1").arg(pageId) : caption;
}

Result<std::vector<OutlineNode*>> OutlineCommands::recoverPages()
{
    OutlineModel& outline = m_data.outline();
    PageTable* table = m_data.table();
    if (!table || !outline.root()) {
        return std::vector<OutlineNode*>();
    }
    // Page ids carried by the outline; the project node's data is the selection, not a page.
    QSet<qint32> referenced;
    OutlineNode* folder = nullptr;
    for (OutlineNode* node : outline.nodesInOrder()) {
        if (node == outline.root()) {
            continue;
        }
        referenced.insert(node->data());
        if (!folder && node->imageIndex() == PageType::Folder &&
            node->caption() == QLatin1String(kRecoveredItems)) {
            folder = node;
        }
    }
    Result<std::vector<PageSummary>> summaries = table->summaries();
    if (!summaries) {
        return fail(summaries.error());
    }
    std::vector<PageSummary>& records = *summaries;
    std::sort(records.begin(), records.end(),
              [](const PageSummary& a, const PageSummary& b) { return a.storedId < b.storedId; });
    std::vector<OutlineNodeData> lost;
    for (const PageSummary& r : records) {
        if (r.idOutOfRange || r.pageId <= 0 || referenced.contains(r.pageId)) {
            continue;
        }
        OutlineNodeData d;
        d.caption = r.infoDamaged ? QStringLiteral("Page %1 (damaged title)").arg(r.pageId)
                                  : recoveredCaption(r.pageId, r.info);
        d.imageIndex = r.type;
        d.data = r.pageId;
        lost.push_back(std::move(d));
        referenced.insert(r.pageId);
    }
    if (lost.empty()) {
        return std::vector<OutlineNode*>();
    }
    OutlineState before = captureState();
    std::vector<OutlineNode*> added;
    const Status recovered = m_data.runInTransaction([&]() -> Status {
        if (!folder) {
            OutlineNodeData d;
            d.caption = QLatin1String(kRecoveredItems);
            d.imageIndex = PageType::Folder;
            d.data = -1;
            folder = outline.addChild(outline.root(), d);
        }
        const int first = folder->childCount();
        outline.appendChildren(folder, lost);
        outline.setExpanded(folder, true);
        for (int i = first; i < folder->childCount(); ++i) {
            added.push_back(folder->childAt(i));
        }
        return m_data.SaveTree();
    });
    if (!recovered) {
        outline.reset(OutlineStream::read(before.outline).value_or(nullptr));
        outline.selectIndex(before.selected);
        return fail(recovered.error());
    }
    m_data.markModified();
    if (Status recorded = record(QStringLiteral("Recover pages"), std::move(before)); !recorded) {
        return fail(recorded.error());
    }
    return added;
}

// ---- history -----------------------------------------------------------------------------------

OutlineState OutlineCommands::captureState(const OutlineNode* focus) const
{
    const OutlineModel& outline = m_data.outline();
    OutlineState state;
    state.outline = OutlineStream::write(outline.root());
    state.selected = focus ? outline.indexOf(focus) : outline.selectedIndex();
    return state;
}

Status OutlineCommands::record(const QString& label, OutlineState before,
                               const std::vector<qint32>& addedIds)
{
    OutlineStep step;
    step.label = label;
    step.before = std::move(before);
    step.after = captureState();
    for (qint32 id : addedIds) {
        Result<std::optional<RawPageRow>> row = m_data.table()->readRaw(id);
        if (!row) {
            // The command is done; only its undo is lost, and with it the history before it.
            m_data.history().clear();
            return fail(row.error());
        }
        if (*row) {
            step.after.ownIds.push_back(id);
            step.after.ownRows.push_back(std::move(**row));
        }
    }
    m_data.history().record(std::move(step));
    return {};
}

bool OutlineCommands::canUndo() const
{
    return m_data.isOpen() && m_data.history().canUndo();
}

bool OutlineCommands::canRedo() const
{
    return m_data.isOpen() && m_data.history().canRedo();
}

Result<bool> OutlineCommands::undo()
{
    if (!canUndo()) {
        return false;
    }
    OutlineStep& step = m_data.history().toUndo();
    const Result<bool> applied = apply(step.after, step.before);
    if (applied && *applied) {
        m_data.history().undone();
    }
    return applied;
}

Result<bool> OutlineCommands::redo()
{
    if (!canRedo()) {
        return false;
    }
    OutlineStep& step = m_data.history().toRedo();
    const Result<bool> applied = apply(step.before, step.after);
    if (applied && *applied) {
        m_data.history().redone();
    }
    return applied;
}

Result<bool> OutlineCommands::apply(OutlineState& from, OutlineState& to)
{
    OutlineModel& outline = m_data.outline();
    if (OutlineHistory::shapeOf(outline.root()) != OutlineHistory::shapeOf(from.outline)) {
        m_data.history().clear();
        return false;
    }
    std::unique_ptr<OutlineNode> target = OutlineStream::read(to.outline).value_or(nullptr);
    if (!target) {
        m_data.history().clear();
        return false;
    }
    const QByteArray now = OutlineStream::write(outline.root());
    const int nowSelected = outline.selectedIndex();
    // The rows leaving are read as they are now, so that what is redone later holds any edit
    // made to those pages meanwhile.
    std::vector<RawPageRow> leaving;
    const Status applied = m_data.runInTransaction([&]() -> Status {
        for (qint32 id : from.ownIds) {
            Result<std::optional<RawPageRow>> row = m_data.table()->readRaw(id);
            if (!row) {
                return fail(row.error());
            }
            if (*row) {
                leaving.push_back(std::move(**row));
            }
            if (Status deleted = m_data.DeleteRecord(id); !deleted) {
                return deleted;
            }
        }
        for (const RawPageRow& row : to.ownRows) {
            if (Status inserted = m_data.table()->insertRaw(row); !inserted) {
                return inserted;
            }
        }
        outline.reset(std::move(target));
        outline.selectIndex(to.selected);
        m_data.setCurrentNodeIndex(-1);
        return m_data.SaveTree();
    });
    if (!applied) {
        outline.reset(OutlineStream::read(now).value_or(nullptr));
        outline.selectIndex(nowSelected);
        return fail(applied.error());
    }
    from.ownRows = std::move(leaving);
    m_data.markModified();
    return true;
}

} // namespace kestrum::store
