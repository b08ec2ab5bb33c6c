#include "CloudPageDocument.h"

#include <QBuffer>

namespace kestrum::wordcloud_page {

CloudPageDocument::CloudPageDocument(QObject* parent) : store::PageDocument(parent)
{
    // The page's cloud: "Arial" (its stored documents name their own font), automatic retries.
    wordcloud::CloudFont font = m_cloud.Font();
    font.name = QStringLiteral("Arial");
    m_cloud.SetFont(font);
    m_cloud.SetAutoResizeCoverage(true);
}

CloudPageDocument::~CloudPageDocument() = default;

Result<QByteArray> CloudPageDocument::writeContent()
{
    QByteArray out;
    QBuffer buffer(&out);
    buffer.open(QIODevice::WriteOnly | QIODevice::Truncate);
    if (!m_cloud.SaveToStream(buffer)) {
        return fail(QStringLiteral("cannot write the word cloud document"));
    }
    buffer.close();
    return out;
}

Status CloudPageDocument::readContent(const QByteArray& in)
{
    if (in.isEmpty()) {
        clear();
        return {};
    }
    QByteArray bytes = in;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const Status loaded = m_cloud.LoadFromStream(buffer);
    if (!loaded) {
        m_cloud.ClearWords();
    }
    emit contentReset();
    return loaded;
}

void CloudPageDocument::clear()
{
    m_cloud.ClearWords();
    emit contentReset();
}

void CloudPageDocument::fitToClient(const QSize& size)
{
    const wordcloud::CloudRect from = m_cloud.StartingCanvasRect();
    m_cloud.SetClientSize(size);
    m_cloud.FitToCanvas(from);
}

QSize CloudPageDocument::storedClientSize(const wordcloud::TprWordCloud& cloud)
{
    const wordcloud::CloudRect stored = cloud.StartingCanvasRect();
    if (stored.width() <= 0 || stored.height() <= 0) {
        return {};
    }
    return {stored.right + cloud.Margins().Right(), stored.bottom + cloud.Margins().Bottom()};
}

} // namespace kestrum::wordcloud_page
