#pragma once

#include "common/Result.h"
#include "store/OutlineNode.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace kestrum::store {

// The stored outline: every node in tree order with its level and attributes
// (format described in docs/formats.md).
namespace OutlineStream {

constexpr char kMagic[4] = {'K', 'S', 'T', 'O'};
constexpr quint16 kVersion = 1;
constexpr int kMaxDepth = 512;

QByteArray write(const OutlineNode* root);
// Reads a whole stream. An empty input gives no tree (nullptr, no error); anything malformed
// fails.
Result<std::unique_ptr<OutlineNode>> read(const QByteArray& bytes);

} // namespace OutlineStream
} // namespace kestrum::store
