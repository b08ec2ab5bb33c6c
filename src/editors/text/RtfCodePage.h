#pragma once

#include <QByteArrayView>
#include <QHash>
#include <QMutex>
#include <QString>

#include <array>

namespace kestrum::text {

// A code page of RTF text (\ansicpgN, a font's \fcharsetN or \cpgN): a table from bytes to
// characters, built once per code page. The double-byte pages (932 Japanese, 936 Simplified
// Chinese, 949 Korean, 950 Traditional Chinese) also decode pairs of a lead byte and a trail
// byte. Unknown code pages read as Windows-1252.
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

    bool isMultiByte() const { return !m_multiByteName.isEmpty(); }
    // A byte that starts a two-byte character (false on single-byte pages).
    bool isLeadByte(quint8 byte) const;
    // The character of a lead byte and its trail byte (decoded once, then remembered).
    QString decodePair(quint8 lead, quint8 trail) const;

private:
    explicit RtfCodePage(int codePage);

    int m_codePage;
    QByteArray m_multiByteName; // the decoder's name on double-byte pages
    mutable QMutex m_pairsMutex;
    mutable QHash<quint16, QString> m_pairs;
    std::array<char16_t, 256> m_table{};
};

} // namespace kestrum::text
