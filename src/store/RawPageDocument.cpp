#include "RawPageDocument.h"

#include <QFile>

namespace kestrum::store {

RawPageDocument::RawPageDocument(EditorKind kind, QObject* parent)
    : PageDocument(parent), m_kind(kind)
{}

Result<QByteArray> RawPageDocument::writeContent()
{
    return m_bytes;
}

Status RawPageDocument::readContent(const QByteArray& in)
{
    m_bytes = in;
    emit contentReset();
    return {};
}

void RawPageDocument::clear()
{
    m_bytes.clear();
    emit contentReset();
}

Status RawPageDocument::importFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return fail(QStringLiteral("Cannot read \"%1\": %2").arg(path, file.errorString()));
    }
    if (file.size() > kMaxImportBytes) {
        return fail(QStringLiteral("Cannot import \"%1\": the file is larger than %2 MB")
                        .arg(path)
                        .arg(kMaxImportBytes / (1024 * 1024)));
    }
    m_bytes = file.readAll();
    return {};
}

void RawPageDocument::setBytes(const QByteArray& bytes)
{
    m_bytes = bytes;
    emit contentChanged();
}

} // namespace kestrum::store
