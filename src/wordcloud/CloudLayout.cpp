#include "CloudLayout.h"

#include "CloudRandom.h"
#include "SpiralPlacer.h"
#include "TprWordCloud.h"
#include "WordCloudLog.h"
#include "common/Rounding.h"

#include <QMetaMethod>
#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cmath>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace kestrum::wordcloud {

using common::roundHalfEven;

namespace {

// The coverage fit never grows a font beyond this size.
constexpr qint32 kMaxFitSize = 32768;
// A placing thread reports how far it got every this many words.
constexpr int kReportEvery = 32;
// How long the first run may take before lower coverages are sized and placed beside it.
constexpr std::chrono::milliseconds kHeadStart{5};

// The placing threads of every layout. They outlive a layout, so a small cloud does not pay
// for starting threads; a layout waits for its own runs, never for the pool.
QThreadPool& placingPool()
{
    static QThreadPool* pool = [] {
        auto* created = new QThreadPool;
        created->setMaxThreadCount(std::max(1, QThread::idealThreadCount()));
        return created;
    }();
    return *pool;
}

} // namespace

// One run at one coverage: the words' sizes and start boxes as the sizing left them, and what
// placing them gave. Placing runs on any thread; the rest of the layout reads the outcome under
// the mutex.
struct CloudLayout::Attempt
{
    float coverage = 0;
    std::vector<qint32> sizes;
    std::vector<CloudRect> start;
    std::vector<CloudRect> walked;
    SpiralPlacer::Options options;
    CloudRandom random;
    // Placing stops before any word after this one.
    std::atomic<int> stopAfter{INT_MAX};

    std::mutex mutex;
    std::condition_variable changed;
    int done = 0; // words placed so far
    bool finished = false;
    int placed = 0;

    // Whether placing ended within `wait`.
    bool finishesWithin(std::chrono::milliseconds wait)
    {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, wait, [this] { return finished; });
    }

    void waitUntilFinished()
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return finished; });
    }

    void place()
    {
        walked = start;
        const int count = SpiralPlacer(options).placeAll(walked, random, [this](int i) {
            if (i > stopAfter.load(std::memory_order_relaxed)) {
                return false;
            }
            if (i % kReportEvery == 0 && i > 0) {
                const std::lock_guard lock(mutex);
                done = i;
                changed.notify_all();
            }
            return true;
        });
        const std::lock_guard lock(mutex);
        done = count;
        placed = count;
        finished = true;
        changed.notify_all();
    }
};

CloudLayout::CloudLayout(TprWordCloud& cloud) : m_cloud(cloud) {}

CloudLayout::~CloudLayout() = default;

bool CloudLayout::run(bool resetPosition)
{
    const bool reference = m_cloud.m_referenceLayout;
    // The reference layout runs one coverage after the other on this thread. Otherwise the
    // next lower coverages are sized here and placed on other threads while the current one is
    // still being placed: each starts from the same reset words and draws from a generator of
    // its own, so none depends on another, and the outcome is the one the runs in turn give.
    // Every run handed to the pool is waited for before the runs go away.
    std::deque<std::unique_ptr<Attempt>> attempts;
    QThreadPool* pool = reference ? nullptr : &placingPool();
    int ahead = pool ? pool->maxThreadCount() : 1;
    auto launch = [&](std::unique_ptr<Attempt> attempt) {
        Attempt* a = attempt.get();
        attempts.push_back(std::move(attempt));
        if (pool) {
            pool->start([a] { a->place(); });
        } else {
            a->place();
        }
    };

    float coverage = resetPosition ? m_cloud.m_coverage : m_cloud.m_currentCoverage;
    launch(prepare(resetPosition, coverage));
    bool more = true; // whether lower coverages remain to be tried
    bool placedAll = false;
    // Sizes and starts the runs at the next lower coverages until `want` are under way.
    auto queueRetries = [&](std::size_t want) {
        while (more && attempts.size() < want) {
            const float lower = float(double(coverage) - 0.05);
            if (!m_cloud.m_autoResizeCoverage || !(lower > 0)) {
                more = false;
                break;
            }
            coverage = lower;
            for (auto& word : m_cloud.m_words) {
                word->SetStartingBoundsRect({});
                word->SetSize(word->Weight());
                word->SetStartingPosition();
            }
            launch(prepare(false, coverage));
        }
    };
    // A small cloud is placed before the next coverage could be sized: size it only when
    // the first run takes a while.
    if (pool && attempts.front()->finishesWithin(kHeadStart)) {
        ahead = 1;
    }
    for (;;) {
        queueRetries(std::size_t(ahead));
        Attempt& attempt = *attempts.front();
        const Outcome outcome = replay(attempt);
        if (outcome.placed == int(attempt.start.size())) {
            m_cloud.m_currentCoverage = attempt.coverage;
            commit(attempt, outcome);
            placedAll = true;
            break;
        }
        qCDebug(lcWordCloud).nospace().noquote() << "Coverage Too High: " << attempt.coverage;
        queueRetries(2);
        if (attempts.size() == 1) {
            // No retry: the lowered coverage (when lowering is on) is what remains.
            m_cloud.m_currentCoverage = m_cloud.m_autoResizeCoverage
                                            ? float(double(attempt.coverage) - 0.05)
                                            : attempt.coverage;
            commit(attempt, outcome);
            break;
        }
        // Its placing has ended (replay waits for that): the next coverage takes over.
        attempts.pop_front();
    }
    for (auto& attempt : attempts) {
        attempt->stopAfter.store(-1);
    }
    for (auto& attempt : attempts) {
        attempt->waitUntilFinished();
    }
    return placedAll;
}

std::unique_ptr<CloudLayout::Attempt> CloudLayout::prepare(bool resetPosition, float coverage)
{
    const CloudRect area = m_cloud.GetCanvasDimension();
    sortWords();
    m_cloud.m_currentCoverage = coverage;
    m_cloud.m_stepX = quint8(std::clamp<qint64>(roundHalfEven(area.width() / 150.0), 1, 255));
    m_cloud.m_stepY = quint8(std::clamp<qint64>(roundHalfEven(area.height() / 150.0), 1, 255));
    m_cloud.m_startingCanvasRect = area;

    capWeights();
    fitSizesToCoverage();
    reproportionToWeight();
    auto attempt = std::make_unique<Attempt>();
    attempt->coverage = coverage;
    attempt->sizes.reserve(m_cloud.m_words.size());
    attempt->start.reserve(m_cloud.m_words.size());
    for (auto& word : m_cloud.m_words) {
        word->SetVisible(false);
        if (resetPosition) {
            word->SetStartingPosition();
        }
        attempt->sizes.push_back(word->FontSize());
        attempt->start.push_back(word->BoundsRect());
    }
    SpiralPlacer::Options& options = attempt->options;
    options.area = area;
    options.budget = m_cloud.CanvasArea();
    options.stepX = m_cloud.m_stepX;
    options.stepY = m_cloud.m_stepY;
    options.ellipse = m_cloud.m_cloudShape == TprWordCloud::Ellipse;
    options.chain = m_cloud.m_placeCenter && m_cloud.m_continueFromLastWord;
    options.direction = m_cloud.m_direction;
    options.reference = m_cloud.m_referenceLayout;
    attempt->random = m_cloud.m_random;
    attempt->random.reseedFromClock();
    return attempt;
}

CloudLayout::Outcome CloudLayout::replay(Attempt& attempt)
{
    const int count = int(attempt.start.size());
    m_cloud.m_cancel = false;
    std::unique_lock lock(attempt.mutex);
    if (!m_cloud.isSignalConnected(QMetaMethod::fromSignal(&TprWordCloud::OnProgress))) {
        attempt.changed.wait(lock, [&] { return attempt.finished; });
        return {attempt.placed, std::min(count, attempt.placed + 1)};
    }
    // Progress before each word that the run reached, in turn; a cancel ends the run after the
    // word under way, as if the run had stopped there.
    for (int i = 0;;) {
        attempt.changed.wait(lock, [&] { return attempt.finished || attempt.done >= i; });
        const int reached = attempt.finished ? std::min(attempt.placed, count - 1) : attempt.done;
        lock.unlock();
        for (; i <= reached; ++i) {
            emit m_cloud.OnProgress(int(qint64(i + 1) * 100 / count));
            if (m_cloud.m_cancel) {
                attempt.stopAfter.store(i);
                lock.lock();
                attempt.changed.wait(lock, [&] { return attempt.finished; });
                return {std::min(attempt.placed, i + 1), i + 1};
            }
        }
        lock.lock();
        if (attempt.finished && i > std::min(attempt.placed, count - 1)) {
            return {attempt.placed, std::min(count, attempt.placed + 1)};
        }
    }
}

void CloudLayout::commit(const Attempt& attempt, const Outcome& outcome)
{
    for (std::size_t i = 0; i < m_cloud.m_words.size(); ++i) {
        TprWord& word = *m_cloud.m_words[i];
        word.SetSize(attempt.sizes[i]);
        word.SetStartingBoundsRect(int(i) < outcome.tried ? attempt.walked[i] : attempt.start[i]);
        word.SetVisible(int(i) < outcome.placed);
    }
    m_cloud.m_countVisibleWords = outcome.placed;
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

} // namespace kestrum::wordcloud
