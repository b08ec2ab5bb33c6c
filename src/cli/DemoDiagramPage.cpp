#include "DemoDiagramPage.h"

#include "editors/diagram/DiagramBlockStyles.h"
#include "editors/diagram/DiagramDocument.h"
#include "editors/diagram/DiagramSizing.h"
#include "editors/diagram/DiagramStream.h"

#include <QLocale>
#include <QPointF>

#include <cmath>
#include <numbers>

namespace kestrum::cli {

namespace {

using namespace kestrum::diagram;

struct Node
{
    const char* text;
    int parent; // the block it leads to (-1: the target)
    double weight;
};

DiagramBlock block(const QString& text, const QPointF& centre, const BlockStyle& style)
{
    DiagramBlock b;
    b.width = style.size;
    b.height = style.size;
    b.left = centre.x() - b.width / 2;
    b.top = centre.y() - b.height / 2;
    b.shape = DiagramBlockStyles::shapeForIndex(style.shapeIndex);
    b.colour = style.colour;
    b.cells.front().text = text;
    b.cells.front().font = style.font;
    return b;
}

QPointF onCircle(double radius, double angle)
{
    return {400 + radius * std::cos(angle), 320 + radius * std::sin(angle)};
}

} // namespace

QByteArray demoConceptDiagram()
{
    DiagramBlockStyles styles;
    styles.groups()[DiagramBlockStyles::kTargets].size = 70;
    styles.groups()[DiagramBlockStyles::kTargets].font.style = FontStyle::Bold;
    styles.groups()[DiagramBlockStyles::kTargets].font.size = 10;
    styles.groups()[DiagramBlockStyles::kLevel1].size = 56;
    styles.groups()[DiagramBlockStyles::kLevel2].size = 44;
    styles.groups()[DiagramBlockStyles::kLevel2].shapeIndex = 3;

    const Node level1[] = {{"Communication rhythms", -1, 1.4},
                           {"Isolation", -1, 1.9},
                           {"Onboarding", -1, 0.9},
                           {"Trust", -1, 1.2},
                           {"Informal contact", -1, 0.6}};
    const Node level2[] = {{"Video calls", 0, 0.8},   {"Quiet hours", 0, 0.5},
                           {"Newcomers", 1, 1.1},     {"Office days", 1, 0.4},
                           {"Mentoring", 2, 0.7},     {"Shared goals", 3, 0.3},
                           {"Chat channels", 4, 0.1}, {"Coffee breaks", 4, 0.25}};

    DiagramDocument d;
    auto& blocks = d.blocks();
    blocks.push_back(block(QStringLiteral("Belonging"), onCircle(0, 0),
                           styles.groups()[DiagramBlockStyles::kTargets]));
    const int l1Count = int(std::size(level1));
    for (int i = 0; i < l1Count; ++i) {
        const double angle = 2 * std::numbers::pi * i / l1Count - std::numbers::pi / 2;
        blocks.push_back(block(QString::fromUtf8(level1[i].text), onCircle(150, angle),
                               styles.groups()[DiagramBlockStyles::kLevel1]));
    }
    const int l2Count = int(std::size(level2));
    for (int i = 0; i < l2Count; ++i) {
        // Beside the theme it leads to, spread among that theme's other codes.
        int sibling = 0;
        int siblings = 0;
        for (int j = 0; j < l2Count; ++j) {
            if (level2[j].parent == level2[i].parent) {
                sibling += j < i ? 1 : 0;
                ++siblings;
            }
        }
        const double angle = 2 * std::numbers::pi * level2[i].parent / l1Count -
                             std::numbers::pi / 2 + 0.45 * (sibling - (siblings - 1) / 2.0);
        blocks.push_back(block(QString::fromUtf8(level2[i].text), onCircle(280, angle),
                               styles.groups()[DiagramBlockStyles::kLevel2]));
    }

    const SizingValues sizing;
    const auto link = [&](int source, int target, double weight) {
        DiagramLink l;
        l.source = source;
        l.target = target;
        l.cells.front().text = QLocale::c().toString(weight);
        l.cells.front().font = styles.links().font;
        d.links().push_back(l);
    };
    for (int i = 0; i < l1Count; ++i) {
        link(1 + i, 0, level1[i].weight);
    }
    for (int i = 0; i < l2Count; ++i) {
        link(1 + l1Count + i, 1 + level2[i].parent, level2[i].weight);
    }
    // Widths from the weights, as the sizing dialog's link slider sets them.
    (void)DiagramSizing::applyLinkWidths(d, sizing);
    return DiagramStream::write(d);
}

} // namespace kestrum::cli
