#include "TabFields.h"

namespace kestrum::common {

QString tabField(const QString& text, int n)
{
    qsizetype start = 0;
    for (int dropped = 1; dropped < n; ++dropped) {
        const qsizetype tab = text.indexOf(QLatin1Char('\t'), start);
        if (tab < 0) {
            return {};
        }
        start = tab + 1;
    }
    const qsizetype end = text.indexOf(QLatin1Char('\t'), start);
    return end < 0 ? text.mid(start) : text.mid(start, end - start);
}

QString escapeTabs(const QString& text)
{
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '\\':
            out += QLatin1String("\\\\");
            break;
        case '\t':
            out += QLatin1String("\\t");
            break;
        case '\n':
            out += QLatin1String("\\n");
            break;
        case '\r':
            out += QLatin1String("\\r");
            break;
        default:
            out += c;
        }
    }
    return out;
}

} // namespace kestrum::common
