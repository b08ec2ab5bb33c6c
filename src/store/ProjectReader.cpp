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
        QString why;
        m_outline = OutlineStream::read(m_table->readContent(*first).value_or(QByteArray()), &why);
        if (!m_outline && !why.isEmpty()) {
            throw StoreError(QStringLiteral("Cannot open \"%1\": %2").arg(path, why));
        }
    }
}

} // namespace kestrum::store
