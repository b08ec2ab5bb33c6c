// Undo and redo of the outline commands on a real project (the outline, the stored outline and
// every page row compared byte for byte), and the recovery of pages that no node refers to.

#include "StoreFixture.h"

#include "common/Colour.h"
#include "store/OutlineCommands.h"
#include "store/OutlineStream.h"

#include <QtTest>

#include <functional>

using namespace kestrum::store;
using namespace kestrum::test;

namespace {

// Everything a step must give back: the outline with every attribute, the selection, and
// every stored row of the file (the outline's own row included) as its encoded columns.
struct ProjectState
{
    QStringList outline;
    int selected = -1;
    QMap<qint32, QByteArray> rows;

    bool operator==(const ProjectState&) const = default;
};

QByteArray rowBytes(const RawPageRow& r)
{
    QByteArray out;
    QDataStream s(&out, QIODevice::WriteOnly);
    s << r.pageId << r.date.has_value() << r.date.value_or(0) << r.info << r.infoIsText
      << r.type.value_or(-99) << r.content << r.contentIsText << r.comment << r.commentIsText
      << r.randomKey.value_or(-99);
    return out;
}

} // namespace

class OutlineHistoryTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void eachCommandIsUndoneAndRedoneExactly_data();
    void eachCommandIsUndoneAndRedoneExactly();
    void undoOfTheDeleteWalkBringsBackTheNodesAfterTheSubtree();
    void redoKeepsWhatWasWrittenIntoANewPage();
    void severalStepsAndANewCommandDropsTheRedo();
    void historyIsClearedOnClosingAndOpening();
    void anOutlineChangedElsewhereDropsTheHistory();
    void failedUndoLeavesEverythingAndCanBeRetried();
    void recoverBringsBackPagesWithoutANode();
    void recoveredCaptionIsNeverBlank_data();
    void recoveredCaptionIsNeverBlank();
    void recoverAddsNothingWhenEveryPageHasANode();

private:
    QString path(const QString& name) const { return m_dir->filePath(name); }
    // root: A(A1, A2(A2a)), B, C(C1): pages with records, except folders A and C.
    void buildOutline();
    OutlineNode* node(const QString& caption) const;
    ProjectState state() const;

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<StoreWithDocuments> m_store;
    std::unique_ptr<OutlineCommands> m_commands;
};

void OutlineHistoryTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<StoreWithDocuments>();
    m_commands = std::make_unique<OutlineCommands>(m_store->data);
    SqliteDatabase::setBusyTimeout(10000);
    KVERIFY_OK(m_store->data.DBCreate(path(QStringLiteral("history.kst"))));
    buildOutline();
}

void OutlineHistoryTest::cleanup()
{
    m_commands.reset();
    m_store.reset();
    m_dir.reset();
}

void OutlineHistoryTest::buildOutline()
{
    OutlineModel& m = m_store->data.outline();
    auto add = [this, &m](OutlineNode* parent, const QString& caption, bool folder) {
        OutlineNodeData d;
        d.caption = caption;
        d.imageIndex = folder ? 11 : 0;
        d.data = folder ? -1 : m_store->data.AddRecord(0, caption, {}).value();
        return m.addChild(parent, d);
    };
    OutlineNode* a = add(m.root(), QStringLiteral("A"), true);
    add(a, QStringLiteral("A1"), false);
    OutlineNode* a2 = add(a, QStringLiteral("A2"), false);
    add(a2, QStringLiteral("A2a"), false);
    add(m.root(), QStringLiteral("B"), false);
    OutlineNode* c = add(m.root(), QStringLiteral("C"), true);
    add(c, QStringLiteral("C1"), false);
    // Pages with content and a comment, so that a lost column would show.
    KVERIFY_OK(m_store->data.writePageContent(node(QStringLiteral("A2a"))->data(),
                                              QByteArray("A2a body\0x", 10)));
    KVERIFY_OK(m_store->data.SaveComment(node(QStringLiteral("C1"))->data(),
                                         QStringLiteral("C1 comment")));
    KVERIFY_OK(m_store->data.SaveTree());
}

OutlineNode* OutlineHistoryTest::node(const QString& caption) const
{
    for (OutlineNode* n : m_store->data.outline().nodesInOrder()) {
        if (n->caption() == caption) {
            return n;
        }
    }
    return nullptr;
}

ProjectState OutlineHistoryTest::state() const
{
    ProjectState s;
    const OutlineModel& m = m_store->data.outline();
    for (const OutlineNode* n : m.nodesInOrder()) {
        const OutlineNodeData& f = n->fields();
        s.outline << QStringLiteral("%1%2 kind=%3 data=%4 colours=%5/%6/%7 expanded=%8")
                         .arg(QString(n->level(), QLatin1Char('.')), f.caption)
                         .arg(f.imageIndex)
                         .arg(n == m.root() ? 0 : f.data)
                         .arg(f.textColor)
                         .arg(f.backColor)
                         .arg(f.usesTreeColours)
                         .arg(f.expanded);
    }
    s.selected = m.selectedIndex();
    const std::vector<qint32> ids = m_store->data.table()->ids().value();
    for (qint32 id : ids) {
        s.rows.insert(id, rowBytes(*m_store->data.table()->readRaw(id).value()));
    }
    return s;
}

void OutlineHistoryTest::eachCommandIsUndoneAndRedoneExactly_data()
{
    QTest::addColumn<QString>("command");
    for (const char* c : {"new page", "new folder after", "delete walk", "delete everything",
                          "rename", "colour", "colour back to white", "move up", "move down",
                          "promote", "demote", "drop", "drop before", "recover"}) {
        QTest::newRow(c) << QString::fromLatin1(c);
    }
}

void OutlineHistoryTest::eachCommandIsUndoneAndRedoneExactly()
{
    QFETCH(QString, command);
    TRMData& data = m_store->data;
    OutlineCommands& c = *m_commands;
    const std::map<QString, std::pair<QString, std::function<void(OutlineNode*)>>> commands{
        {"new page",
         {"A",
          [&](OutlineNode* n) {
              KVERIFY_OK(c.newItem(n, {false, false, "Fresh"}));
          }}},
        {"new folder after",
         {"B",
          [&](OutlineNode* n) {
              KVERIFY_OK(c.newItem(n, {true, true, "Box"}));
          }}},
        {"delete walk", {"A2", [&](OutlineNode* n) { KVERIFY_OK(c.deleteItem(n)); }}},
        {"delete everything", {"A", [&](OutlineNode* n) { KVERIFY_OK(c.deleteItem(n)); }}},
        {"rename", {"B", [&](OutlineNode* n) { KVERIFY_OK(c.rename(n, "Bee")); }}},
        {"colour", {"B", [&](OutlineNode* n) { KVERIFY_OK(c.setColour(n, 0x0000FF)); }}},
        {"colour back to white",
         {"C1", [&](OutlineNode* n) { KVERIFY_OK(c.setColour(n, std::nullopt)); }}},
        {"move up", {"B", [&](OutlineNode* n) { QVERIFY(c.moveUp(n).value()); }}},
        {"move down", {"A", [&](OutlineNode* n) { QVERIFY(c.moveDown(n).value()); }}},
        {"promote", {"A2", [&](OutlineNode* n) { QVERIFY(c.promote(n).value()); }}},
        {"demote", {"B", [&](OutlineNode* n) { QVERIFY(c.demote(n).value()); }}},
        {"drop", {"B", [&](OutlineNode* n) { QVERIFY(c.drop(n, node("C1"), false).value()); }}},
        {"drop before",
         {"C", [&](OutlineNode* n) { QVERIFY(c.drop(n, node("A1"), true).value()); }}},
        {"recover",
         {"B", [&](OutlineNode*) { QCOMPARE(c.recoverPages().value().size(), size_t(1)); }}},
    };
    if (command == QLatin1String("colour back to white")) {
        KVERIFY_OK(c.setColour(node("C1"), 0x00FF00));
        data.history().clear();
    }
    if (command == QLatin1String("recover")) {
        KVERIFY_OK(data.appendRecord(0, QStringLiteral("x\ty\tLost page"), "lost", QString()));
    }
    const auto& [target, run] = commands.at(command);
    data.outline().setSelected(node(target));
    KVERIFY_OK(data.SaveTree());
    const ProjectState before = state();
    QVERIFY(!c.canUndo());

    run(node(target));
    const ProjectState after = state();
    QVERIFY(after != before);
    QVERIFY(c.canUndo());
    QVERIFY(!c.canRedo());

    QVERIFY(c.undo().value());
    QCOMPARE(state(), before);
    QCOMPARE(data.currentNodeIndex(), -1);
    QVERIFY(!c.canUndo());
    QVERIFY(c.canRedo());

    QVERIFY(c.redo().value());
    QCOMPARE(state(), after);
    QVERIFY(c.undo().value());
    QCOMPARE(state(), before);
    QVERIFY(!c.undo().value()); // nothing left
    QCOMPARE(state(), before);
}

void OutlineHistoryTest::undoOfTheDeleteWalkBringsBackTheNodesAfterTheSubtree()
{
    TRMData& data = m_store->data;
    const qint32 a2 = node(QStringLiteral("A2"))->data();
    const qint32 a2a = node(QStringLiteral("A2a"))->data();
    const QByteArray a2aRow = rowBytes(*data.table()->readRaw(a2a).value());
    KVERIFY_OK(m_commands->deleteItem(node(QStringLiteral("A2"))));
    QVERIFY(!data.table()->exists(a2a).value());
    QVERIFY(!node(QStringLiteral("B")));

    QVERIFY(m_commands->undo().value());
    // Every node the walk took is back, each on its record; the subtree's records with their ids.
    for (const char* caption : {"A2", "A2a", "B", "C", "C1"}) {
        QVERIFY2(node(QLatin1String(caption)), caption);
    }
    QCOMPARE(node(QStringLiteral("A2"))->data(), a2);
    QCOMPARE(node(QStringLiteral("A2a"))->data(), a2a);
    QCOMPARE(rowBytes(*data.table()->readRaw(a2a).value()), a2aRow);
    QCOMPARE(*data.table()->readContent(a2a).value(), QByteArray("A2a body\0x", 10));
    QCOMPARE(*data.table()->readComment(node(QStringLiteral("C1"))->data()).value(),
             QStringLiteral("C1 comment"));
    QCOMPARE(data.outline().selected(), node(QStringLiteral("A2")));

    // The stored outline is the one on screen: reopening shows the same tree.
    const QStringList shown = state().outline;
    data.CloseFile();
    KVERIFY_OK(data.DBOpen(path(QStringLiteral("history.kst"))));
    QCOMPARE(state().outline.size(), shown.size());
    QCOMPARE(node(QStringLiteral("C1"))->level(), 2);
}

void OutlineHistoryTest::redoKeepsWhatWasWrittenIntoANewPage()
{
    TRMData& data = m_store->data;
    OutlineNode* fresh =
        m_commands->newItem(node(QStringLiteral("B")), {false, true, "Fresh"}).value();
    const qint32 id = fresh->data();
    KVERIFY_OK(data.writePageContent(id, "typed after creating"));
    QVERIFY(m_commands->undo().value());
    QVERIFY(!data.table()->exists(id).value());
    QVERIFY(!node(QStringLiteral("Fresh")));
    QVERIFY(m_commands->redo().value());
    QCOMPARE(node(QStringLiteral("Fresh"))->data(), id);
    QCOMPARE(*data.table()->readContent(id).value(), QByteArray("typed after creating"));
    QCOMPARE(data.outline().selected(), node(QStringLiteral("Fresh")));
}

void OutlineHistoryTest::severalStepsAndANewCommandDropsTheRedo()
{
    TRMData& data = m_store->data;
    data.outline().setSelected(node(QStringLiteral("B")));
    KVERIFY_OK(data.SaveTree());
    const ProjectState start = state();
    KVERIFY_OK(m_commands->rename(node(QStringLiteral("B")), QStringLiteral("Bee")));
    const ProjectState renamed = state();
    QVERIFY(m_commands->moveUp(node(QStringLiteral("Bee"))).value());
    KVERIFY_OK(m_commands->deleteItem(node(QStringLiteral("C"))));
    const ProjectState end = state();
    QCOMPARE(data.history().size(), 3);

    QVERIFY(m_commands->undo().value());
    QVERIFY(m_commands->undo().value());
    QCOMPARE(state(), renamed);
    QVERIFY(m_commands->undo().value());
    QCOMPARE(state(), start);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(m_commands->redo().value());
    }
    QCOMPARE(state(), end);
    QVERIFY(!m_commands->redo().value());

    QVERIFY(m_commands->undo().value());
    QVERIFY(m_commands->undo().value());
    QVERIFY(m_commands->canRedo());
    KVERIFY_OK(m_commands->rename(node(QStringLiteral("A1")), QStringLiteral("One")));
    QVERIFY(!m_commands->canRedo());
    QCOMPARE(data.history().size(), 2);
    // A command that changes nothing is no step.
    KVERIFY_OK(m_commands->rename(node(QStringLiteral("One")), QStringLiteral("One")));
    QCOMPARE(data.history().size(), 2);
}

void OutlineHistoryTest::historyIsClearedOnClosingAndOpening()
{
    TRMData& data = m_store->data;
    KVERIFY_OK(m_commands->rename(node(QStringLiteral("B")), QStringLiteral("Bee")));
    QVERIFY(m_commands->canUndo());
    KVERIFY_OK(data.DBOpen(path(QStringLiteral("history.kst")))); // the same project again
    QVERIFY(!m_commands->canUndo());
    QVERIFY(!m_commands->undo().value());
    QVERIFY(node(QStringLiteral("Bee")));

    KVERIFY_OK(m_commands->rename(node(QStringLiteral("Bee")), QStringLiteral("B")));
    QVERIFY(m_commands->undo().value());
    QVERIFY(m_commands->canRedo());
    data.CloseFile();
    QVERIFY(!m_commands->canRedo());
    KVERIFY_OK(data.DBCreate(path(QStringLiteral("other.kst"))));
    QVERIFY(!m_commands->canUndo() && !m_commands->canRedo());
}

void OutlineHistoryTest::anOutlineChangedElsewhereDropsTheHistory()
{
    TRMData& data = m_store->data;
    KVERIFY_OK(m_commands->rename(node(QStringLiteral("B")), QStringLiteral("Bee")));
    // Expanding and selecting are no change to the history ...
    data.outline().setExpanded(node(QStringLiteral("A")), true);
    data.outline().setSelected(node(QStringLiteral("C1")));
    QVERIFY(m_commands->undo().value());
    QVERIFY(m_commands->redo().value());
    // ... but a node added by something unrecorded (an import) is.
    OutlineNodeData d;
    d.caption = QStringLiteral("Imported");
    d.data = data.AddRecord(0, d.caption, {}).value();
    data.outline().addChild(data.outline().root(), d);
    KVERIFY_OK(data.SaveTree());
    const ProjectState now = state();
    QVERIFY(!m_commands->undo().value());
    QCOMPARE(state(), now);
    QVERIFY(!m_commands->canUndo());
}

void OutlineHistoryTest::failedUndoLeavesEverythingAndCanBeRetried()
{
    TRMData& data = m_store->data;
    data.CloseFile();
    SqliteDatabase::setBusyTimeout(100);
    KVERIFY_OK(data.DBOpen(path(QStringLiteral("history.kst"))));
    const qint32 a2a = node(QStringLiteral("A2a"))->data();
    KVERIFY_OK(m_commands->deleteItem(node(QStringLiteral("A"))));
    const ProjectState deleted = state();
    {
        HostConnection host(path(QStringLiteral("history.kst")));
        KVERIFY_OK(host.db.exec("BEGIN EXCLUSIVE"));
        QVERIFY(!m_commands->undo().ok());
        KVERIFY_OK(host.db.exec("COMMIT"));
    }
    QCOMPARE(state(), deleted);
    QVERIFY(m_commands->canUndo());
    QVERIFY(m_commands->undo().value());
    QVERIFY(data.table()->exists(a2a).value());
    QCOMPARE(node(QStringLiteral("A2a"))->data(), a2a);
}

void OutlineHistoryTest::recoverBringsBackPagesWithoutANode()
{
    TRMData& data = m_store->data;
    const qint32 b = node(QStringLiteral("B"))->data();
    const qint32 c1 = node(QStringLiteral("C1"))->data();
    // The walk from A2 leaves the records of B and C1 without a node; a host adds one more.
    KVERIFY_OK(m_commands->deleteItem(node(QStringLiteral("A2"))));
    const qint32 hosted =
        data.appendRecord(4, QStringLiteral("one\ttwo\tFrom the host\tfour"), "x", QString())
            .value();
    // The project node's data (the selection) is no page id: record 1 (A1's) keeps its node.
    data.outline().setSelected(node(QStringLiteral("A1")));
    KVERIFY_OK(data.SaveTree());

    const std::vector<OutlineNode*> added = m_commands->recoverPages().value();
    QCOMPARE(added.size(), size_t(3));
    OutlineNode* folder = data.outline().root()->childAt(data.outline().root()->childCount() - 1);
    QCOMPARE(folder->caption(), QStringLiteral("Recovered items"));
    QCOMPARE(folder->imageIndex(), 11);
    QCOMPARE(folder->data(), -1);
    QCOMPARE(added[0]->data(), b);
    QCOMPARE(added[1]->data(), c1);
    // Pages made here carry a plain title, no TAB fields: it is their caption.
    QCOMPARE(added[0]->caption(), QStringLiteral("B"));
    QCOMPARE(added[1]->caption(), QStringLiteral("C1"));
    QCOMPARE(added[2]->data(), hosted);
    QCOMPARE(added[2]->caption(), QStringLiteral("From the host"));
    QCOMPARE(added[2]->imageIndex(), 4);
    for (OutlineNode* n : added) {
        QCOMPARE(n->parent(), folder);
    }
    // The outline on screen is the stored one.
    data.CloseFile();
    KVERIFY_OK(data.DBOpen(path(QStringLiteral("history.kst"))));
    QCOMPARE(node(QStringLiteral("From the host"))->parent()->caption(),
             QStringLiteral("Recovered items"));

    // Another lost page goes into the same folder; recovery is a step like any other.
    KVERIFY_OK(m_commands->deleteItem(node(QStringLiteral("From the host"))));
    const qint32 late = data.appendRecord(0, QStringLiteral("a\tb\tLate"), "y", QString()).value();
    const ProjectState before = state();
    QCOMPARE(m_commands->recoverPages().value().size(), size_t(1));
    QCOMPARE(node(QStringLiteral("Late"))->data(), late);
    QCOMPARE(node(QStringLiteral("Late"))->parent(), node(QStringLiteral("Recovered items")));
    int folders = 0;
    for (const OutlineNode* n : data.outline().nodesInOrder()) {
        folders += n->caption() == QLatin1String("Recovered items");
    }
    QCOMPARE(folders, 1);
    QVERIFY(m_commands->undo().value());
    QCOMPARE(state(), before);
}

void OutlineHistoryTest::recoveredCaptionIsNeverBlank_data()
{
    QTest::addColumn<QString>("info");
    QTest::addColumn<QString>("caption");
    QTest::newRow("host fields") << "Tavlo\tInterviews\tCodes by case\tx"
                                 << "Codes by case";
    QTest::newRow("three fields") << "a\tb\tc"
                                  << "c";
    QTest::newRow("plain title") << "Remote work"
                                 << "Remote work";
    QTest::newRow("title with spaces around") << "  Remote work \r\n"
                                              << "Remote work";
    QTest::newRow("blank third field") << "Tavlo\tInterviews\t \tx"
                                       << "Tavlo";
    QTest::newRow("two fields") << "\tSecond"
                                << "Second";
    QTest::newRow("lines") << "\n  First line\nSecond line"
                           << "First line";
    QTest::newRow("only tabs") << "\t\t\t"
                               << "Page 42";
    QTest::newRow("empty") << ""
                           << "Page 42";
}

void OutlineHistoryTest::recoveredCaptionIsNeverBlank()
{
    QFETCH(QString, info);
    QFETCH(QString, caption);
    QCOMPARE(OutlineCommands::recoveredCaption(42, info), caption);
}

void OutlineHistoryTest::recoverAddsNothingWhenEveryPageHasANode()
{
    TRMData& data = m_store->data;
    const QString file = data.fileName();
    data.CloseFile();
    KVERIFY_OK(data.DBOpen(file));
    const QByteArray bytes = readFile(file);
    QVERIFY(m_commands->recoverPages().value().empty());
    QCOMPARE(readFile(file), bytes);
    QVERIFY(!node(QStringLiteral("Recovered items")));
    QVERIFY(!m_commands->canUndo());
}

QTEST_GUILESS_MAIN(OutlineHistoryTest)
#include "OutlineHistoryTest.moc"
