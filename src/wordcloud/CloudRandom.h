#pragma once

#include <QtGlobal>

#include <optional>

namespace kestrum::wordcloud {

// The layout's random generator (SplitMix64). It is re-seeded from the clock at fixed points of
// a layout; with a fixed seed the clock is replaced by that constant, as if time stood still,
// so that a layout is the same run after run.
class CloudRandom
{
public:
    void setFixedSeed(std::optional<quint64> seed) { m_fixedSeed = seed; }
    std::optional<quint64> fixedSeed() const { return m_fixedSeed; }

    // Seeds from the wall clock in milliseconds (or the fixed seed).
    void reseedFromClock();
    void seed(quint64 value) { m_state = value; }

    // A uniform integer in [0, n); 0 when n <= 0.
    qint32 nextInt(qint32 n);
    // A uniform integer in [a, b) (either order); a when a == b.
    qint32 range(qint32 a, qint32 b);

private:
    quint64 next();

    quint64 m_state = 0;
    std::optional<quint64> m_fixedSeed;
};

} // namespace kestrum::wordcloud
