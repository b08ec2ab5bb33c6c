// Exporting a large text page (export-page): the same page shape at 4 and 16 MiB of RTF, to
// each format a text page is written to. The time per MiB should stay about the same from one
// size to the next.
//   ./build/bench/TextExportBench [--benchmark_filter=...]

#include "BenchMain.h"
#include "export/PageExports.h"
#include "store/PageType.h"

#include <QGuiApplication>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <array>
#include <map>

using namespace kestrum;

namespace {

constexpr qint64 kMiB = 1024 * 1024;

// A page of `mib` MiB: paragraphs with bold, coloured and hidden runs, one numbered list that
// goes on through the whole page (a few items after every paragraph), and a table every
// fifty paragraphs.
const QByteArray& largePage(int mib)
{
    static std::map<int, QByteArray> pages;
    QByteArray& out = pages[mib];
    if (!out.isEmpty()) {
        return out;
    }
    out = "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss Arial;}}"
          "{\\colortbl;\\red192\\green0\\blue0;}"
          "{\\*\\listtable{\\list{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00.;}}\\listid1}}"
          "{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}\n";
    static const std::array<const char*, 12> words = {
        "participants", "described", "weekly",    "rhythm",     "meetings", "central",
        "belonging",    "newcomers", "isolation", "colleagues", "hybrid",   "work"};
    QRandomGenerator random(7);
    const qint64 target = mib * kMiB;
    for (int paragraph = 0; out.size() < target; ++paragraph) {
        out += "\\pard\\sa120 ";
        for (int w = 0; w < 60; ++w) {
            const QByteArray word = words[random.bounded(int(words.size()))];
            switch (random.bounded(20)) {
            case 0:
                out += "{\\b " + word + "} ";
                break;
            case 1:
                out += "{\\cf1 " + word + "} ";
                break;
            case 2:
                out += "{\\v " + word + "} ";
                break;
            default:
                out += word + ' ';
                break;
            }
        }
        out += "\\par\n";
        for (int item = 0; item < 3; ++item) {
            out += "\\pard\\ls1 " + QByteArray(words[random.bounded(int(words.size()))]) +
                   " item\\par\n";
        }
        if (paragraph % 50 == 49) {
            for (int r = 0; r < 4; ++r) {
                out += "\\trowd\\cellx2000\\cellx4000\\cellx6000\\pard\\intbl";
                for (int c = 0; c < 3; ++c) {
                    out += ' ' + QByteArray::number(random.bounded(1000)) + "\\cell";
                }
                out += "\\row\n";
            }
        }
    }
    out += "}";
    return out;
}

const std::array<const char*, 4> kFormats = {"txt", "html", "rtf", "odt"};

void BM_ExportLargePage(benchmark::State& state)
{
    exports::PageSource page;
    page.pageId = 3;
    page.pageType = store::PageType::Text;
    page.content = largePage(int(state.range(0)));
    QTemporaryDir dir;
    const QString out =
        dir.filePath(QStringLiteral("page.") + QLatin1String(kFormats[state.range(1)]));
    for (auto _ : state) {
        const Status written = exports::exportPage(page, out);
        if (!written) {
            state.SkipWithError(qPrintable(written.error()));
            break;
        }
    }
    state.SetLabel(kFormats[state.range(1)]);
    state.SetBytesProcessed(state.iterations() * page.content.size());
    state.counters["s_per_MiB"] =
        benchmark::Counter(double(state.range(0)), benchmark::Counter::kIsIterationInvariantRate |
                                                       benchmark::Counter::kInvert);
}
BENCHMARK(BM_ExportLargePage)
    ->ArgsProduct({{4, 16}, {0, 1, 2, 3}})
    ->ArgNames({"MiB", "format"})
    ->Unit(benchmark::kSecond)
    ->Iterations(1)
    ->UseRealTime();

} // namespace

KESTRUM_BENCHMARK_MAIN(QGuiApplication)
