#include "WPRuler.h"

#include "common/Colour.h"
#include "editors/text/widgets/WPView.h"

#include <QAbstractTextDocumentLayout>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <QTextList>

#include <algorithm>

namespace kestrum::text {

namespace {

constexpr qreal kPixelsPerCm = 96.0 / 2.54;
constexpr qreal kGrab = 5;

bool imperial()
{
    return QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
}

// Frame edges and the current paragraph's indents, in document coordinates.
struct Geometry
{
    qreal frameLeft = 0;
    qreal frameRight = 0;
    qreal listIndent = 0;
    qreal left = 0;
    qreal first = 0;
    qreal right = 0;
};

Geometry paragraphGeometry(const WPView* view)
{
    Geometry g;
    const QTextDocument* doc = view->document();
    const QTextBlock block = view->textCursor().block();
    const QTextBlockFormat format = block.blockFormat();
    const QTextLayout* layout = block.layout();
    if (layout && layout->lineCount() > 0) {
        const QTextLine line = layout->lineAt(0);
        g.frameLeft = layout->position().x();
        g.frameRight = layout->position().x() + line.x() + line.width() + format.rightMargin();
    } else {
        g.frameLeft = doc->documentMargin();
        g.frameRight =
            std::max(g.frameLeft + 10, view->viewport()->width() - doc->documentMargin());
    }
    if (const QTextList* list = block.textList()) {
        g.listIndent = list->format().indent() * doc->indentWidth();
    } else {
        g.listIndent = format.indent() * doc->indentWidth();
    }
    g.left = g.frameLeft + format.leftMargin() + g.listIndent;
    g.first = g.left + (block.textList() ? 0 : format.textIndent());
    g.right = g.frameRight - format.rightMargin();
    return g;
}

} // namespace

WPRuler::WPRuler(WPView* view, QWidget* parent) : QWidget(parent), m_view(view)
{
    setObjectName(QStringLiteral("WPRuler1"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    auto refresh = [this] { update(); };
    connect(view, &QTextEdit::cursorPositionChanged, this, refresh);
    connect(view->horizontalScrollBar(), &QScrollBar::valueChanged, this, refresh);
    connect(view, &QTextEdit::textChanged, this, refresh);
}

QSize WPRuler::sizeHint() const
{
    return {200, fontMetrics().height() + 12};
}

qreal WPRuler::viewportOffset() const
{
    return m_view->viewport()->mapToGlobal(QPoint(0, 0)).x() - mapToGlobal(QPoint(0, 0)).x() -
           m_view->horizontalScrollBar()->value();
}

qreal WPRuler::toRuler(qreal documentX) const
{
    return documentX + viewportOffset();
}

qreal WPRuler::toDocument(qreal rulerX) const
{
    return rulerX - viewportOffset();
}

WPRuler::Markers WPRuler::markers() const
{
    const Geometry g = paragraphGeometry(m_view);
    Markers m;
    m.textLeft = toRuler(g.frameLeft);
    m.textRight = toRuler(g.frameRight);
    m.left = toRuler(g.left);
    m.firstLine = toRuler(g.first);
    m.right = toRuler(g.right);
    for (const QTextOption::Tab& tab : m_view->textCursor().blockFormat().tabPositions()) {
        m.tabs << toRuler(g.frameLeft + tab.position);
    }
    return m;
}

qreal WPRuler::snap(qreal rulerX) const
{
    const Markers m = markers();
    const qreal step = imperial() ? 96.0 / 16 : kPixelsPerCm / 4;
    return m.textLeft + std::round((rulerX - m.textLeft) / step) * step;
}

void WPRuler::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QPalette& pal = palette();
    painter.fillRect(rect(), common::toQColor(common::clBtnFace, &pal));
    const Markers m = markers();
    const int bandTop = 3;
    const int bandBottom = height() - 3;
    const QColor workspace = common::toQColor(common::clAppWorkSpace, &pal);
    painter.fillRect(QRectF(0, bandTop, std::max(0.0, m.textLeft), bandBottom - bandTop),
                     workspace);
    painter.fillRect(
        QRectF(m.textRight, bandTop, std::max(0.0, width() - m.textRight), bandBottom - bandTop),
        workspace);
    painter.fillRect(
        QRectF(m.textLeft, bandTop, std::max(0.0, m.textRight - m.textLeft), bandBottom - bandTop),
        pal.color(QPalette::Base));

    // Scale: centimetres (quarter ticks) or inches (eighth ticks) from the text's left edge.
    painter.setPen(pal.color(QPalette::Text));
    QFont small = font();
    small.setPointSizeF(std::max(6.0, small.pointSizeF() * 0.75));
    painter.setFont(small);
    const qreal unit = imperial() ? 96.0 : kPixelsPerCm;
    const int parts = imperial() ? 8 : 4;
    const qreal step = unit / parts;
    const int mid = (bandTop + bandBottom) / 2;
    for (int i = 0;; ++i) {
        const qreal x = m.textLeft + i * step;
        if (x > width()) {
            break;
        }
        if (i % parts == 0) {
            if (i > 0) {
                painter.drawText(QRectF(x - 12, bandTop, 24, bandBottom - bandTop), Qt::AlignCenter,
                                 QString::number(i / parts));
            }
        } else {
            const int h = (i % (parts / 2) == 0) ? 4 : 2;
            painter.drawLine(QPointF(x, mid - h / 2.0), QPointF(x, mid + h / 2.0));
        }
    }

    // Indents: first line (down triangle at the top), left and right (up triangles below).
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pal.color(QPalette::Dark));
    painter.setBrush(pal.color(QPalette::Button).lighter(110));
    auto triangle = [&](qreal x, bool top) {
        QPainterPath path;
        if (top) {
            path.moveTo(x - 4, 0);
            path.lineTo(x + 4, 0);
            path.lineTo(x, 6);
        } else {
            path.moveTo(x - 4, height() - 1);
            path.lineTo(x + 4, height() - 1);
            path.lineTo(x, height() - 7);
        }
        path.closeSubpath();
        painter.drawPath(path);
    };
    triangle(m.firstLine, true);
    triangle(m.left, false);
    triangle(m.right, false);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(pal.color(QPalette::Text), 2));
    for (qreal x : m.tabs) {
        painter.drawLine(QPointF(x, bandBottom - 7), QPointF(x, bandBottom - 1));
        painter.drawLine(QPointF(x, bandBottom - 1), QPointF(x + 5, bandBottom - 1));
    }
    if (m_drag != Drag::None) {
        painter.setPen(QPen(pal.color(QPalette::Highlight), 1, Qt::DotLine));
        painter.drawLine(QPointF(m_dragX, 0), QPointF(m_dragX, height()));
    }
}

void WPRuler::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const qreal x = event->position().x();
    const bool upper = event->position().y() < height() / 2.0;
    const Markers m = markers();
    m_drag = Drag::None;
    m_tabIndex = -1;
    if (upper && std::abs(x - m.firstLine) <= kGrab) {
        m_drag = Drag::FirstLine;
    } else if (!upper && std::abs(x - m.left) <= kGrab) {
        m_drag = Drag::Left;
    } else if (!upper && std::abs(x - m.right) <= kGrab) {
        m_drag = Drag::Right;
    } else {
        for (int i = 0; i < m.tabs.size(); ++i) {
            if (std::abs(x - m.tabs[i]) <= kGrab) {
                m_drag = Drag::Tab;
                m_tabIndex = i;
                break;
            }
        }
    }
    if (m_drag == Drag::None && x > m.textLeft && x < m.textRight) {
        // A new left tab stop where the ruler was clicked.
        const Geometry g = paragraphGeometry(m_view);
        QList<QTextOption::Tab> tabs = m_view->textCursor().blockFormat().tabPositions();
        tabs << QTextOption::Tab(toDocument(snap(x)) - g.frameLeft, QTextOption::LeftTab);
        std::sort(tabs.begin(), tabs.end(),
                  [](const auto& a, const auto& b) { return a.position < b.position; });
        QTextBlockFormat change;
        change.setTabPositions(tabs);
        m_view->textCursor().mergeBlockFormat(change);
        emit indentsChanged();
        update();
        return;
    }
    m_dragX = x;
    update();
}

void WPRuler::mouseMoveEvent(QMouseEvent* event)
{
    if (m_drag == Drag::None) {
        const Markers m = markers();
        const qreal x = event->position().x();
        bool over = std::abs(x - m.firstLine) <= kGrab || std::abs(x - m.left) <= kGrab ||
                    std::abs(x - m.right) <= kGrab;
        for (qreal t : m.tabs) {
            over = over || std::abs(x - t) <= kGrab;
        }
        setCursor(over ? Qt::SizeHorCursor : Qt::ArrowCursor);
        return;
    }
    m_dragX = snap(event->position().x());
    update();
}

void WPRuler::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_drag == Drag::None) {
        return;
    }
    applyDrag(snap(event->position().x()), true, event->position().y());
    m_drag = Drag::None;
    update();
}

void WPRuler::applyDrag(qreal rulerX, bool, qreal y)
{
    const Geometry g = paragraphGeometry(m_view);
    const qreal x = toDocument(rulerX);
    const QTextBlockFormat current = m_view->textCursor().blockFormat();
    QTextBlockFormat change;
    switch (m_drag) {
    case Drag::FirstLine:
        change.setTextIndent(x - g.left);
        break;
    case Drag::Left: {
        const qreal left = std::clamp(x, g.frameLeft + g.listIndent, g.right - 8);
        change.setLeftMargin(left - g.frameLeft - g.listIndent);
        change.setTextIndent(g.first - left); // the first line stays where it was
        break;
    }
    case Drag::Right:
        change.setRightMargin(std::max(0.0, g.frameRight - std::max(x, g.left + 8)));
        break;
    case Drag::Tab: {
        QList<QTextOption::Tab> tabs = current.tabPositions();
        if (m_tabIndex < 0 || m_tabIndex >= tabs.size()) {
            return;
        }
        if (y < -8 || y > height() + 8) {
            tabs.removeAt(m_tabIndex); // dragged off the ruler
        } else {
            tabs[m_tabIndex].position = std::max(0.0, x - g.frameLeft);
            std::sort(tabs.begin(), tabs.end(),
                      [](const auto& a, const auto& b) { return a.position < b.position; });
        }
        change.setTabPositions(tabs);
        break;
    }
    case Drag::None:
        return;
    }
    m_view->textCursor().mergeBlockFormat(change);
    emit indentsChanged();
}

} // namespace kestrum::text
