#pragma once

#include "common/Result.h"

#include <QByteArray>
#include <QString>

namespace kestrum::grid {

// Whole-file reading and writing for the grid's imports and exports, with the messages users
// see. Writing goes through a temporary file, so a failed export leaves no half-written file.
Result<QByteArray> readWholeFile(const QString& path, qint64 maxBytes);
Status writeWholeFile(const QString& path, const QByteArray& data);

} // namespace kestrum::grid
