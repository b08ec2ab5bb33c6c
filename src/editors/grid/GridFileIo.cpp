#include "GridFileIo.h"

#include <QFile>
#include <QSaveFile>

namespace kestrum::grid {

Result<QByteArray> readWholeFile(const QString& path, qint64 maxBytes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return fail(QStringLiteral("Cannot read \"%1\": %2").arg(path, file.errorString()));
    }
    const qint64 size = file.size();
    if (size > maxBytes) {
        return fail(
            QStringLiteral(
                "Cannot import \"%1\": the file is %2 MB, more than the %3 MB a table can take")
                .arg(path)
                .arg((size + 1024 * 1024 - 1) / (1024 * 1024))
                .arg(maxBytes / (1024 * 1024)));
    }
    // Read at most maxBytes + 1, in case the file grows (or is not a regular file).
    QByteArray data = file.read(maxBytes + 1);
    if (data.size() > maxBytes) {
        return fail(QStringLiteral("Cannot import \"%1\": the file is larger than %2 MB")
                        .arg(path)
                        .arg(maxBytes / (1024 * 1024)));
    }
    return data;
}

Status writeWholeFile(const QString& path, const QByteArray& data)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit()) {
        return fail(QStringLiteral("Cannot write \"%1\": %2").arg(path, file.errorString()));
    }
    return {};
}

} // namespace kestrum::grid
