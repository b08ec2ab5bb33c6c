#include "GridFixedCellSizer.h"

#include "editors/grid/GridPageDocument.h"

#include <QHeaderView>
#include <QMouseEvent>

#include <algorithm>

namespace kestrum::grid {

GridFixedCellSizer::GridFixedCellSizer(QHeaderView* header, GridPageDocument* document,
                                       std::function<void()> relayout, QObject* parent)
    : QObject(parent), m_header(header), m_document(document), m_relayout(std::move(relayout))
{
    m_header->viewport()->setMouseTracking(true);
    m_header->viewport()->installEventFilter(this);
}

bool GridFixedCellSizer::horizontal() const
{
    return m_header->orientation() == Qt::Horizontal;
}

int GridFixedCellSizer::extent() const
{
    return horizontal() ? m_header->height() : m_header->width();
}

int GridFixedCellSizer::along(const QPoint& pos) const
{
    return horizontal() ? pos.y() : pos.x();
}

bool GridFixedCellSizer::onEdge(const QPoint& pos) const
{
    return lastFixed() >= 0 && along(pos) >= extent() - kGrip;
}

int GridFixedCellSizer::lastFixed() const
{
    const GridDocument& g = m_document->grid();
    return (horizontal() ? g.fixedRows() : g.fixedColumns()) - 1;
}

int GridFixedCellSizer::fixedSize(int index) const
{
    const GridDocument& g = m_document->grid();
    return horizontal() ? g.rowHeight(index) : g.columnWidth(index);
}

bool GridFixedCellSizer::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_header->viewport()) {
        return false;
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return press(static_cast<QMouseEvent*>(event));
    case QEvent::MouseMove:
        return move(static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonRelease:
        return release(static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonDblClick:
        // A double click on the edge is not a click on a section (no sort).
        return onEdge(static_cast<QMouseEvent*>(event)->position().toPoint());
    case QEvent::Leave:
        if (!m_dragging) {
            m_header->viewport()->unsetCursor();
        }
        return false;
    default:
        return false;
    }
}

bool GridFixedCellSizer::press(QMouseEvent* event)
{
    const QPoint pos = event->position().toPoint();
    if (event->button() != Qt::LeftButton || !m_header->isEnabled() || !onEdge(pos)) {
        return false;
    }
    m_dragging = true;
    m_startPos = along(pos);
    m_startExtent = extent();
    m_startSize = fixedSize(lastFixed());
    return true;
}

bool GridFixedCellSizer::move(QMouseEvent* event)
{
    const QPoint pos = event->position().toPoint();
    if (!m_dragging) {
        if (onEdge(pos) && m_header->isEnabled()) {
            m_header->viewport()->setCursor(horizontal() ? Qt::SplitVCursor : Qt::SplitHCursor);
        } else {
            m_header->viewport()->unsetCursor();
        }
        return false;
    }
    const int size = std::max(kMinimumSize, m_startSize + along(pos) - m_startPos);
    const int total = m_startExtent + size - m_startSize;
    if (horizontal()) {
        m_header->setFixedHeight(total);
    } else {
        m_header->setFixedWidth(total);
    }
    if (m_relayout) {
        m_relayout();
    }
    return true;
}

bool GridFixedCellSizer::release(QMouseEvent* event)
{
    if (!m_dragging || event->button() != Qt::LeftButton) {
        return false;
    }
    m_dragging = false;
    const int index = lastFixed();
    const int size =
        std::max(kMinimumSize, m_startSize + along(event->position().toPoint()) - m_startPos);
    if (index >= 0 && size != m_startSize) {
        // The document's change lays the headers out again from the grid.
        if (horizontal()) {
            m_document->setRowHeight(index, size);
        } else {
            m_document->setColumnWidth(index, size);
        }
    }
    return true;
}

} // namespace kestrum::grid
