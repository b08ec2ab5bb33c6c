#pragma once

#include <cmath>
#include <cstdint>

namespace kestrum::common {

// Round to nearest, ties to even (banker's rounding), as every stored layout rule expects.
// Unlike qRound/std::round, 0.5 -> 0, 1.5 -> 2, 2.5 -> 2.
inline std::int64_t roundHalfEven(double value)
{
    return static_cast<std::int64_t>(std::nearbyint(value));
}

// Half of a pixel length, rounded up for odd values: n/2 + n mod 2, with division toward
// zero and the remainder keeping the sign of n (so half(-3) == -2, half(3) == 2).
constexpr int halfUp(int n)
{
    return n / 2 + n % 2;
}

// Truncation toward zero.
inline std::int64_t truncateToInt(double value)
{
    return static_cast<std::int64_t>(std::trunc(value));
}

} // namespace kestrum::common
