#pragma once

#include "common/Result.h"
#include "editors/chart/Chart.h"
#include "editors/chart/ChartRenderer.h"

#include <QByteArray>
#include <QSize>
#include <QString>

namespace kestrum::chart {

// The file formats a chart is written to.
enum class ChartFileFormat
{
    Native, // the chart stream (".WSX")
    Bmp,
    Svg, // what the metafile entries write on this platform
    Png,
    Jpeg,
    Pdf,
};

// Writes charts to files (through a temporary name, renamed into place) and to picture bytes.
class ChartExporter
{
public:
    static constexpr QSize kDefaultSize{800, 500};

    // The format of a file extension ("png", ".WSX"); none for others.
    static std::optional<ChartFileFormat> formatForSuffix(const QString& suffix);
    static Status write(const Chart& chart, const QString& fileName, ChartFileFormat format,
                        QSize size = kDefaultSize, const RenderOptions& options = {});
    // The chart as picture bytes of a format (not Native, not Pdf).
    static Result<QByteArray> picture(const Chart& chart, ChartFileFormat format, QSize size,
                                      const RenderOptions& options = {});
    // A PDF document with the chart on one page, fitted within 5 mm margins.
    static QByteArray pdf(const Chart& chart, QSize size, const RenderOptions& options = {});
    // Reads a chart file (the native format).
    static Result<Chart> readFile(const QString& fileName);
};

} // namespace kestrum::chart
