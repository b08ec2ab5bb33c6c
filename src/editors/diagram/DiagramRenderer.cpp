#include "DiagramRenderer.h"

#include "editors/diagram/DiagramDocument.h"

#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>
#include <QPolygonF>

#include <algorithm>
#include <cmath>

namespace kestrum::diagram {

namespace {

constexpr double kRoundRectRadius = 8;
constexpr double kLoopSize = 14;
// Below these sizes in pixels a block is filled plainly and drawn as a box, and a link has no
// arrow head.
constexpr double kSmallestGradient = 12;
constexpr double kSmallestOutline = 4;
constexpr double kSmallestArrow = 3;
// The largest picture the exports make, in pixels per side.
constexpr int kMaxPictureSide = 16000;

QColor colourOf(common::TColor colour, const QColor& fallback)
{
    const QColor c = common::toQColor(colour);
    return c.isValid() ? c : fallback;
}

double scaleOf(const QPainter& painter)
{
    const QTransform& t = painter.worldTransform();
    return std::hypot(t.m11(), t.m12());
}

Qt::PenStyle qtPenStyle(quint8 style)
{
    switch (style) {
    case PenStyle::Dash:
        return Qt::DashLine;
    case PenStyle::Dot:
        return Qt::DotLine;
    case PenStyle::DashDot:
        return Qt::DashDotLine;
    case PenStyle::DashDotDot:
        return Qt::DashDotDotLine;
    default:
        return Qt::SolidLine;
    }
}

// How far along the ray from the centre the block's outline lies, for a direction (dx, dy)
// given in half-sizes of the block.
double edgeFactor(quint8 shape, double dx, double dy, double hw, double hh)
{
    if (hw <= 0 || hh <= 0 || (dx == 0 && dy == 0)) {
        return 0;
    }
    const double x = std::abs(dx) / hw;
    const double y = std::abs(dy) / hh;
    switch (shape) {
    case BlockShape::Ellipse:
        return 1 / std::sqrt(x * x + y * y);
    case BlockShape::Diamond:
        return 1 / (x + y);
    default:
        return 1 / std::max(x, y);
    }
}

QPointF edgePoint(const DiagramBlock& block, const QPointF& towards)
{
    const QRectF r = DiagramRenderer::blockRect(block);
    const QPointF c = r.center();
    const QPointF d = towards - c;
    const double t = edgeFactor(block.shape, d.x(), d.y(), r.width() / 2, r.height() / 2);
    return t >= 1 ? towards : c + d * t;
}

void paintCellText(QPainter& painter, const DiagramTextCell& cell, const QRectF& rect, int flags)
{
    if (!cell.visible || cell.text.isEmpty()) {
        return;
    }
    painter.setFont(DiagramRenderer::toQFont(cell.font));
    painter.setPen(colourOf(cell.font.colour, Qt::black));
    painter.drawText(rect, flags, cell.text);
}

} // namespace

QFont DiagramRenderer::toQFont(const DiagramFont& font)
{
    // Most texts of a diagram share one font: the last one made is kept.
    thread_local DiagramFont lastKey;
    thread_local QFont lastFont;
    thread_local bool haveLast = false;
    if (haveLast && font.name == lastKey.name && font.size == lastKey.size &&
        font.style == lastKey.style) {
        return lastFont;
    }
    QFont f(font.name);
    // Points at 96 pixels per inch; drawing units are pixels at 100 %.
    f.setPixelSize(std::max(1, int(std::lround(font.size * 96.0 / 72.0))));
    f.setBold(font.style & FontStyle::Bold);
    f.setItalic(font.style & FontStyle::Italic);
    f.setUnderline(font.style & FontStyle::Underline);
    f.setStrikeOut(font.style & FontStyle::StrikeOut);
    lastKey = font;
    lastFont = f;
    haveLast = true;
    return f;
}

bool DiagramRenderer::readableAt(const DiagramFont& font, double scale)
{
    constexpr double kSmallestPixels = 4;
    return font.size * 96.0 / 72.0 * scale >= kSmallestPixels;
}

QRectF DiagramRenderer::blockRect(const DiagramBlock& block)
{
    return QRectF(block.left, block.top, block.width, block.height);
}

QPainterPath DiagramRenderer::blockOutline(const DiagramBlock& block)
{
    const QRectF r = blockRect(block);
    QPainterPath path;
    switch (block.shape) {
    case BlockShape::Ellipse:
        path.addEllipse(r);
        break;
    case BlockShape::RoundRect:
        path.addRoundedRect(r, kRoundRectRadius, kRoundRectRadius);
        break;
    case BlockShape::Diamond:
        path.addPolygon(QPolygonF{{r.center().x(), r.top()},
                                  {r.right(), r.center().y()},
                                  {r.center().x(), r.bottom()},
                                  {r.left(), r.center().y()},
                                  {r.center().x(), r.top()}});
        break;
    case BlockShape::RoundSquare: {
        const double radius = std::min(r.width(), r.height()) / 4;
        path.addRoundedRect(r, radius, radius);
        break;
    }
    default: // rectangle, and the bounds that hit-testing uses for a block without a shape
        path.addRect(r);
        break;
    }
    return path;
}

QLineF DiagramRenderer::linkLine(const DiagramBlock& source, const DiagramBlock& target)
{
    const QPointF from = blockRect(source).center();
    const QPointF to = blockRect(target).center();
    return QLineF(edgePoint(source, to), edgePoint(target, from));
}

QPainterPath DiagramRenderer::linkLoop(const DiagramBlock& block)
{
    const QRectF r = blockRect(block);
    QPainterPath path;
    path.addEllipse(
        QRectF(r.right() - kLoopSize / 2, r.top() - kLoopSize / 2, kLoopSize, kLoopSize));
    return path;
}

void DiagramRenderer::paintBlock(QPainter& painter, const DiagramBlock& block, bool showSelection,
                                 bool withText)
{
    const QRectF r = blockRect(block);
    if (block.shape != BlockShape::None) {
        const double pixels = std::min(r.width(), r.height()) * scaleOf(painter);
        if (pixels >= kSmallestGradient) {
            QLinearGradient gradient(r.topLeft(), r.bottomLeft());
            gradient.setColorAt(0, colourOf(block.gradientStart, Qt::white));
            gradient.setColorAt(1, colourOf(block.colour, Qt::lightGray));
            painter.setBrush(gradient);
        } else {
            // A few pixels show the block's colour, not its gradient.
            painter.setBrush(colourOf(block.colour, Qt::lightGray));
        }
        painter.setPen(QPen(Qt::black, 0));
        if (pixels < kSmallestOutline && block.shape != BlockShape::Ellipse) {
            painter.drawRect(r);
        } else {
            painter.drawPath(blockOutline(block));
        }
    }
    const DiagramTextCell* cell = DiagramDocument::firstCell(block.cells);
    if (cell && withText) {
        // The text may reach past a small block: it is centred on it.
        const QRectF area = r.adjusted(-r.width(), 0, r.width(), 0);
        paintCellText(painter, *cell, area, Qt::AlignCenter | Qt::TextWordWrap);
    }
    if (showSelection && block.selected) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(QColor(0, 120, 215), 0, Qt::DashLine));
        painter.drawRect(r.adjusted(-2, -2, 2, 2));
    }
}

void DiagramRenderer::paintLink(QPainter& painter, const DiagramDocument& diagram,
                                const DiagramLink& link, bool showSelection, bool withText)
{
    const auto& blocks = diagram.blocks();
    if (link.source < 0 || link.target < 0 || link.source >= int(blocks.size()) ||
        link.target >= int(blocks.size())) {
        return;
    }
    const DiagramBlock& source = blocks[std::size_t(link.source)];
    const DiagramBlock& target = blocks[std::size_t(link.target)];
    QColor colour = colourOf(link.colour, Qt::gray);
    if (showSelection && link.selected) {
        colour = QColor(0, 120, 215);
    }
    QPen pen(colour, std::max(0, link.penWidth), qtPenStyle(link.style), Qt::FlatCap);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    QPointF textAt;
    if (link.source == link.target) {
        const QPainterPath loop = linkLoop(source);
        painter.drawPath(loop);
        textAt = loop.boundingRect().topRight();
    } else {
        const QLineF line = linkLine(source, target);
        painter.drawLine(line);
        // An arrow head at the target, where it is big enough to see.
        if (line.length() > 0 && (5 + link.penWidth) * scaleOf(painter) >= kSmallestArrow) {
            const double size = 5 + link.penWidth;
            const QLineF back = QLineF(line.p2(), line.p1());
            QLineF a = back;
            a.setLength(size);
            a.setAngle(back.angle() + 25);
            QLineF b = back;
            b.setLength(size);
            b.setAngle(back.angle() - 25);
            painter.setBrush(colour);
            painter.setPen(QPen(colour, 0));
            painter.drawPolygon(QPolygonF{line.p2(), a.p2(), b.p2()});
        }
        textAt = line.center();
    }
    const DiagramTextCell* cell = DiagramDocument::firstCell(link.cells);
    if (cell && withText) {
        paintCellText(painter, *cell, QRectF(textAt - QPointF(100, 50), QSizeF(200, 100)),
                      Qt::AlignCenter);
    }
}

void DiagramRenderer::paintItems(QPainter& painter, const DiagramDocument& diagram,
                                 bool showSelection)
{
    for (const DiagramLink& link : diagram.links()) {
        paintLink(painter, diagram, link, showSelection);
    }
    for (const DiagramBlock& block : diagram.blocks()) {
        paintBlock(painter, block, showSelection);
    }
}

QRectF DiagramRenderer::sceneBounds(const DiagramDocument& diagram)
{
    QRectF bounds = diagram.blockBounds();
    if (bounds.isNull()) {
        return {};
    }
    // Room for texts wider than their blocks and for loops.
    for (const DiagramBlock& b : diagram.blocks()) {
        const DiagramTextCell* cell = DiagramDocument::firstCell(b.cells);
        if (cell && cell->visible && !cell->text.isEmpty()) {
            const QFontMetricsF metrics(toQFont(cell->font));
            const double w = std::min(metrics.horizontalAdvance(cell->text), b.width * 3);
            const QPointF c = blockRect(b).center();
            bounds = bounds.united(
                QRectF(c.x() - w / 2, c.y() - metrics.height() / 2, w, metrics.height()));
        }
    }
    return bounds.adjusted(-kLoopSize, -kLoopSize, kLoopSize, kLoopSize);
}

QSize DiagramRenderer::pictureSize(const DiagramDocument& diagram)
{
    const QRectF bounds = sceneBounds(diagram);
    const double scale = std::max(diagram.zoom(), 1) / 100.0;
    const auto side = [](double v) {
        return int(std::clamp(std::ceil(v + 2 * kMargin), 2 * kMargin, double(kMaxPictureSide)));
    };
    return QSize(side(bounds.width() * scale), side(bounds.height() * scale));
}

void DiagramRenderer::paintPicture(QPainter& painter, const DiagramDocument& diagram)
{
    const QRectF bounds = sceneBounds(diagram);
    const QSize size = pictureSize(diagram);
    double scale = std::max(diagram.zoom(), 1) / 100.0;
    // A picture at the size limit shows the whole diagram smaller.
    if (!bounds.isEmpty()) {
        scale = std::min({scale, (size.width() - 2 * kMargin) / bounds.width(),
                          (size.height() - 2 * kMargin) / bounds.height()});
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.translate(kMargin, kMargin);
    painter.scale(scale, scale);
    painter.translate(-bounds.topLeft());
    paintItems(painter, diagram, false);
    painter.restore();
}

QImage DiagramRenderer::toImage(const DiagramDocument& diagram)
{
    QImage image(pictureSize(diagram), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    paintPicture(painter, diagram);
    painter.end();
    return image;
}

} // namespace kestrum::diagram
