#pragma once

#include "common/Result.h"

#include <QByteArray>

namespace kestrum::diagram {

class DiagramDocument;

// The binary diagram stream: the stored content of a diagram page (docs/formats.md, "Diagram
// stream"). The reader checks every count, index, size and length before it allocates or uses
// it, so any input ends in a diagram or a message.
class DiagramStream
{
public:
    static constexpr char kMagic[5] = "KSTD";
    static constexpr quint16 kVersion = 1;
    static constexpr quint32 kMaxBlocks = 100000;
    static constexpr quint32 kMaxLinks = 1000000;
    static constexpr quint32 kMaxCells = 64;
    static constexpr int kMaxTextBytes = 1024 * 1024;
    static constexpr int kMaxFontNameBytes = 256;
    static constexpr int kMaxFontSize = 1638;
    static constexpr int kMaxPenWidth = 1000;
    // Positions and sizes are within this many drawing units of the origin.
    static constexpr double kMaxCoordinate = 1e7;

    static QByteArray write(const DiagramDocument& diagram);
    static Result<DiagramDocument> read(const QByteArray& data);
};

} // namespace kestrum::diagram
