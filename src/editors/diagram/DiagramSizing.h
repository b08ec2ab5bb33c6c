#pragma once

#include "common/Result.h"

#include <QString>

namespace kestrum::diagram {

class DiagramDocument;

// The values of the sizing dialog, kept for the session, and what each of its sliders does to
// a diagram.
struct SizingValues
{
    int nodeSize = 30;
    int nodeTextSize = 8;
    int linkTextSize = 5;
    // The link slider's position / 10.
    double edgeFactor = 1.0;
    // The link-width formula's reduction and scale.
    double reduction = 0.01;
    double scale = 1.0;
};

class DiagramSizing
{
public:
    // round(0.4 x weight x 10 x (1 - R) x edge factor x K), to nearest with ties to even;
    // with the defaults round(3.96 x weight). Saturates at the integer range.
    static int GetEdgeSize(const SizingValues& values, double weight);

    // "Node:": every block nodeSize by nodeSize, its text at nodeTextSize.
    static void applyNodeSize(DiagramDocument& diagram, const SizingValues& values);
    // "Node Text:": every block's text at nodeTextSize.
    static void applyNodeTextSize(DiagramDocument& diagram, const SizingValues& values);
    // "Link Text:": every link's text at linkTextSize.
    static void applyLinkTextSize(DiagramDocument& diagram, const SizingValues& values);
    // "Link:": each link's pen width from its weight (the number in its text). A width of 0
    // becomes 1 and turns the first link light grey (0xC0C0C0); any other width turns the
    // first link grey (0x808080): the colour always goes to the first link. Widths are kept
    // within 0 to the largest pen a diagram stores. A text that is not a number stops the
    // pass with the number reader's message; the links before it keep their new widths.
    static Status applyLinkWidths(DiagramDocument& diagram, const SizingValues& values);

    // The number reader: the user's locale, then the C locale; "'x' is not a valid floating
    // point value" when neither reads it.
    static Result<double> readWeight(const QString& text);
};

} // namespace kestrum::diagram
