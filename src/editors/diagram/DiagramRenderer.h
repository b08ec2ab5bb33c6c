#pragma once

#include "editors/diagram/DiagramItems.h"

#include <QFont>
#include <QImage>
#include <QLineF>
#include <QPainterPath>
#include <QRectF>
#include <QSize>

class QPainter;

namespace kestrum::diagram {

class DiagramDocument;

// Paints diagrams without widgets: the picture exports, printing and the editor's items all
// draw blocks and links through these functions, in drawing units (the painter's transform
// applies the zoom).
class DiagramRenderer
{
public:
    // Space around the diagram in pictures, in pixels.
    static constexpr double kMargin = 10;

    static QFont toQFont(const DiagramFont& font);
    static QPainterPath blockOutline(const DiagramBlock& block);
    static QRectF blockRect(const DiagramBlock& block);
    // The visible part of a link: from the edge of its source to the edge of its target (a
    // loop above the block when both are the same block).
    static QLineF linkLine(const DiagramBlock& source, const DiagramBlock& target);
    static QPainterPath linkLoop(const DiagramBlock& block);

    // `withText` false leaves the texts out (a surface zoomed too far out to read them).
    static void paintBlock(QPainter& painter, const DiagramBlock& block, bool showSelection,
                           bool withText = true);
    static void paintLink(QPainter& painter, const DiagramDocument& diagram,
                          const DiagramLink& link, bool showSelection, bool withText = true);
    // Whether texts of `font` are worth drawing at `scale` (pixels a drawing unit).
    static bool readableAt(const DiagramFont& font, double scale);
    // Every link, then every block (blocks cover link ends), in drawing units.
    static void paintItems(QPainter& painter, const DiagramDocument& diagram, bool showSelection);

    // The area that holds every block, link and text, in drawing units.
    static QRectF sceneBounds(const DiagramDocument& diagram);
    // A picture of the diagram at its zoom: its bounds scaled, plus the margin on every side.
    static QSize pictureSize(const DiagramDocument& diagram);
    // Paints the whole diagram as a picture (pictureSize) at the painter's origin.
    static void paintPicture(QPainter& painter, const DiagramDocument& diagram);
    // The picture on white.
    static QImage toImage(const DiagramDocument& diagram);
};

} // namespace kestrum::diagram
