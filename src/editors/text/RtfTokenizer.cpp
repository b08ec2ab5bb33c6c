#include "RtfTokenizer.h"

#include <algorithm>
#include <limits>

namespace kestrum::text {

namespace {

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

RtfToken make(RtfToken::Type type)
{
    RtfToken token;
    token.type = type;
    return token;
}

} // namespace

int hexDigitValue(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

RtfToken RtfTokenizer::next()
{
    const qsizetype n = m_input.size();
    const char* data = m_input.data();
    while (m_pos < n) {
        const char c = data[m_pos];
        switch (c) {
        case '{':
            ++m_pos;
            return make(RtfToken::Type::GroupStart);
        case '}':
            ++m_pos;
            return make(RtfToken::Type::GroupEnd);
        case '\\':
            return readControl();
        case '\r':
        case '\n':
        case '\0':
            // Line breaks in RTF text are not content; NUL bytes are noise.
            ++m_pos;
            continue;
        default: {
            const qsizetype start = m_pos;
            while (m_pos < n) {
                const char d = data[m_pos];
                if (d == '{' || d == '}' || d == '\\' || d == '\r' || d == '\n' || d == '\0') {
                    break;
                }
                ++m_pos;
            }
            RtfToken token = make(RtfToken::Type::Text);
            token.text = m_input.sliced(start, m_pos - start);
            return token;
        }
        }
    }
    return make(RtfToken::Type::End);
}

RtfToken RtfTokenizer::readControl()
{
    const qsizetype n = m_input.size();
    const char* data = m_input.data();
    ++m_pos; // the backslash
    if (m_pos >= n) {
        return make(RtfToken::Type::End);
    }
    const char c = data[m_pos];
    if (!isLetter(c)) {
        ++m_pos;
        if (c == '\'') {
            const int hi = m_pos < n ? hexDigitValue(data[m_pos]) : -1;
            const int lo = m_pos + 1 < n ? hexDigitValue(data[m_pos + 1]) : -1;
            if (hi < 0 || lo < 0) {
                // Broken escape: drop it and whatever hex digit it had.
                if (hi >= 0) {
                    ++m_pos;
                }
                RtfToken token = make(RtfToken::Type::ControlSymbol);
                token.symbol = '\0';
                return token;
            }
            m_pos += 2;
            RtfToken token = make(RtfToken::Type::HexByte);
            token.hexValue = quint8(hi * 16 + lo);
            return token;
        }
        if (c == '\r' || c == '\n') {
            // A backslash before a line break is a paragraph mark.
            RtfToken token = make(RtfToken::Type::ControlWord);
            token.word = "par";
            return token;
        }
        RtfToken token = make(RtfToken::Type::ControlSymbol);
        token.symbol = c;
        return token;
    }

    const qsizetype start = m_pos;
    while (m_pos < n && isLetter(data[m_pos])) {
        ++m_pos;
    }
    RtfToken token = make(RtfToken::Type::ControlWord);
    token.word = m_input.sliced(start, qMin<qsizetype>(m_pos - start, kMaxWordLength));
    if (m_pos < n && (data[m_pos] == '-' || isDigit(data[m_pos]))) {
        bool negative = false;
        if (data[m_pos] == '-') {
            negative = true;
            ++m_pos;
        }
        qint64 value = 0;
        int digits = 0;
        while (m_pos < n && isDigit(data[m_pos])) {
            if (digits < 10) {
                value = value * 10 + (data[m_pos] - '0');
            }
            ++digits;
            ++m_pos;
        }
        if (digits > 0) {
            token.hasParameter = true;
            value = negative ? -value : value;
            value = std::clamp<qint64>(value, std::numeric_limits<int>::min(),
                                       std::numeric_limits<int>::max());
            token.parameter = int(value);
        }
    }
    if (m_pos < n && data[m_pos] == ' ') {
        ++m_pos; // the delimiting space belongs to the control word
    }
    return token;
}

QByteArrayView RtfTokenizer::takeBinary(qint64 count)
{
    const qint64 available = m_input.size() - m_pos;
    const qint64 take = qBound<qint64>(0, count, available);
    const QByteArrayView out = m_input.sliced(m_pos, take);
    m_pos += take;
    return out;
}

} // namespace kestrum::text
