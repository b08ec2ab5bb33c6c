#include "ImageZoom.h"

#include "common/Rounding.h"

#include <QString>

#include <algorithm>

namespace kestrum::image {

namespace {
constexpr int kMaxPercent = 100000;

int clampSide(std::int64_t v)
{
    return int(std::clamp<std::int64_t>(v, 0, 1 << 20));
}
} // namespace

int ImageZoom::zoomIn(int percent)
{
    return int(
        std::min<std::int64_t>(kMaxPercent, common::roundHalfEven((percent + 10) / 10.0) * 10));
}

int ImageZoom::zoomOut(int percent)
{
    if (percent <= kFloor) {
        return percent;
    }
    return int(common::roundHalfEven((percent - 10) / 10.0) * 10);
}

QSize ImageZoom::viewSize(int percent, QSize picture)
{
    return {clampSide(common::roundHalfEven(double(percent) * picture.width() / 100.0)),
            clampSide(common::roundHalfEven(double(percent) * picture.height() / 100.0))};
}

QString ImageZoom::statusText(int percent)
{
    return QLatin1Char(' ') + QString::number(percent) + QLatin1Char('%');
}

} // namespace kestrum::image
