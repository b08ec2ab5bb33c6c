// The bounded binary reader: whatever the bytes, it neither over-reads nor over-allocates.

#include "common/ByteStream.h"

#include <QRandomGenerator>
#include <QtTest>

using namespace kestrum::common;

class ByteStreamTest : public QObject
{
    Q_OBJECT
private slots:
    void roundTripsEveryType();
    void readingPastTheEndFailsOnceAndSticks();
    void lengthsAreCheckedBeforeAllocating();
    void randomBytesNeverCrash();
};

void ByteStreamTest::roundTripsEveryType()
{
    ByteWriter w;
    w.u8(0xAB);
    w.u16(0xBEEF);
    w.u32(0xDEADBEEF);
    w.i32(-7);
    w.i64(-1234567890123LL);
    w.f64(0.1);
    w.string(QStringLiteral("Zażółć ✓"));
    w.bytes(QByteArray("\0\1\2", 3));
    const QByteArray data = w.data();
    QCOMPARE(data.left(3), QByteArray("\xAB\xEF\xBE", 3)); // little-endian

    ByteReader r(data);
    QCOMPARE(r.u8(), quint8(0xAB));
    QCOMPARE(r.u16(), quint16(0xBEEF));
    QCOMPARE(r.u32(), 0xDEADBEEFu);
    QCOMPARE(r.i32(), -7);
    QCOMPARE(r.i64(), -1234567890123LL);
    QCOMPARE(r.f64(), 0.1);
    QCOMPARE(r.string(), QStringLiteral("Zażółć ✓"));
    QCOMPARE(r.bytes(), QByteArray("\0\1\2", 3));
    QVERIFY(r.ok());
    QVERIFY(r.atEnd());
}

void ByteStreamTest::readingPastTheEndFailsOnceAndSticks()
{
    const QByteArray data("\x01\x02\x03", 3);
    ByteReader r(data);
    QCOMPARE(r.u16(), quint16(0x0201));
    QCOMPARE(r.u32(), 0u);
    QVERIFY(!r.ok());
    const QString first = r.error();
    QCOMPARE(r.u8(), quint8(0)); // even a read that would fit returns nothing now
    QCOMPARE(r.error(), first);
}

void ByteStreamTest::lengthsAreCheckedBeforeAllocating()
{
    ByteWriter w;
    w.u32(0x7FFFFFFF); // claims 2 GB, holds 4 bytes
    w.raw("abcd", 4);
    const QByteArray data = w.data();
    ByteReader r(data);
    QVERIFY(r.bytes().isEmpty());
    QVERIFY(!r.ok());

    ByteWriter small;
    small.string(QStringLiteral("0123456789"));
    const QByteArray smallData = small.data();
    ByteReader limited(smallData);
    QVERIFY(limited.string(5).isEmpty());
    QVERIFY(limited.error().contains(QLatin1String("limit")));
}

void ByteStreamTest::randomBytesNeverCrash()
{
    QRandomGenerator rng(42);
    for (int round = 0; round < 2000; ++round) {
        QByteArray data(int(rng.bounded(64)), Qt::Uninitialized);
        for (char& c : data) {
            c = char(rng.bounded(256));
        }
        ByteReader r(data);
        while (r.ok() && !r.atEnd()) {
            switch (rng.bounded(4)) {
            case 0:
                r.u32();
                break;
            case 1:
                r.string();
                break;
            case 2:
                r.bytes();
                break;
            default:
                r.f64();
                break;
            }
        }
        QVERIFY(r.position() <= data.size());
    }
}

QTEST_GUILESS_MAIN(ByteStreamTest)
#include "ByteStreamTest.moc"
