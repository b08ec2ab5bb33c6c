#include "AxisScale.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kestrum::chart {

double AxisScale::niceStep(double span, int ticks)
{
    if (!(span > 0) || !std::isfinite(span)) {
        return 1;
    }
    const double raw = span / std::max(1, ticks);
    const double power = std::pow(10.0, std::floor(std::log10(raw)));
    for (double f : {1.0, 2.0, 2.5, 5.0, 10.0}) {
        if (raw <= f * power * (1 + 1e-9)) {
            return f * power;
        }
    }
    return 10 * power;
}

AxisRange AxisScale::niceRange(double minimum, double maximum, int ticks)
{
    if (minimum > maximum) {
        std::swap(minimum, maximum);
    }
    if (maximum - minimum < std::abs(maximum) * 1e-12 || maximum == minimum) {
        const double pad = minimum == 0 ? 1 : std::abs(minimum) * 0.1;
        minimum -= pad;
        maximum += pad;
    }
    const double step = niceStep(maximum - minimum, ticks);
    const double low = std::floor(minimum / step + 1e-9) * step;
    const double high = std::ceil(maximum / step - 1e-9) * step;
    return {low, high, step};
}

std::vector<double> AxisScale::ticks(const AxisRange& range)
{
    std::vector<double> out;
    double step = range.increment;
    const double span = range.maximum - range.minimum;
    if (!(span > 0)) {
        out.push_back(range.minimum);
        return out;
    }
    if (!(step > 0) || span / step > 1000) {
        step = niceStep(span, 6);
    }
    const double first = std::ceil(range.minimum / step - 1e-9) * step;
    for (int i = 0; i <= 1000; ++i) {
        const double v = first + i * step;
        if (v > range.maximum + step * 1e-9) {
            break;
        }
        out.push_back(std::abs(v) < step * 1e-9 ? 0.0 : v);
    }
    return out;
}

bool AxisScale::horizontal(const Chart& chart)
{
    return chart.firstIs(SeriesKind::HorizBar);
}

bool AxisScale::isPie(const Chart& chart)
{
    return chart.firstIs(SeriesKind::Pie);
}

namespace {

bool usesX(SeriesKind kind)
{
    return kind == SeriesKind::Point || kind == SeriesKind::Point3D;
}

} // namespace

AxisRange AxisScale::valueRange(const Chart& chart)
{
    double low = std::numeric_limits<double>::max();
    double high = std::numeric_limits<double>::lowest();
    bool bars = false;
    for (const ChartSeries& s : chart.series) {
        if (!s.active) {
            continue;
        }
        bars = bars || s.kind == SeriesKind::Bar || s.kind == SeriesKind::HorizBar;
        for (const ChartPoint& p : s.points) {
            low = std::min(low, p.y);
            high = std::max(high, p.y);
        }
    }
    if (low > high) {
        return {0, 1, 0.2};
    }
    if (bars) {
        low = std::min(low, 0.0);
        high = std::max(high, 0.0);
    }
    return {low, high, 0};
}

AxisRange AxisScale::categoryRange(const Chart& chart)
{
    double low = std::numeric_limits<double>::max();
    double high = std::numeric_limits<double>::lowest();
    for (const ChartSeries& s : chart.series) {
        if (!s.active || s.points.empty()) {
            continue;
        }
        if (usesX(s.kind)) {
            for (const ChartPoint& p : s.points) {
                low = std::min(low, p.x);
                high = std::max(high, p.x);
            }
        } else {
            low = std::min(low, 0.0);
            high = std::max(high, double(s.points.size() - 1));
        }
    }
    if (low > high) {
        return {0, 1, 0.2};
    }
    return {low, high, 0};
}

AxisRange AxisScale::resolve(const ChartAxis& axis, AxisRange data, bool nice)
{
    if (!axis.automatic) {
        AxisRange r{axis.minimum, axis.maximum, axis.increment};
        if (!(r.maximum > r.minimum)) {
            r.maximum = r.minimum + 1;
        }
        if (!(r.increment > 0)) {
            r.increment = niceStep(r.maximum - r.minimum, 6);
        }
        return r;
    }
    if (!nice) {
        if (!(data.maximum > data.minimum)) {
            data.minimum -= 0.5;
            data.maximum += 0.5;
        }
        data.increment = 1;
        return data;
    }
    return niceRange(data.minimum, data.maximum);
}

namespace {

// Categories are counted by index: half a slot of room on each side, ticks on whole numbers.
bool categoriesByIndex(const Chart& chart)
{
    return !chart.series.empty() && !usesX(chart.series.front().kind);
}

AxisRange categoryAxis(const Chart& chart, const ChartAxis& axis)
{
    if (categoriesByIndex(chart)) {
        AxisRange data = AxisScale::categoryRange(chart);
        if (axis.automatic) {
            // Bars stand in slots of width 1; lines run from the first point to the last.
            const bool bars = chart.firstIs(SeriesKind::Bar) || chart.firstIs(SeriesKind::HorizBar);
            const double room = bars || data.maximum <= data.minimum ? 0.5 : 0;
            return {data.minimum - room, data.maximum + room, 1};
        }
        return AxisScale::resolve(axis, data);
    }
    return AxisScale::resolve(axis, AxisScale::padded(AxisScale::categoryRange(chart)));
}

} // namespace

AxisRange AxisScale::padded(AxisRange data)
{
    const double pad = (data.maximum - data.minimum) * 0.02;
    return {data.minimum - pad, data.maximum + pad, data.increment};
}

AxisRange AxisScale::leftRange(const Chart& chart)
{
    if (horizontal(chart)) {
        return categoryAxis(chart, chart.leftAxis);
    }
    // Point markers keep clear of the plot's edges.
    const AxisRange values = valueRange(chart);
    return resolve(chart.leftAxis, categoriesByIndex(chart) ? values : padded(values));
}

AxisRange AxisScale::bottomRange(const Chart& chart)
{
    if (horizontal(chart)) {
        return resolve(chart.bottomAxis, valueRange(chart));
    }
    return categoryAxis(chart, chart.bottomAxis);
}

AxisRange AxisScale::depthRange(const Chart& chart)
{
    double low = std::numeric_limits<double>::max();
    double high = std::numeric_limits<double>::lowest();
    for (const ChartSeries& s : chart.series) {
        if (s.active && s.kind == SeriesKind::Point3D) {
            for (const ChartPoint& p : s.points) {
                low = std::min(low, p.z);
                high = std::max(high, p.z);
            }
        }
    }
    if (low > high) {
        low = 0;
        high = 1;
    }
    return resolve(chart.depthAxis, {low, high, 0});
}

} // namespace kestrum::chart
