// libFuzzer target for the store's readers of outside bytes: the outline stream, compressed
// page columns, and whole project files. Built as a libFuzzer target with clang (KESTRUM_FUZZ),
// and as a replay program that runs the stored corpus in every build. The first byte chooses
// the reader.

#include "store/ColumnCodec.h"
#include "store/OutlineStream.h"
#include "store/ProjectReader.h"

#include <QByteArray>
#include <QDir>
#include <QFile>

#include <cstddef>
#include <cstdint>
#include <unistd.h>

using namespace kestrum::store;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1) {
        return 0;
    }
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data) + 1, qsizetype(size - 1));
    switch (data[0] % 3) {
    case 0: {
        const auto tree = OutlineStream::read(bytes);
        if (tree && *tree) {
            // What was read writes out and reads back to the same tree (reserved bits aside).
            const QByteArray written = OutlineStream::write(tree->get());
            const auto again = OutlineStream::read(written);
            if (!again || !*again || OutlineStream::write(again->get()) != written) {
                __builtin_trap();
            }
        } else if (tree ? !bytes.isEmpty() : tree.error().isEmpty()) {
            __builtin_trap(); // a refusal always says why
        }
        break;
    }
    case 1: {
        const auto plain = ColumnCodec::decompress(bytes);
        if (!plain && plain.error().isEmpty()) {
            __builtin_trap();
        }
        break;
    }
    default: {
        static const QString file =
            QDir::temp().filePath(QStringLiteral("kestrum-fuzz-%1.kst").arg(getpid()));
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            return 0;
        }
        out.write(bytes);
        out.close();
        ProjectReader reader;
        const kestrum::Status opened = reader.open(file);
        if (!opened) {
            if (opened.error().isEmpty()) {
                __builtin_trap(); // a refusal always says why
            }
            break;
        }
        const auto ids = reader.table().ids();
        if (!ids) {
            if (ids.error().isEmpty()) {
                __builtin_trap();
            }
            break;
        }
        for (qint32 id : ids.value()) {
            // Each column reads to a value or to a failure that says why.
            const auto content = reader.table().readContent(id);
            const auto info = reader.table().readInfo(id);
            const auto comment = reader.table().readComment(id);
            if ((!content.ok() && content.error().isEmpty()) ||
                (!info.ok() && info.error().isEmpty()) ||
                (!comment.ok() && comment.error().isEmpty())) {
                __builtin_trap();
            }
        }
        break;
    }
    }
    return 0;
}
