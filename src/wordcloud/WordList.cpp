#include "WordList.h"

#include <QIODevice>

#include <limits>

namespace kestrum::wordcloud {

kestrum::Result<WordList::Result> WordList::read(QIODevice& device)
{
    QByteArray bytes = device.read(kMaxBytes + 1);
    if (bytes.size() > kMaxBytes) {
        return fail(QStringLiteral("the word list is larger than %1 MiB").arg(kMaxBytes >> 20));
    }
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        bytes.remove(0, 3);
    }
    Result result;
    const QString text = QString::fromUtf8(bytes);
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const int lineNumber = int(i) + 1;
        QString line = lines[i];
        if (line.endsWith(QLatin1Char('\r'))) {
            line.chop(1);
        }
        if (line.trimmed().isEmpty()) {
            continue;
        }
        if (result.entries.size() >= kMaxEntries) {
            result.warnings << QStringLiteral("line %1: more than %2 words; the rest are left out")
                                   .arg(lineNumber)
                                   .arg(kMaxEntries);
            break;
        }
        const QStringList fields = line.split(QLatin1Char('\t'));
        if (fields.size() < 2) {
            result.warnings << QStringLiteral("line %1: no TAB between word and weight; left out")
                                   .arg(lineNumber);
            continue;
        }
        bool ok = false;
        const qint64 weight = fields[1].trimmed().toLongLong(&ok);
        if (!ok) {
            result.warnings << QStringLiteral(
                                   "line %1: weight \"%2\" is not a whole number; left out")
                                   .arg(lineNumber)
                                   .arg(fields[1].trimmed().left(40));
            continue;
        }
        constexpr qint64 lo = std::numeric_limits<qint32>::min();
        constexpr qint64 hi = std::numeric_limits<qint32>::max();
        if (weight > hi) {
            result.warnings << QStringLiteral("line %1: weight %2 is too large; %3 used")
                                   .arg(lineNumber)
                                   .arg(weight)
                                   .arg(hi);
        }
        result.entries.append({fields[0].trimmed(), qint32(qBound(lo, weight, hi)), lineNumber});
    }
    return result;
}

} // namespace kestrum::wordcloud
