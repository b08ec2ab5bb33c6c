#include "GridStream.h"

#include "common/ByteStream.h"
#include "editors/grid/GridDocument.h"

#include <QHash>

#include <limits>

namespace kestrum::grid {

namespace {

constexpr quint16 kFlagWordWrap = 0x0001;
constexpr quint8 kColumnHidden = 0x01;
// Bytes a format record takes at least: alignment, style, size, two colours, empty name.
constexpr qsizetype kMinFormatBytes = 1 + 1 + 4 + 4 + 4 + 4;

Error failWith(const QString& why)
{
    return fail(QStringLiteral("damaged grid stream: ") + why);
}

} // namespace

QByteArray GridStream::write(const GridDocument& grid)
{
    const int cols = grid.columnCount();
    const int rows = grid.rowCount();

    // Only the formats that cells use are written, numbered in order of first use.
    QHash<quint32, quint32> streamIds;
    std::vector<quint32> used;
    qint64 formattedCells = 0;
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < cols; ++c) {
            const quint32 id = grid.formatId(c, r);
            if (id == 0) { // the pool's default format
                continue;
            }
            ++formattedCells;
            if (!streamIds.contains(id)) {
                streamIds.insert(id, quint32(used.size()));
                used.push_back(id);
            }
        }
    }

    common::ByteWriter w;
    w.reserve(qsizetype(grid.cellCount()) * 8 + 1024);
    w.raw(kMagic, 4);
    w.u16(kVersion);
    w.u16(grid.wordWrap() ? kFlagWordWrap : 0);
    w.u32(quint32(cols));
    w.u32(quint32(rows));
    w.u32(quint32(grid.fixedColumns()));
    w.u32(quint32(grid.fixedRows()));
    for (int c = 0; c < cols; ++c) {
        w.u32(quint32(grid.columnWidth(c)));
        w.u8(grid.isColumnHidden(c) ? kColumnHidden : 0);
    }
    for (int r = 0; r < rows; ++r) {
        w.u32(quint32(grid.rowHeight(r)));
    }
    w.u32(quint32(used.size()));
    for (const quint32 id : used) {
        const GridCellFormat& f = grid.formatAt(id);
        w.u8(f.alignment);
        w.u8(f.fontStyle);
        w.i32(f.fontSize);
        w.i32(f.fontColour);
        w.i32(f.background);
        w.string(f.fontName.left(kMaxFontNameBytes / 4));
    }
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < cols; ++c) {
            w.string(grid.text(c, r));
        }
    }
    w.u32(quint32(formattedCells));
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < cols; ++c) {
            const quint32 id = grid.formatId(c, r);
            const auto found = streamIds.constFind(id);
            if (found == streamIds.constEnd()) {
                continue;
            }
            w.u32(quint32(r) * quint32(cols) + quint32(c));
            w.u32(found.value());
        }
    }
    return w.take();
}

Status GridStream::read(const QByteArray& data, GridDocument* grid)
{
    common::ByteReader in(data);
    if (data.size() < 4 || !data.startsWith(QByteArray(kMagic, 4))) {
        return failWith(QStringLiteral("it does not start with \"KSTG\""));
    }
    in.raw(4);
    const quint16 version = in.u16();
    const quint16 flags = in.u16();
    if (!in.ok()) {
        return failWith(in.error());
    }
    if (version != kVersion) {
        return failWith(QStringLiteral("version %1 is not known (this program reads version %2)")
                            .arg(version)
                            .arg(kVersion));
    }
    const quint32 cols = in.u32();
    const quint32 rows = in.u32();
    const quint32 fixedCols = in.u32();
    const quint32 fixedRows = in.u32();
    if (!in.ok()) {
        return failWith(in.error());
    }
    if (cols < 1 || cols > quint32(GridDocument::kMaxColumns) || rows < 1 ||
        rows > quint32(GridDocument::kMaxRows) ||
        qint64(cols) * qint64(rows) > GridDocument::kMaxCells) {
        return failWith(QStringLiteral("a grid of %1 columns and %2 rows is out of bounds")
                            .arg(cols)
                            .arg(rows));
    }
    if (fixedCols > cols || fixedRows > rows) {
        return failWith(QStringLiteral("%1 fixed columns and %2 fixed rows do not fit the grid")
                            .arg(fixedCols)
                            .arg(fixedRows));
    }
    // Every cell takes at least its 4-byte length: a grid larger than the data is refused
    // before anything is allocated for it.
    const qint64 minimum = qint64(cols) * 5 + qint64(rows) * 4 + 4 + qint64(cols) * rows * 4 + 4;
    if (minimum > in.remaining()) {
        return failWith(
            QStringLiteral("%1 columns and %2 rows need more bytes than the stream holds")
                .arg(cols)
                .arg(rows));
    }

    GridDocument out;
    out.setSize(int(cols), int(rows));
    out.setFixedColumns(int(fixedCols));
    out.setFixedRows(int(fixedRows));
    out.setWordWrap(flags & kFlagWordWrap);
    for (quint32 c = 0; c < cols; ++c) {
        const quint32 width = in.u32();
        const quint8 columnFlags = in.u8();
        if (width > quint32(GridDocument::kMaxSize)) {
            return failWith(QStringLiteral("column %1 is %2 pixels wide").arg(c).arg(width));
        }
        out.setColumnWidth(int(c), int(width));
        out.setColumnHidden(int(c), columnFlags & kColumnHidden);
    }
    for (quint32 r = 0; r < rows; ++r) {
        const quint32 height = in.u32();
        if (height > quint32(GridDocument::kMaxSize)) {
            return failWith(QStringLiteral("row %1 is %2 pixels high").arg(r).arg(height));
        }
        out.setRowHeight(int(r), int(height));
    }

    const quint32 formatCount = in.u32();
    if (!in.ok()) {
        return failWith(in.error());
    }
    if (qint64(formatCount) * kMinFormatBytes > in.remaining()) {
        return failWith(
            QStringLiteral("%1 formats need more bytes than the stream holds").arg(formatCount));
    }
    std::vector<quint32> poolIds;
    poolIds.reserve(formatCount);
    for (quint32 i = 0; i < formatCount; ++i) {
        GridCellFormat f;
        f.alignment = in.u8();
        f.fontStyle = in.u8();
        f.fontSize = in.i32();
        f.fontColour = in.i32();
        f.background = in.i32();
        f.fontName = in.string(kMaxFontNameBytes);
        if (!in.ok()) {
            return failWith(in.error());
        }
        if (f.alignment > CellAlignment::Centre) {
            return failWith(
                QStringLiteral("format %1 has the unknown alignment %2").arg(i).arg(f.alignment));
        }
        if (f.fontStyle & ~FontStyle::All) {
            return failWith(
                QStringLiteral("format %1 has unknown style bits %2").arg(i).arg(f.fontStyle));
        }
        if (f.fontSize < 1 || f.fontSize > kMaxFontSize) {
            return failWith(
                QStringLiteral("format %1 has the font size %2").arg(i).arg(f.fontSize));
        }
        poolIds.push_back(out.addFormat(f));
    }

    for (quint32 r = 0; r < rows; ++r) {
        for (quint32 c = 0; c < cols; ++c) {
            const quint32 size = in.u32();
            if (size > quint32(kMaxCellBytes)) {
                return failWith(
                    QStringLiteral("cell (%1, %2) claims %3 bytes").arg(c).arg(r).arg(size));
            }
            const QByteArray bytes = in.raw(qsizetype(size));
            if (!in.ok()) {
                return failWith(in.error());
            }
            if (size) {
                out.setText(int(c), int(r), QString::fromUtf8(bytes));
            }
        }
    }

    const quint32 formatted = in.u32();
    if (!in.ok()) {
        return failWith(in.error());
    }
    if (qint64(formatted) > qint64(cols) * rows || qint64(formatted) * 8 != in.remaining()) {
        return failWith(
            QStringLiteral("the list of %1 formatted cells does not match the %2 bytes left")
                .arg(formatted)
                .arg(in.remaining()));
    }
    qint64 previous = -1;
    for (quint32 i = 0; i < formatted; ++i) {
        const quint32 cell = in.u32();
        const quint32 format = in.u32();
        if (qint64(cell) <= previous || qint64(cell) >= qint64(cols) * rows) {
            return failWith(
                QStringLiteral("formatted cell %1 is out of order or out of the grid").arg(cell));
        }
        if (format >= formatCount) {
            return failWith(
                QStringLiteral("cell %1 refers to the missing format %2").arg(cell).arg(format));
        }
        previous = cell;
        out.setFormatId(int(cell % cols), int(cell / cols), poolIds[format]);
    }
    *grid = std::move(out);
    return {};
}

} // namespace kestrum::grid
