#include "WgfFile.h"

#include "common/ByteStream.h"
#include "editors/grid/GridFileIo.h"
#include "editors/grid/GridStream.h"

namespace kestrum::grid {

QByteArray WgfFile::encode(const GridDocument& grid)
{
    common::ByteWriter w;
    w.raw(kMagic, 4);
    w.u16(kVersion);
    w.u16(0);
    w.raw(GridStream::write(grid));
    return w.take();
}

bool WgfFile::decode(const QByteArray& data, GridDocument* grid, QString* error)
{
    if (data.startsWith(QByteArray(GridStream::kMagic, 4))) {
        return GridStream::read(data, grid, error);
    }
    if (!data.startsWith(QByteArray(kMagic, 4)) || data.size() < 8) {
        if (error) {
            *error = QStringLiteral("not a grid file (it does not start with \"KWGF\")");
        }
        return false;
    }
    common::ByteReader in(data);
    in.raw(4);
    const quint16 version = in.u16();
    if (version != kVersion) {
        if (error) {
            *error =
                QStringLiteral("grid file version %1 is not known (this program reads version %2)")
                    .arg(version)
                    .arg(kVersion);
        }
        return false;
    }
    return GridStream::read(data.mid(8), grid, error);
}

bool WgfFile::save(const QString& path, const GridDocument& grid, QString* error)
{
    return writeWholeFile(path, encode(grid), error);
}

bool WgfFile::load(const QString& path, GridDocument* grid, QString* error)
{
    QByteArray data;
    if (!readWholeFile(path, kMaxFileBytes, &data, error)) {
        return false;
    }
    QString why;
    if (!decode(data, grid, &why)) {
        if (error) {
            *error = QStringLiteral("Cannot read \"%1\": %2").arg(path, why);
        }
        return false;
    }
    return true;
}

} // namespace kestrum::grid
