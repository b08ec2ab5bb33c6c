// kestrum-cli as host scripts use it: the real executable on real files, its output lines and
// its exit codes.

#include "CliRunner.h"

#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

class CliTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void usageErrorsExitWithTwo_data();
    void usageErrorsExitWithTwo();
    void newThenTreeAndPages();
    void addPutsFilesUnderANode();
    void catWritesTheDecompressedColumn();
    void putHandoffThenIntakeThenKeep();
    void badInputExitsWithOneAndNamesTheFile_data();
    void badInputExitsWithOneAndNamesTheFile();
    void demoReportHasFoldersPagesAndMarks();
    void refusedOutlineCommandsChangeNothing_data();
    void refusedOutlineCommandsChangeNothing();
    void outlineReducedToTheProjectIsWhatTreeLists();
    void handOffIsRenamedIntoPlaceNotRewritten();
    void recoverPutsPagesWithoutAnItemUnderAFolder();

private:
    using Result = kestrum::test::CliRunner::Result;
    // Runs in the test's own folder.
    Result run(const QStringList& args) const
    {
        return kestrum::test::CliRunner(m_dir->path()).run(args);
    }
    QString path(const QString& name) const { return m_dir->filePath(name); }
    std::unique_ptr<QTemporaryDir> m_dir;
};

void CliTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
}

void CliTest::usageErrorsExitWithTwo_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::newRow("no command") << QStringList();
    QTest::newRow("unknown command") << QStringList({"frobnicate"});
    QTest::newRow("tree without project") << QStringList({"tree"});
    QTest::newRow("unknown option") << QStringList({"tree", "x.kst", "--bogus"});
    QTest::newRow("page id not a number") << QStringList({"cat", "x.kst", "seven"});
    QTest::newRow("put without type") << QStringList({"put", "x.kst", "--info", "t"});
    QTest::newRow("option without value") << QStringList({"add", "x.kst", "f", "--under"});
    QTest::newRow("recover without project") << QStringList({"recover"});
}

void CliTest::usageErrorsExitWithTwo()
{
    QFETCH(QStringList, args);
    const Result r = run(args);
    QCOMPARE(r.code, 2);
    QVERIFY(r.err.contains(QLatin1String("usage")));
    QVERIFY(r.out.isEmpty());
}

void CliTest::newThenTreeAndPages()
{
    QCOMPARE(run({"new", "p.kst"}).code, 0);
    const Result tree = run({"tree", "p.kst"});
    QCOMPARE(tree.code, 0);
    QCOMPARE(tree.out, QByteArray("0\t0\t10\t-1\tProject name\n"
                                  "1\t1\t0\t1\tFirst document\n"
                                  "2\t1\t0\t2\tSecond document\n"));
    const Result colours = run({"tree", "p.kst", "--colours"});
    QVERIFY(colours.out.startsWith("0\t0\t10\t-1\tProject name\tdefault\tdefault\n"));
    const Result pages = run({"pages", "p.kst"});
    QCOMPARE(pages.code, 0);
    const QList<QByteArray> lines = pages.out.trimmed().split('\n');
    QCOMPARE(lines.size(), 3);
    const QList<QByteArray> first = lines[1].split('\t');
    QCOMPARE(first[0], QByteArray("1"));
    QCOMPARE(first[1], QByteArray("0"));
    QVERIFY(QDateTime::fromString(QString::fromLatin1(first[2]), Qt::ISODate).isValid());
    QCOMPARE(first[3], QByteArray("First document"));
}

void CliTest::addPutsFilesUnderANode()
{
    run({"new", "p.kst"});
    QFile csv(path(QStringLiteral("Code counts.csv")));
    QVERIFY(csv.open(QIODevice::WriteOnly));
    csv.write("code;n\n");
    csv.close();
    QFile txt(path(QStringLiteral("notes.txt")));
    QVERIFY(txt.open(QIODevice::WriteOnly));
    txt.write("notes");
    txt.close();
    const Result added = run({"add", "p.kst", "Code counts.csv", "notes.txt", "--under", "1"});
    QCOMPARE(added.code, 0);
    QCOMPARE(added.out, QByteArray("2\t2\t1\t3\tCode counts\n3\t2\t0\t4\tnotes\n"));
    const Result tree = run({"tree", "p.kst"});
    QVERIFY(tree.out.contains(
        "2\t2\t1\t3\tCode counts\n3\t2\t0\t4\tnotes\n4\t1\t0\t2\tSecond document\n"));
    QCOMPARE(run({"add", "p.kst", "notes.txt", "--under", "99"}).code, 1);
    QCOMPARE(run({"add", "p.kst", "no-such-file.txt"}).code, 1);
}

void CliTest::catWritesTheDecompressedColumn()
{
    run({"new", "p.kst"});
    QFile content(path(QStringLiteral("blob.bin")));
    QVERIFY(content.open(QIODevice::WriteOnly));
    const QByteArray bytes("\0\1binary\xFF", 9);
    content.write(bytes);
    content.close();
    const Result put = run({"put", "p.kst", "--type", "3", "--info", "a\tb\tPicture", "--content",
                            "blob.bin", "--comment", "Zażółć\nline two"});
    QCOMPARE(put.code, 0);
    QCOMPARE(put.out, QByteArray("3\n"));
    QCOMPARE(run({"cat", "p.kst", "3"}).out, bytes);
    QCOMPARE(run({"cat", "p.kst", "3", "--info"}).out, QByteArray("a\tb\tPicture"));
    QCOMPARE(QString::fromUtf8(run({"cat", "p.kst", "3", "--comment"}).out),
             QStringLiteral("Zażółć\nline two"));
    // put adds no outline node.
    QCOMPARE(run({"tree", "p.kst"}).out.count('\n'), 3);
    const Result missing = run({"cat", "p.kst", "77"});
    QCOMPARE(missing.code, 1);
    QVERIFY(missing.err.contains(QLatin1String("no page 77")));
}

void CliTest::putHandoffThenIntakeThenKeep()
{
    run({"new", "Study.session.kst"});
    QCOMPARE(run({"put", "Study.session.kst", "--type", "1", "--info", "x\ty\tFrequencies",
                  "--folder", "Session 3"})
                 .code,
             0);
    QVERIFY(QFile::exists(path(QStringLiteral("session.new"))));
    const Result intake = run({"intake", "Study.session.kst"});
    QCOMPARE(intake.code, 0);
    QCOMPARE(
        intake.out,
        QByteArray("3\t1\t11\t-1\tNew items\n4\t2\t11\t-1\tSession 3\n5\t3\t1\t3\tFrequencies\n"));
    QVERIFY(!QFile::exists(path(QStringLiteral("session.new"))));
    QCOMPARE(run({"intake", "Study.session.kst"}).out, QByteArray());

    const Result keep = run({"keep", "Study.session.kst", "5"});
    QCOMPARE(keep.code, 0);
    QVERIFY(keep.out.startsWith("1\t"));
    QVERIFY(keep.out.trimmed().endsWith("Study.session.sup"));
    const Result kept = run({"pages", "Study.session.sup"});
    QVERIFY(kept.out.contains("3\t1\t"));

    // Only session and kept-items projects have a hand-off file.
    run({"new", "plain.kst"});
    const Result refused = run({"put", "plain.kst", "--type", "0", "--info", "t", "--handoff"});
    QCOMPARE(refused.code, 1);
    QVERIFY(refused.err.contains(QLatin1String("hand-off")));
}

void CliTest::badInputExitsWithOneAndNamesTheFile_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("said");
    const QString notAProject = QStringLiteral("\"text.kst\" is not a Kestrum project");
    QTest::newRow("missing project") << QStringList({"tree", "absent.kst"}) << "absent.kst"
                                     << "the file does not exist";
    QTest::newRow("text file as project")
        << QStringList({"pages", "text.kst"}) << "text.kst" << notAProject;
    QTest::newRow("keep on a text file")
        << QStringList({"keep", "text.kst", "1"}) << "text.kst" << notAProject;
    QTest::newRow("export a page of a text file")
        << QStringList({"export-page", "text.kst", "1", "o.rtf"}) << "text.kst" << notAProject;
}

void CliTest::badInputExitsWithOneAndNamesTheFile()
{
    QFETCH(QStringList, args);
    QFETCH(QString, file);
    QFETCH(QString, said);
    QFile text(path(QStringLiteral("text.kst")));
    QVERIFY(text.open(QIODevice::WriteOnly));
    text.write(QByteArray(5000, 't'));
    text.close();
    const Result r = run(args);
    QCOMPARE(r.code, 1);
    QVERIFY2(r.err.contains(file), qPrintable(r.err));
    QVERIFY2(r.err.contains(said), qPrintable(r.err));
    QVERIFY2(!r.err.contains(QLatin1String("database")) && !r.err.contains(QLatin1String("SQL")),
             qPrintable(r.err));
    QCOMPARE(text.size(), 5000);
}

void CliTest::demoReportHasFoldersPagesAndMarks()
{
    QCOMPARE(run({"demo", "demo.kst"}).code, 0);
    const Result tree = run({"tree", "demo.kst", "--colours"});
    QCOMPARE(tree.code, 0);
    const QList<QByteArray> lines = tree.out.trimmed().split('\n');
    QVERIFY(lines.size() >= 6);
    QSet<QByteArray> kinds;
    bool marked = false;
    for (const QByteArray& line : lines) {
        const QList<QByteArray> f = line.split('\t');
        QCOMPARE(f.size(), 7);
        kinds.insert(f[2]);
        marked = marked || f[5] != "default";
        // Every page node's record exists and reads (the project node's data is an index).
        if (f[2] != "10" && f[3].toInt() > 0) {
            QCOMPARE(run({"cat", "demo.kst", QString::fromLatin1(f[3]), "--info"}).code, 0);
        }
    }
    QVERIFY(kinds.contains("10"));
    QVERIFY(kinds.contains("11"));
    QVERIFY(kinds.contains("0"));
    QVERIFY(marked);
}

void CliTest::refusedOutlineCommandsChangeNothing_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("code");
    QTest::newRow("unknown command") << QStringList({"bogus", "2"}) << 2;
    QTest::newRow("bad colour") << QStringList({"colour", "2", "mauve"}) << 2;
    QTest::newRow("missing drop target") << QStringList({"drop", "2", "99"}) << 1;
    QTest::newRow("first sibling up") << QStringList({"up", "1"}) << 1;
    QTest::newRow("missing node") << QStringList({"rename", "42", "x"}) << 1;
}

void CliTest::refusedOutlineCommandsChangeNothing()
{
    QFETCH(QStringList, args);
    QFETCH(int, code);
    QCOMPARE(run({"new", "q.kst"}).code, 0);
    QFile file(path(QStringLiteral("q.kst")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    file.close();
    const Result r = run(QStringList({"outline", "q.kst"}) + args);
    QCOMPARE(r.code, code);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), before);
}

void CliTest::outlineReducedToTheProjectIsWhatTreeLists()
{
    QCOMPARE(run({"new", "q.kst"}).code, 0);
    QCOMPARE(run({"outline", "q.kst", "delete", "1"}).code, 0);
    QCOMPARE(run({"tree", "q.kst"}).out, QByteArray("0\t0\t10\t0\tProject name\n"));
}

void CliTest::handOffIsRenamedIntoPlaceNotRewritten()
{
    // An intake reading the hand-off file while the host writes it must see the old file or the
    // new one, never a truncated one: each writing is a new file moved into place.
    QCOMPARE(run({"new", "Study.session.kst"}).code, 0);
    const QString handOff = path(QStringLiteral("session.new"));
    auto inode = [&] {
        struct stat st
        {};
        return ::stat(QFile::encodeName(handOff).constData(), &st) == 0 ? quint64(st.st_ino) : 0;
    };
    QCOMPARE(
        run({"put", "Study.session.kst", "--type", "0", "--info", "a\tb\tOne", "--folder", "First"})
            .code,
        0);
    const quint64 first = inode();
    QVERIFY(first != 0);
    QCOMPARE(run({"put", "Study.session.kst", "--type", "0", "--info", "a\tb\tTwo", "--folder",
                  "Second"})
                 .code,
             0);
    QVERIFY(inode() != first);
    QFile file(handOff);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("Second\r\n"));
    QVERIFY(QDir(m_dir->path()).entryList({QStringLiteral("*.new.*")}, QDir::Files).isEmpty());
}

void CliTest::recoverPutsPagesWithoutAnItemUnderAFolder()
{
    QCOMPARE(run({"new", "r.kst"}).code, 0);
    QCOMPARE(run({"put", "r.kst", "--type", "3", "--info", "a\tb\tPicture"}).out,
             QByteArray("3\n"));
    // The walk from node 1 leaves page 2 without a node; page 3 never had one.
    QCOMPARE(run({"outline", "r.kst", "delete", "1"}).code, 0);
    const Result recovered = run({"recover", "r.kst"});
    QCOMPARE(recovered.code, 0);
    // Page 2's PageInfo is the bare title it was made with: that title is its caption.
    QCOMPARE(recovered.out, QByteArray("2\t2\t0\t2\tSecond document\n3\t2\t3\t3\tPicture\n"));
    QVERIFY(recovered.err.contains("2 page(s) recovered"));
    QCOMPARE(run({"tree", "r.kst"}).out,
             QByteArray("0\t0\t10\t0\tProject name\n1\t1\t11\t-1\tRecovered items\n"
                        "2\t2\t0\t2\tSecond document\n3\t2\t3\t3\tPicture\n"));

    // Nothing left to recover: nothing printed and nothing written.
    QFile file(path(QStringLiteral("r.kst")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    file.close();
    const Result again = run({"recover", "r.kst"});
    QCOMPARE(again.code, 0);
    QVERIFY(again.out.isEmpty());
    QVERIFY(again.err.contains("No page is without an item."));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), bytes);
}

QTEST_GUILESS_MAIN(CliTest)
#include "CliTest.moc"
