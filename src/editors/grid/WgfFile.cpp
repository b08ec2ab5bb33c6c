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

Status WgfFile::decode(const QByteArray& data, GridDocument* grid)
{
    if (data.startsWith(QByteArray(GridStream::kMagic, 4))) {
        return GridStream::read(data, grid);
    }
    if (!data.startsWith(QByteArray(kMagic, 4)) || data.size() < 8) {
        return fail(QStringLiteral("not a grid file (it does not start with \"KWGF\")"));
    }
    common::ByteReader in(data);
    in.raw(4);
    const quint16 version = in.u16();
    if (version != kVersion) {
        return fail(
            QStringLiteral("grid file version %1 is not known (this program reads version %2)")
                .arg(version)
                .arg(kVersion));
    }
    return GridStream::read(data.mid(8), grid);
}

Status WgfFile::save(const QString& path, const GridDocument& grid)
{
    return writeWholeFile(path, encode(grid));
}

Status WgfFile::load(const QString& path, GridDocument* grid)
{
    const Result<QByteArray> data = readWholeFile(path, kMaxFileBytes);
    if (!data) {
        return fail(data.error());
    }
    if (const Status decoded = decode(*data, grid); !decoded) {
        return fail(QStringLiteral("Cannot read \"%1\": %2").arg(path, decoded.error()));
    }
    return {};
}

} // namespace kestrum::grid
