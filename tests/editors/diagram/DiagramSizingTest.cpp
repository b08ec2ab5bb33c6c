// The sizing sliders: link widths from weights (with the first-link colour rule), node and
// text sizes.

#include "editors/diagram/DiagramSizing.h"
#include "DiagramSamples.h"
#include "editors/diagram/DiagramDocument.h"

#include <QTest>

using namespace kestrum::diagram;

class DiagramSizingTest : public QObject
{
    Q_OBJECT

private slots:
    void edgeSizeRoundsTiesToEven()
    {
        const SizingValues defaults;
        QCOMPARE(DiagramSizing::GetEdgeSize(defaults, 0.1), 0); // 0.396
        QCOMPARE(DiagramSizing::GetEdgeSize(defaults, 1), 4);   // 3.96
        QCOMPARE(DiagramSizing::GetEdgeSize(defaults, 10), 40); // 39.6
        SizingValues exact;
        exact.reduction = 0;                                   // 4 x weight
        QCOMPARE(DiagramSizing::GetEdgeSize(exact, 0.625), 2); // 2.5
        QCOMPARE(DiagramSizing::GetEdgeSize(exact, 0.875), 4); // 3.5
        exact.edgeFactor = 2.5;
        exact.scale = 0.5;
        QCOMPARE(DiagramSizing::GetEdgeSize(exact, 3), 15); // 4 x 3 x 1.25
        QCOMPARE(DiagramSizing::GetEdgeSize(exact, 1e300), std::numeric_limits<int>::max());
    }

    void thinLinkTurnsTheFirstLinkLightGrey()
    {
        DiagramDocument d = kestrum::test::sampleRing();
        for (DiagramLink& l : d.links()) {
            l.colour = 0x0000FF;
        }
        d.links()[0].cells.front().text = QStringLiteral("2");
        d.links()[3].cells.front().text = QStringLiteral("0.1"); // last: its colour rule wins
        QVERIFY(DiagramSizing::applyLinkWidths(d, SizingValues{}).ok());
        QCOMPARE(d.links()[3].penWidth, 1);
        QCOMPARE(d.links()[0].penWidth, 8); // 7.92
        QCOMPARE(d.links()[0].colour, 0xC0C0C0);
        QCOMPARE(d.links()[3].colour, 0x0000FF); // the colour goes to the first link only
    }

    void otherwiseTheFirstLinkTurnsGrey()
    {
        DiagramDocument d = kestrum::test::sampleRing(); // weights 1, 2, 3, 4
        d.links()[0].cells.front().text = QStringLiteral("0.1");
        QVERIFY(DiagramSizing::applyLinkWidths(d, SizingValues{}).ok());
        QCOMPARE(d.links()[0].penWidth, 1);
        QCOMPARE(d.links()[0].colour, 0x808080);
        QCOMPARE(d.links()[3].penWidth, 16); // 15.84
    }

    void aWeightThatIsNotANumberStopsThePass()
    {
        DiagramDocument d = kestrum::test::sampleRing();
        d.links()[2].cells.front().text = QStringLiteral("strong");
        const kestrum::Status s = DiagramSizing::applyLinkWidths(d, SizingValues{});
        QVERIFY(!s.ok());
        QCOMPARE(s.error(), QStringLiteral("'strong' is not a valid floating point value"));
        QCOMPARE(d.links()[0].penWidth, 4);
        QCOMPARE(d.links()[1].penWidth, 8);
        QCOMPARE(d.links()[2].penWidth, 1); // untouched from here on
        QCOMPARE(d.links()[3].penWidth, 1);
    }

    void weightsAreNumbers()
    {
        QCOMPARE(*DiagramSizing::readWeight(QStringLiteral(" 2.5 ")), 2.5);
        QCOMPARE(*DiagramSizing::readWeight(QStringLiteral("-1e2")), -100.0);
        QVERIFY(!DiagramSizing::readWeight(QString()).ok());
        QVERIFY(!DiagramSizing::readWeight(QStringLiteral("inf")).ok());
        QVERIFY(!DiagramSizing::readWeight(QStringLiteral("2,5,1")).ok());
    }

    void negativeAndHugeWeightsStayStorable()
    {
        DiagramDocument d = kestrum::test::sampleRing();
        d.links()[0].cells.front().text = QStringLiteral("-3");
        d.links()[1].cells.front().text = QStringLiteral("1e9");
        QVERIFY(DiagramSizing::applyLinkWidths(d, SizingValues{}).ok());
        QCOMPARE(d.links()[0].penWidth, 0);
        QCOMPARE(d.links()[1].penWidth, 1000);
    }

    void nodeSliderSizesBlocksAndResetsTheirTexts()
    {
        DiagramDocument d = kestrum::test::sampleRing();
        d.blocks()[1].cells.front().font.size = 20;
        d.blocks()[2].width = 5;
        SizingValues v;
        v.nodeSize = 100;
        v.nodeTextSize = 12;
        DiagramSizing::applyNodeSize(d, v);
        for (const DiagramBlock& b : d.blocks()) {
            QCOMPARE(b.width, 100.0);
            QCOMPARE(b.height, 100.0);
            QCOMPARE(b.cells.front().font.size, 12);
        }
        QCOMPARE(d.links()[0].cells.front().font.size, 8); // links keep theirs
    }

    void textSlidersTouchOnlyTheirItems()
    {
        DiagramDocument d = kestrum::test::sampleRing();
        SizingValues v;
        v.nodeTextSize = 15;
        v.linkTextSize = 3;
        DiagramSizing::applyNodeTextSize(d, v);
        QCOMPARE(d.blocks()[0].cells.front().font.size, 15);
        QCOMPARE(d.blocks()[0].width, 30.0);
        QCOMPARE(d.links()[0].cells.front().font.size, 8);
        DiagramSizing::applyLinkTextSize(d, v);
        QCOMPARE(d.links()[3].cells.front().font.size, 3);
        QCOMPARE(d.blocks()[3].cells.front().font.size, 15);
    }
};

QTEST_GUILESS_MAIN(DiagramSizingTest)
#include "DiagramSizingTest.moc"
