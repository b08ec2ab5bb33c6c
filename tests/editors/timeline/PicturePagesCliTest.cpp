// kestrum-cli on timeline and image pages: export-page in every format (run on the real
// binary, on the demo report), adding picture files as image pages, and damaged pages.

#include "CliProject.h"
#include "PictureChecks.h"

#include <QFile>
#include <QImage>
#include <QTest>

using kestrum::test::CliProject;
using Run = kestrum::test::CliRunner::Result;

class PicturePagesCliTest : public QObject
{
    Q_OBJECT

private:
    CliProject m_project{QStringLiteral("demo.kst")};
    QString m_timeline;
    QString m_image;

private slots:
    void initTestCase()
    {
        QVERIFY(m_project.valid());
        QVERIFY(m_project.createDemo());
        m_timeline = m_project.pageOfType(8);
        m_image = m_project.pageOfType(3);
        QVERIFY(!m_timeline.isEmpty());
        QVERIFY(!m_image.isEmpty());
    }

    void everyFormat_data()
    {
        QTest::addColumn<bool>("timeline");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("start");
        QTest::addColumn<QSize>("size");
        const QSize timelineSize(1000, 420);
        const QSize imageSize(520, 320);
        QTest::newRow("timeline png") << true << "t.png" << QByteArray("\x89PNG") << timelineSize;
        QTest::newRow("timeline jpg")
            << true << "t.jpg" << QByteArray("\xFF\xD8\xFF") << timelineSize;
        QTest::newRow("timeline bmp") << true << "t.BMP" << QByteArray("BM") << timelineSize;
        QTest::newRow("timeline gif") << true << "t.gif" << QByteArray("GIF89a") << timelineSize;
        QTest::newRow("timeline txt") << true << "t.txt" << QByteArray("BackGround\t") << QSize();
        QTest::newRow("image bmp") << false << "i.bmp" << QByteArray("BM") << imageSize;
        QTest::newRow("image png") << false << "i.png" << QByteArray("\x89PNG") << imageSize;
        QTest::newRow("image jpg") << false << "i.jpg" << QByteArray("\xFF\xD8\xFF") << imageSize;
    }
    void everyFormat()
    {
        QFETCH(bool, timeline);
        QFETCH(QString, name);
        QFETCH(QByteArray, start);
        QFETCH(QSize, size);
        const Run run = m_project.exportPage(timeline ? m_timeline : m_image, name);
        QVERIFY2(run.code == 0, qPrintable(run.err));
        const QByteArray bytes = CliProject::readFile(m_project.file(name));
        QVERIFY(bytes.startsWith(start));
        if (size.isValid()) {
            const QImage image = QImage::fromData(bytes);
            QCOMPARE(image.size(), size);
            QVERIFY(kestrum::test::showsSomething(image));
        } else {
            const QString text = QString::fromUtf8(bytes);
            QVERIFY(text.contains(QLatin1String("\r\nEvent\tAll staff remote\t")));
            QVERIFY(text.contains(QLatin1String("Interview 02\bpar. 8\bInterviews 2026\b2\b")));
            QCOMPARE(text.count(QLatin1String("\r\nEvent\t")), 9);
        }
    }

    void otherExtensionsNameTheFormats()
    {
        const Run run = m_project.exportPage(m_timeline, QStringLiteral("t.svg"));
        QVERIFY(run.code != 0);
        QVERIFY2(run.err.contains(QLatin1String(".png .jpg .jpeg .bmp .gif .txt")),
                 qPrintable(run.err));
        const Run image = m_project.exportPage(m_image, QStringLiteral("i.gif"));
        QVERIFY(image.code != 0);
        QVERIFY2(image.err.contains(QLatin1String(".bmp .png .jpg .jpeg")), qPrintable(image.err));
    }

    void addedPicturesBecomeImagePages()
    {
        CliProject project;
        QVERIFY(project.create());
        QImage picture(30, 20, QImage::Format_ARGB32);
        picture.fill(QColor(10, 20, 30, 128));
        const QString png = project.file(QStringLiteral("snap.png"));
        const QString jpg = project.file(QStringLiteral("photo.jpg"));
        QVERIFY(picture.save(png));
        QVERIFY(picture.convertToFormat(QImage::Format_RGB32).save(jpg));
        const Run add = project.run({QStringLiteral("add"), project.path(), png, jpg});
        QVERIFY2(add.code == 0, qPrintable(add.err));
        const Run pages = project.run({QStringLiteral("pages"), project.path()});
        QCOMPARE(pages.text().count(QLatin1String("\t3\t")), 2);
        QString id;
        for (const QString& line : pages.text().split(QLatin1Char('\n'))) {
            if (line.endsWith(QLatin1String("snap"))) {
                id = line.section(QLatin1Char('\t'), 0, 0);
            }
        }
        QVERIFY(!id.isEmpty());
        QCOMPARE(project.exportPage(id, QStringLiteral("back.bmp")).code, 0);
        const QByteArray bmp = CliProject::readFile(project.file(QStringLiteral("back.bmp")));
        QCOMPARE(quint8(bmp[28]), quint8(24)); // stored at 24 bits, the alpha gone
        QImage back;
        QVERIFY(back.loadFromData(bmp, "BMP"));
        QVERIFY(!back.hasAlphaChannel());
        QCOMPARE(back.size(), QSize(30, 20));
    }

    void damagedPagesGiveAMessage()
    {
        CliProject project;
        QVERIFY(project.create());
        const QString id =
            project.put(8, QStringLiteral("broken"), "Range\t1\t2\r\nEvent\ta\tb\t31/12/2020\r\n");
        QVERIFY(!id.isEmpty());
        const Run run = project.exportPage(id, QStringLiteral("x.png"));
        QVERIFY(run.code != 0);
        QVERIFY2(
            run.err.contains(QLatin1String("'31/12/2020' is not a valid floating point value")),
            qPrintable(run.err));
        QVERIFY(!QFile::exists(project.file(QStringLiteral("x.png"))));
    }
};

QTEST_GUILESS_MAIN(PicturePagesCliTest)
#include "PicturePagesCliTest.moc"
