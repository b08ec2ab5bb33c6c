#include "DiagramDocument.h"

#include "common/Rounding.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kestrum::diagram {

namespace {

int saturatedZoom(double value)
{
    constexpr double kMax = std::numeric_limits<int>::max();
    if (!(value < kMax)) {
        return std::numeric_limits<int>::max();
    }
    return int(common::roundHalfEven(std::max(value, double(std::numeric_limits<int>::min()))));
}

} // namespace

void DiagramDocument::clear()
{
    m_blocks.clear();
    m_links.clear();
    m_zoom = kDefaultZoom;
}

int DiagramDocument::zoomedIn(int zoom)
{
    return saturatedZoom(double(zoom) * 1.1);
}

int DiagramDocument::zoomedOut(int zoom)
{
    return saturatedZoom(double(zoom) * 0.9);
}

bool DiagramDocument::anyBlockSelected() const
{
    return std::any_of(m_blocks.begin(), m_blocks.end(),
                       [](const DiagramBlock& b) { return b.selected; });
}

bool DiagramDocument::anyLinkSelected() const
{
    return std::any_of(m_links.begin(), m_links.end(),
                       [](const DiagramLink& l) { return l.selected; });
}

void DiagramDocument::selectAll(bool selected)
{
    for (DiagramBlock& b : m_blocks) {
        b.selected = selected;
    }
    for (DiagramLink& l : m_links) {
        l.selected = selected;
    }
}

bool DiagramDocument::deleteSelected()
{
    bool deleted = false;
    for (int b = int(m_blocks.size()) - 1; b >= 0; --b) {
        if (!m_blocks[std::size_t(b)].selected) {
            continue;
        }
        // Every link is checked; after a deletion the same index is tested again.
        std::size_t i = 0;
        while (i < m_links.size()) {
            if (m_links[i].source == b || m_links[i].target == b) {
                m_links.erase(m_links.begin() + qsizetype(i));
            } else {
                ++i;
            }
        }
        m_blocks.erase(m_blocks.begin() + b);
        // The later blocks move down one place: the links follow them.
        for (DiagramLink& l : m_links) {
            if (l.source > b) {
                --l.source;
            }
            if (l.target > b) {
                --l.target;
            }
        }
        deleted = true;
    }
    for (int i = int(m_links.size()) - 1; i >= 0; --i) {
        if (m_links[std::size_t(i)].selected) {
            m_links.erase(m_links.begin() + i);
            deleted = true;
        }
    }
    return deleted;
}

void DiagramDocument::setLinkTextsVisible(bool visible)
{
    for (DiagramLink& l : m_links) {
        firstCell(l.cells).visible = visible;
    }
}

bool DiagramDocument::linkTextsVisible() const
{
    if (m_links.empty()) {
        return true;
    }
    const DiagramTextCell* cell = firstCell(m_links.front().cells);
    return !cell || cell->visible;
}

QRectF DiagramDocument::blockBounds() const
{
    QRectF bounds;
    for (const DiagramBlock& b : m_blocks) {
        bounds =
            bounds.united(QRectF(b.left, b.top, std::max(b.width, 1e-9), std::max(b.height, 1e-9)));
    }
    return bounds;
}

int DiagramDocument::fitZoom(const QSizeF& viewport, double margin) const
{
    const QRectF bounds = blockBounds();
    if (m_blocks.empty() || bounds.width() <= 0 || bounds.height() <= 0) {
        return m_zoom;
    }
    const double w = std::max(1.0, viewport.width() - 2 * margin);
    const double h = std::max(1.0, viewport.height() - 2 * margin);
    const double scale = std::min(w / bounds.width(), h / bounds.height());
    // Down to whole percents, never below 1: the whole diagram stays inside.
    return std::max(1, int(std::min(std::floor(scale * 100), 1e9)));
}

double DiagramDocument::centreHorizontally(double controlWidth)
{
    if (m_blocks.empty() || m_zoom == 0) {
        return 0;
    }
    double smallest = m_blocks.front().left;
    double largest = smallest;
    for (const DiagramBlock& b : m_blocks) {
        smallest = std::min(smallest, b.left);
        largest = std::max(largest, b.left);
    }
    const double s =
        (controlWidth / m_zoom * 100 - (largest + smallest)) / 2 - m_blocks.front().width / 2;
    if (s > 0) {
        for (DiagramBlock& b : m_blocks) {
            b.left += s;
        }
    }
    return s;
}

DiagramTextCell& DiagramDocument::firstCell(std::vector<DiagramTextCell>& cells)
{
    if (cells.empty()) {
        cells.emplace_back();
    }
    return cells.front();
}

const DiagramTextCell* DiagramDocument::firstCell(const std::vector<DiagramTextCell>& cells)
{
    return cells.empty() ? nullptr : &cells.front();
}

} // namespace kestrum::diagram
