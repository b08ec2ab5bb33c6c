#pragma once

#include "editors/chart/Chart.h"
#include "editors/chart/ChartGeometry.h"

class QPainter;
class QPalette;

namespace kestrum::chart {

// Draws the series of a 2D chart (bars, horizontal bars, lines, points) inside its geometry,
// with a depth effect when the geometry has one, their markers and marks; and pies.
class SeriesPainter
{
public:
    SeriesPainter(QPainter& painter, const Chart& chart, const ChartGeometry& geometry,
                  const QPalette* palette);

    void paintSeries();
    void paintPie(const QRectF& area);

    // A marker of `shape` centred on `at`, half-sizes w and h.
    static void paintMarker(QPainter& painter, QPointF at, MarkerShape shape, double w, double h);
    // A percent as the marks' format asks (" ##0.0%": one decimal, a blank before).
    static QString formatPercent(double percent, const QString& format);
    // A value as the marks and axis labels show it.
    static QString formatValue(double value, int decimals = -1);

private:
    void paintBars(int s, int barIndex, int barCount);
    void paintLine(int s);
    void paintMarks(int s);
    void paintMark(QPointF at, const QString& text, const SeriesMarks& marks, QColor colour);
    QColor colourOf(common::TColor colour) const;
    QString markText(int s, int p, double total) const;

    QPainter& m_painter;
    const Chart& m_chart;
    const ChartGeometry& m_geometry;
    const QPalette* m_palette;
};

} // namespace kestrum::chart
