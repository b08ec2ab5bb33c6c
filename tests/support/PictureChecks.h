#pragma once

#include <QImage>

namespace kestrum::test {

// Whether a picture read back from an export shows something: at least two colours that differ
// clearly (a blank or one-colour picture does not).
inline bool showsSomething(const QImage& image)
{
    if (image.isNull()) {
        return false;
    }
    const QRgb first = image.pixel(0, 0);
    for (int y = 0; y < image.height(); y += 2) {
        for (int x = 0; x < image.width(); x += 2) {
            const QRgb p = image.pixel(x, y);
            if (qAbs(qRed(p) - qRed(first)) + qAbs(qGreen(p) - qGreen(first)) +
                    qAbs(qBlue(p) - qBlue(first)) >
                96) {
                return true;
            }
        }
    }
    return false;
}

} // namespace kestrum::test
