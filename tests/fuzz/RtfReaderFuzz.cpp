// The RTF reader under a fuzzer: any bytes, read and written back, must neither crash nor hang.
// Built as a libFuzzer target with clang (KESTRUM_FUZZ), and as a replay program that runs the
// stored corpus through the same entry point in every build.

#include "editors/text/ColourTable.h"
#include "editors/text/RtfReader.h"
#include "editors/text/RtfWriter.h"

#include <QGuiApplication>
#include <QTextDocument>

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
    using namespace kestrum::text;
    QByteArray input(reinterpret_cast<const char*>(data), qsizetype(size));
    // Inputs that do not open as RTF would stop at the first check; make them RTF.
    if (!RtfReader::looksLikeRtf(input)) {
        input.prepend("{\\rtf1 ");
    }
    RtfReadOptions options;
    options.maxPictureBytes = 1 << 20;
    QTextDocument document;
    ColourTable colours;
    const RtfReadResult result = RtfReader(options).read(input, &document, &colours);
    if (result.ok) {
        const QByteArray written = RtfWriter(document, colours, result.pageLayout).write();
        // What was written reads again.
        QTextDocument again;
        ColourTable moreColours;
        if (!RtfReader(options).read(written, &again, &moreColours).ok) {
            __builtin_trap();
        }
    }
    return 0;
}
