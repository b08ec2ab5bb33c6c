// kestrum-cli with text pages: files added as pages are stored as RTF, and export-page writes
// them as RTF, HTML, plain text and OpenDocument text, each read back for its text.

#include "CliRunner.h"
#include "editors/text/TextExporter.h"
#include "editors/text/TextPageDocument.h"
#include "editors/text/WordConverter.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QUrl>
#include <QtTest>

namespace {

using kestrum::test::CliRunner;
using Run = CliRunner::Result;

Run cli(const QStringList& args, const QString& folder)
{
    return CliRunner(folder).run(args);
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

// The page's visible text, line by line, as every export must carry it.
const QStringList kPageLines = {QStringLiteral("Findings"), QStringLiteral("Caf\u00e9 talk"),
                                QStringLiteral("Group"), QStringLiteral("Count"),
                                QStringLiteral("End")};

// The text of an exported file as another reader sees it: RTF through our own reader, HTML
// through Qt's, OpenDocument through LibreOffice (empty when it is not installed).
QString textOf(const QString& path, const QTemporaryDir& dir)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    const QByteArray bytes = readFile(path);
    if (suffix == QLatin1String("rtf")) {
        kestrum::text::TextPageDocument page;
        const kestrum::Status read = page.readContent(bytes);
        return read ? kestrum::text::TextExporter::toPlainText(*page.textDocument()) : read.error();
    }
    if (suffix.startsWith(QLatin1String("htm"))) {
        QTextDocument document;
        document.setHtml(QString::fromUtf8(bytes));
        return document.toPlainText();
    }
    if (suffix == QLatin1String("odt")) {
        const QString soffice = kestrum::text::WordConverter().program();
        if (soffice.isEmpty()) {
            return {};
        }
        QProcess process;
        process.start(soffice,
                      {QStringLiteral("-env:UserInstallation=") +
                           QUrl::fromLocalFile(dir.filePath(QStringLiteral("profile"))).toString(),
                       QStringLiteral("--headless"), QStringLiteral("--convert-to"),
                       QStringLiteral("txt:Text (encoded):UTF8"), QStringLiteral("--outdir"),
                       dir.filePath(QStringLiteral("odt-text")), path});
        process.waitForFinished(120000);
        return QString::fromUtf8(readFile(dir.filePath(QStringLiteral("odt-text/")) +
                                          QFileInfo(path).completeBaseName() +
                                          QStringLiteral(".txt")));
    }
    return QString::fromUtf8(bytes);
}

} // namespace

class TextExportPageCliTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void addStoresRtf();
    void exportFormats_data();
    void exportFormats();
    void unknownFormat();

private:
    QTemporaryDir m_dir;
    QString m_project;
};

void TextExportPageCliTest::initTestCase()
{
    QVERIFY(!CliRunner::program().isEmpty());
    m_project = m_dir.filePath(QStringLiteral("report.kst"));
    QCOMPARE(cli({QStringLiteral("new"), m_project}, m_dir.path()).code, 0);
    QFile rtf(m_dir.filePath(QStringLiteral("Interview notes.rtf")));
    QVERIFY(rtf.open(QIODevice::WriteOnly));
    rtf.write("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}{\\colortbl;\\red200\\green0\\blue0;}"
              "\\b Findings\\b0\\par\\cf1 Caf\\'e9 talk{\\v  (hidden)}\\cf0\\par"
              "\\trowd\\cellx2000\\cellx4000\\intbl Group\\cell Count\\cell\\row\\pard End\\par}");
    rtf.close();
    QFile txt(m_dir.filePath(QStringLiteral("plain.txt")));
    QVERIFY(txt.open(QIODevice::WriteOnly));
    txt.write("line one\nline two\n");
    txt.close();
    const Run add =
        cli({QStringLiteral("add"), m_project, rtf.fileName(), txt.fileName()}, m_dir.path());
    QVERIFY2(add.code == 0, qPrintable(add.err));
}

void TextExportPageCliTest::addStoresRtf()
{
    const Run pages = cli({QStringLiteral("pages"), m_project}, m_dir.path());
    QVERIFY(pages.text().contains(QStringLiteral("3\t0\t")));
    QVERIFY(pages.text().contains(QStringLiteral("Interview notes")));
    for (const char* id : {"3", "4"}) {
        const Run content =
            cli({QStringLiteral("cat"), m_project, QLatin1String(id)}, m_dir.path());
        QVERIFY2(content.text().startsWith(QStringLiteral("{\\rtf1")),
                 qPrintable(content.text().left(40)));
    }
}

void TextExportPageCliTest::exportFormats_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("mustContain");
    QTest::addColumn<QByteArray>("mustNotContain");
    QTest::newRow("rtf") << "page.rtf" << QByteArray("\\trowd") << QByteArray();
    QTest::newRow("html") << "page.html" << QByteArray("Caf\xc3\xa9 talk")
                          << QByteArray("(hidden)");
    QTest::newRow("htm") << "page.HTM" << QByteArray("<BODY>") << QByteArray("(hidden)");
    QTest::newRow("txt") << "page.txt"
                         << QByteArray("Findings\nCaf\xc3\xa9 talk\nGroup\tCount\nEnd\n")
                         << QByteArray("(hidden)");
    QTest::newRow("odt") << "page.odt" << QByteArray("application/vnd.oasis.opendocument.text")
                         << QByteArray();
}

void TextExportPageCliTest::exportFormats()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, mustContain);
    QFETCH(QByteArray, mustNotContain);
    const QString out = m_dir.filePath(name);
    const Run run =
        cli({QStringLiteral("export-page"), m_project, QStringLiteral("3"), out}, m_dir.path());
    QVERIFY2(run.code == 0, qPrintable(run.err));
    const QByteArray bytes = readFile(out);
    QVERIFY2(bytes.contains(mustContain), bytes.left(300).constData());
    if (!mustNotContain.isEmpty()) {
        QVERIFY(!bytes.contains(mustNotContain));
    }

    // Read back, the file holds the page's text in its order; hidden text only in RTF, where
    // it stays hidden.
    const QString text = textOf(out, m_dir);
    if (text.isEmpty() && name.endsWith(QLatin1String(".odt"))) {
        QSKIP("LibreOffice (soffice) is not installed to read the OpenDocument file");
    }
    qsizetype at = 0;
    for (const QString& line : kPageLines) {
        const qsizetype found = text.indexOf(line, at);
        QVERIFY2(found >= 0, qPrintable(line + QStringLiteral(" in ") + text));
        at = found + line.size();
    }
    QVERIFY2(!text.contains(QLatin1String("(hidden)")), qPrintable(text));
    if (name.endsWith(QLatin1String(".rtf"))) {
        QVERIFY(bytes.contains("(hidden)"));
    }
}

void TextExportPageCliTest::unknownFormat()
{
    const Run run = cli(
        {QStringLiteral("export-page"), m_project, QStringLiteral("4"), m_dir.filePath("x.pdf")},
        m_dir.path());
    QCOMPARE(run.code, 1);
    QVERIFY(run.err.contains(QStringLiteral(".rtf .html .htm .txt .odt")));
    QVERIFY(!QFile::exists(m_dir.filePath("x.pdf")));
}

QTEST_MAIN(TextExportPageCliTest)
#include "TextExportPageCliTest.moc"
