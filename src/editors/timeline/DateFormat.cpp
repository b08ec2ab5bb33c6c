#include "DateFormat.h"

#include "common/DayCount.h"

#include <algorithm>

namespace kestrum::timeline {

namespace {

qsizetype runLength(const QString& text, qsizetype at, QChar c)
{
    qsizetype n = 0;
    while (at + n < text.size() && text.at(at + n).toLower() == c) {
        ++n;
    }
    return n;
}

} // namespace

QList<DateFormat::Piece> DateFormat::pieces(const QString& format)
{
    QList<Piece> out;
    bool afterHour = false;
    auto token = [&](const QString& qt) { out.append({true, qt}); };
    qsizetype i = 0;
    while (i < format.size()) {
        const QChar c = format.at(i).toLower();
        const qsizetype run = runLength(format, i, c);
        if (c == QLatin1Char('y')) {
            token(run >= 3 ? QStringLiteral("yyyy") : QStringLiteral("yy"));
            i += run;
            afterHour = false;
            continue;
        }
        if (c == QLatin1Char('m')) {
            if (afterHour && run <= 2) {
                token(run == 2 ? QStringLiteral("mm") : QStringLiteral("m"));
                i += run;
            } else {
                const qsizetype n = std::min<qsizetype>(run, 4);
                token(QString(n, QLatin1Char('M')));
                i += n;
            }
            afterHour = false;
            continue;
        }
        if (c == QLatin1Char('d') || c == QLatin1Char('h') || c == QLatin1Char('n') ||
            c == QLatin1Char('s')) {
            const qsizetype n = std::min<qsizetype>(run, 2);
            token(QString(n, c == QLatin1Char('n') ? QLatin1Char('m') : c));
            i += n;
            afterHour = c == QLatin1Char('h');
            continue;
        }
        if (out.isEmpty() || out.back().token) {
            out.append({false, QString()});
        }
        out.back().text += format.at(i);
        ++i;
    }
    return out;
}

QString DateFormat::toQtFormat(const QString& format)
{
    QString out;
    for (const Piece& p : pieces(format)) {
        if (p.token) {
            out += p.text;
        } else {
            out += QLatin1Char('\'') +
                   QString(p.text).replace(QLatin1Char('\''), QLatin1String("''")) +
                   QLatin1Char('\'');
        }
    }
    return out;
}

QString DateFormat::format(double dayCount, const QString& format, const QLocale& locale)
{
    const QDateTime dt = common::fromDayCount(dayCount);
    if (!dt.isValid()) {
        return {};
    }
    // Token by token, so that literal text needs no quoting rules at all.
    QString out;
    for (const Piece& p : pieces(format)) {
        out += p.token ? locale.toString(dt, p.text) : p.text;
    }
    return out;
}

QString DateFormat::shortDateFormat(const QLocale& locale)
{
    QString f = locale.dateFormat(QLocale::ShortFormat);
    return f.replace(QLatin1Char('M'), QLatin1Char('m'));
}

} // namespace kestrum::timeline
