#include "ChartStream.h"

#include "common/ByteStream.h"

#include <cmath>

namespace kestrum::chart {

namespace {

using common::ByteReader;
using common::ByteWriter;

// The smallest bytes one point takes: x, y, z, colour and an empty label.
constexpr qsizetype kMinPointBytes = 3 * 8 + 4 + 4;
constexpr qint32 kMaxPenWidth = 100;
constexpr qint32 kMaxMarkerSize = 200;
constexpr qint32 kMaxArrowLength = 1000;

enum AxisFlag : quint8
{
    AxisAutomatic = 1,
    AxisInverted = 2,
    AxisGrid = 4,
    AxisVisible = 8,
};
enum SeriesFlag : quint8
{
    SeriesColourEachPoint = 1,
    SeriesActive = 2,
    SeriesPointerVisible = 4,
    SeriesCircled = 8,
};
enum MarksFlag : quint8
{
    MarksVisible = 1,
    MarksTransparent = 2,
    MarksFrame = 4,
    MarksArrow = 8,
    MarksClipped = 16,
};

void writePen(ByteWriter& w, const ChartPen& pen)
{
    w.u8(pen.visible ? 1 : 0);
    w.i32(pen.colour);
    w.i32(pen.width);
}

void writeAxis(ByteWriter& w, const ChartAxis& a)
{
    w.u8(quint8((a.automatic ? AxisAutomatic : 0) | (a.inverted ? AxisInverted : 0) |
                (a.gridVisible ? AxisGrid : 0) | (a.visible ? AxisVisible : 0)));
    w.f64(a.minimum);
    w.f64(a.maximum);
    w.f64(a.increment);
    w.i32(a.labelAngle);
    w.i32(a.endPosition);
    w.string(a.title);
}

void writeSeries(ByteWriter& w, const ChartSeries& s)
{
    w.u8(quint8(s.kind));
    w.string(s.title);
    w.i32(s.colour);
    w.u8(quint8((s.colourEachPoint ? SeriesColourEachPoint : 0) | (s.active ? SeriesActive : 0) |
                (s.pointerVisible ? SeriesPointerVisible : 0) | (s.circled ? SeriesCircled : 0)));
    w.u8(quint8(s.pointerShape));
    w.i32(s.pointerWidth);
    w.i32(s.pointerHeight);
    w.i32(s.penWidth);
    writePen(w, s.baseLine);
    const SeriesMarks& m = s.marks;
    w.u8(quint8((m.visible ? MarksVisible : 0) | (m.transparent ? MarksTransparent : 0) |
                (m.frameVisible ? MarksFrame : 0) | (m.arrowVisible ? MarksArrow : 0) |
                (m.clipped ? MarksClipped : 0)));
    w.u8(quint8(m.style));
    w.i32(m.arrowLength);
    w.string(m.percentFormat);
    w.u32(quint32(s.points.size()));
    for (const ChartPoint& p : s.points) {
        w.f64(p.x);
        w.f64(p.y);
        w.f64(p.z);
        w.i32(p.colour);
        w.string(p.label);
    }
}

// Reads the fields in order; the first damage found stops the reading and is reported.
class Reader
{
public:
    explicit Reader(const QByteArray& bytes) : m_in(bytes) {}

    bool failed() const { return !m_in.ok(); }
    QString error() const { return QStringLiteral("damaged chart stream: ") + m_in.error(); }
    void fail(const QString& why) { m_in.fail(why); }
    ByteReader& in() { return m_in; }

    bool flag(const char* what)
    {
        const quint8 v = m_in.u8();
        if (v > 1) {
            fail(QStringLiteral("%1 is %2, not 0 or 1").arg(QLatin1String(what)).arg(v));
        }
        return v == 1;
    }
    double number(const char* what)
    {
        const double v = m_in.f64();
        if (!std::isfinite(v)) {
            fail(QStringLiteral("%1 is not a finite number").arg(QLatin1String(what)));
            return 0;
        }
        return v;
    }
    qint32 integer(const char* what, qint32 low, qint32 high)
    {
        const qint32 v = m_in.i32();
        if (m_in.ok() && (v < low || v > high)) {
            fail(QStringLiteral("%1 is %2, outside %3 to %4")
                     .arg(QLatin1String(what))
                     .arg(v)
                     .arg(low)
                     .arg(high));
            return low;
        }
        return v;
    }
    common::TColor colour() { return m_in.i32(); }
    QString text() { return m_in.string(ChartStream::kMaxText); }

    ChartPen pen(const char* what)
    {
        ChartPen pen;
        pen.visible = flag(what);
        pen.colour = colour();
        pen.width = integer(what, 0, kMaxPenWidth);
        return pen;
    }

    ChartAxis axis()
    {
        ChartAxis a;
        const quint8 flags = m_in.u8();
        if (flags > 15) {
            fail(QStringLiteral("unknown axis flags %1").arg(flags));
        }
        a.automatic = flags & AxisAutomatic;
        a.inverted = flags & AxisInverted;
        a.gridVisible = flags & AxisGrid;
        a.visible = flags & AxisVisible;
        a.minimum = number("axis minimum");
        a.maximum = number("axis maximum");
        a.increment = number("axis increment");
        if (m_in.ok() && (a.maximum < a.minimum || a.increment < 0)) {
            fail(QStringLiteral("an axis runs from %1 to %2 by %3")
                     .arg(a.minimum)
                     .arg(a.maximum)
                     .arg(a.increment));
        }
        a.labelAngle = integer("axis label angle", 0, 359);
        a.endPosition = integer("axis end position", 0, 100);
        a.title = text();
        return a;
    }

    bool series(ChartSeries& s, qsizetype& pointBudget)
    {
        const quint8 kind = m_in.u8();
        if (m_in.ok() && kind >= kSeriesKindCount) {
            fail(QStringLiteral("unknown series kind %1").arg(kind));
            return false;
        }
        s.kind = SeriesKind(kind);
        s.title = text();
        s.colour = colour();
        const quint8 flags = m_in.u8();
        if (flags > 15) {
            fail(QStringLiteral("unknown series flags %1").arg(flags));
        }
        s.colourEachPoint = flags & SeriesColourEachPoint;
        s.active = flags & SeriesActive;
        s.pointerVisible = flags & SeriesPointerVisible;
        s.circled = flags & SeriesCircled;
        const quint8 shape = m_in.u8();
        if (m_in.ok() && shape >= kMarkerShapeCount) {
            fail(QStringLiteral("unknown marker shape %1").arg(shape));
            return false;
        }
        s.pointerShape = MarkerShape(shape);
        s.pointerWidth = integer("marker width", 0, kMaxMarkerSize);
        s.pointerHeight = integer("marker height", 0, kMaxMarkerSize);
        s.penWidth = integer("pen width", 0, kMaxPenWidth);
        s.baseLine = pen("base line");
        const quint8 marks = m_in.u8();
        if (marks > 31) {
            fail(QStringLiteral("unknown marks flags %1").arg(marks));
        }
        s.marks.visible = marks & MarksVisible;
        s.marks.transparent = marks & MarksTransparent;
        s.marks.frameVisible = marks & MarksFrame;
        s.marks.arrowVisible = marks & MarksArrow;
        s.marks.clipped = marks & MarksClipped;
        const quint8 style = m_in.u8();
        if (m_in.ok() && style >= kMarkStyleCount) {
            fail(QStringLiteral("unknown marks style %1").arg(style));
            return false;
        }
        s.marks.style = MarkStyle(style);
        s.marks.arrowLength = integer("arrow length", 0, kMaxArrowLength);
        s.marks.percentFormat = text();
        const quint32 count = m_in.u32();
        if (failed()) {
            return false;
        }
        if (qsizetype(count) > pointBudget) {
            fail(QStringLiteral("%1 points is more than a chart holds (%2)")
                     .arg(count)
                     .arg(ChartStream::kMaxPoints));
            return false;
        }
        if (qsizetype(count) > m_in.remaining() / kMinPointBytes) {
            fail(
                QStringLiteral("the series claims %1 points, more than the data holds").arg(count));
            return false;
        }
        pointBudget -= qsizetype(count);
        s.points.resize(count);
        for (ChartPoint& p : s.points) {
            p.x = number("a point's x");
            p.y = number("a point's y");
            p.z = number("a point's z");
            p.colour = colour();
            p.label = text();
            if (failed()) {
                return false;
            }
        }
        return !failed();
    }

private:
    ByteReader m_in;
};

} // namespace

QByteArray ChartStream::write(const Chart& chart)
{
    ByteWriter w;
    w.reserve(256 + chart.pointCount() * 40);
    w.raw(kMagic, 4);
    w.u16(kVersion);
    w.u16(0);
    w.string(chart.title);
    w.i32(chart.panelColour);
    w.u8(chart.legendVisible ? 1 : 0);
    w.u8(chart.dataTableVisible ? 1 : 0);
    w.u8(chart.view3D.enabled ? 1 : 0);
    w.i32(chart.view3D.rotation);
    w.i32(chart.view3D.elevation);
    w.i32(chart.view3D.depthPercent);
    w.u8(chart.walls.visible ? 1 : 0);
    writePen(w, chart.walls.backPen);
    w.u8(chart.walls.clipPoints ? 1 : 0);
    w.f64(chart.valueScale.minimum);
    w.f64(chart.valueScale.maximum);
    w.f64(chart.valueScale.increment);
    writeAxis(w, chart.leftAxis);
    writeAxis(w, chart.bottomAxis);
    writeAxis(w, chart.depthAxis);
    w.u32(quint32(chart.series.size()));
    for (const ChartSeries& s : chart.series) {
        writeSeries(w, s);
    }
    return w.take();
}

Result<Chart> ChartStream::read(const QByteArray& bytes)
{
    if (!bytes.startsWith(QByteArray::fromRawData(kMagic, 4))) {
        return fail(QStringLiteral("not a chart stream (no \"KCHT\" at its start)"));
    }
    if (bytes.size() < 8) {
        return fail(QStringLiteral("damaged chart stream: it ends in its header"));
    }
    Reader r(bytes);
    ByteReader& in = r.in();
    in.raw(4);
    const quint16 version = in.u16();
    if (version != kVersion) {
        return fail(QStringLiteral("chart stream version %1 is not known (this program reads %2)")
                        .arg(version)
                        .arg(kVersion));
    }
    if (in.u16() != 0) {
        r.fail(QStringLiteral("unknown stream flags"));
    }
    Chart chart;
    chart.title = r.text();
    chart.panelColour = r.colour();
    chart.legendVisible = r.flag("the legend flag");
    chart.dataTableVisible = r.flag("the data table flag");
    chart.view3D.enabled = r.flag("the 3D flag");
    chart.view3D.rotation = r.integer("the rotation", 0, 359);
    chart.view3D.elevation = r.integer("the elevation", 0, 359);
    chart.view3D.depthPercent = r.integer("the 3D depth", 0, 100);
    chart.walls.visible = r.flag("the walls flag");
    chart.walls.backPen = r.pen("the back wall pen");
    chart.walls.clipPoints = r.flag("the point clipping flag");
    chart.valueScale.minimum = r.number("the value scale minimum");
    chart.valueScale.maximum = r.number("the value scale maximum");
    chart.valueScale.increment = r.number("the value scale increment");
    chart.leftAxis = r.axis();
    chart.bottomAxis = r.axis();
    chart.depthAxis = r.axis();
    const quint32 count = in.u32();
    if (!r.failed() && count > kMaxSeries) {
        r.fail(
            QStringLiteral("%1 series is more than a chart holds (%2)").arg(count).arg(kMaxSeries));
    }
    if (r.failed()) {
        return fail(r.error());
    }
    qsizetype budget = kMaxPoints;
    chart.series.reserve(std::min<qsizetype>(count, in.remaining() / 64 + 1));
    for (quint32 i = 0; i < count; ++i) {
        ChartSeries s;
        if (!r.series(s, budget)) {
            return fail(r.error() + QStringLiteral(" (series %1)").arg(i + 1));
        }
        chart.series.push_back(std::move(s));
    }
    if (!in.atEnd()) {
        return fail(
            QStringLiteral("damaged chart stream: %1 bytes after its end").arg(in.remaining()));
    }
    return chart;
}

} // namespace kestrum::chart
