// kestrum-cli export-page on the demo's concept diagram: every picture format by extension,
// and the failures.

#include <QFile>
#include <QImage>
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

class DiagramExportPageTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString m_project;
    QString m_diagramPage;

    QString putPage(const QByteArray& content)
    {
        const QString bad = m_dir.filePath(QStringLiteral("content.bin"));
        QFile f(bad);
        f.open(QIODevice::WriteOnly | QIODevice::Truncate);
        f.write(content);
        f.close();
        const Run put = cli({QStringLiteral("put"), m_project, QStringLiteral("--type"),
                             QStringLiteral("12"), QStringLiteral("--info"),
                             QStringLiteral("Broken"), QStringLiteral("--content"), bad});
        return put.code == 0 ? put.out.trimmed() : QString();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(!qEnvironmentVariable("KESTRUM_CLI").isEmpty());
        m_project = m_dir.filePath(QStringLiteral("demo.kst"));
        QCOMPARE(cli({QStringLiteral("demo"), m_project}).code, 0);
        const Run pages = cli({QStringLiteral("pages"), m_project});
        QCOMPARE(pages.code, 0);
        for (const QString& line : pages.out.split(QLatin1Char('\n'))) {
            const QStringList fields = line.split(QLatin1Char('\t'));
            if (fields.size() >= 4 && fields[1] == QLatin1String("12")) {
                m_diagramPage = fields[0];
            }
        }
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
        const QString out = m_dir.filePath(name);
        const Run run = cli({QStringLiteral("export-page"), m_project, m_diagramPage, out});
        QVERIFY2(run.code == 0, qPrintable(run.err));
        const QByteArray bytes = readFile(out);
        QVERIFY2(bytes.startsWith(start), bytes.left(20).toHex().constData());
        QVERIFY(bytes.size() > 1000);
        if (name.endsWith(QLatin1String(".svg"))) {
            // The block and link texts are in the drawing.
            QVERIFY(bytes.contains("Belonging"));
            QVERIFY(bytes.contains("Communication rhythms"));
        }
        if (name.endsWith(QLatin1String(".png"))) {
            // The target block is red: some pixel of the picture is.
            const QImage image = QImage::fromData(bytes);
            QVERIFY(image.width() > 300 && image.height() > 300);
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
        const Run run = cli({QStringLiteral("export-page"), m_project, m_diagramPage,
                             m_dir.filePath(QStringLiteral("d.csv"))});
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
        const QString id = putPage(content);
        QVERIFY(!id.isEmpty());
        const QString out = m_dir.filePath(QStringLiteral("broken.png"));
        const Run run = cli({QStringLiteral("export-page"), m_project, id, out});
        QCOMPARE(run.code, 1);
        QVERIFY2(run.err.contains(message), qPrintable(run.err));
        QVERIFY(!QFile::exists(out));
    }
};

QTEST_GUILESS_MAIN(DiagramExportPageTest)
#include "DiagramExportPageTest.moc"
