// libFuzzer target for the readers of grid content from outside: the grid stream (page
// content), the .WGF file and delimited-text import. Built as a libFuzzer target with clang
// (KESTRUM_FUZZ), and as a replay program that runs the stored corpus in every build.

#include "editors/grid/DelimitedTextReader.h"
#include "editors/grid/GridDocument.h"
#include "editors/grid/GridStream.h"
#include "editors/grid/WgfFile.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
    kestrum::grid::GridDocument grid;
    if (const kestrum::Status read = kestrum::grid::GridStream::read(bytes, &grid)) {
        // What was read writes back to the same bytes' meaning.
        kestrum::grid::GridDocument again;
        if (!kestrum::grid::GridStream::read(kestrum::grid::GridStream::write(grid), &again) ||
            !again.sameContent(grid)) {
            __builtin_trap();
        }
    } else if (read.error().isEmpty()) {
        __builtin_trap(); // a refusal always says why
    }
    static_cast<void>(kestrum::grid::WgfFile::decode(bytes, &grid));
    if (size > 0 && data[0] == ',') {
        static_cast<void>(
            kestrum::grid::DelimitedTextReader::load(bytes.mid(1), QLatin1Char(','), &grid));
    }
    return 0;
}
