// The compressed page columns: round trips, and refusal of damaged or hostile values.

#include "store/ColumnCodec.h"

#include <QRandomGenerator>
#include <QtEndian>
#include <QtTest>

using namespace kestrum::store;

class ColumnCodecTest : public QObject
{
    Q_OBJECT
private slots:
    void roundTrips_data();
    void roundTrips();
    void framingIsBigEndianLengthThenZlib();
    void emptyForms();
    void refusesDamage_data();
    void refusesDamage();
};

void ColumnCodecTest::roundTrips_data()
{
    QTest::addColumn<QByteArray>("plain");
    QTest::addColumn<int>("level");
    QRandomGenerator rng(7);
    QByteArray random(1 << 20, Qt::Uninitialized);
    for (char& c : random) {
        c = char(rng.bounded(256));
    }
    QTest::newRow("short text, title level")
        << QByteArray("Summary of findings") << ColumnCodec::kInfoLevel;
    QTest::newRow("binary with zeros") << QByteArray("\0\1\0\2", 4) << ColumnCodec::kContentLevel;
    QTest::newRow("incompressible megabyte") << random << ColumnCodec::kContentLevel;
    QTest::newRow("repetitive, comment level")
        << QByteArray(200000, 'x') << ColumnCodec::kCommentLevel;
}

void ColumnCodecTest::roundTrips()
{
    QFETCH(QByteArray, plain);
    QFETCH(int, level);
    const QByteArray stored = ColumnCodec::compress(plain, level);
    const auto back = ColumnCodec::decompress(stored);
    QVERIFY2(back, qPrintable(back.error()));
    QCOMPARE(*back, plain);
}

void ColumnCodecTest::framingIsBigEndianLengthThenZlib()
{
    const QByteArray stored = ColumnCodec::compressText(QStringLiteral("Zażółć"), 2);
    QCOMPARE(qFromBigEndian<quint32>(stored.constData()),
             quint32(QStringLiteral("Zażółć").toUtf8().size()));
    QCOMPARE(quint8(stored[4]) & 0x0F, 8); // zlib header: deflate
    QCOMPARE(*ColumnCodec::decompressText(stored), QStringLiteral("Zażółć"));
}

void ColumnCodecTest::emptyForms()
{
    QVERIFY(ColumnCodec::compress({}, 2).isEmpty());
    const auto empty = ColumnCodec::decompress({});
    QVERIFY(empty);
    QCOMPARE(*empty, QByteArray());
    const auto zeroLength = ColumnCodec::decompress(QByteArray(4, '\0'));
    QVERIFY(zeroLength);
    QCOMPARE(*zeroLength, QByteArray());
}

void ColumnCodecTest::refusesDamage_data()
{
    QTest::addColumn<QByteArray>("stored");
    QByteArray varied;
    for (int i = 0; i < 2000; ++i) {
        varied += QByteArray::number(i * 7919 % 10007) + ' ';
    }
    const QByteArray good = ColumnCodec::compress(varied, 2);
    QByteArray flipped = good;
    flipped[good.size() / 2] = char(flipped[good.size() / 2] ^ 0x55);
    QByteArray wrongLength = good;
    qToBigEndian<quint32>(quint32(varied.size() - 1), wrongLength.data());
    QByteArray hugeClaim("\xFF\xFF\xFF\xF0", 4);
    hugeClaim += good.mid(4);
    QByteArray implausible = good.left(4 + 10);
    qToBigEndian<quint32>(50'000'000, implausible.data());
    QTest::newRow("three bytes") << QByteArray("abc");
    QTest::newRow("truncated stream") << good.left(good.size() - 5);
    QTest::newRow("bit flip") << flipped;
    QTest::newRow("length disagrees") << wrongLength;
    QTest::newRow("length beyond the limit") << hugeClaim;
    QTest::newRow("length beyond what 10 bytes can expand to") << implausible;
    // A bomb whose header lies: 64 MB of zeros claiming 100 bytes. It must be refused after
    // inflating no more than the claim (the whole stream would be 64 MB, or far more).
    QByteArray bomb = ColumnCodec::compress(QByteArray(64 << 20, '\0'), 9);
    qToBigEndian<quint32>(100, bomb.data());
    QByteArray shortStream = ColumnCodec::compress(QByteArray("ten bytes!"), 9);
    qToBigEndian<quint32>(20, shortStream.data());
    QTest::newRow("stream longer than its header") << bomb;
    QTest::newRow("stream shorter than its header") << shortStream;
    QTest::newRow("not zlib at all") << QByteArray("\0\0\0\x10plain text here!", 20);
}

void ColumnCodecTest::refusesDamage()
{
    QFETCH(QByteArray, stored);
    const auto plain = ColumnCodec::decompress(stored);
    QVERIFY(!plain);
    const QString error = plain.error();
    QVERIFY(error.contains(QLatin1String("damaged")) || error.contains(QLatin1String("truncated")));
}

QTEST_GUILESS_MAIN(ColumnCodecTest)
#include "ColumnCodecTest.moc"
