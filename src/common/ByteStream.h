#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

namespace kestrum::common {

// Little-endian writer for the binary content formats.
class ByteWriter
{
public:
    void u8(quint8 v) { m_data.append(char(v)); }
    void u16(quint16 v);
    void u32(quint32 v);
    void i32(qint32 v) { u32(quint32(v)); }
    void i64(qint64 v);
    void f64(double v);
    void bytes(const QByteArray& v); // u32 length, then the bytes
    void string(const QString& v);   // UTF-8, u32 byte length first
    void raw(const char* data, qsizetype size) { m_data.append(data, size); }
    void raw(const QByteArray& data) { m_data.append(data); }

    const QByteArray& data() const { return m_data; }
    QByteArray take() { return std::move(m_data); }
    void reserve(qsizetype n) { m_data.reserve(n); }

private:
    QByteArray m_data;
};

// Bounded little-endian reader: a read past the end, or a length that claims more bytes than
// remain, fails once and sticks (every later read returns zero/empty), so a reader of outside
// bytes checks ok() at the points that matter and never over-reads or over-allocates.
class ByteReader
{
public:
    explicit ByteReader(const QByteArray& data) : m_data(data) {}

    quint8 u8();
    quint16 u16();
    quint32 u32();
    qint32 i32() { return qint32(u32()); }
    qint64 i64();
    double f64();
    QByteArray bytes(qsizetype maxSize = std::numeric_limits<qint32>::max());
    QString string(qsizetype maxBytes = 64 * 1024 * 1024);
    QByteArray raw(qsizetype size);

    bool ok() const { return m_error.isEmpty(); }
    const QString& error() const { return m_error; }
    void fail(const QString& why);
    qsizetype position() const { return m_pos; }
    qsizetype remaining() const { return m_data.size() - m_pos; }
    bool atEnd() const { return m_pos >= m_data.size(); }

private:
    bool take(qsizetype n);

    const QByteArray& m_data;
    qsizetype m_pos = 0;
    QString m_error;
};

} // namespace kestrum::common
