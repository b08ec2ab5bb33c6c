#pragma once

#include "editors/timeline/TimelineModel.h"
#include "store/PageDocument.h"

namespace kestrum::timeline {

// The document of timeline pages: the model the page shows, stored as the page text.
// The page's commands change the model and then call markModified().
class TimelinePageDocument : public store::PageDocument
{
    Q_OBJECT
public:
    explicit TimelinePageDocument(QObject* parent = nullptr);

    store::EditorKind kind() const override { return store::EditorKind::Timeline; }
    Result<QByteArray> writeContent() override;
    // An empty content is an empty page. A text too large to be a page is refused; a number or
    // colour that does not convert ends the load, the lines before it kept, and loadWarning()
    // says why.
    Status readContent(const QByteArray& in) override;
    // Empties the events and the link list; range, scale and colours stay as they are (a
    // page that is not found leaves the timeline so).
    void clear() override;
    // A timeline text file (".txt" or any other name): read as page content.
    Status importFile(const QString& path) override;

    TimelineModel& model() { return m_model; }
    const TimelineModel& model() const { return m_model; }
    // Why the last load stopped early; empty when it read everything.
    const QString& loadWarning() const { return m_loadWarning; }
    void markModified() { emit contentChanged(); }

private:
    TimelineModel m_model;
    QString m_loadWarning;
};

} // namespace kestrum::timeline
