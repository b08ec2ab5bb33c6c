#include "OutlineHistory.h"

#include "store/OutlineNode.h"
#include "store/OutlineStream.h"

#include <QDataStream>
#include <QIODevice>

namespace kestrum::store {

void OutlineHistory::record(OutlineStep step)
{
    m_steps.erase(m_steps.begin() + static_cast<std::ptrdiff_t>(m_done), m_steps.end());
    m_steps.push_back(std::move(step));
    if (m_steps.size() > static_cast<size_t>(kMaxSteps)) {
        m_steps.erase(m_steps.begin());
    }
    m_done = m_steps.size();
    changed();
}

void OutlineHistory::undone()
{
    --m_done;
    changed();
}

void OutlineHistory::redone()
{
    ++m_done;
    changed();
}

void OutlineHistory::clear()
{
    const bool hadSteps = !m_steps.empty();
    m_steps.clear();
    m_done = 0;
    if (hadSteps) {
        changed();
    }
}

namespace {

void writeShape(QDataStream& out, const OutlineNode* node, int level, bool root)
{
    const OutlineNodeData& f = node->fields();
    out << qint32(level) << f.caption << f.imageIndex << (root ? qint32(0) : f.data)
        << qint32(f.textColor) << qint32(f.backColor) << f.usesTreeColours;
    for (int i = 0; i < node->childCount(); ++i) {
        writeShape(out, node->childAt(i), level + 1, false);
    }
}

} // namespace

QByteArray OutlineHistory::shapeOf(const OutlineNode* root)
{
    QByteArray bytes;
    if (root) {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        writeShape(out, root, 0, true);
    }
    return bytes;
}

QByteArray OutlineHistory::shapeOf(const QByteArray& outlineStream)
{
    const std::unique_ptr<OutlineNode> root = OutlineStream::read(outlineStream).value_or(nullptr);
    return shapeOf(root.get());
}

} // namespace kestrum::store
