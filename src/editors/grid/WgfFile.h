#pragma once

#include "common/Result.h"

#include <QByteArray>
#include <QString>

namespace kestrum::grid {

class GridDocument;

// The grid's own file format ".WGF": a short file header and the grid stream
// (docs/formats.md). Reading also accepts a bare grid stream, as hosts may write one.
class WgfFile
{
public:
    static constexpr char kMagic[5] = "KWGF";
    static constexpr quint16 kVersion = 1;
    static constexpr qint64 kMaxFileBytes = qint64(512) * 1024 * 1024;

    static QByteArray encode(const GridDocument& grid);
    static Status decode(const QByteArray& data, GridDocument* grid);

    static Status save(const QString& path, const GridDocument& grid);
    // *grid is left as it was when the file cannot be read.
    static Status load(const QString& path, GridDocument* grid);
};

} // namespace kestrum::grid
