#include "RtfStyleSheet.h"

#include "editors/text/RtfReaderState.h"

#include <QRegularExpression>

namespace kestrum::text {

void RtfStyleSheet::commit(const QString& text)
{
    const QString name = text.trimmed().toLower();
    static const QRegularExpression heading(QStringLiteral("^heading ([1-6])$"));
    const QRegularExpressionMatch match = heading.match(name);
    if (match.hasMatch() && m_headings.size() < rtf::kMaxStyles) {
        m_headings.insert(m_number, match.captured(1).toInt());
    }
    m_number = 0;
}

} // namespace kestrum::text
