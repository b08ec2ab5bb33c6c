#include "DiagramBlockItem.h"

#include "editors/diagram/DiagramPageDocument.h"
#include "editors/diagram/DiagramRenderer.h"
#include "editors/diagram/widgets/DiagramLinkItem.h"

#include <QPainter>
#include <QStyleOptionGraphicsItem>

namespace kestrum::diagram {

DiagramBlockItem::DiagramBlockItem(DiagramPageDocument& document, int index)
    : m_document(document), m_index(index)
{
    const DiagramBlock& b = m_document.diagram().blocks()[std::size_t(index)];
    setPos(b.left, b.top);
    setFlags(ItemIsSelectable | ItemIsMovable | ItemSendsGeometryChanges);
    setSelected(b.selected);
    setZValue(1);
}

QRectF DiagramBlockItem::boundingRect() const
{
    const DiagramBlock& b = m_document.diagram().blocks()[std::size_t(m_index)];
    // The text may reach a block's width past either side; the selection frame 2 units.
    return QRectF(-b.width - 3, -3, b.width * 3 + 6, b.height + 6);
}

QPainterPath DiagramBlockItem::shape() const
{
    DiagramBlock b = m_document.diagram().blocks()[std::size_t(m_index)];
    b.left = 0;
    b.top = 0;
    QPainterPath path;
    path.addRect(DiagramRenderer::blockRect(b)); // blocks without a shape are hit on their box
    return b.shape == BlockShape::None ? path : DiagramRenderer::blockOutline(b);
}

void DiagramBlockItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    const DiagramBlock& b = m_document.diagram().blocks()[std::size_t(m_index)];
    const double scale = option->levelOfDetailFromTransform(painter->worldTransform());
    const DiagramTextCell* cell = DiagramDocument::firstCell(b.cells);
    // The block is drawn where it is in the document, the item being at its corner.
    painter->translate(-b.left, -b.top);
    DiagramRenderer::paintBlock(*painter, b, true,
                                cell && DiagramRenderer::readableAt(cell->font, scale));
    painter->translate(b.left, b.top);
}

QVariant DiagramBlockItem::itemChange(GraphicsItemChange change, const QVariant& value)
{
    if (change == ItemPositionHasChanged) {
        const QPointF p = value.toPointF();
        m_document.moveBlock(m_index, p.x(), p.y());
        for (DiagramLinkItem* link : m_links) {
            link->updateGeometry();
        }
    }
    return QGraphicsItem::itemChange(change, value);
}

} // namespace kestrum::diagram
