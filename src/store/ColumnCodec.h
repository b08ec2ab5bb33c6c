#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

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
// Fails (nullopt, *error set) on a truncated or corrupt value and on a length header that no
// zlib stream of that size can reach, so hostile headers never cause a large allocation.
std::optional<QByteArray> decompress(const QByteArray& stored, QString* error);

QByteArray compressText(const QString& text, int level);
std::optional<QString> decompressText(const QByteArray& stored, QString* error);

} // namespace ColumnCodec
} // namespace kestrum::store
