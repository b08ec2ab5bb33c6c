#include "CloudRandom.h"

#include <QDateTime>

#include <algorithm>

namespace kestrum::wordcloud {

void CloudRandom::reseedFromClock()
{
    m_state = m_fixedSeed ? *m_fixedSeed : quint64(QDateTime::currentMSecsSinceEpoch());
}

quint64 CloudRandom::next()
{
    m_state += 0x9E3779B97F4A7C15ull;
    quint64 z = m_state;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

qint32 CloudRandom::nextInt(qint32 n)
{
    if (n <= 0) {
        return 0;
    }
    return qint32(((next() >> 32) * quint64(n)) >> 32);
}

qint32 CloudRandom::range(qint32 a, qint32 b)
{
    const qint64 lo = std::min(a, b);
    const qint64 span = qint64(std::max(a, b)) - lo;
    if (span == 0) {
        return a;
    }
    return qint32(lo + qint64(((next() >> 32) * quint64(span)) >> 32));
}

} // namespace kestrum::wordcloud
