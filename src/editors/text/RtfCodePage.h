#pragma once

#include <QByteArrayView>
#include <QString>

#include <array>

namespace kestrum::text {

// A single-byte code page of RTF text (\ansicpgN, a font's \fcharsetN or \cpgN): a table from
// bytes to characters, built once per code page. Unknown and multi-byte code pages read as
// Windows-1252.
class RtfCodePage
{
public:
    static constexpr int kSymbol = 42; // the symbol character set (\fcharset2)

    static const RtfCodePage& get(int codePage);
    // The code page of a font character set (\fcharset0 is Windows-1252), or 0 when the
    // document's code page applies.
    static int forCharset(int charset);

    int codePage() const { return m_codePage; }
    QChar decode(quint8 byte) const { return QChar(m_table[byte]); }
    void append(QByteArrayView bytes, QString& out) const;

private:
    explicit RtfCodePage(int codePage);

    int m_codePage;
    std::array<char16_t, 256> m_table{};
};

} // namespace kestrum::text
