#pragma once

#include "editors/chart/ChartGeometry.h"
#include "editors/chart/ChartRenderer.h"

#include <QWidget>

#include <optional>

namespace kestrum::chart {

class ChartMotion;
class ChartPageDocument;

// The chart of the chart page, filling the panel: draws the document's chart and turns mouse
// gestures into rotation (in rotation mode) or zoom (while zooming is allowed). 3D view and
// mouse zoom are off until the toolbar turns them on.
class ChartView : public QWidget
{
    Q_OBJECT
public:
    ChartView(ChartPageDocument& document, ChartMotion& motion, QWidget* parent = nullptr);

    // Rotation by the mouse (only when the chart can turn: a 3D point series or 3D view).
    void setRotationAllowed(bool allowed) { m_rotationAllowed = allowed; }
    // Mouse zoom: dragging right and down zooms into the rectangle, left or up undoes it.
    void setZoomAllowed(bool allowed) { m_zoomAllowed = allowed; }
    bool zoomAllowed() const { return m_zoomAllowed; }
    void undoZoom();
    bool isZoomed() const { return m_zoomWindow.has_value() || m_zoom3D != 1; }

    RenderOptions renderOptions() const;
    const ChartGeometry& chartGeometry() const { return m_geometry; }
    // The chart as it is shown, at the view's size.
    QImage toImage() const;

signals:
    // A drag turned the chart (mouse released).
    void rotated();
    void zoomed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    bool rotating() const;

    ChartPageDocument& m_document;
    ChartMotion& m_motion;
    ChartGeometry m_geometry;
    bool m_rotationAllowed = false;
    bool m_zoomAllowed = false;
    std::optional<QRectF> m_zoomWindow;
    double m_zoom3D = 1;
    std::optional<QPoint> m_zoomStart;
    QPoint m_zoomEnd;
};

} // namespace kestrum::chart
