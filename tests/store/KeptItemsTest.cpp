// "Keep selected item": copying pages by value into the kept-items file beside the project.

#include "StoreFixture.h"

#include "store/ProjectReader.h"

#include <QSignalSpy>
#include <QtTest>

using namespace kestrum::store;
using namespace kestrum::test;

class KeptItemsTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void keepingOnePageCreatesTheFileAndCopiesEveryColumn();
    void keepingAFolderCopiesItsPagesUntilANodeWithChildren();
    void folderWhoseFirstChildHasChildrenCopiesNothing();
    void keepingTwiceGivesTheSecondCopyANewId();
    void keptItemsFileThatIsNotAProjectIsRefused();
    void lockedKeptItemsFileCopiesNothing();
    void foldersAndTheProjectNodeHaveNothingToKeep();

private:
    QString path(const QString& name) const { return m_dir->filePath(name); }
    OutlineNode* addPage(OutlineNode* parent, const QString& title, const QByteArray& content);
    OutlineNode* addFolder(OutlineNode* parent, const QString& title);
    std::vector<RawPageRow> keptRows();

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<StoreWithDocuments> m_store;
};

void KeptItemsTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<StoreWithDocuments>();
    SqliteDatabase::setBusyTimeout(10000);
    KVERIFY_OK(m_store->data.DBCreate(path(QStringLiteral("Study.kst"))));
}

void KeptItemsTest::cleanup()
{
    m_store.reset();
    m_dir.reset();
}

OutlineNode* KeptItemsTest::addPage(OutlineNode* parent, const QString& title,
                                    const QByteArray& content)
{
    TRMData& data = m_store->data;
    OutlineNodeData d;
    d.caption = title;
    d.imageIndex = 1;
    d.data = data.appendRecord(1, title, content, QStringLiteral("comment of ") + title).value();
    return data.outline().addChild(parent, d);
}

OutlineNode* KeptItemsTest::addFolder(OutlineNode* parent, const QString& title)
{
    OutlineNodeData d;
    d.caption = title;
    d.imageIndex = 11;
    d.data = -1;
    return m_store->data.outline().addChild(parent, d);
}

std::vector<RawPageRow> KeptItemsTest::keptRows()
{
    ProjectReader kept;
    KREQUIRE_OK(kept.open(m_store->data.keptItemsFileName()));
    std::vector<RawPageRow> rows;
    const std::vector<qint32> ids = kept.table().ids().value();
    for (qint32 id : ids) {
        rows.push_back(*kept.table().readRaw(id).value());
    }
    return rows;
}

void KeptItemsTest::keepingOnePageCreatesTheFileAndCopiesEveryColumn()
{
    TRMData& data = m_store->data;
    QCOMPARE(data.keptItemsFileName(), path(QStringLiteral("Study.sup")));
    OutlineNode* page = addPage(data.outline().root(), QStringLiteral("Frequencies"), "grid bytes");
    data.outline().setSelected(page);
    QCOMPARE(data.MoveToSup().value(), 1);

    const std::vector<RawPageRow> rows = keptRows();
    QCOMPARE(rows.size(), std::size_t(2)); // the new file's outline record, then the page
    QCOMPARE(rows[0].pageId, 0);
    const RawPageRow original = *data.table()->readRaw(page->data()).value();
    const RawPageRow& copy = rows[1];
    QCOMPARE(copy.pageId, original.pageId);
    QCOMPARE(copy.date, original.date);
    QCOMPARE(copy.info, original.info); // compressed bytes copied as they are
    QCOMPARE(copy.type, original.type);
    QCOMPARE(copy.content, original.content);
    QCOMPARE(copy.comment, original.comment);
    QCOMPARE(copy.randomKey, original.randomKey);
    // The kept-items file opens as a project.
    StoreWithDocuments other;
    KVERIFY_OK(other.data.DBOpen(data.keptItemsFileName()));
    QCOMPARE(other.data.outline().count(), 1);
}

void KeptItemsTest::keepingAFolderCopiesItsPagesUntilANodeWithChildren()
{
    TRMData& data = m_store->data;
    OutlineNode* folder = addFolder(data.outline().root(), QStringLiteral("Tables"));
    OutlineNode* a = addPage(folder, QStringLiteral("A"), "a");
    OutlineNode* b = addPage(folder, QStringLiteral("B"), "b");
    OutlineNode* c = addPage(folder, QStringLiteral("C"), "c");
    addPage(c, QStringLiteral("C child"), "cc"); // C has children: the walk stops at C
    addPage(folder, QStringLiteral("D"), "d");
    data.outline().setSelected(folder);
    QObject context;
    QStringList shown;
    connect(&data, &TRMData::selectionRestored, &context,
            [&] { shown << data.outline().selected()->caption(); });
    QCOMPARE(data.MoveToSup().value(), 2);
    QCOMPARE(shown, QStringList({"A", "B"}));
    const std::vector<RawPageRow> rows = keptRows();
    QCOMPARE(rows.size(), std::size_t(3));
    QCOMPARE(rows[1].pageId, a->data());
    QCOMPARE(rows[2].pageId, b->data());
}

void KeptItemsTest::folderWhoseFirstChildHasChildrenCopiesNothing()
{
    TRMData& data = m_store->data;
    OutlineNode* folder = addFolder(data.outline().root(), QStringLiteral("Outer"));
    OutlineNode* inner = addFolder(folder, QStringLiteral("Inner"));
    addPage(inner, QStringLiteral("Deep"), "deep");
    addPage(folder, QStringLiteral("After"), "after");
    data.outline().setSelected(folder);
    QCOMPARE(data.MoveToSup().value(), 0);
    QCOMPARE(keptRows().size(), std::size_t(1));
}

void KeptItemsTest::keepingTwiceGivesTheSecondCopyANewId()
{
    TRMData& data = m_store->data;
    OutlineNode* page = addPage(data.outline().root(), QStringLiteral("Twice"), "twice");
    data.outline().setSelected(page);
    QCOMPARE(data.MoveToSup().value(), 1);
    QCOMPARE(data.MoveToSup().value(), 1);
    const std::vector<RawPageRow> rows = keptRows();
    QCOMPARE(rows.size(), std::size_t(3));
    QCOMPARE(rows[1].pageId, page->data());
    QVERIFY(rows[2].pageId != page->data());
    QCOMPARE(rows[2].content, rows[1].content);
}

void KeptItemsTest::keptItemsFileThatIsNotAProjectIsRefused()
{
    TRMData& data = m_store->data;
    writeFile(data.keptItemsFileName(), "this is a text file, not a project");
    data.outline().selectIndex(1);
    const kestrum::Result<int> kept = data.MoveToSup();
    QVERIFY2(!kept.ok(), "copied into a file that is not a project");
    QVERIFY2(kept.error().contains(QLatin1String("Study.sup")), qPrintable(kept.error()));
    QCOMPARE(readFile(data.keptItemsFileName()), QByteArray("this is a text file, not a project"));
}

void KeptItemsTest::lockedKeptItemsFileCopiesNothing()
{
    TRMData& data = m_store->data;
    OutlineNode* folder = addFolder(data.outline().root(), QStringLiteral("Tables"));
    addPage(folder, QStringLiteral("A"), "a");
    addPage(folder, QStringLiteral("B"), "b");
    data.outline().selectIndex(1);
    QCOMPARE(data.MoveToSup().value(), 1); // creates the file
    SqliteDatabase::setBusyTimeout(100);
    HostConnection host(data.keptItemsFileName());
    KVERIFY_OK(host.db.exec("BEGIN EXCLUSIVE"));
    data.outline().setSelected(folder);
    QVERIFY(!data.MoveToSup().ok());
    KVERIFY_OK(host.db.exec("COMMIT"));
    QCOMPARE(keptRows().size(), std::size_t(2)); // nothing of the failed keep
}

void KeptItemsTest::foldersAndTheProjectNodeHaveNothingToKeep()
{
    TRMData& data = m_store->data;
    OutlineNode* empty = addFolder(data.outline().root(), QStringLiteral("Empty"));
    data.outline().setSelected(empty);
    QCOMPARE(data.MoveToSup().value(), 0);
    QCOMPARE(keptRows().size(), std::size_t(1));
}

QTEST_GUILESS_MAIN(KeptItemsTest)
#include "KeptItemsTest.moc"
