#include "ProjectReader.h"

#include "store/OutlineStream.h"
#include "store/StoreError.h"

namespace kestrum::store {

ProjectReader::ProjectReader(const QString& path)
{
    m_db.open(path, SqliteDatabase::OpenMode::ReadOnly);
    m_table = std::make_unique<PageTable>(m_db);
    m_table->validate(true);
    if (const std::optional<qint32> first = m_table->firstId()) {
        Result<std::unique_ptr<OutlineNode>> outline =
            OutlineStream::read(m_table->readContent(*first).value_or(QByteArray()));
        if (!outline) {
            throw StoreError(QStringLiteral("Cannot open \"%1\": %2").arg(path, outline.error()));
        }
        m_outline = std::move(*outline);
    }
}

} // namespace kestrum::store
