#include "TimelineRenderer.h"

#include "common/DayCount.h"
#include "editors/timeline/DateFormat.h"
#include "editors/timeline/GifWriter.h"

#include <QBuffer>
#include <QDate>
#include <QFontMetrics>
#include <QImageWriter>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QSaveFile>

#include <algorithm>
#include <cmath>

namespace kestrum::timeline {

namespace {

constexpr int kBalloonGap = 10; // between a marker and its balloon
constexpr int kBalloonPadding = 4;
constexpr int kLevelGap = 4;

QColor colour(TColor c, const QColor& fallback = Qt::black)
{
    const QColor q = common::toQColor(c);
    return q.isValid() ? q : fallback;
}

bool usableRange(const TimelineModel& m)
{
    const double span = m.rangeTo - m.rangeFrom;
    return std::isfinite(m.rangeFrom) && std::isfinite(m.rangeTo) && span > 0 &&
           std::isfinite(span);
}

int markerDepth(const TimelineEvent& e)
{
    return std::clamp(e.size, 1, 64) * 3 / 2;
}

// Tick positions, in day counts, of one step through the calendar units of the scale.
class TickWalker
{
public:
    TickWalker(int type, double unitsPerTick) : m_type(type), m_units(unitsPerTick) {}

    // The first tick at or after `from`, aligned to multiples of the step.
    double first(double from) const
    {
        if (m_type == DivisionType::Month || m_type == DivisionType::Year) {
            const QDate d = common::fromDayCount(from).date();
            if (!d.isValid()) {
                return from;
            }
            const int months = m_type == DivisionType::Year ? 12 : 1;
            const qint64 stepMonths = std::max<qint64>(1, qint64(m_units) * months);
            qint64 index = qint64(d.year()) * 12 + (d.month() - 1);
            index = (index / stepMonths) * stepMonths;
            double t = dayOf(index);
            while (t < from) {
                index += stepMonths;
                t = dayOf(index);
            }
            m_index = index;
            m_stepMonths = stepMonths;
            return t;
        }
        const double step = stepDays();
        return std::ceil(from / step - 1e-9) * step;
    }
    double next(double t) const
    {
        if (m_type == DivisionType::Month || m_type == DivisionType::Year) {
            m_index += m_stepMonths;
            return dayOf(m_index);
        }
        return t + stepDays();
    }
    double stepDays() const
    {
        switch (m_type) {
        case DivisionType::Millisecond:
            return m_units / 86400000.0;
        case DivisionType::Second:
            return m_units / 86400.0;
        case DivisionType::Minute:
            return m_units / 1440.0;
        case DivisionType::Hour:
            return m_units / 24.0;
        case DivisionType::Month:
            return m_units * 30.0;
        case DivisionType::Year:
            return m_units * 365.0;
        default:
            return m_units;
        }
    }

private:
    static double dayOf(qint64 monthIndex)
    {
        const QDate d(int(monthIndex / 12), int(monthIndex % 12) + 1, 1);
        return common::toDayCount(QDateTime(d, QTime(0, 0)));
    }
    int m_type;
    double m_units;
    mutable qint64 m_index = 0;
    mutable qint64 m_stepMonths = 1;
};

std::vector<double> tickPositions(const TimelineModel& m, double units)
{
    std::vector<double> out;
    if (!(units > 0) || !std::isfinite(units)) {
        return out;
    }
    TickWalker walker(m.divisionType, units);
    const bool calendar =
        m.divisionType == DivisionType::Month || m.divisionType == DivisionType::Year;
    if (calendar && (!common::fromDayCount(m.rangeFrom).isValid() ||
                     !common::fromDayCount(m.rangeTo).isValid())) {
        return out;
    }
    const double daysPerTick = calendar ? walker.stepDays() * 0.9 : walker.stepDays();
    if ((m.rangeTo - m.rangeFrom) / daysPerTick > TimelineRenderer::kMaxTicks) {
        return out;
    }
    double t = walker.first(m.rangeFrom);
    while (t <= m.rangeTo && out.size() < std::size_t(TimelineRenderer::kMaxTicks)) {
        out.push_back(t);
        const double n = walker.next(t);
        if (!(n > t)) {
            break;
        }
        t = n;
    }
    if (out.size() >= std::size_t(TimelineRenderer::kMaxTicks)) {
        out.clear(); // too dense to read: draw no ticks at all rather than a smear
    }
    return out;
}

QStringList labelLines(const QString& text)
{
    QString t = text;
    t.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return t.split(QLatin1Char('\n'));
}

QSize labelSize(const QFontMetrics& fm, const QString& label)
{
    int w = 0;
    const QStringList lines = labelLines(label);
    for (const QString& l : lines) {
        w = std::max(w, fm.horizontalAdvance(l));
    }
    return {w, fm.height() * int(lines.size())};
}

} // namespace

QFont TimelineRenderer::toFont(const FontStyle& style)
{
    QFont f(style.name);
    f.setPointSizeF(std::clamp(style.pointSize, 1.0, 200.0));
    f.setBold(style.bold);
    f.setItalic(style.italic);
    f.setUnderline(style.underline);
    f.setStrikeOut(style.strikeOut);
    return f;
}

double TimelineRenderer::xForPosition(const TimelineModel& m, QSize size, double position)
{
    if (!usableRange(m)) {
        return m.horizontalMargin;
    }
    const double width = std::max(1, size.width() - 2 * m.horizontalMargin);
    return m.horizontalMargin + (position - m.rangeFrom) / (m.rangeTo - m.rangeFrom) * width;
}

double TimelineRenderer::positionForX(const TimelineModel& m, QSize size, double x)
{
    const double width = std::max(1, size.width() - 2 * m.horizontalMargin);
    return m.rangeFrom + (x - m.horizontalMargin) / width * (m.rangeTo - m.rangeFrom);
}

TimelineRenderer::Layout TimelineRenderer::layout(const TimelineModel& m, QSize size)
{
    Layout out;
    const int margin = std::clamp(m.horizontalMargin, 0, std::max(0, size.width() / 2 - 1));
    const int top = std::clamp(m.verticalMargin, 0, std::max(0, size.height() - 1));
    out.bar = QRect(margin, top, std::max(1, size.width() - 2 * margin), kBarHeight);
    if (!usableRange(m)) {
        return out;
    }

    // Scale: major ticks every `divisions` units, each split into `subDivisions` parts.
    const double units = std::max(1, m.divisions);
    const int parts = std::max(1, m.subDivisions);
    const std::vector<double> majors = tickPositions(m, units);
    std::vector<double> minors;
    if (parts > 1) {
        const bool calendar =
            m.divisionType == DivisionType::Month || m.divisionType == DivisionType::Year;
        minors =
            tickPositions(m, calendar ? std::max(1.0, std::floor(units / parts)) : units / parts);
    }
    for (double t : majors) {
        out.ticks.push_back({int(std::lround(xForPosition(m, size, t))), true,
                             DateFormat::format(t, m.divisionFormat)});
    }
    for (double t : minors) {
        const int x = int(std::lround(xForPosition(m, size, t)));
        const bool onMajor = std::any_of(out.ticks.begin(), out.ticks.end(),
                                         [x](const Tick& k) { return k.major && k.x == x; });
        if (!onMajor) {
            out.ticks.push_back({x, false, DateFormat::format(t, m.subDivisionFormat)});
        }
    }

    // Events within the visible window, left to right; balloons stack in levels so that
    // neighbours on the same side do not cover each other.
    const QFontMetrics fm(toFont(m.annotationFont));
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < m.events.size(); ++i) {
        const double p = m.events[i].position;
        if (p >= m.rangeFrom && p <= m.rangeTo) {
            order.push_back(i);
        }
    }
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return m.events[a].position < m.events[b].position;
    });
    std::vector<int> topLevels;
    std::vector<int> bottomLevels;
    for (std::size_t i : order) {
        const TimelineEvent& e = m.events[i];
        EventGeometry g;
        g.index = int(i);
        const int x = int(std::lround(xForPosition(m, size, e.position)));
        const bool onTop = e.annotationPosition == AnnotationPosition::Top;
        const int depth = markerDepth(e);
        const int half = std::clamp(e.size, 1, 64);
        const int edge = onTop ? out.bar.top() : out.bar.bottom() + 1;
        const int base = onTop ? edge - depth : edge + depth;
        // The shape says where the tip points: down (towards a bar below) or up.
        const bool pointsDown = e.shape == Shape::TriangleDown;
        const int tipY = pointsDown ? std::max(edge, base) : std::min(edge, base);
        const int baseY = pointsDown ? std::min(edge, base) : std::max(edge, base);
        g.marker << QPoint(x, tipY) << QPoint(x - half, baseY) << QPoint(x + half, baseY);

        const QString text = e.annotation.left(500);
        const bool hasImage =
            e.annotationImageIndex >= 0 && e.annotationImageIndex < m.images.size();
        const QSize imageSize =
            hasImage ? QSize(std::clamp(m.imageWidth, 1, 256), std::clamp(m.imageHeight, 1, 256))
                     : QSize();
        const int textWidth = fm.horizontalAdvance(text);
        const int w = textWidth + 2 * kBalloonPadding + (hasImage ? imageSize.width() + 4 : 0);
        const int h = std::max(fm.height(), imageSize.height()) + 2 * kBalloonPadding;
        const int left = std::clamp(x - w / 2, 0, std::max(0, size.width() - w));
        std::vector<int>& levels = onTop ? topLevels : bottomLevels;
        std::size_t level = 0;
        while (level < levels.size() && levels[level] > left) {
            ++level;
        }
        const int room = onTop ? out.bar.top() - depth - kBalloonGap
                               : size.height() - (out.bar.bottom() + depth + kBalloonGap);
        const std::size_t maxLevels = std::size_t(std::max(1, room / (h + kLevelGap)));
        if (level >= maxLevels) {
            level = std::size_t(
                std::distance(levels.begin(), std::min_element(levels.begin(), levels.end())));
        }
        if (level >= levels.size()) {
            levels.resize(level + 1, std::numeric_limits<int>::min());
        }
        levels[level] = left + w + 2;
        const int offset = int(level) * (h + kLevelGap);
        const int y = onTop ? out.bar.top() - depth - kBalloonGap - h - offset
                            : out.bar.bottom() + 1 + depth + kBalloonGap + offset;
        g.balloon = QRect(left, y, w, h);
        g.connector = QLine(x, onTop ? out.bar.top() - depth : out.bar.bottom() + 1 + depth, x,
                            onTop ? g.balloon.bottom() : g.balloon.top());
        int textLeft = left + kBalloonPadding;
        if (hasImage) {
            g.image = QRect(QPoint(textLeft, y + (h - imageSize.height()) / 2), imageSize);
            textLeft += imageSize.width() + 4;
        }
        g.text = QRect(textLeft, y + kBalloonPadding, textWidth + 1, h - 2 * kBalloonPadding);
        out.events.push_back(g);
    }
    return out;
}

void TimelineRenderer::paint(QPainter& p, const TimelineModel& m, QSize size)
{
    const Layout lay = layout(m, size);
    p.save();
    p.setRenderHint(QPainter::Antialiasing, true);

    QLinearGradient background(0, 0, 0, size.height());
    background.setColorAt(0, colour(m.backgroundColor, Qt::white));
    background.setColorAt(1, colour(m.backgroundColorTo, Qt::white));
    p.fillRect(QRect(QPoint(0, 0), size), background);

    QLinearGradient bar(0, lay.bar.top(), 0, lay.bar.bottom());
    bar.setColorAt(0, colour(m.barColor, Qt::white));
    bar.setColorAt(1, colour(m.barColorTo, Qt::white));
    p.setPen(QPen(colour(m.barColorTo, Qt::gray).darker(130), 1));
    p.setBrush(bar);
    p.drawRect(lay.bar);

    // Scale.
    const QFont majorFont = toFont(m.divisionFont);
    const QFont minorFont = toFont(m.subDivisionFont);
    int lastMinorRight = std::numeric_limits<int>::min();
    for (const Tick& t : lay.ticks) {
        const bool major = t.major;
        const int tick = std::clamp(major ? m.divisionTickSize : m.subDivisionTickSize, 0, 40);
        const FontStyle& style = major ? m.divisionFont : m.subDivisionFont;
        p.setPen(QPen(colour(style.colour), 1));
        p.drawLine(t.x, lay.bar.top(), t.x, lay.bar.top() + tick);
        if (t.label.trimmed().isEmpty()) {
            continue;
        }
        p.setFont(major ? majorFont : minorFont);
        const QFontMetrics fm(p.font());
        const QSize s = labelSize(fm, t.label);
        const QRect r(t.x - s.width() / 2, lay.bar.top() + tick + 1, s.width(), s.height());
        if (!major) {
            // Subdivision labels give way to one another and to the division labels.
            const bool crowded =
                std::any_of(lay.ticks.begin(), lay.ticks.end(), [&](const Tick& k) {
                    return k.major && std::abs(k.x - t.x) < s.width();
                });
            if (crowded || r.left() < lastMinorRight) {
                continue;
            }
            lastMinorRight = r.right() + 4;
        }
        p.drawText(r, Qt::AlignHCenter | Qt::AlignTop, labelLines(t.label).join(QLatin1Char('\n')));
    }

    // Events.
    p.setFont(toFont(m.annotationFont));
    for (const EventGeometry& g : lay.events) {
        const TimelineEvent& e = m.events[std::size_t(g.index)];
        p.setPen(QPen(colour(e.annotationLineColor), 1));
        p.drawLine(g.connector);

        QLinearGradient fill(g.marker.boundingRect().topLeft(),
                             g.marker.boundingRect().bottomLeft());
        fill.setColorAt(0, colour(e.color, Qt::white));
        fill.setColorAt(1, colour(e.colorTo, Qt::white));
        p.setBrush(fill);
        p.setPen(QPen(colour(e.borderColor), 1));
        p.drawPolygon(g.marker);

        p.setBrush(colour(e.annotationColor, Qt::white));
        p.setPen(QPen(colour(e.annotationLineColor), 1));
        if (e.annotationRounded) {
            p.drawRoundedRect(g.balloon, 5, 5);
        } else {
            p.drawRect(g.balloon);
        }
        if (!g.image.isEmpty()) {
            p.drawImage(g.image, m.images.at(e.annotationImageIndex));
        }
        p.setPen(colour(e.annotationTextColor));
        p.drawText(g.text, Qt::AlignLeft | Qt::AlignVCenter, e.annotation.left(500));
    }
    p.restore();
}

int TimelineRenderer::hitTest(const TimelineModel& m, QSize size, QPoint point)
{
    const Layout lay = layout(m, size);
    for (auto it = lay.events.rbegin(); it != lay.events.rend(); ++it) {
        if (it->balloon.contains(point) ||
            it->marker.boundingRect().adjusted(-2, -2, 2, 2).contains(point)) {
            return it->index;
        }
    }
    return -1;
}

QImage TimelineRenderer::picture(const TimelineModel& m, QSize size)
{
    QImage image(size.expandedTo(QSize(1, 1)), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter p(&image);
    paint(p, m, image.size());
    p.end();
    return image;
}

Status TimelineRenderer::savePicture(const TimelineModel& m, QSize size, const QString& fileName,
                                     const QString& format)
{
    const QImage image = picture(m, size);
    QByteArray bytes;
    const QString f = format.toLower();
    if (f == QLatin1String("gif")) {
        bytes = GifWriter::write(image);
    } else {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        const QByteArray qtFormat = f == QLatin1String("jpg") ? QByteArray("JPEG") : f.toLatin1();
        QImageWriter writer(&buffer, qtFormat);
        writer.setQuality(100);
        if (!writer.write(image)) {
            return fail(QStringLiteral("Cannot write the timeline as %1: %2")
                            .arg(format, writer.errorString()));
        }
    }
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        return fail(QStringLiteral("Cannot write \"%1\": %2").arg(fileName, file.errorString()));
    }
    return {};
}

} // namespace kestrum::timeline
