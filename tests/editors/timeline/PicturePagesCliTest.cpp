// kestrum-cli on timeline and image pages: export-page in every format (run on the real
// binary, on the demo report), adding picture files as image pages, and damaged pages.

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

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

} // namespace

class PicturePagesCliTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString m_project;
    QString m_timeline;
    QString m_image;

    QString pageOfType(const QString& type)
    {
        const Run pages = cli({QStringLiteral("pages"), m_project});
        QString id;
        for (const QString& line : pages.out.split(QLatin1Char('\n'))) {
            const QStringList fields = line.split(QLatin1Char('\t'));
            if (fields.size() >= 2 && fields[1] == type) {
                id = fields[0];
            }
        }
        return id;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(!qEnvironmentVariable("KESTRUM_CLI").isEmpty());
        m_project = m_dir.filePath(QStringLiteral("demo.kst"));
        QCOMPARE(cli({QStringLiteral("demo"), m_project}).code, 0);
        m_timeline = pageOfType(QStringLiteral("8"));
        m_image = pageOfType(QStringLiteral("3"));
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
        const QString out = m_dir.filePath(name);
        const Run run =
            cli({QStringLiteral("export-page"), m_project, timeline ? m_timeline : m_image, out});
        QVERIFY2(run.code == 0, qPrintable(run.err));
        const QByteArray bytes = readFile(out);
        QVERIFY(bytes.startsWith(start));
        if (size.isValid()) {
            QImageReader reader(out);
            QCOMPARE(reader.read().size(), size);
        } else {
            const QString text = QString::fromUtf8(bytes);
            QVERIFY(text.contains(QLatin1String("\r\nEvent\tAll staff remote\t")));
            QVERIFY(text.contains(QLatin1String("Interview 02\bpar. 8\bInterviews 2026\b2\b")));
            QCOMPARE(text.count(QLatin1String("\r\nEvent\t")), 9);
        }
    }

    void otherExtensionsNameTheFormats()
    {
        const Run run = cli({QStringLiteral("export-page"), m_project, m_timeline,
                             m_dir.filePath(QStringLiteral("t.svg"))});
        QVERIFY(run.code != 0);
        QVERIFY2(run.err.contains(QLatin1String(".png .jpg .jpeg .bmp .gif .txt")),
                 qPrintable(run.err));
        const Run image = cli({QStringLiteral("export-page"), m_project, m_image,
                               m_dir.filePath(QStringLiteral("i.gif"))});
        QVERIFY(image.code != 0);
        QVERIFY2(image.err.contains(QLatin1String(".bmp .png .jpg .jpeg")), qPrintable(image.err));
    }

    void addedPicturesBecomeImagePages()
    {
        QTemporaryDir dir;
        const QString project = dir.filePath(QStringLiteral("p.kst"));
        QCOMPARE(cli({QStringLiteral("new"), project}).code, 0);
        QImage picture(30, 20, QImage::Format_ARGB32);
        picture.fill(QColor(10, 20, 30, 128));
        const QString png = dir.filePath(QStringLiteral("snap.png"));
        const QString jpg = dir.filePath(QStringLiteral("photo.jpg"));
        QVERIFY(picture.save(png));
        QVERIFY(picture.convertToFormat(QImage::Format_RGB32).save(jpg));
        const Run add = cli({QStringLiteral("add"), project, png, jpg});
        QVERIFY2(add.code == 0, qPrintable(add.err));
        const Run pages = cli({QStringLiteral("pages"), project});
        QCOMPARE(pages.out.count(QLatin1String("\t3\t")), 2);
        const QString out = dir.filePath(QStringLiteral("back.bmp"));
        QString id;
        for (const QString& line : pages.out.split(QLatin1Char('\n'))) {
            if (line.endsWith(QLatin1String("snap"))) {
                id = line.section(QLatin1Char('\t'), 0, 0);
            }
        }
        QVERIFY(!id.isEmpty());
        QCOMPARE(cli({QStringLiteral("export-page"), project, id, out}).code, 0);
        const QByteArray bmp = readFile(out);
        QCOMPARE(quint8(bmp[28]), quint8(24)); // stored at 24 bits, the alpha gone
        QImage back;
        QVERIFY(back.loadFromData(bmp, "BMP"));
        QVERIFY(!back.hasAlphaChannel());
        QCOMPARE(back.size(), QSize(30, 20));
    }

    void damagedPagesGiveAMessage()
    {
        QTemporaryDir dir;
        const QString project = dir.filePath(QStringLiteral("p.kst"));
        QCOMPARE(cli({QStringLiteral("new"), project}).code, 0);
        const QString content = dir.filePath(QStringLiteral("c.txt"));
        QFile f(content);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("Range\t1\t2\r\nEvent\ta\tb\t31/12/2020\r\n");
        f.close();
        const Run put = cli({QStringLiteral("put"), project, QStringLiteral("--type"),
                             QStringLiteral("8"), QStringLiteral("--info"),
                             QStringLiteral("broken"), QStringLiteral("--content"), content});
        QVERIFY2(put.code == 0, qPrintable(put.err));
        const QString id = put.out.trimmed();
        const Run run = cli(
            {QStringLiteral("export-page"), project, id, dir.filePath(QStringLiteral("x.png"))});
        QVERIFY(run.code != 0);
        QVERIFY2(
            run.err.contains(QLatin1String("'31/12/2020' is not a valid floating point value")),
            qPrintable(run.err));
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("x.png"))));
    }
};

QTEST_GUILESS_MAIN(PicturePagesCliTest)
#include "PicturePagesCliTest.moc"
