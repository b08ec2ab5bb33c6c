#include "TprGradient.h"

#include "common/Rounding.h"

namespace kestrum::wordcloud {

using common::TColor;

namespace {

TColor plainRgb(TColor colour, const QPalette* palette)
{
    const QColor c = common::toQColor(colour, palette);
    return c.isValid() ? common::fromQColor(c) : common::clBlack;
}

} // namespace

void TprGradient::Assign(const TprGradient& other)
{
    m_startColor = other.m_startColor;
    m_middleColor = other.m_middleColor;
    m_endColor = other.m_endColor;
}

TColor TprGradient::Blend(TColor a, TColor b, int p)
{
    auto mix = [p](int x, int y) {
        return int(common::roundHalfEven((double(x) * (100 - p) + double(y) * p) / 100.0));
    };
    return common::rgbColour(mix(common::redOf(a), common::redOf(b)),
                             mix(common::greenOf(a), common::greenOf(b)),
                             mix(common::blueOf(a), common::blueOf(b)));
}

void TprGradient::GenerateColors(const QPalette* palette)
{
    const TColor start = plainRgb(m_startColor, palette);
    const TColor end = plainRgb(m_endColor, palette);
    if (!HasMiddleColor()) {
        for (int i = 1; i <= 100; ++i) {
            m_table[std::size_t(i)] = Blend(start, end, i);
        }
        return;
    }
    const TColor middle = plainRgb(m_middleColor, palette);
    for (int i = 1; i <= 100; ++i) {
        m_table[std::size_t(i)] =
            i <= 50 ? Blend(start, middle, 2 * i) : Blend(middle, end, 2 * (i - 50));
    }
}

TColor TprGradient::GetColor(int p) const
{
    return m_table[std::size_t(qBound(1, p, 100))];
}

} // namespace kestrum::wordcloud
