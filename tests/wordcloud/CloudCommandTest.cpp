// kestrum-cli cloud: laying out a word list into a picture or a document, and rendering a
// stored document again.

#include "CliRunner.h"

#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

namespace {

using kestrum::test::CliRunner;
using Run = CliRunner::Result;

Run cli(const QStringList& args)
{
    return CliRunner().run(QStringList{QStringLiteral("cloud")} + args);
}

QByteArray readAll(const QString& file)
{
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

class CloudCommandTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void writesEachFormat_data();
    void writesEachFormat();
    void seedMakesItReproducible();
    void optionsTakeEffect();
    void storedDocumentRendersWithoutLayout();
    void badWordsAreReportedAndLeftOut();
    void usageErrors_data();
    void usageErrors();
    void badInput_data();
    void badInput();

private:
    QTemporaryDir m_dir;
    QString m_words;
    QString path(const QString& name) const { return m_dir.filePath(name); }
};

void CloudCommandTest::initTestCase()
{
    QVERIFY(QFileInfo(CliRunner::program()).isExecutable());
    QVERIFY(m_dir.isValid());
    m_words = path(QStringLiteral("words.tsv"));
    QFile f(m_words);
    QVERIFY(f.open(QIODevice::WriteOnly));
    const char* words[] = {"team",    "remote", "trust",    "meetings", "calls",
                           "office",  "home",   "chat",     "email",    "camera",
                           "kitchen", "family", "routine",  "silence",  "weekly",
                           "focus",   "coffee", "feedback", "support",  "culture"};
    for (int i = 0; i < 20; ++i) {
        f.write(QByteArray(words[i]) + '\t' + QByteArray::number(200 / (i + 1)) + '\n');
    }
}

void CloudCommandTest::writesEachFormat_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("magic");
    QTest::newRow("png") << QStringLiteral("c.png") << QByteArray("\x89PNG");
    QTest::newRow("bmp") << QStringLiteral("c.bmp") << QByteArray("BM");
    QTest::newRow("jpg") << QStringLiteral("c.jpg") << QByteArray("\xFF\xD8\xFF");
    QTest::newRow("jpeg, upper case") << QStringLiteral("C.JPEG") << QByteArray("\xFF\xD8\xFF");
    QTest::newRow("svg") << QStringLiteral("c.svg") << QByteArray("<?xml");
    QTest::newRow("xml") << QStringLiteral("c.xml") << QByteArray("<?xml");
}

void CloudCommandTest::writesEachFormat()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, magic);
    const Run run = cli({m_words, QStringLiteral("--out"), path(name), QStringLiteral("--seed"),
                         QStringLiteral("3")});
    QCOMPARE(run.code, 0);
    QVERIFY2(run.err.isEmpty(), qPrintable(run.err));
    // words, placed, final coverage, layout milliseconds
    const QStringList fields = run.text().trimmed().split(QLatin1Char('\t'));
    QCOMPARE(fields.size(), 4);
    QCOMPARE(fields[0], QStringLiteral("20"));
    QCOMPARE(fields[1], QStringLiteral("20"));
    QCOMPARE(fields[2], QStringLiteral("0.6"));
    bool ok = false;
    QVERIFY(fields[3].toDouble(&ok) >= 0 && ok);
    QVERIFY(run.text().endsWith(QLatin1Char('\n')) && run.text().count(QLatin1Char('\n')) == 1);
    const QByteArray bytes = readAll(path(name));
    QVERIFY(bytes.startsWith(magic));
    if (!name.endsWith(QLatin1String("xml"))) {
        QCOMPARE(QImage(path(name)).size(), QSize(800, 600));
    } else {
        QVERIFY(bytes.contains("<WordCloud version=\"1.0\">"));
    }
}

void CloudCommandTest::seedMakesItReproducible()
{
    const QStringList common{m_words, QStringLiteral("--random"), QStringLiteral("--seed"),
                             QStringLiteral("12")};
    QCOMPARE(cli(common + QStringList{QStringLiteral("--out"), path(QStringLiteral("a.png"))}).code,
             0);
    QCOMPARE(cli(common + QStringList{QStringLiteral("--out"), path(QStringLiteral("b.png"))}).code,
             0);
    QCOMPARE(readAll(path(QStringLiteral("a.png"))), readAll(path(QStringLiteral("b.png"))));
    QCOMPARE(cli(common + QStringList{QStringLiteral("--out"), path(QStringLiteral("a.xml"))}).code,
             0);
    QCOMPARE(cli(common + QStringList{QStringLiteral("--out"), path(QStringLiteral("b.xml"))}).code,
             0);
    QCOMPARE(readAll(path(QStringLiteral("a.xml"))), readAll(path(QStringLiteral("b.xml"))));
}

void CloudCommandTest::optionsTakeEffect()
{
    const QString out = path(QStringLiteral("options.xml"));
    const Run run =
        cli({m_words, QStringLiteral("--out"), out, QStringLiteral("--size"),
             QStringLiteral("500x300"), QStringLiteral("--coverage"), QStringLiteral("0.35"),
             QStringLiteral("--shape"), QStringLiteral("ellipse"), QStringLiteral("--gradient"),
             QStringLiteral("#00ff00,,clRed"), QStringLiteral("--font"),
             QStringLiteral("DejaVu Serif"), QStringLiteral("--seed"), QStringLiteral("1")});
    QCOMPARE(run.code, 0);
    QCOMPARE(run.text().split(QLatin1Char('\t')).value(2), QStringLiteral("0.35"));
    const QByteArray doc = readAll(out);
    QVERIFY(doc.contains("<Coverage>0.35</Coverage>"));
    QVERIFY(doc.contains("<StartColor>65280</StartColor>"));
    QVERIFY(doc.contains("<MiddleColor>536870911</MiddleColor>"));
    QVERIFY(doc.contains("<EndColor>255</EndColor>"));
    QVERIFY(doc.contains("<Font>DejaVu Serif,1,0,10,0</Font>"));
    QVERIFY(doc.contains("<StartingBounds>10;10;490;290</StartingBounds>"));

    const Run palette = cli(
        {m_words, QStringLiteral("--out"), out, QStringLiteral("--palette"), QStringLiteral("4")});
    QCOMPARE(palette.code, 0);
    QVERIFY(readAll(out).contains("<Palette>4</Palette>"));
}

void CloudCommandTest::storedDocumentRendersWithoutLayout()
{
    const QString doc = path(QStringLiteral("stored.xml"));
    const QString direct = path(QStringLiteral("direct.png"));
    const QStringList common{m_words, QStringLiteral("--seed"), QStringLiteral("8"),
                             QStringLiteral("--size"), QStringLiteral("640x480")};
    QCOMPARE(cli(common + QStringList{QStringLiteral("--out"), doc}).code, 0);
    QCOMPARE(cli(common + QStringList{QStringLiteral("--out"), direct}).code, 0);

    // At the stored size: the very same picture.
    const QString again = path(QStringLiteral("again.png"));
    const Run run = cli({QStringLiteral("--doc"), doc, QStringLiteral("--out"), again});
    QCOMPARE(run.code, 0);
    QCOMPARE(run.text(), QStringLiteral("20\t20\t0.6\t0.0\n"));
    QCOMPARE(QImage(again), QImage(direct));

    // At another size: fitted into it.
    const QString small = path(QStringLiteral("small.png"));
    QCOMPARE(cli({QStringLiteral("--doc"), doc, QStringLiteral("--out"), small,
                  QStringLiteral("--size"), QStringLiteral("320x240")})
                 .code,
             0);
    QCOMPARE(QImage(small).size(), QSize(320, 240));
}

void CloudCommandTest::badWordsAreReportedAndLeftOut()
{
    const QString list = path(QStringLiteral("bad.tsv"));
    QFile f(list);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write("team\t9\n\t4\nzero\t0\nminus\t-3\nno tab here\nteam\t9\n" + QByteArray(300, 'x') +
            "\t2\nобучение\t5\n");
    f.close();
    const Run run = cli({list, QStringLiteral("--out"), path(QStringLiteral("bad.png")),
                         QStringLiteral("--seed"), QStringLiteral("2")});
    QCOMPARE(run.code, 0);
    // Two "team", the long word and the Cyrillic one are laid out.
    QCOMPARE(run.text().split(QLatin1Char('\t')).value(0), QStringLiteral("4"));
    QVERIFY(run.err.contains(QStringLiteral("line 2: empty word")));
    QVERIFY(run.err.contains(QStringLiteral("line 3: weight 0 is below 1")));
    QVERIFY(run.err.contains(QStringLiteral("line 4: weight -3 is below 1")));
    QVERIFY(run.err.contains(QStringLiteral("line 5: no TAB")));
}

void CloudCommandTest::usageErrors_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    QTest::newRow("no --out") << QStringList{QStringLiteral("w.tsv")}
                              << QStringLiteral("--out FILE is required");
    QTest::newRow("unknown extension")
        << QStringList{QStringLiteral("w.tsv"), QStringLiteral("--out"), QStringLiteral("c.gif")}
        << QStringLiteral("the extension chooses");
    QTest::newRow("bad size") << QStringList{QStringLiteral("w.tsv"), QStringLiteral("--out"),
                                             QStringLiteral("c.png"), QStringLiteral("--size"),
                                             QStringLiteral("0x600")}
                              << QStringLiteral("--size wants");
    QTest::newRow("palette and gradient") << QStringList{QStringLiteral("w.tsv"),
                                                         QStringLiteral("--out"),
                                                         QStringLiteral("c.png"),
                                                         QStringLiteral("--palette"),
                                                         QStringLiteral("2"),
                                                         QStringLiteral("--gradient"),
                                                         QStringLiteral("clRed,,clBlue")}
                                          << QStringLiteral("exclude each other");
    QTest::newRow("gradient colour")
        << QStringList{QStringLiteral("w.tsv"), QStringLiteral("--out"), QStringLiteral("c.png"),
                       QStringLiteral("--gradient"), QStringLiteral("red,,blue")}
        << QStringLiteral("is not a colour");
    QTest::newRow("doc with layout options")
        << QStringList{QStringLiteral("--doc"), QStringLiteral("c.xml"), QStringLiteral("--out"),
                       QStringLiteral("c.png"), QStringLiteral("--random")}
        << QStringLiteral("unknown option --random");
}

void CloudCommandTest::usageErrors()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    const Run run = cli(args);
    QCOMPARE(run.code, 2);
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QVERIFY(run.text().isEmpty());
}

void CloudCommandTest::badInput_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("asDocument");
    QTest::addColumn<QString>("message");
    QTest::newRow("no usable words")
        << QByteArray("\t3\nzero\t0\n") << false << QStringLiteral("has no usable words");
    QTest::newRow("empty list") << QByteArray() << false << QStringLiteral("has no usable words");
    QTest::newRow("document of random bytes")
        << QByteArray("\x00\x01\x02garbage", 10) << true << QStringLiteral("not an XML document");
    QTest::newRow("document of version 3")
        << QByteArray("<WordCloud version=\"3\"/>") << true << QStringLiteral("is not 1.0");
}

void CloudCommandTest::badInput()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, asDocument);
    QFETCH(QString, message);
    const QString input = path(asDocument ? QStringLiteral("in.xml") : QStringLiteral("in.tsv"));
    QFile f(input);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(content);
    f.close();
    const QString out = path(QStringLiteral("never.png"));
    const Run run = asDocument ? cli({QStringLiteral("--doc"), input, QStringLiteral("--out"), out})
                               : cli({input, QStringLiteral("--out"), out});
    QCOMPARE(run.code, 1);
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QVERIFY(!QFile::exists(out));

    const Run missing = cli({path(QStringLiteral("missing.tsv")), QStringLiteral("--out"), out});
    QCOMPARE(missing.code, 1);
    QVERIFY(missing.err.contains(QStringLiteral("cannot open")));
}

QTEST_GUILESS_MAIN(CloudCommandTest)
#include "CloudCommandTest.moc"
