#pragma once

#include <QtGlobal>

namespace kestrum::wordcloud {

// Inset of a cloud's drawing area from its client area.
class TprMargins
{
public:
    qint32 Left() const { return m_left; }
    qint32 Top() const { return m_top; }
    qint32 Right() const { return m_right; }
    qint32 Bottom() const { return m_bottom; }
    void SetLeft(qint32 v) { m_left = v; }
    void SetTop(qint32 v) { m_top = v; }
    void SetRight(qint32 v) { m_right = v; }
    void SetBottom(qint32 v) { m_bottom = v; }

    void Assign(const TprMargins& other) { *this = other; }

private:
    qint32 m_left = 10;
    qint32 m_top = 10;
    qint32 m_right = 10;
    qint32 m_bottom = 10;
};

} // namespace kestrum::wordcloud
