#include "GifWriter.h"

#include <unordered_map>

namespace kestrum::timeline {

namespace {

void u16(QByteArray& out, int v)
{
    out.append(char(v & 0xFF));
    out.append(char((v >> 8) & 0xFF));
}

// LSB-first bit packing into data sub-blocks of at most 255 bytes.
class CodeWriter
{
public:
    explicit CodeWriter(QByteArray& out) : m_out(out) {}
    void write(quint32 code, int bits)
    {
        m_bits |= code << m_count;
        m_count += bits;
        while (m_count >= 8) {
            byte(quint8(m_bits & 0xFF));
            m_bits >>= 8;
            m_count -= 8;
        }
    }
    void finish()
    {
        if (m_count > 0) {
            byte(quint8(m_bits & 0xFF));
        }
        flushBlock();
        m_out.append('\0'); // block terminator
    }

private:
    void byte(quint8 b)
    {
        m_block.append(char(b));
        if (m_block.size() == 255) {
            flushBlock();
        }
    }
    void flushBlock()
    {
        if (!m_block.isEmpty()) {
            m_out.append(char(m_block.size()));
            m_out.append(m_block);
            m_block.clear();
        }
    }
    QByteArray& m_out;
    QByteArray m_block;
    quint32 m_bits = 0;
    int m_count = 0;
};

void writeLzw(QByteArray& out, const QImage& indexed)
{
    constexpr int kMinCodeSize = 8;
    constexpr quint32 kClear = 1u << kMinCodeSize;
    constexpr quint32 kEnd = kClear + 1;
    constexpr quint32 kMaxCode = 4095;
    out.append(char(kMinCodeSize));
    CodeWriter codes(out);
    std::unordered_map<quint32, quint32> dictionary;
    int codeSize = kMinCodeSize + 1;
    quint32 last = kEnd;
    codes.write(kClear, codeSize);
    qint64 current = -1;
    for (int y = 0; y < indexed.height(); ++y) {
        const uchar* row = indexed.constScanLine(y);
        for (int x = 0; x < indexed.width(); ++x) {
            const quint32 value = row[x];
            if (current < 0) {
                current = value;
                continue;
            }
            const quint32 key = (quint32(current) << 8) | value;
            const auto found = dictionary.find(key);
            if (found != dictionary.end()) {
                current = found->second;
                continue;
            }
            codes.write(quint32(current), codeSize);
            dictionary.emplace(key, ++last);
            if (last >= (1u << codeSize)) {
                ++codeSize;
            }
            if (last == kMaxCode) {
                codes.write(kClear, codeSize);
                dictionary.clear();
                codeSize = kMinCodeSize + 1;
                last = kEnd;
            }
            current = value;
        }
    }
    if (current >= 0) {
        codes.write(quint32(current), codeSize);
    }
    codes.write(kEnd, codeSize);
    codes.finish();
}

} // namespace

QByteArray GifWriter::write(const QImage& image)
{
    QImage indexed = image.convertToFormat(QImage::Format_Indexed8, Qt::DiffuseDither);
    QByteArray out("GIF89a");
    u16(out, indexed.width());
    u16(out, indexed.height());
    out.append(char(0xF7)); // global colour table of 256 entries, 8 bits per primary
    out.append('\0');       // background colour index
    out.append('\0');       // pixel aspect ratio
    const QList<QRgb> table = indexed.colorTable();
    for (int i = 0; i < 256; ++i) {
        const QRgb c = i < table.size() ? table[i] : 0;
        out.append(char(qRed(c)));
        out.append(char(qGreen(c)));
        out.append(char(qBlue(c)));
    }
    out.append(char(0x2C)); // image descriptor
    u16(out, 0);
    u16(out, 0);
    u16(out, indexed.width());
    u16(out, indexed.height());
    out.append('\0'); // no local table, not interlaced
    writeLzw(out, indexed);
    out.append(char(0x3B)); // trailer
    return out;
}

} // namespace kestrum::timeline
