// libFuzzer target for word cloud page content from outside: the cloud document as the page
// document reads it (XML reader, word creation, visible prefix, fit to a drawing area) and
// writes it back.

#include "editors/wordcloud_page/CloudPageDocument.h"

#include <QByteArray>
#include <QGuiApplication>

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
    using kestrum::wordcloud_page::CloudPageDocument;
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    CloudPageDocument doc;
    if (const kestrum::Status read = doc.readContent(bytes); !read) {
        if (read.error().isEmpty() || doc.cloud().WordCount() != 0) {
            __builtin_trap(); // a refusal says why and leaves the page empty
        }
        return 0;
    }
    // What was read writes back and reads again to the same words.
    const kestrum::Result<QByteArray> written = doc.writeContent();
    if (!written) {
        __builtin_trap();
    }
    CloudPageDocument again;
    if (!again.readContent(*written) || again.cloud().WordCount() != doc.cloud().WordCount()) {
        __builtin_trap();
    }
    // Fitting into a drawing area of another size never fails.
    doc.fitToClient(QSize(123, 77));
    (void)doc.cloud().SaveToBitmap();
    return 0;
}
