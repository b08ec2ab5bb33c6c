// The chart stream reader under a fuzzer: any bytes are read or refused with a message; what
// is read writes back to the same chart and draws without trouble. Built as a libFuzzer
// target with clang (KESTRUM_FUZZ), and as a replay program that runs the stored corpus
// through the same entry point in every build.

#include "editors/chart/ChartRenderer.h"
#include "editors/chart/ChartStream.h"

#include <QGuiApplication>
#include <QImage>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace kestrum::chart;
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
    const kestrum::Result<Chart> chart = ChartStream::read(bytes);
    if (!chart) {
        if (chart.error().isEmpty()) {
            __builtin_trap(); // a refusal always says why
        }
        return 0;
    }
    const kestrum::Result<Chart> again = ChartStream::read(ChartStream::write(*chart));
    if (!again || !(*again == *chart)) {
        __builtin_trap();
    }
    if (chart->pointCount() <= 20000) {
        RenderOptions options;
        options.chartInfo = QStringLiteral("S\t\t\t12\x1E"
                                           "1\x1E"
                                           "2\x1E"
                                           "3\x1E"
                                           "0\x1E"
                                           "0\x1E"
                                           "0\x1E"
                                           "2");
        const QImage image = ChartRenderer::image(*chart, QSize(240, 160), options);
        if (image.isNull()) {
            __builtin_trap();
        }
    }
    return 0;
}
