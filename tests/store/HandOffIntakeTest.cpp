// Taking in pages a host program appended and announced with a hand-off file.

#include "StoreFixture.h"

#include "store/OutlineStream.h"
#include "store/ProjectReader.h"

#include <QSignalSpy>
#include <QtTest>

#include <atomic>
#include <thread>

using namespace kestrum::store;
using namespace kestrum::test;

class HandOffIntakeTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void handOffFileNames_data();
    void handOffFileNames();
    void emptyHandOffHangsPagesUnderNewItems();
    void firstLineNamesAnExistingNode();
    void firstLineWithoutMatchMakesAFolderUnderNewItems();
    void captionIsTheThirdTabField_data();
    void captionIsTheThirdTabField();
    void nothingIsAdoptedTwice();
    void openingTakesInAndSelectsAfterTheFirstAdopted();
    void timerTestLowerCasesTheSupName();
    void unusualRecordsAreAdoptedSafely();
    void idsBeyond32BitsAreRefusedWithAMessage();
    void undeletableHandOffFileIsReported();
    void failedOutlineWriteUndoesTheAdoption();
    void hostAppendsWhileThePollRuns();

private:
    QString path(const QString& name) const { return m_dir->filePath(name); }
    // A session project with its two default pages, open in the store.
    QString openSession(const QString& name = QStringLiteral("Study.session.kst"));
    void handOff(const QByteArray& firstLine = {},
                 const QString& name = QStringLiteral("session.new"));
    QStringList outlineLines() const;

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<StoreWithDocuments> m_store;
};

void HandOffIntakeTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<StoreWithDocuments>();
    SqliteDatabase::setBusyTimeout(10000);
}

void HandOffIntakeTest::cleanup()
{
    m_store.reset();
    m_dir.reset();
}

QString HandOffIntakeTest::openSession(const QString& name)
{
    const QString file = path(name);
    KREQUIRE_OK(m_store->data.DBCreate(file));
    return file;
}

void HandOffIntakeTest::handOff(const QByteArray& firstLine, const QString& name)
{
    writeFile(path(name), firstLine);
}

QStringList HandOffIntakeTest::outlineLines() const
{
    QStringList out;
    for (const OutlineNode* n : m_store->data.outline().nodesInOrder()) {
        out << QStringLiteral("%1%2 [%3:%4]")
                   .arg(QString(n->level(), QLatin1Char('.')), n->caption())
                   .arg(n->imageIndex())
                   .arg(n->data());
    }
    return out;
}

void HandOffIntakeTest::handOffFileNames_data()
{
    QTest::addColumn<QString>("project");
    QTest::addColumn<bool>("timer");
    QTest::addColumn<QString>("expected");
    QTest::newRow("session") << "a.session.kst" << true << "session.new";
    QTest::newRow("kept items") << "a.sup" << true << "TLTree.new";
    QTest::newRow("both: the .sup test wins") << "a.session.sup" << true << "TLTree.new";
    QTest::newRow("upper-case SUP, timer") << "A.SUP" << true << "TLTree.new";
    QTest::newRow("upper-case SUP, opening") << "A.SUP" << false << "";
    QTest::newRow("upper-case SESSION is not a session") << "a.SESSION.kst" << true << "";
    QTest::newRow("ordinary project") << "report.kst" << true << "";
}

void HandOffIntakeTest::handOffFileNames()
{
    QFETCH(QString, project);
    QFETCH(bool, timer);
    QFETCH(QString, expected);
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(path(project)));
    const QString name = data.handOffFileName(timer);
    QCOMPARE(QFileInfo(name).fileName(), expected);
    if (!expected.isEmpty()) {
        QCOMPARE(QFileInfo(name).absolutePath(), QFileInfo(path(project)).absolutePath());
    }
}

void HandOffIntakeTest::emptyHandOffHangsPagesUnderNewItems()
{
    const QString file = openSession();
    TRMData& data = m_store->data;
    HostConnection host(file);
    KVERIFY_OK(host.table->insert(kFixedNow, QStringLiteral("Retrieval\tInterviews\tCommunication"),
                                  0, "{\\rtf1 x}", {}));
    KVERIFY_OK(host.table->insert(kFixedNow, QStringLiteral("Frequencies\tCodes\tCode counts"), 1,
                                  "grid", {}));
    QVERIFY(!data.pollHandOff().value()); // no hand-off file yet: nothing happens
    handOff();
    QVERIFY(data.pollHandOff().value());
    QCOMPARE(outlineLines(),
             QStringList({"Project name [10:-1]", ".First document [0:1]", ".Second document [0:2]",
                          ".New items [11:-1]", "..Communication [0:3]", "..Code counts [1:4]"}));
    QCOMPARE(data.restoredSelectionIndex(), 4);
    QVERIFY(data.outline().nodeAt(3)->fields().expanded);
    QVERIFY(!QFile::exists(path(QStringLiteral("session.new"))));
    // The adopted outline is stored.
    data.CloseFile();
    ProjectReader reader;
    KVERIFY_OK(reader.open(file));
    QCOMPARE(reader.outline()->childAt(2)->childCount(), 2);
}

void HandOffIntakeTest::firstLineNamesAnExistingNode()
{
    const QString file = openSession();
    HostConnection host(file);
    KVERIFY_OK(host.table->insert(kFixedNow, QStringLiteral("a\tb\tPassage"), 5, {}, {}));
    handOff("Second document\r\nignored second line\r\n");
    KVERIFY_OK(m_store->data.pollHandOff());
    QCOMPARE(outlineLines(),
             QStringList({"Project name [10:-1]", ".First document [0:1]", ".Second document [0:2]",
                          "..Passage [5:3]", ".New items [11:-1]"}));
}

void HandOffIntakeTest::firstLineWithoutMatchMakesAFolderUnderNewItems()
{
    const QString file = openSession();
    HostConnection host(file);
    KVERIFY_OK(host.table->insert(kFixedNow, QStringLiteral("a\tb\tCloud"), 13, {}, {}));
    handOff("Session 14 Nov\n");
    KVERIFY_OK(m_store->data.pollHandOff());
    QCOMPARE(outlineLines().mid(3),
             QStringList({".New items [11:-1]", "..Session 14 Nov [11:-1]", "...Cloud [13:3]"}));
    // A second hand-off naming the same folder adds to it.
    KVERIFY_OK(host.table->insert(kFixedNow, QStringLiteral("a\tb\tTimeline"), 8, {}, {}));
    handOff("Session 14 Nov");
    KVERIFY_OK(m_store->data.pollHandOff());
    QCOMPARE(outlineLines().mid(3), QStringList({".New items [11:-1]", "..Session 14 Nov [11:-1]",
                                                 "...Cloud [13:3]", "...Timeline [8:4]"}));
}

void HandOffIntakeTest::captionIsTheThirdTabField_data()
{
    QTest::addColumn<QString>("info");
    QTest::addColumn<QString>("caption");
    QTest::newRow("four fields") << "a\tb\tTitle\tmore"
                                 << "Title";
    QTest::newRow("two fields") << "a\tb"
                                << "";
    QTest::newRow("three fields") << "a\tb\tLast"
                                  << "Last";
    QTest::newRow("no tab") << "Just a title"
                            << "";
    QTest::newRow("empty") << ""
                           << "";
}

void HandOffIntakeTest::captionIsTheThirdTabField()
{
    QFETCH(QString, info);
    QFETCH(QString, caption);
    const QString file = openSession();
    HostConnection host(file);
    KVERIFY_OK(host.table->insert(kFixedNow, info, 0, {}, {}));
    handOff();
    KVERIFY_OK(m_store->data.pollHandOff());
    QCOMPARE(m_store->data.outline().nodeAt(4)->caption(), caption);
}

void HandOffIntakeTest::nothingIsAdoptedTwice()
{
    const QString file = openSession();
    TRMData& data = m_store->data;
    HostConnection host(file);
    KVERIFY_OK(host.table->insert(kFixedNow, QStringLiteral("a\tb\tOne"), 0, {}, {}));
    handOff();
    KVERIFY_OK(data.pollHandOff());
    const int count = data.outline().count();
    handOff();
    QSignalSpy inserted(&data.outline(), &OutlineModel::nodesInserted);
    QVERIFY(data.pollHandOff().value());
    QCOMPARE(inserted.count(), 0);
    QCOMPARE(data.outline().count(), count);
    QCOMPARE(data.restoredSelectionIndex(), -1);
    QVERIFY(!QFile::exists(path(QStringLiteral("session.new"))));
}

void HandOffIntakeTest::openingTakesInAndSelectsAfterTheFirstAdopted()
{
    const QString file = openSession();
    m_store->data.CloseFile();
    {
        HostConnection host(file);
        for (const char* title : {"a\tb\tFirst", "a\tb\tSecond", "a\tb\tThird"}) {
            KVERIFY_OK(host.table->insert(kFixedNow, QString::fromLatin1(title), 0, {}, {}));
        }
    }
    handOff();
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBOpen(file));
    // The first adopted node is number 4; the selection lands on the node after it.
    QCOMPARE(data.restoredSelectionIndex(), 4);
    QCOMPARE(data.outline().selectedIndex(), 5);
    QCOMPARE(data.outline().root()->data(), 5);
    QCOMPARE(data.outline().selected()->caption(), QStringLiteral("Second"));
}

void HandOffIntakeTest::timerTestLowerCasesTheSupName()
{
    const QString file = openSession(QStringLiteral("Kept.SUP"));
    TRMData& data = m_store->data;
    data.CloseFile();
    {
        HostConnection host(file);
        KVERIFY_OK(host.table->insert(kFixedNow, QStringLiteral("a\tb\tKept page"), 0, {}, {}));
    }
    handOff({}, QStringLiteral("TLTree.new"));
    KVERIFY_OK(data.DBOpen(file)); // the opening test is case-sensitive: ".SUP" is not ".sup"
    QCOMPARE(data.outline().count(), 3);
    QVERIFY(QFile::exists(path(QStringLiteral("TLTree.new"))));
    QVERIFY(data.pollHandOff().value()); // the timer lower-cases the name first
    QCOMPARE(data.outline().count(), 5);
    QVERIFY(!QFile::exists(path(QStringLiteral("TLTree.new"))));
}

void HandOffIntakeTest::unusualRecordsAreAdoptedSafely()
{
    const QString file = openSession();
    TRMData& data = m_store->data;
    HostConnection host(file);
    KVERIFY_OK(host.table->insert(kFixedNow, QStringLiteral("a\tb\tUnknown kind"), 99, "?", {}));
    KVERIFY_OK(host.table->insert(
        kFixedNow, QStringLiteral("a\tb\t") + QString(200000, QLatin1Char('W')), 0, {}, {}));
    KVERIFY_OK(host.db.exec(
        "INSERT INTO OUTPUT (PageType, PageInfo) VALUES (0, x'00FFFFFFAB')")); // damaged title
    handOff();
    KVERIFY_OK(data.pollHandOff());
    QCOMPARE(data.outline().count(), 7);
    QCOMPARE(data.outline().nodeAt(4)->imageIndex(), 99);
    QCOMPARE(data.outline().nodeAt(5)->caption().size(), OutlineModel::kMaxCaptionLength);
    QCOMPARE(data.outline().nodeAt(6)->caption(), QStringLiteral("Page 5 (damaged title)"));
    // The stored outline reads back.
    data.CloseFile();
    ProjectReader reader;
    KVERIFY_OK(reader.open(file));
    QCOMPARE(reader.outline()->childAt(2)->childCount(), 3);
}

void HandOffIntakeTest::idsBeyond32BitsAreRefusedWithAMessage()
{
    const QString file = openSession();
    TRMData& data = m_store->data;
    HostConnection host(file);
    // 2^32 + 1 would read as page 1 if it were cut to 32 bits.
    KVERIFY_OK(host.table->insert(kFixedNow, QStringLiteral("a\tb\tOrdinary"), 0, {}, {}));
    KVERIFY_OK(host.db.exec(
        "INSERT INTO OUTPUT (PageId, PageType, PageInfo) VALUES (4294967297, 0, NULL)"));
    handOff();
    QSignalSpy warnings(&data, &TRMData::warning);
    KVERIFY_OK(data.pollHandOff());
    QCOMPARE(warnings.count(), 1);
    QVERIFY(warnings.at(0).at(0).toString().contains(QLatin1String("4294967297")));
    // The ordinary record is still taken in.
    QCOMPARE(outlineLines().last(), QStringLiteral("..Ordinary [0:3]"));
    const std::vector<PageSummary> summaries = data.table()->summaries().value();
    QCOMPARE(summaries.at(4).storedId, Q_INT64_C(4294967297));
    QVERIFY(summaries.at(4).idOutOfRange);
}

void HandOffIntakeTest::undeletableHandOffFileIsReported()
{
    const QString sub = path(QStringLiteral("ro"));
    QDir().mkpath(sub);
    const QString file = sub + QStringLiteral("/x.session.kst");
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    HostConnection host(file);
    KVERIFY_OK(host.table->insert(kFixedNow, QStringLiteral("a\tb\tPage"), 0, {}, {}));
    writeFile(sub + QStringLiteral("/session.new"), {});
    // The folder stays writable for the database journal, but the hand-off file is a folder
    // that cannot be removed as a file.
    QFile::remove(sub + QStringLiteral("/session.new"));
    QDir().mkpath(sub + QStringLiteral("/session.new/inside"));
    QSignalSpy warnings(&data, &TRMData::warning);
    KVERIFY_OK(data.pollHandOff());
    QCOMPARE(warnings.count(), 1);
    QVERIFY(warnings.at(0).at(0).toString().contains(QLatin1String("session.new")));
    const int count = data.outline().count();
    QCOMPARE(count, 5);
    KVERIFY_OK(data.pollHandOff()); // tries again, adopts nothing new
    QCOMPARE(data.outline().count(), count);
}

void HandOffIntakeTest::failedOutlineWriteUndoesTheAdoption()
{
    SqliteDatabase::setBusyTimeout(100);
    const QString file = openSession();
    TRMData& data = m_store->data;
    HostConnection host(file);
    KVERIFY_OK(host.table->insert(kFixedNow, QStringLiteral("a\tb\tPage"), 0, {}, {}));
    handOff();
    KVERIFY_OK(host.db.exec("BEGIN EXCLUSIVE"));
    const QStringList before = outlineLines();
    QVERIFY(!data.pollHandOff().ok());
    QCOMPARE(outlineLines(), before);
    QVERIFY(QFile::exists(path(QStringLiteral("session.new"))));
    KVERIFY_OK(host.db.exec("COMMIT"));
    QVERIFY(data.pollHandOff().value());
    QCOMPARE(data.outline().count(), before.size() + 2);
}

void HandOffIntakeTest::hostAppendsWhileThePollRuns()
{
    const QString file = openSession();
    TRMData& data = m_store->data;
    constexpr int kPages = 300;
    std::atomic<bool> done{false};
    std::thread host([&] {
        HostConnection connection(file);
        for (int i = 0; i < kPages; ++i) {
            // Not a check from this thread: a failure stops the test program with its message.
            connection.table
                ->insert(kFixedNow, QStringLiteral("h\ti\tHanded %1").arg(i), i % 3, {}, {})
                .value();
            if (i % 7 == 0) {
                writeFile(path(QStringLiteral("session.new")), {});
            }
        }
        writeFile(path(QStringLiteral("session.new")), {});
        done = true;
    });
    QString pollFailure;
    while (!done && pollFailure.isEmpty()) {
        pollFailure = data.pollHandOff().error();
    }
    host.join();
    QVERIFY2(pollFailure.isEmpty(), qPrintable(pollFailure));
    KVERIFY_OK(data.pollHandOff());
    // Every page appears exactly once, in the order the host wrote them.
    QSet<qint32> seen;
    QList<qint32> order;
    for (const OutlineNode* n : data.outline().nodesInOrder()) {
        if (n->data() > 2) {
            QVERIFY(!seen.contains(n->data()));
            seen.insert(n->data());
            order << n->data();
        }
    }
    QCOMPARE(seen.size(), kPages);
    QVERIFY(std::is_sorted(order.begin(), order.end()));
}

QTEST_GUILESS_MAIN(HandOffIntakeTest)
#include "HandOffIntakeTest.moc"
