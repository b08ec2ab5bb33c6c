#pragma once

#include <QString>

namespace kestrum::grid {

// How the grid shows numbers: a cell holding a decimal number ("33.3333", "-0.5", "1e-3") is
// shown with the float format "%.2f" (two decimals, the user's decimal separator); whole
// numbers and every other text are shown as written. Only the showing changes: the cell keeps
// its text for editing, sorting and the exports.
class GridNumberFormat
{
public:
    static constexpr int kDecimals = 2;

    static QString displayText(const QString& text);
};

} // namespace kestrum::grid
