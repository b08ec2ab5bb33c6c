#include "DiagramView.h"

#include <QMouseEvent>
#include <QRubberBand>

#include <algorithm>
#include <cmath>

namespace kestrum::diagram {

namespace {

// A range smaller than this (pixels) is a click, not a rectangle.
constexpr int kMinRange = 4;
// The smallest zoom drawn with antialiasing.
constexpr double kSmoothFrom = 0.5;

} // namespace

DiagramView::DiagramView(QWidget* parent) : QGraphicsView(parent)
{
    setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    setViewportUpdateMode(QGraphicsView::SmartViewportUpdate);
    // Every item sets the pen, brush and font it draws with and undoes its own moves.
    setOptimizationFlags(QGraphicsView::DontSavePainterState |
                         QGraphicsView::DontAdjustForAntialiasing);
    setTransformationAnchor(QGraphicsView::AnchorViewCenter);
    setBackgroundBrush(Qt::white);
    setFocusPolicy(Qt::StrongFocus);
    setMode(Mode::Pointer);
}

void DiagramView::setMode(Mode mode)
{
    m_mode = mode;
    switch (mode) {
    case Mode::Pointer:
        setDragMode(QGraphicsView::RubberBandDrag);
        viewport()->unsetCursor();
        break;
    case Mode::Hand:
        setDragMode(QGraphicsView::ScrollHandDrag);
        break;
    case Mode::Range:
        // The view draws its own rectangle: items are neither selected nor moved.
        setDragMode(QGraphicsView::NoDrag);
        viewport()->setCursor(Qt::CrossCursor);
        break;
    }
    setInteractive(mode == Mode::Pointer);
}

void DiagramView::setZoom(int percent)
{
    m_zoom = percent;
    const double scale = std::max(percent, 1) / 100.0;
    setTransform(QTransform::fromScale(scale, scale));
    // Far out, smoothing costs more than it shows.
    setRenderHint(QPainter::Antialiasing, scale >= kSmoothFrom);
}

int DiagramView::zoomFor(const QRectF& sceneRect) const
{
    if (sceneRect.width() <= 0 || sceneRect.height() <= 0) {
        return m_zoom;
    }
    const QSize area = viewport()->size();
    const double scale =
        std::min(area.width() / sceneRect.width(), area.height() / sceneRect.height());
    return std::max(1, int(std::min(std::floor(scale * 100), 1e9)));
}

void DiagramView::mousePressEvent(QMouseEvent* event)
{
    if (m_mode == Mode::Range && event->button() == Qt::LeftButton) {
        m_rangeStart = event->position().toPoint();
        if (!m_rangeBand) {
            m_rangeBand = new QRubberBand(QRubberBand::Rectangle, viewport());
        }
        m_rangeBand->setGeometry(QRect(m_rangeStart, QSize()));
        m_rangeBand->show();
        return;
    }
    QGraphicsView::mousePressEvent(event);
}

void DiagramView::mouseMoveEvent(QMouseEvent* event)
{
    if (m_mode == Mode::Range && m_rangeBand && m_rangeBand->isVisible()) {
        m_rangeBand->setGeometry(QRect(m_rangeStart, event->position().toPoint()).normalized());
        return;
    }
    QGraphicsView::mouseMoveEvent(event);
}

void DiagramView::mouseReleaseEvent(QMouseEvent* event)
{
    QGraphicsView::mouseReleaseEvent(event);
    if (event->button() == Qt::RightButton) {
        emit rightButtonReleased(event->globalPosition().toPoint());
        return;
    }
    if (m_mode == Mode::Range && event->button() == Qt::LeftButton) {
        if (m_rangeBand) {
            m_rangeBand->hide();
        }
        const QRect r = QRect(m_rangeStart, event->position().toPoint()).normalized();
        if (r.width() >= kMinRange && r.height() >= kMinRange) {
            const QRectF sceneRect = mapToScene(r).boundingRect();
            emit rangeZoomRequested(zoomFor(sceneRect), sceneRect.center());
        }
    }
    emit clicked();
}

void DiagramView::focusInEvent(QFocusEvent* event)
{
    QGraphicsView::focusInEvent(event);
    emit focusEntered();
}

} // namespace kestrum::diagram
