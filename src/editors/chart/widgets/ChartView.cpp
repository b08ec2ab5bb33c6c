#include "ChartView.h"

#include "editors/chart/ChartMotion.h"
#include "editors/chart/ChartPageDocument.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>

namespace kestrum::chart {

ChartView::ChartView(ChartPageDocument& document, ChartMotion& motion, QWidget* parent)
    : QWidget(parent), m_document(document), m_motion(motion)
{
    setObjectName(QStringLiteral("ChartView"));
    setMouseTracking(false);
    setMinimumSize(120, 90);
    connect(&m_document, &ChartPageDocument::chartChanged, this, qOverload<>(&QWidget::update));
    connect(&m_document, &store::PageDocument::contentReset, this, &ChartView::undoZoom);
}

RenderOptions ChartView::renderOptions() const
{
    RenderOptions options;
    options.chartInfo = m_document.chartInfo();
    options.palette = &palette();
    options.zoomWindow = m_zoomWindow;
    options.zoom3D = m_zoom3D;
    return options;
}

QImage ChartView::toImage() const
{
    return ChartRenderer::image(m_document.chart(), size(), renderOptions());
}

void ChartView::undoZoom()
{
    m_zoomWindow.reset();
    m_zoom3D = 1;
    m_zoomStart.reset();
    update();
}

void ChartView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    m_geometry = ChartRenderer::paint(painter, QRectF(rect()), m_document.chart(), renderOptions());
    if (m_zoomStart) {
        painter.setPen(QPen(palette().color(QPalette::WindowText), 0, Qt::DashLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRect(*m_zoomStart, m_zoomEnd).normalized());
    }
}

bool ChartView::rotating() const
{
    return m_motion.rotationMode && m_rotationAllowed;
}

void ChartView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    if (rotating()) {
        m_motion.mouseDown(event->position().toPoint(), m_document.chart());
        QGuiApplication::setOverrideCursor(Qt::BusyCursor);
        return;
    }
    if (m_zoomAllowed) {
        m_zoomStart = event->position().toPoint();
        m_zoomEnd = *m_zoomStart;
    }
}

void ChartView::mouseMoveEvent(QMouseEvent* event)
{
    if (rotating() && m_motion.dragging) {
        const QPoint at = event->position().toPoint();
        m_document.changeView([&](Chart& c) { m_motion.mouseMove(at, size(), c); });
        return;
    }
    if (m_zoomStart) {
        m_zoomEnd = event->position().toPoint();
        update();
    }
}

void ChartView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    if (m_motion.dragging) {
        m_motion.mouseUp(m_document.chart());
        QGuiApplication::restoreOverrideCursor();
        emit rotated();
        return;
    }
    if (!m_zoomStart) {
        return;
    }
    const QPoint from = *m_zoomStart;
    const QPoint to = event->position().toPoint();
    m_zoomStart.reset();
    if (to.x() < from.x() || to.y() < from.y()) {
        undoZoom();
        emit zoomed();
        return;
    }
    if (to.x() - from.x() < 4 || to.y() - from.y() < 4) {
        update();
        return;
    }
    if (m_geometry.hasAxes) {
        const double x0 = m_geometry.xToBottom(from.x());
        const double x1 = m_geometry.xToBottom(to.x());
        const double y0 = m_geometry.yToLeft(from.y());
        const double y1 = m_geometry.yToLeft(to.y());
        m_zoomWindow = QRectF(QPointF(std::min(x0, x1), std::min(y0, y1)),
                              QPointF(std::max(x0, x1), std::max(y0, y1)));
    } else {
        // 3D point charts zoom about their centre by the rectangle's share of the view.
        const double share = std::max(double(to.x() - from.x()) / std::max(1, width()),
                                      double(to.y() - from.y()) / std::max(1, height()));
        m_zoom3D = std::min(m_zoom3D / std::max(share, 0.05), 50.0);
    }
    update();
    emit zoomed();
}

} // namespace kestrum::chart
