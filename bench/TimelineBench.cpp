// Timeline page speed with 5,000 events over thirty years: loading the page text, writing it,
// the sort of layout mode 1, and one repaint of the timeline control at a desktop size.
//   ./build/bench/TimelineBench [--benchmark_filter=...]

#include "BenchMain.h"
#include "editors/timeline/TimelineEvents.h"
#include "editors/timeline/TimelineRenderer.h"
#include "editors/timeline/TimelineText.h"
#include "editors/timeline/widgets/TimelineView.h"

#include <QApplication>
#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>

using namespace kestrum::timeline;

namespace {

constexpr int kEvents = 5000;
const QSize kControl(1200, 500);

const QString& pageText()
{
    static const QString text = [] {
        TimelineModel m;
        m.minimumRange = 32874; // 1990
        m.maximumRange = 43831; // 2020
        m.rangeFrom = m.minimumRange;
        m.rangeTo = m.maximumRange;
        for (int i = 0; i < kEvents; ++i) {
            TimelineEvent e = m.newEvent();
            e.position = m.minimumRange + (i * 7919 % 10957) + (i % 24) / 24.0;
            e.annotation = QStringLiteral("Event %1 of the study").arg(i);
            e.hint = QStringLiteral("Coded passage %1, interview %2").arg(i).arg(i % 24 + 1);
            m.links << QStringLiteral("Interview %1\tpar. %2\tInterviews\t2\tCode %3")
                           .arg(i % 24 + 1)
                           .arg(i % 90)
                           .arg(i % 37);
            e.tag = i;
            m.events.push_back(e);
        }
        return TimelineText::SaveTimeLineToString(m);
    }();
    return text;
}

TimelineModel loaded()
{
    TimelineModel m;
    if (!TimelineText::LoadTimeLinefromString(m, pageText()).ok()) {
        qFatal("the benchmark page does not load");
    }
    return m;
}

void BM_LoadText(benchmark::State& state)
{
    const QString& text = pageText();
    for (auto _ : state) {
        TimelineModel m;
        benchmark::DoNotOptimize(TimelineText::LoadTimeLinefromString(m, text).ok());
    }
    state.SetItemsProcessed(state.iterations() * kEvents);
}
BENCHMARK(BM_LoadText)->Unit(benchmark::kMillisecond);

void BM_SaveText(benchmark::State& state)
{
    const TimelineModel m = loaded();
    for (auto _ : state) {
        benchmark::DoNotOptimize(TimelineText::SaveTimeLineToString(m));
    }
}
BENCHMARK(BM_SaveText)->Unit(benchmark::kMillisecond);

void BM_SortForLayoutMode1(benchmark::State& state)
{
    const TimelineModel m = loaded();
    for (auto _ : state) {
        TimelineModel copy = m;
        TimelineEvents::applyLayoutMode(copy, LayoutMode::Alternate, kControl.height());
        benchmark::DoNotOptimize(copy.events.data());
    }
}
BENCHMARK(BM_SortForLayoutMode1)->Unit(benchmark::kMillisecond);

// One repaint of the whole range (every event visible) into an image of the control's size.
void BM_RepaintWholeRange(benchmark::State& state)
{
    TimelineModel m = loaded();
    TimelineEvents::applyLayoutMode(m, LayoutMode::Alternate, kControl.height());
    QImage image(kControl, QImage::Format_RGB32);
    for (auto _ : state) {
        QPainter p(&image);
        TimelineRenderer::paint(p, m, kControl);
    }
}
BENCHMARK(BM_RepaintWholeRange)->Unit(benchmark::kMillisecond);

// One repaint of a one-year window: the usual view after zooming in.
void BM_RepaintOneYear(benchmark::State& state)
{
    TimelineModel m = loaded();
    m.rangeFrom = 40179;
    m.rangeTo = 40544;
    TimelineEvents::applyLayoutMode(m, LayoutMode::Alternate, kControl.height());
    QImage image(kControl, QImage::Format_RGB32);
    for (auto _ : state) {
        QPainter p(&image);
        TimelineRenderer::paint(p, m, kControl);
    }
}
BENCHMARK(BM_RepaintOneYear)->Unit(benchmark::kMillisecond);

// The control itself: a repaint through the widget (grab renders it once).
void BM_RepaintControl(benchmark::State& state)
{
    TimelineModel m = loaded();
    TimelineEvents::applyLayoutMode(m, LayoutMode::Alternate, kControl.height());
    TimelineView view(&m);
    view.resize(kControl);
    for (auto _ : state) {
        benchmark::DoNotOptimize(view.grab());
    }
}
BENCHMARK(BM_RepaintControl)->Unit(benchmark::kMillisecond);

} // namespace

KESTRUM_BENCHMARK_MAIN(QApplication)
