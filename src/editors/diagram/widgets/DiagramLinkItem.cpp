#include "DiagramLinkItem.h"

#include "editors/diagram/DiagramPageDocument.h"
#include "editors/diagram/DiagramRenderer.h"

#include <QPainter>
#include <QPainterPathStroker>
#include <QStyleOptionGraphicsItem>

namespace kestrum::diagram {

namespace {

// Room around a link for its text and arrow head.
constexpr double kTextRoom = 60;

} // namespace

DiagramLinkItem::DiagramLinkItem(DiagramPageDocument& document, int index)
    : m_document(document), m_index(index)
{
    setFlags(ItemIsSelectable);
    setSelected(m_document.diagram().links()[std::size_t(index)].selected);
    m_bounds = computeBounds();
}

void DiagramLinkItem::updateGeometry()
{
    prepareGeometryChange();
    m_bounds = computeBounds();
}

QRectF DiagramLinkItem::computeBounds() const
{
    const DiagramDocument& d = m_document.diagram();
    const DiagramLink& l = d.links()[std::size_t(m_index)];
    const DiagramBlock& s = d.blocks()[std::size_t(l.source)];
    const DiagramBlock& t = d.blocks()[std::size_t(l.target)];
    const double pad = l.penWidth + 12;
    QRectF r = l.source == l.target ? DiagramRenderer::linkLoop(s).boundingRect()
                                    : QRectF(DiagramRenderer::linkLine(s, t).p1(),
                                             DiagramRenderer::linkLine(s, t).p2())
                                          .normalized();
    const QPointF c = r.center();
    r = r.united(QRectF(c.x() - kTextRoom, c.y() - kTextRoom / 2, 2 * kTextRoom, kTextRoom));
    return r.adjusted(-pad, -pad, pad, pad);
}

QPainterPath DiagramLinkItem::shape() const
{
    const DiagramDocument& d = m_document.diagram();
    const DiagramLink& l = d.links()[std::size_t(m_index)];
    const DiagramBlock& s = d.blocks()[std::size_t(l.source)];
    QPainterPath path;
    if (l.source == l.target) {
        path = DiagramRenderer::linkLoop(s);
    } else {
        const QLineF line = DiagramRenderer::linkLine(s, d.blocks()[std::size_t(l.target)]);
        path.moveTo(line.p1());
        path.lineTo(line.p2());
    }
    QPainterPathStroker stroker;
    stroker.setWidth(std::max(6, l.penWidth + 4)); // thin links are still easy to hit
    return stroker.createStroke(path);
}

void DiagramLinkItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    const DiagramDocument& d = m_document.diagram();
    const DiagramLink& l = d.links()[std::size_t(m_index)];
    const double scale = option->levelOfDetailFromTransform(painter->worldTransform());
    const DiagramTextCell* cell = DiagramDocument::firstCell(l.cells);
    DiagramRenderer::paintLink(*painter, d, l, true,
                               cell && DiagramRenderer::readableAt(cell->font, scale));
}

} // namespace kestrum::diagram
