#pragma once

#include "common/Colour.h"

#include <array>

class QPalette;

namespace kestrum::wordcloud {

// A colour ramp from StartColor through an optional MiddleColor (clNone when there is none)
// to EndColor, sampled into 100 entries (1..100) by GenerateColors.
class TprGradient
{
public:
    common::TColor StartColor() const { return m_startColor; }
    common::TColor MiddleColor() const { return m_middleColor; }
    common::TColor EndColor() const { return m_endColor; }
    void SetStartColor(common::TColor c) { m_startColor = c; }
    void SetMiddleColor(common::TColor c) { m_middleColor = c; }
    void SetEndColor(common::TColor c) { m_endColor = c; }
    bool HasMiddleColor() const { return m_middleColor != common::clNone; }

    // Copies the three colours (not the table).
    void Assign(const TprGradient& other);

    // Fills entries 1..100; system colours are resolved through `palette` (the application's
    // when null).
    void GenerateColors(const QPalette* palette = nullptr);
    // Entry p of the table, p clamped to 1..100. Plain RGB.
    common::TColor GetColor(int p) const;

    // Mix of a and b (plain RGB) at p percent of b, each channel rounded half to even.
    static common::TColor Blend(common::TColor a, common::TColor b, int p);

private:
    common::TColor m_startColor = 0x808080;
    common::TColor m_middleColor = common::clNone;
    common::TColor m_endColor = 0x000000;
    std::array<common::TColor, 101> m_table{};
};

} // namespace kestrum::wordcloud
