#pragma once

#include <QGraphicsScene>

#include <vector>

namespace kestrum::diagram {

class DiagramBlockItem;
class DiagramLinkItem;
class DiagramPageDocument;

// The diagram surface's items over a page document: rebuilt whenever the document changes,
// its selection and block positions written back into the document as the user works.
class DiagramScene : public QGraphicsScene
{
    Q_OBJECT
public:
    explicit DiagramScene(DiagramPageDocument& document, QObject* parent = nullptr);
    ~DiagramScene() override;

    void rebuild();
    const std::vector<DiagramBlockItem*>& blockItems() const { return m_blocks; }
    const std::vector<DiagramLinkItem*>& linkItems() const { return m_links; }

signals:
    // Blocks were dragged to new places (after the button is released).
    void itemsMoved();

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;

private:
    void writeSelection();

    DiagramPageDocument& m_document;
    std::vector<DiagramBlockItem*> m_blocks;
    std::vector<DiagramLinkItem*> m_links;
    std::vector<QPointF> m_pressPositions;
    bool m_rebuilding = false;
};

} // namespace kestrum::diagram
