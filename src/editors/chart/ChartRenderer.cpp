#include "ChartRenderer.h"

#include "editors/chart/AxisScale.h"
#include "editors/chart/ChartProjection.h"
#include "editors/chart/FittedCurve.h"
#include "editors/chart/SeriesPainter.h"

#include <QPainter>

#include <cmath>
#include <numbers>

namespace kestrum::chart {

namespace {

constexpr double kMargin = 8;

struct LegendEntry
{
    QString text;
    QColor colour;
};

QColor resolve(common::TColor colour, const RenderOptions& options, QColor fallback)
{
    const QColor c = common::toQColor(colour, options.palette);
    return c.isValid() ? c : fallback;
}

bool byIndex(const Chart& chart)
{
    return !chart.series.empty() && !chart.firstIs(SeriesKind::Point) &&
           !chart.firstIs(SeriesKind::Point3D);
}

std::vector<LegendEntry> legendEntries(const Chart& chart, const RenderOptions& options)
{
    std::vector<LegendEntry> out;
    if (chart.series.empty()) {
        return out;
    }
    const ChartSeries& first = chart.series.front();
    if (first.kind == SeriesKind::Pie || (chart.seriesCount() == 1 && first.colourEachPoint)) {
        for (int p = 0; p < int(first.points.size()) && p < 200; ++p) {
            const ChartPoint& pt = first.points[std::size_t(p)];
            out.push_back({pt.label.isEmpty() ? SeriesPainter::formatValue(pt.y) : pt.label,
                           resolve(chart.pointColour(0, p), options, Qt::gray)});
        }
        return out;
    }
    for (int s = 0; s < chart.seriesCount() && s < 200; ++s) {
        const ChartSeries& ser = chart.series[std::size_t(s)];
        out.push_back({ser.title.isEmpty() ? QStringLiteral("Series %1").arg(s + 1) : ser.title,
                       resolve(chart.seriesColour(s), options, Qt::gray)});
    }
    return out;
}

// The label of a tick: the first series' point label on category axes, else the number.
QString tickLabel(const Chart& chart, double value, double step, bool categories)
{
    if (categories) {
        const double index = std::round(value);
        if (std::abs(value - index) > 1e-9 || index < 0) {
            return {};
        }
        for (const ChartSeries& s : chart.series) {
            if (index < double(s.points.size())) {
                const QString& label = s.points[std::size_t(index)].label;
                return label.isEmpty() ? SeriesPainter::formatValue(index) : label;
            }
        }
        return {};
    }
    // As many decimals as the step has (2.5 has one, 0.25 two).
    int decimals = 0;
    while (step > 0 && decimals < 10) {
        const double scaled = step * std::pow(10.0, decimals);
        if (std::abs(scaled - std::round(scaled)) < 1e-6 * std::max(1.0, scaled)) {
            break;
        }
        ++decimals;
    }
    return SeriesPainter::formatValue(value, decimals);
}

class Layout
{
public:
    Layout(QPainter& painter, const Chart& chart, const RenderOptions& options)
        : p(painter), c(chart), o(options), fm(painter.font())
    {}

    ChartGeometry run(QRectF area);

private:
    void paintTitle(QRectF& area);
    void paintLegend(QRectF& area);
    void reserveDataTable(QRectF& area);
    void paintDataTable(const ChartGeometry& g);
    ChartGeometry paintAxes(QRectF area);
    void paintOriginCross(const ChartGeometry& g);
    void paintFittedCurve(const ChartGeometry& g);

    QPainter& p;
    const Chart& c;
    const RenderOptions& o;
    QFontMetricsF fm;
    QRectF m_table;
    double m_tableNames = 0; // width of the data table's series names
};

void Layout::paintTitle(QRectF& area)
{
    if (c.title.trimmed().isEmpty()) {
        return;
    }
    QFont bold = p.font();
    bold.setBold(true);
    bold.setPixelSize(o.fontPixelSize + 3);
    p.save();
    p.setFont(bold);
    const QFontMetricsF tm(bold);
    const QRectF box(area.left(), area.top(), area.width(), tm.height() + 6);
    p.setPen(Qt::black);
    p.drawText(box, Qt::AlignCenter | Qt::TextSingleLine,
               tm.elidedText(c.title, Qt::ElideRight, area.width()));
    p.restore();
    area.setTop(box.bottom() + 4);
}

void Layout::paintLegend(QRectF& area)
{
    if (!c.legendVisible) {
        return;
    }
    const std::vector<LegendEntry> entries = legendEntries(c, o);
    if (entries.empty()) {
        return;
    }
    double textWidth = 0;
    for (const LegendEntry& e : entries) {
        textWidth = std::max(textWidth, fm.horizontalAdvance(e.text));
    }
    const double line = fm.height() + 2;
    const double width = std::min(textWidth + 30, area.width() * 0.35);
    const int fitting = std::max(1, int((area.height() - 8) / line));
    const int shown = std::min(int(entries.size()), fitting);
    QRectF box(area.right() - width, area.top() + 4, width, shown * line + 8);
    p.setPen(QPen(Qt::black, 0));
    p.setBrush(Qt::white);
    p.drawRect(box);
    for (int i = 0; i < shown; ++i) {
        const double y = box.top() + 4 + i * line;
        p.setBrush(entries[std::size_t(i)].colour);
        p.setPen(QPen(Qt::black, 0));
        p.drawRect(QRectF(box.left() + 6, y + line / 2 - 5, 12, 10));
        p.setPen(Qt::black);
        p.drawText(QRectF(box.left() + 24, y, width - 28, line), Qt::AlignLeft | Qt::AlignVCenter,
                   fm.elidedText(entries[std::size_t(i)].text, Qt::ElideRight, width - 28));
    }
    area.setRight(box.left() - 8);
}

void Layout::reserveDataTable(QRectF& area)
{
    if (!c.dataTableVisible || !byIndex(c) || c.firstIs(SeriesKind::Pie) ||
        AxisScale::horizontal(c)) {
        return;
    }
    const double line = fm.height() + 2;
    const double height = std::min((c.seriesCount() + 1) * line, area.height() / 2);
    m_table = QRectF(area.left(), area.bottom() - height, area.width(), height);
    for (const ChartSeries& s : c.series) {
        m_tableNames = std::max(m_tableNames, fm.horizontalAdvance(s.title) + 8);
    }
    m_tableNames = std::min(m_tableNames, area.width() / 4);
    area.setBottom(m_table.top() - 4);
}

void Layout::paintDataTable(const ChartGeometry& g)
{
    if (m_table.isEmpty()) {
        return;
    }
    const double line = fm.height() + 2;
    p.setPen(QPen(Qt::black, 0));
    p.setBrush(Qt::NoBrush);
    p.drawRect(m_table);
    std::size_t points = 0;
    for (const ChartSeries& s : c.series) {
        points = std::max(points, s.points.size());
    }
    const double slot = points > 0 ? g.plot.width() / double(points) : 0;
    // The header row names the categories.
    if (slot >= fm.averageCharWidth() * 2) {
        for (std::size_t i = 0; i < points; ++i) {
            const double x = g.bottomToX(double(i));
            p.drawText(QRectF(x - slot / 2, m_table.top(), slot, line), Qt::AlignCenter,
                       fm.elidedText(tickLabel(c, double(i), 1, true), Qt::ElideRight, slot - 2));
        }
    }
    for (int s = 0; s < c.seriesCount() && (s + 1) * line < m_table.height(); ++s) {
        const double y = m_table.top() + (s + 1) * line;
        p.drawLine(QPointF(m_table.left(), y), QPointF(m_table.right(), y));
        const ChartSeries& ser = c.series[std::size_t(s)];
        p.drawText(QRectF(m_table.left() + 2, y, g.plot.left() - m_table.left() - 4, line),
                   Qt::AlignLeft | Qt::AlignVCenter,
                   fm.elidedText(ser.title, Qt::ElideRight, g.plot.left() - m_table.left() - 4));
        if (slot < fm.averageCharWidth() * 2) {
            continue;
        }
        for (std::size_t i = 0; i < ser.points.size(); ++i) {
            const double x = g.bottomToX(double(i));
            p.drawText(
                QRectF(x - slot / 2, y, slot, line), Qt::AlignCenter,
                fm.elidedText(SeriesPainter::formatValue(ser.points[i].y), Qt::ElideRight, slot));
        }
    }
}

ChartGeometry Layout::paintAxes(QRectF area)
{
    ChartGeometry g;
    g.hasAxes = true;
    const bool horizontal = AxisScale::horizontal(c);
    g.left = AxisScale::leftRange(c);
    g.bottom = AxisScale::bottomRange(c);
    if (o.zoomWindow) {
        const QRectF w = o.zoomWindow->normalized();
        if (w.width() > 0 && w.height() > 0) {
            g.bottom = {w.left(), w.right(), AxisScale::niceStep(w.width(), 6)};
            g.left = {w.top(), w.bottom(), AxisScale::niceStep(w.height(), 6)};
        }
    }
    g.leftInverted = c.leftAxis.inverted;
    g.bottomInverted = c.bottomAxis.inverted;
    g.leftEnd = std::clamp(c.leftAxis.endPosition, 1, 100) / 100.0;
    g.bottomEnd = std::clamp(c.bottomAxis.endPosition, 1, 100) / 100.0;
    const bool leftCategories = horizontal && byIndex(c);
    const bool bottomCategories = !horizontal && byIndex(c);

    // Room for the labels and titles.
    const std::vector<double> leftTicks = AxisScale::ticks(g.left);
    const std::vector<double> bottomTicks = AxisScale::ticks(g.bottom);
    double leftWidth = 0;
    for (double v : leftTicks) {
        leftWidth = std::max(
            leftWidth, fm.horizontalAdvance(tickLabel(c, v, g.left.increment, leftCategories)));
    }
    leftWidth = std::min(leftWidth, area.width() / 3);
    double bottomLabel = 0;
    for (double v : bottomTicks) {
        bottomLabel =
            std::max(bottomLabel,
                     fm.horizontalAdvance(tickLabel(c, v, g.bottom.increment, bottomCategories)));
    }
    const double angle = c.bottomAxis.labelAngle * std::numbers::pi / 180;
    const double bottomHeight =
        std::min(std::abs(bottomLabel * std::sin(angle)) + std::abs(fm.height() * std::cos(angle)),
                 area.height() / 3);
    QRectF plot = area;
    plot.setLeft(area.left() + leftWidth + 8 + (c.leftAxis.title.isEmpty() ? 0 : fm.height() + 4));
    plot.setLeft(std::max(plot.left(), area.left() + m_tableNames));
    plot.setBottom(area.bottom() - bottomHeight - 6 -
                   (c.bottomAxis.title.isEmpty() ? 0 : fm.height() + 4));
    plot.setTop(plot.top() + fm.height() / 2);
    plot.setRight(plot.right() - bottomLabel / 2);
    if (c.view3D.enabled) {
        const double d = std::min(plot.width(), plot.height()) * c.view3D.depthPercent / 100.0;
        double turn = std::fmod(c.view3D.rotation - 345.0 + 540.0, 360.0) - 180.0;
        const double theta = std::clamp(45.0 + turn, 10.0, 80.0) * std::numbers::pi / 180;
        g.depth = QPointF(d * std::cos(theta), -d * std::sin(theta));
        plot.setRight(plot.right() - g.depth.x());
        plot.setTop(plot.top() - g.depth.y());
    }
    if (plot.width() < 4 || plot.height() < 4) {
        plot = QRectF(area.center(), QSizeF(4, 4));
    }
    g.plot = plot;

    // Walls and background.
    p.setPen(QPen(QColor(Qt::gray), 0));
    if (!g.depth.isNull()) {
        const QRectF back = plot.translated(g.depth);
        p.setBrush(c.walls.visible ? QColor(236, 236, 236) : QColor(Qt::white));
        p.drawRect(back);
        p.setBrush(c.walls.visible ? QColor(224, 224, 224) : QColor(Qt::white));
        p.drawPolygon(
            QPolygonF{plot.topLeft(), back.topLeft(), back.bottomLeft(), plot.bottomLeft()});
        p.drawPolygon(QPolygonF{plot.bottomLeft(), back.bottomLeft(), back.bottomRight(),
                                plot.bottomRight()});
    } else {
        p.setBrush(Qt::white);
        p.drawRect(plot);
    }

    // Grids, on the back wall in 3D.
    p.setPen(QPen(QColor(200, 200, 200), 0, Qt::DotLine));
    if (c.leftAxis.gridVisible) {
        for (double v : leftTicks) {
            const double y = g.leftToY(v);
            p.drawLine(QPointF(plot.left(), y) + g.depth, QPointF(plot.right(), y) + g.depth);
        }
    }
    if (c.bottomAxis.gridVisible) {
        for (double v : bottomTicks) {
            const double x = g.bottomToX(v);
            p.drawLine(QPointF(x, plot.top()) + g.depth, QPointF(x, plot.bottom()) + g.depth);
        }
    }

    // Axis lines, ticks, labels and titles.
    p.setPen(QPen(Qt::black, 0));
    if (c.leftAxis.visible) {
        p.drawLine(plot.bottomLeft(), plot.topLeft());
        const double minGap = fm.height();
        double lastY = 1e300;
        for (double v : leftTicks) {
            const double y = g.leftToY(v);
            if (std::abs(lastY - y) < minGap) {
                continue;
            }
            lastY = y;
            p.drawLine(QPointF(plot.left() - 4, y), QPointF(plot.left(), y));
            p.drawText(
                QRectF(plot.left() - 6 - leftWidth, y - fm.height() / 2, leftWidth, fm.height()),
                Qt::AlignRight | Qt::AlignVCenter,
                fm.elidedText(tickLabel(c, v, g.left.increment, leftCategories), Qt::ElideRight,
                              leftWidth));
        }
        if (!c.leftAxis.title.isEmpty()) {
            p.save();
            p.translate(area.left() + fm.height() / 2, plot.center().y());
            p.rotate(-90);
            p.drawText(QRectF(-plot.height() / 2, -fm.height() / 2, plot.height(), fm.height()),
                       Qt::AlignCenter, c.leftAxis.title);
            p.restore();
        }
    }
    if (c.bottomAxis.visible) {
        p.drawLine(plot.bottomLeft(), plot.bottomRight());
        // Category labels share the width of their slot; numbers keep apart by their width.
        const double slot = bottomCategories && g.bottom.maximum > g.bottom.minimum
                                ? plot.width() / (g.bottom.maximum - g.bottom.minimum)
                                : 0;
        const bool elide = slot > 0 && c.bottomAxis.labelAngle == 0 && bottomLabel + 6 > slot;
        const double minGap = elide                          ? fm.averageCharWidth() * 3
                              : c.bottomAxis.labelAngle == 0 ? bottomLabel + 6
                                                             : fm.height();
        double lastX = -1e300;
        for (double v : bottomTicks) {
            const double x = g.bottomToX(v);
            if (std::abs(x - lastX) < minGap) {
                continue;
            }
            lastX = x;
            p.drawLine(QPointF(x, plot.bottom()), QPointF(x, plot.bottom() + 4));
            QString text = tickLabel(c, v, g.bottom.increment, bottomCategories);
            if (elide) {
                text = fm.elidedText(text, Qt::ElideRight, slot - 4);
            }
            p.save();
            p.translate(x, plot.bottom() + 6);
            p.rotate(-c.bottomAxis.labelAngle);
            const double w = fm.horizontalAdvance(text);
            if (c.bottomAxis.labelAngle == 0) {
                p.drawText(QRectF(-w / 2 - 1, 0, w + 2, fm.height()), Qt::AlignCenter, text);
            } else {
                p.drawText(QRectF(-w - 2, -fm.height() / 2, w + 2, fm.height()),
                           Qt::AlignRight | Qt::AlignVCenter, text);
            }
            p.restore();
        }
        if (!c.bottomAxis.title.isEmpty()) {
            p.drawText(QRectF(plot.left(), area.bottom() - fm.height(), plot.width(), fm.height()),
                       Qt::AlignCenter, c.bottomAxis.title);
        }
    }
    return g;
}

void Layout::paintOriginCross(const ChartGeometry& g)
{
    if (!ChartRenderer::hasOriginCross(c)) {
        return;
    }
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    p.setClipRect(g.plot);
    p.setPen(QPen(common::toQColor(common::clRed), 0));
    const double x = g.bottomToX(0);
    const double y = g.leftToY(0);
    p.drawLine(QPointF(x, g.plot.top()), QPointF(x, g.plot.bottom()));
    p.drawLine(QPointF(g.plot.left(), y), QPointF(g.plot.right(), y));
    p.restore();
}

void Layout::paintFittedCurve(const ChartGeometry& g)
{
    const std::optional<FittedCurve> curve = FittedCurve::fromChartInfo(o.chartInfo);
    if (!curve) {
        return;
    }
    QPolygonF line;
    for (const QPointF& pt : curve->samples(g.bottom.minimum, g.bottom.maximum)) {
        // Far beyond the plot a curve is only a line off the chart: keep the numbers sane.
        const double y = std::clamp(g.leftToY(pt.y()), g.plot.top() - 1e5, g.plot.bottom() + 1e5);
        line << QPointF(g.bottomToX(pt.x()), y);
    }
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    p.setClipRect(g.plot);
    p.setPen(QPen(common::toQColor(common::clBlue), 1, Qt::SolidLine));
    p.drawPolyline(line);
    p.restore();
}

ChartGeometry Layout::run(QRectF area)
{
    paintTitle(area);
    paintLegend(area);
    reserveDataTable(area);
    if (c.firstIs(SeriesKind::Pie)) {
        SeriesPainter(p, c, ChartGeometry{}, o.palette).paintPie(area);
        ChartGeometry g;
        g.plot = area;
        return g;
    }
    if (c.firstIs(SeriesKind::Point3D)) {
        ChartProjection::paint(p, c, area, o.zoom3D, o.palette);
        ChartGeometry g;
        g.plot = area;
        return g;
    }
    ChartGeometry g = paintAxes(area);
    paintOriginCross(g);
    p.save();
    p.setClipRect(g.plot.adjusted(0, g.depth.y() - 1, g.depth.x() + 1, 1));
    SeriesPainter(p, c, g, o.palette).paintSeries();
    p.restore();
    paintFittedCurve(g);
    paintDataTable(g);
    return g;
}

} // namespace

bool ChartRenderer::hasOriginCross(const Chart& chart)
{
    return chart.seriesCount() == 2 && chart.series[0].kind == SeriesKind::Point &&
           chart.series[1].kind == SeriesKind::Point && chart.series[0].active &&
           chart.series[1].active;
}

ChartGeometry ChartRenderer::paint(QPainter& painter, const QRectF& bounds, const Chart& chart,
                                   const RenderOptions& options)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setRenderHint(QPainter::TextAntialiasing, true);
    painter.fillRect(bounds, resolve(chart.panelColour, options, Qt::white));
    QFont font = painter.font();
    font.setFamily(QStringLiteral("Arial"));
    font.setPixelSize(std::max(4, options.fontPixelSize));
    painter.setFont(font);
    painter.setClipRect(bounds, Qt::IntersectClip);
    const QRectF area = bounds.adjusted(kMargin, kMargin, -kMargin, -kMargin);
    ChartGeometry g;
    if (area.width() > 8 && area.height() > 8) {
        g = Layout(painter, chart, options).run(area);
    }
    painter.restore();
    return g;
}

QImage ChartRenderer::image(const Chart& chart, QSize size, const RenderOptions& options)
{
    QImage image(size.expandedTo(QSize(1, 1)), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    paint(painter, QRectF(QPointF(0, 0), QSizeF(image.size())), chart, options);
    painter.end();
    return image.convertToFormat(QImage::Format_RGB888);
}

} // namespace kestrum::chart
