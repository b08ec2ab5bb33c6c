#include "TimelinePageDocument.h"

#include "editors/timeline/TimelineText.h"

#include <QFile>

namespace kestrum::timeline {

namespace {
const TimelineTextLimits kLimits;
} // namespace

TimelinePageDocument::TimelinePageDocument(QObject* parent) : store::PageDocument(parent) {}

Result<QByteArray> TimelinePageDocument::writeContent()
{
    return TimelineText::encode(TimelineText::SaveTimeLineToString(m_model));
}

Status TimelinePageDocument::readContent(const QByteArray& in)
{
    m_model = TimelineModel();
    m_loadWarning.clear();
    if (in.size() > kLimits.maxChars) {
        emit contentReset();
        return fail(QStringLiteral("the timeline text is too large (%1 bytes)").arg(in.size()));
    }
    const Status loaded =
        TimelineText::LoadTimeLinefromString(m_model, TimelineText::decode(in), kLimits);
    if (!loaded) {
        m_loadWarning = loaded.error();
        if (m_model.events.size() >= std::size_t(kLimits.maxEvents)) {
            // Not a page this program wrote: refuse it whole.
            m_model = TimelineModel();
            emit contentReset();
            return fail(m_loadWarning);
        }
    }
    emit contentReset();
    return {};
}

void TimelinePageDocument::clear()
{
    m_model.clearEvents();
    m_loadWarning.clear();
    emit contentReset();
}

Status TimelinePageDocument::importFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return fail(QStringLiteral("Cannot read \"%1\": %2").arg(path, file.errorString()));
    }
    if (file.size() > kLimits.maxChars) {
        return fail(QStringLiteral("\"%1\" is too large for a timeline").arg(path));
    }
    return readContent(file.readAll());
}

} // namespace kestrum::timeline
