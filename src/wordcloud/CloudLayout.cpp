#include "CloudLayout.h"

#include "TprWordCloud.h"
#include "WordCloudLog.h"
#include "common/Rounding.h"

#include <algorithm>
#include <cmath>

namespace kestrum::wordcloud {

using common::roundHalfEven;

namespace {

// The coverage fit never grows a font beyond this size.
constexpr qint32 kMaxFitSize = 32768;

} // namespace

CloudLayout::CloudLayout(TprWordCloud& cloud) : m_cloud(cloud), m_reference(cloud.m_referenceLayout)
{}

bool CloudLayout::run(bool resetPosition)
{
    bool placedAll = generateOnce(resetPosition);
    while (!placedAll) {
        qCDebug(lcWordCloud).nospace().noquote()
            << "Coverage Too High: " << m_cloud.m_currentCoverage;
        if (!m_cloud.m_autoResizeCoverage) {
            break;
        }
        m_cloud.m_currentCoverage = float(double(m_cloud.m_currentCoverage) - 0.05);
        if (!(m_cloud.m_currentCoverage > 0)) {
            break;
        }
        for (auto& word : m_cloud.m_words) {
            word->SetStartingBoundsRect({});
            word->SetSize(word->Weight());
            word->SetStartingPosition();
        }
        placedAll = generateOnce(false);
    }
    return placedAll;
}

void CloudLayout::sortWords()
{
    std::stable_sort(m_cloud.m_words.begin(), m_cloud.m_words.end(),
                     [](const auto& a, const auto& b) { return a->Weight() > b->Weight(); });
}

void CloudLayout::capWeights()
{
    const qint32 heaviest = m_cloud.m_words.front()->Weight();
    const double factor = heaviest <= 1024 ? 1.0 : 1024.0 / heaviest;
    for (auto& word : m_cloud.m_words) {
        word->SetFont(m_cloud.m_font);
        const qint32 weight = qint32(roundHalfEven(word->Weight() * factor));
        word->SetWeight(weight);
        word->SetSize(weight);
    }
    m_cloud.m_maxWeight = m_cloud.m_words.front()->Weight();
    m_cloud.m_minWeight = m_cloud.m_words.back()->Weight();
}

void CloudLayout::fitSizesToCoverage()
{
    const CloudRect area = m_cloud.GetCanvasDimension();
    const qint64 target =
        qint64(std::trunc(double(m_cloud.CanvasArea()) * double(m_cloud.m_currentCoverage)));
    if (target == 0) {
        return;
    }
    qint64 total = 0;
    for (const auto& word : m_cloud.m_words) {
        total += word->BoundsRect().area();
    }
    const double ratio = double(total) / double(target);
    if (ratio == 0) {
        return;
    }
    double shrink = 1.0;
    for (std::size_t i = 0; i < m_cloud.m_words.size(); ++i) {
        TprWord& word = *m_cloud.m_words[i];
        qint64 t = qint64(std::trunc(double(word.BoundsRect().area()) / ratio));
        if (t < 0) {
            t = 1;
        }

        // Binary search over 1..1024 for the size whose box area is the target.
        qint32 size = 512;
        qint32 low = 0;
        qint32 high = 1024;
        for (;;) {
            if (size < 2) {
                size = 1;
                break;
            }
            if (size == low || size == high) {
                break;
            }
            word.SetSize(size);
            const qint64 a = word.BoundsRect().area();
            if (a == t) {
                break;
            }
            if (a > t) {
                high = size;
                size = low + (size - low) / 2;
            } else {
                low = size;
                size = size + (high - size) / 2;
            }
        }
        word.SetSize(size);
        while (word.BoundsRect().area() < t && size < kMaxFitSize) {
            word.SetSize(++size);
        }
        while (word.BoundsRect().area() > t && size >= 2) {
            word.SetSize(--size);
        }

        size = std::max<qint32>(1, qint32(std::trunc(size * shrink)));
        word.SetSize(size);
        if (i == 0) {
            // The heaviest word must fit with ten pixels to spare; the others shrink alike.
            const qint32 before = size;
            while ((word.BoundsRect().width() + 10 > area.width() ||
                    word.BoundsRect().height() + 10 > area.height()) &&
                   size >= 2) {
                word.SetSize(--size);
            }
            shrink = double(size) / double(before);
        }
        word.SetDefaultSize();
    }
}

void CloudLayout::reproportionToWeight()
{
    qint64 weights = 0;
    qint64 sizes = 0;
    for (const auto& word : m_cloud.m_words) {
        weights += word->Weight();
        sizes += word->FontSize();
    }
    if (weights == 0) {
        return;
    }
    for (auto& word : m_cloud.m_words) {
        const qint64 size = roundHalfEven(double(word->Weight()) * double(sizes) / double(weights));
        word->SetSize(qint32(std::clamp<qint64>(size, 1, kMaxFitSize)));
        word->SetDefaultSize();
    }
}

bool CloudLayout::fits(const CloudRect& box, const CloudRect& area) const
{
    if (m_cloud.m_cloudShape != TprWordCloud::Ellipse) {
        return box.left >= area.left && box.right <= area.right && box.top >= area.top &&
               box.bottom <= area.bottom;
    }
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

qint64 CloudLayout::firstFreeStep(const CloudRect& box, qint32 vx, qint32 vy, qint64 last,
                                  const CloudRect& area)
{
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
    const bool ellipse = m_cloud.m_cloudShape == TprWordCloud::Ellipse;
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
                                        : box.translated(0, qint32(inRun * v)),
                                 area)) {
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

bool CloudLayout::spiralWalk(TprWord& word, bool resume, bool mirrored)
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
        switch (m_cloud.m_random.nextInt(4)) {
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
    const CloudRect area = m_cloud.GetCanvasDimension();
    const qint64 budget = m_cloud.CanvasArea();
    const qint32 stepX = mirrored ? -qint32(m_cloud.m_stepX) : qint32(m_cloud.m_stepX);
    const qint32 stepY = mirrored ? -qint32(m_cloud.m_stepY) : qint32(m_cloud.m_stepY);
    CloudRect box = word.BoundsRect();
    // The bitmap holds boxes as pixels, which an inverted box has none of: such a box (never
    // made by the sizing) walks step by step against the placed boxes themselves.
    const bool bitmap = !m_reference && !m_placedInverted && box.width() >= 0 && box.height() >= 0;
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
            const qint64 k = firstFreeStep(box, stepX * dx, stepY * dy, last, area);
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
        blocked = !fits(box, area);
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
    word.SetStartingBoundsRect(box);
    m_segLength = legLength;
    m_segPassed = steps;
    m_dx = dx;
    m_dy = dy;
    return !blocked;
}

bool CloudLayout::placeWord(TprWord& word, bool resume, bool mirrored)
{
    if (spiralWalk(word, resume, mirrored)) {
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
    return spiralWalk(word, false, mirrored);
}

bool CloudLayout::generateOnce(bool resetPosition)
{
    const CloudRect area = m_cloud.GetCanvasDimension();
    m_cloud.m_cancel = false;
    sortWords();
    if (resetPosition) {
        m_cloud.m_currentCoverage = m_cloud.m_coverage;
    }
    m_cloud.m_stepX = quint8(std::clamp<qint64>(roundHalfEven(area.width() / 150.0), 1, 255));
    m_cloud.m_stepY = quint8(std::clamp<qint64>(roundHalfEven(area.height() / 150.0), 1, 255));
    m_cloud.m_startingCanvasRect = area;

    capWeights();
    fitSizesToCoverage();
    reproportionToWeight();
    for (auto& word : m_cloud.m_words) {
        word->SetVisible(false);
        if (resetPosition) {
            word->SetStartingPosition();
        }
    }

    m_cloud.m_countVisibleWords = 0;
    m_placed.reset(area, CollisionIndex::Mode::LinearScan);
    m_occupancy.reset(area);
    m_placedInverted = false;
    m_segLength = 1;
    m_segPassed = 0;
    m_dx = -99;
    m_dy = -99;
    m_cloud.m_random.reseedFromClock();
    const int count = m_cloud.WordCount();
    const bool chain = m_cloud.m_placeCenter && m_cloud.m_continueFromLastWord;
    CloudRect lastPlaced;
    for (int i = 0; i < count; ++i) {
        if (m_cloud.m_cancel) {
            break;
        }
        emit m_cloud.OnProgress(int(qint64(i + 1) * 100 / count));
        TprWord& word = *m_cloud.m_words[std::size_t(i)];
        bool mirrored = false;
        if (!chain) {
            if (m_cloud.m_direction == TprWordCloud::Mirrored) {
                mirrored = true;
            } else if (m_cloud.m_direction != TprWordCloud::Forward) {
                mirrored = m_cloud.m_random.nextInt(2) == 1;
            }
        }
        bool resume = false;
        if (chain && i > count / 10 && m_placed.count() % 8 != 0) {
            const CloudRect box = word.BoundsRect();
            word.SetBoundsRect({lastPlaced.left, lastPlaced.top, lastPlaced.left + box.width(),
                                lastPlaced.top + box.height()});
            resume = true;
        }
        if (!placeWord(word, resume, mirrored)) {
            break;
        }
        const CloudRect& box = word.BoundsRect();
        m_placed.add(box);
        m_occupancy.add(box);
        m_placedInverted = m_placedInverted || box.width() < 0 || box.height() < 0;
        word.SetVisible(true);
        lastPlaced = word.StartingBoundsRect();
        m_cloud.m_countVisibleWords = m_placed.count();
    }
    m_cloud.m_countVisibleWords = m_placed.count();
    return m_cloud.m_countVisibleWords == count;
}

} // namespace kestrum::wordcloud
