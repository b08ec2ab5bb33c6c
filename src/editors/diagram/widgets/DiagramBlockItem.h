#pragma once

#include <QGraphicsItem>

#include <vector>

namespace kestrum::diagram {

class DiagramLinkItem;
class DiagramPageDocument;

// One block on the diagram surface. The item's position is the block's top-left corner; moving
// the item moves the block in the document and redraws its links.
class DiagramBlockItem : public QGraphicsItem
{
public:
    DiagramBlockItem(DiagramPageDocument& document, int index);

    int index() const { return m_index; }
    void addLink(DiagramLinkItem* link) { m_links.push_back(link); }

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;

private:
    DiagramPageDocument& m_document;
    int m_index;
    std::vector<DiagramLinkItem*> m_links;
};

} // namespace kestrum::diagram
