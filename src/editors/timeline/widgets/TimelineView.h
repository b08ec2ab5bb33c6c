#pragma once

#include "editors/timeline/TimelineModel.h"

#include <QWidget>

class QTimer;

namespace kestrum::timeline {

// The timeline control: draws the model (TimelineRenderer), shows an event's hint as its
// tooltip, reports clicks on events, scrolls by drag and reports the new start.
class TimelineView : public QWidget
{
    Q_OBJECT
public:
    explicit TimelineView(TimelineModel* model, QWidget* parent = nullptr);

    TimelineModel& model() { return *m_model; }
    // The event under `point`, or -1.
    int eventAt(QPoint point) const;
    // How long the pointer rests on an event before its hint shows (milliseconds).
    void setHintPause(int milliseconds);
    int hintPause() const;

signals:
    // A click (press and release without a drag) on event `index`; reported after
    // mouseReleased.
    void indicatorClicked(int index);
    void mouseReleased(Qt::MouseButton button);
    // The pointer moved; `global` in screen coordinates.
    void pointerMoved(QPoint global);
    // The user dragged the timeline: the visible window now starts at `start`.
    void scrolled(double start);
    void resized();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    void showHint();

    TimelineModel* m_model;
    QTimer* m_hintTimer = nullptr;
    QPoint m_hintAt;
    QPoint m_pressAt;
    double m_pressFrom = 0;
    double m_pressTo = 0;
    bool m_pressed = false;
    bool m_dragging = false;
};

} // namespace kestrum::timeline
