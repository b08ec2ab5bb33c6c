#include "RtfCodePage.h"

#include <QMutex>
#include <QStringDecoder>

#include <map>
#include <memory>

namespace kestrum::text {

namespace {

// The double-byte code pages and the names of their decoders.
constexpr int kCodePageJapanese = 932;
constexpr int kCodePageSimplifiedChinese = 936;
constexpr int kCodePageKorean = 949;
constexpr int kCodePageTraditionalChinese = 950;

QByteArray multiByteName(int codePage)
{
    switch (codePage) {
    case kCodePageJapanese:
        return "Shift_JIS";
    case kCodePageSimplifiedChinese:
        return "GBK";
    case kCodePageKorean:
        return "windows-949";
    case kCodePageTraditionalChinese:
        return "Big5";
    default:
        return {};
    }
}

QByteArray encodingName(int codePage)
{
    if (const QByteArray name = multiByteName(codePage); !name.isEmpty()) {
        return name;
    }
    if (codePage == 874 || (codePage >= 1250 && codePage <= 1258)) {
        return "windows-" + QByteArray::number(codePage);
    }
    switch (codePage) {
    case 437:
    case 850:
    case 852:
    case 855:
    case 857:
    case 860:
    case 861:
    case 862:
    case 863:
    case 865:
    case 866:
    case 869:
        return "IBM" + QByteArray::number(codePage);
    case 10000:
        return "macintosh";
    case 20866:
        return "KOI8-R";
    case 21866:
        return "KOI8-U";
    default:
        break;
    }
    if (codePage >= 28591 && codePage <= 28606) {
        return "ISO-8859-" + QByteArray::number(codePage - 28590);
    }
    return {};
}

} // namespace

RtfCodePage::RtfCodePage(int codePage) : m_codePage(codePage)
{
    for (int b = 0; b < 0x80; ++b) {
        m_table[std::size_t(b)] = char16_t(b);
    }
    if (codePage == kSymbol) {
        for (int b = 0x80; b < 0x100; ++b) {
            m_table[std::size_t(b)] = char16_t(0xF000 + b);
        }
        m_table[0xB7] = u'\u2022'; // bullet
        m_table[0xA7] = u'\u25AA'; // small square
        m_table[0xD8] = u'\u27A2'; // arrowhead
        m_table[0xFC] = u'\u2713'; // check mark
        return;
    }
    QByteArray name = encodingName(codePage);
    if (name.isEmpty()) {
        name = "windows-1252";
        m_codePage = 1252;
    }
    QStringDecoder probe(name.constData());
    if (!probe.isValid()) {
        name = "windows-1252";
        m_codePage = 1252;
    } else if (name == multiByteName(codePage)) {
        m_multiByteName = name;
    }
    for (int b = 0x80; b < 0x100; ++b) {
        QStringDecoder decoder(name.constData());
        const char byte = char(b);
        const QString s = decoder.isValid() ? decoder.decode(QByteArrayView(&byte, 1)) : QString();
        m_table[std::size_t(b)] = s.size() == 1 ? s[0].unicode() : char16_t(b);
    }
}

const RtfCodePage& RtfCodePage::get(int codePage)
{
    static QMutex mutex;
    static std::map<int, std::unique_ptr<RtfCodePage>> cache;
    QMutexLocker lock(&mutex);
    auto it = cache.find(codePage);
    if (it == cache.end()) {
        it = cache.emplace(codePage, std::unique_ptr<RtfCodePage>(new RtfCodePage(codePage))).first;
    }
    return *it->second;
}

int RtfCodePage::forCharset(int charset)
{
    switch (charset) {
    case 0:
        return 1252;
    case 2:
        return kSymbol;
    case 77:
        return 10000;
    case 128:
        return kCodePageJapanese;
    case 129:
        return kCodePageKorean;
    case 134:
        return kCodePageSimplifiedChinese;
    case 136:
        return kCodePageTraditionalChinese;
    case 161:
        return 1253;
    case 162:
        return 1254;
    case 163:
        return 1258;
    case 177:
        return 1255;
    case 178:
        return 1256;
    case 186:
        return 1257;
    case 204:
        return 1251;
    case 222:
        return 874;
    case 238:
        return 1250;
    case 255:
        return 437;
    default:
        return 0;
    }
}

bool RtfCodePage::isLeadByte(quint8 byte) const
{
    if (!isMultiByte()) {
        return false;
    }
    if (m_codePage == kCodePageJapanese) {
        return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
    }
    return byte >= 0x81 && byte <= 0xFE;
}

QString RtfCodePage::decodePair(quint8 lead, quint8 trail) const
{
    const quint16 key = quint16((lead << 8) | trail);
    QMutexLocker lock(&m_pairsMutex);
    auto it = m_pairs.constFind(key);
    if (it == m_pairs.cend()) {
        QStringDecoder decoder(m_multiByteName.constData());
        const char bytes[2] = {char(lead), char(trail)};
        it = m_pairs.insert(key, decoder.decode(QByteArrayView(bytes, 2)));
    }
    return it.value();
}

void RtfCodePage::append(QByteArrayView bytes, QString& out) const
{
    const qsizetype start = out.size();
    out.resize(start + bytes.size());
    QChar* dst = out.data() + start;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        dst[i] = QChar(m_table[quint8(bytes[i])]);
    }
}

} // namespace kestrum::text
