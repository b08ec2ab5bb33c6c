// Chart page speed on charts of 10,000 points: stream save and load, and one render of each
// kind at 800 x 500 pixels.
//   ./build/bench/ChartBench [--benchmark_filter=...]

#include "BenchMain.h"
#include "editors/chart/ChartRenderer.h"
#include "editors/chart/ChartStream.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <cmath>

using namespace kestrum::chart;

namespace {

constexpr int kPoints = 10000;

// Four series of 2,500 points: labelled categories for the 2D kinds, a spiral for points.
Chart chartOf(SeriesKind kind)
{
    Chart c;
    c.title = QStringLiteral("Passages per paragraph");
    for (int s = 0; s < 4; ++s) {
        ChartSeries series;
        series.kind = kind;
        series.title = QStringLiteral("Group %1").arg(s + 1);
        for (int i = 0; i < kPoints / 4; ++i) {
            ChartPoint p;
            p.x = std::cos(i * 0.05) * i + s;
            p.y = std::sin(i * 0.05) * i + 10 * s + 0.01 * i;
            p.z = i % 100;
            p.label = QStringLiteral("P%1").arg(i);
            series.points.push_back(p);
        }
        c.series.push_back(std::move(series));
    }
    return c;
}

void BM_StreamSave(benchmark::State& state)
{
    const Chart c = chartOf(SeriesKind::Line);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ChartStream::write(c));
    }
}
BENCHMARK(BM_StreamSave)->Unit(benchmark::kMillisecond);

void BM_StreamLoad(benchmark::State& state)
{
    const QByteArray bytes = ChartStream::write(chartOf(SeriesKind::Line));
    for (auto _ : state) {
        auto chart = ChartStream::read(bytes);
        benchmark::DoNotOptimize(chart);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * bytes.size());
}
BENCHMARK(BM_StreamLoad)->Unit(benchmark::kMillisecond);

void BM_Render(benchmark::State& state)
{
    const Chart c = chartOf(SeriesKind(state.range(0)));
    QImage image(800, 500, QImage::Format_RGB32);
    for (auto _ : state) {
        QPainter painter(&image);
        ChartRenderer::paint(painter, QRectF(0, 0, 800, 500), c);
    }
}
BENCHMARK(BM_Render)
    ->Arg(int(SeriesKind::Bar))
    ->Arg(int(SeriesKind::Line))
    ->Arg(int(SeriesKind::Point))
    ->Arg(int(SeriesKind::Point3D))
    ->Arg(int(SeriesKind::Pie))
    ->Unit(benchmark::kMillisecond);

} // namespace

KESTRUM_BENCHMARK_MAIN(QGuiApplication)
