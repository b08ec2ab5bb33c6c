#pragma once

#include "common/Result.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace kestrum::store {

class SqliteDatabase;

// The stored bytes of one page row, columns still encoded: a copy of a row moves these.
struct RawPageRow
{
    qint64 pageId = 0;
    std::optional<double> date;
    QByteArray info;
    bool infoIsText = false;
    std::optional<qint64> type;
    QByteArray content;
    bool contentIsText = false;
    QByteArray comment;
    bool commentIsText = false;
    std::optional<qint64> randomKey;
};

// A record to append.
struct NewPage
{
    double date = 0;
    QString info;
    qint32 type = 0;
    QByteArray content;
    QString comment;
};

// A page as the store hands it out: its record, decompressed.
struct StoredPage
{
    qint32 pageId = 0;
    qint32 type = 0;
    QString info;
    QByteArray content;
};

// One line of a table listing.
struct PageSummary
{
    // The id as stored; ids outside 32 bits (which a host may write) are reported, not cut.
    qint64 storedId = 0;
    bool idOutOfRange = false;
    qint32 pageId = 0; // -1 when the id is out of range
    qint32 type = 0;
    double date = 0;
    QString info;
    bool infoDamaged = false;
};

// The table "OUTPUT" of a project file: the SQL of creating, checking, reading and writing page
// records. Text columns are UTF-8 compressed with ColumnCodec; reading is lenient about what a
// host program wrote (NULL, uncompressed text) and strict about damage. Every operation reports
// a failure of the file (locked, damaged, full) as an Error naming it.
class PageTable
{
public:
    explicit PageTable(SqliteDatabase& db) : m_db(db) {}

    static constexpr const char* kTableName = "OUTPUT";
    // Marks files written by this program (PRAGMA application_id, "KSTR"); not required on open.
    static constexpr qint32 kApplicationId = 0x4B535452;
    static constexpr int kSchemaVersion = 1;

    // Drops any table "OUTPUT" and creates it anew with the seven columns.
    Status create();
    // Fails unless the file is a sound database with a usable table "OUTPUT".
    Status validate(bool integrityCheck);

    // Appends a record; with `pageId` the id is written explicitly. Returns the id.
    Result<qint32> insert(double date, const QString& info, qint32 type, const QByteArray& content,
                          const QString& comment, std::optional<qint32> pageId = std::nullopt);
    // Inserts a row as stored; with `assignNewId` the table gives it a fresh page id.
    Status insertRaw(const RawPageRow& row, bool assignNewId = false);
    // Appends many records in one transaction, compressing them on every core while the
    // previous batch is written. Returns the ids in order.
    Result<std::vector<qint32>> insertMany(const std::vector<NewPage>& pages);

    Result<bool> exists(qint32 pageId) const;
    // The first record in the table's natural order; nullopt when the table is empty.
    Result<std::optional<qint32>> firstId() const;
    Result<std::vector<qint32>> ids() const;
    Result<std::vector<PageSummary>> summaries() const;
    Result<qint64> rowCount() const;

    // Readers fail naming the page when a column is damaged; a missing record gives nullopt.
    Result<std::optional<QByteArray>> readContent(qint32 pageId) const;
    Result<std::optional<QString>> readInfo(qint32 pageId) const;
    Result<std::optional<QString>> readComment(qint32 pageId) const;
    Result<std::optional<qint32>> readType(qint32 pageId) const;
    Result<std::optional<double>> readDate(qint32 pageId) const;
    Result<std::optional<RawPageRow>> readRaw(qint32 pageId) const;

    // Writers give false when the record does not exist.
    Result<bool> writeContent(qint32 pageId, const QByteArray& content);
    Result<bool> writeComment(qint32 pageId, const QString& comment);
    Result<bool> remove(qint32 pageId);

private:
    Result<QString> decodeText(qint32 pageId, const char* column, const QByteArray& stored,
                               bool isText) const;
    Result<QByteArray> decodeBytes(qint32 pageId, const char* column, const QByteArray& stored,
                                   bool isText) const;
    // Runs a cached statement that changes one record (`value`, when given, is bound before
    // the page id); false when no record was changed.
    Result<bool> changeOne(const char* sql, const std::optional<QByteArray>& value, qint32 pageId);

    SqliteDatabase& m_db;
};

} // namespace kestrum::store
