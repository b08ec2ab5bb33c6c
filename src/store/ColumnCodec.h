#pragma once

#include "common/Result.h"

#include <QByteArray>
#include <QString>

namespace kestrum::store {

// Compressed page columns: 4-byte big-endian length of the plain bytes, then a zlib stream
// (the framing of qCompress). An empty value is a zero-length blob; NULL reads as empty.
namespace ColumnCodec {

constexpr int kInfoLevel = 2;
constexpr int kContentLevel = 2;
constexpr int kCommentLevel = 9;
// No page column may claim to expand beyond this.
constexpr qint64 kMaxPlainSize = qint64(1) << 30;

QByteArray compress(const QByteArray& plain, int level);
// Fails on a truncated or corrupt value and on a length header that no zlib stream of that
// size can reach, so hostile headers never cause a large allocation.
Result<QByteArray> decompress(const QByteArray& stored);

QByteArray compressText(const QString& text, int level);
Result<QString> decompressText(const QByteArray& stored);

} // namespace ColumnCodec
} // namespace kestrum::store
