// Delimited-text import as users' files come: quoting, line ends, ragged rows, encodings,
// binary and oversized files.

#include "editors/grid/DelimitedTextReader.h"
#include "editors/grid/DelimitedTextWriter.h"
#include "editors/grid/GridDocument.h"
#include "editors/grid/TextDecoder.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using kestrum::Result;
using kestrum::Status;
using namespace kestrum::grid;

using Rows = QList<QStringList>;
Q_DECLARE_METATYPE(Rows)

namespace {

Rows parse(const QString& text, QChar delimiter)
{
    std::vector<QStringList> rows;
    if (!DelimitedTextReader::parse(text, delimiter, &rows)) {
        return {{QStringLiteral("<refused>")}};
    }
    return Rows(rows.begin(), rows.end());
}

} // namespace

class DelimitedTextTest : public QObject
{
    Q_OBJECT

private slots:
    void parsing_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("delimiter");
        QTest::addColumn<Rows>("rows");
        QTest::newRow("plain") << "a,b\nc,d\n"
                               << "," << Rows{{"a", "b"}, {"c", "d"}};
        QTest::newRow("no final line end") << "a,b\nc,d"
                                           << "," << Rows{{"a", "b"}, {"c", "d"}};
        QTest::newRow("CRLF") << "a,b\r\nc,d\r\n"
                              << "," << Rows{{"a", "b"}, {"c", "d"}};
        QTest::newRow("CR only") << "a,b\rc,d\r"
                                 << "," << Rows{{"a", "b"}, {"c", "d"}};
        QTest::newRow("quoted delimiter") << "\"Smith, J.\",3\n"
                                          << "," << Rows{{"Smith, J.", "3"}};
        QTest::newRow("doubled quote") << "\"say \"\"hi\"\"\",x\n"
                                       << "," << Rows{{"say \"hi\"", "x"}};
        QTest::newRow("line break in quotes") << "\"two\nlines\",x\r\ny,z\n"
                                              << "," << Rows{{"two\nlines", "x"}, {"y", "z"}};
        QTest::newRow("empty quoted") << "\"\",a\n"
                                      << "," << Rows{{"", "a"}};
        QTest::newRow("text after closing quote") << "\"ab\"cd,e\n"
                                                  << "," << Rows{{"abcd", "e"}};
        QTest::newRow("quote inside unquoted") << "5\" disk,x\n"
                                               << "," << Rows{{"5\" disk", "x"}};
        QTest::newRow("unterminated quote") << "a,\"open\nb,c\n"
                                            << "," << Rows{{"a", "\"open"}, {"b", "c"}};
        QTest::newRow("ragged rows") << "a\nb,c,d\ne,f\n"
                                     << "," << Rows{{"a"}, {"b", "c", "d"}, {"e", "f"}};
        QTest::newRow("empty fields") << ",,\n"
                                      << "," << Rows{{"", "", ""}};
        QTest::newRow("trailing delimiter at the end") << "a,b,"
                                                       << "," << Rows{{"a", "b", ""}};
        QTest::newRow("blank line kept inside") << "a\n\nb\n"
                                                << "," << Rows{{"a"}, {""}, {"b"}};
        QTest::newRow("blank lines at the end") << "a\n\n\n\n"
                                                << "," << Rows{{"a"}};
        QTest::newRow("tab delimited") << "a b\tc,d\n"
                                       << "\t" << Rows{{"a b", "c,d"}};
        QTest::newRow("semicolon") << "1,5;2,5\n"
                                   << ";" << Rows{{"1,5", "2,5"}};
        QTest::newRow("empty") << ""
                               << "," << Rows{};
    }
    void parsing()
    {
        QFETCH(QString, text);
        QFETCH(QString, delimiter);
        QFETCH(Rows, rows);
        QCOMPARE(parse(text, delimiter.front()), rows);
    }

    void encodings_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("encoding");
        const QString text = QStringLiteral("Café,Łódź,€\n");
        QTest::newRow("UTF-8") << text.toUtf8() << int(TextDecoder::Encoding::Utf8);
        QTest::newRow("UTF-8 with BOM")
            << QByteArray("\xEF\xBB\xBF") + text.toUtf8() << int(TextDecoder::Encoding::Utf8Bom);
        QByteArray utf16("\xFF\xFE", 2);
        for (const QChar c : text) {
            utf16.append(char(c.unicode() & 0xFF));
            utf16.append(char(c.unicode() >> 8));
        }
        QTest::newRow("UTF-16 LE") << utf16 << int(TextDecoder::Encoding::Utf16LE);
    }
    void encodings()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, encoding);
        TextDecoder::Encoding used;
        const QString text = TextDecoder::decode(bytes, &used);
        QCOMPARE(int(used), encoding);
        GridDocument g;
        QVERIFY(DelimitedTextReader::load(bytes, QLatin1Char(','), &g));
        QCOMPARE(g.text(0, 0), QStringLiteral("Café"));
        QCOMPARE(g.text(1, 0), QStringLiteral("Łódź"));
        QCOMPARE(g.text(2, 0), QStringLiteral("€"));
    }

    void localCodePageFallback()
    {
        // Windows-1252 bytes, as older spreadsheet programs save CSV: not valid UTF-8.
        const QByteArray bytes("Caf\xE9,\x80 5,\x93quoted\x94\n");
        TextDecoder::Encoding used;
        QCOMPARE(TextDecoder::decode(bytes, &used), QStringLiteral("Café,€ 5,“quoted”\n"));
        QCOMPARE(used, TextDecoder::Encoding::Local8Bit);
    }

    void fillKeepsFixedCellsAndResetsTheRest()
    {
        GridDocument g;
        g.setFixedColumns(1);
        g.setWordWrap(true);
        GridCellFormat bold;
        bold.fontStyle = FontStyle::Bold;
        g.setFormat(0, 1, bold);
        QVERIFY(DelimitedTextReader::load(
            "Code,Count\nA very long code label that needs room,3\nB\n", QLatin1Char(','), &g));
        QCOMPARE(g.rowCount(), 3);
        QCOMPARE(g.columnCount(), 2);
        QCOMPARE(g.fixedRows(), 1);
        QCOMPARE(g.fixedColumns(), 1);
        QVERIFY(g.wordWrap());
        QCOMPARE(g.text(1, 2), QString()); // a short row padded
        QCOMPARE(g.format(0, 1), GridDocument::defaultFormat());
        QCOMPARE(g.rowHeight(0), GridDocument::kDefaultFixedRowHeight);
        QVERIFY(g.columnWidth(0) > GridDocument::kDefaultColumnWidth); // widened to its text
        QCOMPARE(g.columnWidth(1), GridDocument::kDefaultColumnWidth);
    }

    void binaryFileRefused()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("picture.csv"));
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(QByteArray("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16));
        f.close();
        GridDocument g;
        g.setText(0, 0, QStringLiteral("kept"));
        QString error;
        const Status loaded = DelimitedTextReader::loadFile(path, QLatin1Char(','), &g);
        error = loaded.error();
        QVERIFY(!loaded);
        QVERIFY2(error.contains(QLatin1String("binary data")), qPrintable(loaded.error()));
        QVERIFY(error.contains(path));
        QCOMPARE(g.text(0, 0), QStringLiteral("kept"));
    }

    void hugeFileRefusedWithoutReading()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("export.csv"));
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        QVERIFY(f.resize(qint64(200) * 1024 * 1024)); // sparse: no 200 MB written
        f.close();
        GridDocument g;
        QString error;
        QElapsedTimer timer;
        timer.start();
        const Status loaded2 = DelimitedTextReader::loadFile(path, QLatin1Char(','), &g);
        error = loaded2.error();
        QVERIFY(!loaded2);
        QVERIFY2(error.contains(QLatin1String("200 MB")), qPrintable(loaded2.error()));
        QVERIFY(timer.elapsed() < 2000);
    }

    void tooManyColumnsRefused()
    {
        const QString wide = QString(GridDocument::kMaxColumns + 1, QLatin1Char(','));
        std::vector<QStringList> rows;
        QString error;
        const Status parsed = DelimitedTextReader::parse(wide, QLatin1Char(','), &rows);
        error = parsed.error();
        QVERIFY(!parsed);
        QVERIFY(error.contains(QLatin1String("more than a table can take")));
    }

    void writerQuotesWhatNeedsIt_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("written");
        QTest::newRow("plain") << "abc"
                               << "abc";
        QTest::newRow("delimiter") << "a,b"
                                   << "\"a,b\"";
        QTest::newRow("quote") << "5\" disk"
                               << "\"5\"\" disk\"";
        QTest::newRow("line break") << "a\nb"
                                    << "\"a\nb\"";
        QTest::newRow("outer blanks") << " a "
                                      << "\" a \"";
        QTest::newRow("empty") << ""
                               << "";
    }
    void writerQuotesWhatNeedsIt()
    {
        QFETCH(QString, field);
        QFETCH(QString, written);
        QCOMPARE(DelimitedTextWriter::quoteField(field, QLatin1Char(',')), written);
        QCOMPARE(parse(written + QStringLiteral(",x\n"), QLatin1Char(',')),
                 (Rows{{field, QStringLiteral("x")}}));
    }
};

QTEST_GUILESS_MAIN(DelimitedTextTest)
#include "DelimitedTextTest.moc"
