#include "CloudCanvas.h"

#include "editors/wordcloud_page/CloudPageDocument.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>

namespace kestrum::wordcloud_page {

CloudCanvas::CloudCanvas(CloudPageDocument& document, QWidget* parent)
    : QWidget(parent), m_document(document)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(40, 40);
    connect(&m_document.cloud(), &wordcloud::TprWordCloud::Changed, this,
            qOverload<>(&QWidget::update));
}

void CloudCanvas::fitCloud()
{
    m_document.fitToClient(size());
    update();
}

void CloudCanvas::paintEvent(QPaintEvent*)
{
    // The cloud paints into a picture of its own size first: no flicker while it is drawn.
    QPainter painter(this);
    if (m_document.cloud().ClientSize() != size()) {
        m_document.fitToClient(size());
    }
    painter.drawImage(0, 0, m_document.cloud().SaveToBitmap());
}

void CloudCanvas::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    fitCloud();
}

void CloudCanvas::mousePressEvent(QMouseEvent* event)
{
    m_document.cloud().ClickWord(event->position().toPoint(), event->button(), event->modifiers());
    QWidget::mousePressEvent(event);
}

void CloudCanvas::contextMenuEvent(QContextMenuEvent* event)
{
    emit contextMenuAt(event->globalPos());
}

} // namespace kestrum::wordcloud_page
