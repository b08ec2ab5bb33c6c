#pragma once

#include <QRect>
#include <QtGlobal>

namespace kestrum::wordcloud {

// A word's box on the canvas: left, top, right, bottom with the right and bottom edges outside
// the box (width = right - left), as every stored cloud keeps it.
struct CloudRect
{
    qint32 left = 0;
    qint32 top = 0;
    qint32 right = 0;
    qint32 bottom = 0;

    constexpr qint32 width() const { return right - left; }
    constexpr qint32 height() const { return bottom - top; }
    constexpr qint64 area() const { return qint64(width()) * qint64(height()); }
    constexpr bool isEmpty() const { return right <= left || bottom <= top; }

    constexpr CloudRect translated(qint32 dx, qint32 dy) const
    {
        return {left + dx, top + dy, right + dx, bottom + dy};
    }

    // Two boxes overlap unless one lies wholly left of, right of, above or below the other;
    // boxes that merely touch overlap, which keeps a gap of at least one pixel between words.
    constexpr bool overlaps(const CloudRect& o) const
    {
        return !(right < o.left || left > o.right || bottom < o.top || top > o.bottom);
    }

    QRect toQRect() const { return QRect(left, top, width(), height()); }

    friend constexpr bool operator==(const CloudRect&, const CloudRect&) = default;
};

} // namespace kestrum::wordcloud
