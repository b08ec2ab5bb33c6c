// Every export read back: delimited text by our reader, HTML through QTextDocument, XML through
// QXmlStreamReader, RTF through a token reader, XLS through a compound-file walk and, when
// LibreOffice is installed, through its own reader (converted to CSV).

#include "GridSamples.h"
#include "XlsProbe.h"

#include "editors/grid/AsciiTableWriter.h"
#include "editors/grid/DelimitedTextReader.h"
#include "editors/grid/GridExporter.h"
#include "editors/grid/GridFileIo.h"
#include "editors/grid/HtmlTableWriter.h"
#include "editors/grid/WgfFile.h"
#include "editors/grid/XlsWriter.h"
#include "editors/grid/XmlTableWriter.h"

#include <QProcess>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>
#include <QXmlStreamReader>

using kestrum::Result;
using kestrum::Status;
using namespace kestrum::grid;
using kestrum::grid::test::sampleGrid;
using kestrum::grid::test::XlsProbe;

namespace {

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QString soffice()
{
    return QStandardPaths::findExecutable(QStringLiteral("soffice"));
}

// Converts with LibreOffice; returns the converted file's path (empty on failure).
QString convert(const QString& file, const QString& filter, const QString& extension,
                const QTemporaryDir& dir)
{
    QProcess p;
    const QString profile = QStringLiteral("file://") + dir.path() + QStringLiteral("/lo-profile");
    p.start(soffice(), {QStringLiteral("-env:UserInstallation=") + profile,
                        QStringLiteral("--headless"), QStringLiteral("--convert-to"), filter,
                        QStringLiteral("--outdir"), dir.path() + QStringLiteral("/out"), file});
    if (!p.waitForFinished(180000) || p.exitCode() != 0) {
        return {};
    }
    const QString out =
        dir.path() + QStringLiteral("/out/") + QFileInfo(file).completeBaseName() + extension;
    return QFile::exists(out) ? out : QString();
}

std::vector<QStringList> csvRows(const QString& path)
{
    std::vector<QStringList> rows;
    if (const Status parsed =
            DelimitedTextReader::parse(QString::fromUtf8(readFile(path)), QLatin1Char(','), &rows);
        !parsed) {
        qWarning() << parsed.error();
    }
    return rows;
}

// The cell texts of an RTF table: text between control words, cells ended by \cell, rows by \row.
std::vector<QStringList> rtfCells(const QByteArray& rtf)
{
    std::vector<QStringList> rows;
    QStringList row;
    QString cell;
    int depth = 0;
    int skipDepth = -1; // inside {\fonttbl...} and {\colortbl...}
    for (qsizetype i = 0; i < rtf.size(); ++i) {
        const char c = rtf[i];
        if (c == '{') {
            ++depth;
            if (rtf.mid(i + 1, 8) == "\\fonttbl" || rtf.mid(i + 1, 9) == "\\colortbl") {
                skipDepth = depth;
            }
        } else if (c == '}') {
            if (depth == skipDepth) {
                skipDepth = -1;
            }
            --depth;
        } else if (c == '\\') {
            qsizetype j = i + 1;
            if (j < rtf.size() && rtf[j] == '\'' && j + 2 < rtf.size()) {
                // \'hh: a byte of the document's code page (Windows-1252)
                if (skipDepth < 0) {
                    const char byte = char(rtf.mid(j + 1, 2).toInt(nullptr, 16));
                    cell += QStringDecoder("windows-1252").decode(QByteArrayView(&byte, 1));
                }
                i = j + 2;
                continue;
            }
            if (j < rtf.size() && !QChar::fromLatin1(rtf[j]).isLetter()) {
                if (skipDepth < 0) {
                    cell += rtf[j] == '~' ? QChar(0x00A0) : QChar::fromLatin1(rtf[j]);
                }
                i = j;
                continue;
            }
            QByteArray word;
            while (j < rtf.size() && QChar::fromLatin1(rtf[j]).isLetter()) {
                word += rtf[j++];
            }
            QByteArray number;
            while (j < rtf.size() && (rtf[j] == '-' || QChar::fromLatin1(rtf[j]).isDigit())) {
                number += rtf[j++];
            }
            if (j < rtf.size() && rtf[j] == ' ') {
                ++j;
            }
            i = j - 1;
            if (skipDepth >= 0) {
                continue;
            }
            if (word == "cell") {
                row << cell;
                cell.clear();
            } else if (word == "row") {
                rows.push_back(row);
                row.clear();
            } else if (word == "line") {
                cell += QLatin1Char('\n');
            } else if (word == "tab") {
                cell += QLatin1Char('\t');
            } else if (word == "u") {
                cell += QChar(char16_t(number.toShort()));
                if (i + 1 < rtf.size() && rtf[i + 1] == '?') {
                    ++i;
                }
            }
        } else if (c != '\n' && c != '\r' && skipDepth < 0 && depth > 0) {
            cell += QChar::fromLatin1(c);
        }
    }
    return rows;
}

std::vector<QStringList> gridRows(const GridDocument& g)
{
    std::vector<QStringList> rows;
    for (int r = 0; r < g.rowCount(); ++r) {
        QStringList row;
        for (const int c : g.visibleColumns()) {
            row << g.text(c, r);
        }
        rows.push_back(row);
    }
    return rows;
}

void compareRows(const std::vector<QStringList>& actual, const std::vector<QStringList>& expected)
{
    QCOMPARE(actual.size(), expected.size());
    for (std::size_t r = 0; r < expected.size(); ++r) {
        QCOMPARE(actual[r], expected[r]);
    }
}

} // namespace

class GridExportTest : public QObject
{
    Q_OBJECT

private slots:
    void delimitedReadsBack_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<QString>("delimiter");
        QTest::newRow("tab") << ExportFormat::TabDelimited << QStringLiteral("\t");
        QTest::newRow("comma") << ExportFormat::CommaDelimited << QStringLiteral(",");
    }
    void delimitedReadsBack()
    {
        QFETCH(int, format);
        QFETCH(QString, delimiter);
        GridDocument g = sampleGrid();
        g.setText(2, 4, QStringLiteral("  padded  "));
        g.setText(3, 4, QStringLiteral("tab\there"));
        QByteArray bytes;
        const auto encoded = GridExporter::encode(g, format);
        QVERIFY2(encoded, qPrintable(encoded.error()));
        bytes = *encoded;
        GridDocument back;
        QVERIFY(DelimitedTextReader::load(bytes, delimiter.front(), &back));
        compareRows(gridRows(back), gridRows(g));
    }

    void hiddenColumnsAreLeftOut()
    {
        GridDocument g = sampleGrid();
        g.setColumnHidden(2, true);
        QByteArray bytes;
        const auto encoded = GridExporter::encode(g, ExportFormat::CommaDelimited);
        QVERIFY2(encoded, qPrintable(encoded.error()));
        bytes = *encoded;
        QVERIFY(!bytes.contains("Group B"));
        QVERIFY(bytes.startsWith("Code,Group A,Age (#),Share\r\n"));
    }

    void asciiPadsColumns()
    {
        const GridDocument g = sampleGrid();
        const QStringList lines =
            QString::fromUtf8(AsciiTableWriter::write(g)).split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), g.rowCount() + 1); // and a final line end
        QVERIFY(lines.last().isEmpty());
        // Column starts follow the longest text of each column plus the two-blank gap.
        QList<int> starts{0};
        for (int c = 0; c + 1 < g.columnCount(); ++c) {
            int widest = 0;
            for (int r = 0; r < g.rowCount(); ++r) {
                widest = std::max(widest, int(g.text(c, r).size()));
            }
            starts << starts.last() + widest + AsciiTableWriter::kColumnGap;
        }
        QCOMPARE(lines[3].mid(0, starts[1]).trimmed(),
                 QStringLiteral("Line break")); // line break flattened
        QCOMPARE(lines[4].mid(starts[3], starts[4] - starts[3]).trimmed(), QStringLiteral("52"));
        // The right-aligned cell (1, 1) ends where its column ends.
        QCOMPARE(lines[1].mid(starts[1], starts[2] - starts[1] - AsciiTableWriter::kColumnGap),
                 QString(QStringLiteral("14"))
                     .rightJustified(starts[2] - starts[1] - AsciiTableWriter::kColumnGap));
        for (const QString& line : lines) {
            QVERIFY(!line.endsWith(QLatin1Char(' ')));
        }
    }

    void htmlReadsBack()
    {
        const GridDocument g = sampleGrid();
        QTextDocument doc;
        doc.setHtml(QString::fromUtf8(HtmlTableWriter::document(g)));
        QTextTable* table = nullptr;
        for (QTextFrame* frame : doc.rootFrame()->childFrames()) {
            table = qobject_cast<QTextTable*>(frame);
            if (table) {
                break;
            }
        }
        QVERIFY(table);
        QCOMPARE(table->rows(), g.rowCount());
        QCOMPARE(table->columns(), g.columnCount());
        for (int r = 0; r < g.rowCount(); ++r) {
            for (int c = 0; c < g.columnCount(); ++c) {
                const QTextTableCell cell = table->cellAt(r, c);
                QTextCursor cursor = cell.firstCursorPosition();
                cursor.setPosition(cell.lastCursorPosition().position(), QTextCursor::KeepAnchor);
                QString text = cursor.selectedText();
                text.replace(QChar::LineSeparator, QLatin1Char('\n'))
                    .replace(QChar::Nbsp, QString());
                QCOMPARE(text, g.text(c, r));
            }
        }
        // The red italic cell keeps its colour and style.
        const QTextCharFormat red = table->cellAt(1, 1).firstCursorPosition().charFormat();
        QCOMPARE(red.foreground().color(), QColor(Qt::red));
        QVERIFY(red.fontItalic());
        QVERIFY(red.fontUnderline());
    }

    void htmlTableAloneHasNoBody()
    {
        const QString table = HtmlTableWriter::tableHtml(sampleGrid());
        QVERIFY(table.startsWith(QLatin1String("<TABLE")));
        QVERIFY(!table.contains(QLatin1String("<BODY>")));
        QVERIFY(table.contains(QLatin1String("Trust, &quot;earned&quot;")));
    }

    void xmlElementName_data()
    {
        QTest::addColumn<QString>("header");
        QTest::addColumn<QString>("name");
        QTest::newRow("number sign") << QStringLiteral("Age (#)") << QStringLiteral("Age_no_");
        QTest::newRow("blank") << QStringLiteral("Group A") << QStringLiteral("Group_A");
        QTest::newRow("runs collapse") << QStringLiteral("a  -- b") << QStringLiteral("a_--_b");
        QTest::newRow("kept punctuation")
            << QStringLiteral("ns:code.v_2") << QStringLiteral("ns:code.v_2");
        QTest::newRow("non-Latin") << QStringLiteral("Zoom – Łódź") << QStringLiteral("Zoom_d_");
        QTest::newRow("doubled underscores") << QStringLiteral("a____b") << QStringLiteral("a_b");
        QTest::newRow("only a number sign") << QStringLiteral("#") << QStringLiteral("no");
        QTest::newRow("empty") << QString() << QStringLiteral("_");
        QTest::newRow("leading digit")
            << QStringLiteral("2026 wave") << QStringLiteral("_2026_wave");
    }
    void xmlElementName()
    {
        QFETCH(QString, header);
        QFETCH(QString, name);
        QCOMPARE(XmlTableWriter::xmlElementName(header), name);
    }

    void xmlReadsBackAndKeepsOneFixedRow()
    {
        QTemporaryDir dir;
        GridDocument g = sampleGrid();
        g.setFixedRows(0);
        g.setText(1, 2, QStringLiteral("bell\x07 <&>"));
        const QString file = dir.filePath(QStringLiteral("t.xml"));
        QVERIFY(GridExporter::exportGrid(&g, file, ExportFormat::Xml));
        QCOMPARE(g.fixedRows(), 1);
        QXmlStreamReader xml(readFile(file));
        xml.setNamespaceProcessing(false);
        QVERIFY(xml.readNextStartElement());
        QCOMPARE(xml.name(), QLatin1String("Table"));
        int row = 0;
        while (xml.readNextStartElement()) {
            QCOMPARE(xml.name(), QLatin1String("Row"));
            ++row;
            int col = 0;
            while (xml.readNextStartElement()) {
                QCOMPARE(xml.name().toString(), XmlTableWriter::xmlElementName(g.text(col, 0)));
                QString expected = g.text(col, row);
                expected.remove(QChar(7));
                QCOMPARE(xml.readElementText(), expected);
                ++col;
            }
            QCOMPARE(col, g.columnCount());
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QCOMPARE(row, g.rowCount() - 1);
    }

    void rtfReadsBack()
    {
        const GridDocument g = sampleGrid();
        QByteArray bytes;
        const auto encoded = GridExporter::encode(g, ExportFormat::Word);
        QVERIFY2(encoded, qPrintable(encoded.error()));
        bytes = *encoded;
        QVERIFY(bytes.startsWith("{\\rtf1"));
        for (const char c : bytes) {
            QVERIFY(uchar(c) < 0x80); // 7-bit: every reader takes it
        }
        compareRows(rtfCells(bytes), gridRows(g));
        QVERIFY(bytes.contains("\\trhdr")); // the header row repeats on every page
        QVERIFY(bytes.contains("\\fcharset0 Courier New;"));
        QVERIFY(bytes.contains("\\red18\\green52\\blue86;"));
    }

    void rtfOpensInAWordProcessor()
    {
        if (soffice().isEmpty()) {
            QSKIP("LibreOffice is not installed");
        }
        QTemporaryDir dir;
        GridDocument g = sampleGrid();
        const QString file = dir.filePath(QStringLiteral("table.DOC"));
        QVERIFY(GridExporter::exportGrid(&g, file, ExportFormat::Word));
        const QString html = convert(file, QStringLiteral("html:XHTML Writer File:UTF8"),
                                     QStringLiteral(".html"), dir);
        QVERIFY2(!html.isEmpty(), "LibreOffice could not convert the document");
        const QString text = QString::fromUtf8(readFile(html));
        for (const QString& cell :
             {QStringLiteral("Zoom fatigue – Łódź"), QStringLiteral("Trust, &quot;earned&quot;"),
              QStringLiteral("45.2%"), QStringLiteral("Age (#)")}) {
            QVERIFY2(text.contains(cell) || text.contains(QString(cell).replace(
                                                QLatin1String("&quot;"), QLatin1String("\""))),
                     qPrintable(cell));
        }
        QVERIFY(text.contains(QLatin1String("<table")));
    }

    void xlsStructure()
    {
        const GridDocument g = sampleGrid();
        QByteArray bytes;
        const auto encoded = XlsWriter::write(g);
        QVERIFY2(encoded, qPrintable(encoded.error()));
        bytes = *encoded;
        XlsProbe probe;
        QVERIFY2(probe.readCompound(bytes), qPrintable(probe.error));
        QVERIFY2(probe.readBiff(), qPrintable(probe.error));
        QCOMPARE(probe.recordTypes.front(), quint16(0x0809));
        QCOMPARE(probe.recordTypes.back(), quint16(0x000A));
        QCOMPARE(probe.label(0, 3), QStringLiteral("Age (#)"));
        QCOMPARE(probe.label(4, 0), QStringLiteral("Zoom fatigue – Łódź"));
        QCOMPARE(probe.label(4, 1), QStringLiteral("007")); // a leading zero stays text
        QCOMPARE(probe.number(1, 1), 14.0);
        QCOMPARE(probe.number(1, 4), 0.452);
        QCOMPARE(probe.number(3, 4), -3.5);
    }

    void xlsLargeTableSpansContinueAndDifat()
    {
        // About 9 MB: the string table needs CONTINUE records and the file more FAT sectors
        // than the header lists.
        GridDocument g;
        g.setSize(10, 30000);
        for (int r = 0; r < g.rowCount(); ++r) {
            for (int c = 0; c < g.columnCount(); ++c) {
                g.setText(c, r,
                          QStringLiteral("cell %1:%2 ÿ").arg(r).arg(c) +
                              (c == 3 ? QStringLiteral("Ω") : QString()));
            }
        }
        QByteArray bytes;
        const auto encoded = XlsWriter::write(g);
        QVERIFY2(encoded, qPrintable(encoded.error()));
        bytes = *encoded;
        QVERIFY(bytes.size() > 109 * 128 * 512);
        XlsProbe probe;
        QVERIFY2(probe.readCompound(bytes), qPrintable(probe.error));
        QVERIFY2(probe.readBiff(), qPrintable(probe.error));
        QCOMPARE(int(probe.sharedStrings.size()), g.rowCount() * g.columnCount());
        QCOMPARE(probe.label(29999, 3), g.text(3, 29999));
        QCOMPARE(probe.label(12345, 9), g.text(9, 12345));
        QVERIFY(std::count(probe.recordTypes.begin(), probe.recordTypes.end(), quint16(0x003C)) >
                10);
    }

    void xlsRefusesWhatASheetCannotHold()
    {
        GridDocument g;
        g.setSize(257, 2);
        const Result<QByteArray> bytes = XlsWriter::write(g);
        QVERIFY(!bytes);
        QVERIFY(bytes.error().contains(QLatin1String("256 columns")));
    }

    void xlsOpensInASpreadsheet_data()
    {
        QTest::addColumn<int>("rows");
        QTest::newRow("sample (mini stream)") << 0;
        QTest::newRow("5000 rows") << 5000;
    }
    void xlsOpensInASpreadsheet()
    {
        QFETCH(int, rows);
        if (soffice().isEmpty()) {
            QSKIP("LibreOffice is not installed");
        }
        QTemporaryDir dir;
        GridDocument g = sampleGrid();
        if (rows > 0) {
            g.setSize(6, rows);
            for (int r = 1; r < rows; ++r) {
                g.setText(0, r, QStringLiteral("Passage %1, \"quoted\"").arg(r));
                g.setText(5, r, QString::number(r * 0.25, 'f', 2));
            }
        }
        const QString file = dir.filePath(QStringLiteral("table.XLS"));
        QString error;
        const Status exported = GridExporter::exportGrid(&g, file, ExportFormat::Excel);
        error = exported.error();
        QVERIFY2(exported, qPrintable(exported.error()));
        const QString csv =
            convert(file, QStringLiteral("csv:Text - txt - csv (StarCalc):44,34,76,1"),
                    QStringLiteral(".csv"), dir);
        QVERIFY2(!csv.isEmpty(), "LibreOffice could not convert the workbook");
        std::vector<QStringList> actual = csvRows(csv);
        std::vector<QStringList> expected = gridRows(g);
        // The spreadsheet leaves out trailing empty cells of a row.
        for (QStringList& row : expected) {
            while (row.size() > 1 && row.last().isEmpty()) {
                row.removeLast();
            }
        }
        for (QStringList& row : actual) {
            while (row.size() > 1 && row.last().isEmpty()) {
                row.removeLast();
            }
        }
        compareRows(actual, expected);
    }

    void wgfRoundTrip()
    {
        QTemporaryDir dir;
        GridDocument g = sampleGrid();
        g.setColumnHidden(4, true);
        g.setWordWrap(true);
        const QString file = dir.filePath(QStringLiteral("t.WGF"));
        QVERIFY(GridExporter::exportGrid(&g, file, ExportFormat::Native));
        GridDocument back;
        QVERIFY(WgfFile::load(file, &back));
        QVERIFY(back.sameContent(g));
    }

    void saveTableFilterIsExact()
    {
        QCOMPARE(
            GridExporter::saveTableFilter(),
            QStringLiteral(
                "ASCII file (*.txt)|*.TXT|Tab delimited (*.tab)|*.TAB|Comma delimited "
                "(*.csv)|*.CSV|"
                "Excel (*.xls)|*.XLS|MS Word (*.doc)|*.DOC|HTML file (*.htm;*.html)|*.HTM;*.HMTL|"
                "XML file (*.xml)|*.XML"));
    }

    void extensionRules_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("filter");
        QTest::addColumn<int>("format");
        QTest::addColumn<QString>("written");
        QTest::newRow("typed csv beats the Excel filter")
            << "/tmp/results.csv" << 4 << 3 << "/tmp/results.CSV";
        QTest::newRow("no extension: the filter") << "/tmp/results" << 4 << 4 << "/tmp/results.XLS";
        QTest::newRow("typed .Tab") << "/tmp/data.Tab" << 1 << 2 << "/tmp/data.TAB";
        QTest::newRow("html is not a typed format")
            << "/tmp/page.html" << 1 << 1 << "/tmp/page.TXT";
        QTest::newRow("html with the HTML filter") << "/tmp/page.html" << 6 << 6 << "/tmp/page.HTM";
        QTest::newRow("xml keeps lower case") << "/tmp/a.b.XML" << 2 << 7 << "/tmp/a.b.xml";
        QTest::newRow("doc") << "/tmp/r.doc" << 7 << 5 << "/tmp/r.DOC";
        QTest::newRow("unknown extension") << "/tmp/r.pdf" << 5 << 5 << "/tmp/r.DOC";
        QTest::newRow("dotted folder") << "/tmp/v1.2/report" << 3 << 3 << "/tmp/v1.2/report.CSV";
        QTest::newRow("native by index") << "/tmp/keep.wgf" << 8 << 8 << "/tmp/keep.WGF";
    }
    void extensionRules()
    {
        QFETCH(QString, typed);
        QFETCH(int, filter);
        QFETCH(int, format);
        QFETCH(QString, written);
        QCOMPARE(GridExporter::formatFor(typed, filter), format);
        QCOMPARE(GridExporter::fileNameFor(typed, format), written);
    }

    void failedWriteLeavesNoFile()
    {
        QTemporaryDir dir;
        GridDocument g = sampleGrid();
        const QString file = dir.filePath(QStringLiteral("missing-folder/t.CSV"));
        QString error;
        const Status exported2 = GridExporter::exportGrid(&g, file, ExportFormat::CommaDelimited);
        error = exported2.error();
        QVERIFY(!exported2);
        QVERIFY(error.startsWith(QLatin1String("Cannot write")));
        QVERIFY(!QFile::exists(file));
    }
};

QTEST_MAIN(GridExportTest)
#include "GridExportTest.moc"
