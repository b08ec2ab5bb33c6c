// The diagram stream: what is written reads back the same, and damaged streams end in a
// message.

#include "editors/diagram/DiagramStream.h"
#include "DiagramSamples.h"
#include "common/ByteStream.h"
#include "editors/diagram/DiagramDocument.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace kestrum::diagram;
using kestrum::Result;
using kestrum::common::ByteWriter;

namespace {

DiagramDocument richDiagram()
{
    DiagramDocument d = kestrum::test::sampleRing();
    d.setZoom(133);
    DiagramBlock& b = d.blocks()[1];
    b.shape = BlockShape::Diamond;
    b.width = 42.5;
    b.height = 17.25;
    b.left = -12.5;
    b.gradientStart = 0x00FFEEDD;
    b.colour = 0x00DA985C;
    b.selected = true;
    b.cells.front().text = QStringLiteral("Zugehörigkeit\nund Vertrauen");
    b.cells.front().font = DiagramFont{QStringLiteral("Tahoma"), 11,
                                       FontStyle::Bold | FontStyle::Underline, 0x00123456};
    b.cells.push_back(DiagramTextCell{QStringLiteral("second"), {}, false});
    d.blocks()[2].cells.clear();
    DiagramLink& l = d.links()[3];
    l.penWidth = 7;
    l.colour = 0x00C0C0C0;
    l.style = PenStyle::DashDotDot;
    l.selected = true;
    l.cells.front().visible = false;
    d.links().push_back(kestrum::test::sampleLink(2, 2, QStringLiteral("loop")));
    return d;
}

// The stream's header with the given counts, for hand-made damaged streams.
ByteWriter header(quint32 blocks, quint32 links, qint32 zoom = 100, quint16 version = 1)
{
    ByteWriter w;
    w.raw("KSTD", 4);
    w.u16(version);
    w.u16(0);
    w.i32(zoom);
    w.u32(blocks);
    w.u32(links);
    return w;
}

void writeBlock(ByteWriter& w, double left, double top, double width, double height,
                quint8 shape = BlockShape::Ellipse)
{
    w.f64(left);
    w.f64(top);
    w.f64(width);
    w.f64(height);
    w.u8(shape);
    w.u8(0);
    w.i32(0xFFFFFF);
    w.i32(0xC0C0C0);
    w.u32(0); // no cells
}

void writeLink(ByteWriter& w, qint32 source, qint32 target, qint32 width = 1,
               quint8 style = PenStyle::Solid)
{
    w.i32(source);
    w.i32(target);
    w.i32(width);
    w.i32(0);
    w.u8(style);
    w.u8(0);
    w.u32(0);
}

} // namespace

class DiagramStreamTest : public QObject
{
    Q_OBJECT

private slots:
    void everythingRoundTrips()
    {
        const DiagramDocument d = richDiagram();
        const QByteArray bytes = DiagramStream::write(d);
        QVERIFY(bytes.startsWith("KSTD\x01\x00"));
        Result<DiagramDocument> back = DiagramStream::read(bytes);
        QVERIFY2(back.ok(), qPrintable(back.error()));
        QVERIFY(*back == d);
        QCOMPARE(DiagramStream::write(*back), bytes);
    }

    void emptyDiagramRoundTrips()
    {
        DiagramDocument d;
        Result<DiagramDocument> back = DiagramStream::read(DiagramStream::write(d));
        QVERIFY(back.ok());
        QVERIFY(back->isEmpty());
        QCOMPARE(back->zoom(), 100);
    }

    // Hidden link texts are part of the stored stream (the text button's state survives).
    void hiddenLinkTextsAreStored()
    {
        DiagramDocument d = kestrum::test::sampleRing();
        d.setLinkTextsVisible(false);
        Result<DiagramDocument> back = DiagramStream::read(DiagramStream::write(d));
        QVERIFY(back.ok());
        QVERIFY(!back->linkTextsVisible());
        QVERIFY(!back->links().back().cells.front().visible);
    }

    void cyclesAndLoopsAreDiagrams()
    {
        ByteWriter w = header(2, 3);
        writeBlock(w, 0, 0, 10, 10);
        writeBlock(w, 50, 0, 10, 10);
        writeLink(w, 0, 1);
        writeLink(w, 1, 0);
        writeLink(w, 1, 1);
        Result<DiagramDocument> d = DiagramStream::read(w.data());
        QVERIFY2(d.ok(), qPrintable(d.error()));
        QCOMPARE(d->links().size(), std::size_t(3));
        QCOMPARE(d->links()[2].source, 1);
    }

    void damagedStreams_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        const double nan = std::numeric_limits<double>::quiet_NaN();

        QTest::newRow("empty") << QByteArray() << "magic";
        QTest::newRow("other magic") << QByteArray("KSTG\x01\x00\x00\x00", 8) << "magic";
        QTest::newRow("newer version") << header(0, 0, 100, 2).data() << "version 2";
        QTest::newRow("zero zoom") << header(0, 0, 0).data() << "zoom 0";
        QTest::newRow("a million blocks") << header(1000000, 0).data() << "at most 100000";
        QTest::newRow("blocks beyond the data") << header(5000, 0).data() << "data ends";
        QTest::newRow("links beyond the data") << header(0, 90000).data() << "data ends";
        QTest::newRow("too many links") << header(0, 2000000).data() << "at most 1000000";
        {
            ByteWriter w = header(1, 0);
            writeBlock(w, 0, 0, -5, 10);
            QTest::newRow("negative width") << w.data() << "width is negative";
        }
        {
            ByteWriter w = header(1, 0);
            writeBlock(w, 0, 0, 10, -0.5);
            QTest::newRow("negative height") << w.data() << "height is negative";
        }
        {
            ByteWriter w = header(1, 0);
            writeBlock(w, nan, 0, 10, 10);
            QTest::newRow("not a number") << w.data() << "out of range";
        }
        {
            ByteWriter w = header(1, 0);
            writeBlock(w, 0, 1e300, 10, 10);
            QTest::newRow("far away") << w.data() << "out of range";
        }
        {
            ByteWriter w = header(1, 0);
            writeBlock(w, 0, 0, 10, 10, 9);
            QTest::newRow("unknown shape") << w.data() << "unknown shape 9";
        }
        {
            ByteWriter w = header(2, 1);
            writeBlock(w, 0, 0, 10, 10);
            writeBlock(w, 0, 0, 10, 10);
            writeLink(w, 0, 2);
            QTest::newRow("link to a missing block") << w.data() << "joins blocks 0 and 2";
        }
        {
            ByteWriter w = header(1, 1);
            writeBlock(w, 0, 0, 10, 10);
            writeLink(w, -1, 0);
            QTest::newRow("negative block index") << w.data() << "joins blocks -1 and 0";
        }
        {
            ByteWriter w = header(1, 1);
            writeBlock(w, 0, 0, 10, 10);
            writeLink(w, 0, 0, -3);
            QTest::newRow("negative pen") << w.data() << "pen width -3";
        }
        {
            ByteWriter w = header(1, 1);
            writeBlock(w, 0, 0, 10, 10);
            writeLink(w, 0, 0, 1, 7);
            QTest::newRow("unknown pen style") << w.data() << "pen style 7";
        }
        {
            ByteWriter w = header(1, 0);
            writeBlock(w, 0, 0, 10, 10);
            w.u8(0);
            QTest::newRow("trailing bytes") << w.data() << "1 bytes after";
        }
        {
            ByteWriter w = header(1, 0);
            w.f64(0);
            w.f64(0);
            w.f64(10);
            w.f64(10);
            w.u8(1);
            w.u8(0);
            w.i32(0);
            w.i32(0);
            w.u32(1);
            w.string(QStringLiteral("t"));
            w.string(QStringLiteral("Arial"));
            w.i32(0); // font size 0
            w.u8(0);
            w.i32(0);
            w.u8(1);
            QTest::newRow("font size 0") << w.data() << "font size 0";
        }
        {
            ByteWriter w = header(1, 0);
            writeBlock(w, 0, 0, 10, 10);
            QByteArray bytes = w.take();
            bytes.chop(4);
            bytes.append("\xFF\xFF\xFF\x7F", 4); // 2^31 cells
            QTest::newRow("huge cell count") << bytes << "text cells";
        }
    }
    void damagedStreams()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        Result<DiagramDocument> d = DiagramStream::read(bytes);
        QVERIFY(!d.ok());
        QVERIFY2(d.error().contains(message), qPrintable(d.error()));
    }

    // Every shorter piece of a valid stream is refused with a message.
    void everyTruncationIsRefused()
    {
        const QByteArray bytes = DiagramStream::write(richDiagram());
        for (qsizetype n = 0; n < bytes.size(); ++n) {
            Result<DiagramDocument> d = DiagramStream::read(bytes.left(n));
            QVERIFY2(!d.ok(), qPrintable(QString::number(n)));
            QVERIFY(!d.error().isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(DiagramStreamTest)
#include "DiagramStreamTest.moc"
