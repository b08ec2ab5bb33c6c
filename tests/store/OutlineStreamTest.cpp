// The stored outline: every node attribute survives, and no byte sequence crashes the reader.

#include "store/OutlineStream.h"

#include "common/ByteStream.h"
#include "common/Colour.h"

#include <QRandomGenerator>
#include <QtTest>

using namespace kestrum::store;

namespace {

OutlineNodeData nodeData(const QString& caption, qint32 kind, qint32 data)
{
    OutlineNodeData d;
    d.caption = caption;
    d.imageIndex = kind;
    d.data = data;
    return d;
}

std::unique_ptr<OutlineNode> sampleTree()
{
    auto root = std::make_unique<OutlineNode>(nodeData(QStringLiteral("Étude — 2026"), 10, 3));
    OutlineNode* folder = root->appendChildUnchecked(
        std::make_unique<OutlineNode>(nodeData(QStringLiteral("Folder"), 11, -1)));
    OutlineNodeData marked = nodeData(QStringLiteral("Marked ✓ 日本語"), 5, 42);
    marked.usesTreeColours = false;
    marked.textColor = kestrum::common::clAqua;
    marked.backColor = kestrum::common::clWindow;
    marked.expanded = true;
    OutlineNode* page = folder->appendChildUnchecked(std::make_unique<OutlineNode>(marked));
    page->appendChildUnchecked(std::make_unique<OutlineNode>(nodeData(QString(), 13, 2147483647)));
    root->appendChildUnchecked(
        std::make_unique<OutlineNode>(nodeData(QStringLiteral("tab\there"), 1, 7)));
    return root;
}

void collect(const OutlineNode* root, QList<QPair<int, OutlineNodeData>>& out)
{
    visitInOrder(root, [&out](const OutlineNode* n, int level) {
        out.append({level, n->fields()});
    });
}

} // namespace

class OutlineStreamTest : public QObject
{
    Q_OBJECT
private slots:
    void roundTripKeepsEveryAttributeAndShape();
    void emptyInputIsNoTreeWithoutError();
    void everyTruncationIsRefused();
    void structuralDamageIsRefused_data();
    void structuralDamageIsRefused();
    void randomBytesNeverCrash();
    void deepOutlineWithinTheLimit();
};

void OutlineStreamTest::roundTripKeepsEveryAttributeAndShape()
{
    const auto tree = sampleTree();
    const QByteArray bytes = OutlineStream::write(tree.get());
    QVERIFY(bytes.startsWith("KSTO"));
    const auto read = OutlineStream::read(bytes);
    QVERIFY2(read, qPrintable(read.error()));
    const OutlineNode* back = read->get();
    QVERIFY(back);
    QList<QPair<int, OutlineNodeData>> a;
    QList<QPair<int, OutlineNodeData>> b;
    collect(tree.get(), a);
    collect(back, b);
    QCOMPARE(b.size(), 5);
    QVERIFY(a == b);
    QCOMPARE(OutlineStream::write(back), bytes);
}

void OutlineStreamTest::emptyInputIsNoTreeWithoutError()
{
    const auto read = OutlineStream::read({});
    QVERIFY2(read, qPrintable(read.error()));
    QVERIFY(!*read);
}

void OutlineStreamTest::everyTruncationIsRefused()
{
    const QByteArray bytes = OutlineStream::write(sampleTree().get());
    for (qsizetype n = 1; n < bytes.size(); ++n) {
        const auto read = OutlineStream::read(bytes.left(n));
        QVERIFY2(!read, qPrintable(QString::number(n)));
        QVERIFY(!read.error().isEmpty());
    }
}

void OutlineStreamTest::structuralDamageIsRefused_data()
{
    using kestrum::common::ByteWriter;
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("why");
    auto header = [](quint16 version, quint32 count) {
        ByteWriter w;
        w.raw("KSTO", 4);
        w.u16(version);
        w.u16(0);
        w.u32(count);
        return w;
    };
    auto node = [](ByteWriter& w, quint16 level) {
        w.u16(level);
        w.i32(0);
        w.i32(1);
        w.i32(0);
        w.i32(0);
        w.u8(1);
        w.string(QStringLiteral("n"));
    };
    QTest::newRow("wrong magic") << QByteArray("XXXX\1\0\0\0\1\0\0\0") << "not an outline";
    QTest::newRow("future version") << header(2, 1).take() << "newer";
    QTest::newRow("no nodes") << header(1, 0).take() << "no root";
    QTest::newRow("count beyond the data") << header(1, 100000).take() << "cannot hold";
    ByteWriter rootNotFirst = header(1, 1);
    node(rootNotFirst, 1);
    QTest::newRow("first node not at level 0") << rootNotFirst.take() << "not the root";
    ByteWriter jump = header(1, 2);
    node(jump, 0);
    node(jump, 2);
    QTest::newRow("level jumps by two") << jump.take() << "impossible level";
    ByteWriter secondRoot = header(1, 2);
    node(secondRoot, 0);
    node(secondRoot, 0);
    QTest::newRow("a second root") << secondRoot.take() << "impossible level";
    ByteWriter trailing = header(1, 1);
    node(trailing, 0);
    trailing.u8(0);
    QTest::newRow("trailing bytes") << trailing.take() << "unexpected bytes";
}

void OutlineStreamTest::structuralDamageIsRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, why);
    const auto read = OutlineStream::read(bytes);
    QVERIFY(!read);
    QVERIFY2(read.error().contains(why), qPrintable(read.error()));
}

void OutlineStreamTest::randomBytesNeverCrash()
{
    const QByteArray valid = OutlineStream::write(sampleTree().get());
    QRandomGenerator rng(2026);
    for (int round = 0; round < 3000; ++round) {
        QByteArray bytes = valid;
        const int flips = 1 + int(rng.bounded(6));
        for (int i = 0; i < flips; ++i) {
            bytes[int(rng.bounded(quint32(bytes.size())))] = char(rng.bounded(256));
        }
        const auto tree = OutlineStream::read(bytes);
        QVERIFY(tree ? *tree != nullptr : !tree.error().isEmpty());
    }
}

void OutlineStreamTest::deepOutlineWithinTheLimit()
{
    auto root = std::make_unique<OutlineNode>(nodeData(QStringLiteral("root"), 10, 0));
    OutlineNode* at = root.get();
    for (int i = 0; i < OutlineStream::kMaxDepth; ++i) {
        at = at->appendChildUnchecked(
            std::make_unique<OutlineNode>(nodeData(QStringLiteral("d"), 0, i + 1)));
    }
    const QByteArray bytes = OutlineStream::write(root.get());
    const auto deepest = OutlineStream::read(bytes);
    QVERIFY2(deepest && *deepest, qPrintable(deepest.error()));
    // One level deeper than readers accept.
    at->appendChildUnchecked(std::make_unique<OutlineNode>(nodeData(QStringLiteral("d"), 0, 9999)));
    const auto tooDeep = OutlineStream::read(OutlineStream::write(root.get()));
    QVERIFY(!tooDeep);
    QVERIFY(tooDeep.error().contains(QLatin1String("level")));
}

QTEST_GUILESS_MAIN(OutlineStreamTest)
#include "OutlineStreamTest.moc"
