#include "PageTable.h"

#include "store/ColumnCodec.h"
#include "store/SqliteDatabase.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <array>
#include <future>
#include <thread>

namespace kestrum::store {

namespace {

constexpr std::array<const char*, 7> kColumns{
    "PageId", "PageDate", "PageInfo", "PageType", "PageContent", "PageComment", "PageRandomKey"};

using Type = SqliteStatement::Type;

// A text-or-blob column as it is stored: (bytes, whether SQLite holds it as text).
std::pair<QByteArray, bool> storedColumn(const SqliteStatement& st, int column)
{
    const Type type = st.columnType(column);
    if (type == Type::Null) {
        return {{}, false};
    }
    if (type == Type::Blob) {
        return {st.columnBlob(column), false};
    }
    return {st.columnText(column).toUtf8(), true};
}

// What a file without the page table (or with a table of another program) is to the user.
QString notAProject(const QString& path)
{
    return QStringLiteral("\"%1\" is not a Kestrum project").arg(QFileInfo(path).fileName());
}

} // namespace

Status PageTable::create()
{
    for (const char* sql : {"DROP TABLE IF EXISTS \"OUTPUT\"",
                            "CREATE TABLE \"OUTPUT\" ("
                            "PageId INTEGER PRIMARY KEY AUTOINCREMENT, "
                            "PageDate REAL, "
                            "PageInfo BLOB, "
                            "PageType INTEGER, "
                            "PageContent BLOB, "
                            "PageComment BLOB, "
                            "PageRandomKey INTEGER)",
                            "PRAGMA application_id = 1263752274", // kApplicationId
                            "PRAGMA user_version = 1"}) {         // kSchemaVersion
        if (Status done = m_db.exec(sql); !done) {
            return done;
        }
    }
    return {};
}

Status PageTable::validate(bool integrityCheck)
{
    const QString& path = m_db.path();
    {
        SqliteStatement st(m_db,
                           "SELECT type FROM sqlite_schema WHERE name = 'OUTPUT' COLLATE NOCASE");
        const Result<bool> row = st.step();
        if (!row.ok()) {
            return fail(row.error());
        }
        if (!*row || st.columnText(0) != QLatin1String("table")) {
            return fail(notAProject(path));
        }
    }
    {
        SqliteStatement st(m_db, "PRAGMA user_version");
        const Result<bool> row = st.step();
        if (!row.ok()) {
            return fail(row.error());
        }
        if (*row && st.columnInt(0) > kSchemaVersion) {
            return fail(QStringLiteral("\"%1\" was written by a newer version of Kestrum "
                                       "(schema %2)")
                            .arg(path)
                            .arg(st.columnInt(0)));
        }
    }
    {
        SqliteStatement st(m_db, "PRAGMA table_info(\"OUTPUT\")");
        QStringList names;
        for (;;) {
            const Result<bool> row = st.step();
            if (!row.ok()) {
                return fail(row.error());
            }
            if (!*row) {
                break;
            }
            names << st.columnText(1);
        }
        for (const char* column : kColumns) {
            if (!names.contains(QLatin1String(column), Qt::CaseInsensitive)) {
                return fail(notAProject(path));
            }
        }
    }
    if (integrityCheck) {
        SqliteStatement st(m_db, "PRAGMA quick_check(1)");
        const Result<bool> row = st.step();
        if (!row.ok()) {
            return fail(row.error());
        }
        if (*row && st.columnText(0) != QLatin1String("ok")) {
            return fail(QStringLiteral("\"%1\" is damaged: %2").arg(path, st.columnText(0)));
        }
    }
    return {};
}

Result<qint32> PageTable::insert(double date, const QString& info, qint32 type,
                                 const QByteArray& content, const QString& comment,
                                 std::optional<qint32> pageId)
{
    auto st = m_db.cached(
        "INSERT INTO \"OUTPUT\" (PageId, PageDate, PageInfo, PageType, PageContent, PageComment) "
        "VALUES (?, ?, ?, ?, ?, ?)");
    if (pageId) {
        st->bindInt(1, *pageId);
    } else {
        st->bindNull(1);
    }
    st->bindDouble(2, date);
    st->bindBlob(3, ColumnCodec::compressText(info, ColumnCodec::kInfoLevel));
    st->bindInt(4, type);
    st->bindBlob(5, ColumnCodec::compress(content, ColumnCodec::kContentLevel));
    st->bindBlob(6, ColumnCodec::compressText(comment, ColumnCodec::kCommentLevel));
    if (Status ran = st->run(); !ran) {
        return fail(ran.error());
    }
    const qint64 id = m_db.lastInsertRowId();
    if (id > std::numeric_limits<qint32>::max()) {
        return fail(QStringLiteral("\"%1\" has run out of page numbers").arg(m_db.path()));
    }
    return qint32(id);
}

Result<std::vector<qint32>> PageTable::insertMany(const std::vector<NewPage>& pages)
{
    struct Encoded
    {
        QByteArray info;
        QByteArray content;
        QByteArray comment;
    };
    auto encodeRange = [&pages](std::size_t begin, std::size_t end, std::vector<Encoded>& out) {
        for (std::size_t i = begin; i < end; ++i) {
            const NewPage& p = pages[i];
            out[i - begin] = {ColumnCodec::compressText(p.info, ColumnCodec::kInfoLevel),
                              ColumnCodec::compress(p.content, ColumnCodec::kContentLevel),
                              ColumnCodec::compressText(p.comment, ColumnCodec::kCommentLevel)};
        }
    };
    // Compression dominates; it runs on worker threads a batch ahead of the writing, which
    // stays on this thread (the connection is not shared).
    constexpr std::size_t kBatch = 256;
    const unsigned workers = std::clamp(std::thread::hardware_concurrency(), 1u, 8u);
    auto encodeBatch = [&](std::size_t begin) {
        const std::size_t end = std::min(pages.size(), begin + kBatch);
        std::vector<Encoded> out(end - begin);
        std::vector<std::thread> threads;
        const std::size_t per = (end - begin + workers - 1) / workers;
        for (std::size_t from = begin; from < end; from += per) {
            const std::size_t to = std::min(end, from + per);
            threads.emplace_back([&, from, to] {
                std::vector<Encoded> part(to - from);
                encodeRange(from, to, part);
                std::move(part.begin(), part.end(), out.begin() + std::ptrdiff_t(from - begin));
            });
        }
        for (std::thread& t : threads) {
            t.join();
        }
        return out;
    };

    std::vector<qint32> ids;
    ids.reserve(pages.size());
    SqliteTransaction tx(m_db);
    if (Status begun = tx.begin(); !begun) {
        return fail(begun.error());
    }
    std::future<std::vector<Encoded>> next;
    if (!pages.empty()) {
        next = std::async(std::launch::async, encodeBatch, std::size_t(0));
    }
    for (std::size_t begin = 0; begin < pages.size(); begin += kBatch) {
        std::vector<Encoded> batch = next.get();
        if (begin + kBatch < pages.size()) {
            next = std::async(std::launch::async, encodeBatch, begin + kBatch);
        }
        auto st = m_db.cached(
            "INSERT INTO \"OUTPUT\" (PageDate, PageInfo, PageType, PageContent, PageComment) "
            "VALUES (?, ?, ?, ?, ?)");
        for (std::size_t i = 0; i < batch.size(); ++i) {
            const NewPage& p = pages[begin + i];
            st->reset();
            st->bindDouble(1, p.date);
            st->bindBlob(2, batch[i].info);
            st->bindInt(3, p.type);
            st->bindBlob(4, batch[i].content);
            st->bindBlob(5, batch[i].comment);
            if (Status ran = st->run(); !ran) {
                if (next.valid()) {
                    next.wait(); // the batch being compressed still reads `pages`
                }
                return fail(ran.error());
            }
            ids.push_back(qint32(m_db.lastInsertRowId()));
        }
    }
    if (Status committed = tx.commit(); !committed) {
        return fail(committed.error());
    }
    return ids;
}

Status PageTable::insertRaw(const RawPageRow& row, bool assignNewId)
{
    auto st = m_db.cached(
        "INSERT INTO \"OUTPUT\" (PageId, PageDate, PageInfo, PageType, PageContent, PageComment, "
        "PageRandomKey) VALUES (?, ?, ?, ?, ?, ?, ?)");
    if (assignNewId) {
        st->bindNull(1);
    } else {
        st->bindInt(1, row.pageId);
    }
    row.date ? st->bindDouble(2, *row.date) : st->bindNull(2);
    auto bindStored = [&st](int index, const QByteArray& bytes, bool isText) {
        if (isText) {
            st->bindText(index, QString::fromUtf8(bytes));
        } else {
            st->bindBlob(index, bytes);
        }
    };
    bindStored(3, row.info, row.infoIsText);
    row.type ? st->bindInt(4, *row.type) : st->bindNull(4);
    bindStored(5, row.content, row.contentIsText);
    bindStored(6, row.comment, row.commentIsText);
    row.randomKey ? st->bindInt(7, *row.randomKey) : st->bindNull(7);
    return st->run();
}

Result<bool> PageTable::exists(qint32 pageId) const
{
    auto st = m_db.cached("SELECT 1 FROM \"OUTPUT\" WHERE PageId = ?");
    st->bindInt(1, pageId);
    return st->step();
}

Result<std::optional<qint32>> PageTable::firstId() const
{
    auto st = m_db.cached("SELECT PageId FROM \"OUTPUT\" ORDER BY rowid LIMIT 1");
    const Result<bool> row = st->step();
    if (!row.ok()) {
        return fail(row.error());
    }
    if (!*row) {
        return std::optional<qint32>();
    }
    return std::optional<qint32>(qint32(st->columnInt(0)));
}

Result<std::vector<qint32>> PageTable::ids() const
{
    std::vector<qint32> out;
    auto st = m_db.cached("SELECT PageId FROM \"OUTPUT\" ORDER BY rowid");
    for (;;) {
        const Result<bool> row = st->step();
        if (!row.ok()) {
            return fail(row.error());
        }
        if (!*row) {
            return out;
        }
        const qint64 id = st->columnInt(0);
        if (id >= std::numeric_limits<qint32>::min() && id <= std::numeric_limits<qint32>::max()) {
            out.push_back(qint32(id));
        }
    }
}

Result<std::vector<PageSummary>> PageTable::summaries() const
{
    std::vector<PageSummary> out;
    SqliteStatement st(
        m_db, "SELECT PageId, PageType, PageDate, PageInfo FROM \"OUTPUT\" ORDER BY rowid");
    for (;;) {
        const Result<bool> row = st.step();
        if (!row.ok()) {
            return fail(row.error());
        }
        if (!*row) {
            return out;
        }
        PageSummary s;
        s.storedId = st.columnInt(0);
        s.idOutOfRange = s.storedId < std::numeric_limits<qint32>::min() ||
                         s.storedId > std::numeric_limits<qint32>::max();
        s.pageId = s.idOutOfRange ? -1 : qint32(s.storedId);
        s.type = qint32(st.columnInt(1));
        s.date = st.columnDouble(2);
        const auto [stored, isText] = storedColumn(st, 3);
        if (isText) {
            s.info = QString::fromUtf8(stored);
        } else if (auto text = ColumnCodec::decompressText(stored)) {
            s.info = *text;
        } else {
            s.infoDamaged = true;
        }
        out.push_back(std::move(s));
    }
}

Result<qint64> PageTable::rowCount() const
{
    auto st = m_db.cached("SELECT count(*) FROM \"OUTPUT\"");
    const Result<bool> row = st->step();
    if (!row.ok()) {
        return fail(row.error());
    }
    return st->columnInt(0);
}

Result<QString> PageTable::decodeText(qint32 pageId, const char* column, const QByteArray& stored,
                                      bool isText) const
{
    if (isText) {
        return QString::fromUtf8(stored);
    }
    auto text = ColumnCodec::decompressText(stored);
    if (!text) {
        return fail(QStringLiteral("Page %1 of \"%2\" cannot be read: %3 of %4")
                        .arg(pageId)
                        .arg(m_db.path(), QLatin1String(column), text.error()));
    }
    return *text;
}

Result<QByteArray> PageTable::decodeBytes(qint32 pageId, const char* column,
                                          const QByteArray& stored, bool isText) const
{
    if (isText) {
        return stored;
    }
    auto bytes = ColumnCodec::decompress(stored);
    if (!bytes) {
        return fail(QStringLiteral("Page %1 of \"%2\" cannot be read: %3 of %4")
                        .arg(pageId)
                        .arg(m_db.path(), QLatin1String(column), bytes.error()));
    }
    return *bytes;
}

namespace {

// A decoded column of one record as the readers give it: nullopt when the record is missing.
template <class T> Result<std::optional<T>> present(Result<T> decoded)
{
    if (!decoded) {
        return fail(decoded.error());
    }
    return std::optional<T>(std::move(*decoded));
}

} // namespace

Result<std::optional<QByteArray>> PageTable::readContent(qint32 pageId) const
{
    auto st = m_db.cached("SELECT PageContent FROM \"OUTPUT\" WHERE PageId = ?");
    st->bindInt(1, pageId);
    const Result<bool> row = st->step();
    if (!row.ok()) {
        return fail(row.error());
    }
    if (!*row) {
        return std::optional<QByteArray>();
    }
    const auto [stored, isText] = storedColumn(*st, 0);
    return present(decodeBytes(pageId, "PageContent", stored, isText));
}

Result<std::optional<QString>> PageTable::readInfo(qint32 pageId) const
{
    auto st = m_db.cached("SELECT PageInfo FROM \"OUTPUT\" WHERE PageId = ?");
    st->bindInt(1, pageId);
    const Result<bool> row = st->step();
    if (!row.ok()) {
        return fail(row.error());
    }
    if (!*row) {
        return std::optional<QString>();
    }
    const auto [stored, isText] = storedColumn(*st, 0);
    return present(decodeText(pageId, "PageInfo", stored, isText));
}

Result<std::optional<QString>> PageTable::readComment(qint32 pageId) const
{
    auto st = m_db.cached("SELECT PageComment FROM \"OUTPUT\" WHERE PageId = ?");
    st->bindInt(1, pageId);
    const Result<bool> row = st->step();
    if (!row.ok()) {
        return fail(row.error());
    }
    if (!*row) {
        return std::optional<QString>();
    }
    const auto [stored, isText] = storedColumn(*st, 0);
    return present(decodeText(pageId, "PageComment", stored, isText));
}

Result<std::optional<qint32>> PageTable::readType(qint32 pageId) const
{
    auto st = m_db.cached("SELECT PageType FROM \"OUTPUT\" WHERE PageId = ?");
    st->bindInt(1, pageId);
    const Result<bool> row = st->step();
    if (!row.ok()) {
        return fail(row.error());
    }
    return *row ? std::optional<qint32>(qint32(st->columnInt(0))) : std::nullopt;
}

Result<std::optional<double>> PageTable::readDate(qint32 pageId) const
{
    auto st = m_db.cached("SELECT PageDate FROM \"OUTPUT\" WHERE PageId = ?");
    st->bindInt(1, pageId);
    const Result<bool> row = st->step();
    if (!row.ok()) {
        return fail(row.error());
    }
    return *row ? std::optional<double>(st->columnDouble(0)) : std::nullopt;
}

Result<std::optional<RawPageRow>> PageTable::readRaw(qint32 pageId) const
{
    auto st = m_db.cached(
        "SELECT PageId, PageDate, PageInfo, PageType, PageContent, PageComment, PageRandomKey "
        "FROM \"OUTPUT\" WHERE PageId = ?");
    st->bindInt(1, pageId);
    const Result<bool> found = st->step();
    if (!found.ok()) {
        return fail(found.error());
    }
    if (!*found) {
        return std::optional<RawPageRow>();
    }
    RawPageRow row;
    row.pageId = st->columnInt(0);
    if (st->columnType(1) != Type::Null) {
        row.date = st->columnDouble(1);
    }
    std::tie(row.info, row.infoIsText) = storedColumn(*st, 2);
    if (st->columnType(3) != Type::Null) {
        row.type = st->columnInt(3);
    }
    std::tie(row.content, row.contentIsText) = storedColumn(*st, 4);
    std::tie(row.comment, row.commentIsText) = storedColumn(*st, 5);
    if (st->columnType(6) != Type::Null) {
        row.randomKey = st->columnInt(6);
    }
    return std::optional<RawPageRow>(std::move(row));
}

Result<bool> PageTable::changeOne(const char* sql, const std::optional<QByteArray>& value,
                                  qint32 pageId)
{
    auto st = m_db.cached(sql);
    int index = 1;
    if (value) {
        st->bindBlob(index++, *value);
    }
    st->bindInt(index, pageId);
    if (Status ran = st->run(); !ran) {
        return fail(ran.error());
    }
    return m_db.changes() > 0;
}

Result<bool> PageTable::writeContent(qint32 pageId, const QByteArray& content)
{
    return changeOne("UPDATE \"OUTPUT\" SET PageContent = ? WHERE PageId = ?",
                     ColumnCodec::compress(content, ColumnCodec::kContentLevel), pageId);
}

Result<bool> PageTable::writeComment(qint32 pageId, const QString& comment)
{
    return changeOne("UPDATE \"OUTPUT\" SET PageComment = ? WHERE PageId = ?",
                     ColumnCodec::compressText(comment, ColumnCodec::kCommentLevel), pageId);
}

Result<bool> PageTable::remove(qint32 pageId)
{
    return changeOne("DELETE FROM \"OUTPUT\" WHERE PageId = ?", std::nullopt, pageId);
}

} // namespace kestrum::store
