// kestrum-cli and word cloud pages: a host's cloud document put as a page, "cloud --page",
// export-page in every picture format, and the usage errors.

#include "CliProject.h"
#include "PictureChecks.h"

#include <QFile>
#include <QImage>
#include <QTest>

using kestrum::test::CliProject;
using Run = kestrum::test::CliRunner::Result;

namespace {

QStringList lines(const QString& text)
{
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

class CloudPageCliTest : public QObject
{
    Q_OBJECT

private:
    CliProject m_folder; // the folder of every project and file of these tests
    QString m_words;

    QString path(const QString& name) const { return m_folder.file(name); }
    Run cli(const QStringList& args) const { return m_folder.run(args); }

    QString newProject(const QString& name)
    {
        const QString project = path(name);
        const Run made = cli({QStringLiteral("new"), project});
        if (made.code != 0) {
            qWarning() << made.err;
        }
        return project;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_folder.valid());
        m_words = path(QStringLiteral("words.tsv"));
        QFile f(m_words);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("team\t90\nremote\t60\nwork\t40\nmeetings\t30\ntrust\t22\ncalls\t15\n"
                "video\t11\nquiet\t8\nrhythm\t5\nhome\t3\n");
    }

    void hostDocumentPutAsPageExportsAgain()
    {
        const QString project = newProject(QStringLiteral("put.kst"));
        const QString doc = path(QStringLiteral("cloud.xml"));
        const Run laid = cli({QStringLiteral("cloud"), m_words, QStringLiteral("--out"), doc,
                              QStringLiteral("--size"), QStringLiteral("500x300"),
                              QStringLiteral("--seed"), QStringLiteral("3")});
        QCOMPARE(laid.code, 0);
        const Run put = cli({QStringLiteral("put"), project, QStringLiteral("--type"),
                             QStringLiteral("13"), QStringLiteral("--info"),
                             QStringLiteral("Cloud"), QStringLiteral("--content"), doc});
        QCOMPARE(put.code, 0);
        const QString page = put.text().trimmed();

        const QString xml = path(QStringLiteral("again.xml"));
        QCOMPARE(cli({QStringLiteral("export-page"), project, page, xml}).code, 0);
        QCOMPARE(CliProject::readFile(xml), CliProject::readFile(doc));
        const QString png = path(QStringLiteral("again.png"));
        QCOMPARE(cli({QStringLiteral("export-page"), project, page, png}).code, 0);
        QImage fromPage(png);
        // The picture of the page is the picture the cloud command draws from the document.
        const QString direct = path(QStringLiteral("direct.png"));
        QCOMPARE(cli({QStringLiteral("cloud"), QStringLiteral("--doc"), doc,
                      QStringLiteral("--out"), direct})
                     .code,
                 0);
        QCOMPARE(fromPage.size(), QSize(500, 300));
        QVERIFY(kestrum::test::showsSomething(fromPage));
        QCOMPARE(fromPage, QImage(direct));
    }

    void cloudPageAppendsUnderANode()
    {
        const QString project = newProject(QStringLiteral("page.kst"));
        const Run made =
            cli({QStringLiteral("cloud"), m_words, QStringLiteral("--page"), project,
                 QStringLiteral("--under"), QStringLiteral("1"), QStringLiteral("--title"),
                 QStringLiteral("Interview words"), QStringLiteral("--seed"), QStringLiteral("1")});
        QCOMPARE(made.code, 0);
        const QStringList out = lines(made.text());
        QCOMPARE(out.size(), 2);
        QVERIFY(out[0].startsWith(QLatin1String("10\t10\t")));
        // The new node: last child of node 1, a word cloud page.
        const QStringList node = out[1].split(QLatin1Char('\t'));
        QCOMPARE(node.size(), 5);
        QCOMPARE(node[1], QStringLiteral("2"));
        QCOMPARE(node[2], QStringLiteral("13"));
        QCOMPARE(node[4], QStringLiteral("Interview words"));

        const Run tree = cli({QStringLiteral("tree"), project});
        QCOMPARE(tree.code, 0);
        QVERIFY(lines(tree.text()).contains(out[1]));
        const Run pages = cli({QStringLiteral("pages"), project});
        QVERIFY(pages.text().contains(node[3] + QStringLiteral("\t13\t")));

        // Default: under the root, titled after the word list.
        const Run plain =
            cli({QStringLiteral("cloud"), m_words, QStringLiteral("--page"), project});
        QCOMPARE(plain.code, 0);
        const QStringList root = lines(plain.text())[1].split(QLatin1Char('\t'));
        QCOMPARE(root[1], QStringLiteral("1"));
        QCOMPARE(root[4], QStringLiteral("words"));

        for (const QString& ext : {QStringLiteral("png"), QStringLiteral("bmp"),
                                   QStringLiteral("jpg"), QStringLiteral("svg")}) {
            const QString file = path(QStringLiteral("page.") + ext);
            const Run exported = cli({QStringLiteral("export-page"), project, node[3], file});
            QVERIFY2(exported.code == 0, qPrintable(exported.err));
            if (ext == QLatin1String("svg")) {
                QVERIFY(CliProject::readFile(file).contains("<svg"));
            } else {
                const QImage image(file);
                QCOMPARE(image.size(), QSize(800, 600));
                QVERIFY(kestrum::test::showsSomething(image));
            }
        }
    }

    void usageErrors()
    {
        const QString project = newProject(QStringLiteral("errors.kst"));
        const Run neither = cli({QStringLiteral("cloud"), m_words});
        QVERIFY(neither.code != 0);
        QVERIFY(neither.err.contains(QLatin1String("--out FILE is required (or --page PROJECT)")));
        const Run underAlone =
            cli({QStringLiteral("cloud"), m_words, QStringLiteral("--out"),
                 path(QStringLiteral("x.png")), QStringLiteral("--under"), QStringLiteral("1")});
        QVERIFY(underAlone.code != 0);
        const Run noNode = cli({QStringLiteral("cloud"), m_words, QStringLiteral("--page"), project,
                                QStringLiteral("--under"), QStringLiteral("99")});
        QVERIFY(noNode.code != 0);
        QVERIFY(noNode.err.contains(QLatin1String("no node 99")));
        // Nothing was added by the refused runs.
        const Run pages = cli({QStringLiteral("pages"), project});
        QVERIFY(!pages.text().contains(QLatin1String("\t13\t")));
        const Run wrongFormat = cli({QStringLiteral("export-page"), project, QStringLiteral("1"),
                                     path(QStringLiteral("x.svg"))});
        QVERIFY(wrongFormat.code != 0);
    }
};

QTEST_MAIN(CloudPageCliTest)
#include "CloudPageCliTest.moc"
