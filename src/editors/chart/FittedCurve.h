#pragma once

#include <QPointF>
#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace kestrum::chart {

// The curve a host fitted to a point chart, carried in the page's chart-info text: fields
// separated by tabs; when field 1 is "S", field 4 holds sub-fields separated by character 30:
// "12", the coefficients c0..c5, then the model type.
class FittedCurve
{
public:
    // The value of x where the model gives none.
    static constexpr double kNoValue = -9999;
    static constexpr int kSamples = 101;

    int model = 0;
    std::array<double, 6> coefficients{};

    // The curve of a chart-info text; none when the text does not carry one (wrong fields, a
    // sub-field that is not a number).
    static std::optional<FittedCurve> fromChartInfo(const QString& info);
    // y at x by the model type: 0 linear, 1..4 polynomials of degree 2..5, 5 c0 + c1 / x,
    // 6 c0 + c1 ln x, 7 c0 e^(c1 x); kNoValue for other types.
    double valueAt(double x) const;
    // The 101 samples from `minimum` to `maximum` that have a value, in order.
    std::vector<QPointF> samples(double minimum, double maximum) const;
};

} // namespace kestrum::chart
