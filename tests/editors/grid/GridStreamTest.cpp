// The grid stream and the .WGF file: every property survives a round trip, and damaged data
// of every kind ends in a message with the target untouched.

#include "GridSamples.h"

#include "common/ByteStream.h"
#include "editors/grid/GridStream.h"
#include "editors/grid/WgfFile.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

using kestrum::Result;
using kestrum::Status;
using namespace kestrum::grid;
using kestrum::grid::test::sampleGrid;

namespace {

using Change = std::function<void(GridDocument&)>;

GridDocument roundTrip(const GridDocument& g)
{
    GridDocument back;
    if (const Status read = GridStream::read(GridStream::write(g), &back); !read) {
        qWarning() << read.error();
    }
    return back;
}

// The header of a stream with the given counts, then `rest`.
QByteArray header(quint32 cols, quint32 rows, quint32 fixedCols = 0, quint32 fixedRows = 0,
                  quint16 version = 1)
{
    kestrum::common::ByteWriter w;
    w.raw("KSTG", 4);
    w.u16(version);
    w.u16(0);
    w.u32(cols);
    w.u32(rows);
    w.u32(fixedCols);
    w.u32(fixedRows);
    return w.take();
}

} // namespace

Q_DECLARE_METATYPE(Change)

class GridStreamTest : public QObject
{
    Q_OBJECT

private slots:
    void everyPropertyRoundTrips_data()
    {
        QTest::addColumn<Change>("change");
        auto cellFormat = [](std::function<void(GridCellFormat&)> set) {
            return Change([set](GridDocument& g) {
                GridCellFormat f = g.format(2, 3);
                set(f);
                g.setFormat(2, 3, f);
            });
        };
        QTest::newRow("texts") << Change([](GridDocument& g) {
            g.setText(0, 0, QStringLiteral("Łódź ✓ \"q\"\ttab\nline"));
            g.setText(4, 9, QString(70000, QLatin1Char('x')));
        });
        QTest::newRow("size") << Change([](GridDocument& g) { g.setSize(13, 3); });
        QTest::newRow("fixed rows and columns") << Change([](GridDocument& g) {
            g.setFixedRows(3);
            g.setFixedColumns(2);
        });
        QTest::newRow("no fixed row") << Change([](GridDocument& g) { g.setFixedRows(0); });
        QTest::newRow("column width") << Change([](GridDocument& g) { g.setColumnWidth(3, 211); });
        QTest::newRow("zero width") << Change([](GridDocument& g) { g.setColumnWidth(1, 0); });
        QTest::newRow("row height") << Change([](GridDocument& g) { g.setRowHeight(7, 97); });
        QTest::newRow("hidden column")
            << Change([](GridDocument& g) { g.setColumnHidden(4, true); });
        QTest::newRow("word wrap") << Change([](GridDocument& g) { g.setWordWrap(true); });
        QTest::newRow("alignment right")
            << cellFormat([](GridCellFormat& f) { f.alignment = CellAlignment::Right; });
        QTest::newRow("alignment centre")
            << cellFormat([](GridCellFormat& f) { f.alignment = CellAlignment::Centre; });
        QTest::newRow("font name")
            << cellFormat([](GridCellFormat& f) { f.fontName = QStringLiteral("DejaVu Serif"); });
        QTest::newRow("font size") << cellFormat([](GridCellFormat& f) { f.fontSize = 31; });
        QTest::newRow("font colour") << cellFormat(
            [](GridCellFormat& f) { f.fontColour = kestrum::common::rgbColour(1, 2, 3); });
        QTest::newRow("system colour")
            << cellFormat([](GridCellFormat& f) { f.fontColour = kestrum::common::clHighlight; });
        QTest::newRow("bold") << cellFormat(
            [](GridCellFormat& f) { f.fontStyle = FontStyle::Bold; });
        QTest::newRow("italic underline") << cellFormat(
            [](GridCellFormat& f) { f.fontStyle = FontStyle::Italic | FontStyle::Underline; });
        QTest::newRow("background")
            << cellFormat([](GridCellFormat& f) { f.background = kestrum::common::clYellow; });
        QTest::newRow("many formats") << Change([](GridDocument& g) {
            for (int r = 0; r < g.rowCount(); ++r) {
                for (int c = 0; c < g.columnCount(); ++c) {
                    GridCellFormat f;
                    f.fontSize = 6 + r + c;
                    f.alignment = quint8((r + c) % 3);
                    g.setFormat(c, r, f);
                }
            }
        });
    }
    void everyPropertyRoundTrips()
    {
        QFETCH(Change, change);
        GridDocument g;
        change(g);
        const GridDocument back = roundTrip(g);
        QVERIFY(back.sameContent(g));
        // And the change is really there: the default grid differs.
        QVERIFY(!GridDocument().sameContent(back));
    }

    void unusedFormatsAreNotWritten()
    {
        GridDocument g;
        GridCellFormat bold;
        bold.fontStyle = FontStyle::Bold;
        g.setFormat(1, 1, bold);
        g.setFormat(1, 1, GridDocument::defaultFormat()); // the pool still holds "bold"
        const QByteArray plain = GridStream::write(GridDocument());
        QCOMPARE(GridStream::write(g).size(), plain.size());
    }

    void wgfRoundTripAndBareStream()
    {
        QTemporaryDir dir;
        const GridDocument g = sampleGrid();
        const QString wgf = dir.filePath(QStringLiteral("table.wgf"));
        QVERIFY(WgfFile::save(wgf, g));
        QFile file(wgf);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(bytes.startsWith("KWGF\x01\x00\x00\x00KSTG"));
        GridDocument back;
        QVERIFY(WgfFile::load(wgf, &back));
        QVERIFY(back.sameContent(g));
        // A host may write the bare stream (a ".grid2" file).
        GridDocument bare;
        QVERIFY(WgfFile::decode(GridStream::write(g), &bare));
        QVERIFY(bare.sameContent(g));
    }

    void damagedInputIsRefused_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("message");
        const QByteArray good = GridStream::write(sampleGrid());
        QTest::newRow("empty") << QByteArray() << "does not start with";
        QTest::newRow("other magic")
            << QByteArray("PK\x03\x04 and then some") << "does not start with";
        QTest::newRow("newer version") << header(1, 1, 0, 0, 2) << "version 2";
        QTest::newRow("no columns") << header(0, 5) << "out of bounds";
        QTest::newRow("too many rows") << header(1, 2'000'000) << "out of bounds";
        QTest::newRow("too many cells") << header(16384, 1000) << "out of bounds";
        QTest::newRow("fixed rows past the grid") << header(2, 2, 0, 3) << "do not fit";
        QTest::newRow("cells beyond the data")
            << header(1000, 1000) + QByteArray(64, '\0') << "need more bytes";
        QTest::newRow("trailing bytes") << good + QByteArray("x") << "formatted cells";
        QByteArray widthTooLarge =
            header(1, 1) + QByteArray("\xFF\xFF\xFF\x00\x00", 5) + QByteArray(20, '\0');
        QTest::newRow("column width") << widthTooLarge << "pixels wide";
        // A cell claiming more bytes than there are.
        kestrum::common::ByteWriter cell;
        cell.raw(header(1, 1));
        cell.u32(64);
        cell.u8(0);
        cell.u32(22);
        cell.u32(0);
        cell.u32(1000);
        cell.raw("abcdefghij", 10);
        QTest::newRow("cell past the end") << cell.take() << "unexpected end";
        auto withFormat = [](quint8 alignment, quint8 style, qint32 size, quint32 cellIndex,
                             quint32 formatIndex) {
            kestrum::common::ByteWriter w;
            w.raw(header(1, 1));
            w.u32(64);
            w.u8(0);
            w.u32(22);
            w.u32(1);
            w.u8(alignment);
            w.u8(style);
            w.i32(size);
            w.i32(0);
            w.i32(0);
            w.string(QStringLiteral("Arial"));
            w.u32(0); // the cell's text
            w.u32(1);
            w.u32(cellIndex);
            w.u32(formatIndex);
            return w.take();
        };
        QTest::newRow("alignment 3") << withFormat(3, 0, 10, 0, 0) << "unknown alignment";
        QTest::newRow("style bit 8") << withFormat(0, 8, 10, 0, 0) << "style bits";
        QTest::newRow("font size 0") << withFormat(0, 0, 0, 0, 0) << "font size";
        QTest::newRow("cell outside") << withFormat(0, 0, 10, 1, 0) << "out of the grid";
        QTest::newRow("missing format") << withFormat(0, 0, 10, 0, 1) << "missing format";
        // The builder itself makes a valid stream when nothing is wrong.
        GridDocument check;
        QVERIFY(
            GridStream::read(withFormat(CellAlignment::Right, FontStyle::Bold, 10, 0, 0), &check));
        QCOMPARE(check.format(0, 0).alignment, CellAlignment::Right);
    }
    void damagedInputIsRefused()
    {
        QFETCH(QByteArray, data);
        QFETCH(QString, message);
        GridDocument g = sampleGrid();
        QString error;
        const Status read = GridStream::read(data, &g);
        error = read.error();
        QVERIFY(!read);
        QVERIFY2(error.contains(message), qPrintable(read.error()));
        QVERIFY(error.startsWith(QLatin1String("damaged grid stream: ")));
        QVERIFY(g.sameContent(sampleGrid()));
    }

    void everyTruncationIsRefused()
    {
        const QByteArray good = GridStream::write(sampleGrid());
        for (qsizetype n = 0; n < good.size(); ++n) {
            GridDocument g;
            QString error;
            const Status read2 = GridStream::read(good.left(n), &g);
            error = read2.error();
            QVERIFY2(!read2, qPrintable(QString::number(n)));
            QVERIFY(!error.isEmpty());
        }
    }

    void randomBytesNeverCrash()
    {
        // Flipped bytes in a good stream: read or refused, never a crash (the fuzz target goes
        // further).
        const QByteArray good = GridStream::write(sampleGrid());
        QRandomGenerator random(7);
        int refused = 0;
        for (int i = 0; i < 3000; ++i) {
            QByteArray bad = good;
            const int flips = 1 + int(random.bounded(4));
            for (int f = 0; f < flips; ++f) {
                bad[qsizetype(random.bounded(quint32(bad.size())))] = char(random.bounded(256));
            }
            GridDocument g;
            if (const Status read = GridStream::read(bad, &g); !read) {
                ++refused;
                QVERIFY(!read.error().isEmpty());
            }
        }
        QVERIFY(refused > 0);
    }

    void wgfErrors_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        QTest::newRow("text file") << QByteArray("Code,Count\nA,1\n") << "not a grid file";
        QTest::newRow("newer version")
            << QByteArray("KWGF\x02\x00\x00\x00", 8) + GridStream::write(GridDocument())
            << "version 2";
        QTest::newRow("damaged stream inside")
            << QByteArray("KWGF\x01\x00\x00\x00KSTG", 12) << "damaged grid stream";
    }
    void wgfErrors()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("t.wgf"));
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(bytes);
        f.close();
        GridDocument g = sampleGrid();
        QString error;
        const Status loaded = WgfFile::load(path, &g);
        error = loaded.error();
        QVERIFY(!loaded);
        QVERIFY2(error.contains(message), qPrintable(loaded.error()));
        QVERIFY(error.contains(path));
        QVERIFY(g.sameContent(sampleGrid()));
    }

    void missingFile()
    {
        GridDocument g;
        QString error;
        const Status loaded2 = WgfFile::load(QStringLiteral("/nonexistent/folder/t.wgf"), &g);
        error = loaded2.error();
        QVERIFY(!loaded2);
        QVERIFY(error.startsWith(QLatin1String("Cannot read")));
    }
};

QTEST_GUILESS_MAIN(GridStreamTest)
#include "GridStreamTest.moc"
