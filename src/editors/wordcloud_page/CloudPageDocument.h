#pragma once

#include "store/PageDocument.h"
#include "wordcloud/TprWordCloud.h"

namespace kestrum::wordcloud_page {

// The document of word cloud pages: one cloud, its content the XML cloud document. The store
// reads pages into it and saves them from it; the page's editor shows and changes the cloud.
//
// A cloud read without a drawing area keeps its stored places; once the editor gives it a
// client size, fitToClient scales the stored picture into it.
class CloudPageDocument : public store::PageDocument
{
    Q_OBJECT
public:
    explicit CloudPageDocument(QObject* parent = nullptr);
    ~CloudPageDocument() override;

    store::EditorKind kind() const override { return store::EditorKind::WordCloud; }
    Result<QByteArray> writeContent() override;
    // An empty content clears the cloud.
    Status readContent(const QByteArray& in) override;
    void clear() override;

    wordcloud::TprWordCloud& cloud() { return m_cloud; }
    const wordcloud::TprWordCloud& cloud() const { return m_cloud; }

    // Sets the cloud's client size and scales the words laid out on the last drawing area into
    // the new one, centred, keeping their proportions. Not a change of the page.
    void fitToClient(const QSize& size);
    // The user changed the cloud (options, a new layout): the page is to be written back.
    void markModified() { emit contentChanged(); }

    // The client size a stored cloud was laid out for: its drawing area and the margins; empty
    // when the document holds no drawing area.
    static QSize storedClientSize(const wordcloud::TprWordCloud& cloud);

private:
    wordcloud::TprWordCloud m_cloud;
};

} // namespace kestrum::wordcloud_page
