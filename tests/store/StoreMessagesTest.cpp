// What the store tells a user when a file is not a project or a change cannot be saved: the
// file's name and the cause in plain words, never the engine's table names or error texts.

#include "StoreFixture.h"

#include "store/ProjectReader.h"

#include <QRandomGenerator>
#include <QtTest>

using namespace kestrum::store;
using namespace kestrum::test;

class StoreMessagesTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void notAProjectSaysSo_data();
    void notAProjectSaysSo();
    void readOnlyProjectSaysWhyItCannotBeSaved();
    void readOnlyFileSaysWhyItCannotBeSaved();
    void fullDiskSaysWhyItCannotBeSaved();

private:
    QString path(const QString& name) const { return m_dir->filePath(name); }
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<StoreWithDocuments> m_store;
};

void StoreMessagesTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<StoreWithDocuments>();
}

void StoreMessagesTest::cleanup()
{
    m_store.reset();
    m_dir.reset();
}

void StoreMessagesTest::notAProjectSaysSo_data()
{
    QTest::addColumn<QString>("content");
    QTest::newRow("a text file") << "text";
    QTest::newRow("random bytes") << "random";
    QTest::newRow("an empty file") << "empty";
    QTest::newRow("another program's database") << "othertables";
    QTest::newRow("a page table without its columns") << "fewcolumns";
}

void StoreMessagesTest::notAProjectSaysSo()
{
    QFETCH(QString, content);
    const QString file = path(QStringLiteral("notes.kst"));
    if (content == QLatin1String("text")) {
        writeFile(file, "Meeting notes\nThe figures are in the second report.\n");
    } else if (content == QLatin1String("random")) {
        QByteArray bytes(8192, Qt::Uninitialized);
        QRandomGenerator rng(11);
        for (char& c : bytes) {
            c = char(rng.bounded(256));
        }
        writeFile(file, bytes);
    } else if (content == QLatin1String("empty")) {
        writeFile(file, {});
    } else {
        SqliteDatabase db;
        KVERIFY_OK(db.open(file, SqliteDatabase::OpenMode::ReadWriteCreate));
        if (content == QLatin1String("othertables")) {
            KVERIFY_OK(db.exec("CREATE TABLE customers(id INTEGER PRIMARY KEY, name TEXT)"));
            KVERIFY_OK(db.exec("CREATE TABLE orders(id INTEGER PRIMARY KEY, customer INTEGER)"));
        } else {
            KVERIFY_OK(
                db.exec("CREATE TABLE OUTPUT(PageId INTEGER PRIMARY KEY, PageType INTEGER)"));
        }
    }
    const QByteArray before = readFile(file);
    const QString expected = QStringLiteral("\"notes.kst\" is not a Kestrum project");

    KCOMPARE_FAILURE(m_store->data.DBOpen(file), expected);
    QVERIFY(!m_store->data.isOpen());
    KCOMPARE_FAILURE(m_store->data.DBOpen(file, true), expected);
    ProjectReader reader;
    KCOMPARE_FAILURE(reader.open(file), expected);
    QCOMPARE(readFile(file), before); // looking at it wrote nothing
}

void StoreMessagesTest::readOnlyProjectSaysWhyItCannotBeSaved()
{
    const QString file = path(QStringLiteral("report.kst"));
    TRMData& data = m_store->data;
    KVERIFY_OK(data.DBCreate(file));
    data.CloseFile();
    KVERIFY_OK(data.DBOpen(file, true));
    QVERIFY(data.isReadOnly());
    RawPageDocument& page = m_store->document(EditorKind::Text);
    page.setBytes("an edit");
    KCOMPARE_FAILURE(data.SaveWP(1, page),
                     QStringLiteral("\"report.kst\" cannot be saved: the file is read-only"));
    KCOMPARE_FAILURE(data.AddRecord(0, QStringLiteral("new page"), {}),
                     QStringLiteral("\"report.kst\" cannot be saved: the file is read-only"));
}

void StoreMessagesTest::readOnlyFileSaysWhyItCannotBeSaved()
{
    // The engine's own refusal, as when the file became read-only after it was opened.
    const QString file = path(QStringLiteral("report.kst"));
    KVERIFY_OK(m_store->data.DBCreate(file));
    m_store->data.CloseFile();
    SqliteDatabase db;
    KVERIFY_OK(db.open(file, SqliteDatabase::OpenMode::ReadOnly));
    PageTable table(db);
    KCOMPARE_FAILURE(table.writeContent(1, "an edit"),
                     QStringLiteral("\"report.kst\" cannot be saved: the file is read-only"));
    KCOMPARE_FAILURE(table.insert(1.0, QStringLiteral("new page"), 0, "text", {}),
                     QStringLiteral("\"report.kst\" cannot be saved: the file is read-only"));
    QCOMPARE(*table.readContent(1).value(), QByteArray()); // still readable, unchanged
}

void StoreMessagesTest::fullDiskSaysWhyItCannotBeSaved()
{
    // A file that may not grow is what a full disk looks like to the engine.
    const QString file = path(QStringLiteral("big.kst"));
    KVERIFY_OK(m_store->data.DBCreate(file));
    m_store->data.CloseFile();
    HostConnection host(file);
    qint64 pageCount = 0;
    {
        SqliteStatement pages(host.db, "PRAGMA page_count");
        QVERIFY(pages.step().value());
        pageCount = pages.columnInt(0);
    }
    const QByteArray limit = "PRAGMA max_page_count = " + QByteArray::number(pageCount);
    KVERIFY_OK(host.db.exec(limit.constData()));
    QByteArray noise(256 * 1024, Qt::Uninitialized);
    QRandomGenerator rng(3);
    for (char& c : noise) {
        c = char(rng.bounded(256)); // does not compress
    }
    KCOMPARE_FAILURE(host.table->writeContent(1, noise),
                     QStringLiteral("\"big.kst\" cannot be saved: the disk is full"));
    QCOMPARE(*host.table->readContent(1).value(), QByteArray()); // nothing half-written
}

QTEST_GUILESS_MAIN(StoreMessagesTest)
#include "StoreMessagesTest.moc"
