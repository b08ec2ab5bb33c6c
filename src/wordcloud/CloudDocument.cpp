#include "CloudDocument.h"

#include <QIODevice>
#include <QLocale>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <charconv>
#include <cmath>

namespace kestrum::wordcloud {

using common::TColor;

namespace {

const QString kRoot = QStringLiteral("WordCloud");
const QString kVersion = QStringLiteral("1.0");

QString rectText(const CloudRect& r)
{
    return QStringLiteral("%1;%2;%3;%4").arg(r.left).arg(r.top).arg(r.right).arg(r.bottom);
}

// The shortest decimal that reads back as the same 32-bit float ("0.6", not 0.600000024).
QString floatText(float v)
{
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, v);
    return QString::fromLatin1(buffer, result.ptr - buffer);
}

// Characters XML 1.0 cannot carry are written as U+FFFD.
QString xmlSafe(const QString& text)
{
    QString out = text;
    for (qsizetype i = 0; i < out.size(); ++i) {
        const char16_t c = out.at(i).unicode();
        const bool control = c < 0x20 && c != 0x09 && c != 0x0A && c != 0x0D;
        bool badSurrogate = false;
        if (QChar::isHighSurrogate(c)) {
            if (i + 1 < out.size() && QChar::isLowSurrogate(out.at(i + 1).unicode())) {
                ++i;
                continue;
            }
            badSurrogate = true;
        } else if (QChar::isLowSurrogate(c)) {
            badSurrogate = true;
        }
        if (control || badSurrogate || c == 0xFFFE || c == 0xFFFF) {
            out[i] = QChar(QChar::ReplacementCharacter);
        }
    }
    return out;
}

class Reader
{
public:
    Reader(QXmlStreamReader& xml, QStringList* warnings) : m_xml(xml), m_warnings(warnings) {}

    void warn(const QString& text)
    {
        if (m_warnings) {
            m_warnings->append(text);
        }
    }

    std::optional<qint64> integer(const QString& text, const QString& what)
    {
        bool ok = false;
        const qint64 v = text.trimmed().toLongLong(&ok);
        if (!ok) {
            warn(QStringLiteral("%1: \"%2\" is not a whole number; ignored")
                     .arg(what, text.left(40)));
            return std::nullopt;
        }
        return v;
    }

    std::optional<qint32> boundedInt(const QString& text, const QString& what, qint64 lo, qint64 hi)
    {
        const std::optional<qint64> v = integer(text, what);
        if (!v) {
            return std::nullopt;
        }
        if (*v < lo || *v > hi) {
            const qint64 clamped = qBound(lo, *v, hi);
            warn(QStringLiteral("%1: %2 is out of range; %3 used").arg(what).arg(*v).arg(clamped));
            return qint32(clamped);
        }
        return qint32(*v);
    }

    std::optional<TColor> colour(const QString& text, const QString& what)
    {
        TColor c = 0;
        if (!common::colourFromString(text, &c)) {
            warn(QStringLiteral("%1: \"%2\" is not a colour; ignored").arg(what, text.left(40)));
            return std::nullopt;
        }
        return c;
    }

    std::optional<bool> boolean(const QString& text, const QString& what)
    {
        const QString t = text.trimmed().toLower();
        if (t == QLatin1String("true") || t == QLatin1String("1") || t == QLatin1String("yes")) {
            return true;
        }
        if (t == QLatin1String("false") || t == QLatin1String("0") || t == QLatin1String("no")) {
            return false;
        }
        warn(QStringLiteral("%1: \"%2\" is not true or false; ignored").arg(what, text.left(40)));
        return std::nullopt;
    }

    std::optional<float> fraction(const QString& text, const QString& what)
    {
        QString t = text.trimmed();
        t.replace(QLatin1Char(','), QLatin1Char('.'));
        bool ok = false;
        const double v = QLocale::c().toDouble(t, &ok);
        if (!ok || !std::isfinite(v)) {
            warn(QStringLiteral("%1: \"%2\" is not a number; ignored").arg(what, text.left(40)));
            return std::nullopt;
        }
        // Kept as read, also outside the 0.01 to 1 that clouds write; only a value no layout
        // could work with in reasonable time (each failed run lowers it by 0.05) is left out.
        if (std::abs(v) > CloudDocument::kMaxCoverage) {
            warn(QStringLiteral("%1: %2 is beyond %3; ignored")
                     .arg(what)
                     .arg(v)
                     .arg(CloudDocument::kMaxCoverage));
            return std::nullopt;
        }
        return float(v);
    }

    std::optional<CloudRect> rect(const QString& text, const QString& what)
    {
        const QStringList parts = text.split(QLatin1Char(';'));
        if (parts.size() != 4) {
            warn(QStringLiteral("%1: \"%2\" does not have four parts; ignored")
                     .arg(what, text.left(40)));
            return std::nullopt;
        }
        qint32 v[4];
        for (int i = 0; i < 4; ++i) {
            const std::optional<qint32> n = boundedInt(
                parts[i], what, -CloudDocument::kMaxCoordinate, CloudDocument::kMaxCoordinate);
            if (!n) {
                return std::nullopt;
            }
            v[i] = *n;
        }
        return CloudRect{v[0], v[1], v[2], v[3]};
    }

    // "name,charset,colour,size,style": the last four are numbers, so a name that holds a comma
    // is whatever comes before them.
    void font(const QString& text, CloudDocumentData& doc)
    {
        QStringList parts = text.split(QLatin1Char(','));
        if (parts.size() > 5) {
            const QStringList tail = parts.mid(parts.size() - 4);
            parts = QStringList{parts.mid(0, parts.size() - 4).join(QLatin1Char(','))} + tail;
        }
        if (!parts.isEmpty() && !parts[0].trimmed().isEmpty()) {
            doc.fontName = parts[0].trimmed().left(CloudDocument::kMaxTextLength);
        }
        if (parts.size() > 1) {
            doc.fontCharset = boundedInt(parts[1], QStringLiteral("Font character set"), 0, 255);
        }
        if (parts.size() > 2) {
            doc.fontColor = colour(parts[2], QStringLiteral("Font colour"));
        }
        if (parts.size() > 3) {
            doc.fontSize =
                boundedInt(parts[3], QStringLiteral("Font size"), 1, CloudDocument::kMaxFontSize);
        }
        if (parts.size() > 4) {
            doc.fontStyle = boundedInt(parts[4], QStringLiteral("Font style"), 0, 15);
        }
    }

    void gradient(CloudDocumentData& doc)
    {
        while (m_xml.readNextStartElement()) {
            const auto name = m_xml.name();
            if (name == QLatin1String("StartColor")) {
                doc.startColor =
                    colour(m_xml.readElementText(), QStringLiteral("Gradient StartColor"));
            } else if (name == QLatin1String("MiddleColor")) {
                doc.middleColor =
                    colour(m_xml.readElementText(), QStringLiteral("Gradient MiddleColor"));
            } else if (name == QLatin1String("EndColor")) {
                doc.endColor = colour(m_xml.readElementText(), QStringLiteral("Gradient EndColor"));
            } else {
                m_xml.skipCurrentElement();
            }
        }
    }

    void words(CloudDocumentData& doc)
    {
        int seen = 0;
        bool tooMany = false;
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() != QLatin1String("Word")) {
                m_xml.skipCurrentElement();
                continue;
            }
            ++seen;
            if (doc.words.size() >= CloudDocument::kMaxWords) {
                if (!tooMany) {
                    warn(QStringLiteral("more than %1 words; the rest are left out")
                             .arg(CloudDocument::kMaxWords));
                    tooMany = true;
                }
                m_xml.skipCurrentElement();
                continue;
            }
            word(seen, doc);
        }
    }

    void word(int number, CloudDocumentData& doc)
    {
        const QString what = QStringLiteral("Word %1").arg(number);
        CloudDocumentWord w;
        std::optional<QString> text;
        std::optional<qint64> weight;
        while (m_xml.readNextStartElement()) {
            const auto name = m_xml.name();
            if (name == QLatin1String("Text")) {
                text = m_xml.readElementText();
            } else if (name == QLatin1String("TextColor")) {
                w.textColor = colour(m_xml.readElementText(), what + QStringLiteral(" TextColor"))
                                  .value_or(0);
            } else if (name == QLatin1String("Weight")) {
                weight = integer(m_xml.readElementText(), what + QStringLiteral(" Weight"));
            } else if (name == QLatin1String("FontSize")) {
                w.fontSize = boundedInt(m_xml.readElementText(), what + QStringLiteral(" FontSize"),
                                        1, CloudDocument::kMaxFontSize);
            } else if (name == QLatin1String("StartingBounds")) {
                w.bounds = rect(m_xml.readElementText(), what + QStringLiteral(" StartingBounds"));
            } else {
                m_xml.skipCurrentElement();
            }
        }
        if (!text || text->isEmpty()) {
            warn(what + QStringLiteral(" has no text; left out"));
            return;
        }
        if (!weight || *weight < 1) {
            warn(what + QStringLiteral(" has no weight of at least 1; left out"));
            return;
        }
        if (text->size() > CloudDocument::kMaxTextLength) {
            warn(QStringLiteral("%1: text longer than %2 characters; shortened")
                     .arg(what)
                     .arg(CloudDocument::kMaxTextLength));
            text->truncate(CloudDocument::kMaxTextLength);
        }
        w.text = *text;
        if (*weight > 2147483647) {
            warn(QStringLiteral("%1 Weight: %2 is out of range; 2147483647 used")
                     .arg(what)
                     .arg(*weight));
        }
        w.weight = qint32(qMin<qint64>(*weight, 2147483647));
        doc.words.append(w);
    }

    QXmlStreamReader& m_xml;
    QStringList* m_warnings;
};

} // namespace

QByteArray CloudDocument::write(const CloudDocumentData& data)
{
    QByteArray out;
    QXmlStreamWriter xml(&out);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
    xml.writeStartDocument();
    xml.writeStartElement(kRoot);
    xml.writeAttribute(QStringLiteral("version"), kVersion);
    if (data.backgroundColor) {
        xml.writeTextElement(QStringLiteral("BackgroundColor"),
                             QString::number(*data.backgroundColor));
    }
    if (data.coverage) {
        xml.writeTextElement(QStringLiteral("Coverage"), floatText(*data.coverage));
    }
    if (data.shadow) {
        xml.writeTextElement(QStringLiteral("Shadow"),
                             *data.shadow ? QStringLiteral("true") : QStringLiteral("false"));
    }
    if (data.palette) {
        xml.writeTextElement(QStringLiteral("Palette"), QString::number(*data.palette));
    } else {
        xml.writeStartElement(QStringLiteral("Gradient"));
        xml.writeTextElement(QStringLiteral("StartColor"),
                             QString::number(data.startColor.value_or(0)));
        xml.writeTextElement(QStringLiteral("MiddleColor"),
                             QString::number(data.middleColor.value_or(common::clNone)));
        xml.writeTextElement(QStringLiteral("EndColor"),
                             QString::number(data.endColor.value_or(0)));
        xml.writeEndElement();
    }
    const QString fontText = QStringLiteral("%1,%2,%3,%4,%5")
                                 .arg(xmlSafe(data.fontName.value_or(QStringLiteral("Arial"))))
                                 .arg(data.fontCharset.value_or(1))
                                 .arg(data.fontColor.value_or(0))
                                 .arg(data.fontSize.value_or(10))
                                 .arg(data.fontStyle.value_or(0));
    xml.writeTextElement(QStringLiteral("Font"), fontText);
    xml.writeTextElement(QStringLiteral("StartingBounds"),
                         rectText(data.startingBounds.value_or(CloudRect{})));
    xml.writeStartElement(QStringLiteral("Words"));
    for (const CloudDocumentWord& w : data.words) {
        xml.writeStartElement(QStringLiteral("Word"));
        xml.writeTextElement(QStringLiteral("Text"), xmlSafe(w.text));
        xml.writeTextElement(QStringLiteral("TextColor"), QString::number(w.textColor));
        xml.writeTextElement(QStringLiteral("Weight"), QString::number(w.weight));
        xml.writeTextElement(QStringLiteral("FontSize"),
                             QString::number(w.fontSize.value_or(w.weight)));
        xml.writeTextElement(QStringLiteral("StartingBounds"),
                             rectText(w.bounds.value_or(CloudRect{})));
        xml.writeEndElement();
    }
    xml.writeEndElement(); // Words
    xml.writeEndElement(); // WordCloud
    xml.writeEndDocument();
    return out;
}

Result<CloudDocumentData> CloudDocument::read(QIODevice& device, QStringList* warnings)
{
    const QByteArray bytes = device.read(kMaxBytes + 1);
    if (bytes.size() > kMaxBytes) {
        return fail(
            QStringLiteral("the cloud document is larger than %1 MiB").arg(kMaxBytes >> 20));
    }
    if (bytes.trimmed().isEmpty()) {
        return fail(QStringLiteral("the cloud document is empty"));
    }
    QXmlStreamReader xml(bytes);
    if (!xml.readNextStartElement()) {
        return fail(xml.hasError()
                        ? QStringLiteral("not an XML document: %1").arg(xml.errorString())
                        : QStringLiteral("not an XML document"));
    }
    // The root's name is not checked: its version says what the document is.
    const auto version = xml.attributes().value(QStringLiteral("version"));
    if (version != kVersion) {
        return fail(version.isEmpty()
                        ? QStringLiteral("the cloud document has no version")
                        : QStringLiteral("the cloud document's version \"%1\" is not 1.0")
                              .arg(version.left(20)));
    }

    CloudDocumentData doc;
    QStringList found;
    Reader reader(xml, &found);
    while (xml.readNextStartElement()) {
        const auto name = xml.name();
        if (name == QLatin1String("BackgroundColor")) {
            doc.backgroundColor =
                reader.colour(xml.readElementText(), QStringLiteral("BackgroundColor"));
        } else if (name == QLatin1String("Coverage")) {
            doc.coverage = reader.fraction(xml.readElementText(), QStringLiteral("Coverage"));
        } else if (name == QLatin1String("Shadow")) {
            doc.shadow = reader.boolean(xml.readElementText(), QStringLiteral("Shadow"));
        } else if (name == QLatin1String("Gradient")) {
            reader.gradient(doc);
        } else if (name == QLatin1String("Palette")) {
            doc.palette =
                reader.boundedInt(xml.readElementText(), QStringLiteral("Palette"), 0, 255);
        } else if (name == QLatin1String("Font")) {
            reader.font(xml.readElementText(), doc);
        } else if (name == QLatin1String("StartingBounds")) {
            doc.startingBounds =
                reader.rect(xml.readElementText(), QStringLiteral("StartingBounds"));
        } else if (name == QLatin1String("Words")) {
            reader.words(doc);
        } else {
            xml.skipCurrentElement();
        }
    }
    // The rest of the bytes must be well-formed too.
    while (!xml.atEnd() && !xml.hasError()) {
        xml.readNext();
    }
    if (xml.hasError()) {
        return fail(
            QStringLiteral("the cloud document is not well-formed XML (line %1, column %2): %3")
                .arg(xml.lineNumber())
                .arg(xml.columnNumber())
                .arg(xml.errorString()));
    }
    if (warnings) {
        *warnings += found;
    }
    return doc;
}

} // namespace kestrum::wordcloud
