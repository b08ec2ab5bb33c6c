// The bitmap of placed boxes answers every question the walk asks exactly as a scan of the
// boxes does: whether a box is free, and which positions a band of rows or columns blocks.

#include "wordcloud/OccupancyMap.h"
#include "wordcloud/CollisionIndex.h"

#include <QRandomGenerator>
#include <QtTest>

using namespace kestrum::wordcloud;

Q_DECLARE_METATYPE(CloudRect)

class OccupancyMapTest : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithScan_data();
    void agreesWithScan();
    void lineSearchesBothWays();
};

void OccupancyMapTest::agreesWithScan_data()
{
    QTest::addColumn<CloudRect>("area");
    QTest::addColumn<int>("boxes");
    QTest::addColumn<int>("maxSide");
    QTest::newRow("800x600, small words") << CloudRect{10, 10, 790, 590} << 1500 << 30;
    QTest::newRow("800x600, large words") << CloudRect{10, 10, 790, 590} << 200 << 300;
    QTest::newRow("tiny area") << CloudRect{0, 0, 7, 5} << 40 << 4;
    QTest::newRow("offset, 64 wide") << CloudRect{-300, 200, -237, 900} << 300 << 40;
}

void OccupancyMapTest::agreesWithScan()
{
    QFETCH(CloudRect, area);
    QFETCH(int, boxes);
    QFETCH(int, maxSide);
    QRandomGenerator random(quint32(boxes * 31 + maxSide));
    // Boxes within the area (edges included), as the walk asks about them; one pixel wide or
    // high at least.
    auto randomBox = [&] {
        const int w = std::min(int(random.bounded(maxSide)), area.width());
        const int h = std::min(int(random.bounded(maxSide)), area.height());
        const int x = area.left + int(random.bounded(area.width() - w + 1));
        const int y = area.top + int(random.bounded(area.height() - h + 1));
        return CloudRect{x, y, x + w, y + h};
    };
    OccupancyMap map;
    CollisionIndex scan;
    map.reset(area);
    scan.reset(area, CollisionIndex::Mode::LinearScan);
    OccupancyMap::Line line;
    int blocked = 0;
    int freeQueries = 0;
    for (int i = 0; i < boxes; ++i) {
        for (int q = 0; q < 10; ++q) {
            const CloudRect query = randomBox();
            const bool free = scan.firstOverlap(query) < 0;
            QCOMPARE(map.isFree(query), free);
            blocked += !free;
            freeQueries += free;
        }
        // A band along x (rows) or along y (columns), folded over part of its length.
        const bool alongX = random.bounded(2) == 0;
        const CloudRect band = randomBox();
        const int crossLo = alongX ? band.top : band.left;
        const int crossHi = alongX ? band.bottom : band.right;
        const int from = alongX ? band.left : band.top;
        const int to = alongX ? band.right : band.bottom;
        map.project(alongX, crossLo, crossHi, from, to, line);
        QVERIFY(line.base <= from && line.last >= to);
        for (int p = from; p <= to; ++p) {
            const CloudRect cell =
                alongX ? CloudRect{p, crossLo, p, crossHi} : CloudRect{crossLo, p, crossHi, p};
            const bool set = scan.firstOverlap(cell) >= 0;
            // The first set (clear) position from p on, and the last up to p.
            QCOMPARE(line.find(set, p, to) == p, true);
            QCOMPARE(line.findBackward(set, from, p) == p, true);
            QCOMPARE(line.find(!set, p, p), p + 1);
            QCOMPARE(line.findBackward(!set, p, p), p - 1);
        }
        const CloudRect box = randomBox();
        map.add(box);
        scan.add(box);
    }
    QVERIFY(blocked > boxes);  // the queries did meet placed boxes
    QVERIFY(freeQueries > 10); // and found free places too
}

void OccupancyMapTest::lineSearchesBothWays()
{
    OccupancyMap::Line line;
    line.base = -64;
    line.last = 127;
    line.bits = {quint64(1) << 63, 0, quint64(1) << 1}; // positions -1 and 65
    QCOMPARE(line.find(true, -64, 127), -1);
    QCOMPARE(line.find(true, 0, 127), 65);
    QCOMPARE(line.find(true, 0, 60), 61); // none: one past the end
    QCOMPARE(line.findBackward(true, -64, 127), 65);
    QCOMPARE(line.findBackward(true, -64, 64), -1);
    QCOMPARE(line.findBackward(true, 2, 64), 1); // none: one before the start
    QCOMPARE(line.find(false, -1, 127), 0);
    QCOMPARE(line.findBackward(false, -64, 65), 64);
}

QTEST_GUILESS_MAIN(OccupancyMapTest)
#include "OccupancyMapTest.moc"
