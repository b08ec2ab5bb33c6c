// The project store over real SQLite files: creating and opening projects, the outline record
// and selection restore, page and comment round trips through the page documents, the current
// record, the companion settings file, another program writing the same file, and damaged or
// locked files.

#include "StoreFixture.h"

#include "common/IniFile.h"
#include "store/ColumnCodec.h"
#include "store/OutlineStream.h"
#include "store/ProjectReader.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QtTest>

#include <sqlite3.h>

#include <thread>

using namespace kestrum::store;
using namespace kestrum::test;

class TRMDataTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void newProjectHasThreeRecords();
    void createReusesAnExistingFileAndReplacesItsTable();
    void createOrOpenOfABadFileLeavesTheOpenProject();
    void openRestoresTheSelection_data();
    void openRestoresTheSelection();
    void selectedNodeSurvivesReopen();
    void openAnnouncesItselfInOrder();
    void contentRoundTripsForEveryKind_data();
    void contentRoundTripsForEveryKind();
    void missingPagesLeaveTheTableAlone();
    void currentRecordRule();
    void commentsRoundTrip();
    void oneNodeOutlineIsWritten();
    void closingFlagBlocksPageAccess();
    void companionSettingsFile();
    void appendFileDecidesTheKindByExtension_data();
    void appendFileDecidesTheKindByExtension();
    void appendFilePlacesAndSelectsTheNode();
    void deleteRecord();
    void batchAppendKeepsOrderAndContent();
    void hostWritesWhileTheStoreHoldsTheFile();
    void concurrentWriterIsWaitedFor();
    void lockedFileIsReported();
    void damagedFilesAreRefused_data();
    void damagedFilesAreRefused();
    void damagedPageLeavesOtherPagesReadable();
    void readingAfterAnInterruptedWriteRollsItBack();
    void hostWrittenValuesAreRead();
    void valueBeyondTheEngineLimitIsRefusedNotStoredEmpty();

private:
    QString path(const QString& name) const { return m_dir->filePath(name); }
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<StoreWithDocuments> m_store;
};

void TRMDataTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<StoreWithDocuments>();
    SqliteDatabase::setBusyTimeout(10000);
}

void TRMDataTest::cleanup()
{
    m_store.reset();
    m_dir.reset();
}

void TRMDataTest::newProjectHasThreeRecords()
{
    TRMData& data = m_store->data;
    QSignalSpy titles(&data, &TRMData::titleChanged);
    KVERIFY_OK(data.DBCreate(path(QStringLiteral("study.kst"))));
    QCOMPARE(data.windowTitle(), QStringLiteral("Kestrum - STUDY.KST"));
    QCOMPARE(titles.count(), 1);

    const std::vector<PageSummary> pages = data.table()->summaries().value();
    QCOMPARE(pages.size(), std::size_t(3));
    QCOMPARE(pages[0].pageId, 0);
    QCOMPARE(pages[0].type, 10);
    QCOMPARE(pages[0].info, QStringLiteral("Outline"));
    QCOMPARE(pages[1].pageId, 1);
    QCOMPARE(pages[1].info, QStringLiteral("First document"));
    QCOMPARE(pages[2].info, QStringLiteral("Second document"));
    QCOMPARE(pages[2].type, 0);
    QCOMPARE(pages[1].date, kFixedNow);

    const OutlineModel& outline = data.outline();
    QCOMPARE(outline.count(), 3);
    QCOMPARE(outline.root()->caption(), QStringLiteral("Project name"));
    QCOMPARE(outline.root()->imageIndex(), 10);
    QCOMPARE(outline.nodeAt(1)->data(), 1);
    QCOMPARE(outline.nodeAt(2)->data(), 2);
    QCOMPARE(outline.nodeAt(2)->imageIndex(), 0);

    // The stored outline is the tree.
    data.CloseFile();
    ProjectReader reader;
    KVERIFY_OK(reader.open(path(QStringLiteral("study.kst"))));
    int n = 0;
    visitInOrder(reader.outline(), [&n](const OutlineNode*, int) { ++n; });
    QCOMPARE(n, 3);
}

void TRMDataTest::createReusesAnExistingFileAndReplacesItsTable()
{
    const QString file = path(QStringLiteral("reuse.kst"));
    {
        SqliteDatabase db;
        KVERIFY_OK(db.open(file, SqliteDatabase::OpenMode::ReadWriteCreate));
        KVERIFY_OK(db.exec("CREATE TABLE notes(x)"));
        KVERIFY_OK(db.exec("INSERT INTO notes VALUES (1)"));
        PageTable table(db);
        KVERIFY_OK(table.create());
        for (int i = 0; i < 5; ++i) {
            KVERIFY_OK(table.insert(1.0, QStringLiteral("old"), 0, "old", {}));
        }
    }
    KVERIFY_OK(m_store->data.DBCreate(file));
    QCOMPARE(m_store->data.table()->rowCount().value(), 3);
    m_store->data.CloseFile();
    SqliteDatabase db;
    KVERIFY_OK(db.open(file, SqliteDatabase::OpenMode::ReadOnly));
    SqliteStatement st(db, "SELECT count(*) FROM notes");
    QVERIFY(st.step().value());
    QCOMPARE(st.columnInt(0), 1);
}

void TRMDataTest::createOrOpenOfABadFileLeavesTheOpenProject()
{
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(path(QStringLiteral("good.kst"))));
    const QString garbage = path(QStringLiteral("garbage.kst"));
    writeFile(garbage, QByteArray(8192, 'G'));
    const QByteArray garbageBytes = readFile(garbage);

    KCOMPARE_FAILURE(data.DBOpen(garbage),
                     QStringLiteral("\"garbage.kst\" is not a Kestrum project"));
    QVERIFY(!data.DBCreate(garbage).ok());
    QVERIFY(!data.DBOpen(path(QStringLiteral("missing.kst"))).ok());
    QVERIFY(data.isOpen());
    QCOMPARE(data.fileName(), path(QStringLiteral("good.kst")));
    QCOMPARE(data.outline().count(), 3);
    QCOMPARE(readFile(garbage), garbageBytes); // nothing written into it
    QVERIFY(!QFile::exists(path(QStringLiteral("missing.kst"))));
}

void TRMDataTest::openRestoresTheSelection_data()
{
    QTest::addColumn<int>("storedIndex");
    QTest::addColumn<int>("selected");
    // Outline of 6 nodes: root and five pages.
    QTest::newRow("0 selects node 1") << 0 << 1;
    QTest::newRow("1 selects node 1") << 1 << 1;
    QTest::newRow("4 selects node 4") << 4 << 4;
    QTest::newRow("last node") << 5 << 5;
    QTest::newRow("equal to the count selects node 1") << 6 << 1;
    QTest::newRow("past the end selects node 1") << 60 << 1;
    QTest::newRow("negative selects node 1") << -3 << 1;
}

void TRMDataTest::openRestoresTheSelection()
{
    QFETCH(int, storedIndex);
    QFETCH(int, selected);
    const QString file = path(QStringLiteral("sel.kst"));
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    for (int i = 0; i < 3; ++i) {
        OutlineNode* node = data.outline().addChild(data.outline().root(), {});
        data.outline().setData(node, data.AddRecord(0, QStringLiteral("p"), {}).value());
    }
    KVERIFY_OK(data.SaveTree());
    data.CloseFile();
    // The outline as saved with the chosen index in the root's data: root and five pages.
    {
        HostConnection host(file);
        OutlineNodeData rootData =
            OutlineStream::read(*host.table->readContent(0).value()).value_or(nullptr)->fields();
        rootData.data = storedIndex;
        OutlineNode tree(rootData);
        for (int id = 1; id <= 5; ++id) {
            OutlineNodeData page;
            page.data = id;
            tree.appendChildUnchecked(std::make_unique<OutlineNode>(page));
        }
        KVERIFY_OK(host.table->writeContent(0, OutlineStream::write(&tree)));
    }
    QSignalSpy shown(&data, &TRMData::selectionRestored);
    KVERIFY_OK(data.DBOpen(file));
    QCOMPARE(data.outline().selectedIndex(), selected);
    QCOMPARE(shown.count(), 1);
}

void TRMDataTest::selectedNodeSurvivesReopen()
{
    const QString file = path(QStringLiteral("fifth.kst"));
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    for (int i = 0; i < 4; ++i) {
        OutlineNode* node = data.outline().addChild(data.outline().root(), {});
        data.outline().setData(node, data.AddRecord(0, QStringLiteral("p"), {}).value());
    }
    data.outline().selectIndex(5);
    KVERIFY_OK(data.SaveTree());
    data.outline().selectIndex(2);
    KVERIFY_OK(
        data.DBOpen(file)); // closes first, which writes the outline with the selection of node 2
    QCOMPARE(data.outline().selectedIndex(), 2);
    data.outline().selectIndex(5);
    data.CloseFile();
    KVERIFY_OK(data.DBOpen(file));
    QCOMPARE(data.outline().selectedIndex(), 5);
}

void TRMDataTest::openAnnouncesItselfInOrder()
{
    const QString file = path(QStringLiteral("order.kst"));
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    data.CloseFile();
    QObject context; // the connections end with the test
    QStringList events;
    connect(&data, &TRMData::outlineLoaded, &context, [&] { events << QStringLiteral("menus"); });
    connect(&data, &TRMData::selectionRestored, &context,
            [&] { events << QStringLiteral("show"); });
    connect(&data, &TRMData::outlineSaved, &context, [&] { events << QStringLiteral("buttons"); });
    KVERIFY_OK(data.DBOpen(file));
    QCOMPARE(events, QStringList({"menus", "show", "buttons"}));
}

void TRMDataTest::contentRoundTripsForEveryKind_data()
{
    QTest::addColumn<int>("pageType");
    QTest::addColumn<QByteArray>("content");
    QRandomGenerator rng(11);
    QByteArray big(3 << 20, Qt::Uninitialized);
    for (char& c : big) {
        c = char(rng.bounded(256));
    }
    QTest::newRow("text") << 0 << QByteArray("{\\rtf1 Hello}");
    QTest::newRow("text variant 7") << 7 << QByteArray("{\\rtf1 variant}");
    QTest::newRow("grid binary with zeros") << 1 << QByteArray("\0grid\0", 6);
    QTest::newRow("chart") << 2 << QByteArray("chart stream");
    QTest::newRow("image 3 MB") << 3 << big;
    QTest::newRow("timeline") << 8 << QByteArray("[EVENTS]\tx");
    QTest::newRow("diagram") << 12 << QByteArray("diagram");
    QTest::newRow("word cloud") << 13 << QByteArray("<WordCloud version=\"1.0\"/>");
    QTest::newRow("empty") << 1 << QByteArray();
}

void TRMDataTest::contentRoundTripsForEveryKind()
{
    QFETCH(int, pageType);
    QFETCH(QByteArray, content);
    const QString file = path(QStringLiteral("kinds.kst"));
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    const qint32 id = data.AddRecord(pageType, QStringLiteral("page"), {}).value();
    RawPageDocument& document = m_store->document(editorKindFor(pageType));
    document.setBytes(content);
    QVERIFY(data.savePage(id, document).value());
    document.setBytes("something else");
    data.CloseFile();

    KVERIFY_OK(data.DBOpen(file));
    QVERIFY(data.loadPage(id, document).value());
    QCOMPARE(document.bytes(), content);
}

void TRMDataTest::missingPagesLeaveTheTableAlone()
{
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(path(QStringLiteral("missing.kst"))));
    RawPageDocument& text = m_store->document(EditorKind::Text);
    RawPageDocument& grid = m_store->document(EditorKind::Grid);
    text.setBytes("on screen");
    grid.setBytes("grid on screen");
    QVERIFY(!data.SaveWP(999, m_store->document(EditorKind::Text)).value());
    QCOMPARE(data.table()->rowCount().value(), 3);
    // A missing page leaves the text and grid editors showing what they showed.
    QVERIFY(!data.GetWP(999, m_store->document(EditorKind::Text)).value());
    QCOMPARE(text.bytes(), QByteArray("on screen"));
    QVERIFY(!data.GetGrid(999, m_store->document(EditorKind::Grid)).value());
    QCOMPARE(grid.bytes(), QByteArray("grid on screen"));
    QVERIFY(!data.GetComment(999).value().has_value());
}

void TRMDataTest::currentRecordRule()
{
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(path(QStringLiteral("current.kst"))));
    RawPageDocument& text = m_store->document(EditorKind::Text);
    QVERIFY(data.GetWP(2, m_store->document(EditorKind::Text)).value());
    QCOMPARE(data.currentPageId(), 2);
    text.setBytes("written through -1");
    KVERIFY_OK(data.SaveTree()); // the current record is the same before and after
    QCOMPARE(data.currentPageId(), 2);
    QVERIFY(data.SaveWP(-1, m_store->document(EditorKind::Text)).value());
    QCOMPARE(*data.table()->readContent(2).value(), QByteArray("written through -1"));
    QVERIFY(data.table()->readContent(1).value()->isEmpty());

    KVERIFY_OK(data.DeleteRecord(2));
    QVERIFY(!data.SaveWP(-1, m_store->document(EditorKind::Text))
                 .value()); // no current record any more
}

void TRMDataTest::commentsRoundTrip()
{
    const QString file = path(QStringLiteral("comments.kst"));
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    const QString comment = QStringLiteral("Line one\nŁódź — ligne deux\n\ttabbed");
    QVERIFY(data.SaveComment(1, comment).value());
    QVERIFY(data.SaveComment(2, QString()).value());
    data.CloseFile();
    KVERIFY_OK(data.DBOpen(file));
    const std::optional<QString> first = data.GetComment(1).value();
    QVERIFY(first.has_value());
    QCOMPARE(*first, comment);
    const std::optional<QString> second = data.GetComment(2).value();
    QVERIFY(second.has_value());
    QVERIFY(second->isEmpty());
}

void TRMDataTest::oneNodeOutlineIsWritten()
{
    const QString file = path(QStringLiteral("lonely.kst"));
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    const QByteArray stored = *data.table()->readContent(0).value();
    while (data.outline().root()->hasChildren()) {
        data.outline().removeNode(data.outline().root()->childAt(0));
    }
    KVERIFY_OK(data.SaveTree());
    // What the window shows is what is stored, down to the project node alone.
    QVERIFY(*data.table()->readContent(0).value() != stored);
    data.CloseFile();
    KVERIFY_OK(data.DBOpen(file));
    QCOMPARE(data.outline().count(), 1);
}

void TRMDataTest::closingFlagBlocksPageAccess()
{
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(path(QStringLiteral("closing.kst"))));
    // An editor that reacts to the outline being cleared while the project closes.
    QObject context;
    bool readDuringTeardown = true;
    bool closingSeen = false;
    connect(&data.outline(), &OutlineModel::modelAboutToBeReset, &context, [&] {
        closingSeen = data.isClosing();
        readDuringTeardown = data.GetWP(1, m_store->document(EditorKind::Text)).value();
    });
    data.CloseFile();
    QVERIFY(closingSeen);
    QVERIFY(!readDuringTeardown);
    QVERIFY(!data.isClosing());
    QVERIFY(!data.SaveWP(1, m_store->document(EditorKind::Text)).value());
    QCOMPARE(data.AddRecord(0, QStringLiteral("x"), {}).value(), -1);
}

void TRMDataTest::companionSettingsFile()
{
    TRMData& data = m_store->data;
    const QString file = path(QStringLiteral("Interviews.kst"));
    const QString source = path(QStringLiteral("notes.txt"));
    writeFile(source, "notes");
    KVERIFY_OK(data.DBCreate(file));

    // Without the settings file: the title names the project, and appending creates nothing.
    KVERIFY_OK(data.DBOpen(file));
    QCOMPARE(data.windowTitle(), QStringLiteral("Kestrum - INTERVIEWS.KST"));
    KVERIFY_OK(data.AppendFile(source, data.outline().root(), true));
    QVERIFY(data.isModified());
    QVERIFY(data.companionSettingsPath().isEmpty());
    QVERIFY(!QFile::exists(path(QStringLiteral("Interviews.WPJ"))));
    QVERIFY(!QFile::exists(path(QStringLiteral("Interviews.wpj"))));

    // With it (any letter case): the public name is shown and appending marks it modified.
    writeFile(path(QStringLiteral("Interviews.Wpj")),
              "[OPTIONS]\r\nPublic File Name=C:\\Reports\\Remote work.kst\r\n");
    KVERIFY_OK(data.DBOpen(file));
    QCOMPARE(data.publicFileName(), QStringLiteral("C:\\Reports\\Remote work.kst"));
    QCOMPARE(data.windowTitle(), QStringLiteral("Kestrum - REMOTE WORK.KST"));
    KVERIFY_OK(data.AppendFile(source, data.outline().root(), true));
    kestrum::common::IniFile ini(path(QStringLiteral("Interviews.Wpj")));
    QVERIFY(ini.load());
    QCOMPARE(ini.readString(QStringLiteral("OPTIONS"), QStringLiteral("SUP Modified")),
             QStringLiteral("T"));
    QCOMPARE(ini.readString(QStringLiteral("OPTIONS"), QStringLiteral("Public File Name")),
             QStringLiteral("C:\\Reports\\Remote work.kst"));
}

void TRMDataTest::appendFileDecidesTheKindByExtension_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<int>("pageType");
    QTest::newRow("grid2 is a table") << "table.grid2" << 1;
    QTest::newRow("csv is a table") << "table.csv" << 1;
    QTest::newRow("TAB upper case") << "table.TAB" << 1;
    QTest::newRow("jpeg is an image") << "photo.jpeg" << 3;
    QTest::newRow("png") << "photo.png" << 3;
    QTest::newRow("tee is a chart") << "chart.tee" << 2;
    QTest::newRow("htm is text") << "page.htm" << 0;
    QTest::newRow("txt is text") << "notes.txt" << 0;
    QTest::newRow("no extension is text") << "README" << 0;
    QTest::newRow("substring .G matches .GRID2") << "odd.g" << 1;
    QTest::newRow("substring .JP matches .JPG") << "odd.jp" << 3;
}

void TRMDataTest::appendFileDecidesTheKindByExtension()
{
    QFETCH(QString, fileName);
    QFETCH(int, pageType);
    QCOMPARE(m_store->data.pageTypeForFile(fileName), pageType);

    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(path(QStringLiteral("append.kst"))));
    const QString source = path(fileName);
    writeFile(source, "file bytes");
    OutlineNode* node = data.AppendFile(source, data.outline().root(), true).value();
    QCOMPARE(node->imageIndex(), pageType);
    QCOMPARE(*data.table()->readType(node->data()).value(), pageType);
    QCOMPARE(*data.table()->readInfo(node->data()).value(), QFileInfo(fileName).completeBaseName());
}

void TRMDataTest::appendFilePlacesAndSelectsTheNode()
{
    const QString file = path(QStringLiteral("place.kst"));
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    const QString source = path(QStringLiteral("Field notes.v2.txt"));
    writeFile(source, "bytes of the notes");

    OutlineNode* first = data.outline().nodeAt(1);
    OutlineNode* sibling = data.AppendFile(source, first, false).value();
    QCOMPARE(data.outline().indexOf(sibling), 2);
    QCOMPARE(sibling->caption(), QStringLiteral("Field notes.v2"));
    QCOMPARE(data.outline().selected(), sibling);
    QCOMPARE(data.currentNodeIndex(), 2);
    OutlineNode* child = data.AppendFile(source, first, true).value();
    QCOMPARE(child->parent(), first);
    QCOMPARE(data.outline().indexOf(child), 2);
    QCOMPARE(*data.table()->readContent(child->data()).value(), QByteArray("bytes of the notes"));

    data.CloseFile();
    ProjectReader reader;
    KVERIFY_OK(reader.open(file));
    QCOMPARE(reader.outline()->childAt(0)->childAt(0)->caption(), QStringLiteral("Field notes.v2"));
    QCOMPARE(reader.outline()->childCount(), 3);
}

void TRMDataTest::deleteRecord()
{
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(path(QStringLiteral("delete.kst"))));
    KVERIFY_OK(data.DeleteRecord(12345));
    QCOMPARE(data.table()->rowCount().value(), 3);
    KVERIFY_OK(data.DeleteRecord(1));
    QCOMPARE(data.table()->rowCount().value(), 2);
    QVERIFY(!data.table()->exists(1).value());
}

void TRMDataTest::batchAppendKeepsOrderAndContent()
{
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(path(QStringLiteral("batch.kst"))));
    std::vector<NewPage> pages;
    for (int i = 0; i < 700; ++i) { // crosses the internal batches
        pages.push_back({kFixedNow + i, QStringLiteral("a\tb\tPage %1").arg(i), i % 14,
                         QByteArray::number(i).repeated(i % 50), QStringLiteral("c%1").arg(i)});
    }
    const std::vector<qint32> ids = data.appendRecords(pages).value();
    QCOMPARE(ids.size(), pages.size());
    QCOMPARE(ids.front(), 3);
    QVERIFY(std::is_sorted(ids.begin(), ids.end()));
    for (std::size_t i = 0; i < pages.size(); i += 97) {
        QCOMPARE(*data.table()->readInfo(ids[i]).value(), pages[i].info);
        QCOMPARE(*data.table()->readContent(ids[i]).value(), pages[i].content);
        QCOMPARE(*data.table()->readComment(ids[i]).value(), pages[i].comment);
        QCOMPARE(*data.table()->readType(ids[i]).value(), pages[i].type);
        QCOMPARE(*data.table()->readDate(ids[i]).value(), pages[i].date);
    }
    QVERIFY(data.appendRecords({}).value().empty());
}

void TRMDataTest::hostWritesWhileTheStoreHoldsTheFile()
{
    const QString file = path(QStringLiteral("shared.kst"));
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    // The store has read from the file.
    QVERIFY(data.GetWP(1, m_store->document(EditorKind::Text)).value());
    HostConnection host(file);
    const qint32 id =
        host.table->insert(kFixedNow, QStringLiteral("a\tb\tHanded over"), 2, "chart", {}).value();
    QVERIFY(data.GetChart(id, m_store->document(EditorKind::Chart)).value());
    QCOMPARE(m_store->document(EditorKind::Chart).bytes(), QByteArray("chart"));
    QCOMPARE(m_store->document(EditorKind::Chart).pageInfo(), QStringLiteral("a\tb\tHanded over"));
    // And the store writes while the host's connection stays open.
    m_store->document(EditorKind::Text).setBytes("edited");
    QVERIFY(data.SaveWP(1, m_store->document(EditorKind::Text)).value());
    QCOMPARE(*host.table->readContent(1).value(), QByteArray("edited"));
}

void TRMDataTest::concurrentWriterIsWaitedFor()
{
    const QString file = path(QStringLiteral("busy.kst"));
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    std::atomic<bool> locked{false};
    std::thread host([&] {
        sqlite3* db = nullptr;
        sqlite3_open(QFile::encodeName(file).constData(), &db);
        sqlite3_exec(db, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
        sqlite3_exec(db, "UPDATE OUTPUT SET PageType = 5 WHERE PageId = 2", nullptr, nullptr,
                     nullptr);
        locked = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
        sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
        sqlite3_close(db);
    });
    while (!locked) {
        std::this_thread::yield();
    }
    m_store->document(EditorKind::Text).setBytes("after the host");
    const kestrum::Result<bool> saved =
        data.SaveWP(1, m_store->document(EditorKind::Text)); // waits for the host's commit
    host.join();
    KVERIFY_OK(saved);
    QVERIFY(saved.value());
    QCOMPARE(*data.table()->readContent(1).value(), QByteArray("after the host"));
    QCOMPARE(*data.table()->readType(2).value(), 5);
}

void TRMDataTest::lockedFileIsReported()
{
    const QString file = path(QStringLiteral("locked.kst"));
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    data.CloseFile();
    SqliteDatabase::setBusyTimeout(150);
    HostConnection host(file);
    KVERIFY_OK(host.db.exec("BEGIN EXCLUSIVE"));
    KVERIFY_OK(host.db.exec("UPDATE OUTPUT SET PageType = 0 WHERE PageId = 1"));
    const kestrum::Status opened = data.DBOpen(file);
    QVERIFY2(!opened.ok(), "opening a locked file succeeded");
    QVERIFY2(opened.error().contains(QLatin1String("locked")), qPrintable(opened.error()));
    QVERIFY(opened.error().contains(file));
    QVERIFY(!data.isOpen());
    KVERIFY_OK(host.db.exec("COMMIT"));
    KVERIFY_OK(data.DBOpen(file));
    QVERIFY(data.isOpen());
}

void TRMDataTest::damagedFilesAreRefused_data()
{
    QTest::addColumn<QString>("damage");
    QTest::addColumn<QString>("message");
    QTest::newRow("random bytes") << "random"
                                  << "not a Kestrum project";
    QTest::newRow("truncated database") << "truncate"
                                        << "";
    QTest::newRow("corrupt database page") << "scribble"
                                           << "";
    QTest::newRow("no page table") << "notable"
                                   << "is not a Kestrum project";
    QTest::newRow("missing column") << "nocolumn"
                                    << "is not a Kestrum project";
    QTest::newRow("written by a newer version") << "newer"
                                                << "newer version";
    QTest::newRow("outline stream damaged") << "outline"
                                            << "outline is damaged";
    QTest::newRow("outline column not zlib") << "outlinezlib"
                                             << "damaged";
}

void TRMDataTest::damagedFilesAreRefused()
{
    QFETCH(QString, damage);
    QFETCH(QString, message);
    const QString file = path(QStringLiteral("damaged.kst"));
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    for (int i = 0; i < 200; ++i) {
        KVERIFY_OK(data.AddRecord(0, QStringLiteral("page %1").arg(i), {}));
    }
    data.CloseFile();

    if (damage == QLatin1String("random")) {
        QByteArray bytes(64 * 1024, Qt::Uninitialized);
        QRandomGenerator rng(5);
        for (char& c : bytes) {
            c = char(rng.bounded(256));
        }
        writeFile(file, bytes);
    } else if (damage == QLatin1String("truncate")) {
        writeFile(file, readFile(file).left(readFile(file).size() / 2));
    } else if (damage == QLatin1String("scribble")) {
        // Overwrite the header and cell pointers of every page after the schema page.
        QByteArray bytes = readFile(file);
        for (qsizetype page = 4096; page + 4096 <= bytes.size(); page += 4096) {
            for (qsizetype i = page; i < page + 64; ++i) {
                bytes[i] = char(0xA5);
            }
        }
        writeFile(file, bytes);
    } else {
        HostConnection host(file);
        if (damage == QLatin1String("notable")) {
            KVERIFY_OK(host.db.exec("DROP TABLE OUTPUT"));
        } else if (damage == QLatin1String("nocolumn")) {
            KVERIFY_OK(host.db.exec("ALTER TABLE OUTPUT DROP COLUMN PageComment"));
        } else if (damage == QLatin1String("newer")) {
            KVERIFY_OK(host.db.exec("PRAGMA user_version = 7"));
        } else if (damage == QLatin1String("outline")) {
            KVERIFY_OK(host.table->writeContent(
                0, QByteArray("KSTO\x01\x00\x00\x00\xFF\xFF\xFF\x0F", 12)));
        } else if (damage == QLatin1String("outlinezlib")) {
            KVERIFY_OK(host.db.exec(
                "UPDATE OUTPUT SET PageContent = x'0000100012345678' WHERE PageId = 0"));
        }
    }
    const QByteArray before = readFile(file);
    const kestrum::Status opened = data.DBOpen(file);
    QVERIFY2(!opened.ok(), "a damaged file was opened");
    QVERIFY2(opened.error().contains(message), qPrintable(opened.error()));
    QVERIFY(!data.isOpen());
    QCOMPARE(readFile(file), before); // nothing written
}

void TRMDataTest::damagedPageLeavesOtherPagesReadable()
{
    const QString file = path(QStringLiteral("onebad.kst"));
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    m_store->document(EditorKind::Text).setBytes("good page");
    KVERIFY_OK(data.SaveWP(2, m_store->document(EditorKind::Text)));
    data.CloseFile();
    {
        HostConnection host(file);
        KVERIFY_OK(host.db.exec(
            "UPDATE OUTPUT SET PageContent = x'00FFFFFF789C0102', PageComment = x'00000009AB' "
            "WHERE PageId = 1"));
    }
    KVERIFY_OK(data.DBOpen(file));
    const kestrum::Result<bool> read = data.GetWP(1, m_store->document(EditorKind::Text));
    QVERIFY2(!read.ok(), "a damaged page was read");
    QVERIFY2(read.error().contains(QLatin1String("Page 1")), qPrintable(read.error()));
    QVERIFY(m_store->document(EditorKind::Text).bytes().isEmpty());
    QVERIFY(!data.GetComment(1).ok());
    QVERIFY(data.GetWP(2, m_store->document(EditorKind::Text)).value());
    QCOMPARE(m_store->document(EditorKind::Text).bytes(), QByteArray("good page"));
}

void TRMDataTest::hostWrittenValuesAreRead()
{
    // A host that writes titles and comments as plain text and leaves columns NULL.
    const QString file = path(QStringLiteral("host.kst"));
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    data.CloseFile();
    {
        HostConnection host(file);
        KVERIFY_OK(host.db.exec(
            "INSERT INTO OUTPUT (PageDate, PageInfo, PageType, PageContent, PageComment) "
            "VALUES (46000.25, 'Retrieval\tInterviews\tPlain title', 0, NULL, 'plain comment')"));
    }
    KVERIFY_OK(data.DBOpen(file));
    QCOMPARE(*data.table()->readInfo(3).value(),
             QStringLiteral("Retrieval\tInterviews\tPlain title"));
    const std::optional<QString> comment = data.GetComment(3).value();
    QVERIFY(comment.has_value());
    QCOMPARE(*comment, QStringLiteral("plain comment"));
    m_store->document(EditorKind::Text).setBytes("stale");
    QVERIFY(data.GetWP(3, m_store->document(EditorKind::Text)).value());
    QVERIFY(m_store->document(EditorKind::Text).bytes().isEmpty());
}

void TRMDataTest::readingAfterAnInterruptedWriteRollsItBack()
{
    const QString file = path(QStringLiteral("crashed.kst"));
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    data.CloseFile();
    QByteArray outline;
    {
        ProjectReader original;
        KVERIFY_OK(original.open(file));
        outline = *original.table().readContent(0).value();
    }
    // A writer that dies mid-transaction: its changes spill into the file, its journal stays.
    const QString copy = path(QStringLiteral("copy.kst"));
    {
        sqlite3* db = nullptr;
        QCOMPARE(sqlite3_open(QFile::encodeName(file).constData(), &db), SQLITE_OK);
        QCOMPARE(sqlite3_exec(db,
                              "PRAGMA cache_size=1; BEGIN; UPDATE OUTPUT SET PageContent = "
                              "zeroblob(300000), PageInfo = 'torn'",
                              nullptr, nullptr, nullptr),
                 SQLITE_OK);
        QVERIFY(QFileInfo(file + QStringLiteral("-journal")).size() > 0);
        QVERIFY(QFile::copy(file, copy));
        QVERIFY(QFile::copy(file + QStringLiteral("-journal"), copy + QStringLiteral("-journal")));
        sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
        sqlite3_close(db);
    }
    // Read-only readers (tree, pages, cat) see the file as it was before the torn write.
    ProjectReader reader;
    KVERIFY_OK(reader.open(copy));
    QCOMPARE(*reader.table().readContent(0).value(), outline);
    QCOMPARE(reader.table().readInfo(1).value().value_or(QString()),
             QStringLiteral("First document"));
    QVERIFY(!QFileInfo::exists(copy + QStringLiteral("-journal")) ||
            QFileInfo(copy + QStringLiteral("-journal")).size() == 0);
}

QTEST_GUILESS_MAIN(TRMDataTest)
#include "TRMDataTest.moc"

void TRMDataTest::valueBeyondTheEngineLimitIsRefusedNotStoredEmpty()
{
    // A value the engine will not take (beyond its length limit) fails the write: the page keeps
    // what it held instead of being emptied, and the next write goes through.
    const QString file = path(QStringLiteral("limit.kst"));
    KVERIFY_OK(m_store->data.DBCreate(file));
    m_store->data.CloseFile();
    HostConnection host(file);
    KVERIFY_OK(host.table->writeContent(1, "what the page held"));
    sqlite3_limit(host.db.handle(), SQLITE_LIMIT_LENGTH, 4096);
    QByteArray noise(64 * 1024, Qt::Uninitialized); // random bytes do not compress below it
    QRandomGenerator generator(7);
    generator.fillRange(reinterpret_cast<quint32*>(noise.data()), noise.size() / 4);

    const kestrum::Result<bool> written = host.table->writeContent(1, noise);
    QVERIFY(!written.ok());
    QVERIFY2(written.error().contains(file), qPrintable(written.error()));
    QCOMPARE(*host.table->readContent(1).value(), QByteArray("what the page held"));
    QVERIFY(host.table->writeContent(1, "after").value());
    QCOMPARE(*host.table->readContent(1).value(), QByteArray("after"));
}
