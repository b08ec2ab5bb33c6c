#pragma once

#include <QGraphicsView>

class QRubberBand;

namespace kestrum::diagram {

// The diagram surface: shows the scene at the diagram's zoom, in one of three modes (pointer:
// select and move; hand: pan; range: drag a rectangle to zoom to it), and reports the mouse
// events the editor acts on.
class DiagramView : public QGraphicsView
{
    Q_OBJECT
public:
    enum class Mode
    {
        Pointer,
        Hand,
        Range
    };

    explicit DiagramView(QWidget* parent = nullptr);

    Mode mode() const { return m_mode; }
    void setMode(Mode mode);
    // Shows the scene at `percent` (100: one drawing unit a pixel).
    void setZoom(int percent);
    int zoom() const { return m_zoom; }
    // The zoom (percent) that shows `sceneRect` in the whole viewport.
    int zoomFor(const QRectF& sceneRect) const;

signals:
    // The right button was released at `globalPos`.
    void rightButtonReleased(const QPoint& globalPos);
    // A click on the surface (any button, released).
    void clicked();
    void focusEntered();
    // In range mode the user dragged a rectangle: the zoom that shows it.
    void rangeZoomRequested(int percent, const QPointF& centre);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    Mode m_mode = Mode::Pointer;
    int m_zoom = 100;
    QPoint m_rangeStart;
    QRubberBand* m_rangeBand = nullptr;
};

} // namespace kestrum::diagram
