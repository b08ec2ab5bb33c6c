// The outline commands on a real project: placement, the delete walk, colour marks, moving,
// promoting, demoting, dropping, the button rules, and the stored outline after each.

#include "StoreFixture.h"

#include "store/OutlineCommands.h"
#include "store/ProjectReader.h"

#include <QtTest>

using namespace kestrum::store;
using namespace kestrum::test;

class OutlineCommandsTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void buttonRules();
    void newItemPlacement();
    void newFolderHasNoRecord();
    void deleteWalksFromTheEndBackToTheSelectedNode();
    void deletingAFolderDeletesNoRecord();
    void outlineReducedToTheProjectIsStored();
    void failedDeleteLeavesEverything();
    void renameKeepsThePageTitle();
    void colourMarks_data();
    void colourMarks();
    void moveUpAndDown();
    void promoteRules();
    void demoteRules();
    void dropRules();
    void disabledCommandsDoNothing();

private:
    QString path(const QString& name) const { return m_dir->filePath(name); }
    // root: A(A1, A2(A2a)), B, C(C1)  — pages with records, except folders A and C.
    void buildOutline();
    OutlineNode* node(const QString& caption) const;
    QStringList shape() const;
    QStringList storedShape() const;

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<StoreWithDocuments> m_store;
    std::unique_ptr<OutlineCommands> m_commands;
};

void OutlineCommandsTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<StoreWithDocuments>();
    m_commands = std::make_unique<OutlineCommands>(m_store->data);
    SqliteDatabase::setBusyTimeout(10000);
    KVERIFY_OK(m_store->data.DBCreate(path(QStringLiteral("outline.kst"))));
    buildOutline();
}

void OutlineCommandsTest::cleanup()
{
    m_commands.reset();
    m_store.reset();
    m_dir.reset();
}

void OutlineCommandsTest::buildOutline()
{
    OutlineModel& m = m_store->data.outline();
    while (m.root()->hasChildren()) {
        KVERIFY_OK(m_store->data.DeleteRecord(m.root()->childAt(0)->data()));
        m.removeNode(m.root()->childAt(0));
    }
    auto page = [this, &m](OutlineNode* parent, const QString& caption) {
        OutlineNodeData d;
        d.caption = caption;
        d.imageIndex = 0;
        d.data = m_store->data.AddRecord(0, caption, {}).value();
        return m.addChild(parent, d);
    };
    auto folder = [&m](OutlineNode* parent, const QString& caption) {
        OutlineNodeData d;
        d.caption = caption;
        d.imageIndex = 11;
        d.data = -1;
        return m.addChild(parent, d);
    };
    OutlineNode* a = folder(m.root(), QStringLiteral("A"));
    page(a, QStringLiteral("A1"));
    OutlineNode* a2 = page(a, QStringLiteral("A2"));
    page(a2, QStringLiteral("A2a"));
    page(m.root(), QStringLiteral("B"));
    OutlineNode* c = folder(m.root(), QStringLiteral("C"));
    page(c, QStringLiteral("C1"));
    KVERIFY_OK(m_store->data.SaveTree());
}

OutlineNode* OutlineCommandsTest::node(const QString& caption) const
{
    for (OutlineNode* n : m_store->data.outline().nodesInOrder()) {
        if (n->caption() == caption) {
            return n;
        }
    }
    return nullptr;
}

QStringList OutlineCommandsTest::shape() const
{
    QStringList out;
    for (const OutlineNode* n : m_store->data.outline().nodesInOrder()) {
        out << QString(n->level(), QLatin1Char('.')) + n->caption();
    }
    return out;
}

QStringList OutlineCommandsTest::storedShape() const
{
    ProjectReader reader;
    KREQUIRE_OK(reader.open(m_store->data.fileName()));
    QStringList out;
    visitInOrder(reader.outline(), [&out](const OutlineNode* n, int level) {
        out << QString(level, QLatin1Char('.')) + n->caption();
    });
    return out;
}

void OutlineCommandsTest::buttonRules()
{
    QCOMPARE(shape(),
             QStringList({"Project name", ".A", "..A1", "..A2", "...A2a", ".B", ".C", "..C1"}));
    const OutlineButtons root = OutlineCommands::buttonsFor(m_store->data.outline().root());
    QVERIFY(!root.deleteNode && !root.up && !root.down && !root.promote && !root.demote);
    QCOMPARE(root.position, -1);

    const OutlineButtons a1 = OutlineCommands::buttonsFor(node(QStringLiteral("A1")));
    QVERIFY(a1.deleteNode);
    QVERIFY(!a1.up); // first child
    QVERIFY(a1.down);
    QVERIFY(a1.promote); // level 2
    QVERIFY(!a1.demote); // the node above is its parent
    const OutlineButtons b = OutlineCommands::buttonsFor(node(QStringLiteral("B")));
    QVERIFY(!b.promote); // child of the project node
    QVERIFY(b.demote);   // above it is A2a, deeper
    QCOMPARE(b.position, 1);
    QCOMPARE(b.siblings, 3);
    QVERIFY(!OutlineCommands::buttonsFor(node(QStringLiteral("C"))).down); // last child
}

void OutlineCommandsTest::newItemPlacement()
{
    TRMData& data = m_store->data;
    OutlineNode* under =
        m_commands->newItem(node(QStringLiteral("A")), {false, false, QStringLiteral("{untitled}")})
            .value();
    QCOMPARE(under->parent(), node(QStringLiteral("A")));
    QCOMPARE(under->row(), 2);
    QCOMPARE(under->imageIndex(), 0);
    QCOMPARE(*data.table()->readInfo(under->data()).value(), QStringLiteral("{untitled}"));
    QCOMPARE(data.outline().selected(), under);
    QCOMPARE(data.currentNodeIndex(), data.outline().indexOf(under));

    OutlineNode* after =
        m_commands->newItem(node(QStringLiteral("B")), {false, true, QStringLiteral("After B")})
            .value();
    QCOMPARE(after->parent(), data.outline().root());
    QCOMPARE(after->row(), 2);
    // "After" the project node is impossible: the node goes under it.
    OutlineNode* top =
        m_commands->newItem(data.outline().root(), {false, true, QStringLiteral("Top")}).value();
    QCOMPARE(top->parent(), data.outline().root());
    QCOMPARE(storedShape(), shape());
}

void OutlineCommandsTest::newFolderHasNoRecord()
{
    const qint64 records = m_store->data.table()->rowCount().value();
    OutlineNode* folder =
        m_commands->newItem(node(QStringLiteral("B")), {true, false, QStringLiteral("Folder")})
            .value();
    QCOMPARE(folder->data(), -1);
    QCOMPARE(folder->imageIndex(), 11);
    QCOMPARE(m_store->data.table()->rowCount().value(), records);
    QCOMPARE(storedShape(), shape());
}

void OutlineCommandsTest::deleteWalksFromTheEndBackToTheSelectedNode()
{
    TRMData& data = m_store->data;
    const qint32 a2 = node(QStringLiteral("A2"))->data();
    const qint32 a2a = node(QStringLiteral("A2a"))->data();
    const qint32 b = node(QStringLiteral("B"))->data();
    const qint32 c1 = node(QStringLiteral("C1"))->data();
    const qint32 a1 = node(QStringLiteral("A1"))->data();
    KVERIFY_OK(m_commands->deleteItem(node(QStringLiteral("A2"))));
    // Every node from A2 to the end goes; only the records of A2's subtree are deleted.
    QCOMPARE(shape(), QStringList({"Project name", ".A", "..A1"}));
    QVERIFY(!data.table()->exists(a2).value());
    QVERIFY(!data.table()->exists(a2a).value());
    QVERIFY(data.table()->exists(b).value());
    QVERIFY(data.table()->exists(c1).value());
    QVERIFY(data.table()->exists(a1).value());
    QCOMPARE(data.outline().selected(), node(QStringLiteral("A1")));
    QCOMPARE(data.currentNodeIndex(), -1);
    QVERIFY(data.isModified());
    QCOMPARE(storedShape(), shape());
}

void OutlineCommandsTest::outlineReducedToTheProjectIsStored()
{
    TRMData& data = m_store->data;
    // The walk takes every node.
    KVERIFY_OK(m_commands->deleteItem(data.outline().root()->childAt(0)));
    QCOMPARE(shape(), QStringList({"Project name"}));
    QCOMPARE(storedShape(), shape());
    data.CloseFile();
    KVERIFY_OK(data.DBOpen(path(QStringLiteral("outline.kst"))));
    QCOMPARE(shape(), QStringList({"Project name"}));
}

void OutlineCommandsTest::deletingAFolderDeletesNoRecord()
{
    TRMData& data = m_store->data;
    const qint64 records = data.table()->rowCount().value();
    KVERIFY_OK(m_commands->deleteItem(node(QStringLiteral("C"))));
    QCOMPARE(shape().last(), QStringLiteral(".B"));
    // C1's record under C goes with it; the folder itself had none.
    QCOMPARE(data.table()->rowCount().value(), records - 1);
    KVERIFY_OK(m_commands->deleteItem(data.outline().root()));
    QCOMPARE(shape().size(), 6); // the project node is never deleted
}

void OutlineCommandsTest::failedDeleteLeavesEverything()
{
    TRMData& data = m_store->data;
    data.CloseFile();
    SqliteDatabase::setBusyTimeout(100);
    KVERIFY_OK(data.DBOpen(path(QStringLiteral("outline.kst"))));
    const QStringList before = shape();
    const qint64 records = data.table()->rowCount().value();
    HostConnection host(path(QStringLiteral("outline.kst")));
    KVERIFY_OK(host.db.exec("BEGIN EXCLUSIVE"));
    QVERIFY(!m_commands->deleteItem(node(QStringLiteral("A"))).ok());
    KVERIFY_OK(host.db.exec("COMMIT"));
    QCOMPARE(shape(), before);
    QCOMPARE(data.table()->rowCount().value(), records);
    QCOMPARE(data.outline().selected(), node(QStringLiteral("A")));
}

void OutlineCommandsTest::renameKeepsThePageTitle()
{
    OutlineNode* b = node(QStringLiteral("B"));
    KVERIFY_OK(m_commands->rename(b, QStringLiteral("Renamed")));
    QCOMPARE(b->caption(), QStringLiteral("Renamed"));
    QCOMPARE(*m_store->data.table()->readInfo(b->data()).value(), QStringLiteral("B"));
    QVERIFY(m_store->data.isModified());
    QVERIFY(storedShape().contains(QStringLiteral(".Renamed")));
}

void OutlineCommandsTest::colourMarks_data()
{
    QTest::addColumn<int>("colour");
    QTest::newRow("red") << 0x0000FF;
    QTest::newRow("yellow") << 0x00FFFF;
    QTest::newRow("green") << 0x00FF00;
    QTest::newRow("blue shows as aqua") << 0xFFFF00;
    QTest::newRow("custom") << 0x00984E00;
}

void OutlineCommandsTest::colourMarks()
{
    QFETCH(int, colour);
    OutlineNode* b = node(QStringLiteral("B"));
    KVERIFY_OK(m_commands->setColour(b, colour));
    QVERIFY(!b->fields().usesTreeColours);
    QCOMPARE(b->fields().textColor, colour);
    QCOMPARE(b->fields().backColor, kestrum::common::clWindow);
    {
        ProjectReader reader;
        KVERIFY_OK(reader.open(m_store->data.fileName()));
        const OutlineNode* stored = reader.outline()->childAt(1);
        QCOMPARE(stored->fields().textColor, colour);
        QVERIFY(!stored->fields().usesTreeColours);
    }
    KVERIFY_OK(m_commands->setColour(b, std::nullopt)); // "White"
    QVERIFY(b->fields().usesTreeColours);
}

void OutlineCommandsTest::moveUpAndDown()
{
    TRMData& data = m_store->data;
    OutlineNode* c = node(QStringLiteral("C"));
    QVERIFY(m_commands->moveUp(c).value());
    QCOMPARE(shape(),
             QStringList({"Project name", ".A", "..A1", "..A2", "...A2a", ".C", "..C1", ".B"}));
    QCOMPARE(data.currentNodeIndex(), 5);
    QVERIFY(m_commands->moveDown(c).value());
    QCOMPARE(shape().mid(5), QStringList({".B", ".C", "..C1"}));
    QCOMPARE(data.currentNodeIndex(), 6);
    QCOMPARE(storedShape(), shape());
}

void OutlineCommandsTest::promoteRules()
{
    // The node above has another level (its parent): right after the parent.
    OutlineNode* a1 = node(QStringLiteral("A1"));
    QVERIFY(m_commands->promote(a1).value());
    QCOMPARE(shape(),
             QStringList({"Project name", ".A", "..A2", "...A2a", ".A1", ".B", ".C", "..C1"}));
    // The node above is at the same level: after the parent, in the grandparent.
    buildOutline();
    QVERIFY(m_commands->promote(node(QStringLiteral("A2"))).value());
    QCOMPARE(shape(),
             QStringList({"Project name", ".A", "..A1", ".A2", "..A2a", ".B", ".C", "..C1"}));
    // A deeper node above sends the node into that node's parent, one level down.
    buildOutline();
    OutlineNode* extra =
        m_store->data.outline().addChild(node(QStringLiteral("A")), OutlineNodeData{});
    m_store->data.outline().setCaption(extra, QStringLiteral("A3"));
    m_store->data.outline().addChild(node(QStringLiteral("A2a")), OutlineNodeData{});
    // root: A(A1, A2(A2a(x)), A3)  — A3 has A2a's child above it, at level 4.
    QVERIFY(m_commands->promote(extra).value());
    QCOMPARE(extra->parent(), node(QStringLiteral("A2a")));
    QCOMPARE(storedShape(), shape());
}

void OutlineCommandsTest::demoteRules()
{
    // Above is the previous sibling at the same level: last child of it.
    QVERIFY(m_commands->demote(node(QStringLiteral("A2"))).value());
    QCOMPARE(shape(),
             QStringList({"Project name", ".A", "..A1", "...A2", "....A2a", ".B", ".C", "..C1"}));
    // Above is deeper (A2a under A2 under A1): last child of that node's parent.
    QVERIFY(m_commands->demote(node(QStringLiteral("B"))).value());
    QCOMPARE(node(QStringLiteral("B"))->parent(), node(QStringLiteral("A2")));
    QCOMPARE(m_store->data.currentNodeIndex(),
             m_store->data.outline().indexOf(node(QStringLiteral("B"))));
    QCOMPARE(storedShape(), shape());
}

void OutlineCommandsTest::dropRules()
{
    TRMData& data = m_store->data;
    OutlineModel& m = data.outline();
    QVERIFY(!OutlineCommands::canDrop(m.root(), node(QStringLiteral("B"))));
    QVERIFY(!OutlineCommands::canDrop(node(QStringLiteral("A")), node(QStringLiteral("A2a"))));
    QVERIFY(!OutlineCommands::canDrop(node(QStringLiteral("A")), node(QStringLiteral("A"))));
    QVERIFY(OutlineCommands::canDrop(node(QStringLiteral("A2")), node(QStringLiteral("A"))));

    // Without Ctrl: the last child of the target.
    QVERIFY(m_commands->drop(node(QStringLiteral("B")), node(QStringLiteral("C")), false).value());
    QCOMPARE(shape().mid(5), QStringList({".C", "..C1", "..B"}));
    QCOMPARE(m.selected(), node(QStringLiteral("B")));
    QCOMPARE(data.currentNodeIndex(), 7);
    // With Ctrl: before the target at its level, also when moving down among siblings.
    QVERIFY(m_commands->drop(node(QStringLiteral("A")), node(QStringLiteral("C")), true).value());
    QCOMPARE(shape(),
             QStringList({"Project name", ".A", "..A1", "..A2", "...A2a", ".C", "..C1", "..B"}));
    QVERIFY(m_commands->drop(node(QStringLiteral("A1")), node(QStringLiteral("B")), true).value());
    QCOMPARE(shape().mid(4), QStringList({".C", "..C1", "..A1", "..B"}));
    // Refused drops still write the outline and change nothing.
    QVERIFY(
        !m_commands->drop(node(QStringLiteral("C")), node(QStringLiteral("C1")), false).value());
    // Nothing goes beside the root.
    QVERIFY(!m_commands->drop(node(QStringLiteral("B")), m.root(), true).value());
    QCOMPARE(storedShape(), shape());
}

void OutlineCommandsTest::disabledCommandsDoNothing()
{
    const QStringList before = shape();
    QVERIFY(!m_commands->moveUp(node(QStringLiteral("A1"))).value());
    QVERIFY(!m_commands->moveDown(node(QStringLiteral("C"))).value());
    QVERIFY(!m_commands->promote(node(QStringLiteral("B"))).value());
    QVERIFY(!m_commands->demote(node(QStringLiteral("A1"))).value());
    QVERIFY(!m_commands->moveUp(m_store->data.outline().root()).value());
    QVERIFY(!m_commands->moveUp(nullptr).value());
    KVERIFY_OK(m_commands->deleteItem(nullptr));
    KVERIFY_OK(m_commands->rename(nullptr, QStringLiteral("x")));
    QCOMPARE(shape(), before);
}

QTEST_GUILESS_MAIN(OutlineCommandsTest)
#include "OutlineCommandsTest.moc"
