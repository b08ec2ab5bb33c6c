#include "ColumnCodec.h"

#include <QtEndian>

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

std::optional<QByteArray> decompress(const QByteArray& stored, QString* error)
{
    if (stored.isEmpty()) {
        return QByteArray();
    }
    if (stored.size() < 4) {
        if (error) {
            *error = QStringLiteral("the stored value is truncated");
        }
        return std::nullopt;
    }
    const quint32 claimed = qFromBigEndian<quint32>(stored.constData());
    if (claimed == 0) {
        return QByteArray();
    }
    const qint64 streamBytes = stored.size() - 4;
    if (qint64(claimed) > kMaxPlainSize || qint64(claimed) > streamBytes * kMaxDeflateRatio + 64) {
        if (error) {
            *error = QStringLiteral("the stored value is damaged (impossible length %1)").arg(claimed);
        }
        return std::nullopt;
    }
    QByteArray plain = qUncompress(stored);
    if (plain.size() != qsizetype(claimed)) {
        if (error) {
            *error = QStringLiteral("the stored value is damaged (cannot decompress it)");
        }
        return std::nullopt;
    }
    return plain;
}

QByteArray compressText(const QString& text, int level)
{
    return compress(text.toUtf8(), level);
}

std::optional<QString> decompressText(const QByteArray& stored, QString* error)
{
    auto plain = decompress(stored, error);
    if (!plain) {
        return std::nullopt;
    }
    return QString::fromUtf8(*plain);
}

} // namespace kestrum::store::ColumnCodec
