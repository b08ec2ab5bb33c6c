#include "CloudLayoutJob.h"

namespace kestrum::wordcloud_page {

using wordcloud::TprWordCloud;

CloudLayoutJob::CloudLayoutJob(const TprWordCloud& source)
{
    m_cloud.SetClientSize(source.ClientSize());
    m_cloud.Margins() = source.Margins();
    m_cloud.SetFont(source.Font());
    m_cloud.SetCoverage(source.Coverage());
    m_cloud.SetCloudShape(source.CloudShape());
    m_cloud.SetPlaceCenter(source.PlaceCenter());
    m_cloud.SetContinueFromLastWord(source.ContinueFromLastWord());
    m_cloud.SetDirection(source.Direction());
    m_cloud.SetAutoResizeCoverage(source.AutoResizeCoverage());
    m_cloud.SetRandomSeed(source.RandomSeed());
    m_cloud.SetShadow(source.Shadow());
    for (const auto& word : source.Words()) {
        const int index = m_cloud.AddWord(word->Text(), word->Weight());
        if (index >= 0) {
            // Each word starts where its own copy of the start option says.
            m_cloud.Word(index)->SetPlaceCenter(word->PlaceCenter());
        }
    }
    // Runs in the layout's thread, before each word.
    QObject::connect(
        &m_cloud, &TprWordCloud::OnProgress, &m_cloud,
        [this](int percent) {
            m_progress.store(percent);
            if (m_cancelRequested.exchange(false) || m_abandoned.load()) {
                m_cloud.SetCancel(true);
            }
        },
        Qt::DirectConnection);
}

bool CloudLayoutJob::run()
{
    const bool placedAll = m_cloud.GenerateCloud(true);
    m_progress.store(100);
    m_finished.store(true);
    return placedAll;
}

void CloudLayoutJob::applyTo(TprWordCloud& target) const
{
    target.AdoptLayout(m_cloud);
}

} // namespace kestrum::wordcloud_page
