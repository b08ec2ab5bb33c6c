// The project store at report scale: 10,000 pages of 20 KB text each, a 10,000-node outline.
// Appending pages, opening the project, writing the outline, reading one page, and taking in
// 10,000 handed-over records.

#include "BenchChecks.h"
#include "BenchMain.h"
#include "common/DayCount.h"
#include "store/OutlineStream.h"
#include "store/PageTable.h"
#include "store/RawPageDocument.h"
#include "store/SqliteDatabase.h"
#include "store/TRMData.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QStandardPaths>

#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace kestrum::store;
using kestrum::Status;
using kestrum::bench::failed;
using kestrum::bench::require;

namespace {

constexpr int kPages = 10000;
constexpr int kPageBytes = 20 * 1024;

QString benchDir()
{
    const QString dir = QDir::tempPath() + QStringLiteral("/kestrum-bench");
    QDir().mkpath(dir);
    return dir;
}

// Text that compresses like prose: words drawn from a vocabulary.
QByteArray pageText(QRandomGenerator& rng)
{
    static const char* words[] = {
        "team",   "remote",  "meeting", "the",  "of",         "and",         "belonging", "rhythm",
        "weekly", "manager", "written", "chat", "interview",  "participant", "office",    "hybrid",
        "trust",  "a",       "to",      "in",   "colleagues", "calendar",    "isolation", "code"};
    QByteArray text;
    text.reserve(kPageBytes + 32);
    text += "{\\rtf1\\ansi ";
    while (text.size() < kPageBytes) {
        text += words[rng.bounded(int(std::size(words)))];
        text += rng.bounded(12) == 0 ? ". " : " ";
    }
    text += '}';
    return text;
}

std::vector<QByteArray> samplePages(int count)
{
    QRandomGenerator rng(2026);
    std::vector<QByteArray> pages;
    pages.reserve(std::size_t(count));
    for (int i = 0; i < count; ++i) {
        pages.push_back(pageText(rng));
    }
    return pages;
}

// The outline of a report: folders of 100 pages each under the project node.
std::unique_ptr<OutlineNode> buildOutline(int pages, int firstId)
{
    OutlineNodeData rootData;
    rootData.caption = QStringLiteral("Bench report");
    rootData.imageIndex = PageType::OutlineRoot;
    rootData.data = 5;
    auto root = std::make_unique<OutlineNode>(rootData);
    OutlineNode* folder = nullptr;
    for (int i = 0; i < pages; ++i) {
        if (i % 100 == 0) {
            OutlineNodeData f;
            f.caption = QStringLiteral("Session %1").arg(i / 100);
            f.imageIndex = PageType::Folder;
            f.expanded = true;
            folder = root->appendChildUnchecked(std::make_unique<OutlineNode>(f));
        }
        OutlineNodeData p;
        p.caption = QStringLiteral("Coded passage %1").arg(i);
        p.imageIndex = PageType::Text;
        p.data = firstId + i;
        folder->appendChildUnchecked(std::make_unique<OutlineNode>(p));
    }
    return root;
}

// A project of kPages pages, all in the outline; built once and kept between runs.
QString reportProject()
{
    const QString file = benchDir() + QStringLiteral("/report-10000.kst");
    if (QFile::exists(file)) {
        return file;
    }
    const QString building = file + QStringLiteral(".part");
    QFile::remove(building);
    {
        SqliteDatabase db;
        require(db.open(building, SqliteDatabase::OpenMode::ReadWriteCreate));
        PageTable table(db);
        SqliteTransaction tx(db);
        require(tx.begin());
        require(table.create());
        require(table.insert(kestrum::common::currentDayCount(), QStringLiteral("Outline"),
                             PageType::OutlineRoot, {}, {}, 0));
        const std::vector<QByteArray> pages = samplePages(kPages);
        for (int i = 0; i < kPages; ++i) {
            require(table.insert(46000.0, QStringLiteral("Coded passage %1").arg(i), PageType::Text,
                                 pages[std::size_t(i)], {}));
        }
        require(table.writeContent(0, OutlineStream::write(buildOutline(kPages, 1).get())));
        require(tx.commit());
    }
    QFile::rename(building, file);
    return file;
}

struct BenchStore
{
    RawPageDocument text{EditorKind::Text};
    RawPageDocument grid{EditorKind::Grid};
    TRMData data;
};

void BM_AppendPages(benchmark::State& state)
{
    const std::vector<QByteArray> pages = samplePages(kPages);
    const QString file = benchDir() + QStringLiteral("/append.kst");
    for (auto _ : state) {
        state.PauseTiming();
        QFile::remove(file);
        SqliteDatabase db;
        if (failed(state, db.open(file, SqliteDatabase::OpenMode::ReadWriteCreate))) {
            break;
        }
        PageTable table(db);
        if (failed(state, table.create())) {
            break;
        }
        std::vector<NewPage> batch;
        batch.reserve(pages.size());
        for (int i = 0; i < kPages; ++i) {
            batch.push_back({46000.0,
                             QStringLiteral("Coded passage %1").arg(i),
                             PageType::Text,
                             pages[std::size_t(i)],
                             {}});
        }
        // One insert after another, in one transaction.
        const auto insertEach = [&]() -> Status {
            SqliteTransaction tx(db);
            if (Status begun = tx.begin(); !begun) {
                return begun;
            }
            for (const NewPage& p : batch) {
                if (const auto id = table.insert(p.date, p.info, p.type, p.content, p.comment);
                    !id) {
                    return kestrum::fail(id.error());
                }
            }
            return tx.commit();
        };
        state.ResumeTiming();
        if (state.range(0) == 0) {
            if (failed(state, insertEach())) {
                break;
            }
        } else if (failed(state, table.insertMany(batch))) {
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * kPages);
}
// 0: one insert after another; 1: the batch path (compression on every core).
BENCHMARK(BM_AppendPages)
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseRealTime();

void BM_DBOpen(benchmark::State& state)
{
    const QString file = reportProject();
    BenchStore store;
    for (auto _ : state) {
        if (failed(state, store.data.DBOpen(file))) {
            break;
        }
        benchmark::DoNotOptimize(store.data.outline().count());
        state.PauseTiming();
        store.data.CloseFile();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_DBOpen)->Unit(benchmark::kMillisecond);

void BM_SaveTree(benchmark::State& state)
{
    const QString file = reportProject();
    BenchStore store;
    if (failed(state, store.data.DBOpen(file))) {
        return;
    }
    for (auto _ : state) {
        if (failed(state, store.data.SaveTree())) {
            break;
        }
    }
    state.counters["nodes"] = store.data.outline().count();
}
BENCHMARK(BM_SaveTree)->Unit(benchmark::kMillisecond);

void BM_GetPage(benchmark::State& state)
{
    const QString file = reportProject();
    BenchStore store;
    if (failed(state, store.data.DBOpen(file))) {
        return;
    }
    QRandomGenerator rng(1);
    for (auto _ : state) {
        const qint32 id = 1 + qint32(rng.bounded(kPages));
        if (failed(state, store.data.GetWP(id, store.text))) {
            break;
        }
        benchmark::DoNotOptimize(store.text.bytes().size());
    }
}
BENCHMARK(BM_GetPage)->Unit(benchmark::kMicrosecond);

// Ten thousand records no node refers to, taken in by one hand-off.
void BM_Intake(benchmark::State& state)
{
    const QString source = benchDir() + QStringLiteral("/intake-source.session.kst");
    if (!QFile::exists(source)) {
        QFile::copy(reportProject(), source);
        SqliteDatabase db;
        require(db.open(source, SqliteDatabase::OpenMode::ReadWrite));
        PageTable table(db);
        SqliteTransaction tx(db);
        require(tx.begin());
        for (int i = 0; i < kPages; ++i) {
            require(table.insert(46000.0,
                                 QStringLiteral("Retrieval\tInterviews\tHanded over %1").arg(i),
                                 i % 3, "x", {}));
        }
        require(tx.commit());
    }
    const QString file = benchDir() + QStringLiteral("/intake.session.kst");
    const QString handOff = benchDir() + QStringLiteral("/session.new");
    BenchStore store;
    for (auto _ : state) {
        state.PauseTiming();
        store.data.CloseFile();
        QFile::remove(file);
        QFile::remove(handOff);
        QFile::copy(source, file);
        if (failed(state, store.data.DBOpen(file))) {
            break;
        }
        QFile(handOff).open(QIODevice::WriteOnly);
        state.ResumeTiming();
        if (failed(state, store.data.pollHandOff())) {
            break;
        }
    }
    state.counters["nodes"] = store.data.outline().count();
}
BENCHMARK(BM_Intake)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();

// Peak memory of opening: measured in a child process so that building the project does not
// count. Reported as the growth of the resident high-water mark, against the file size.
void BM_OpenPeakMemory(benchmark::State& state)
{
    const QString file = reportProject();
    long growthKb = 0;
    for (auto _ : state) {
        int pipeFds[2];
        if (pipe(pipeFds) != 0) {
            state.SkipWithError("pipe failed");
            return;
        }
        const pid_t child = fork();
        if (child == 0) {
            rusage before{};
            getrusage(RUSAGE_SELF, &before);
            {
                BenchStore store;
                if (const Status opened = store.data.DBOpen(file); !opened) {
                    qWarning("%s", qPrintable(opened.error()));
                    _exit(1);
                }
                store.data.CloseFile();
            }
            rusage after{};
            getrusage(RUSAGE_SELF, &after);
            const long grown = after.ru_maxrss - before.ru_maxrss;
            (void)!write(pipeFds[1], &grown, sizeof grown);
            _exit(0);
        }
        close(pipeFds[1]);
        (void)!read(pipeFds[0], &growthKb, sizeof growthKb);
        close(pipeFds[0]);
        int childStatus = 0;
        waitpid(child, &childStatus, 0);
        if (!WIFEXITED(childStatus) || WEXITSTATUS(childStatus) != 0) {
            state.SkipWithError("the project could not be opened (the message is above)");
            return;
        }
    }
    state.counters["peak_growth_MB"] = double(growthKb) / 1024.0;
    state.counters["file_MB"] = double(QFile(file).size()) / (1024.0 * 1024.0);
}
BENCHMARK(BM_OpenPeakMemory)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

KESTRUM_BENCHMARK_MAIN(QCoreApplication)
