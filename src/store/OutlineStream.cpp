#include "OutlineStream.h"

#include "common/ByteStream.h"

#include <vector>

namespace kestrum::store::OutlineStream {

namespace {
constexpr quint8 kUsesTreeColours = 0x01;
constexpr quint8 kExpanded = 0x02;
// level, image index, data, two colours, flags, caption length
constexpr qsizetype kMinNodeBytes = 2 + 4 + 4 + 4 + 4 + 1 + 4;
constexpr qsizetype kMaxCaptionBytes = 64 * 1024;
} // namespace

QByteArray write(const OutlineNode* root)
{
    common::ByteWriter out;
    out.raw(kMagic, 4);
    out.u16(kVersion);
    out.u16(0); // reserved flags
    if (!root) {
        out.u32(0);
        return out.take();
    }
    // Count first so the reader can check the size before it reads anything.
    std::vector<std::pair<const OutlineNode*, int>> order;
    visitInOrder(root,
                 [&order](const OutlineNode* node, int level) { order.emplace_back(node, level); });
    out.reserve(qsizetype(order.size()) * 48);
    out.u32(quint32(order.size()));
    for (const auto& [node, level] : order) {
        const OutlineNodeData& d = node->fields();
        out.u16(quint16(level));
        out.i32(d.imageIndex);
        out.i32(d.data);
        out.i32(d.textColor);
        out.i32(d.backColor);
        out.u8((d.usesTreeColours ? kUsesTreeColours : 0) | (d.expanded ? kExpanded : 0));
        out.string(d.caption);
    }
    return out.take();
}

Result<std::unique_ptr<OutlineNode>> read(const QByteArray& bytes)
{
    auto failWith = [](const QString& why) {
        return fail(QStringLiteral("the outline is damaged (%1)").arg(why));
    };
    if (bytes.isEmpty()) {
        return std::unique_ptr<OutlineNode>();
    }
    common::ByteReader in(bytes);
    const QByteArray magic = in.raw(4);
    if (!in.ok() || magic != QByteArray(kMagic, 4)) {
        return failWith(QStringLiteral("not an outline stream"));
    }
    const quint16 version = in.u16();
    in.u16();
    if (!in.ok()) {
        return failWith(in.error());
    }
    if (version == 0 || version > kVersion) {
        return failWith(
            QStringLiteral("outline version %1 is newer than this program reads").arg(version));
    }
    const quint32 count = in.u32();
    if (!in.ok()) {
        return failWith(in.error());
    }
    if (count == 0) {
        return failWith(QStringLiteral("no root node"));
    }
    if (qint64(count) > in.remaining() / kMinNodeBytes) {
        return failWith(QStringLiteral("%1 nodes announced, the data cannot hold them").arg(count));
    }
    std::unique_ptr<OutlineNode> root;
    std::vector<OutlineNode*> path; // path[level] = last node read at that level
    for (quint32 i = 0; i < count; ++i) {
        OutlineNodeData d;
        const int level = in.u16();
        d.imageIndex = in.i32();
        d.data = in.i32();
        d.textColor = in.i32();
        d.backColor = in.i32();
        const quint8 flags = in.u8();
        d.caption = in.string(kMaxCaptionBytes);
        if (!in.ok()) {
            return failWith(in.error());
        }
        d.usesTreeColours = flags & kUsesTreeColours;
        d.expanded = flags & kExpanded;
        if (i == 0) {
            if (level != 0) {
                return failWith(QStringLiteral("the first node is not the root"));
            }
            root = std::make_unique<OutlineNode>(d);
            path.assign(1, root.get());
            continue;
        }
        if (level < 1 || level > int(path.size()) || level > kMaxDepth) {
            return failWith(QStringLiteral("node %1 has an impossible level %2").arg(i).arg(level));
        }
        OutlineNode* node =
            path[std::size_t(level - 1)]->appendChildUnchecked(std::make_unique<OutlineNode>(d));
        path.resize(std::size_t(level));
        path.push_back(node);
    }
    if (!in.atEnd()) {
        return failWith(
            QStringLiteral("%1 unexpected bytes after the last node").arg(in.remaining()));
    }
    return root;
}

} // namespace kestrum::store::OutlineStream
