#include "DiagramSizing.h"

#include "common/Colour.h"
#include "common/Rounding.h"
#include "editors/diagram/DiagramDocument.h"
#include "editors/diagram/DiagramStream.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace kestrum::diagram {

namespace {

constexpr common::TColor kThinLinkColour = 0xC0C0C0;
constexpr common::TColor kLinkColour = 0x808080;

int clampedFontSize(int size)
{
    return std::clamp(size, 1, DiagramStream::kMaxFontSize);
}

} // namespace

int DiagramSizing::GetEdgeSize(const SizingValues& values, double weight)
{
    const double w = 0.4 * weight * 10 * (1 - values.reduction) * values.edgeFactor * values.scale;
    if (std::isnan(w)) {
        return 0;
    }
    constexpr double kMax = std::numeric_limits<int>::max();
    constexpr double kMin = std::numeric_limits<int>::min();
    return int(common::roundHalfEven(std::clamp(w, kMin, kMax)));
}

void DiagramSizing::applyNodeSize(DiagramDocument& diagram, const SizingValues& values)
{
    const double size = std::clamp(double(values.nodeSize), 0.0, DiagramStream::kMaxCoordinate);
    for (DiagramBlock& b : diagram.blocks()) {
        b.width = size;
        b.height = size;
        DiagramDocument::firstCell(b.cells).font.size = clampedFontSize(values.nodeTextSize);
    }
}

void DiagramSizing::applyNodeTextSize(DiagramDocument& diagram, const SizingValues& values)
{
    for (DiagramBlock& b : diagram.blocks()) {
        DiagramDocument::firstCell(b.cells).font.size = clampedFontSize(values.nodeTextSize);
    }
}

void DiagramSizing::applyLinkTextSize(DiagramDocument& diagram, const SizingValues& values)
{
    for (DiagramLink& l : diagram.links()) {
        DiagramDocument::firstCell(l.cells).font.size = clampedFontSize(values.linkTextSize);
    }
}

Result<double> DiagramSizing::readWeight(const QString& text)
{
    bool ok = false;
    const QString trimmed = text.trimmed();
    double v = QLocale::system().toDouble(trimmed, &ok);
    if (!ok) {
        v = QLocale::c().toDouble(trimmed, &ok);
    }
    if (!ok || !std::isfinite(v)) {
        return fail(QStringLiteral("'%1' is not a valid floating point value").arg(text));
    }
    return v;
}

Status DiagramSizing::applyLinkWidths(DiagramDocument& diagram, const SizingValues& values)
{
    auto& links = diagram.links();
    for (DiagramLink& link : links) {
        const DiagramTextCell* cell = DiagramDocument::firstCell(std::as_const(link.cells));
        const Result<double> weight = readWeight(cell ? cell->text : QString());
        if (!weight) {
            return fail(weight.error());
        }
        int w = GetEdgeSize(values, *weight);
        if (w == 0) {
            links.front().colour = kThinLinkColour;
            w = 1;
        } else {
            links.front().colour = kLinkColour;
        }
        link.penWidth = std::clamp(w, 0, DiagramStream::kMaxPenWidth);
    }
    return {};
}

} // namespace kestrum::diagram
