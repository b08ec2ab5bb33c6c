#include "SeriesPainter.h"

#include <QLocale>
#include <QPainter>
#include <QPainterPath>
#include <QRegularExpression>

#include <cmath>
#include <numbers>

namespace kestrum::chart {

namespace {

constexpr double kBarFill = 0.7; // share of a category slot the bars of one category take

bool isBar(SeriesKind k)
{
    return k == SeriesKind::Bar || k == SeriesKind::HorizBar;
}

// A flat face and its two depth faces, for bars in 3D.
void paintBox(QPainter& p, const QRectF& front, QPointF depth, const QColor& colour)
{
    if (!depth.isNull()) {
        const QPolygonF top{front.topLeft(), front.topLeft() + depth, front.topRight() + depth,
                            front.topRight()};
        const QPolygonF side{front.topRight(), front.topRight() + depth,
                             front.bottomRight() + depth, front.bottomRight()};
        p.setBrush(colour.lighter(125));
        p.drawPolygon(top);
        p.setBrush(colour.darker(130));
        p.drawPolygon(side);
    }
    p.setBrush(colour);
    p.drawRect(front);
}

} // namespace

SeriesPainter::SeriesPainter(QPainter& painter, const Chart& chart, const ChartGeometry& geometry,
                             const QPalette* palette)
    : m_painter(painter), m_chart(chart), m_geometry(geometry), m_palette(palette)
{}

QColor SeriesPainter::colourOf(common::TColor colour) const
{
    QColor c = common::toQColor(colour, m_palette);
    return c.isValid() ? c : QColor(Qt::gray);
}

void SeriesPainter::paintSeries()
{
    int barCount = 0;
    for (const ChartSeries& s : m_chart.series) {
        barCount += s.active && isBar(s.kind) ? 1 : 0;
    }
    int barIndex = 0;
    // Bars first (back to front), lines and points over them.
    for (int s = 0; s < m_chart.seriesCount(); ++s) {
        const ChartSeries& ser = m_chart.series[std::size_t(s)];
        if (ser.active && isBar(ser.kind)) {
            paintBars(s, barIndex++, barCount);
        }
    }
    for (int s = 0; s < m_chart.seriesCount(); ++s) {
        const ChartSeries& ser = m_chart.series[std::size_t(s)];
        if (ser.active && (ser.kind == SeriesKind::Line || ser.kind == SeriesKind::Point)) {
            paintLine(s);
        }
    }
    for (int s = 0; s < m_chart.seriesCount(); ++s) {
        if (m_chart.series[std::size_t(s)].active) {
            paintMarks(s);
        }
    }
}

void SeriesPainter::paintBars(int s, int barIndex, int barCount)
{
    const ChartSeries& ser = m_chart.series[std::size_t(s)];
    const bool horizontal = AxisScale::horizontal(m_chart);
    const double slotWidth = kBarFill / std::max(1, barCount);
    m_painter.setPen(QPen(QColor(Qt::black), 0));
    for (int p = 0; p < int(ser.points.size()); ++p) {
        const double value = ser.points[std::size_t(p)].y;
        const double from = p - kBarFill / 2 + barIndex * slotWidth;
        const double to = from + slotWidth;
        QRectF r;
        if (horizontal) {
            const QPointF a = m_geometry.toDevice(0, from);
            const QPointF b = m_geometry.toDevice(value, to);
            r = QRectF(a, b).normalized();
        } else {
            const QPointF a = m_geometry.toDevice(from, 0);
            const QPointF b = m_geometry.toDevice(to, value);
            r = QRectF(a, b).normalized();
        }
        paintBox(m_painter, r, m_geometry.depth, colourOf(m_chart.pointColour(s, p)));
    }
}

void SeriesPainter::paintLine(int s)
{
    const ChartSeries& ser = m_chart.series[std::size_t(s)];
    const bool byIndex = ser.kind == SeriesKind::Line;
    const QColor colour = colourOf(m_chart.seriesColour(s));
    QPolygonF line;
    line.reserve(qsizetype(ser.points.size()));
    for (int p = 0; p < int(ser.points.size()); ++p) {
        const ChartPoint& pt = ser.points[std::size_t(p)];
        line << m_geometry.toDevice(byIndex ? double(p) : pt.x, pt.y);
    }
    if (byIndex && line.size() > 1) {
        if (!m_geometry.depth.isNull()) {
            // A ribbon: the line and its copy behind it, joined.
            m_painter.setPen(QPen(colour.darker(140), 0));
            m_painter.setBrush(colour.lighter(120));
            for (qsizetype i = 0; i + 1 < line.size(); ++i) {
                const QPolygonF face{line[i], line[i + 1], line[i + 1] + m_geometry.depth,
                                     line[i] + m_geometry.depth};
                m_painter.drawPolygon(face);
            }
        }
        m_painter.setPen(QPen(colour, std::max(1, ser.penWidth)));
        m_painter.setBrush(Qt::NoBrush);
        m_painter.drawPolyline(line);
    }
    if (ser.pointerVisible || !byIndex) {
        const double w = std::max(1, ser.pointerWidth);
        const double h = std::max(1, ser.pointerHeight);
        if (!byIndex && !m_geometry.depth.isNull()) {
            // In 3D each point casts its shadow on the back wall.
            m_painter.setPen(Qt::NoPen);
            m_painter.setBrush(QColor(0, 0, 0, 40));
            for (const QPointF& at : line) {
                paintMarker(m_painter, at + m_geometry.depth, ser.pointerShape, w, h);
            }
        }
        m_painter.setPen(QPen(QColor(Qt::black), 0));
        for (int p = 0; p < int(line.size()); ++p) {
            m_painter.setBrush(colourOf(m_chart.pointColour(s, p)));
            paintMarker(m_painter, line[p], ser.pointerShape, w, h);
        }
    }
}

void SeriesPainter::paintMarker(QPainter& painter, QPointF c, MarkerShape shape, double w, double h)
{
    const QRectF box(c.x() - w, c.y() - h, 2 * w, 2 * h);
    switch (shape) {
    case MarkerShape::Rectangle:
        painter.drawRect(box);
        break;
    case MarkerShape::Circle:
        painter.drawEllipse(box);
        break;
    case MarkerShape::Triangle:
        painter.drawPolygon(QPolygonF{{c.x(), box.top()}, box.bottomRight(), box.bottomLeft()});
        break;
    case MarkerShape::DownTriangle:
        painter.drawPolygon(QPolygonF{box.topLeft(), box.topRight(), {c.x(), box.bottom()}});
        break;
    case MarkerShape::Cross:
        painter.drawLine(QPointF(box.left(), c.y()), QPointF(box.right(), c.y()));
        painter.drawLine(QPointF(c.x(), box.top()), QPointF(c.x(), box.bottom()));
        break;
    case MarkerShape::DiagCross:
        painter.drawLine(box.topLeft(), box.bottomRight());
        painter.drawLine(box.topRight(), box.bottomLeft());
        break;
    case MarkerShape::Star: {
        QPolygonF star;
        for (int i = 0; i < 10; ++i) {
            const double a = -std::numbers::pi / 2 + i * std::numbers::pi / 5;
            const double f = i % 2 == 0 ? 1.0 : 0.45;
            star << QPointF(c.x() + std::cos(a) * w * f, c.y() + std::sin(a) * h * f);
        }
        painter.drawPolygon(star);
        break;
    }
    }
}

QString SeriesPainter::formatValue(double value, int decimals)
{
    if (decimals < 0) {
        return QLocale().toString(value, 'g', 15);
    }
    return QLocale().toString(value, 'f', decimals);
}

QString SeriesPainter::formatPercent(double percent, const QString& format)
{
    const qsizetype first = format.indexOf(QRegularExpression(QStringLiteral("[#0]")));
    if (first < 0) {
        return format + formatValue(percent, 2);
    }
    qsizetype last = first;
    for (qsizetype i = first; i < format.size(); ++i) {
        const QChar ch = format[i];
        if (ch == QLatin1Char('#') || ch == QLatin1Char('0') || ch == QLatin1Char('.')) {
            last = i;
        } else {
            break;
        }
    }
    const QString pattern = format.mid(first, last - first + 1);
    const qsizetype point = pattern.indexOf(QLatin1Char('.'));
    int required = 0;
    int optional = 0;
    if (point >= 0) {
        for (qsizetype i = point + 1; i < pattern.size(); ++i) {
            (pattern[i] == QLatin1Char('0') ? required : optional) += 1;
        }
    }
    QString number = QLocale().toString(percent, 'f', required + optional);
    if (optional > 0) {
        const QChar dot = QLocale().decimalPoint().at(0);
        const qsizetype at = number.indexOf(dot);
        qsizetype keep = number.size();
        while (keep > at + 1 + required && number[keep - 1] == QLatin1Char('0')) {
            --keep;
        }
        if (keep == at + 1) {
            --keep; // no decimals left: no point either
        }
        number.truncate(keep);
    }
    return format.left(first) + number + format.mid(last + 1);
}

QString SeriesPainter::markText(int s, int p, double total) const
{
    const ChartSeries& ser = m_chart.series[std::size_t(s)];
    const ChartPoint& pt = ser.points[std::size_t(p)];
    const QString percent =
        formatPercent(total != 0 ? pt.y / total * 100 : 0, ser.marks.percentFormat);
    switch (ser.marks.style) {
    case MarkStyle::Value:
        return formatValue(pt.y);
    case MarkStyle::Percent:
        return percent;
    case MarkStyle::Label:
        return pt.label.isEmpty() ? formatValue(pt.y) : pt.label;
    case MarkStyle::LabelPercent:
        return pt.label.isEmpty() ? percent : pt.label + percent;
    case MarkStyle::XValue:
        return formatValue(pt.x);
    }
    return {};
}

void SeriesPainter::paintMark(QPointF at, const QString& text, const SeriesMarks& marks,
                              QColor colour)
{
    const QFontMetricsF fm(m_painter.font());
    const QPointF tip = at - QPointF(0, marks.arrowLength);
    if (marks.arrowVisible && marks.arrowLength > 0) {
        m_painter.setPen(QPen(colour.darker(150), 0));
        m_painter.drawLine(at, tip);
    }
    QRectF box(0, 0, fm.horizontalAdvance(text) + 6, fm.height() + 2);
    box.moveCenter(QPointF(tip.x(), tip.y() - box.height() / 2));
    m_painter.setPen(marks.frameVisible && !marks.transparent ? QPen(Qt::black, 0) : Qt::NoPen);
    m_painter.setBrush(marks.transparent ? QBrush(Qt::NoBrush) : QBrush(QColor(255, 255, 225)));
    m_painter.drawRect(box);
    m_painter.setPen(Qt::black);
    m_painter.drawText(box, Qt::AlignCenter, text);
}

void SeriesPainter::paintMarks(int s)
{
    const ChartSeries& ser = m_chart.series[std::size_t(s)];
    if (!ser.marks.visible || ser.kind == SeriesKind::Pie || ser.kind == SeriesKind::Point3D) {
        return;
    }
    m_painter.save();
    if (ser.marks.clipped) {
        m_painter.setClipRect(m_geometry.plot);
    }
    double total = 0;
    for (const ChartPoint& p : ser.points) {
        total += std::abs(p.y);
    }
    const bool horizontal = ser.kind == SeriesKind::HorizBar;
    const int count = int(std::min<std::size_t>(ser.points.size(), 2000));
    for (int p = 0; p < count; ++p) {
        const ChartPoint& pt = ser.points[std::size_t(p)];
        const double at = ser.kind == SeriesKind::Point ? pt.x : double(p);
        const QPointF device =
            horizontal ? m_geometry.toDevice(pt.y, at) : m_geometry.toDevice(at, pt.y);
        paintMark(device, markText(s, p, total), ser.marks, colourOf(m_chart.pointColour(s, p)));
    }
    m_painter.restore();
}

void SeriesPainter::paintPie(const QRectF& area)
{
    if (m_chart.series.empty()) {
        return;
    }
    const ChartSeries& ser = m_chart.series.front();
    double total = 0;
    for (const ChartPoint& p : ser.points) {
        total += std::abs(p.y);
    }
    const QFontMetricsF fm(m_painter.font());
    const double labelRoom = ser.marks.visible ? fm.height() * 2 + ser.marks.arrowLength : 4;
    QRectF pie = area.adjusted(labelRoom * 2, labelRoom, -labelRoom * 2, -labelRoom);
    const bool flat3D = m_chart.view3D.enabled;
    const double thickness = flat3D ? pie.height() * m_chart.view3D.depthPercent / 100.0 : 0;
    if (ser.circled || flat3D) {
        const double d = std::min(pie.width(), pie.height() - thickness);
        pie = QRectF(pie.center().x() - d / 2, pie.center().y() - (d + thickness) / 2, d, d);
    }
    if (flat3D) {
        // Tilted by the elevation: an ellipse with its side below.
        const double tilt =
            0.35 + 0.5 * std::abs(std::cos(m_chart.view3D.elevation * std::numbers::pi / 180));
        pie.setTop(pie.top() + pie.height() * (1 - tilt) / 2);
        pie.setHeight(pie.height() * tilt);
    }
    if (total <= 0 || pie.width() <= 1 || pie.height() <= 1) {
        return;
    }
    const double startAngle = flat3D ? m_chart.view3D.rotation : 0;
    m_painter.setPen(QPen(Qt::black, 0));
    for (int pass = flat3D ? 0 : 1; pass < 2; ++pass) {
        double angle = startAngle;
        for (int p = 0; p < int(ser.points.size()); ++p) {
            const double span = std::abs(ser.points[std::size_t(p)].y) / total * 360;
            const QColor colour = colourOf(m_chart.pointColour(0, p));
            if (pass == 0) {
                // The side: the slice drawn a few times below itself, darker.
                m_painter.setBrush(colour.darker(140));
                for (double dy = thickness; dy > 0; dy -= 1) {
                    m_painter.setPen(Qt::NoPen);
                    m_painter.drawPie(pie.translated(0, dy), int(angle * 16), int(span * 16));
                }
            } else {
                m_painter.setPen(QPen(Qt::black, 0));
                m_painter.setBrush(colour);
                m_painter.drawPie(pie, int(angle * 16), int(std::ceil(span * 16)));
            }
            angle += span;
        }
    }
    if (!ser.marks.visible) {
        return;
    }
    double angle = startAngle;
    for (int p = 0; p < int(ser.points.size()); ++p) {
        const double span = std::abs(ser.points[std::size_t(p)].y) / total * 360;
        const double mid = (angle + span / 2) * std::numbers::pi / 180;
        angle += span;
        const QPointF edge(pie.center().x() + std::cos(mid) * pie.width() / 2,
                           pie.center().y() - std::sin(mid) * pie.height() / 2);
        const QPointF out = edge + QPointF(std::cos(mid), -std::sin(mid)) * ser.marks.arrowLength;
        if (ser.marks.arrowVisible) {
            m_painter.setPen(QPen(Qt::black, 0));
            m_painter.drawLine(edge, out);
        }
        const QString text = markText(0, p, total);
        QRectF box(0, 0, fm.horizontalAdvance(text) + 6, fm.height() + 2);
        box.moveCenter(out +
                       QPointF(std::cos(mid) * box.width() / 2, -std::sin(mid) * box.height() / 2));
        if (!ser.marks.transparent) {
            m_painter.setBrush(QColor(255, 255, 225));
            m_painter.setPen(ser.marks.frameVisible ? QPen(Qt::black, 0) : QPen(Qt::NoPen));
            m_painter.drawRect(box);
        }
        m_painter.setPen(Qt::black);
        m_painter.drawText(box, Qt::AlignCenter, text);
    }
}

} // namespace kestrum::chart
