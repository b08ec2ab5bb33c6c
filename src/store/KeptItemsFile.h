#pragma once

#include "store/PageTable.h"
#include "store/SqliteDatabase.h"

#include <QString>

#include <memory>

namespace kestrum::store {

// The kept-items file of a project, open for one "Keep selected item": created as an empty
// project when missing, checked like any project, and written in a single transaction that
// commit() ends (closing it without commit() keeps nothing).
class KeptItemsFile
{
public:
    KeptItemsFile() = default;
    ~KeptItemsFile();
    KeptItemsFile(const KeptItemsFile&) = delete;
    KeptItemsFile& operator=(const KeptItemsFile&) = delete;

    // Opens (or creates) the file and begins the transaction; a file created here is removed
    // again when it cannot be made a project.
    Status open(const QString& path, double now);
    // Copies a page row by value. When its page id is already taken in the kept-items file,
    // the copy gets a new id there.
    Status add(const RawPageRow& row);
    Status commit();

private:
    SqliteDatabase m_db;
    std::unique_ptr<PageTable> m_table;
    std::unique_ptr<SqliteTransaction> m_transaction;
};

} // namespace kestrum::store
