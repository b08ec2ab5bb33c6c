// Word cloud layout and rendering on an 800 x 600 drawing area with default options:
// clouds of 100, 500 and 2,000 distinct words, the weight of the i-th word being
// max(1, round(1000 / (i + 1)^0.8)).
//
//   ./build/bench/WordCloudBench [--benchmark_filter=...]
//
// Counters: words, placed, covered (share of the drawing area covered by the placed boxes) and
// coverage (the coverage the final run used).
//
// Memory: BM_Memory/N runs once and reports what a new cloud of N words costs from adding the
// words to painting it: heldKiB (resident memory still held with the cloud alive) and peakKiB
// (growth of the peak resident size). Run it alone in a fresh process, e.g.
//   ./build/bench/WordCloudBench --benchmark_filter='BM_Memory/2000/'
// so that neither earlier benchmarks nor the allocator's reuse of their memory hide it. Both
// figures include the font engine's first use (font files, shaping and glyph caches).

#include "BenchMain.h"
#include "common/Rounding.h"
#include "wordcloud/TprWordCloud.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>

#include <cmath>
#include <memory>

using kestrum::wordcloud::TprWordCloud;

namespace {

long peakRssKiB()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

long residentKiB()
{
    long pages = 0;
    long resident = 0;
    if (FILE* f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) {
            resident = 0;
        }
        std::fclose(f);
    }
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

// Distinct pronounceable words: syllables counted out in base 16.
QString syntheticWord(int i)
{
    static const char* const syllables[] = {"ka", "lo",  "mi", "ren", "to",  "sa", "vel", "du",
                                            "ni", "por", "e",  "gar", "shi", "an", "bo",  "tre"};
    QString word;
    int n = i;
    do {
        word += QLatin1String(syllables[n % 16]);
        n /= 16;
    } while (n > 0);
    return word + QLatin1String(i % 3 == 0 ? "ing" : (i % 3 == 1 ? "ity" : "s"));
}

std::unique_ptr<TprWordCloud> makeCloud(int count)
{
    auto cloud = std::make_unique<TprWordCloud>();
    // Default margins of 10: an 820 x 620 client gives the 800 x 600 drawing area.
    cloud->SetClientSize(QSize(820, 620));
    cloud->SetRandomSeed(20240601);
    for (int i = 0; i < count; ++i) {
        const double w = 1000.0 / std::pow(double(i + 1), 0.8);
        cloud->AddWord(syntheticWord(i),
                       qint32(std::max<qint64>(1, kestrum::common::roundHalfEven(w))));
    }
    return cloud;
}

void report(benchmark::State& state, TprWordCloud& cloud)
{
    const auto area = cloud.GetCanvasDimension();
    qint64 covered = 0;
    for (const auto& word : cloud.Words()) {
        if (word->Visible()) {
            covered += word->BoundsRect().area();
        }
    }
    state.counters["words"] = cloud.WordCount();
    state.counters["placed"] = cloud.CountVisibleWords();
    state.counters["covered"] = double(covered) / double(area.area());
    state.counters["coverage"] = cloud.CurrentCoverage();
}

// A new cloud each time: adding the words (shaping each text once) and the first layout.
void BM_LayoutCold(benchmark::State& state)
{
    std::unique_ptr<TprWordCloud> cloud;
    for (auto _ : state) {
        state.PauseTiming();
        cloud.reset();
        state.ResumeTiming();
        cloud = makeCloud(int(state.range(0)));
        benchmark::DoNotOptimize(cloud->GenerateCloud(true));
    }
    report(state, *cloud);
}

// Laying out the same cloud again, as after an option change.
void BM_Layout(benchmark::State& state)
{
    auto cloud = makeCloud(int(state.range(0)));
    cloud->GenerateCloud(true);
    for (auto _ : state) {
        benchmark::DoNotOptimize(cloud->GenerateCloud(true));
    }
    report(state, *cloud);
}

// Painting a laid-out cloud onto an 820 x 620 bitmap (background, colours, shadows, words).
void BM_Render(benchmark::State& state)
{
    auto cloud = makeCloud(int(state.range(0)));
    cloud->GenerateCloud(true);
    QImage image(cloud->ClientSize(), QImage::Format_RGB32);
    for (auto _ : state) {
        QPainter painter(&image);
        cloud->PaintCloud(painter);
    }
    report(state, *cloud);
}

// The same picture as SVG, the glyphs as paths.
void BM_RenderSvg(benchmark::State& state)
{
    auto cloud = makeCloud(int(state.range(0)));
    cloud->GenerateCloud(true);
    for (auto _ : state) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        cloud->SaveToMetafile(buffer);
        state.counters["svgKiB"] = double(bytes.size()) / 1024.0;
    }
    report(state, *cloud);
}

// A new cloud: add, lay out and paint once, and what that leaves resident.
void BM_Memory(benchmark::State& state)
{
    const long peak = peakRssKiB();
    const long resident = residentKiB();
    std::unique_ptr<TprWordCloud> cloud;
    for (auto _ : state) {
        cloud = makeCloud(int(state.range(0)));
        cloud->GenerateCloud(true);
        benchmark::DoNotOptimize(cloud->SaveToBitmap());
    }
    report(state, *cloud);
    state.counters["heldKiB"] = double(residentKiB() - resident);
    state.counters["peakKiB"] = double(peakRssKiB() - peak);
}

// The layout places lower coverages on other threads: CPU time counts every thread.
BENCHMARK(BM_LayoutCold)
    ->Arg(100)
    ->Arg(500)
    ->Arg(2000)
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Layout)->Arg(100)->Arg(500)->Arg(2000)->MeasureProcessCPUTime()->Unit(
    benchmark::kMillisecond);
BENCHMARK(BM_Render)->Arg(100)->Arg(500)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RenderSvg)->Arg(100)->Arg(500)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Memory)->Arg(100)->Arg(500)->Arg(2000)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

KESTRUM_BENCHMARK_MAIN(QGuiApplication)
