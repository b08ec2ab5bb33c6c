#pragma once

#include "common/Colour.h"

#include <QString>
#include <QtGlobal>

#include <vector>

namespace kestrum::diagram {

// Block outlines, as stored.
namespace BlockShape {
constexpr quint8 None = 0;
constexpr quint8 Rectangle = 1;
constexpr quint8 Ellipse = 2;
constexpr quint8 RoundRect = 3;
constexpr quint8 Diamond = 4;
constexpr quint8 RoundSquare = 5;
constexpr quint8 Last = RoundSquare;
} // namespace BlockShape

// Link pen styles, as stored (and as the style lists of the dialogs number them).
namespace PenStyle {
constexpr quint8 Solid = 0;
constexpr quint8 Dash = 1;
constexpr quint8 Dot = 2;
constexpr quint8 DashDot = 3;
constexpr quint8 DashDotDot = 4;
constexpr quint8 Last = DashDotDot;
} // namespace PenStyle

// Font style bits.
namespace FontStyle {
constexpr quint8 Bold = 1;
constexpr quint8 Italic = 2;
constexpr quint8 Underline = 4;
constexpr quint8 StrikeOut = 8;
constexpr quint8 All = 15;
} // namespace FontStyle

struct DiagramFont
{
    QString name = QStringLiteral("Segoe UI");
    int size = 8; // points
    quint8 style = 0;
    common::TColor colour = common::clBlack;

    bool operator==(const DiagramFont&) const = default;
};

// A text shown on a block or a link.
struct DiagramTextCell
{
    QString text;
    DiagramFont font;
    bool visible = true;

    bool operator==(const DiagramTextCell&) const = default;
};

struct DiagramBlock
{
    double left = 0;
    double top = 0;
    double width = 30;
    double height = 30;
    quint8 shape = BlockShape::Ellipse;
    // The fill is a vertical gradient from the start colour to the block's colour.
    common::TColor gradientStart = common::clWhite;
    common::TColor colour = common::clSilver;
    // The first cell holds the block's text and font.
    std::vector<DiagramTextCell> cells{DiagramTextCell{}};
    bool selected = false;

    bool operator==(const DiagramBlock&) const = default;
};

struct DiagramLink
{
    int source = 0; // block indices
    int target = 0;
    int penWidth = 1;
    common::TColor colour = common::clGray;
    quint8 style = PenStyle::Solid;
    // The first cell holds the link's text (its weight) and font.
    std::vector<DiagramTextCell> cells{DiagramTextCell{}};
    bool selected = false;

    bool operator==(const DiagramLink&) const = default;
};

} // namespace kestrum::diagram
