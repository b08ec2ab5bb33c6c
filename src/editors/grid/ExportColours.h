#pragma once

#include "common/Colour.h"

#include <QColor>

#include <optional>

namespace kestrum::grid {

// The colours an export writes for a cell: none where the cell shows the grid's own colours
// (the window text, no background), so the exported table keeps the reader's defaults there.
std::optional<QColor> exportFontColour(common::TColor colour);
std::optional<QColor> exportBackground(common::TColor colour);

} // namespace kestrum::grid
