// kestrum-cli export-page on grid pages: every format by extension, and the failures.

#include "CliRunner.h"
#include "editors/text/TextExporter.h"
#include "editors/text/TextPageDocument.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>

namespace {

using kestrum::test::CliRunner;
using Run = CliRunner::Result;

Run cli(const QStringList& args)
{
    return CliRunner().run(args);
}

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

class GridExportPageTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString m_project;
    QString m_tablePage; // "Code frequencies by organisation"

private slots:
    void initTestCase()
    {
        QVERIFY(!CliRunner::program().isEmpty());
        m_project = m_dir.filePath(QStringLiteral("demo.kst"));
        QCOMPARE(cli({QStringLiteral("demo"), m_project}).code, 0);
        const Run pages = cli({QStringLiteral("pages"), m_project});
        QCOMPARE(pages.code, 0);
        for (const QString& line : pages.text().split(QLatin1Char('\n'))) {
            const QStringList fields = line.split(QLatin1Char('\t'));
            if (fields.size() >= 4 && fields[1] == QLatin1String("1") &&
                fields[3].contains(QLatin1String("Code frequencies by organisation"))) {
                m_tablePage = fields[0];
            }
        }
        QVERIFY(!m_tablePage.isEmpty());
    }

    void everyExtension_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("start");
        QTest::newRow("txt") << "t.txt"
                             << QByteArray("         Code            Logistics"); // centred headers
        QTest::newRow("tab") << "t.tab" << QByteArray("Code\tLogistics\tSoftware");
        QTest::newRow("csv") << "t.csv" << QByteArray("Code,Logistics,Software");
        QTest::newRow("xls") << "t.xls" << QByteArray("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
        QTest::newRow("doc") << "t.doc" << QByteArray("{\\rtf1");
        QTest::newRow("htm") << "t.htm" << QByteArray("<!DOCTYPE html>");
        QTest::newRow("html upper case") << "t.HTML" << QByteArray("<!DOCTYPE html>");
        QTest::newRow("xml") << "t.xml" << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
        QTest::newRow("wgf") << "t.wgf" << QByteArray("KWGF");
    }
    void everyExtension()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, start);
        const QString out = m_dir.filePath(name);
        const Run run = cli({QStringLiteral("export-page"), m_project, m_tablePage, out});
        QVERIFY2(run.code == 0, qPrintable(run.err));
        const QByteArray bytes = readFile(out); // written as named: the extension is kept
        QVERIFY2(bytes.startsWith(start), bytes.left(40).constData());
        QVERIFY(bytes.size() > 200);
        // The RTF and HTML tables read back as a table whose first row is the header row.
        QString text;
        if (name.endsWith(QLatin1String(".doc"))) {
            kestrum::text::TextPageDocument page;
            const kestrum::Status read = page.readContent(bytes);
            QVERIFY2(read, qPrintable(read.error()));
            text = kestrum::text::TextExporter::toPlainText(*page.textDocument());
        } else if (name.endsWith(QLatin1String(".htm"), Qt::CaseInsensitive) ||
                   name.endsWith(QLatin1String(".html"), Qt::CaseInsensitive)) {
            QTextDocument document;
            document.setHtml(QString::fromUtf8(bytes));
            text = kestrum::text::TextExporter::toPlainText(document);
        }
        const bool table = name.endsWith(QLatin1String(".doc")) ||
                           name.contains(QLatin1String(".htm"), Qt::CaseInsensitive);
        if (table) {
            QVERIFY2(text.contains(QLatin1String("Code\tLogistics\tSoftware")), qPrintable(text));
        }
    }

    void unknownExtensionListsTheFormats()
    {
        const Run run = cli({QStringLiteral("export-page"), m_project, m_tablePage,
                             m_dir.filePath(QStringLiteral("t.pdf"))});
        QCOMPARE(run.code, 1);
        QVERIFY2(run.err.contains(QLatin1String(".txt .tab .csv .xls .doc .htm .html .xml .wgf")),
                 qPrintable(run.err));
    }

    void damagedPageIsReported()
    {
        const QString bad = m_dir.filePath(QStringLiteral("bad.bin"));
        QFile f(bad);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("KSTG\x01\x00\x00\x00\xFF\xFF\xFF\xFF");
        f.close();
        const Run put = cli({QStringLiteral("put"), m_project, QStringLiteral("--type"),
                             QStringLiteral("1"), QStringLiteral("--info"),
                             QStringLiteral("Broken"), QStringLiteral("--content"), bad});
        QCOMPARE(put.code, 0);
        const QString out = m_dir.filePath(QStringLiteral("broken.csv"));
        const Run run = cli({QStringLiteral("export-page"), m_project, put.text().trimmed(), out});
        QCOMPARE(run.code, 1);
        QVERIFY2(run.err.contains(QLatin1String("damaged grid stream")), qPrintable(run.err));
        QVERIFY(!QFile::exists(out));
    }

    // The desktop leaves an added delimited table modified, so that leaving the page stores it;
    // the command line stores it as it ends.
    void addedCsvIsStoredWhenThePageIsLeft()
    {
        const QString csv = m_dir.filePath(QStringLiteral("survey.csv"));
        QFile f(csv);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("Item,Mean\nQ1,3.4\n");
        f.close();
        const Run add = cli({QStringLiteral("add"), m_project, csv});
        QVERIFY2(add.code == 0, qPrintable(add.err));
        const Run pages = cli({QStringLiteral("pages"), m_project});
        const QString last = pages.text().trimmed().split(QLatin1Char('\n')).last();
        QVERIFY(last.contains(QLatin1String("\t1\t")));
        QVERIFY(last.endsWith(QLatin1String("survey")));
        const QString out = m_dir.filePath(QStringLiteral("back.csv"));
        const Run run = cli(
            {QStringLiteral("export-page"), m_project, last.section(QLatin1Char('\t'), 0, 0), out});
        QVERIFY2(run.code == 0, qPrintable(run.err));
        QFile back(out);
        QVERIFY(back.open(QIODevice::ReadOnly));
        const QByteArray text = back.readAll();
        QVERIFY2(text.contains("Q1") && text.contains("3.4"), text.constData());
    }
};

QTEST_MAIN(GridExportPageTest)
#include "GridExportPageTest.moc"
