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

bool CloudPageDocument::writeContent(QByteArray& out, QString* error)
{
    QBuffer buffer(&out);
    buffer.open(QIODevice::WriteOnly | QIODevice::Truncate);
    if (!m_cloud.SaveToStream(buffer)) {
        if (error) {
            *error = QStringLiteral("cannot write the word cloud document");
        }
        return false;
    }
    return true;
}

bool CloudPageDocument::readContent(const QByteArray& in, QString* error)
{
    if (in.isEmpty()) {
        clear();
        return true;
    }
    QByteArray bytes = in;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const bool ok = m_cloud.LoadFromStream(buffer);
    if (!ok) {
        m_cloud.ClearWords();
        if (error) {
            *error = m_cloud.LastError();
        }
    }
    emit contentReset();
    return ok;
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
