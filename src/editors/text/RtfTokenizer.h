#pragma once

#include <QByteArrayView>
#include <QtGlobal>

namespace kestrum::text {

// The value of a hexadecimal digit, or -1.
int hexDigitValue(char c);

// One lexical item of an RTF stream.
struct RtfToken
{
    enum class Type
    {
        End,           // no more input
        GroupStart,    // {
        GroupEnd,      // }
        ControlWord,   // \word or \wordN
        ControlSymbol, // \x for a non-letter x (also \<newline>)
        Text,          // a run of plain bytes (no specials, no line breaks)
        HexByte,       // \'hh
    };
    Type type = Type::End;
    QByteArrayView word; // control word name (letters only, at most kMaxWordLength)
    bool hasParameter = false;
    int parameter = 0; // clamped to the int range
    char symbol = 0;
    QByteArrayView text;
    quint8 hexValue = 0;
};

// Splits RTF bytes into tokens. Every read is bounded by the input: control word names are cut
// at 32 letters, parameters at 10 digits and clamped, a broken \' escape yields nothing, and
// \binN never reads past the end.
class RtfTokenizer
{
public:
    static constexpr int kMaxWordLength = 32;

    explicit RtfTokenizer(QByteArrayView input) : m_input(input) {}

    RtfToken next();
    // The next `count` bytes as binary data (after \binN); fewer at the end of the input.
    QByteArrayView takeBinary(qint64 count);
    qsizetype position() const { return m_pos; }
    qsizetype size() const { return m_input.size(); }

private:
    RtfToken readControl();

    QByteArrayView m_input;
    qsizetype m_pos = 0;
};

} // namespace kestrum::text
