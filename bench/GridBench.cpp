// Grid page speed on a 100,000-cell table (10,000 rows x 10 columns): CSV import, stream save
// and load, each export, and showing the page in the editor.
//   ./build/bench/GridBench [--benchmark_filter=...]

#include "BenchMain.h"
#include "editors/grid/DelimitedTextReader.h"
#include "editors/grid/DelimitedTextWriter.h"
#include "editors/grid/GridExporter.h"
#include "editors/grid/GridRowSizer.h"
#include "editors/grid/GridStream.h"
#include "editors/grid/widgets/GridView.h"
#include "editors/grid/widgets/TRMGridEditor.h"

#include <QApplication>

#include <benchmark/benchmark.h>

using namespace kestrum::grid;

namespace {

constexpr int kRows = 10000;
constexpr int kCols = 10;

// A coded-segments table as the host hands it over: ids, document names, codes, counts,
// percentages and passages.
const GridDocument& table()
{
    static const GridDocument grid = [] {
        GridDocument g;
        g.setSize(kCols, kRows);
        const QStringList header{"Id",    "Document", "Code", "Paragraph", "Words",
                                 "Share", "Coder",    "Date", "Weight",    "Passage"};
        for (int c = 0; c < kCols; ++c) {
            g.setText(c, 0, header[c]);
        }
        for (int r = 1; r < kRows; ++r) {
            g.setText(0, r, QString::number(r));
            g.setText(1, r, QStringLiteral("Interview %1").arg(r % 24 + 1));
            g.setText(2, r, QStringLiteral("Code %1").arg(r % 37));
            g.setText(3, r, QString::number(r % 80 + 1));
            g.setText(4, r, QString::number(20 + r % 170));
            g.setText(5, r, QStringLiteral("%1%").arg((r % 1000) / 10.0, 0, 'f', 1));
            g.setText(6, r, r % 2 ? QStringLiteral("AK") : QStringLiteral("MB"));
            g.setText(7, r, QStringLiteral("2026-10-%1").arg(r % 28 + 1, 2, 10, QLatin1Char('0')));
            g.setText(8, r, QString::number((r % 97) / 7.0, 'f', 2));
            g.setText(
                9, r,
                QStringLiteral("\"We kept the Monday call, no matter what\", said participant %1.")
                    .arg(r % 24));
        }
        GridCellFormat bold;
        bold.fontStyle = FontStyle::Bold;
        for (int c = 0; c < kCols; ++c) {
            g.setFormat(c, 0, bold);
        }
        return g;
    }();
    return grid;
}

void BM_CsvImport(benchmark::State& state)
{
    const QByteArray csv = DelimitedTextWriter::write(table(), QLatin1Char(','));
    for (auto _ : state) {
        GridDocument g;
        if (const kestrum::Status read = DelimitedTextReader::load(csv, QLatin1Char(','), &g);
            !read) {
            state.SkipWithError(qPrintable(read.error()));
            break;
        }
        benchmark::DoNotOptimize(g.cellCount());
    }
    state.counters["bytes"] = double(csv.size());
}
BENCHMARK(BM_CsvImport)->Unit(benchmark::kMillisecond);

void BM_StreamSave(benchmark::State& state)
{
    for (auto _ : state) {
        const QByteArray bytes = GridStream::write(table());
        benchmark::DoNotOptimize(bytes.size());
    }
}
BENCHMARK(BM_StreamSave)->Unit(benchmark::kMillisecond);

void BM_StreamLoad(benchmark::State& state)
{
    const QByteArray bytes = GridStream::write(table());
    for (auto _ : state) {
        GridDocument g;
        if (const kestrum::Status read = GridStream::read(bytes, &g); !read) {
            state.SkipWithError(qPrintable(read.error()));
            break;
        }
        benchmark::DoNotOptimize(g.cellCount());
    }
    state.counters["bytes"] = double(bytes.size());
}
BENCHMARK(BM_StreamLoad)->Unit(benchmark::kMillisecond);

void BM_Export(benchmark::State& state)
{
    const int format = int(state.range(0));
    qint64 size = 0;
    for (auto _ : state) {
        const kestrum::Result<QByteArray> bytes = GridExporter::encode(table(), format);
        if (!bytes) {
            state.SkipWithError(qPrintable(bytes.error()));
            break;
        }
        size = bytes->size();
    }
    state.SetLabel(GridExporter::extensionFor(format).toStdString());
    state.counters["bytes"] = double(size);
}
BENCHMARK(BM_Export)->DenseRange(1, 8)->Unit(benchmark::kMillisecond);

// Multi-line mode: every row fitted to its wrapped texts.
void BM_MultilineHeights(benchmark::State& state)
{
    for (auto _ : state) {
        const std::vector<int> heights = GridRowSizer::multilineHeights(table(), true);
        benchmark::DoNotOptimize(heights.data());
    }
}
BENCHMARK(BM_MultilineHeights)->Unit(benchmark::kMillisecond);

// Showing a page: the store hands the stream to the editor's document; the view follows.
void BM_ShowPage(benchmark::State& state)
{
    const QByteArray bytes = GridStream::write(table());
    TRMGridEditor editor;
    editor.resize(1200, 800);
    editor.show();
    QApplication::processEvents();
    for (auto _ : state) {
        editor.document().clear();
        if (const kestrum::Status read = editor.document().readContent(bytes); !read) {
            state.SkipWithError(qPrintable(read.error()));
            break;
        }
        QApplication::processEvents(); // layout and the first paint
    }
}
BENCHMARK(BM_ShowPage)->Unit(benchmark::kMillisecond);

// Scrolling through the table: painting one screen of cells.
void BM_PaintScreen(benchmark::State& state)
{
    TRMGridEditor editor;
    if (const kestrum::Status read = editor.document().readContent(GridStream::write(table()));
        !read) {
        state.SkipWithError(qPrintable(read.error()));
        return;
    }
    editor.resize(1200, 800);
    editor.show();
    QApplication::processEvents();
    int row = 0;
    for (auto _ : state) {
        row = (row + 37) % (kRows - 50);
        editor.view()->setCurrentCell({1, row + 1});
        editor.view()->viewport()->repaint();
    }
}
BENCHMARK(BM_PaintScreen)->Unit(benchmark::kMillisecond);

} // namespace

KESTRUM_BENCHMARK_MAIN(QApplication)
