#pragma once

#include <QWidget>

namespace kestrum::wordcloud_page {

class CloudPageDocument;

// Where the page's cloud is drawn: it fills the editor, and its size is the cloud's client
// size. A resize scales the laid-out cloud into the new size (no new layout).
class CloudCanvas : public QWidget
{
    Q_OBJECT
public:
    explicit CloudCanvas(CloudPageDocument& document, QWidget* parent = nullptr);

    // Gives the cloud the canvas's size (after a page was loaded).
    void fitCloud();

signals:
    void contextMenuAt(const QPoint& globalPos);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    CloudPageDocument& m_document;
};

} // namespace kestrum::wordcloud_page
