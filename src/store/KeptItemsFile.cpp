#include "KeptItemsFile.h"

#include "store/OutlineStream.h"
#include "store/PageType.h"

#include <QFile>

namespace kestrum::store {

namespace {

// A new kept-items file is a project of its own with only its project node, so that it opens
// like any project.
Status makeProject(SqliteDatabase& db, PageTable& table, double now)
{
    SqliteTransaction tx(db);
    if (Status begun = tx.begin(); !begun) {
        return begun;
    }
    if (Status created = table.create(); !created) {
        return created;
    }
    OutlineNodeData rootData;
    rootData.caption = QStringLiteral("Project name");
    rootData.imageIndex = PageType::OutlineRoot;
    rootData.data = 0;
    const OutlineNode root(rootData);
    const Result<qint32> inserted = table.insert(
        now, QStringLiteral("Outline"), PageType::OutlineRoot, OutlineStream::write(&root), {}, 0);
    if (!inserted) {
        return fail(inserted.error());
    }
    return tx.commit();
}

} // namespace

Status KeptItemsFile::open(const QString& path, double now)
{
    const bool exists = QFile::exists(path);
    Status opened = m_db.open(path, exists ? SqliteDatabase::OpenMode::ReadWrite
                                           : SqliteDatabase::OpenMode::ReadWriteCreate);
    if (opened) {
        m_table = std::make_unique<PageTable>(m_db);
        opened = exists ? m_table->validate(false) : makeProject(m_db, *m_table, now);
    }
    if (opened) {
        m_transaction = std::make_unique<SqliteTransaction>(m_db);
        opened = m_transaction->begin();
    }
    if (!opened) {
        m_transaction.reset();
        m_table.reset();
        m_db.close();
        if (!exists) {
            QFile::remove(path);
        }
    }
    return opened;
}

KeptItemsFile::~KeptItemsFile()
{
    m_transaction.reset(); // rolls back unless committed
    m_table.reset();
    m_db.close();
}

Status KeptItemsFile::add(const RawPageRow& row)
{
    if (!m_table) {
        return fail(QStringLiteral("No project file is open"));
    }
    const Result<bool> taken = m_table->exists(qint32(row.pageId));
    if (!taken) {
        return fail(taken.error());
    }
    return m_table->insertRaw(row, *taken);
}

Status KeptItemsFile::commit()
{
    if (!m_transaction) {
        return {};
    }
    Status committed = m_transaction->commit();
    m_transaction.reset();
    return committed;
}

} // namespace kestrum::store
