#pragma once

#include "store/PageTable.h"
#include "store/SqliteDatabase.h"

#include <QString>

#include <memory>

namespace kestrum::store {

// The kept-items file of a project, open for one "Keep selected item": created as an empty
// project when missing, checked like any project, and written in a single transaction.
class KeptItemsFile
{
public:
    KeptItemsFile(const QString& path, double now);
    ~KeptItemsFile();
    KeptItemsFile(const KeptItemsFile&) = delete;
    KeptItemsFile& operator=(const KeptItemsFile&) = delete;

    // Copies a page row by value. When its page id is already taken in the kept-items file,
    // the copy gets a new id there.
    void add(const RawPageRow& row);
    void commit();

private:
    SqliteDatabase m_db;
    std::unique_ptr<PageTable> m_table;
    std::unique_ptr<SqliteTransaction> m_transaction;
};

} // namespace kestrum::store
