#pragma once

#include "common/Result.h"

#include <QByteArray>
#include <QString>

namespace kestrum::grid {

class GridDocument;

// The binary grid stream: the stored content of a grid page (docs/formats.md, "Grid stream").
// The reader checks every count and length against the bytes that remain before it allocates,
// so any input ends in a document or a message, never in a crash or a huge allocation.
class GridStream
{
public:
    static constexpr char kMagic[5] = "KSTG";
    static constexpr quint16 kVersion = 1;
    static constexpr int kMaxFontNameBytes = 256;
    static constexpr int kMaxCellBytes = 16 * 1024 * 1024;
    static constexpr int kMaxFontSize = 1638;

    static QByteArray write(const GridDocument& grid);
    // On success *grid holds the stream's content; on failure it is left as it was.
    static Status read(const QByteArray& data, GridDocument* grid);
};

} // namespace kestrum::grid
