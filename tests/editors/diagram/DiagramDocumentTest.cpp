// The diagram document's commands: zoom steps, deletion with links, link text visibility,
// fitting and centring.

#include "editors/diagram/DiagramDocument.h"
#include "DiagramSamples.h"

#include <QTest>

using namespace kestrum::diagram;
using kestrum::test::blockNames;
using kestrum::test::linkNames;
using kestrum::test::sampleRing;

class DiagramDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void zoomStepsRoundTiesToEven()
    {
        QList<int> in;
        QList<int> out;
        int z = 100;
        int w = 100;
        for (int i = 0; i < 4; ++i) {
            in << (z = DiagramDocument::zoomedIn(z));
            out << (w = DiagramDocument::zoomedOut(w));
        }
        QCOMPARE(in, (QList<int>{110, 121, 133, 146}));
        QCOMPARE(out, (QList<int>{90, 81, 73, 66}));
        // 25 x 0.9 = 22.5 and 15 x 1.1 = 16.5: halves go to the even neighbour.
        QCOMPARE(DiagramDocument::zoomedOut(25), 22);
        QCOMPARE(DiagramDocument::zoomedIn(15), 16);
        QCOMPARE(DiagramDocument::zoomedOut(5), 4); // 4.5
        // No bounds: small zooms stay positive, large ones saturate instead of overflowing.
        QCOMPARE(DiagramDocument::zoomedOut(4), 4);
        QCOMPARE(DiagramDocument::zoomedIn(std::numeric_limits<int>::max()),
                 std::numeric_limits<int>::max());
    }

    void deletingABlockTakesEveryLinkOfIt()
    {
        DiagramDocument d = sampleRing();
        d.blocks()[1].selected = true; // B: links A>B and B>C go, unselected as they are
        QVERIFY(d.deleteSelected());
        QCOMPARE(blockNames(d), QStringLiteral("A C D"));
        QCOMPARE(linkNames(d), QStringLiteral("C>D D>A"));
    }

    void deletingLinksOnlyKeepsTheirBlocks()
    {
        DiagramDocument d = sampleRing();
        d.links()[0].selected = true;
        d.links()[3].selected = true;
        QVERIFY(d.deleteSelected());
        QCOMPARE(blockNames(d), QStringLiteral("A B C D"));
        QCOMPARE(linkNames(d), QStringLiteral("B>C C>D"));
    }

    void deletingSeveralBlocksKeepsLinksOnTheirBlocks()
    {
        DiagramDocument d = sampleRing();
        d.blocks().push_back(kestrum::test::sampleBlock(QStringLiteral("E"), 0, 200));
        d.links().push_back(kestrum::test::sampleLink(4, 2)); // E>C
        d.links().push_back(kestrum::test::sampleLink(2, 2)); // C>C, a loop
        d.blocks()[0].selected = true;                        // A
        d.blocks()[3].selected = true;                        // D
        d.links()[1].selected = true;                         // B>C
        QVERIFY(d.deleteSelected());
        QCOMPARE(blockNames(d), QStringLiteral("B C E"));
        QCOMPARE(linkNames(d), QStringLiteral("E>C C>C"));
        for (const DiagramLink& l : d.links()) {
            QVERIFY(l.source >= 0 && l.source < 3 && l.target >= 0 && l.target < 3);
        }
    }

    // Consecutive links of the same block: the index after a deletion is tested again.
    void adjacentLinksOfADeletedBlockAllGo()
    {
        DiagramDocument d = sampleRing();
        d.links().insert(d.links().begin(), kestrum::test::sampleLink(2, 0)); // C>A
        d.links().insert(d.links().begin(), kestrum::test::sampleLink(0, 3)); // A>D
        d.blocks()[0].selected = true;
        QVERIFY(d.deleteSelected());
        QCOMPARE(linkNames(d), QStringLiteral("B>C C>D"));
    }

    void nothingSelectedDeletesNothing()
    {
        DiagramDocument d = sampleRing();
        const DiagramDocument before = d;
        QVERIFY(!d.deleteSelected());
        QVERIFY(d == before);
        DiagramDocument empty;
        QVERIFY(!empty.deleteSelected());
        QVERIFY(!empty.anyBlockSelected() && !empty.anyLinkSelected());
    }

    void linkTextsFollowTheTextButton()
    {
        DiagramDocument d = sampleRing();
        QVERIFY(d.linkTextsVisible());
        d.links()[2].cells.clear(); // a link without cells gets one
        d.setLinkTextsVisible(false);
        QVERIFY(!d.linkTextsVisible());
        for (const DiagramLink& l : d.links()) {
            QCOMPARE(l.cells.size(), std::size_t(1));
            QVERIFY(!l.cells.front().visible);
        }
        for (const DiagramBlock& b : d.blocks()) {
            QVERIFY(b.cells.front().visible); // block texts stay
        }
        d.setLinkTextsVisible(true);
        QVERIFY(d.linkTextsVisible());
        QVERIFY(DiagramDocument().linkTextsVisible());
    }

    void centringUsesTheSmallestAndLargestLeft()
    {
        DiagramDocument d = sampleRing(); // lefts 0, 100, 200, 300; first width 30
        d.setZoom(50);
        // S = (400 / 50 x 100 - (300 + 0)) / 2 - 15 = 235
        QCOMPARE(d.centreHorizontally(400), 235.0);
        QCOMPARE(d.blocks()[0].left, 235.0);
        QCOMPARE(d.blocks()[3].left, 535.0);
        // Too narrow: S is not above 0 and the blocks stay.
        d.setZoom(100);
        const double s = d.centreHorizontally(100);
        QVERIFY(s <= 0);
        QCOMPARE(d.blocks()[0].left, 235.0);
        DiagramDocument empty;
        QCOMPARE(empty.centreHorizontally(500), 0.0);
    }

    void fitZoomKeepsTheWholeDiagramInside()
    {
        DiagramDocument d = sampleRing(); // 330 x 30 drawing units
        const int zoom = d.fitZoom(QSizeF(500, 400), 10);
        QCOMPARE(zoom, 145); // (500 - 20) / 330 = 1.4545...
        QVERIFY(330 * zoom / 100.0 <= 480);
        QCOMPARE(DiagramDocument().fitZoom(QSizeF(500, 400), 10), 100);
        QVERIFY(d.fitZoom(QSizeF(5, 5), 10) >= 1);
    }
};

QTEST_GUILESS_MAIN(DiagramDocumentTest)
#include "DiagramDocumentTest.moc"
