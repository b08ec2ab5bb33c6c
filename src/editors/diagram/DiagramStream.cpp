#include "DiagramStream.h"

#include "common/ByteStream.h"
#include "editors/diagram/DiagramDocument.h"

#include <cmath>

namespace kestrum::diagram {

namespace {

using common::ByteReader;
using common::ByteWriter;

// The smallest sizes a record can take: what a count is checked against before allocating.
constexpr qsizetype kMinCellBytes = 4 + 4 + 4 + 1 + 4 + 1;
constexpr qsizetype kMinBlockBytes = 4 * 8 + 1 + 1 + 4 + 4 + 4;
constexpr qsizetype kMinLinkBytes = 4 + 4 + 4 + 4 + 1 + 1 + 4;

constexpr quint8 kSelectedFlag = 1;
constexpr quint8 kVisibleFlag = 1;

void writeCells(ByteWriter& w, const std::vector<DiagramTextCell>& cells)
{
    w.u32(quint32(cells.size()));
    for (const DiagramTextCell& c : cells) {
        w.string(c.text);
        w.string(c.font.name);
        w.i32(c.font.size);
        w.u8(c.font.style);
        w.i32(c.font.colour);
        w.u8(c.visible ? kVisibleFlag : 0);
    }
}

// A reader that stops at the first fault and remembers it in the byte reader's words.
class Reader
{
public:
    explicit Reader(const QByteArray& data) : m_in(data) {}

    ByteReader& in() { return m_in; }
    bool ok() const { return m_in.ok(); }
    QString error() const { return QStringLiteral("damaged diagram stream: ") + m_in.error(); }
    void fail(const QString& why) { m_in.fail(why); }

    double coordinate(const char* what, bool nonNegative)
    {
        const double v = m_in.f64();
        if (!ok()) {
            return 0;
        }
        if (!std::isfinite(v) || std::abs(v) > DiagramStream::kMaxCoordinate) {
            fail(QStringLiteral("%1 is out of range").arg(QLatin1String(what)));
        } else if (nonNegative && v < 0) {
            fail(QStringLiteral("%1 is negative").arg(QLatin1String(what)));
        }
        return v;
    }

    quint32 count(quint32 max, qsizetype minRecordBytes, const char* what)
    {
        const quint32 n = m_in.u32();
        if (!ok()) {
            return 0;
        }
        if (n > max) {
            fail(QStringLiteral("%1 %2 (at most %3)").arg(n).arg(QLatin1String(what)).arg(max));
            return 0;
        }
        if (qsizetype(n) * minRecordBytes > m_in.remaining()) {
            fail(QStringLiteral("%1 %2 claimed, but the data ends before")
                     .arg(n)
                     .arg(QLatin1String(what)));
            return 0;
        }
        return n;
    }

    std::vector<DiagramTextCell> cells()
    {
        std::vector<DiagramTextCell> out;
        const quint32 n = count(DiagramStream::kMaxCells, kMinCellBytes, "text cells");
        out.reserve(n);
        for (quint32 i = 0; i < n && ok(); ++i) {
            DiagramTextCell c;
            c.text = m_in.string(DiagramStream::kMaxTextBytes);
            c.font.name = m_in.string(DiagramStream::kMaxFontNameBytes);
            c.font.size = m_in.i32();
            c.font.style = m_in.u8();
            c.font.colour = m_in.i32();
            c.visible = (m_in.u8() & kVisibleFlag) != 0;
            if (ok() && (c.font.size < 1 || c.font.size > DiagramStream::kMaxFontSize)) {
                fail(QStringLiteral("font size %1 is out of range").arg(c.font.size));
            }
            c.font.style &= FontStyle::All;
            out.push_back(std::move(c));
        }
        return out;
    }

private:
    ByteReader m_in;
};

} // namespace

QByteArray DiagramStream::write(const DiagramDocument& diagram)
{
    ByteWriter w;
    w.raw(kMagic, 4);
    w.u16(kVersion);
    w.u16(0);
    w.i32(diagram.zoom());
    w.u32(quint32(diagram.blocks().size()));
    w.u32(quint32(diagram.links().size()));
    for (const DiagramBlock& b : diagram.blocks()) {
        w.f64(b.left);
        w.f64(b.top);
        w.f64(b.width);
        w.f64(b.height);
        w.u8(b.shape);
        w.u8(b.selected ? kSelectedFlag : 0);
        w.i32(b.gradientStart);
        w.i32(b.colour);
        writeCells(w, b.cells);
    }
    for (const DiagramLink& l : diagram.links()) {
        w.i32(l.source);
        w.i32(l.target);
        w.i32(l.penWidth);
        w.i32(l.colour);
        w.u8(l.style);
        w.u8(l.selected ? kSelectedFlag : 0);
        writeCells(w, l.cells);
    }
    return w.take();
}

Result<DiagramDocument> DiagramStream::read(const QByteArray& data)
{
    Reader r(data);
    ByteReader& in = r.in();
    if (data.size() < 4 || !data.startsWith(kMagic)) {
        return fail(QStringLiteral("not a diagram stream (the magic %1 is missing)")
                        .arg(QLatin1String(kMagic)));
    }
    in.raw(4);
    const quint16 version = in.u16();
    in.u16(); // flags, none defined
    if (r.ok() && version != kVersion) {
        return fail(QStringLiteral("diagram stream version %1 is not supported (this program "
                                   "reads version %2)")
                        .arg(version)
                        .arg(kVersion));
    }
    DiagramDocument diagram;
    const qint32 zoom = in.i32();
    if (r.ok() && zoom < 1) {
        r.fail(QStringLiteral("zoom %1 is not positive").arg(zoom));
    }
    diagram.setZoom(zoom);
    const quint32 blockCount = r.count(kMaxBlocks, kMinBlockBytes, "blocks");
    const quint32 linkCount = in.u32();
    if (r.ok() && linkCount > kMaxLinks) {
        r.fail(QStringLiteral("%1 links (at most %2)").arg(linkCount).arg(kMaxLinks));
    }
    if (r.ok() && qsizetype(blockCount) * kMinBlockBytes + qsizetype(linkCount) * kMinLinkBytes >
                      in.remaining()) {
        r.fail(QStringLiteral("%1 blocks and %2 links claimed, but the data ends before")
                   .arg(blockCount)
                   .arg(linkCount));
    }
    if (!r.ok()) {
        return fail(r.error());
    }

    auto& blocks = diagram.blocks();
    blocks.reserve(blockCount);
    for (quint32 i = 0; i < blockCount && r.ok(); ++i) {
        DiagramBlock b;
        b.left = r.coordinate("a block's left", false);
        b.top = r.coordinate("a block's top", false);
        b.width = r.coordinate("a block's width", true);
        b.height = r.coordinate("a block's height", true);
        b.shape = in.u8();
        b.selected = (in.u8() & kSelectedFlag) != 0;
        b.gradientStart = in.i32();
        b.colour = in.i32();
        if (r.ok() && b.shape > BlockShape::Last) {
            r.fail(QStringLiteral("block %1 has the unknown shape %2").arg(i).arg(b.shape));
        }
        b.cells = r.cells();
        blocks.push_back(std::move(b));
    }

    auto& links = diagram.links();
    if (r.ok()) {
        links.reserve(linkCount);
    }
    for (quint32 i = 0; i < linkCount && r.ok(); ++i) {
        DiagramLink l;
        l.source = in.i32();
        l.target = in.i32();
        l.penWidth = in.i32();
        l.colour = in.i32();
        l.style = in.u8();
        l.selected = (in.u8() & kSelectedFlag) != 0;
        if (r.ok()) {
            const qint64 n = qint64(blockCount);
            if (l.source < 0 || l.source >= n || l.target < 0 || l.target >= n) {
                r.fail(QStringLiteral("link %1 joins blocks %2 and %3, but there are %4 blocks")
                           .arg(i)
                           .arg(l.source)
                           .arg(l.target)
                           .arg(blockCount));
            } else if (l.penWidth < 0 || l.penWidth > kMaxPenWidth) {
                r.fail(QStringLiteral("link %1 has the pen width %2").arg(i).arg(l.penWidth));
            } else if (l.style > PenStyle::Last) {
                r.fail(QStringLiteral("link %1 has the unknown pen style %2").arg(i).arg(l.style));
            }
        }
        l.cells = r.cells();
        links.push_back(std::move(l));
    }
    if (r.ok() && !in.atEnd()) {
        r.fail(QStringLiteral("%1 bytes after the last link").arg(in.remaining()));
    }
    if (!r.ok()) {
        return fail(r.error());
    }
    return diagram;
}

} // namespace kestrum::diagram
