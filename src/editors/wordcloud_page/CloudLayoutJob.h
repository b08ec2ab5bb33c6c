#pragma once

#include "wordcloud/TprWordCloud.h"

#include <atomic>

namespace kestrum::wordcloud_page {

// One layout of a cloud's words that may run on another thread than the cloud's: it lays out a
// copy (words, options, client size) and hands the places back when it is done, so that the
// shown cloud stays untouched meanwhile.
//
// progress() and requestCancel() may be called from any thread while run() runs. A cancel
// request ends the current run after the word being placed; as with any failed run, the
// layout then retries at five points less coverage, and that retry runs to its end unless
// cancelled in turn: cancelling gives a sparser cloud, not an empty one.
class CloudLayoutJob
{
public:
    // Copies what a layout needs from `source`.
    explicit CloudLayoutJob(const wordcloud::TprWordCloud& source);

    // Lays the copy out (GenerateCloud with new start positions); true when all were placed.
    bool run();
    // 0..100: the share of the words of the current run that have been tried.
    int progress() const { return m_progress.load(); }
    void requestCancel() { m_cancelRequested.store(true); }
    // The result is no longer wanted: every run stops after its first word, so that the
    // retries end soon.
    void abandon() { m_abandoned.store(true); }
    bool finished() const { return m_finished.load(); }

    // Gives `target` the laid-out words (sizes, places, shown words) and the coverage reached;
    // its colours and other options stay.
    void applyTo(wordcloud::TprWordCloud& target) const;

    const wordcloud::TprWordCloud& result() const { return m_cloud; }

private:
    wordcloud::TprWordCloud m_cloud;
    std::atomic<int> m_progress{0};
    std::atomic<bool> m_cancelRequested{false};
    std::atomic<bool> m_finished{false};
    std::atomic<bool> m_abandoned{false};
};

} // namespace kestrum::wordcloud_page
