#include "RawPageDocument.h"

#include <QFile>

namespace kestrum::store {

RawPageDocument::RawPageDocument(EditorKind kind, QObject* parent)
    : PageDocument(parent), m_kind(kind)
{}

bool RawPageDocument::writeContent(QByteArray& out, QString*)
{
    out = m_bytes;
    return true;
}

bool RawPageDocument::readContent(const QByteArray& in, QString*)
{
    m_bytes = in;
    emit contentReset();
    return true;
}

void RawPageDocument::clear()
{
    m_bytes.clear();
    emit contentReset();
}

bool RawPageDocument::importFile(const QString& path, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error) {
            *error = QStringLiteral("Cannot read \"%1\": %2").arg(path, file.errorString());
        }
        return false;
    }
    if (file.size() > kMaxImportBytes) {
        if (error) {
            *error = QStringLiteral("Cannot import \"%1\": the file is larger than %2 MB")
                         .arg(path)
                         .arg(kMaxImportBytes / (1024 * 1024));
        }
        return false;
    }
    m_bytes = file.readAll();
    return true;
}

void RawPageDocument::setBytes(const QByteArray& bytes)
{
    m_bytes = bytes;
    emit contentChanged();
}

} // namespace kestrum::store
