// Diagram page speed on a 2,000-block, 5,000-link diagram: loading a page into the editor,
// fitting it, one repaint of the surface, one zoom step, and the headless picture.
//   ./build/bench/DiagramBench [--benchmark_filter=...]
// Aim: a repaint under 16 ms.

#include "BenchMain.h"
#include "editors/diagram/DiagramDocument.h"
#include "editors/diagram/DiagramRenderer.h"
#include "editors/diagram/DiagramStream.h"
#include "editors/diagram/widgets/DiagramView.h"
#include "editors/diagram/widgets/TRMDiagramEditor.h"

#include <QAction>
#include <QApplication>
#include <QImage>
#include <QPainter>

#include <cmath>

using namespace kestrum::diagram;

namespace {

constexpr int kBlocks = 2000;
constexpr int kLinks = 5000;

// Blocks on a grid of 50 columns with a text each; each block linked to two or three of its
// neighbours (right, below, diagonal), with weights, as a laid-out concept diagram has them.
const QByteArray& content()
{
    static const QByteArray bytes = [] {
        DiagramDocument d;
        for (int i = 0; i < kBlocks; ++i) {
            DiagramBlock b;
            b.left = (i % 50) * 90.0;
            b.top = (i / 50) * 90.0;
            b.width = 40;
            b.height = 40;
            b.shape = quint8(1 + i % 5);
            b.colour = 0xDA985C;
            b.cells.front().text = QStringLiteral("Code %1").arg(i);
            d.blocks().push_back(b);
        }
        for (int i = 0; i < kLinks; ++i) {
            DiagramLink l;
            l.source = i % kBlocks;
            constexpr int kNeighbours[] = {1, 50, 51, 49, 2};
            l.target = (l.source + kNeighbours[i / kBlocks + (i % 2) * 2]) % kBlocks;
            l.penWidth = 1 + i % 4;
            l.cells.front().text = QString::number(0.1 * (i % 20), 'f', 1);
            l.cells.front().font.size = 6;
            d.links().push_back(l);
        }
        return DiagramStream::write(d);
    }();
    return bytes;
}

struct EditorFixture
{
    EditorFixture()
    {
        editor.resize(1200, 800);
        editor.show();
        // The sample is this program's own stream: it always reads.
        static_cast<void>(editor.document().readContent(content()));
        QApplication::processEvents();
    }
    TRMDiagramEditor editor;
};

void BM_ReadStream(benchmark::State& state)
{
    for (auto _ : state) {
        auto d = DiagramStream::read(content());
        benchmark::DoNotOptimize(d.ok());
    }
}
BENCHMARK(BM_ReadStream)->Unit(benchmark::kMillisecond);

void BM_LoadPageIntoEditor(benchmark::State& state)
{
    TRMDiagramEditor editor;
    editor.resize(1200, 800);
    for (auto _ : state) {
        if (const kestrum::Status read = editor.document().readContent(content()); !read) {
            state.SkipWithError(qPrintable(read.error()));
            break;
        }
    }
}
BENCHMARK(BM_LoadPageIntoEditor)->Unit(benchmark::kMillisecond);

void BM_FitToCenter(benchmark::State& state)
{
    EditorFixture f;
    for (auto _ : state) {
        f.editor.FitToCenter();
    }
}
BENCHMARK(BM_FitToCenter)->Unit(benchmark::kMillisecond);

// One repaint of the whole surface at the fitted zoom (every item visible), and at 100 %.
void BM_RepaintSurface(benchmark::State& state)
{
    EditorFixture f;
    if (state.range(0) == 0) {
        f.editor.FitToCenter();
    }
    QApplication::processEvents();
    QWidget* viewport = f.editor.view()->viewport();
    QImage target(viewport->size(), QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        QPainter painter(&target);
        viewport->render(&painter);
    }
    state.SetLabel(state.range(0) == 0 ? "whole diagram" : "zoom 100");
}
BENCHMARK(BM_RepaintSurface)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_ZoomStep(benchmark::State& state)
{
    EditorFixture f;
    QAction* zoomIn = f.editor.action(QStringLiteral("btnDiagramZoomIn"));
    QAction* zoomOut = f.editor.action(QStringLiteral("btnDiagramZoomOut"));
    int i = 0;
    for (auto _ : state) {
        (i++ % 2 ? zoomOut : zoomIn)->trigger();
    }
}
BENCHMARK(BM_ZoomStep)->Unit(benchmark::kMillisecond);

void BM_HeadlessPicture(benchmark::State& state)
{
    auto d = DiagramStream::read(content());
    d->setZoom(25);
    for (auto _ : state) {
        QImage image = DiagramRenderer::toImage(*d);
        benchmark::DoNotOptimize(image.bits());
    }
}
BENCHMARK(BM_HeadlessPicture)->Unit(benchmark::kMillisecond);

} // namespace

KESTRUM_BENCHMARK_MAIN(QApplication)
