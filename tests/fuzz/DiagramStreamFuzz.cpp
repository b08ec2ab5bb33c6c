// libFuzzer target for the diagram stream (the content of diagram pages): any bytes end in a
// diagram or a message, and a diagram that was read writes back to bytes that read the same.

#include "editors/diagram/DiagramDocument.h"
#include "editors/diagram/DiagramStream.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace kestrum::diagram;
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
    const kestrum::Result<DiagramDocument> read = DiagramStream::read(bytes);
    if (read) {
        const QByteArray again = DiagramStream::write(*read);
        const kestrum::Result<DiagramDocument> back = DiagramStream::read(again);
        if (!back || !(*back == *read)) {
            __builtin_trap();
        }
        // Links only join blocks that exist.
        for (const DiagramLink& l : read->links()) {
            if (l.source < 0 || l.target < 0 || l.source >= int(read->blocks().size()) ||
                l.target >= int(read->blocks().size())) {
                __builtin_trap();
            }
        }
    } else if (read.error().isEmpty()) {
        __builtin_trap(); // a refusal always says why
    }
    return 0;
}
