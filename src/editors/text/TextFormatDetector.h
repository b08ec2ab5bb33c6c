#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace kestrum::text {

// Stored page content and imported files come as bytes; this says what they are and turns the
// text formats into strings.
class TextFormatDetector
{
public:
    enum class Format
    {
        Empty,
        Rtf,
        Html,
        PlainText
    };

    static Format detect(QByteArrayView data);
    static QString formatName(Format format);

    // Plain text: a byte-order mark decides, else UTF-8 when the bytes are valid UTF-8, else
    // Windows-1252.
    static QString decodePlainText(QByteArrayView data);
    // HTML: a byte-order mark, else the charset its head declares, else as plain text.
    static QString decodeHtml(QByteArrayView data);
};

} // namespace kestrum::text
