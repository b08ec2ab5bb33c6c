// Text page speed: reading and writing a 300-page RTF document (about 1 MB of text, with
// tables and a few pictures), and switching the text page to and from a page holding it.
//   ./build/bench/TextBench [--benchmark_filter=...]

#include "BenchMain.h"
#include "editors/text/TextPageDocument.h"
#include "editors/text/widgets/TRMWPEditor.h"
#include "editors/text/widgets/WPView.h"

#include <QApplication>
#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QTextDocument>

#include <benchmark/benchmark.h>

using namespace kestrum::text;

namespace {

constexpr int kPages = 300;

QByteArray picture(int seed)
{
    QImage image(320, 200, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QRandomGenerator random{quint32(seed)};
    for (int i = 0; i < 40; ++i) {
        painter.fillRect(int(random.bounded(300)), int(random.bounded(180)), 20,
                         int(random.bounded(100)),
                         QColor::fromHsv(int(random.bounded(360)), 160, 220));
    }
    painter.end();
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return png;
}

// A report of kPages pages: headings, paragraphs with bold, italic and coloured runs, a table
// every ten pages and a picture every sixty.
const QByteArray& sampleRtf()
{
    static const QByteArray rtf = [] {
        QByteArray out = "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss "
                         "Arial;}{\\f1\\froman Times New Roman;}}"
                         "{\\colortbl;\\red31\\green73\\blue125;\\red192\\green0\\blue0;"
                         "\\red242\\green242\\blue242;}\n";
        const char* words[] = {"participants", "described", "the",       "weekly",     "rhythm",
                               "of",           "meetings",  "as",        "central",    "to",
                               "belonging",    "while",     "newcomers", "mentioned",  "isolation",
                               "more",         "often",     "than",      "colleagues", "who",
                               "joined",       "before",    "hybrid",    "work"};
        QRandomGenerator random(1234);
        for (int page = 0; page < kPages; ++page) {
            out += "\\pard\\sb240\\sa120\\b\\fs28\\cf1 Section " + QByteArray::number(page + 1) +
                   ": interview findings\\b0\\fs22\\cf0\\par\n";
            for (int p = 0; p < 6; ++p) {
                out += "\\pard\\sa120\\sl276\\slmult1 ";
                for (int w = 0; w < 85; ++w) {
                    const QByteArray word = words[random.bounded(int(std::size(words)))];
                    switch (random.bounded(40)) {
                    case 0:
                        out += "{\\b " + word + "} ";
                        break;
                    case 1:
                        out += "{\\i " + word + "} ";
                        break;
                    case 2:
                        out += "{\\cf2 " + word + "} ";
                        break;
                    default:
                        out += word + ' ';
                        break;
                    }
                }
                out += "\\par\n";
            }
            if (page % 10 == 9) {
                for (int r = 0; r < 5; ++r) {
                    out += "\\trowd\\trgaph108";
                    for (int c = 1; c <= 4; ++c) {
                        out += "\\clbrdrt\\brdrs\\brdrw10\\clbrdrb\\brdrs\\brdrw10" +
                               QByteArray(r == 0 ? "\\clcbpat3" : "") + "\\cellx" +
                               QByteArray::number(c * 2200);
                    }
                    out += "\\pard\\intbl";
                    for (int c = 0; c < 4; ++c) {
                        out += r == 0
                                   ? QByteArray("{\\b Group ") + QByteArray::number(c) + "}\\cell "
                                   : QByteArray::number(random.bounded(100)) + "\\cell ";
                    }
                    out += "\\row\n";
                }
            }
            if (page % 60 == 30) {
                out += "\\pard\\qc{\\pict\\pngblip\\picwgoal4800\\pichgoal3000\n" +
                       picture(page).toHex() + "}\\par\n";
            }
        }
        out += "}";
        return out;
    }();
    return rtf;
}

void BM_ReadRtf(benchmark::State& state)
{
    const QByteArray& rtf = sampleRtf();
    TextPageDocument document;
    for (auto _ : state) {
        if (const kestrum::Status read = document.readContent(rtf); !read) {
            state.SkipWithError(qPrintable(read.error()));
            break;
        }
        benchmark::DoNotOptimize(document.textDocument()->characterCount());
    }
    state.counters["bytes"] = double(rtf.size());
    state.counters["characters"] = double(document.textDocument()->characterCount());
}
BENCHMARK(BM_ReadRtf)->Unit(benchmark::kMillisecond);

void BM_WriteRtf(benchmark::State& state)
{
    TextPageDocument document;
    if (const kestrum::Status read = document.readContent(sampleRtf()); !read) {
        state.SkipWithError(qPrintable(read.error()));
        return;
    }
    QByteArray out;
    for (auto _ : state) {
        out = document.writeContent().value_or(QByteArray());
        benchmark::DoNotOptimize(out.size());
    }
    state.counters["bytes"] = double(out.size());
}
BENCHMARK(BM_WriteRtf)->Unit(benchmark::kMillisecond);

// Showing the page: the store's GetWP reads it into the editor, and the window paints it.
void BM_SwitchToPage(benchmark::State& state)
{
    TRMWPEditor editor;
    editor.resize(900, 700);
    editor.show();
    for (auto _ : state) {
        if (const kestrum::Status read = editor.pageDocument().readContent(sampleRtf()); !read) {
            state.SkipWithError(qPrintable(read.error()));
            break;
        }
        editor.view()->viewport()->repaint();
        QCoreApplication::processEvents();
        state.PauseTiming();
        editor.pageDocument().clear();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_SwitchToPage)->Unit(benchmark::kMillisecond);

// Leaving the page after an edit: SaveWP writes it, and the editor is cleared for the next
// page (a page of another kind clears it too).
void BM_SwitchFromPage(benchmark::State& state)
{
    TRMWPEditor editor;
    editor.resize(900, 700);
    editor.show();
    QByteArray out;
    for (auto _ : state) {
        state.PauseTiming();
        if (const kestrum::Status read = editor.pageDocument().readContent(sampleRtf()); !read) {
            state.SkipWithError(qPrintable(read.error()));
            break;
        }
        editor.view()->viewport()->repaint();
        QCoreApplication::processEvents();
        state.ResumeTiming();
        out = editor.pageDocument().writeContent().value_or(QByteArray());
        editor.pageDocument().clear();
        QCoreApplication::processEvents();
    }
}
BENCHMARK(BM_SwitchFromPage)->Unit(benchmark::kMillisecond);

} // namespace

KESTRUM_BENCHMARK_MAIN(QApplication)
