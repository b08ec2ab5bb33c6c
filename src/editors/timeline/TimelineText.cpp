#include "TimelineText.h"

#include "common/TabFields.h"

#include <QFile>
#include <QLocale>
#include <QSaveFile>
#include <QStringDecoder>

#include <algorithm>
#include <cmath>

namespace kestrum::timeline {

namespace {

const QChar kTab = QLatin1Char('\t');
const QChar kLinkTab = QChar(8); // a TAB inside a link text, so that it stays one field
const QString kCrLf = QStringLiteral("\r\n");

QString boolText(bool value)
{
    return value ? QStringLiteral("-1") : QStringLiteral("0");
}

QString line(std::initializer_list<QString> fields)
{
    QString out;
    bool first = true;
    for (const QString& f : fields) {
        if (!first) {
            out += kTab;
        }
        out += f;
        first = false;
    }
    return out;
}

// Splits at CR LF, CR or LF.
QStringList splitLines(const QString& text)
{
    QStringList lines;
    qsizetype start = 0;
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n; ++i) {
        const QChar c = text.at(i);
        if (c == QLatin1Char('\r') || c == QLatin1Char('\n')) {
            lines << text.mid(start, i - start);
            if (c == QLatin1Char('\r') && i + 1 < n && text.at(i + 1) == QLatin1Char('\n')) {
                ++i;
            }
            start = i + 1;
        }
    }
    if (start < n) {
        lines << text.mid(start);
    }
    return lines;
}

Error floatError(int lineNumber, const QString& text)
{
    return fail(QStringLiteral("Line %1: '%2' is not a valid floating point value")
                    .arg(lineNumber)
                    .arg(text.left(40)));
}

Error colourError(int lineNumber, const QString& text)
{
    return fail(
        QStringLiteral("Line %1: '%2' is not a valid colour").arg(lineNumber).arg(text.left(40)));
}

} // namespace

QString TimelineText::fontText(const FontStyle& font)
{
    QString out = QLatin1Char(' ') + font.name;
    if (font.bold) {
        out += QLatin1String(" Bold");
    }
    if (font.italic) {
        out += QLatin1String(" Italic");
    }
    return out + QLatin1Char(' ') + QString::number(qRound(font.pointSize));
}

QString TimelineText::field(const QString& line, int n)
{
    if (n < 1 || n > 255) {
        return {};
    }
    return common::tabField(line, n);
}

QString TimelineText::replaceAll(QString text, const QString& what, const QString& with)
{
    if (what.isEmpty()) {
        return text;
    }
    const bool once = with.contains(what);
    qsizetype from = 0;
    for (;;) {
        const qsizetype at = text.indexOf(what, from);
        if (at < 0) {
            break;
        }
        text.replace(at, what.size(), with);
        if (once) {
            break;
        }
        // Everything before `at` held no occurrence, so a new first occurrence can start no
        // earlier than where one overlapping the replacement could: the same result as
        // searching from the start each time, without the quadratic cost.
        from = std::max<qsizetype>(0, at - what.size() + 1);
    }
    return text;
}

QString TimelineText::floatText(double value)
{
    QLocale locale = QLocale::system();
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(value, 'g', 15);
}

bool TimelineText::readFloat(const QString& text, double* value)
{
    bool ok = false;
    const QString t = text.trimmed();
    QLocale locale = QLocale::system();
    locale.setNumberOptions(QLocale::RejectGroupSeparator);
    double v = locale.toDouble(t, &ok);
    if (!ok) {
        // The C form is accepted as well, so that a text written under another locale loads.
        QLocale c = QLocale::c();
        c.setNumberOptions(QLocale::RejectGroupSeparator);
        v = c.toDouble(t, &ok);
    }
    if (!ok || !std::isfinite(v)) {
        return false;
    }
    *value = v;
    return true;
}

QString TimelineText::SaveTimeLineToString(const TimelineModel& m)
{
    using common::colourToString;
    QStringList lines;
    lines << line({QStringLiteral("BackGround"), colourToString(m.backgroundColor),
                   colourToString(m.backgroundColorTo)});
    lines << line(
        {QStringLiteral("LineBar"), colourToString(m.barColor), colourToString(m.barColorTo)});
    lines << line({QStringLiteral("Indicator"), colourToString(m.defaultIndicator.annotationColor),
                   boolText(m.defaultIndicator.annotationRounded)});
    lines << line({QStringLiteral("Timeline Font"), fontText(m.divisionFont)});
    lines << line({QStringLiteral("Event font"), fontText(m.annotationFont)});
    lines << line(
        {QStringLiteral("Image"), QString::number(m.imageWidth), QString::number(m.imageHeight)});
    lines << line(
        {QStringLiteral("Max Range"), floatText(m.minimumRange), floatText(m.maximumRange)});
    lines << line({QStringLiteral("Range"), floatText(m.rangeFrom), floatText(m.rangeTo)});
    for (const TimelineEvent& e : m.events) {
        const QString link = e.tag >= 0 && e.tag < m.links.size() ? m.links.at(e.tag) : QString();
        lines << line({QStringLiteral("Event"), e.annotation, e.hint, floatText(e.position),
                       replaceAll(link, QString(kTab), QString(kLinkTab)),
                       QString::number(e.annotationImageIndex),
                       QString::number(e.annotationColor)});
    }
    return lines.join(kCrLf);
}

Status TimelineText::LoadTimeLinefromString(TimelineModel& m, const QString& text,
                                            const TimelineTextLimits& limits)
{
    m.clearEvents();
    if (text.size() > limits.maxChars) {
        return fail(QStringLiteral("The timeline text is too long (%1 characters; at most %2)")
                        .arg(text.size())
                        .arg(limits.maxChars));
    }
    const QStringList lines = splitLines(text);
    int number = 0;
    for (const QString& l : lines) {
        ++number;
        const QString key = field(l, 1);
        if (key == QLatin1String("Event")) {
            if (qsizetype(m.events.size()) >= limits.maxEvents) {
                return fail(QStringLiteral("Line %1: the timeline holds more than %2 events")
                                .arg(number)
                                .arg(limits.maxEvents));
            }
            m.events.push_back(m.newEvent());
            TimelineEvent& e = m.events.back();
            e.annotation = field(l, 2);
            e.hint = field(l, 3);
            const QString position = field(l, 4);
            if (!readFloat(position, &e.position)) {
                return floatError(number, position);
            }
            m.links << replaceAll(field(l, 5), QString(kLinkTab), QString(kTab));
            e.tag = int(m.links.size() - 1);
            // The image index and the colour are read with a routine that yields 1 whatever
            // the field holds: a reloaded event keeps neither.
            e.annotationImageIndex = 1;
            if (!field(l, 7).isEmpty()) {
                e.annotationColor = 1;
            }
        } else if (key == QLatin1String("BackGround") || key == QLatin1String("LineBar")) {
            TColor from = 0;
            TColor to = 0;
            const QString a = field(l, 2);
            const QString b = field(l, 3);
            if (!common::colourFromString(a, &from)) {
                return colourError(number, a);
            }
            TColor& first = key == QLatin1String("LineBar") ? m.barColor : m.backgroundColor;
            TColor& second = key == QLatin1String("LineBar") ? m.barColorTo : m.backgroundColorTo;
            first = from;
            if (!common::colourFromString(b, &to)) {
                return colourError(number, b);
            }
            second = to;
        } else if (key == QLatin1String("Indicator")) {
            const QString a = field(l, 2);
            TColor c = 0;
            if (!common::colourFromString(a, &c)) {
                return colourError(number, a);
            }
            m.defaultIndicator.annotationColor = c;
            // The writer puts -1 or 0 here, so a reloaded page never has round corners.
            m.defaultIndicator.annotationRounded = field(l, 3) == QLatin1String("True");
        } else if (key == QLatin1String("Max Range") || key == QLatin1String("Range")) {
            const bool max = key == QLatin1String("Max Range");
            double a = 0;
            double b = 0;
            const QString fa = field(l, 2);
            const QString fb = field(l, 3);
            if (!readFloat(fa, &a)) {
                return floatError(number, fa);
            }
            (max ? m.minimumRange : m.rangeFrom) = a;
            if (!readFloat(fb, &b)) {
                return floatError(number, fb);
            }
            (max ? m.maximumRange : m.rangeTo) = b;
        }
        // "Timeline Font", "Event font", "Image", unknown keys and empty lines: ignored.
    }
    return {};
}

QByteArray TimelineText::encode(const QString& text)
{
    return text.toUtf8();
}

QString TimelineText::decode(const QByteArray& bytes)
{
    QByteArrayView view(bytes);
    if (view.startsWith("\xEF\xBB\xBF")) {
        view = view.sliced(3);
    }
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(view);
    if (!utf8.hasError()) {
        return text;
    }
    return QString::fromLatin1(view.data(), view.size());
}

Status TimelineText::SaveTimeLineToFile(const TimelineModel& model, const QString& fileName)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        return fail(QStringLiteral("Cannot write \"%1\": %2").arg(fileName, file.errorString()));
    }
    file.write(encode(SaveTimeLineToString(model) + kCrLf));
    if (!file.commit()) {
        return fail(QStringLiteral("Cannot write \"%1\": %2").arg(fileName, file.errorString()));
    }
    return {};
}

Status TimelineText::LoadTimeLineFromFile(TimelineModel& model, const QString& fileName,
                                          const TimelineTextLimits& limits)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        return fail(QStringLiteral("Cannot read \"%1\": %2").arg(fileName, file.errorString()));
    }
    if (file.size() > limits.maxChars * 4) {
        return fail(QStringLiteral("\"%1\" is too large for a timeline").arg(fileName));
    }
    return LoadTimeLinefromString(model, decode(file.readAll()), limits);
}

} // namespace kestrum::timeline
