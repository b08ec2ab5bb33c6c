// The toolbar's chart changes, the button states of a loaded chart and the 3D motion.

#include "editors/chart/ChartCommands.h"
#include "ChartSamples.h"
#include "editors/chart/AxisScale.h"
#include "editors/chart/ChartButtons.h"
#include "editors/chart/ChartMotion.h"

#include <QTest>

using namespace kestrum;
using namespace kestrum::chart;

class ChartCommandsTest : public QObject
{
    Q_OBJECT

private slots:
    void horizontalBarsTakeTheValueScale()
    {
        Chart c;
        c.series.push_back(samples::bars(QStringLiteral("s"), {1, 2, 3}));
        c.series[0].colourEachPoint = true;
        c.series[0].marks.visible = true;
        c.valueScale = {0, 40, 8};
        c.bottomAxis.labelAngle = 90;
        ChartCommands::switchHBar(c);
        QCOMPARE(c.series[0].kind, SeriesKind::HorizBar);
        QVERIFY(!c.series[0].colourEachPoint);
        QVERIFY(!c.series[0].marks.visible);
        QVERIFY(c.leftAxis.automatic);
        QVERIFY(c.leftAxis.inverted);
        QVERIFY(!c.bottomAxis.automatic);
        QCOMPARE(c.bottomAxis.minimum, 0.0);
        QCOMPARE(c.bottomAxis.maximum, 40.0);
        QCOMPARE(c.bottomAxis.increment, 8.0);
        QVERIFY(c.bottomAxis.gridVisible);
        QVERIFY(!c.leftAxis.gridVisible);
        QCOMPARE(c.bottomAxis.labelAngle, 0);
        // The values now run along the bottom axis, the stored scale.
        QCOMPARE(AxisScale::bottomRange(c), (AxisRange{0, 40, 8}));

        ChartCommands::switchVBar(c);
        QCOMPARE(c.series[0].kind, SeriesKind::Bar);
        QVERIFY(!c.leftAxis.automatic);
        QVERIFY(!c.leftAxis.inverted);
        QCOMPARE(c.leftAxis.maximum, 40.0);
        QVERIFY(c.leftAxis.gridVisible);
        QVERIFY(!c.bottomAxis.gridVisible);
        QVERIFY(c.bottomAxis.automatic);
        QCOMPARE(AxisScale::leftRange(c), (AxisRange{0, 40, 8}));
    }

    void pieShowsLabelsAndPercents()
    {
        Chart c;
        c.series.push_back(samples::bars(QStringLiteral("s"), {1, 3}));
        ChartCommands::switchPie(c);
        const ChartSeries& s = c.series[0];
        QCOMPARE(s.kind, SeriesKind::Pie);
        QVERIFY(s.colourEachPoint);
        QVERIFY(s.marks.visible);
        QCOMPARE(s.marks.style, MarkStyle::LabelPercent);
        QVERIFY(s.marks.transparent);
        QVERIFY(s.circled);
        QCOMPARE(s.marks.percentFormat, QStringLiteral(" ##0.0%"));
        QVERIFY(c.pointColour(0, 0) != c.pointColour(0, 1));
    }

    void groupLinesWidenTheBottomAxis_data()
    {
        QTest::addColumn<int>("points");
        QTest::addColumn<double>("minimum");
        QTest::addColumn<double>("maximum");
        QTest::newRow("0 to 10") << 11 << -0.25 << 10.25;
        QTest::newRow("0 to 100: margin capped") << 101 << -1.0 << 101.0;
    }
    void groupLinesWidenTheBottomAxis()
    {
        QFETCH(int, points);
        QFETCH(double, minimum);
        QFETCH(double, maximum);
        Chart c;
        for (int s = 0; s < 8; ++s) {
            c.series.push_back(samples::bars(QString::number(s), std::vector<double>(points, s)));
        }
        c.leftAxis.endPosition = 100;
        ChartCommands::switchGroupLines(c);
        QVERIFY(!c.bottomAxis.automatic);
        QCOMPARE(c.bottomAxis.minimum, minimum);
        QCOMPARE(c.bottomAxis.maximum, maximum);
        QCOMPARE(c.leftAxis.endPosition, 99);
        for (const ChartSeries& s : c.series) {
            QCOMPARE(s.kind, SeriesKind::Line);
            QVERIFY(s.pointerVisible);
            QCOMPARE(s.pointerWidth, 3);
            QCOMPARE(s.pointerHeight, 3);
            QCOMPARE(s.penWidth, 2);
        }
        QCOMPARE(c.series[0].pointerShape, MarkerShape::Rectangle);
        QCOMPARE(c.series[1].pointerShape, MarkerShape::Triangle);
        QCOMPARE(c.series[3].pointerShape, MarkerShape::Star);
        QCOMPARE(c.series[5].pointerShape, MarkerShape::DiagCross);
        QCOMPARE(c.series[6].pointerShape, MarkerShape::Circle);    // 7 mod 7 = 0
        QCOMPARE(c.series[7].pointerShape, MarkerShape::Rectangle); // 8 mod 7 = 1

        ChartCommands::switchGroupBars(c);
        QVERIFY(c.bottomAxis.automatic);
        QCOMPARE(c.leftAxis.endPosition, 100);
        QCOMPARE(c.series[7].kind, SeriesKind::Bar);
        QCOMPARE(c.series[7].penWidth, 1);
    }

    void groupLinesOnAManualAxisUseItsRange()
    {
        Chart c = samples::grouped();
        c.bottomAxis.automatic = false;
        c.bottomAxis.minimum = 2;
        c.bottomAxis.maximum = 6;
        ChartCommands::switchGroupLines(c);
        QCOMPARE(c.bottomAxis.minimum, 1.9);
        QCOMPARE(c.bottomAxis.maximum, 6.1);
    }

    void swapTurnsSeriesIntoCategories()
    {
        Chart c = samples::grouped(); // three series of four points
        c.series[0].colour = common::clRed;
        const common::TColor second = c.seriesColour(1);
        ChartCommands::swapSeries(c);
        QCOMPARE(c.seriesCount(), 4);
        QCOMPARE(c.series[0].title, QStringLiteral("Trust")); // the second series' labels
        QCOMPARE(c.series[3].title, QStringLiteral("Belonging"));
        for (const ChartSeries& s : c.series) {
            QCOMPARE(s.kind, SeriesKind::Bar);
            QCOMPARE(s.points.size(), std::size_t(3));
            QVERIFY(!s.marks.visible);
            QCOMPARE(s.marks.arrowLength, 5);
            QCOMPARE(s.points[1].label, QStringLiteral("Staff"));
            QCOMPARE(s.points[1].colour, common::clDefault);
        }
        QCOMPARE(c.series[2].points[0].y, 15.0); // Managers, third category
        QCOMPARE(c.series[1].points[1].y, 42.0);
        QCOMPARE(c.series[3].points[2].y, 11.0);
        // The old series' colours go to the new series in order; the fourth keeps its own.
        QCOMPARE(c.series[0].colour, common::clRed);
        QCOMPARE(c.series[1].colour, second);
        QCOMPARE(c.series[3].colour, common::clDefault);
    }

    void swapCountsCategoriesOnTheSecondSeries()
    {
        Chart c;
        c.series.push_back(samples::bars(QStringLiteral("a"), {1, 2, 3}));
        c.series.push_back(samples::bars(QStringLiteral("b"), {4, 5}));
        ChartCommands::swapSeries(c);
        QCOMPARE(c.seriesCount(), 2);
        Chart shorter;
        shorter.series.push_back(samples::bars(QStringLiteral("a"), {1}));
        shorter.series.push_back(samples::bars(QStringLiteral("b"), {4, 5}));
        ChartCommands::swapSeries(shorter);
        QCOMPARE(shorter.seriesCount(), 2);
        QCOMPARE(shorter.series[1].points[0].y, 0.0); // "a" has no second point
        QCOMPARE(shorter.series[1].points[1].y, 5.0);
    }

    void wallsAndBaseLines()
    {
        Chart c;
        c.series.push_back(samples::points(QStringLiteral("a"), {{1, 2}}, SeriesKind::Point3D));
        c.series.push_back(samples::points(QStringLiteral("b"), {{1, 2}}, SeriesKind::Point));
        c.series.push_back(samples::points(QStringLiteral("c"), {{1, 2}}, SeriesKind::Point3D));
        ChartCommands::setWalls(c, false);
        QVERIFY(!c.walls.visible);
        QVERIFY(!c.walls.backPen.visible);
        QVERIFY(!c.walls.clipPoints);
        QVERIFY(!c.series[0].marks.clipped);
        ChartCommands::setWalls(c, true);
        QVERIFY(c.walls.visible && c.walls.backPen.visible && c.walls.clipPoints);
        QVERIFY(c.series[0].marks.clipped);
        ChartCommands::setBaseLines(c, true);
        QVERIFY(c.series[0].baseLine.visible);
        QVERIFY(!c.series[1].baseLine.visible); // not a 3D point series
        QVERIFY(!c.series[2].baseLine.visible); // only the first two are looked at
    }

    void buttonsFollowTheChart()
    {
        Chart one;
        one.series.push_back(samples::bars(QStringLiteral("s"), {1, 2}));
        ChartButtons b = ChartButtons::forChart(one, false, true);
        QVERIFY(b.kindEnabled && b.vBarDown && !b.hBarDown && !b.pieDown);
        QVERIFY(!b.groupEnabled && !b.zoomEnabled && !b.rotateEnabled && !b.animateEnabled);
        QVERIFY(!b.timerRunning); // the animate button is disabled
        QVERIFY(b.view3DEnabled && !b.view3DDown);
        one.view3D.enabled = true;
        b = ChartButtons::forChart(one, true, false);
        QVERIFY(b.rotateEnabled && b.rotateDown && b.view3DDown);

        Chart lines = samples::grouped();
        ChartCommands::switchGroupLines(lines);
        b = ChartButtons::forChart(lines, false, false);
        QVERIFY(b.groupEnabled && b.groupLinesDown && !b.groupBarsDown && !b.kindEnabled);

        Chart cloud;
        cloud.series.push_back(samples::points(QStringLiteral("p"), {{1, 2}}, SeriesKind::Point3D));
        cloud.series[0].baseLine.visible = true;
        b = ChartButtons::forChart(cloud, false, true);
        QVERIFY(b.zoomEnabled && b.rotateEnabled && b.animateEnabled && b.timerRunning);
        QVERIFY(b.wallsEnabled && b.wallsDown && b.baseLineEnabled && b.baseLineDown);
        QVERIFY(!b.groupEnabled);

        Chart map;
        map.series.push_back(samples::points(QStringLiteral("p"), {{1, 2}}));
        b = ChartButtons::forChart(map, false, false);
        QVERIFY(b.zoomEnabled && !b.rotateEnabled && !b.wallsEnabled && !b.wallsDown);
        QVERIFY(!ChartButtons::forChart(Chart(), false, false).kindEnabled);
    }

    void dragRotates()
    {
        Chart c;
        c.view3D.rotation = 10;
        c.view3D.elevation = 350;
        ChartMotion m;
        m.mouseDown({100, 100}, c);
        QVERIFY(m.dragging);
        // 50 of 200 pixels right: +25 degrees; 30 of 120 up: +25 degrees.
        QVERIFY(m.mouseMove({150, 70}, {200, 120}, c));
        QCOMPARE(c.view3D.rotation, 35);
        QCOMPARE(c.view3D.elevation, 15); // 375 kept within a turn
        // 1 of 200 pixels is half a degree: ties round to even.
        QVERIFY(m.mouseMove({101, 100}, {200, 120}, c));
        QCOMPARE(c.view3D.rotation, 10);
        QVERIFY(m.mouseMove({103, 100}, {200, 120}, c));
        QCOMPARE(c.view3D.rotation, 12); // 1.5 rounds to 2
        m.offsetRotation = 4;
        m.mouseUp(c);
        QVERIFY(!m.dragging);
        QCOMPARE(m.offsetRotation, 0);
        QCOMPARE(m.startRotation, 12);
        QVERIFY(!m.mouseMove({0, 0}, {200, 120}, c)); // not dragging any more
    }

    void animationSwingsWithCrossedStartValues()
    {
        Chart c;
        c.view3D.rotation = 100;
        c.view3D.elevation = 20;
        ChartMotion m;
        m.upRotation = true;
        m.upElevation = true;
        m.startAnimation(c);
        QCOMPARE(m.limit, 13);
        int coins = 0;
        auto coin = [&coins] {
            ++coins;
            return 1;
        };
        QVERIFY(m.tick(c, coin));
        QCOMPARE(m.offsetRotation, 1);
        QCOMPARE(m.offsetElevation, 1);
        // Rotation from the start elevation, elevation from the start rotation.
        QCOMPARE(c.view3D.rotation, 21);
        QCOMPARE(c.view3D.elevation, 101);
        for (int i = 1; i < 13; ++i) {
            m.tick(c, coin);
        }
        QCOMPARE(m.offsetRotation, 13);
        m.tick(c, coin); // |dR| reached the limit: back, and the limit grows
        QCOMPARE(m.limit, 25);
        QCOMPARE(m.offsetRotation, 12);
        QCOMPARE(coins, 0);
        for (int i = 0; i < 12; ++i) {
            m.tick(c, coin);
        }
        QCOMPARE(m.offsetRotation, 0);
        QCOMPARE(coins, 1);
        QVERIFY(!m.upRotation);          // coin 1: down
        QCOMPARE(m.offsetElevation, 24); // |dE| reached 25 on this tick: back
        m.tick(c, coin);
        QCOMPARE(m.offsetElevation, 23);
        QCOMPARE(m.offsetRotation, -1);

        // The elevation passing 0 sets the rotation's direction, not its own.
        ChartMotion e;
        e.offsetElevation = 1;
        e.upElevation = false;
        e.upRotation = false;
        e.limit = 25;
        QVERIFY(e.tick(c, [] { return 0; }));
        QCOMPARE(e.offsetElevation, 0);
        QVERIFY(e.upRotation);
        QVERIFY(!e.upElevation);

        m.dragging = true;
        QVERIFY(!m.tick(c, coin));
    }
};

QTEST_GUILESS_MAIN(ChartCommandsTest)
#include "ChartCommandsTest.moc"
