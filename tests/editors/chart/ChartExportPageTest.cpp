// kestrum-cli with chart pages: a chart file added becomes a chart page, export-page writes
// every chart format, and damaged pages and files are reported.

#include "ChartSamples.h"
#include "editors/chart/ChartStream.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace kestrum::chart;

namespace {

struct Run
{
    int code = -1;
    QString out;
    QString err;
};

Run cli(const QStringList& args)
{
    QProcess p;
    p.start(qEnvironmentVariable("KESTRUM_CLI"), args);
    p.waitForFinished(60000);
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()),
            QString::fromUtf8(p.readAllStandardError())};
}

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

// The page id of an added node: the fourth field of the node line.
QString addedPage(const Run& run)
{
    const QStringList fields = run.out.trimmed().split(QLatin1Char('\t'));
    return fields.size() >= 4 ? fields[3] : QString();
}

} // namespace

class ChartExportPageTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString m_project;
    QString m_page;

private slots:
    void initTestCase()
    {
        QVERIFY(!qEnvironmentVariable("KESTRUM_CLI").isEmpty());
        m_project = m_dir.filePath(QStringLiteral("p.kst"));
        QCOMPARE(cli({QStringLiteral("new"), m_project}).code, 0);
        const QString wsx = m_dir.filePath(QStringLiteral("Frequencies.WSX"));
        writeFile(wsx, ChartStream::write(samples::grouped()));
        const Run add = cli({QStringLiteral("add"), m_project, wsx});
        QVERIFY2(add.code == 0, qPrintable(add.err));
        QVERIFY2(add.out.contains(QLatin1String("\t2\t")), qPrintable(add.out)); // image index 2
        m_page = addedPage(add);
        QVERIFY(!m_page.isEmpty());
        const Run cat = cli({QStringLiteral("cat"), m_project, m_page});
        QCOMPARE(cat.code, 0);
    }

    void everyFormat_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("start");
        QTest::newRow("wsx") << "c.wsx" << QByteArray("KCHT\x01\x00", 6);
        QTest::newRow("png") << "c.png" << QByteArray("\x89PNG");
        QTest::newRow("jpg") << "c.jpg" << QByteArray("\xFF\xD8\xFF");
        QTest::newRow("jpeg upper case") << "c.JPEG" << QByteArray("\xFF\xD8\xFF");
        QTest::newRow("bmp") << "c.bmp" << QByteArray("BM");
        QTest::newRow("svg") << "c.svg" << QByteArray("<?xml");
        QTest::newRow("pdf") << "c.pdf" << QByteArray("%PDF");
    }
    void everyFormat()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, start);
        const QString out = m_dir.filePath(name);
        const Run run = cli({QStringLiteral("export-page"), m_project, m_page, out});
        QVERIFY2(run.code == 0, qPrintable(run.err));
        const QByteArray bytes = readFile(out);
        QVERIFY2(bytes.startsWith(start), bytes.left(16).toHex().constData());
        if (name == QLatin1String("c.wsx")) {
            QCOMPARE(bytes, ChartStream::write(samples::grouped())); // the page as added
        }
        if (name == QLatin1String("c.png")) {
            QImage image;
            QVERIFY(image.loadFromData(bytes));
            QCOMPARE(image.size(), QSize(800, 500));
        }
    }

    void unknownExtensionListsTheFormats()
    {
        const Run run = cli({QStringLiteral("export-page"), m_project, m_page,
                             m_dir.filePath(QStringLiteral("c.csv"))});
        QCOMPARE(run.code, 1);
        QVERIFY2(run.err.contains(QLatin1String(".wsx .png .jpg .jpeg .bmp .svg .pdf")),
                 qPrintable(run.err));
    }

    void damagedPageIsReported()
    {
        const QString bad = m_dir.filePath(QStringLiteral("bad.bin"));
        QByteArray bytes = ChartStream::write(samples::grouped());
        bytes.chop(3);
        writeFile(bad, bytes);
        const Run put = cli({QStringLiteral("put"), m_project, QStringLiteral("--type"),
                             QStringLiteral("2"), QStringLiteral("--info"),
                             QStringLiteral("Broken"), QStringLiteral("--content"), bad});
        QCOMPARE(put.code, 0);
        const QString out = m_dir.filePath(QStringLiteral("broken.png"));
        const Run run = cli({QStringLiteral("export-page"), m_project, put.out.trimmed(), out});
        QCOMPARE(run.code, 1);
        QVERIFY2(run.err.contains(QLatin1String("damaged chart stream")), qPrintable(run.err));
        QVERIFY(!QFile::exists(out));
    }

    void unreadableChartFileStillMakesAPage()
    {
        const QString tee = m_dir.filePath(QStringLiteral("legacy.tee"));
        writeFile(tee, QByteArray("TPFO\x03\x00 something else", 20));
        const Run add = cli({QStringLiteral("add"), m_project, tee});
        QVERIFY2(add.err.contains(QLatin1String("not a chart stream")), qPrintable(add.err));
        const QString page = addedPage(add);
        QVERIFY2(!page.isEmpty(), qPrintable(add.out));
        const QString out = m_dir.filePath(QStringLiteral("legacy.wsx"));
        const Run run = cli({QStringLiteral("export-page"), m_project, page, out});
        QVERIFY2(run.code == 0, qPrintable(run.err));
        QCOMPARE(readFile(out), ChartStream::write(Chart()));
    }
};

QTEST_GUILESS_MAIN(ChartExportPageTest)
#include "ChartExportPageTest.moc"
