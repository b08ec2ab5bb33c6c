#include "TimelinePageDocument.h"

#include "editors/timeline/TimelineText.h"

#include <QFile>

namespace kestrum::timeline {

namespace {
const TimelineTextLimits kLimits;
} // namespace

TimelinePageDocument::TimelinePageDocument(QObject* parent) : store::PageDocument(parent) {}

bool TimelinePageDocument::writeContent(QByteArray& out, QString*)
{
    out = TimelineText::encode(TimelineText::SaveTimeLineToString(m_model));
    return true;
}

bool TimelinePageDocument::readContent(const QByteArray& in, QString* error)
{
    m_model = TimelineModel();
    m_loadWarning.clear();
    if (in.size() > kLimits.maxChars) {
        if (error) {
            *error = QStringLiteral("the timeline text is too large (%1 bytes)").arg(in.size());
        }
        emit contentReset();
        return false;
    }
    const Status loaded =
        TimelineText::LoadTimeLinefromString(m_model, TimelineText::decode(in), kLimits);
    if (!loaded) {
        m_loadWarning = loaded.error();
        if (m_model.events.size() >= std::size_t(kLimits.maxEvents)) {
            // Not a page this program wrote: refuse it whole.
            m_model = TimelineModel();
            if (error) {
                *error = m_loadWarning;
            }
            emit contentReset();
            return false;
        }
    }
    emit contentReset();
    return true;
}

void TimelinePageDocument::clear()
{
    m_model.clearEvents();
    m_loadWarning.clear();
    emit contentReset();
}

bool TimelinePageDocument::importFile(const QString& path, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error) {
            *error = QStringLiteral("Cannot read \"%1\": %2").arg(path, file.errorString());
        }
        return false;
    }
    if (file.size() > kLimits.maxChars) {
        if (error) {
            *error = QStringLiteral("\"%1\" is too large for a timeline").arg(path);
        }
        return false;
    }
    return readContent(file.readAll(), error);
}

} // namespace kestrum::timeline
