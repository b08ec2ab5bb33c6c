#pragma once

#include <QGraphicsItem>

namespace kestrum::diagram {

class DiagramPageDocument;

// One link on the diagram surface, drawn between its blocks wherever they are.
class DiagramLinkItem : public QGraphicsItem
{
public:
    DiagramLinkItem(DiagramPageDocument& document, int index);

    int index() const { return m_index; }
    // The blocks moved: the link's area changes.
    void updateGeometry();

    QRectF boundingRect() const override { return m_bounds; }
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    QRectF computeBounds() const;

    DiagramPageDocument& m_document;
    int m_index;
    QRectF m_bounds;
};

} // namespace kestrum::diagram
