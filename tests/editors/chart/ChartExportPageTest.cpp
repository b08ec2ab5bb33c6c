// kestrum-cli with chart pages: a chart file added becomes a chart page, export-page writes
// every chart format, and damaged pages and files are reported.

#include "ChartSamples.h"
#include "CliProject.h"
#include "PictureChecks.h"
#include "editors/chart/ChartStream.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using namespace kestrum::chart;

using kestrum::test::CliProject;
using Run = kestrum::test::CliRunner::Result;

class ChartExportPageTest : public QObject
{
    Q_OBJECT

private:
    CliProject m_project;
    QString m_page;

private slots:
    void initTestCase()
    {
        QVERIFY(m_project.valid());
        QVERIFY(m_project.create());
        const QString wsx = m_project.file(QStringLiteral("Frequencies.WSX"));
        QVERIFY(CliProject::writeFile(wsx, ChartStream::write(samples::grouped())));
        Run add;
        m_page = m_project.add(wsx, &add);
        QVERIFY2(add.code == 0, qPrintable(add.err));
        QVERIFY2(add.text().contains(QLatin1String("\t2\t")), add.out.constData()); // image index 2
        QVERIFY(!m_page.isEmpty());
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
        const Run run = m_project.exportPage(m_page, name);
        QVERIFY2(run.code == 0, qPrintable(run.err));
        const QByteArray bytes = CliProject::readFile(m_project.file(name));
        QVERIFY2(bytes.startsWith(start), bytes.left(16).toHex().constData());
        if (name == QLatin1String("c.wsx")) {
            QCOMPARE(bytes, ChartStream::write(samples::grouped())); // the page as added
        }
        if (name.endsWith(QLatin1String(".svg"))) {
            // The chart's title and series names are in the drawing.
            QVERIFY(bytes.contains("<svg"));
            QVERIFY(bytes.contains("Code frequencies"));
            QVERIFY(bytes.contains("Newcomers"));
        }
        if (!name.endsWith(QLatin1String(".wsx")) && !name.endsWith(QLatin1String(".svg")) &&
            !name.endsWith(QLatin1String(".pdf"))) {
            // Every picture reads back at the chart's size and shows the chart.
            const QImage image = QImage::fromData(bytes);
            QCOMPARE(image.size(), QSize(800, 500));
            QVERIFY(kestrum::test::showsSomething(image));
        }
    }

    void unknownExtensionListsTheFormats()
    {
        const Run run = m_project.exportPage(m_page, QStringLiteral("c.csv"));
        QCOMPARE(run.code, 1);
        QVERIFY2(run.err.contains(QLatin1String(".wsx .png .jpg .jpeg .bmp .svg .pdf")),
                 qPrintable(run.err));
    }

    void damagedPageIsReported()
    {
        QByteArray bytes = ChartStream::write(samples::grouped());
        bytes.chop(3);
        const QString page = m_project.put(2, QStringLiteral("Broken"), bytes);
        QVERIFY(!page.isEmpty());
        const Run run = m_project.exportPage(page, QStringLiteral("broken.png"));
        QCOMPARE(run.code, 1);
        QVERIFY2(run.err.contains(QLatin1String("damaged chart stream")), qPrintable(run.err));
        QVERIFY(!QFile::exists(m_project.file(QStringLiteral("broken.png"))));
    }

    void unreadableChartFileStillMakesAPage()
    {
        const QString tee = m_project.file(QStringLiteral("legacy.tee"));
        QVERIFY(CliProject::writeFile(tee, QByteArray("TPFO\x03\x00 something else", 20)));
        Run add;
        const QString page = m_project.add(tee, &add);
        QVERIFY2(add.err.contains(QLatin1String("not a chart stream")), qPrintable(add.err));
        QVERIFY2(!page.isEmpty(), add.out.constData());
        const Run run = m_project.exportPage(page, QStringLiteral("legacy.wsx"));
        QVERIFY2(run.code == 0, qPrintable(run.err));
        QCOMPARE(CliProject::readFile(m_project.file(QStringLiteral("legacy.wsx"))),
                 ChartStream::write(Chart()));
    }
};

QTEST_GUILESS_MAIN(ChartExportPageTest)
#include "ChartExportPageTest.moc"
