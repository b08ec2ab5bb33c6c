#include "GridFileIo.h"

#include <QFile>
#include <QSaveFile>

namespace kestrum::grid {

bool readWholeFile(const QString& path, qint64 maxBytes, QByteArray* data, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error) {
            *error = QStringLiteral("Cannot read \"%1\": %2").arg(path, file.errorString());
        }
        return false;
    }
    const qint64 size = file.size();
    if (size > maxBytes) {
        if (error) {
            *error =
                QStringLiteral(
                    "Cannot import \"%1\": the file is %2 MB, more than the %3 MB a table can take")
                    .arg(path)
                    .arg((size + 1024 * 1024 - 1) / (1024 * 1024))
                    .arg(maxBytes / (1024 * 1024));
        }
        return false;
    }
    // Read at most maxBytes + 1, in case the file grows (or is not a regular file).
    *data = file.read(maxBytes + 1);
    if (data->size() > maxBytes) {
        data->clear();
        if (error) {
            *error = QStringLiteral("Cannot import \"%1\": the file is larger than %2 MB")
                         .arg(path)
                         .arg(maxBytes / (1024 * 1024));
        }
        return false;
    }
    return true;
}

bool writeWholeFile(const QString& path, const QByteArray& data, QString* error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit()) {
        if (error) {
            *error = QStringLiteral("Cannot write \"%1\": %2").arg(path, file.errorString());
        }
        return false;
    }
    return true;
}

} // namespace kestrum::grid
