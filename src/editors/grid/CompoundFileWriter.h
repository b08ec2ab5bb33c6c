#pragma once

#include <QByteArray>
#include <QString>

namespace kestrum::grid {

// Writes a compound file (the structured-storage container of .XLS and .DOC files, version 3,
// 512-byte sectors) holding one stream under the root storage. Streams under 4096 bytes go to
// the mini stream as the format requires; large files get DIFAT sectors.
class CompoundFileWriter
{
public:
    static constexpr int kSectorSize = 512;
    static constexpr int kMiniSectorSize = 64;
    static constexpr int kMiniStreamCutoff = 4096;

    static QByteArray build(const QString& streamName, const QByteArray& stream);
};

} // namespace kestrum::grid
