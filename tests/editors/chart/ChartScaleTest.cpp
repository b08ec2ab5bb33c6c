// Axis ranges with readable ticks, and the fitted curve of the chart info.

#include "ChartSamples.h"
#include "editors/chart/AxisScale.h"
#include "editors/chart/FittedCurve.h"

#include <QTest>

using namespace kestrum;
using namespace kestrum::chart;

namespace {

QString info(const QStringList& sub)
{
    return QStringLiteral("S\tsource\tTitle\t") + sub.join(QChar(30)) + QStringLiteral("\tmore");
}

} // namespace

class ChartScaleTest : public QObject
{
    Q_OBJECT

private slots:
    void niceRanges_data()
    {
        QTest::addColumn<double>("low");
        QTest::addColumn<double>("high");
        QTest::addColumn<double>("min");
        QTest::addColumn<double>("max");
        QTest::addColumn<double>("step");
        QTest::newRow("0..97") << 0.0 << 97.0 << 0.0 << 100.0 << 20.0;
        QTest::newRow("3..42") << 3.0 << 42.0 << 0.0 << 50.0 << 10.0;
        QTest::newRow("negative") << -7.3 << 12.1 << -10.0 << 15.0 << 5.0;
        QTest::newRow("small") << 0.013 << 0.094 << 0.0 << 0.1 << 0.02;
        QTest::newRow("quarter steps") << 0.0 << 1.4 << 0.0 << 1.5 << 0.25;
        QTest::newRow("one value") << 5.0 << 5.0 << 4.4 << 5.6 << 0.2;
        QTest::newRow("zero") << 0.0 << 0.0 << -1.0 << 1.0 << 0.5;
    }
    void niceRanges()
    {
        QFETCH(double, low);
        QFETCH(double, high);
        QFETCH(double, min);
        QFETCH(double, max);
        QFETCH(double, step);
        const AxisRange r = AxisScale::niceRange(low, high);
        QCOMPARE(r.minimum, min);
        QCOMPARE(r.maximum, max);
        QCOMPARE(r.increment, step);
    }

    void ticksStayWithinTheRange()
    {
        const std::vector<double> t = AxisScale::ticks({-0.25, 10.25, 1});
        QCOMPARE(t.size(), std::size_t(11));
        QCOMPARE(t.front(), 0.0);
        QCOMPARE(t.back(), 10.0);
        // An increment far too small for the range falls back to a nice one.
        QVERIFY(AxisScale::ticks({0, 1e9, 1e-3}).size() <= 11);
        QCOMPARE(AxisScale::ticks({-1, 1, 0.5})[2], 0.0); // exactly zero, not -1e-17
    }

    void chartRanges()
    {
        Chart c = samples::grouped();
        QCOMPARE(AxisScale::leftRange(c), (AxisRange{0, 50, 10}));      // values up to 42, from 0
        QCOMPARE(AxisScale::bottomRange(c), (AxisRange{-0.5, 3.5, 1})); // bars in slots
        c.series[1].active = false;                                     // 42 hidden
        QCOMPARE(AxisScale::leftRange(c).maximum, 20.0);
        c.leftAxis.automatic = false;
        c.leftAxis.minimum = -10;
        c.leftAxis.maximum = 30;
        c.leftAxis.increment = 0;
        QCOMPARE(AxisScale::leftRange(c), (AxisRange{-10, 30, 10}));

        Chart map;
        map.series.push_back(samples::points(QStringLiteral("p"), {{-3, 4}, {8, -2}}));
        QCOMPARE(AxisScale::bottomRange(map), (AxisRange{-4, 10, 2})); // with room for markers
        QCOMPARE(AxisScale::leftRange(map), (AxisRange{-4, 6, 2}));
    }

    void curveFromChartInfo()
    {
        const auto curve =
            FittedCurve::fromChartInfo(info({"12", "1", "2", "0.5", "0", "0", "0", "1"}));
        QVERIFY(curve);
        QCOMPARE(curve->model, 1);
        QCOMPARE(curve->valueAt(2), 1 + 2 * 2 + 0.5 * 4);
        QVERIFY(!FittedCurve::fromChartInfo(QStringLiteral("None")));
        QVERIFY(!FittedCurve::fromChartInfo(info({"11", "1", "2", "0", "0", "0", "0", "1"})));
        QVERIFY(!FittedCurve::fromChartInfo(info({"12", "1", "2"}))); // too few sub-fields
        QVERIFY(!FittedCurve::fromChartInfo(info({"12", "1", "x", "0", "0", "0", "0", "1"})));
        QVERIFY(!FittedCurve::fromChartInfo(info({"12", "1", "2", "0", "0", "0", "0", "z"})));
        QString notS = info({"12", "1", "2", "0", "0", "0", "0", "1"});
        notS[0] = QLatin1Char('T');
        QVERIFY(!FittedCurve::fromChartInfo(notS));
    }

    void models_data()
    {
        QTest::addColumn<int>("model");
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        // c0..c5 = 1, 2, 3, 4, 5, 6
        QTest::newRow("linear") << 0 << 2.0 << 5.0;
        QTest::newRow("cubic, odd power of negative x") << 2 << -2.0 << 1 - 4 + 12 - 32.0;
        QTest::newRow("quintic") << 4 << -1.0 << 1 - 2 + 3 - 4 + 5 - 6.0;
        QTest::newRow("hyperbola") << 5 << 4.0 << 1.5;
        QTest::newRow("hyperbola at 0") << 5 << 0.0 << 1.0;
        QTest::newRow("log") << 6 << std::exp(1.0) << 3.0;
        QTest::newRow("log at negative x") << 6 << -3.0 << 1.0;
        QTest::newRow("exponential") << 7 << 0.5 << std::exp(1.0);
        QTest::newRow("unknown") << 8 << 1.0 << FittedCurve::kNoValue;
    }
    void models()
    {
        QFETCH(int, model);
        QFETCH(double, x);
        QFETCH(double, y);
        FittedCurve c;
        c.model = model;
        c.coefficients = {1, 2, 3, 4, 5, 6};
        QCOMPARE(c.valueAt(x), y);
    }

    void logarithmStaysAtC0UpToZero()
    {
        FittedCurve c;
        c.model = 6;
        c.coefficients = {7, 2, 0, 0, 0, 0};
        const std::vector<QPointF> s = c.samples(-5, 5);
        QCOMPARE(s.size(), std::size_t(101));
        QCOMPARE(s.front().x(), -5.0);
        QCOMPARE(s.back().x(), 5.0);
        for (const QPointF& p : s) {
            if (p.x() <= 0) {
                QCOMPARE(p.y(), 7.0);
            } else {
                QCOMPARE(p.y(), 7 + 2 * std::log(p.x()));
            }
        }
        c.model = 9;
        QVERIFY(c.samples(-5, 5).empty()); // no value anywhere: nothing drawn
    }
};

QTEST_GUILESS_MAIN(ChartScaleTest)
#include "ChartScaleTest.moc"
