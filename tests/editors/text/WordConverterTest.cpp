// The word-processor converter and what other word processors make of written RTF. These run
// only where LibreOffice is installed; elsewhere they are skipped.

#include "editors/text/WordConverter.h"
#include "editors/text/RtfWriter.h"
#include "editors/text/TextPageDocument.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QUrl>
#include <QtTest>

using kestrum::Result;
using kestrum::Status;
using namespace kestrum::text;

namespace {

const QByteArray kSample =
    "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0 Arial;}}{\\colortbl;\\red0\\green0\\blue255;}"
    "{\\*\\listtable{\\list{\\listlevel\\levelnfc23{\\leveltext\\'01\\'95;}}\\listid7}}"
    "{\\*\\listoverridetable{\\listoverride\\listid7\\ls1}}"
    "\\b Coding report\\b0\\par Za\\u380?\\'f3\\u322?\\u263? g\\u281?\\u347?l\\u261? "
    "ja\\u378?\\u324?\\par"
    "\\pard\\ls1 Rhythm\\par\\pard\\ls1 Rituals\\par\\pard"
    "\\trowd\\cellx2500\\cellx5000\\intbl Cell A\\cell Cell B\\cell\\row"
    "\\pard{\\field{\\*\\fldinst HYPERLINK \"https://example.org/\"}{\\fldrslt\\ul\\cf1 the "
    "link}}\\par}";

class Converter
{
public:
    Converter() : m_program(WordConverter().program()) {}
    bool available() const { return !m_program.isEmpty(); }

    // Runs the converter directly with a private profile; returns the output file.
    QString convert(const QString& source, const QString& target, const QString& folder) const
    {
        QProcess process;
        process.start(m_program,
                      {QStringLiteral("-env:UserInstallation=") +
                           QUrl::fromLocalFile(folder + QStringLiteral("/profile")).toString(),
                       QStringLiteral("--headless"), QStringLiteral("--convert-to"), target,
                       QStringLiteral("--outdir"), folder + QStringLiteral("/out"), source});
        process.waitForFinished(120000);
        const QString base = QFileInfo(source).completeBaseName();
        const QString suffix = target.section(QLatin1Char(':'), 0, 0);
        return folder + QStringLiteral("/out/") + base + QLatin1Char('.') + suffix;
    }

private:
    QString m_program;
};

QByteArray readFile(const QString& path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

QString writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(bytes);
    return path;
}

} // namespace

class WordConverterTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void writtenRtfOpensInAnotherWordProcessor();
    void rtfOfAnotherWordProcessorReadsBack();
    void wordDocumentThroughTheConverter();
    void htmlThroughTheConverter();

private:
    Converter m_converter;
};

void WordConverterTest::init()
{
    if (!m_converter.available()) {
        QSKIP("LibreOffice (soffice) is not installed");
    }
}

void WordConverterTest::writtenRtfOpensInAnotherWordProcessor()
{
    QTemporaryDir dir;
    TextPageDocument page;
    const Status read = page.readContent(kSample);
    QVERIFY(read);
    QByteArray rtf;
    const auto written = page.writeContent();
    QVERIFY2(written, qPrintable(written.error()));
    rtf = *written;
    const QString source = writeFile(dir.filePath(QStringLiteral("written.rtf")), rtf);
    const QString text = QString::fromUtf8(readFile(
        m_converter.convert(source, QStringLiteral("txt:Text (encoded):UTF8"), dir.path())));
    for (const char* expected : {"Coding report", "Zażółć gęślą jaźń", "Rhythm", "Rituals",
                                 "Cell A", "Cell B", "the link"}) {
        QVERIFY2(text.contains(QString::fromUtf8(expected)), qPrintable(text));
    }
}

void WordConverterTest::rtfOfAnotherWordProcessorReadsBack()
{
    // Written here, rewritten by the other word processor, read here again.
    QTemporaryDir dir;
    TextPageDocument page;
    const Status read = page.readContent(kSample);
    QVERIFY(read);
    QByteArray rtf;
    const auto written = page.writeContent();
    QVERIFY2(written, qPrintable(written.error()));
    rtf = *written;
    const QString source = writeFile(dir.filePath(QStringLiteral("mine.rtf")), rtf);
    const QByteArray theirs =
        readFile(m_converter.convert(source, QStringLiteral("rtf:Rich Text Format"), dir.path()));
    QVERIFY(theirs.startsWith("{\\rtf1"));
    TextPageDocument back;
    const Status read2 = back.readContent(theirs);
    QVERIFY(read2);
    QTextDocument* doc = back.textDocument();
    const QTextCursor title = doc->find(QStringLiteral("Coding report"));
    QVERIFY(!title.isNull());
    QTextCursor at(doc);
    at.setPosition(title.selectionStart() + 1);
    QCOMPARE(at.charFormat().fontWeight(), int(QFont::Bold));
    QVERIFY(!doc->find(QStringLiteral("Zażółć gęślą jaźń")).isNull());
    QVERIFY(doc->find(QStringLiteral("Rhythm")).block().textList());
    QTextTable* table = doc->find(QStringLiteral("Cell A")).currentTable();
    QVERIFY(table);
    QCOMPARE(table->columns(), 2);
    QCOMPARE(table->cellAt(0, 1).firstCursorPosition().block().text(), QStringLiteral("Cell B"));
    QTextCursor link(doc);
    link.setPosition(doc->find(QStringLiteral("the link")).selectionStart() + 1);
    QCOMPARE(link.charFormat().anchorHref(), QStringLiteral("https://example.org/"));
}

void WordConverterTest::wordDocumentThroughTheConverter()
{
    QTemporaryDir dir;
    const QString source = writeFile(dir.filePath(QStringLiteral("made.rtf")), kSample);
    const QString doc = m_converter.convert(source, QStringLiteral("doc"), dir.path());
    QVERIFY(QFile::exists(doc));
    TextPageDocument page;
    const Status imported = page.importFile(doc);
    QVERIFY2(imported, qPrintable(imported.error()));
    QVERIFY(!page.textDocument()->find(QStringLiteral("Coding report")).isNull());
    QVERIFY(page.textDocument()->find(QStringLiteral("Cell B")).currentTable());
}

void WordConverterTest::htmlThroughTheConverter()
{
    QTemporaryDir dir;
    const QString html =
        writeFile(dir.filePath(QStringLiteral("page.htm")),
                  "<html><head><meta charset=\"utf-8\"></head><body><h1>Heading</h1>"
                  "<p>Some <b>bold</b> words \xc3\xa9</p></body></html>");
    TextPageDocument page;
    const Status imported = page.importFile(html);
    QVERIFY2(imported, qPrintable(imported.error()));
    const QTextCursor bold = page.textDocument()->find(QStringLiteral("bold"));
    QVERIFY(!bold.isNull());
    QTextCursor at(page.textDocument());
    at.setPosition(bold.selectionStart() + 1);
    QCOMPARE(at.charFormat().fontWeight(), int(QFont::Bold));
    QVERIFY(!page.textDocument()->find(QStringLiteral("words é")).isNull());
}

QTEST_MAIN(WordConverterTest)
#include "WordConverterTest.moc"
