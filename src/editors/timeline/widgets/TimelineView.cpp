#include "TimelineView.h"

#include "editors/timeline/TimelineRenderer.h"

#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QToolTip>

#include <cmath>

namespace kestrum::timeline {

namespace {
constexpr int kDragThreshold = 4;
} // namespace

TimelineView::TimelineView(TimelineModel* model, QWidget* parent) : QWidget(parent), m_model(model)
{
    setObjectName(QStringLiteral("TimeLine"));
    setMouseTracking(true);
    setMinimumHeight(120);
    setAttribute(Qt::WA_OpaquePaintEvent);
    m_hintTimer = new QTimer(this);
    m_hintTimer->setSingleShot(true);
    m_hintTimer->setInterval(100);
    connect(m_hintTimer, &QTimer::timeout, this, &TimelineView::showHint);
}

void TimelineView::setHintPause(int milliseconds)
{
    m_hintTimer->setInterval(milliseconds);
}

int TimelineView::hintPause() const
{
    return m_hintTimer->interval();
}

void TimelineView::showHint()
{
    const int index = eventAt(m_hintAt);
    if (index >= 0 && !m_model->events[std::size_t(index)].hint.isEmpty()) {
        QToolTip::showText(mapToGlobal(m_hintAt), m_model->events[std::size_t(index)].hint, this);
    } else {
        QToolTip::hideText();
    }
}

int TimelineView::eventAt(QPoint point) const
{
    return TimelineRenderer::hitTest(*m_model, size(), point);
}

void TimelineView::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    TimelineRenderer::paint(p, *m_model, size());
}

void TimelineView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        m_pressed = true;
        m_dragging = false;
        m_pressAt = event->position().toPoint();
        m_pressFrom = m_model->rangeFrom;
        m_pressTo = m_model->rangeTo;
    }
}

void TimelineView::mouseMoveEvent(QMouseEvent* event)
{
    emit pointerMoved(event->globalPosition().toPoint());
    // The hint waits for the pointer to rest.
    m_hintAt = event->position().toPoint();
    m_hintTimer->start();
    if (!m_pressed || !(event->buttons() & Qt::LeftButton)) {
        return;
    }
    const int dx = event->position().toPoint().x() - m_pressAt.x();
    if (!m_dragging && std::abs(dx) < kDragThreshold) {
        return;
    }
    m_dragging = true;
    const double width = std::max(1, this->width() - 2 * m_model->horizontalMargin);
    const double shift = dx / width * (m_pressTo - m_pressFrom);
    m_model->rangeFrom = m_pressFrom - shift;
    m_model->rangeTo = m_pressTo - shift;
    update();
    emit scrolled(m_model->rangeFrom);
}

void TimelineView::mouseReleaseEvent(QMouseEvent* event)
{
    const bool click = !m_dragging;
    m_pressed = false;
    m_dragging = false;
    emit mouseReleased(event->button());
    if (click && event->button() == Qt::LeftButton) {
        const int index = eventAt(event->position().toPoint());
        if (index >= 0) {
            emit indicatorClicked(index);
        }
    }
}

void TimelineView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    emit resized();
}

bool TimelineView::event(QEvent* event)
{
    // Hints follow the page's own pause (see setHintPause), not the style's.
    if (event->type() == QEvent::ToolTip) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::Leave) {
        m_hintTimer->stop();
    }
    return QWidget::event(event);
}

} // namespace kestrum::timeline
