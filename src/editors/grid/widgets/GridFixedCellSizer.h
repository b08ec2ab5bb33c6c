#pragma once

#include <QObject>
#include <QPoint>

#include <functional>

class QHeaderView;
class QMouseEvent;

namespace kestrum::grid {

class GridPageDocument;

// Sizing the fixed rows and columns with the mouse. The fixed rows are shown as the grid's
// column header and the fixed columns as its row header; dragging the header's inner edge (the
// bottom of the column header, the right of the row header) sizes the last fixed row or column.
// The header follows the mouse; the document takes the new size once, on release.
class GridFixedCellSizer : public QObject
{
    Q_OBJECT
public:
    // How close (pixels) to the edge the mouse must be to grab it.
    static constexpr int kGrip = 4;
    static constexpr int kMinimumSize = 2;

    // `relayout` places the view's headers and cells again after the header changed size.
    GridFixedCellSizer(QHeaderView* header, GridPageDocument* document,
                       std::function<void()> relayout, QObject* parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool horizontal() const;
    // The header's extent across its sections: its height, or its width for the row header.
    int extent() const;
    int along(const QPoint& pos) const;
    bool onEdge(const QPoint& pos) const;
    // The last fixed row or column, or -1 when there is none.
    int lastFixed() const;
    int fixedSize(int index) const;
    bool press(QMouseEvent* event);
    bool move(QMouseEvent* event);
    bool release(QMouseEvent* event);

    QHeaderView* m_header;
    GridPageDocument* m_document;
    std::function<void()> m_relayout;
    bool m_dragging = false;
    int m_startPos = 0;
    int m_startExtent = 0;
    int m_startSize = 0;
};

} // namespace kestrum::grid
