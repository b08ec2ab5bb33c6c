#pragma once

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
    static bool decode(const QByteArray& data, GridDocument* grid, QString* error);

    static bool save(const QString& path, const GridDocument& grid, QString* error);
    // *grid is left as it was when the file cannot be read.
    static bool load(const QString& path, GridDocument* grid, QString* error);
};

} // namespace kestrum::grid
