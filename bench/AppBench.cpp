// The main window over a 10,000-node outline: selecting a node until its page is shown, and
// each outline command including the outline write.

#include "BenchChecks.h"
#include "BenchMain.h"
#include "app/OutlineItemModel.h"
#include "app/OutlineView.h"
#include "app/TKestrumM.h"
#include "store/OutlineCommands.h"
#include "store/OutlineModel.h"
#include "store/OutlineStream.h"
#include "store/PageTable.h"
#include "store/SqliteDatabase.h"
#include "store/TRMData.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <benchmark/benchmark.h>

using namespace kestrum;
using bench::failed;
using bench::require;
using store::OutlineNode;

namespace {

constexpr int kPages = 10000;

// 100 folders of 100 text pages of 20 KB.
QString outlineProject()
{
    const QString dir = QDir::tempPath() + QStringLiteral("/kestrum-bench");
    QDir().mkpath(dir);
    const QString file = dir + QStringLiteral("/window-10000.kst");
    if (QFile::exists(file)) {
        return file;
    }
    store::SqliteDatabase db;
    require(
        db.open(file + QStringLiteral(".part"), store::SqliteDatabase::OpenMode::ReadWriteCreate));
    store::PageTable table(db);
    require(table.create());
    require(table.insert(46000, QStringLiteral("Outline"), 10, {}, {}, 0));
    std::vector<store::NewPage> pages;
    const QByteArray text =
        QByteArray("{\\rtf1 ") + QByteArray("interview passage ").repeated(1100) + '}';
    for (int i = 0; i < kPages; ++i) {
        pages.push_back({46000, QStringLiteral("Passage %1").arg(i), 0, text,
                         QStringLiteral("comment %1").arg(i)});
    }
    require(table.insertMany(pages));
    store::OutlineNodeData rootData;
    rootData.caption = QStringLiteral("Bench");
    rootData.imageIndex = 10;
    rootData.data = 2;
    OutlineNode root(rootData);
    OutlineNode* folder = nullptr;
    for (int i = 0; i < kPages; ++i) {
        if (i % 100 == 0) {
            store::OutlineNodeData f;
            f.caption = QStringLiteral("Folder %1").arg(i / 100);
            f.imageIndex = 11;
            f.expanded = i < 1000;
            folder = root.appendChildUnchecked(std::make_unique<OutlineNode>(f));
        }
        store::OutlineNodeData p;
        p.caption = QStringLiteral("Passage %1").arg(i);
        p.imageIndex = 0;
        p.data = i + 1;
        folder->appendChildUnchecked(std::make_unique<OutlineNode>(p));
    }
    require(table.writeContent(0, store::OutlineStream::write(&root)));
    db.close();
    QFile::rename(file + QStringLiteral(".part"), file);
    return file;
}

struct Window
{
    Window()
    {
        const QString file = outlineProject();
        work = QDir::tempPath() + QStringLiteral("/kestrum-bench/window-work.kst");
        QFile::remove(work);
        QFile::copy(file, work);
        app::TKestrumM::Options options;
        options.settingsPath = QDir::tempPath() + QStringLiteral("/kestrum-bench/Kestrum.INI");
        options.pollHandOff = false;
        options.restoreLayout = false;
        window = std::make_unique<app::TKestrumM>(std::move(options));
        window->resize(1200, 800);
        window->show();
        window->openProject(work);
        QApplication::processEvents();
    }
    ~Window()
    {
        window.reset();
        QFile::remove(work);
    }
    OutlineNode* node(int i) { return window->data().outline().nodeAt(i); }
    QString work;
    std::unique_ptr<app::TKestrumM> window;
};

void BM_SelectAndShow(benchmark::State& state)
{
    Window w;
    QRandomGenerator rng(3);
    for (auto _ : state) {
        // A page somewhere in the outline, chosen as a click would.
        int index = 0;
        do {
            index = 1 + int(rng.bounded(w.window->data().outline().count() - 1));
        } while (w.node(index)->imageIndex() != 0);
        w.window->outlineView()->setCurrentIndex(w.window->outlineModel()->indexFor(w.node(index)));
        QApplication::processEvents();
    }
}
BENCHMARK(BM_SelectAndShow)->Unit(benchmark::kMillisecond);

// Each command on a node in the middle of the outline; every other iteration runs its opposite
// so that the outline keeps its shape. The time is per command.
void BM_Command(benchmark::State& state)
{
    Window w;
    app::TKestrumM& win = *w.window;
    store::OutlineModel& outline = win.data().outline();
    OutlineNode* node = outline.nodeAt(5000);
    outline.setSelected(node);
    win.ShowNode();
    const int which = int(state.range(0));
    bool forth = true;
    for (auto _ : state) {
        switch (which) {
        case 0:
            forth ? win.UpBtnClick() : win.DnBtnClick();
            break;
        case 1:
            forth ? win.RightBtnClick() : win.LeftBtnClick();
            break;
        case 2:
            win.MainTreeDragDrop(node, outline.nodeAt(forth ? 10 : 5000), true);
            break;
        case 3:
            forth ? win.Red1Click() : win.White1Click();
            break;
        }
        forth = !forth;
    }
    static const char* labels[] = {"move up / move down", "demote / promote", "drop with Ctrl",
                                   "colour mark"};
    state.SetLabel(labels[which]);
}
BENCHMARK(BM_Command)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

void BM_NewAndDelete(benchmark::State& state)
{
    Window w;
    app::TKestrumM& win = *w.window;
    store::OutlineModel& outline = win.data().outline();
    store::OutlineCommands commands(win.data());
    // The last page of the outline: deleting it deletes only itself.
    OutlineNode* last = outline.nodeAt(outline.count() - 1);
    for (auto _ : state) {
        const Result<OutlineNode*> added =
            commands.newItem(last->parent(), {false, false, QStringLiteral("New")});
        if (failed(state, added)) {
            break;
        }
        win.ShowNode();
        if (failed(state, commands.deleteItem(*added))) {
            break;
        }
        win.ShowNode();
    }
    state.SetLabel("new item + delete, each with its outline write and show");
}
BENCHMARK(BM_NewAndDelete)->Unit(benchmark::kMillisecond);

} // namespace

KESTRUM_BENCHMARK_MAIN(QApplication)
