#include "DiagramScene.h"

#include "common/ScopedFlag.h"
#include "editors/diagram/DiagramPageDocument.h"
#include "editors/diagram/DiagramRenderer.h"
#include "editors/diagram/widgets/DiagramBlockItem.h"
#include "editors/diagram/widgets/DiagramLinkItem.h"

#include <QGraphicsSceneMouseEvent>

namespace kestrum::diagram {

DiagramScene::DiagramScene(DiagramPageDocument& document, QObject* parent)
    : QGraphicsScene(parent), m_document(document)
{
    // Items move often; an index would be rebuilt on every move.
    setItemIndexMethod(QGraphicsScene::BspTreeIndex);
    connect(&m_document, &DiagramPageDocument::diagramChanged, this, &DiagramScene::rebuild);
    connect(this, &QGraphicsScene::selectionChanged, this, &DiagramScene::writeSelection);
    rebuild();
}

DiagramScene::~DiagramScene()
{
    // Items going away change the selection: nothing is written back any more.
    m_rebuilding = true;
    clear();
}

void DiagramScene::rebuild()
{
    common::ScopedFlag rebuilding(m_rebuilding);
    clear();
    m_blocks.clear();
    m_links.clear();
    const DiagramDocument& d = m_document.diagram();
    m_blocks.reserve(d.blocks().size());
    for (int i = 0; i < int(d.blocks().size()); ++i) {
        auto* item = new DiagramBlockItem(m_document, i);
        addItem(item);
        m_blocks.push_back(item);
    }
    m_links.reserve(d.links().size());
    const int blockCount = int(d.blocks().size());
    for (int i = 0; i < int(d.links().size()); ++i) {
        const DiagramLink& l = d.links()[std::size_t(i)];
        if (l.source < 0 || l.target < 0 || l.source >= blockCount || l.target >= blockCount) {
            continue; // a link to no block is not drawn
        }
        auto* item = new DiagramLinkItem(m_document, i);
        addItem(item);
        m_links.push_back(item);
        m_blocks[std::size_t(l.source)]->addLink(item);
        if (l.target != l.source) {
            m_blocks[std::size_t(l.target)]->addLink(item);
        }
    }
    const QRectF bounds = DiagramRenderer::sceneBounds(d);
    setSceneRect(bounds.isEmpty() ? QRectF(0, 0, 100, 100) : bounds.adjusted(-50, -50, 50, 50));
}

void DiagramScene::writeSelection()
{
    if (m_rebuilding) {
        return;
    }
    std::vector<int> blocks;
    std::vector<int> links;
    for (DiagramBlockItem* item : m_blocks) {
        if (item->isSelected()) {
            blocks.push_back(item->index());
        }
    }
    for (DiagramLinkItem* item : m_links) {
        if (item->isSelected()) {
            links.push_back(item->index());
        }
    }
    m_document.setSelection(blocks, links);
}

void DiagramScene::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    m_pressPositions.clear();
    for (DiagramBlockItem* item : m_blocks) {
        m_pressPositions.push_back(item->pos());
    }
    QGraphicsScene::mousePressEvent(event);
}

void DiagramScene::mouseReleaseEvent(QGraphicsSceneMouseEvent* event)
{
    QGraphicsScene::mouseReleaseEvent(event);
    bool moved = false;
    for (std::size_t i = 0; i < m_blocks.size() && i < m_pressPositions.size() && !moved; ++i) {
        moved = m_blocks[i]->pos() != m_pressPositions[i];
    }
    m_pressPositions.clear();
    if (moved) {
        emit itemsMoved();
    }
}

} // namespace kestrum::diagram
