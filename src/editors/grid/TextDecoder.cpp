#include "TextDecoder.h"

#include <QStringDecoder>

#include <array>

namespace kestrum::grid {

namespace {

// Windows-1252 0x80..0x9F; the five unassigned bytes map to the C1 controls, as Latin-1.
constexpr std::array<char16_t, 32> kCp1252High{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

bool isValidUtf8(const QByteArray& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(bytes);
    return !decoder.hasError();
}

} // namespace

TextDecoder::Encoding TextDecoder::detect(const QByteArray& bytes)
{
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        return Encoding::Utf8Bom;
    }
    if (bytes.startsWith("\xFF\xFE")) {
        return Encoding::Utf16LE;
    }
    if (bytes.startsWith("\xFE\xFF")) {
        return Encoding::Utf16BE;
    }
    return isValidUtf8(bytes) ? Encoding::Utf8 : Encoding::Local8Bit;
}

QString TextDecoder::fromWindows1252(const QByteArray& bytes)
{
    QString out(bytes.size(), Qt::Uninitialized);
    QChar* to = out.data();
    for (const char ch : bytes) {
        const auto b = quint8(ch);
        *to++ = (b >= 0x80 && b <= 0x9F) ? QChar(kCp1252High[b - 0x80]) : QChar(b);
    }
    return out;
}

QString TextDecoder::decode(const QByteArray& bytes, Encoding* used)
{
    Encoding encoding = Encoding::Local8Bit;
    if (bytes.startsWith("\xEF\xBB\xBF") || bytes.startsWith("\xFF\xFE") ||
        bytes.startsWith("\xFE\xFF")) {
        encoding = detect(bytes);
    } else {
        // One pass: decode as UTF-8 and fall back when that fails.
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        QString text = utf8.decode(bytes);
        if (!utf8.hasError()) {
            if (used) {
                *used = Encoding::Utf8;
            }
            return text;
        }
    }
    if (used) {
        *used = encoding;
    }
    switch (encoding) {
    case Encoding::Utf8:
        return QString::fromUtf8(bytes);
    case Encoding::Utf8Bom:
        return QString::fromUtf8(bytes.constData() + 3, bytes.size() - 3);
    case Encoding::Utf16LE: {
        QStringDecoder decoder(QStringDecoder::Utf16LE);
        return decoder.decode(QByteArrayView(bytes).sliced(2));
    }
    case Encoding::Utf16BE: {
        QStringDecoder decoder(QStringDecoder::Utf16BE);
        return decoder.decode(QByteArrayView(bytes).sliced(2));
    }
    case Encoding::Local8Bit:
        break;
    }
#ifdef Q_OS_WIN
    QStringDecoder system(QStringDecoder::System);
    return system.decode(bytes);
#else
    return fromWindows1252(bytes);
#endif
}

bool TextDecoder::looksBinary(const QByteArray& bytes, Encoding encoding)
{
    if (encoding == Encoding::Utf16LE || encoding == Encoding::Utf16BE) {
        return false;
    }
    return bytes.contains('\0');
}

} // namespace kestrum::grid
