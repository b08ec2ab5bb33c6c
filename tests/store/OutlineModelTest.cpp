// The outline model: structure changes, absolute indices, selection and the change signals a
// view follows.

#include "store/OutlineModel.h"

#include <QSignalSpy>
#include <QtTest>

using namespace kestrum::store;

namespace {

OutlineNodeData named(const QString& caption, qint32 data = -1)
{
    OutlineNodeData d;
    d.caption = caption;
    d.data = data;
    return d;
}

QStringList captions(const OutlineModel& model)
{
    QStringList out;
    for (const OutlineNode* n : model.nodesInOrder()) {
        out << QString(n->level(), QLatin1Char('.')) + n->caption();
    }
    return out;
}

// root: A(A1, A2), B, C(C1)
void build(OutlineModel& m)
{
    OutlineNode* root = m.createRoot(named(QStringLiteral("root"), 0));
    OutlineNode* a = m.addChild(root, named(QStringLiteral("A")));
    m.addChild(a, named(QStringLiteral("A1")));
    m.addChild(a, named(QStringLiteral("A2")));
    m.addChild(root, named(QStringLiteral("B")));
    OutlineNode* c = m.addChild(root, named(QStringLiteral("C")));
    m.addChild(c, named(QStringLiteral("C1")));
}

} // namespace

class OutlineModelTest : public QObject
{
    Q_OBJECT
private slots:
    void absoluteIndicesFollowTreeOrder();
    void insertAfterAndAtRow();
    void removeTakesTheSubtreeAndClearsSelection();
    void moveKeepsSubtreeAndRowsConsistent();
    void moveRefusesRootAndOwnSubtree();
    void moveSignalsCountTheRowBeforeTheMove();
    void bulkAppendIsOneInsertion();
    void captionsAreBounded();
    void veryDeepTreeIsDestroyedWithoutRecursion();
};

void OutlineModelTest::absoluteIndicesFollowTreeOrder()
{
    OutlineModel m;
    build(m);
    QCOMPARE(captions(m), QStringList({"root", ".A", "..A1", "..A2", ".B", ".C", "..C1"}));
    QCOMPARE(m.count(), 7);
    QCOMPARE(m.nodeAt(4)->caption(), QStringLiteral("B"));
    QCOMPARE(m.indexOf(m.nodeAt(6)), 6);
    QCOMPARE(m.nodeAt(7), nullptr);
    QCOMPARE(m.nodeAt(-1), nullptr);
    QCOMPARE(m.subtreeEnd(m.nodeAt(1)), 4);
    QCOMPARE(m.subtreeEnd(m.nodeAt(0)), 7);
    QCOMPARE(m.nodeAt(3)->row(), 1);
    QCOMPARE(m.nodeAt(3)->level(), 2);
    QVERIFY(m.nodeAt(3)->isUnder(m.nodeAt(1)));
    QVERIFY(!m.nodeAt(4)->isUnder(m.nodeAt(1)));
}

void OutlineModelTest::insertAfterAndAtRow()
{
    OutlineModel m;
    build(m);
    m.addAfter(m.nodeAt(2), named(QStringLiteral("A1b")));
    m.insertNode(m.root(), 0, named(QStringLiteral("first")));
    QCOMPARE(captions(m),
             QStringList({"root", ".first", ".A", "..A1", "..A1b", "..A2", ".B", ".C", "..C1"}));
    QCOMPARE(m.addAfter(m.root(), named(QStringLiteral("x"))), nullptr); // nothing beside the root
    for (int i = 0; i < m.root()->childCount(); ++i) {
        QCOMPARE(m.root()->childAt(i)->row(), i);
    }
}

void OutlineModelTest::removeTakesTheSubtreeAndClearsSelection()
{
    OutlineModel m;
    build(m);
    m.setSelected(m.nodeAt(3)); // A2
    QSignalSpy selection(&m, &OutlineModel::selectionChanged);
    m.removeNode(m.nodeAt(1));
    QCOMPARE(captions(m), QStringList({"root", ".B", ".C", "..C1"}));
    QCOMPARE(m.selected(), nullptr);
    QCOMPARE(selection.count(), 1);
    QCOMPARE(m.nodeAt(2)->row(), 1);
    m.removeNode(m.root());
    QVERIFY(m.isEmpty());
    QCOMPARE(m.count(), 0);
}

void OutlineModelTest::moveKeepsSubtreeAndRowsConsistent()
{
    OutlineModel m;
    build(m);
    OutlineNode* a = m.nodeAt(1);
    QVERIFY(m.moveNode(a, m.nodeAt(5), 0)); // A with its children under C, first
    QCOMPARE(captions(m), QStringList({"root", ".B", ".C", "..A", "...A1", "...A2", "..C1"}));
    QVERIFY(m.moveNode(m.nodeAt(1), m.root(), 5)); // B to the end (clamped)
    QCOMPARE(captions(m), QStringList({"root", ".C", "..A", "...A1", "...A2", "..C1", ".B"}));
    QVERIFY(m.moveNode(m.nodeAt(6), m.root(), 0)); // and back to the front
    QCOMPARE(captions(m), QStringList({"root", ".B", ".C", "..A", "...A1", "...A2", "..C1"}));
    for (const OutlineNode* n : m.nodesInOrder()) {
        if (n->parent()) {
            QCOMPARE(n->parent()->childAt(n->row()), n);
        }
    }
}

void OutlineModelTest::moveRefusesRootAndOwnSubtree()
{
    OutlineModel m;
    build(m);
    const QStringList before = captions(m);
    QVERIFY(!m.moveNode(m.root(), m.nodeAt(1), 0));
    QVERIFY(!m.moveNode(m.nodeAt(1), m.nodeAt(2), 0)); // A into A1
    QVERIFY(!m.moveNode(m.nodeAt(1), m.nodeAt(1), 0));
    QCOMPARE(captions(m), before);
}

void OutlineModelTest::moveSignalsCountTheRowBeforeTheMove()
{
    OutlineModel m;
    build(m);
    QSignalSpy spy(&m, &OutlineModel::nodeAboutToBeMoved);
    m.moveNode(m.nodeAt(1), m.root(), 2); // A from row 0 to final row 2
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(2).toInt(), 3); // counted before A leaves row 0
    QCOMPARE(m.root()->childAt(2)->caption(), QStringLiteral("A"));
}

void OutlineModelTest::bulkAppendIsOneInsertion()
{
    OutlineModel m;
    build(m);
    QSignalSpy spy(&m, &OutlineModel::nodesInserted);
    std::vector<OutlineNodeData> many;
    for (int i = 0; i < 1000; ++i) {
        many.push_back(named(QString::number(i), i + 100));
    }
    OutlineNode* first = m.appendChildren(m.nodeAt(4), many);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(2).toInt(), 1000);
    QCOMPARE(first->caption(), QStringLiteral("0"));
    QCOMPARE(m.indexOf(first), 5);
    QCOMPARE(m.nodeAt(4)->childAt(999)->row(), 999);
    QCOMPARE(m.count(), 1007);
}

void OutlineModelTest::captionsAreBounded()
{
    OutlineModel m;
    build(m);
    OutlineNode* n = m.addChild(m.root(), named(QString(100000, QLatin1Char('x'))));
    QCOMPARE(n->caption().size(), OutlineModel::kMaxCaptionLength);
    m.setCaption(n, QString(9000, QLatin1Char('y')));
    QCOMPARE(n->caption().size(), OutlineModel::kMaxCaptionLength);
}

void OutlineModelTest::veryDeepTreeIsDestroyedWithoutRecursion()
{
    auto model = std::make_unique<OutlineModel>();
    OutlineNode* at = model->createRoot(named(QStringLiteral("root")));
    for (int i = 0; i < 200000; ++i) {
        at = at->appendChildUnchecked(std::make_unique<OutlineNode>(named(QStringLiteral("d"))));
    }
    model.reset(); // would overflow the stack if nodes were destroyed recursively
    QVERIFY(!model);
}

QTEST_GUILESS_MAIN(OutlineModelTest)
#include "OutlineModelTest.moc"
