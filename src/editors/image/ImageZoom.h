#pragma once

#include <QSize>

namespace kestrum::image {

// The image page's zoom steps: tens of percent, never below 20, no upper limit; a zoom that
// is not a multiple of ten snaps to one (halves to the even neighbour).
class ImageZoom
{
public:
    static constexpr int kInitial = 100;
    static constexpr int kFloor = 20;

    static int zoomIn(int percent);
    static int zoomOut(int percent);
    // The view's size for a picture of `picture` pixels at `percent`.
    static QSize viewSize(int percent, QSize picture);
    // " 110%": the status text after a zoom.
    static QString statusText(int percent);
};

} // namespace kestrum::image
