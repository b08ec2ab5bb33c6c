#include "ColumnCodec.h"

#include <QtEndian>

#include <zlib.h>

#include <algorithm>

namespace kestrum::store::ColumnCodec {

namespace {
// deflate cannot expand data by more than about 1032:1.
constexpr qint64 kMaxDeflateRatio = 1100;
} // namespace

QByteArray compress(const QByteArray& plain, int level)
{
    if (plain.isEmpty()) {
        return {};
    }
    return qCompress(plain, level);
}

Result<QByteArray> decompress(const QByteArray& stored)
{
    if (stored.isEmpty()) {
        return QByteArray();
    }
    if (stored.size() < 4) {
        return fail(QStringLiteral("the stored value is truncated"));
    }
    const quint32 claimed = qFromBigEndian<quint32>(stored.constData());
    if (claimed == 0) {
        return QByteArray();
    }
    const qint64 streamBytes = stored.size() - 4;
    if (qint64(claimed) > kMaxPlainSize || qint64(claimed) > streamBytes * kMaxDeflateRatio + 64) {
        return fail(
            QStringLiteral("the stored value is damaged (impossible length %1)").arg(claimed));
    }
    // Inflated in bounded steps, never past the claimed size: a stream that would expand beyond
    // its header is refused as soon as it passes it, whatever it would have grown to. The
    // buffer grows with the output, so a lying header costs no more than the real data.
    constexpr qsizetype kStep = qsizetype(16) << 20;
    QByteArray plain(std::min<qsizetype>(qsizetype(claimed), kStep), Qt::Uninitialized);
    z_stream zs{};
    if (inflateInit(&zs) != Z_OK) {
        return fail(QStringLiteral("the stored value cannot be decompressed (out of memory)"));
    }
    zs.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(stored.constData() + 4));
    zs.avail_in = uInt(streamBytes);
    qsizetype produced = 0;
    int rc = Z_OK;
    while (rc == Z_OK) {
        if (produced == plain.size()) {
            if (produced == qsizetype(claimed)) {
                break; // full: the stream must end here
            }
            plain.resize(std::min<qsizetype>(qsizetype(claimed), produced * 2));
        }
        zs.next_out = reinterpret_cast<Bytef*>(plain.data() + produced);
        zs.avail_out = uInt(plain.size() - produced);
        rc = inflate(&zs, Z_NO_FLUSH);
        produced = plain.size() - qsizetype(zs.avail_out);
        if (rc == Z_BUF_ERROR && zs.avail_out > 0) {
            break; // truncated input
        }
        if (rc == Z_BUF_ERROR) {
            rc = Z_OK; // output full: grow and go on
        }
    }
    bool ok = rc == Z_STREAM_END && produced == qsizetype(claimed);
    if (rc == Z_OK && produced == qsizetype(claimed)) {
        // Nothing may follow the claimed bytes.
        unsigned char extra = 0;
        zs.next_out = &extra;
        zs.avail_out = 1;
        rc = inflate(&zs, Z_FINISH);
        ok = rc == Z_STREAM_END && zs.avail_out == 1;
    }
    inflateEnd(&zs);
    if (!ok) {
        return fail(QStringLiteral("the stored value is damaged (cannot decompress it)"));
    }
    return plain;
}

QByteArray compressText(const QString& text, int level)
{
    return compress(text.toUtf8(), level);
}

Result<QString> decompressText(const QByteArray& stored)
{
    Result<QByteArray> plain = decompress(stored);
    if (!plain) {
        return fail(plain.error());
    }
    return QString::fromUtf8(*plain);
}

} // namespace kestrum::store::ColumnCodec
