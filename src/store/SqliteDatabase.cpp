#include "SqliteDatabase.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

namespace kestrum::store {

// ---- SqliteStatement -------------------------------------------------------------------------

namespace {
const QString kNoProject = QStringLiteral("No project file is open");
} // namespace

SqliteStatement::SqliteStatement(SqliteDatabase& db, const char* sql, bool persistent) : m_db(db)
{
    if (!db.isOpen()) {
        m_failure = kNoProject;
        return;
    }
    const unsigned flags = persistent ? SQLITE_PREPARE_PERSISTENT : 0;
    if (sqlite3_prepare_v3(db.handle(), sql, -1, flags, &m_stmt, nullptr) != SQLITE_OK) {
        m_failure = db.failureMessage(QStringLiteral("Cannot read"));
        sqlite3_finalize(m_stmt);
        m_stmt = nullptr;
    }
}

SqliteStatement::~SqliteStatement()
{
    sqlite3_finalize(m_stmt);
}

void SqliteStatement::noteBind(int rc)
{
    // The first failure is kept: the statement then refuses to run instead of storing NULL
    // in place of the value (a blob beyond the engine's limit, say).
    if (rc != SQLITE_OK && m_failure.isEmpty()) {
        m_failure = m_db.failureMessage(QStringLiteral("Cannot write"));
    }
}

void SqliteStatement::bindInt(int index, qint64 value)
{
    if (m_stmt) {
        noteBind(sqlite3_bind_int64(m_stmt, index, value));
    }
}

void SqliteStatement::bindDouble(int index, double value)
{
    if (m_stmt) {
        noteBind(sqlite3_bind_double(m_stmt, index, value));
    }
}

void SqliteStatement::bindBlob(int index, const QByteArray& value)
{
    // A zero-length blob (not NULL) for an empty value; SQLITE_TRANSIENT copies the bytes.
    if (m_stmt) {
        noteBind(sqlite3_bind_blob64(m_stmt, index, value.isEmpty() ? "" : value.constData(),
                                     sqlite3_uint64(value.size()), SQLITE_TRANSIENT));
    }
}

void SqliteStatement::bindText(int index, const QString& value)
{
    if (m_stmt) {
        const QByteArray utf8 = value.toUtf8();
        noteBind(sqlite3_bind_text64(m_stmt, index, utf8.constData(), sqlite3_uint64(utf8.size()),
                                     SQLITE_TRANSIENT, SQLITE_UTF8));
    }
}

void SqliteStatement::bindNull(int index)
{
    if (m_stmt) {
        noteBind(sqlite3_bind_null(m_stmt, index));
    }
}

Result<bool> SqliteStatement::step()
{
    if (!m_failure.isEmpty()) {
        return fail(m_failure);
    }
    const int rc = sqlite3_step(m_stmt);
    if (rc == SQLITE_ROW) {
        return true;
    }
    if (rc == SQLITE_DONE) {
        return false;
    }
    const Error error = m_db.failure(QStringLiteral("Cannot access"));
    sqlite3_reset(m_stmt);
    return error;
}

Status SqliteStatement::run()
{
    for (;;) {
        const Result<bool> row = step();
        if (!row) {
            return fail(row.error());
        }
        if (!*row) {
            return {};
        }
    }
}

void SqliteStatement::reset()
{
    if (m_stmt) {
        sqlite3_reset(m_stmt);
        sqlite3_clear_bindings(m_stmt);
        m_failure.clear(); // a bind failure belongs to the use that is over
    }
}

SqliteStatement::Type SqliteStatement::columnType(int column) const
{
    switch (sqlite3_column_type(m_stmt, column)) {
    case SQLITE_INTEGER:
        return Type::Integer;
    case SQLITE_FLOAT:
        return Type::Float;
    case SQLITE_TEXT:
        return Type::Text;
    case SQLITE_BLOB:
        return Type::Blob;
    default:
        return Type::Null;
    }
}

qint64 SqliteStatement::columnInt(int column) const
{
    return sqlite3_column_int64(m_stmt, column);
}

double SqliteStatement::columnDouble(int column) const
{
    return sqlite3_column_double(m_stmt, column);
}

QByteArray SqliteStatement::columnBlob(int column) const
{
    const void* data = sqlite3_column_blob(m_stmt, column);
    const int size = sqlite3_column_bytes(m_stmt, column);
    return size > 0 ? QByteArray(static_cast<const char*>(data), size) : QByteArray();
}

QString SqliteStatement::columnText(int column) const
{
    const auto* data = sqlite3_column_text(m_stmt, column);
    const int size = sqlite3_column_bytes(m_stmt, column);
    return size > 0 ? QString::fromUtf8(reinterpret_cast<const char*>(data), size) : QString();
}

int SqliteStatement::columnCount() const
{
    return sqlite3_column_count(m_stmt);
}

namespace {
int g_busyTimeoutMs = 10000;
} // namespace

void SqliteDatabase::setBusyTimeout(int milliseconds)
{
    g_busyTimeoutMs = milliseconds;
}

int SqliteDatabase::busyTimeout()
{
    return g_busyTimeoutMs;
}

// ---- SqliteDatabase --------------------------------------------------------------------------

SqliteDatabase::SqliteDatabase() = default;

SqliteDatabase::~SqliteDatabase()
{
    close();
}

Status SqliteDatabase::rollBackInterruptedWrite(const QString& path)
{
    // A write cut short (a crash, a killed process) leaves a journal beside the file that only a
    // connection allowed to write can roll back; reading through a read-only one would fail.
    const QFileInfo journal(path + QStringLiteral("-journal"));
    if (!journal.exists() || journal.size() == 0) {
        return {};
    }
    if (!QFileInfo(path).isWritable() || !QFileInfo(journal.absolutePath()).isWritable()) {
        return fail(QStringLiteral("\"%1\" was not closed properly and cannot be repaired "
                                   "here (the file or its folder is read-only): open it "
                                   "once where it can be written")
                        .arg(path));
    }
    SqliteDatabase repair;
    if (Status opened = repair.open(path, OpenMode::ReadWrite); !opened) {
        return opened;
    }
    return repair.exec("SELECT count(*) FROM sqlite_schema"); // the first read rolls it back
}

Status SqliteDatabase::open(const QString& path, OpenMode mode)
{
    close();
    int flags = SQLITE_OPEN_FULLMUTEX;
    switch (mode) {
    case OpenMode::ReadWrite:
        flags |= SQLITE_OPEN_READWRITE;
        break;
    case OpenMode::ReadWriteCreate:
        flags |= SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
        break;
    case OpenMode::ReadOnly:
        flags |= SQLITE_OPEN_READONLY;
        break;
    }
    if (mode != OpenMode::ReadWriteCreate && !QFile::exists(path)) {
        return fail(QStringLiteral("Cannot open \"%1\": the file does not exist").arg(path));
    }
    if (mode == OpenMode::ReadOnly) {
        if (Status repaired = rollBackInterruptedWrite(path); !repaired) {
            return repaired;
        }
    }
    sqlite3* db = nullptr;
    const int rc = sqlite3_open_v2(QFile::encodeName(path).constData(), &db, flags, nullptr);
    if (rc != SQLITE_OK) {
        const QString why =
            db ? QString::fromUtf8(sqlite3_errmsg(db)) : QStringLiteral("out of memory");
        sqlite3_close_v2(db);
        return fail(QStringLiteral("Cannot open \"%1\": %2").arg(path, why));
    }
    m_db = db;
    m_path = path;
    // Nothing stored in a file is trusted: no triggers, no views, no schema functions, and no
    // writes that could corrupt the file through the schema.
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0, nullptr);
    sqlite3_busy_timeout(m_db, g_busyTimeoutMs);
    sqlite3_extended_result_codes(m_db, 1);
    return {};
}

void SqliteDatabase::close()
{
    m_cache.clear();
    if (m_db) {
        if (m_transactionDepth > 0) {
            sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
        }
        sqlite3_close_v2(m_db);
        m_db = nullptr;
    }
    m_transactionDepth = 0;
    m_rollbackOnly = false;
    m_path.clear();
}

Status SqliteDatabase::exec(const char* sql)
{
    if (!m_db) {
        return fail(kNoProject);
    }
    if (sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        return failure(QStringLiteral("Cannot write"));
    }
    return {};
}

CachedStatement SqliteDatabase::cached(const char* sql)
{
    std::unique_ptr<SqliteStatement>& st = m_cache[sql];
    if (!st || !st->isPrepared()) {
        st = std::make_unique<SqliteStatement>(*this, sql, true);
    }
    return CachedStatement(*st);
}

qint64 SqliteDatabase::lastInsertRowId() const
{
    return m_db ? sqlite3_last_insert_rowid(m_db) : 0;
}

int SqliteDatabase::changes() const
{
    return m_db ? sqlite3_changes(m_db) : 0;
}

QString SqliteDatabase::lastError() const
{
    return m_db ? QString::fromUtf8(sqlite3_errmsg(m_db)) : QString();
}

QString SqliteDatabase::failureMessage(const QString& what) const
{
    const QString engineText = lastError();
    const QString name = QFileInfo(m_path).fileName();
    switch (m_db ? sqlite3_errcode(m_db) & 0xFF : SQLITE_OK) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return QStringLiteral("%1 \"%2\": the file is locked by another program (%3)")
            .arg(what, m_path, engineText);
    case SQLITE_NOTADB:
        return QStringLiteral("\"%1\" is not a Kestrum project").arg(name);
    case SQLITE_CORRUPT:
        return QStringLiteral("%1 \"%2\": the file is damaged (%3)").arg(what, m_path, engineText);
    case SQLITE_READONLY:
        return QStringLiteral("\"%1\" cannot be saved: the file is read-only").arg(name);
    case SQLITE_FULL:
        return QStringLiteral("\"%1\" cannot be saved: the disk is full").arg(name);
    case SQLITE_CANTOPEN:
        return QStringLiteral("\"%1\" cannot be saved: its folder cannot be written").arg(name);
    default:
        return QStringLiteral("%1 \"%2\": %3").arg(what, m_path, engineText);
    }
}

Status SqliteDatabase::beginTransaction()
{
    if (m_transactionDepth == 0) {
        // IMMEDIATE takes the write lock now (waiting for another writer up to the busy
        // timeout), so the change cannot fail half-way for lack of it.
        if (Status begun = exec("BEGIN IMMEDIATE"); !begun) {
            return begun;
        }
        m_rollbackOnly = false;
    }
    ++m_transactionDepth;
    return {};
}

Status SqliteDatabase::commitTransaction()
{
    if (m_transactionDepth == 0) {
        return {};
    }
    if (--m_transactionDepth > 0) {
        return {};
    }
    if (m_rollbackOnly) {
        sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
        m_rollbackOnly = false;
        return fail(QStringLiteral("A change to \"%1\" failed and was undone").arg(m_path));
    }
    if (sqlite3_exec(m_db, "COMMIT", nullptr, nullptr, nullptr) != SQLITE_OK) {
        const Error error = failure(QStringLiteral("Cannot write"));
        sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
        return error;
    }
    return {};
}

void SqliteDatabase::rollbackTransaction()
{
    if (m_transactionDepth == 0 || !m_db) {
        return;
    }
    if (--m_transactionDepth > 0) {
        m_rollbackOnly = true;
        return;
    }
    sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
    m_rollbackOnly = false;
}

} // namespace kestrum::store
