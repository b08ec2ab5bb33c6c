#pragma once

#include "editors/diagram/DiagramItems.h"

#include <QRectF>
#include <QSizeF>

#include <vector>

namespace kestrum::diagram {

// A whole diagram: its blocks and the links between them (by block index), and the zoom in
// percent. A value type without widgets; the page, the exports and the renderer share it.
class DiagramDocument
{
public:
    static constexpr int kDefaultZoom = 100;

    std::vector<DiagramBlock>& blocks() { return m_blocks; }
    const std::vector<DiagramBlock>& blocks() const { return m_blocks; }
    std::vector<DiagramLink>& links() { return m_links; }
    const std::vector<DiagramLink>& links() const { return m_links; }
    int zoom() const { return m_zoom; }
    void setZoom(int percent) { m_zoom = percent; }

    bool isEmpty() const { return m_blocks.empty() && m_links.empty(); }
    void clear();
    bool operator==(const DiagramDocument&) const = default;

    // The zoom after one step in (x 1.1) or out (x 0.9), rounded to nearest, ties to even:
    // 100 -> 110 -> 121 -> 133; 100 -> 90 -> 81 -> 73. No bounds apply; a zoom past the
    // integer range stays at its largest value.
    static int zoomedIn(int zoom);
    static int zoomedOut(int zoom);

    bool anyBlockSelected() const;
    bool anyLinkSelected() const;
    void selectAll(bool selected);

    // Deletes the selected blocks, last to first, each with every link that starts or ends at
    // it (selected or not), then the selected links, last to first. Links keep pointing at the
    // same blocks. Returns whether anything was deleted.
    bool deleteSelected();

    // Shows or hides the first text cell of every link.
    void setLinkTextsVisible(bool visible);
    // Whether the first link shows its text (true when there is none to hide).
    bool linkTextsVisible() const;

    // The smallest rectangle holding every block (empty for no block).
    QRectF blockBounds() const;
    // The zoom (percent) at which the blocks fit into `viewport` (pixels) with `margin` pixels
    // on every side; the current zoom when there are no blocks.
    int fitZoom(const QSizeF& viewport, double margin) const;
    // Centres the blocks horizontally in a control `controlWidth` pixels wide at the current
    // zoom: S := (width / zoom x 100 - (largest + smallest left)) / 2 - first block's width / 2,
    // added to every block's left when above 0. Returns S.
    double centreHorizontally(double controlWidth);

    // The first text cell of a block or link (made when missing).
    static DiagramTextCell& firstCell(std::vector<DiagramTextCell>& cells);
    static const DiagramTextCell* firstCell(const std::vector<DiagramTextCell>& cells);

private:
    std::vector<DiagramBlock> m_blocks;
    std::vector<DiagramLink> m_links;
    int m_zoom = kDefaultZoom;
};

} // namespace kestrum::diagram
