// The scale that follows the visible span, zooming in and out, and the scroll bar rules.

#include "editors/timeline/TimelineNavigation.h"

#include <QTest>

#include <cmath>

using namespace kestrum::timeline;

class TimelineNavigationTest : public QObject
{
    Q_OBJECT

private slots:
    void scaleFollowsTheVisibleSpan_data()
    {
        QTest::addColumn<double>("span");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("divisions");
        QTest::addColumn<int>("subDivisions");
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("subFormat");
        const QString sd = QStringLiteral("dd/mm/yyyy");
        const QString monthYear = QStringLiteral(" mmm\r\nyyyy");
        const QString time = QStringLiteral("  hh:mm\r\n") + sd;
        // The starting scale is that of a new page: year, 1, 1, "yyyy", "yyyy".
        QTest::newRow("8 years") << 8 * 365.0 << 6 << 12 << 12 << "yyyy"
                                 << "yyyy";
        QTest::newRow("23 years") << 23 * 365.0 << 6 << 12 << 12 << "yyyy"
                                  << "yyyy";
        QTest::newRow("24 years") << 24 * 365.0 << 7 << 2 << 2 << "yyyy"
                                  << " ";
        QTest::newRow("1000 years") << 1000 * 365.0 << 7 << 83 << 83 << "yyyy"
                                    << " ";
        QTest::newRow("1001 years unchanged") << 1001 * 365.0 << 7 << 1 << 1 << "yyyy"
                                              << "yyyy";
        QTest::newRow("5 years") << 5 * 365.0 << 6 << 6 << 6 << monthYear << "yyyy";
        QTest::newRow("2 years") << 2 * 365.0 << 6 << 3 << 3 << monthYear << "yyyy";
        QTest::newRow("3 hours") << 3 / 24.0 << 3 << 15 << 15 << "  hh:mm"
                                 << "yyyy";
        QTest::newRow("8 hours") << 8 / 24.0 << 4 << 24 << 1 << time << "hh:mm";
        QTest::newRow("1.4 days") << 1.4 << 4 << 24 << 2 << time << "hh:mm";
        QTest::newRow("3 days") << 3.0 << 4 << 24 << 6 << time << "hh:mm";
        QTest::newRow("week") << 7.0 << 5 << 1 << 1 << sd << "yyyy";
        QTest::newRow("20 days") << 20.0 << 5 << 2 << 2 << sd << "";
        QTest::newRow("150 days") << 150.0 << 5 << 15 << 15 << sd << "yyyy";
        QTest::newRow("400 days") << 400.0 << 6 << 1 << 1 << monthYear << "yyyy";
        // 740 days round to 2 years; 560 to 2 years as well (1.53 rounds up).
        QTest::newRow("560 days") << 560.0 << 6 << 3 << 3 << monthYear << "yyyy";
        // 12.5 days round to 12 (halves to even): still the one-day scale.
        QTest::newRow("12.5 days") << 12.5 << 5 << 1 << 1 << sd << "yyyy";
    }
    void scaleFollowsTheVisibleSpan()
    {
        QFETCH(double, span);
        QFETCH(int, type);
        QFETCH(int, divisions);
        QFETCH(int, subDivisions);
        QFETCH(QString, format);
        QFETCH(QString, subFormat);
        TimelineModel m;
        m.minimumRange = 0;
        m.maximumRange = 1000000;
        m.rangeFrom = 1000;
        m.rangeTo = 1000 + span;
        const int page = TimelineNavigation::AdjustScale(m, QStringLiteral("dd/mm/yyyy"));
        QCOMPARE(m.divisionType, type);
        QCOMPARE(m.divisions, divisions);
        QCOMPARE(m.subDivisions, subDivisions);
        QCOMPARE(m.divisionFormat, format);
        QCOMPARE(m.subDivisionFormat, subFormat);
        QCOMPARE(page, int(std::nearbyint(span / 1000000 * 1000)));
    }

    void zoomInShrinksFromTheLeft()
    {
        TimelineModel m;
        for (int i = 0; i < TimelineNavigation::kZoomSteps; ++i) {
            TimelineNavigation::zoomInStep(m);
        }
        QCOMPARE(m.rangeFrom, 28491.0);
        QVERIFY(std::abs((m.rangeTo - m.rangeFrom) - (35243 - 28491) * std::pow(0.95, 10)) < 1e-6);
    }

    void zoomOutGrowsToTheLeftPastTheMaximum()
    {
        TimelineModel m;
        m.minimumRange = 100;
        m.maximumRange = 200;
        m.rangeFrom = 100;
        m.rangeTo = 150;
        TimelineNavigation::zoomOutStep(m);
        QCOMPARE(m.rangeFrom, 100.0);
        QVERIFY(std::abs(m.rangeTo - (100 + 50 * 1.052632)) < 1e-9);

        m.rangeFrom = 105;
        m.rangeTo = 200; // already at the maximum
        TimelineNavigation::zoomOutStep(m);
        QCOMPARE(m.rangeTo, 200.0);
        const double overshoot = 105 + 95 * 1.052632 - 200;
        QVERIFY(std::abs(m.rangeFrom - (105 - overshoot)) < 1e-9);
        for (int i = 0; i < 5; ++i) {
            TimelineNavigation::zoomOutStep(m);
        }
        QVERIFY(m.rangeFrom < m.minimumRange); // no check against the minimum
        QVERIFY(TimelineNavigation::canZoomOut(m));
        m.rangeFrom = 100;
        QVERIFY(!TimelineNavigation::canZoomOut(m));
    }

    void scrollBarRules()
    {
        TimelineModel m;
        m.minimumRange = 1000;
        m.maximumRange = 3000;
        m.rangeFrom = 1200;
        m.rangeTo = 1300;
        TimelineNavigation::scrollTo(m, 500);
        QCOMPARE(m.rangeFrom, 2000.0);
        QCOMPARE(m.rangeTo, 2100.0);
        QCOMPARE(TimelineNavigation::pageSize(m), 50);
        // A drag reports on a scale of 100, not 1000.
        const auto bar = TimelineNavigation::scrollBarAfterDrag(m, 2500);
        QCOMPARE(bar.position, 75);
        QCOMPARE(bar.pageSize, 5);
        // A range of no width does not divide by zero.
        m.maximumRange = m.minimumRange;
        QCOMPARE(TimelineNavigation::pageSize(m), 0);
        QCOMPARE(TimelineNavigation::scrollBarAfterDrag(m, 2500).position, 0);
    }
};

QTEST_GUILESS_MAIN(TimelineNavigationTest)
#include "TimelineNavigationTest.moc"
