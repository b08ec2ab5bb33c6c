#pragma once

#include "common/Result.h"

#include <QByteArray>
#include <QString>

namespace kestrum::diagram {

class DiagramDocument;

// Pictures of a diagram as files and as bytes: PNG, JPEG, BMP, SVG and PDF, and the pieces the
// report exports and the global find take. Files are written to a temporary name and renamed
// into place.
class DiagramExporter
{
public:
    // The format chosen by the file's extension (png, jpg/jpeg, bmp, svg, pdf).
    static Status writeFile(const DiagramDocument& diagram, const QString& fileName);
    static QByteArray png(const DiagramDocument& diagram);
    static QByteArray svg(const DiagramDocument& diagram);
    // The picture in an RTF document of its own (a PNG picture group).
    static QByteArray rtf(const DiagramDocument& diagram);
    // The texts of the blocks, then of the links, one a line: what a find looks through.
    static QString text(const DiagramDocument& diagram);
};

} // namespace kestrum::diagram
