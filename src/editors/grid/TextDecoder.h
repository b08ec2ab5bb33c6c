#pragma once

#include <QByteArray>
#include <QString>

namespace kestrum::grid {

// Decodes the bytes of a text file as users' files come: UTF-8 with or without a byte order
// mark, UTF-16 with its mark, or else the local 8-bit code page (Windows-1252 where the
// system's own code page is UTF-8, as on Linux).
class TextDecoder
{
public:
    enum class Encoding
    {
        Utf8,
        Utf8Bom,
        Utf16LE,
        Utf16BE,
        Local8Bit
    };

    static Encoding detect(const QByteArray& bytes);
    static QString decode(const QByteArray& bytes, Encoding* used = nullptr);
    // Windows-1252, the code page of the files that are not UTF-8.
    static QString fromWindows1252(const QByteArray& bytes);
    // A NUL byte outside UTF-16 text: the file is not text.
    static bool looksBinary(const QByteArray& bytes, Encoding encoding);
};

} // namespace kestrum::grid
