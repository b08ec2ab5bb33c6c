#include "RtfEmitter.h"

namespace kestrum::common {

namespace {

constexpr char kHex[] = "0123456789abcdef";

constexpr char16_t kDelete = 0x7F;
constexpr char16_t kNoBreakSpace = 0x00A0;
constexpr char16_t kSoftHyphen = 0x00AD;
constexpr char16_t kNoBreakHyphen = 0x2011;
constexpr char16_t kLineSeparator = 0x2028;
constexpr char16_t kParagraphSeparator = 0x2029;
constexpr char16_t kObjectReplacement = 0xFFFC;

// Unicode characters of Windows-1252 bytes 0x80..0x9F (0: the byte is unused).
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// The Windows-1252 byte of a character above ASCII; -1 when it has none.
int cp1252Byte(char16_t u)
{
    if (u >= 0xA0 && u <= 0xFF) {
        return u;
    }
    for (int i = 0; i < 32; ++i) {
        if (kCp1252High[i] == u && u != 0) {
            return 0x80 + i;
        }
    }
    return -1;
}

} // namespace

void RtfEmitter::clear()
{
    m_out.clear();
    m_delimit = false;
}

void RtfEmitter::hexByte(int value)
{
    m_out.append("\\'");
    m_out.append(kHex[(value >> 4) & 0xF]);
    m_out.append(kHex[value & 0xF]);
    m_delimit = false;
}

void RtfEmitter::hexData(QByteArrayView data, int perLine)
{
    if (m_delimit && !data.isEmpty()) {
        m_out.append(' ');
    }
    const qsizetype lines = perLine > 0 ? data.size() / perLine : 0;
    const qsizetype start = m_out.size();
    m_out.resize(start + data.size() * 2 + lines);
    char* out = m_out.data() + start;
    for (qsizetype i = 0; i < data.size(); ++i) {
        const auto b = quint8(data[i]);
        *out++ = kHex[b >> 4];
        *out++ = kHex[b & 0xF];
        if (perLine > 0 && (i + 1) % perLine == 0) {
            *out++ = '\n';
        }
    }
    m_out.resize(out - m_out.data());
    m_delimit = false;
}

void RtfEmitter::text(QStringView value)
{
    for (qsizetype i = 0; i < value.size(); ++i) {
        const char16_t u = value[i].unicode();
        if (u >= 0x20 && u < kDelete) {
            if (m_delimit) {
                m_out.append(' ');
                m_delimit = false;
            }
            if (u == '\\' || u == '{' || u == '}') {
                m_out.append('\\');
            }
            m_out.append(char(u));
            continue;
        }
        switch (u) {
        case u'\t':
            word("tab");
            continue;
        case u'\r':
            if (i + 1 < value.size() && value[i + 1] == u'\n') {
                ++i; // CR LF is one line break
            }
            word("line");
            continue;
        case u'\n':
        case kLineSeparator:
        case kParagraphSeparator:
            word("line");
            continue;
        case kNoBreakSpace:
            raw("\\~");
            continue;
        case kSoftHyphen:
            raw("\\-");
            continue;
        case kNoBreakHyphen:
            raw("\\_");
            continue;
        case kObjectReplacement:
            continue;
        default:
            break;
        }
        if (u < 0x20 || u == kDelete) {
            continue; // other control characters have no text of their own
        }
        const int b = cp1252Byte(u);
        if (b >= 0) {
            hexByte(b);
            continue;
        }
        // \uN takes a signed 16-bit number.
        m_out.append("\\u");
        m_out.append(QByteArray::number(int(qint16(u))));
        m_out.append('?');
        m_delimit = false;
    }
}

QByteArray RtfEmitter::escape(QStringView text)
{
    RtfEmitter emitter;
    emitter.text(text);
    return emitter.m_out;
}

} // namespace kestrum::common
