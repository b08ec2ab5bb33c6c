// The chart stream: everything a chart holds comes back, and damaged streams are refused with
// a message, never a crash or an allocation the data cannot back.

#include "editors/chart/ChartStream.h"
#include "ChartSamples.h"
#include "common/ByteStream.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QtEndian>

#include <limits>

using namespace kestrum;
using namespace kestrum::chart;

namespace {

// A stream of one bar series of `points` values, without titles or labels.
QByteArray oneSeries(std::size_t points)
{
    Chart c;
    c.series.push_back(samples::bars(QString(), std::vector<double>(points, 1.0)));
    for (ChartPoint& p : c.series[0].points) {
        p.label.clear();
    }
    return ChartStream::write(c);
}

// Where the first point's x sits: the stream ends with `points` × 32 bytes of points.
qsizetype firstPointOffset(const QByteArray& stream, std::size_t points)
{
    return stream.size() - qsizetype(points) * 32;
}

} // namespace

class ChartStreamTest : public QObject
{
    Q_OBJECT

private slots:
    void everythingRoundTrips()
    {
        const Chart c = samples::everything();
        const QByteArray bytes = ChartStream::write(c);
        QVERIFY(bytes.startsWith("KCHT\x01\x00"));
        Result<Chart> back = ChartStream::read(bytes);
        QVERIFY2(back, qPrintable(back.error()));
        QCOMPARE(back->series.size(), c.series.size());
        QCOMPARE(back->series[2], c.series[2]);
        QCOMPARE(back->leftAxis, c.leftAxis);
        QCOMPARE(back->view3D, c.view3D);
        QCOMPARE(back->walls, c.walls);
        QVERIFY(*back == c);
        QCOMPARE(ChartStream::write(*back), bytes);
    }

    void emptyChartRoundTrips()
    {
        Result<Chart> back = ChartStream::read(ChartStream::write(Chart()));
        QVERIFY(back);
        QVERIFY(*back == Chart());
    }

    void everyTruncationIsRefused()
    {
        const QByteArray bytes = ChartStream::write(samples::everything());
        for (qsizetype n = 0; n < bytes.size(); ++n) {
            Result<Chart> r = ChartStream::read(bytes.left(n));
            QVERIFY2(!r, qPrintable(QString::number(n)));
            QVERIFY(!r.error().isEmpty());
        }
    }

    void damage_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        const QByteArray good = oneSeries(3);
        const qsizetype points = firstPointOffset(good, 3);
        const qsizetype count = points - 4;
        // An empty chart ends with the series count: the first series' kind follows it.
        const qsizetype kind = ChartStream::write(Chart()).size();

        QTest::newRow("magic") << QByteArray("XCHT\x01\x00\x00\x00", 8) << "not a chart stream";
        QByteArray version = good;
        version[4] = 2;
        QTest::newRow("version") << version << "version 2 is not known";
        QByteArray tooMany = good;
        qToLittleEndian<quint32>(0xFFFFFFF0u, tooMany.data() + count);
        QTest::newRow("huge point count") << tooMany << "more than a chart holds";
        QByteArray pastEnd = good;
        qToLittleEndian<quint32>(1000u, pastEnd.data() + count);
        QTest::newRow("count past the data") << pastEnd << "more than the data holds";
        QByteArray nan = good;
        qToLittleEndian<double>(std::numeric_limits<double>::quiet_NaN(), nan.data() + points + 8);
        QTest::newRow("NaN value") << nan << "a point's y is not a finite number";
        QByteArray inf = good;
        qToLittleEndian<double>(std::numeric_limits<double>::infinity(), inf.data() + points);
        QTest::newRow("infinite x") << inf << "a point's x is not a finite number";
        QByteArray unknownKind = good;
        unknownKind[kind] = 9;
        QTest::newRow("unknown kind") << unknownKind << "unknown series kind 9";
        QByteArray seriesCount = good;
        qToLittleEndian<quint32>(5000u, seriesCount.data() + kind - 4);
        QTest::newRow("series count") << seriesCount << "5000 series";
        QTest::newRow("trailing bytes") << good + "xy"
                                        << "2 bytes after its end";
    }
    void damage()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        Result<Chart> r = ChartStream::read(bytes);
        QVERIFY(!r);
        QVERIFY2(r.error().contains(message), qPrintable(r.error()));
    }

    void badAxisRangeIsRefused()
    {
        Chart c;
        c.leftAxis.minimum = 10;
        c.leftAxis.maximum = 1;
        Result<Chart> r = ChartStream::read(ChartStream::write(c));
        QVERIFY(!r);
        QVERIFY2(r.error().contains(QLatin1String("axis runs from 10 to 1")),
                 qPrintable(r.error()));
    }

    // The seed corpus is written by a script from the published format description: the
    // readable files read, the damaged ones ("bad-") are refused.
    void publishedFormatFilesRead()
    {
        const QDir corpus(qEnvironmentVariable("KESTRUM_TEST_DATA") +
                          QStringLiteral("/../fuzz/corpus/ChartStreamFuzz"));
        const QStringList files = corpus.entryList({QStringLiteral("*.wsx")}, QDir::Files);
        QVERIFY(files.size() >= 10);
        for (const QString& name : files) {
            QFile f(corpus.filePath(name));
            QVERIFY(f.open(QIODevice::ReadOnly));
            const Result<Chart> r = ChartStream::read(f.readAll());
            QVERIFY2(bool(r) != name.startsWith(QLatin1String("bad-")),
                     qPrintable(name + QStringLiteral(": ") + r.error()));
        }
        QFile f(corpus.filePath(QStringLiteral("grouped-bars.wsx")));
        QVERIFY(f.open(QIODevice::ReadOnly));
        const Result<Chart> grouped = ChartStream::read(f.readAll());
        QVERIFY(grouped);
        QCOMPARE(grouped->seriesCount(), 3);
        QCOMPARE(grouped->series[1].title, QStringLiteral("Staff"));
        QCOMPARE(grouped->series[1].points[1].y, 42.0);
        QCOMPARE(grouped->series[1].points[3].label, QStringLiteral("Belonging"));
        QCOMPARE(grouped->leftAxis.title, QStringLiteral("Passages"));
        QVERIFY(grouped->dataTableVisible);
    }

    void manyPointsRoundTrip()
    {
        Chart c;
        c.series.push_back(samples::points(QStringLiteral("p"), {}));
        for (int i = 0; i < 100000; ++i) {
            c.series[0].points.push_back({double(i), i * 0.5, -double(i), {}, common::clDefault});
        }
        Result<Chart> back = ChartStream::read(ChartStream::write(c));
        QVERIFY(back);
        QCOMPARE(back->series[0].points.size(), std::size_t(100000));
        QCOMPARE(back->series[0].points[99999].y, 49999.5);
    }
};

QTEST_GUILESS_MAIN(ChartStreamTest)
#include "ChartStreamTest.moc"
