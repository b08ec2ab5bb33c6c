#include "OutlineView.h"

#include "app/OutlineItemModel.h"
#include "store/OutlineCommands.h"
#include "store/OutlineNode.h"

#include <QDrag>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>

namespace kestrum::app {

namespace {
const QString kDragFormat = QStringLiteral("application/x-kestrum-outline-node");
} // namespace

OutlineView::OutlineView(QWidget* parent) : QTreeView(parent)
{
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDragDropMode(QAbstractItemView::InternalMove);
    setDefaultDropAction(Qt::MoveAction);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAnimated(false);
    setExpandsOnDoubleClick(true);
    setIconSize(QSize(18, 18));
}

void OutlineView::setOutlineModel(OutlineItemModel* model)
{
    m_model = model;
    setModel(model);
}

store::OutlineNode* OutlineView::nodeAt(const QPoint& viewportPos) const
{
    return m_model ? m_model->nodeFor(indexAt(viewportPos)) : nullptr;
}

void OutlineView::startDrag(Qt::DropActions)
{
    store::OutlineNode* node = m_model ? m_model->nodeFor(currentIndex()) : nullptr;
    if (!node || !node->parent()) {
        return; // the project node never moves
    }
    m_dragged = node;
    auto* mime = new QMimeData;
    mime->setData(kDragFormat, QByteArray::number(quintptr(node)));
    auto* drag = new QDrag(this);
    drag->setMimeData(mime);
    const QRect rect = visualRect(currentIndex());
    if (rect.isValid()) {
        QPixmap pixmap(rect.size() * devicePixelRatioF());
        pixmap.setDevicePixelRatio(devicePixelRatioF());
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setOpacity(0.8);
        viewport()->render(&painter, QPoint(), QRegion(rect));
        painter.end();
        drag->setPixmap(pixmap);
    }
    drag->exec(Qt::MoveAction | Qt::CopyAction, Qt::MoveAction);
    m_dragged = nullptr;
}

bool OutlineView::acceptsDrop(const QPoint& pos) const
{
    return m_dragged && store::OutlineCommands::canDrop(m_dragged, nodeAt(pos));
}

void OutlineView::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->source() == this && event->mimeData()->hasFormat(kDragFormat)) {
        QTreeView::dragEnterEvent(event);
        event->acceptProposedAction();
    } else {
        event->ignore();
    }
}

void OutlineView::dragMoveEvent(QDragMoveEvent* event)
{
    QTreeView::dragMoveEvent(event); // auto-scroll and the drop indicator
    if (event->source() == this && acceptsDrop(event->position().toPoint())) {
        event->setDropAction(Qt::MoveAction);
        event->accept();
    } else {
        event->ignore();
    }
}

void OutlineView::dropEvent(QDropEvent* event)
{
    const QPoint pos = event->position().toPoint();
    store::OutlineNode* target = nodeAt(pos);
    if (event->source() != this || !m_dragged || !target) {
        event->ignore();
        return;
    }
    const bool ctrl = event->modifiers().testFlag(Qt::ControlModifier);
    event->setDropAction(Qt::IgnoreAction); // the window moves the node itself
    event->accept();
    emit nodeDropped(m_dragged, target, ctrl);
    stopAutoScroll();
    setState(NoState);
    viewport()->update();
}

} // namespace kestrum::app
