#include "RtfFieldStack.h"

#include <QRegularExpression>

namespace kestrum::text {

void RtfFieldStack::addInstruction(const QString& text)
{
    if (!m_fields.empty()) {
        m_fields.back().instruction += text;
    }
}

void RtfFieldStack::close(std::size_t depth)
{
    while (!m_fields.empty() && m_fields.back().depth >= depth) {
        m_fields.pop_back();
    }
}

std::optional<QString> RtfFieldStack::hyperlink() const
{
    if (m_fields.empty()) {
        return std::nullopt;
    }
    const QString instruction = m_fields.back().instruction.trimmed();
    const QLatin1String name("HYPERLINK");
    if (!instruction.startsWith(name, Qt::CaseInsensitive)) {
        return std::nullopt;
    }
    // HYPERLINK "target" \l "bookmark" \o "tip" (quotes optional for a single word).
    static const QRegularExpression argument(
        QStringLiteral(R"re((\\[a-zA-Z])?\s*("([^"]*)"|([^\s"\\]+)))re"));
    QString target;
    QString bookmark;
    auto it = argument.globalMatch(instruction, name.size());
    while (it.hasNext()) {
        const QRegularExpressionMatch m = it.next();
        const QString value = m.captured(3).isNull() ? m.captured(4) : m.captured(3);
        const QString sw = m.captured(1);
        if (sw.isEmpty() && target.isEmpty()) {
            target = value;
        } else if (sw == QLatin1String("\\l")) {
            bookmark = value;
        }
    }
    if (!bookmark.isEmpty()) {
        target += QLatin1Char('#') + bookmark;
    }
    return target;
}

} // namespace kestrum::text
