#include "KeptItemsFile.h"

#include "store/OutlineStream.h"
#include "store/PageType.h"

#include <QFile>

namespace kestrum::store {

KeptItemsFile::KeptItemsFile(const QString& path, double now)
{
    const bool exists = QFile::exists(path);
    m_db.open(path, exists ? SqliteDatabase::OpenMode::ReadWrite
                           : SqliteDatabase::OpenMode::ReadWriteCreate);
    m_table = std::make_unique<PageTable>(m_db);
    try {
        if (!exists) {
            // A new kept-items file is a project of its own with only its project node, so
            // that it opens like any project.
            SqliteTransaction tx(m_db);
            m_table->create();
            OutlineNodeData rootData;
            rootData.caption = QStringLiteral("Project name");
            rootData.imageIndex = PageType::OutlineRoot;
            rootData.data = 0;
            const OutlineNode root(rootData);
            m_table->insert(now, QStringLiteral("Outline"), PageType::OutlineRoot,
                            OutlineStream::write(&root), {}, 0);
            tx.commit();
        } else {
            m_table->validate(false);
        }
    } catch (...) {
        m_table.reset();
        m_db.close();
        if (!exists) {
            QFile::remove(path);
        }
        throw;
    }
    m_transaction = std::make_unique<SqliteTransaction>(m_db);
}

KeptItemsFile::~KeptItemsFile()
{
    m_transaction.reset(); // rolls back unless committed
    m_table.reset();
    m_db.close();
}

void KeptItemsFile::add(const RawPageRow& row)
{
    m_table->insertRaw(row, m_table->exists(qint32(row.pageId)));
}

void KeptItemsFile::commit()
{
    if (m_transaction) {
        m_transaction->commit();
        m_transaction.reset();
    }
}

} // namespace kestrum::store
