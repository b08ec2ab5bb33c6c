// The image page's content reader under a fuzzer: any bytes are read as a stored bitmap; what
// reads is written back and must read again to the same picture.

#include "editors/image/BmpFile.h"

#include <QGuiApplication>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace kestrum::image;
    const QByteArray input(reinterpret_cast<const char*>(data), qsizetype(size));
    const kestrum::Result<QImage> read = BmpFile::read(input);
    if (!read.ok()) {
        if (read.error().isEmpty()) {
            std::abort();
        }
        return 0;
    }
    if (!read->isNull() && read->format() != QImage::Format_RGB888) {
        std::abort(); // every picture is held at 24 bits
    }
    const QByteArray written = BmpFile::write(*read);
    const kestrum::Result<QImage> again = BmpFile::read(written);
    if (!again.ok() || *again != *read) {
        std::abort();
    }
    return 0;
}
