#pragma once

// A small reader of compound files and BIFF8 workbook streams, for the tests only: it follows
// the sector chains and the record stream written by XlsWriter the way a spreadsheet program
// does, so a broken chain, a bad record length or a split string shows up as a failed check.

#include <QByteArray>
#include <QStringList>
#include <QtEndian>

#include <cstring>
#include <map>
#include <vector>

namespace kestrum::grid::test {

struct XlsProbe
{
    QString error;
    QByteArray workbook;
    std::vector<quint16> recordTypes;
    QStringList sharedStrings;
    std::map<std::pair<int, int>, QString> labels; // (row, col) -> text
    std::map<std::pair<int, int>, double> numbers;

    QString label(int row, int col) const
    {
        const auto found = labels.find({row, col});
        return found == labels.end() ? QString() : found->second;
    }
    double number(int row, int col) const
    {
        const auto found = numbers.find({row, col});
        return found == numbers.end() ? -999999.0 : found->second;
    }

    static quint16 u16(const QByteArray& b, qsizetype at)
    {
        return qFromLittleEndian<quint16>(b.constData() + at);
    }
    static quint32 u32(const QByteArray& b, qsizetype at)
    {
        return qFromLittleEndian<quint32>(b.constData() + at);
    }

    bool fail(const QString& why)
    {
        error = why;
        return false;
    }

    bool readCompound(const QByteArray& file)
    {
        if (file.size() < 512 || !file.startsWith("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1")) {
            return fail(QStringLiteral("no compound file signature"));
        }
        const int sectorSize = 1 << u16(file, 30);
        const int miniSize = 1 << u16(file, 32);
        const quint32 fatCount = u32(file, 44);
        const quint32 dirStart = u32(file, 48);
        const quint32 cutoff = u32(file, 56);
        const quint32 miniFatStart = u32(file, 60);
        quint32 difat = u32(file, 68);
        auto sector = [&](quint32 n) {
            return file.mid(qsizetype(n + 1) * sectorSize, sectorSize);
        };
        std::vector<quint32> fatSectors;
        for (int i = 0; i < 109 && fatSectors.size() < fatCount; ++i) {
            fatSectors.push_back(u32(file, 76 + i * 4));
        }
        while (difat < 0xFFFFFFFA && fatSectors.size() < fatCount) {
            const QByteArray s = sector(difat);
            for (int i = 0; i < sectorSize / 4 - 1 && fatSectors.size() < fatCount; ++i) {
                fatSectors.push_back(u32(s, i * 4));
            }
            difat = u32(s, sectorSize - 4);
        }
        std::vector<quint32> fat;
        for (const quint32 f : fatSectors) {
            const QByteArray s = sector(f);
            if (s.size() != sectorSize) {
                return fail(QStringLiteral("FAT sector %1 past the end").arg(f));
            }
            for (int i = 0; i < sectorSize / 4; ++i) {
                fat.push_back(u32(s, i * 4));
            }
        }
        auto chain = [&](quint32 start, QByteArray* out) {
            std::size_t guard = 0;
            for (quint32 s = start; s < 0xFFFFFFFA; s = fat[s]) {
                if (s >= fat.size() || ++guard > fat.size()) {
                    return false;
                }
                out->append(sector(s));
            }
            return true;
        };
        QByteArray dir;
        if (!chain(dirStart, &dir)) {
            return fail(QStringLiteral("broken directory chain"));
        }
        quint32 rootStart = 0, rootSize = 0, bookStart = 0, bookSize = 0;
        bool found = false;
        for (qsizetype at = 0; at + 128 <= dir.size(); at += 128) {
            const int nameBytes = u16(dir, at + 64);
            QString name;
            for (int i = 0; i + 2 < nameBytes; i += 2) {
                name += QChar(u16(dir, at + i));
            }
            if (dir[at + 66] == 5) {
                rootStart = u32(dir, at + 116);
                rootSize = u32(dir, at + 120);
            } else if (dir[at + 66] == 2 && name == QLatin1String("Workbook")) {
                bookStart = u32(dir, at + 116);
                bookSize = u32(dir, at + 120);
                found = true;
            }
        }
        if (!found) {
            return fail(QStringLiteral("no Workbook stream"));
        }
        if (bookSize < cutoff) {
            QByteArray ministream, minifatBytes;
            if (!chain(rootStart, &ministream) || !chain(miniFatStart, &minifatBytes)) {
                return fail(QStringLiteral("broken mini stream"));
            }
            if (quint32(ministream.size()) < rootSize) {
                return fail(QStringLiteral("mini stream shorter than the root entry says"));
            }
            std::size_t guard = 0;
            for (quint32 s = bookStart; s < 0xFFFFFFFA; s = u32(minifatBytes, qsizetype(s) * 4)) {
                if (qsizetype(s) * 4 >= minifatBytes.size() || ++guard > 100000) {
                    return fail(QStringLiteral("broken mini FAT chain"));
                }
                workbook.append(ministream.mid(qsizetype(s) * miniSize, miniSize));
            }
        } else if (!chain(bookStart, &workbook)) {
            return fail(QStringLiteral("broken Workbook chain"));
        }
        if (quint32(workbook.size()) < bookSize) {
            return fail(QStringLiteral("Workbook stream shorter than its entry says"));
        }
        workbook.truncate(bookSize);
        return true;
    }

    bool readBiff()
    {
        // Records, with CONTINUE records joined to the SST they continue (keeping the seams).
        std::vector<std::pair<quint16, QByteArray>> records;
        for (qsizetype at = 0; at + 4 <= workbook.size();) {
            const quint16 type = u16(workbook, at);
            const quint16 size = u16(workbook, at + 2);
            if (size > 8224 || at + 4 + size > workbook.size()) {
                return fail(
                    QStringLiteral("record 0x%1 at %2 has a bad length").arg(type, 0, 16).arg(at));
            }
            records.emplace_back(type, workbook.mid(at + 4, size));
            recordTypes.push_back(type);
            at += 4 + size;
        }
        for (std::size_t i = 0; i < records.size(); ++i) {
            const auto& [type, body] = records[i];
            if (type == 0x00FC) {
                std::vector<QByteArray> parts{body};
                for (std::size_t j = i + 1; j < records.size() && records[j].first == 0x003C; ++j) {
                    parts.push_back(records[j].second);
                }
                if (!readSst(parts)) {
                    return false;
                }
            } else if (type == 0x00FD) {
                const quint32 index = u32(body, 6);
                if (index >= quint32(sharedStrings.size())) {
                    return fail(QStringLiteral("label refers to string %1 of %2")
                                    .arg(index)
                                    .arg(sharedStrings.size()));
                }
                labels[{u16(body, 0), u16(body, 2)}] = sharedStrings[index];
            } else if (type == 0x0203) {
                double v;
                std::memcpy(&v, body.constData() + 6, 8);
                numbers[{u16(body, 0), u16(body, 2)}] = v;
            }
        }
        return true;
    }

    bool readSst(const std::vector<QByteArray>& parts)
    {
        std::size_t part = 0;
        qsizetype at = 8;
        const quint32 unique = u32(parts[0], 4);
        for (quint32 n = 0; n < unique; ++n) {
            if (at >= parts[part].size()) {
                ++part;
                at = 0;
            }
            if (part >= parts.size() || at + 3 > parts[part].size()) {
                return fail(QStringLiteral("string %1 header split or missing").arg(n));
            }
            const int count = u16(parts[part], at);
            bool wide = parts[part][at + 2] & 1;
            at += 3;
            QString s;
            while (s.size() < count) {
                if (at >= parts[part].size()) {
                    ++part;
                    if (part >= parts.size()) {
                        return fail(QStringLiteral("string %1 runs past the table").arg(n));
                    }
                    wide = parts[part][0] & 1;
                    at = 1;
                }
                if (wide) {
                    s += QChar(u16(parts[part], at));
                    at += 2;
                } else {
                    s += QChar(uchar(parts[part][at]));
                    at += 1;
                }
            }
            sharedStrings << s;
        }
        return true;
    }
};

} // namespace kestrum::grid::test
