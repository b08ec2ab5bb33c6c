#include "FittedCurve.h"

#include <QStringList>

#include <cmath>

namespace kestrum::chart {

namespace {

// x to the integer power n: a negative x with an odd n stays negative.
double integerPower(double x, int n)
{
    double r = 1;
    for (int i = 0; i < n; ++i) {
        r *= x;
    }
    return r;
}

} // namespace

std::optional<FittedCurve> FittedCurve::fromChartInfo(const QString& info)
{
    const QStringList fields = info.split(QLatin1Char('\t'));
    if (fields.size() < 4 || fields[0] != QLatin1String("S")) {
        return std::nullopt;
    }
    QString packed = fields[3];
    packed.replace(QChar(30), QLatin1Char('\t'));
    const QStringList sub = packed.split(QLatin1Char('\t'));
    if (sub.size() < 8 || sub[0] != QLatin1String("12")) {
        return std::nullopt;
    }
    FittedCurve curve;
    bool ok = false;
    curve.model = sub[7].trimmed().toInt(&ok);
    if (!ok) {
        return std::nullopt;
    }
    for (int i = 0; i < 6; ++i) {
        const double c = sub[i + 1].trimmed().toDouble(&ok);
        if (!ok || !std::isfinite(c)) {
            return std::nullopt;
        }
        curve.coefficients[std::size_t(i)] = c;
    }
    return curve;
}

double FittedCurve::valueAt(double x) const
{
    const auto& c = coefficients;
    switch (model) {
    case 0:
        return c[0] + c[1] * x;
    case 1:
    case 2:
    case 3:
    case 4: {
        double y = c[0];
        for (int j = 1; j <= model + 1; ++j) {
            y += c[std::size_t(j)] * integerPower(x, j);
        }
        return y;
    }
    case 5:
        return x != 0 ? c[0] + c[1] / x : c[0];
    case 6:
        return x > 0 ? c[0] + c[1] * std::log(x) : c[0];
    case 7:
        return c[0] * std::exp(c[1] * x);
    default:
        return kNoValue;
    }
}

std::vector<QPointF> FittedCurve::samples(double minimum, double maximum) const
{
    std::vector<QPointF> out;
    const double step = (maximum - minimum) / 100;
    for (int i = 1; i <= kSamples; ++i) {
        const double x = (i - 1) * step + minimum;
        const double y = valueAt(x);
        if (y != kNoValue && std::isfinite(y)) {
            out.emplace_back(x, y);
        }
    }
    return out;
}

} // namespace kestrum::chart
