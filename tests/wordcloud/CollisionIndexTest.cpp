// The grid index answers every collision question exactly as the plain scan does.

#include "wordcloud/CollisionIndex.h"

#include <QRandomGenerator>
#include <QtTest>

using namespace kestrum::wordcloud;

Q_DECLARE_METATYPE(CloudRect)

class CollisionIndexTest : public QObject
{
    Q_OBJECT

private slots:
    void touchingBoxesOverlap_data();
    void touchingBoxesOverlap();
    void gridAgreesWithScan_data();
    void gridAgreesWithScan();
    void firstInPlacingOrderWins();
};

void CollisionIndexTest::touchingBoxesOverlap_data()
{
    QTest::addColumn<CloudRect>("other");
    QTest::addColumn<bool>("overlaps");
    // Against {10, 10, 20, 20}.
    QTest::newRow("inside") << CloudRect{12, 12, 15, 15} << true;
    QTest::newRow("touching right edge") << CloudRect{20, 12, 30, 15} << true;
    QTest::newRow("touching bottom edge") << CloudRect{12, 20, 15, 30} << true;
    QTest::newRow("touching corner") << CloudRect{20, 20, 30, 30} << true;
    QTest::newRow("one pixel right") << CloudRect{21, 12, 30, 15} << false;
    QTest::newRow("one pixel above") << CloudRect{12, 0, 15, 9} << false;
    QTest::newRow("wholly left") << CloudRect{0, 0, 9, 30} << false;
    QTest::newRow("wholly below") << CloudRect{0, 21, 30, 30} << false;
}

void CollisionIndexTest::touchingBoxesOverlap()
{
    QFETCH(CloudRect, other);
    QFETCH(bool, overlaps);
    const CloudRect box{10, 10, 20, 20};
    QCOMPARE(box.overlaps(other), overlaps);
    QCOMPARE(other.overlaps(box), overlaps);
    for (auto mode : {CollisionIndex::Mode::Grid, CollisionIndex::Mode::LinearScan}) {
        CollisionIndex index;
        index.reset({0, 0, 40, 40}, mode);
        index.add(box);
        QCOMPARE(index.firstOverlap(other), overlaps ? 0 : -1);
    }
}

void CollisionIndexTest::gridAgreesWithScan_data()
{
    QTest::addColumn<CloudRect>("area");
    QTest::addColumn<int>("boxes");
    QTest::addColumn<int>("maxSide");
    QTest::newRow("800x600, small words") << CloudRect{10, 10, 790, 590} << 2000 << 30;
    QTest::newRow("800x600, large words") << CloudRect{10, 10, 790, 590} << 300 << 300;
    QTest::newRow("tiny area") << CloudRect{0, 0, 7, 5} << 50 << 4;
    QTest::newRow("offset, tall") << CloudRect{-300, 200, -100, 2200} << 800 << 60;
}

void CollisionIndexTest::gridAgreesWithScan()
{
    QFETCH(CloudRect, area);
    QFETCH(int, boxes);
    QFETCH(int, maxSide);
    QRandomGenerator random(boxes * 31 + maxSide);
    // Boxes anywhere around the area, some reaching outside it, a few empty or inverted.
    auto randomBox = [&] {
        const int x = area.left - maxSide + int(random.bounded(area.width() + 2 * maxSide));
        const int y = area.top - maxSide + int(random.bounded(area.height() + 2 * maxSide));
        const int w = int(random.bounded(maxSide + 1)) - 1;
        const int h = int(random.bounded(maxSide + 1)) - 1;
        return CloudRect{x, y, x + w, y + h};
    };
    CollisionIndex grid;
    CollisionIndex scan;
    grid.reset(area, CollisionIndex::Mode::Grid);
    scan.reset(area, CollisionIndex::Mode::LinearScan);
    int hits = 0;
    for (int i = 0; i < boxes; ++i) {
        for (int q = 0; q < 20; ++q) {
            const CloudRect query = randomBox();
            const int expected = scan.firstOverlap(query);
            QCOMPARE(grid.firstOverlap(query), expected);
            hits += expected >= 0;
        }
        const CloudRect box = randomBox();
        QCOMPARE(grid.add(box), scan.add(box));
    }
    QVERIFY(hits > boxes); // the queries did meet placed boxes
}

void CollisionIndexTest::firstInPlacingOrderWins()
{
    CollisionIndex index;
    index.reset({0, 0, 1000, 1000}, CollisionIndex::Mode::Grid);
    index.add({500, 500, 520, 520}); // 0: far from the query's first buckets
    index.add({0, 0, 600, 10});      // 1
    index.add({0, 0, 5, 5});         // 2: in the query's first bucket
    QCOMPARE(index.firstOverlap({0, 0, 510, 510}), 0);
    QCOMPARE(index.firstOverlap({0, 0, 100, 100}), 1);
    QCOMPARE(index.firstOverlap({0, 11, 4, 40}), -1);
}

QTEST_GUILESS_MAIN(CollisionIndexTest)
#include "CollisionIndexTest.moc"
