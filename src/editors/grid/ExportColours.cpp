#include "ExportColours.h"

namespace kestrum::grid {

std::optional<QColor> exportFontColour(common::TColor colour)
{
    if (colour == common::clNone || colour == common::clDefault || colour == common::clWindowText) {
        return std::nullopt;
    }
    const QColor c = common::toQColor(colour);
    return c.isValid() ? std::optional<QColor>(c) : std::nullopt;
}

std::optional<QColor> exportBackground(common::TColor colour)
{
    if (colour == common::clNone || colour == common::clDefault || colour == common::clWindow) {
        return std::nullopt;
    }
    const QColor c = common::toQColor(colour);
    return c.isValid() ? std::optional<QColor>(c) : std::nullopt;
}

} // namespace kestrum::grid
