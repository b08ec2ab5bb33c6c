// kestrum-cli export-page on the demo's concept diagram: every picture format by extension,
// and the failures.

#include "CliProject.h"
#include "PictureChecks.h"

#include <QFile>
#include <QImage>
#include <QTest>

using kestrum::test::CliProject;
using Run = kestrum::test::CliRunner::Result;

class DiagramExportPageTest : public QObject
{
    Q_OBJECT

private:
    CliProject m_project{QStringLiteral("demo.kst")};
    QString m_diagramPage;
    QSize m_pictureSize;

private slots:
    void initTestCase()
    {
        QVERIFY(m_project.valid());
        QVERIFY(m_project.createDemo());
        m_diagramPage = m_project.pageOfType(12);
        QVERIFY(!m_diagramPage.isEmpty());
    }

    void everyExtension_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("start");
        QTest::newRow("png") << "d.png" << QByteArray("\x89PNG\r\n\x1a\n");
        QTest::newRow("jpg") << "d.jpg" << QByteArray("\xFF\xD8\xFF");
        QTest::newRow("jpeg upper case") << "d.JPEG" << QByteArray("\xFF\xD8\xFF");
        QTest::newRow("bmp") << "d.bmp" << QByteArray("BM");
        QTest::newRow("svg") << "d.svg" << QByteArray("<?xml");
        QTest::newRow("pdf") << "d.pdf" << QByteArray("%PDF-");
    }
    void everyExtension()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, start);
        const Run run = m_project.exportPage(m_diagramPage, name);
        QVERIFY2(run.code == 0, qPrintable(run.err));
        const QByteArray bytes = CliProject::readFile(m_project.file(name));
        QVERIFY2(bytes.startsWith(start), bytes.left(20).toHex().constData());
        QVERIFY(bytes.size() > 1000);
        if (name.endsWith(QLatin1String(".svg"))) {
            // The block and link texts are in the drawing.
            QVERIFY(bytes.contains("Belonging"));
            QVERIFY(bytes.contains("Communication rhythms"));
        }
        if (!name.endsWith(QLatin1String(".svg")) && !name.endsWith(QLatin1String(".pdf"))) {
            // Every picture reads back, the same size, and shows the diagram.
            const QImage image = QImage::fromData(bytes);
            QVERIFY(image.width() > 300 && image.height() > 300);
            QVERIFY(kestrum::test::showsSomething(image));
            if (!m_pictureSize.isValid()) {
                m_pictureSize = image.size();
            }
            QCOMPARE(image.size(), m_pictureSize);
        }
        if (name.endsWith(QLatin1String(".png"))) {
            // The target block is red: some pixel of the picture is.
            const QImage image = QImage::fromData(bytes);
            bool red = false;
            for (int y = 0; y < image.height() && !red; y += 2) {
                for (int x = 0; x < image.width() && !red; x += 2) {
                    const QColor c = image.pixelColor(x, y);
                    red = c.red() > 240 && c.green() < 20 && c.blue() < 20;
                }
            }
            QVERIFY(red);
        }
    }

    void unknownExtensionListsTheFormats()
    {
        const Run run = m_project.exportPage(m_diagramPage, QStringLiteral("d.csv"));
        QCOMPARE(run.code, 1);
        QVERIFY2(run.err.contains(QLatin1String(".png .jpg .jpeg .bmp .svg .pdf")),
                 qPrintable(run.err));
    }

    void damagedPagesAreReported_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("message");
        QTest::newRow("not a diagram") << QByteArray("hello") << "not a diagram stream";
        QTest::newRow("million blocks")
            << QByteArray("KSTD\x01\x00\x00\x00\x64\x00\x00\x00\x40\x42\x0F\x00\x00\x00\x00\x00",
                          20)
            << "damaged diagram stream: 1000000 blocks";
    }
    void damagedPagesAreReported()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, message);
        const QString id = m_project.put(12, QStringLiteral("Broken"), content);
        QVERIFY(!id.isEmpty());
        const Run run = m_project.exportPage(id, QStringLiteral("broken.png"));
        QCOMPARE(run.code, 1);
        QVERIFY2(run.err.contains(message), qPrintable(run.err));
        QVERIFY(!QFile::exists(m_project.file(QStringLiteral("broken.png"))));
    }
};

QTEST_GUILESS_MAIN(DiagramExportPageTest)
#include "DiagramExportPageTest.moc"
