#pragma once

#include <QList>
#include <QWidget>

namespace kestrum::text {

class WPView;

// The horizontal ruler above the text: the margins (in the workspace colour), the indents of
// the current paragraph (first line above, left and right below) and its tab stops, all in
// view coordinates. Dragging a marker changes the selected paragraphs; a click in the text
// area sets a left tab stop; dragging a tab stop off the ruler removes it.
class WPRuler : public QWidget
{
    Q_OBJECT
public:
    explicit WPRuler(WPView* view, QWidget* parent = nullptr);

    // Ruler x coordinates of what is shown.
    struct Markers
    {
        qreal textLeft = 0;  // where the text area of the paragraph's frame starts
        qreal textRight = 0; // and ends
        qreal firstLine = 0;
        qreal left = 0;
        qreal right = 0;
        QList<qreal> tabs;
    };
    Markers markers() const;
    // The document x of a ruler x and back.
    qreal toDocument(qreal rulerX) const;
    qreal toRuler(qreal documentX) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    void indentsChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    enum class Drag
    {
        None,
        FirstLine,
        Left,
        Right,
        Tab
    };

    qreal viewportOffset() const;
    qreal snap(qreal rulerX) const;
    void applyDrag(qreal rulerX, bool release, qreal y);

    WPView* m_view;
    Drag m_drag = Drag::None;
    int m_tabIndex = -1;
    qreal m_dragX = 0;
};

} // namespace kestrum::text
