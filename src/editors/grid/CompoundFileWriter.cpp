#include "CompoundFileWriter.h"

#include <QtEndian>

#include <cstring>

#include <vector>

namespace kestrum::grid {

namespace {

constexpr quint32 kFreeSect = 0xFFFFFFFF;
constexpr quint32 kEndOfChain = 0xFFFFFFFE;
constexpr quint32 kFatSect = 0xFFFFFFFD;
constexpr quint32 kDifSect = 0xFFFFFFFC;
constexpr quint32 kNoStream = 0xFFFFFFFF;
constexpr int kEntriesPerSector = CompoundFileWriter::kSectorSize / 4;
constexpr int kHeaderDifatEntries = 109;

void put16(QByteArray& b, qsizetype at, quint16 v)
{
    qToLittleEndian(v, b.data() + at);
}

void put32(QByteArray& b, qsizetype at, quint32 v)
{
    qToLittleEndian(v, b.data() + at);
}

int sectorsFor(qint64 bytes, int size)
{
    return int((bytes + size - 1) / size);
}

// A 128-byte directory entry.
QByteArray directoryEntry(const QString& name, quint8 type, quint32 child, quint32 start,
                          quint32 size)
{
    QByteArray e(128, '\0');
    const QString n = name.left(31);
    for (int i = 0; i < n.size(); ++i) {
        put16(e, i * 2, n[i].unicode());
    }
    put16(e, 64, quint16((n.size() + 1) * 2));
    e[66] = char(type);
    e[67] = 1; // black
    put32(e, 68, kNoStream);
    put32(e, 72, kNoStream);
    put32(e, 76, child);
    put32(e, 116, start);
    put32(e, 120, size);
    return e;
}

QByteArray unusedEntry()
{
    QByteArray e(128, '\0');
    put32(e, 68, kNoStream);
    put32(e, 72, kNoStream);
    put32(e, 76, kNoStream);
    return e;
}

} // namespace

QByteArray CompoundFileWriter::build(const QString& streamName, const QByteArray& stream)
{
    const bool mini = stream.size() < kMiniStreamCutoff;
    // Sector plan: [stream or mini-stream container][mini FAT][directory][FAT][DIFAT].
    const int dataSectors =
        mini ? sectorsFor(sectorsFor(stream.size(), kMiniSectorSize) * kMiniSectorSize, kSectorSize)
             : sectorsFor(stream.size(), kSectorSize);
    const int miniSectors = mini ? sectorsFor(stream.size(), kMiniSectorSize) : 0;
    const int miniFatSectors = mini ? std::max(1, sectorsFor(miniSectors * 4, kSectorSize)) : 0;
    const int dirSectors = 1;
    int fatSectors = 1;
    int difatSectors = 0;
    for (;;) {
        const int total = dataSectors + miniFatSectors + dirSectors + fatSectors + difatSectors;
        const int neededFat = sectorsFor(qint64(total) * 4, kSectorSize);
        const int neededDifat =
            neededFat > kHeaderDifatEntries
                ? sectorsFor(neededFat - kHeaderDifatEntries, kEntriesPerSector - 1)
                : 0;
        if (neededFat == fatSectors && neededDifat == difatSectors) {
            break;
        }
        fatSectors = neededFat;
        difatSectors = neededDifat;
    }
    const quint32 firstData = 0;
    const quint32 firstMiniFat = quint32(dataSectors);
    const quint32 firstDir = firstMiniFat + quint32(miniFatSectors);
    const quint32 firstFat = firstDir + quint32(dirSectors);
    const quint32 firstDifat = firstFat + quint32(fatSectors);
    const int totalSectors = int(firstDifat) + difatSectors;

    // FAT.
    std::vector<quint32> fat(std::size_t(fatSectors) * kEntriesPerSector, kFreeSect);
    auto chain = [&fat](quint32 first, int count) {
        for (int i = 0; i < count; ++i) {
            fat[first + quint32(i)] = i + 1 < count ? first + quint32(i) + 1 : kEndOfChain;
        }
    };
    chain(firstData, dataSectors);
    chain(firstMiniFat, miniFatSectors);
    chain(firstDir, dirSectors);
    for (int i = 0; i < fatSectors; ++i) {
        fat[firstFat + quint32(i)] = kFatSect;
    }
    for (int i = 0; i < difatSectors; ++i) {
        fat[firstDifat + quint32(i)] = kDifSect;
    }

    QByteArray out(kSectorSize * (1 + totalSectors), '\0');
    // Header.
    static const char signature[8] = {'\xD0', '\xCF', '\x11', '\xE0',
                                      '\xA1', '\xB1', '\x1A', '\xE1'};
    std::memcpy(out.data(), signature, 8);
    put16(out, 24, 0x003E);
    put16(out, 26, 0x0003);
    put16(out, 28, 0xFFFE);
    put16(out, 30, 9);
    put16(out, 32, 6);
    put32(out, 40, 0);
    put32(out, 44, quint32(fatSectors));
    put32(out, 48, firstDir);
    put32(out, 52, 0);
    put32(out, 56, kMiniStreamCutoff);
    put32(out, 60, mini ? firstMiniFat : kEndOfChain);
    put32(out, 64, quint32(miniFatSectors));
    put32(out, 68, difatSectors ? firstDifat : kEndOfChain);
    put32(out, 72, quint32(difatSectors));
    for (int i = 0; i < kHeaderDifatEntries; ++i) {
        put32(out, 76 + i * 4, i < fatSectors ? firstFat + quint32(i) : kFreeSect);
    }
    auto sectorOffset = [](quint32 sector) {
        return qsizetype(kSectorSize) * (qsizetype(sector) + 1);
    };

    // Stream data (or the mini-stream container holding it).
    std::memcpy(out.data() + sectorOffset(firstData), stream.constData(),
                std::size_t(stream.size()));

    // Mini FAT.
    if (mini) {
        for (int i = 0; i < miniFatSectors * kEntriesPerSector; ++i) {
            quint32 v = kFreeSect;
            if (i < miniSectors) {
                v = i + 1 < miniSectors ? quint32(i + 1) : kEndOfChain;
            }
            put32(out, sectorOffset(firstMiniFat) + i * 4, v);
        }
    }

    // Directory: the root entry (which holds the mini stream) and the stream.
    QByteArray dir;
    dir += directoryEntry(QStringLiteral("Root Entry"), 5, 1, mini ? firstData : kEndOfChain,
                          mini ? quint32(miniSectors * kMiniSectorSize) : 0);
    dir += directoryEntry(streamName, 2, kNoStream, mini ? 0 : firstData, quint32(stream.size()));
    dir += unusedEntry();
    dir += unusedEntry();
    std::memcpy(out.data() + sectorOffset(firstDir), dir.constData(), std::size_t(dir.size()));

    // FAT sectors.
    for (std::size_t i = 0; i < fat.size(); ++i) {
        put32(out, sectorOffset(firstFat) + qsizetype(i) * 4, fat[i]);
    }

    // DIFAT sectors: FAT sector numbers beyond the header's 109, 127 a sector, then the link.
    for (int d = 0; d < difatSectors; ++d) {
        const qsizetype base = sectorOffset(firstDifat + quint32(d));
        for (int i = 0; i < kEntriesPerSector - 1; ++i) {
            const int fatIndex = kHeaderDifatEntries + d * (kEntriesPerSector - 1) + i;
            put32(out, base + i * 4,
                  fatIndex < fatSectors ? firstFat + quint32(fatIndex) : kFreeSect);
        }
        put32(out, base + (kEntriesPerSector - 1) * 4,
              d + 1 < difatSectors ? firstDifat + quint32(d) + 1 : kEndOfChain);
    }
    return out;
}

} // namespace kestrum::grid
