#include "SpiralPlacer.h"

#include "CloudRandom.h"

#include <algorithm>

namespace kestrum::wordcloud {

SpiralPlacer::SpiralPlacer(const Options& options) : m_options(options) {}

int SpiralPlacer::placeAll(std::vector<CloudRect>& boxes, CloudRandom& random,
                           const std::function<bool(int)>& goOn)
{
    m_placed.reset(m_options.area, CollisionIndex::Mode::LinearScan);
    m_occupancy.reset(m_options.area);
    m_placedInverted = false;
    m_segLength = 1;
    m_segPassed = 0;
    m_dx = -99;
    m_dy = -99;
    const int count = int(boxes.size());
    CloudRect lastPlaced;
    for (int i = 0; i < count; ++i) {
        if (!goOn(i)) {
            break;
        }
        CloudRect& box = boxes[std::size_t(i)];
        bool mirrored = false;
        if (!m_options.chain) {
            if (m_options.direction == Mirrored) {
                mirrored = true;
            } else if (m_options.direction != Forward) {
                mirrored = random.nextInt(2) == 1;
            }
        }
        bool resume = false;
        if (m_options.chain && i > count / 10 && m_placed.count() % 8 != 0) {
            box = {lastPlaced.left, lastPlaced.top, lastPlaced.left + box.width(),
                   lastPlaced.top + box.height()};
            resume = true;
        }
        if (!placeWord(box, resume, mirrored, random)) {
            break;
        }
        m_placed.add(box);
        m_occupancy.add(box);
        m_placedInverted = m_placedInverted || box.width() < 0 || box.height() < 0;
        lastPlaced = box;
    }
    return m_placed.count();
}

bool SpiralPlacer::fits(const CloudRect& box) const
{
    if (!m_options.ellipse) {
        const CloudRect& area = m_options.area;
        return box.left >= area.left && box.right <= area.right && box.top >= area.top &&
               box.bottom <= area.bottom;
    }
    const CloudRect& area = m_options.area;
    const double a = area.width() / 2.0;
    const double b = area.height() / 2.0;
    const double cx = area.left + a;
    const double cy = area.top + b;
    auto inside = [&](double x, double y) {
        const double u = (x - cx) / a;
        const double v = (y - cy) / b;
        return u * u + v * v <= 1.0;
    };
    return inside(box.left, box.top) && inside(box.right, box.bottom);
}

namespace {

struct StepRange
{
    qint64 first;
    qint64 last; // empty when last < first
};

qint32 floorDiv32(qint32 a, qint32 b)
{
    qint32 q = a / b;
    if ((a % b != 0) && ((a < 0) != (b < 0))) {
        --q;
    }
    return q;
}

qint32 ceilDiv32(qint32 a, qint32 b)
{
    return -floorDiv32(-a, b);
}

// The steps k for which from <= k * v <= to (v != 0). Positions on a walk stay within a few
// million pixels, so 32-bit division (much quicker than 64-bit) is exact here.
StepRange stepsWithin(qint64 v, qint64 from, qint64 to)
{
    const qint32 v32 = qint32(v);
    const qint32 f = qint32(std::clamp<qint64>(from, -(1 << 30), 1 << 30));
    const qint32 t = qint32(std::clamp<qint64>(to, -(1 << 30), 1 << 30));
    if (v32 > 0) {
        return {ceilDiv32(f, v32), floorDiv32(t, v32)};
    }
    return {ceilDiv32(-t, -v32), floorDiv32(-f, -v32)};
}

} // namespace

qint64 SpiralPlacer::firstFreeStep(const CloudRect& box, qint32 vx, qint32 vy, qint64 last)
{
    const CloudRect& area = m_options.area;
    const bool alongX = vx != 0;
    const qint32 v = alongX ? vx : vy;
    // Fixed extent across the leg, moving extent along it.
    const qint32 crossLo = alongX ? box.top : box.left;
    const qint32 crossHi = alongX ? box.bottom : box.right;
    const qint32 lo = alongX ? box.left : box.top;
    const qint32 hi = alongX ? box.right : box.bottom;
    if (crossLo < (alongX ? area.top : area.left) ||
        crossHi > (alongX ? area.bottom : area.right)) {
        return -1;
    }
    // The steps that keep the box within the area's rectangle (a condition of both shapes).
    const StepRange within = stepsWithin(v, qint64(alongX ? area.left : area.top) - lo,
                                         qint64(alongX ? area.right : area.bottom) - hi);
    const qint64 first = std::max<qint64>(0, within.first);
    const qint64 end = std::min<qint64>(last, within.last);
    if (first > end) {
        return -1;
    }
    // The band the box sweeps over those steps, folded onto the leg's axis a stretch at a
    // time (most walks stop long before the end of a long leg). The search runs in the sense
    // of travel: u = sense * position grows as the walk goes on.
    const qint32 sense = v > 0 ? 1 : -1;
    const qint32 from = qint32(std::min(lo + first * v, lo + end * v));
    const qint32 to = qint32(std::max(hi + first * v, hi + end * v));
    constexpr qint32 kStretch = 512;
    bool projected = false;
    // The first u from x up to limit whose bit is `set`, or limit + 1.
    auto scan = [&](bool set, qint32 x, qint32 limit) {
        for (;;) {
            const qint32 at = sense * x;
            if (!projected || at < m_line.base || at > m_line.last) {
                if (sense > 0) {
                    m_occupancy.project(alongX, crossLo, crossHi, at, std::min(to, at + kStretch),
                                        m_line);
                } else {
                    m_occupancy.project(alongX, crossLo, crossHi, std::max(from, at - kStretch), at,
                                        m_line);
                }
                projected = true;
            }
            const qint32 stop = std::min(limit, sense > 0 ? m_line.last : -m_line.base);
            const qint32 found =
                sense > 0 ? m_line.find(set, x, stop) : -m_line.findBackward(set, -stop, -x);
            if (found <= stop || stop == limit) {
                return found;
            }
            x = stop + 1;
        }
    };
    const qint32 speed = sense * v;
    const qint32 span = hi - lo;
    const qint32 start = sense > 0 ? lo : -hi;
    auto startOf = [&](qint64 k) { return qint32(start + k * speed); };
    const qint32 limit = startOf(end) + span;
    const bool ellipse = m_options.ellipse;
    for (qint64 k = first; k <= end;) {
        // The box at step k covers u = x .. x + span. The first free run at or after x...
        const qint32 x = startOf(k);
        const qint32 freeFrom = scan(false, x, limit);
        if (freeFrom > limit) {
            return -1;
        }
        const qint32 freeTo = scan(true, freeFrom, limit) - 1;
        // ... holds the box at its first step that starts within it, if that step ends in it.
        const qint64 inRun = k + (freeFrom - x + speed - 1) / speed;
        if (inRun > end) {
            return -1;
        }
        if (startOf(inRun) + span <= freeTo) {
            if (ellipse && !fits(alongX ? box.translated(qint32(inRun * v), 0)
                                        : box.translated(0, qint32(inRun * v)))) {
                k = inRun + 1;
                continue;
            }
            return inRun;
        }
        // Otherwise the box must first pass the marked pixel that ends the run.
        if (freeTo >= limit) {
            return -1;
        }
        k += (freeTo + 1 - x) / speed + 1;
    }
    return -1;
}

bool SpiralPlacer::spiralWalk(CloudRect& box, bool resume, bool mirrored, CloudRandom& random)
{
    qint32 dx = 0;
    qint32 dy = 0;
    qint32 legLength = 1;
    qint32 steps = 0;
    if (resume) {
        dx = m_dx;
        dy = m_dy;
        legLength = m_segLength;
        steps = m_segPassed;
    } else {
        switch (random.nextInt(4)) {
        case 0:
            dx = 1;
            dy = 0;
            break;
        case 1:
            dx = 0;
            dy = 1;
            break;
        case 2:
            dx = -1;
            dy = 0;
            break;
        default:
            dx = 0;
            dy = -1;
            break;
        }
    }
    const qint64 budget = m_options.budget;
    const qint32 stepX = mirrored ? -m_options.stepX : m_options.stepX;
    const qint32 stepY = mirrored ? -m_options.stepY : m_options.stepY;
    // The bitmap holds boxes as pixels, which an inverted box has none of: such a box (never
    // made by the sizing) walks step by step against the placed boxes themselves.
    const bool bitmap =
        !m_options.reference && !m_placedInverted && box.width() >= 0 && box.height() >= 0;
    int collider = -1;
    bool blocked = true;

    // `count` blocked steps: move on along the spiral.
    auto advance = [&](qint64 count) {
        box =
            box.translated(qint32(qint64(stepX) * dx * count), qint32(qint64(stepY) * dy * count));
        steps += qint32(count);
        if (steps == legLength) {
            steps = 0;
            const qint32 turnedX = -dy;
            dy = dx;
            dx = turnedX;
            if (dy == 0) {
                ++legLength;
            }
        }
    };

    for (qint64 n = 0; n < budget;) {
        if (bitmap && (dx == 0) != (dy == 0)) {
            // The rest of this leg (within the budget) in one go: the first step whose box
            // fits the shape and covers no placed pixel, if any.
            const qint64 last = std::min<qint64>(legLength - steps - 1, budget - n - 1);
            const qint64 k = firstFreeStep(box, stepX * dx, stepY * dy, last);
            if (k < 0) {
                advance(last + 1);
                n += last + 1;
                continue;
            }
            advance(k);
            n += k + 1;
            blocked = false;
            break;
        }
        ++n;
        blocked = !fits(box);
        if (!blocked) {
            if (bitmap) {
                blocked = !m_occupancy.isFree(box);
            } else if (collider >= 0 && m_placed.box(collider).overlaps(box)) {
                blocked = true;
            } else if (const int hit = m_placed.firstOverlap(box); hit >= 0) {
                collider = hit;
                blocked = true;
            }
        }
        if (!blocked) {
            break;
        }
        advance(1);
    }
    m_segLength = legLength;
    m_segPassed = steps;
    m_dx = dx;
    m_dy = dy;
    return !blocked;
}

bool SpiralPlacer::placeWord(CloudRect& box, bool resume, bool mirrored, CloudRandom& random)
{
    if (spiralWalk(box, resume, mirrored, random)) {
        return true;
    }
    if (!resume) {
        return false;
    }
    // A resumed walk that found nothing starts a fresh spiral from where it ended.
    m_segLength = 1;
    m_segPassed = 0;
    m_dx = 1;
    m_dy = 0;
    return spiralWalk(box, false, mirrored, random);
}

} // namespace kestrum::wordcloud
