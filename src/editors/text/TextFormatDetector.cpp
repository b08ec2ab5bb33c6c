#include "TextFormatDetector.h"

#include "editors/text/RtfReader.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QTextDocument>

namespace kestrum::text {

namespace {

constexpr qsizetype kSniffBytes = 4096;

std::optional<QStringConverter::Encoding> bomEncoding(QByteArrayView data)
{
    // Longest first: a UTF-32 mark starts like a UTF-16 one.
    if (data.startsWith(QByteArrayView("\xFF\xFE\x00\x00", 4))) {
        return QStringConverter::Utf32LE;
    }
    if (data.startsWith(QByteArrayView("\x00\x00\xFE\xFF", 4))) {
        return QStringConverter::Utf32BE;
    }
    if (data.startsWith(QByteArrayView("\xEF\xBB\xBF", 3))) {
        return QStringConverter::Utf8;
    }
    if (data.startsWith(QByteArrayView("\xFF\xFE", 2))) {
        return QStringConverter::Utf16LE;
    }
    if (data.startsWith(QByteArrayView("\xFE\xFF", 2))) {
        return QStringConverter::Utf16BE;
    }
    return std::nullopt;
}

QString decodeWith(QStringDecoder& decoder, QByteArrayView data)
{
    QString out = decoder.decode(data);
    if (!out.isEmpty() && out.front() == QChar(0xFEFF)) {
        out.remove(0, 1);
    }
    return out;
}

} // namespace

TextFormatDetector::Format TextFormatDetector::detect(QByteArrayView data)
{
    if (data.isEmpty()) {
        return Format::Empty;
    }
    if (RtfReader::looksLikeRtf(data)) {
        return Format::Rtf;
    }
    const QString sample = decodePlainText(data.first(qMin(data.size(), kSniffBytes))).trimmed();
    if (sample.isEmpty()) {
        return data.trimmed().isEmpty() ? Format::Empty : Format::PlainText;
    }
    if (sample.front() == QLatin1Char('<')) {
        static const QRegularExpression markers(
            QStringLiteral(
                "<(!doctype\\s+html|html|head|body|meta|p|div|table|span|br|h[1-6])[\\s>/]"),
            QRegularExpression::CaseInsensitiveOption);
        if (markers.match(sample).hasMatch() || Qt::mightBeRichText(sample)) {
            return Format::Html;
        }
    }
    return Format::PlainText;
}

QString TextFormatDetector::formatName(Format format)
{
    switch (format) {
    case Format::Empty:
        return QStringLiteral("empty");
    case Format::Rtf:
        return QStringLiteral("RTF");
    case Format::Html:
        return QStringLiteral("HTML");
    case Format::PlainText:
        return QStringLiteral("plain text");
    }
    return {};
}

QString TextFormatDetector::decodePlainText(QByteArrayView data)
{
    if (const auto bom = bomEncoding(data)) {
        QStringDecoder decoder(*bom);
        return decodeWith(decoder, data);
    }
    QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    QString out = utf8.decode(data);
    if (!utf8.hasError()) {
        return out;
    }
    QStringDecoder windows("windows-1252");
    if (windows.isValid()) {
        return windows.decode(data);
    }
    return QString::fromLatin1(data);
}

QString TextFormatDetector::decodeHtml(QByteArrayView data)
{
    if (const auto bom = bomEncoding(data)) {
        QStringDecoder decoder(*bom);
        return decodeWith(decoder, data);
    }
    const QByteArray head = data.first(qMin(data.size(), kSniffBytes)).toByteArray();
    static const QRegularExpression charset(
        QStringLiteral("charset\\s*=\\s*[\"']?([A-Za-z0-9._:-]+)"),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = charset.match(QString::fromLatin1(head));
    if (match.hasMatch()) {
        QStringDecoder decoder(match.captured(1).toLatin1().constData());
        if (decoder.isValid()) {
            return decodeWith(decoder, data);
        }
    }
    return decodePlainText(data);
}

} // namespace kestrum::text
