#pragma once

#include "store/PageTable.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <vector>

namespace kestrum::store {

class OutlineNode;

// One side of an outline command: the outline as it stood and the page records that this side
// has and the other has not (their stored rows, columns still encoded, as last seen).
struct OutlineState
{
    QByteArray outline; // the outline stream
    int selected = -1;  // the selected node's absolute index
    std::vector<qint32> ownIds;
    std::vector<RawPageRow> ownRows;
};

// A command as it can be undone and redone.
struct OutlineStep
{
    QString label;
    OutlineState before;
    OutlineState after;
};

// The undo history of the outline commands while a project is open: the steps done, and those
// undone that can still be redone. It only keeps the steps; OutlineCommands applies them.
class OutlineHistory
{
public:
    static constexpr int kMaxSteps = 200;

    // Called whenever what can be undone or redone changes.
    void setOnChange(std::function<void()> onChange) { m_onChange = std::move(onChange); }

    bool canUndo() const { return m_done > 0; }
    bool canRedo() const { return m_done < m_steps.size(); }
    // A new step: anything undone is dropped, the oldest step goes beyond kMaxSteps.
    void record(OutlineStep step);
    OutlineStep& toUndo() { return m_steps[m_done - 1]; }
    OutlineStep& toRedo() { return m_steps[m_done]; }
    void undone();
    void redone();
    void clear();
    int size() const { return static_cast<int>(m_steps.size()); }

    // What an outline looks like to the history: every node's level, caption, kind, page id and
    // colours, but not whether it is expanded nor the project node's selection. A step is only
    // applied to the outline it left behind.
    static QByteArray shapeOf(const OutlineNode* root);
    static QByteArray shapeOf(const QByteArray& outlineStream);

private:
    std::vector<OutlineStep> m_steps;
    size_t m_done = 0;
    std::function<void()> m_onChange;

    void changed() const
    {
        if (m_onChange) {
            m_onChange();
        }
    }
};

} // namespace kestrum::store
