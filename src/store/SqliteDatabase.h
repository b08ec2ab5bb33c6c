#pragma once

#include "common/Result.h"

#include <QByteArray>
#include <QString>

#include <map>
#include <memory>
#include <string>
#include <utility>

struct sqlite3;
struct sqlite3_stmt;

namespace kestrum::store {

class SqliteDatabase;

// One prepared statement. Its failures come back from step() and run() in the user's words,
// naming the database file: a statement that could not be prepared, or a value that could not
// be bound, fails there rather than writing something else.
class SqliteStatement
{
public:
    SqliteStatement(SqliteDatabase& db, const char* sql, bool persistent = false);
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    void bindInt(int index, qint64 value);
    void bindDouble(int index, double value);
    void bindBlob(int index, const QByteArray& value);
    void bindText(int index, const QString& value);
    void bindNull(int index);

    // Advances to the next row: true when a row is available, false when done.
    Result<bool> step();
    // Runs a statement that returns no rows (or whose rows are not needed).
    Status run();
    void reset();
    bool isPrepared() const { return m_stmt != nullptr; }

    enum class Type
    {
        Integer,
        Float,
        Text,
        Blob,
        Null
    };
    Type columnType(int column) const;
    qint64 columnInt(int column) const;
    double columnDouble(int column) const;
    QByteArray columnBlob(int column) const;
    QString columnText(int column) const;
    int columnCount() const;

private:
    void noteBind(int rc);

    SqliteDatabase& m_db;
    sqlite3_stmt* m_stmt = nullptr;
    // Why the statement cannot run (not prepared, a value not bound); empty when it can.
    QString m_failure;
};

// A cached statement in use: reset when the scope ends, so that no half-read statement keeps a
// read lock on the file that another program wants to write.
class CachedStatement
{
public:
    explicit CachedStatement(SqliteStatement& st) : m_st(&st) {}
    CachedStatement(CachedStatement&& other) noexcept : m_st(std::exchange(other.m_st, nullptr)) {}
    CachedStatement(const CachedStatement&) = delete;
    CachedStatement& operator=(const CachedStatement&) = delete;
    ~CachedStatement()
    {
        if (m_st) {
            m_st->reset();
        }
    }
    SqliteStatement* operator->() const { return m_st; }
    SqliteStatement& operator*() const { return *m_st; }

private:
    SqliteStatement* m_st;
};

// A connection to one database file, configured for files that come from anyone: defensive
// mode, untrusted schema, no triggers or views, and a busy timeout so that another program
// writing the same file is waited for rather than reported.
class SqliteDatabase
{
public:
    enum class OpenMode
    {
        ReadWrite,
        ReadWriteCreate,
        ReadOnly
    };

    SqliteDatabase();
    ~SqliteDatabase();
    SqliteDatabase(const SqliteDatabase&) = delete;
    SqliteDatabase& operator=(const SqliteDatabase&) = delete;

    // Opens the file; a read-only open first rolls back a write that was cut short.
    Status open(const QString& path, OpenMode mode);
    static Status rollBackInterruptedWrite(const QString& path);
    void close();
    bool isOpen() const { return m_db != nullptr; }
    const QString& path() const { return m_path; }
    sqlite3* handle() const { return m_db; }

    Status exec(const char* sql);
    // A statement prepared once per connection, reset after each use (prepared again when the
    // last preparation failed, as it does while another program holds the file locked).
    CachedStatement cached(const char* sql);

    qint64 lastInsertRowId() const;
    int changes() const;
    QString lastError() const;
    // The last failure in the user's words: its cause where the engine names one the user can
    // act on (locked, read-only, disk full, not a project), else `what` and the engine's text.
    QString failureMessage(const QString& what) const;
    // The last failure as an Error, for `return db.failure(...)`.
    Error failure(const QString& what) const { return fail(failureMessage(what)); }

    // Transaction nesting: only the outermost level begins and commits. A nested level that
    // rolls back makes the outermost commit fail and undo everything.
    Status beginTransaction();
    Status commitTransaction();
    void rollbackTransaction();
    bool inTransaction() const { return m_transactionDepth > 0; }

    // How long a connection waits for another program's lock before it reports the file
    // locked (10 s; tests shorten it).
    static void setBusyTimeout(int milliseconds);
    static int busyTimeout();

private:
    sqlite3* m_db = nullptr;
    QString m_path;
    std::map<std::string, std::unique_ptr<SqliteStatement>> m_cache;
    int m_transactionDepth = 0;
    bool m_rollbackOnly = false;
};

// Scope guard: begin() starts the transaction, commit() ends it; leaving the scope after a
// successful begin() without commit() (a failure on the way) rolls it back.
class SqliteTransaction
{
public:
    explicit SqliteTransaction(SqliteDatabase& db) : m_db(db) {}
    ~SqliteTransaction()
    {
        if (m_open) {
            m_db.rollbackTransaction();
        }
    }
    SqliteTransaction(const SqliteTransaction&) = delete;
    SqliteTransaction& operator=(const SqliteTransaction&) = delete;
    Status begin()
    {
        Status begun = m_db.beginTransaction();
        m_open = begun.ok();
        return begun;
    }
    Status commit()
    {
        if (!m_open) {
            return {};
        }
        m_open = false;
        return m_db.commitTransaction();
    }

private:
    SqliteDatabase& m_db;
    bool m_open = false;
};

} // namespace kestrum::store
