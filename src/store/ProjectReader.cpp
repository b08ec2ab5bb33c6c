#include "ProjectReader.h"

#include "store/OutlineStream.h"

namespace kestrum::store {

Status ProjectReader::open(const QString& path)
{
    m_outline.reset();
    m_table.reset();
    if (Status opened = m_db.open(path, SqliteDatabase::OpenMode::ReadOnly); !opened) {
        return opened;
    }
    auto table = std::make_unique<PageTable>(m_db);
    if (Status valid = table->validate(true); !valid) {
        m_db.close();
        return valid;
    }
    const Result<std::optional<qint32>> first = table->firstId();
    if (!first) {
        m_db.close();
        return fail(first.error());
    }
    if (*first) {
        const Result<std::optional<QByteArray>> stored = table->readContent(**first);
        if (!stored) {
            m_db.close();
            return fail(stored.error());
        }
        Result<std::unique_ptr<OutlineNode>> outline =
            OutlineStream::read(stored->value_or(QByteArray()));
        if (!outline) {
            m_db.close();
            return fail(QStringLiteral("Cannot open \"%1\": %2").arg(path, outline.error()));
        }
        m_outline = std::move(*outline);
    }
    m_table = std::move(table);
    return {};
}

} // namespace kestrum::store
