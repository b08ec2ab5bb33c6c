// Rounding, tab fields and day-count dates: the small rules every stored format relies on.

#include "common/DayCount.h"
#include "common/Result.h"
#include "common/Rounding.h"
#include "common/TabFields.h"

#include <QtTest>

#include <limits>
#include <optional>
#include <type_traits>
#include <vector>

using namespace kestrum::common;

class HelpersTest : public QObject
{
    Q_OBJECT
private slots:
    void roundHalfEven_data();
    void roundHalfEven();
    void halfUpRoundsOddLengthsUp();
    void tabField_data();
    void tabField();
    void escapeTabsKeepsOneLine();
    void dayCountKnownValues_data();
    void dayCountKnownValues();
    void dayCountRoundTripsLocalTime();
    void dayCountRejectsNonsense();
    void resultsAreTestedAsTheyMean();
};

void HelpersTest::roundHalfEven_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<qint64>("expected");
    QTest::newRow("0.5 to even 0") << 0.5 << qint64(0);
    QTest::newRow("1.5 to even 2") << 1.5 << qint64(2);
    QTest::newRow("2.5 to even 2") << 2.5 << qint64(2);
    QTest::newRow("-0.5 to 0") << -0.5 << qint64(0);
    QTest::newRow("-1.5 to -2") << -1.5 << qint64(-2);
    QTest::newRow("-2.5 to -2") << -2.5 << qint64(-2);
    QTest::newRow("0.67 up") << 0.67 << qint64(1);
    QTest::newRow("2.49 down") << 2.49 << qint64(2);
}

void HelpersTest::roundHalfEven()
{
    QFETCH(double, value);
    QFETCH(qint64, expected);
    QCOMPARE(qint64(kestrum::common::roundHalfEven(value)), expected);
}

void HelpersTest::halfUpRoundsOddLengthsUp()
{
    QCOMPARE(halfUp(0), 0);
    QCOMPARE(halfUp(1), 1);
    QCOMPARE(halfUp(4), 2);
    QCOMPARE(halfUp(5), 3);
    // Division toward zero with the remainder's sign: -5 / 2 + -5 % 2 = -2 + -1.
    QCOMPARE(halfUp(-5), -3);
    QCOMPARE(halfUp(-4), -2);
}

void HelpersTest::tabField_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("n");
    QTest::addColumn<QString>("expected");
    QTest::newRow("four fields, third") << "a\tb\tTitle\tmore" << 3 << "Title";
    QTest::newRow("two fields, third is empty") << "a\tb" << 3 << "";
    QTest::newRow("three fields, third is the rest") << "a\tb\tlast" << 3 << "last";
    QTest::newRow("no tab, first field") << "whole" << 1 << "whole";
    QTest::newRow("no tab, third field") << "whole" << 3 << "";
    QTest::newRow("empty middle field") << "a\t\tc" << 2 << "";
    QTest::newRow("trailing tab") << "a\tb\tc\t" << 3 << "c";
    QTest::newRow("empty text") << "" << 1 << "";
}

void HelpersTest::tabField()
{
    QFETCH(QString, text);
    QFETCH(int, n);
    QFETCH(QString, expected);
    QCOMPARE(kestrum::common::tabField(text, n), expected);
}

void HelpersTest::escapeTabsKeepsOneLine()
{
    QCOMPARE(escapeTabs(QStringLiteral("a\tb\\c\nd")), QStringLiteral("a\\tb\\\\c\\nd"));
}

void HelpersTest::dayCountKnownValues_data()
{
    QTest::addColumn<double>("dayCount");
    QTest::addColumn<QDateTime>("dateTime");
    QTest::newRow("epoch") << 0.0 << QDateTime(QDate(1899, 12, 30), QTime(0, 0));
    QTest::newRow("1 January 1978") << 28491.0 << QDateTime(QDate(1978, 1, 1), QTime(0, 0));
    QTest::newRow("noon") << 46000.5 << QDateTime(QDate(2025, 12, 9), QTime(12, 0));
    QTest::newRow("before the epoch, time still forward")
        << -1.25 << QDateTime(QDate(1899, 12, 29), QTime(6, 0));
}

void HelpersTest::dayCountKnownValues()
{
    QFETCH(double, dayCount);
    QFETCH(QDateTime, dateTime);
    QCOMPARE(fromDayCount(dayCount), dateTime);
    QCOMPARE(toDayCount(dateTime), dayCount);
}

void HelpersTest::dayCountRoundTripsLocalTime()
{
    const QDateTime when(QDate(2026, 11, 22), QTime(23, 59, 59, 999));
    QCOMPARE(fromDayCount(toDayCount(when)), when);
    // A fraction that rounds up to a whole day moves to the next midnight, not to 24:00.
    QCOMPARE(fromDayCount(46000.9999999999), QDateTime(QDate(2025, 12, 10), QTime(0, 0)));
}

void HelpersTest::dayCountRejectsNonsense()
{
    QVERIFY(!fromDayCount(std::numeric_limits<double>::quiet_NaN()).isValid());
    QVERIFY(!fromDayCount(std::numeric_limits<double>::infinity()).isValid());
    QVERIFY(!fromDayCount(1e300).isValid());
}

namespace {

kestrum::Result<std::vector<int>> listed(bool ok)
{
    if (!ok) {
        return kestrum::fail(QStringLiteral("the list cannot be read"));
    }
    return std::vector<int>{1, 2, 3};
}

} // namespace

void HelpersTest::resultsAreTestedAsTheyMean()
{
    using kestrum::Result;
    // A truth value or an optional inside a result cannot be mistaken for the result's own test.
    static_assert(std::is_constructible_v<bool, Result<int>>);
    static_assert(!std::is_constructible_v<bool, Result<bool>>);
    static_assert(!std::is_constructible_v<bool, Result<std::optional<int>>>);

    const Result<bool> no = false;
    QVERIFY(no.ok());
    QCOMPARE(*no, false);
    QVERIFY(no.error().isEmpty());

    // The value of a temporary outlives the loop over it (the sanitizer run sees a dangling one).
    int sum = 0;
    for (int v : listed(true).value()) {
        sum += v;
    }
    QCOMPARE(sum, 6);
    QCOMPARE(listed(false).value_or({9}), std::vector<int>{9});
    QCOMPARE(listed(false).error(), QStringLiteral("the list cannot be read"));
}

QTEST_GUILESS_MAIN(HelpersTest)
#include "HelpersTest.moc"
