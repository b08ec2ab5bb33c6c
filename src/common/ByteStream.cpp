#include "ByteStream.h"

#include <QtEndian>

#include <cstring>

namespace kestrum::common {

void ByteWriter::u16(quint16 v)
{
    char b[2];
    qToLittleEndian(v, b);
    m_data.append(b, 2);
}

void ByteWriter::u32(quint32 v)
{
    char b[4];
    qToLittleEndian(v, b);
    m_data.append(b, 4);
}

void ByteWriter::i64(qint64 v)
{
    char b[8];
    qToLittleEndian(v, b);
    m_data.append(b, 8);
}

void ByteWriter::f64(double v)
{
    quint64 bits;
    std::memcpy(&bits, &v, sizeof bits);
    i64(qint64(bits));
}

void ByteWriter::bytes(const QByteArray& v)
{
    u32(quint32(v.size()));
    m_data.append(v);
}

void ByteWriter::string(const QString& v)
{
    bytes(v.toUtf8());
}

void ByteReader::fail(const QString& why)
{
    if (m_error.isEmpty()) {
        m_error = why;
    }
    m_pos = m_data.size();
}

bool ByteReader::take(qsizetype n)
{
    if (!ok()) {
        return false;
    }
    if (n < 0 || n > remaining()) {
        fail(QStringLiteral("unexpected end of data at byte %1").arg(m_pos));
        return false;
    }
    return true;
}

quint8 ByteReader::u8()
{
    if (!take(1)) {
        return 0;
    }
    return quint8(m_data[m_pos++]);
}

quint16 ByteReader::u16()
{
    if (!take(2)) {
        return 0;
    }
    const quint16 v = qFromLittleEndian<quint16>(m_data.constData() + m_pos);
    m_pos += 2;
    return v;
}

quint32 ByteReader::u32()
{
    if (!take(4)) {
        return 0;
    }
    const quint32 v = qFromLittleEndian<quint32>(m_data.constData() + m_pos);
    m_pos += 4;
    return v;
}

qint64 ByteReader::i64()
{
    if (!take(8)) {
        return 0;
    }
    const qint64 v = qFromLittleEndian<qint64>(m_data.constData() + m_pos);
    m_pos += 8;
    return v;
}

double ByteReader::f64()
{
    const quint64 bits = quint64(i64());
    double v;
    std::memcpy(&v, &bits, sizeof v);
    return v;
}

QByteArray ByteReader::raw(qsizetype size)
{
    if (!take(size)) {
        return {};
    }
    QByteArray out(m_data.constData() + m_pos, size);
    m_pos += size;
    return out;
}

QByteArray ByteReader::bytes(qsizetype maxSize)
{
    const quint32 size = u32();
    if (!ok()) {
        return {};
    }
    if (qsizetype(size) > maxSize) {
        fail(QStringLiteral("a field of %1 bytes at byte %2 exceeds the limit of %3")
                 .arg(size)
                 .arg(m_pos - 4)
                 .arg(maxSize));
        return {};
    }
    return raw(qsizetype(size));
}

QString ByteReader::string(qsizetype maxBytes)
{
    return QString::fromUtf8(bytes(maxBytes));
}

} // namespace kestrum::common
