#pragma once

#include "CloudRect.h"

#include <QtGlobal>

namespace kestrum::wordcloud {

class CollisionIndex;
class TprWord;
class TprWordCloud;

// One layout of a cloud's words: sizes them to the coverage, walks each word along a spiral
// from its start position to the first place where it fits without touching the words placed
// before it, and retries at lower coverage when a word finds no place.
class CloudLayout
{
public:
    explicit CloudLayout(TprWordCloud& cloud);

    // Lays every word out; true when all were placed. With AutoResizeCoverage a failed run
    // retries at 0.05 less coverage while the coverage stays above 0.
    bool run(bool resetPosition);

private:
    bool generateOnce(bool resetPosition);
    void sortWords();
    void capWeights();
    void fitSizesToCoverage();
    void reproportionToWeight();
    bool placeWord(TprWord& word, CollisionIndex& placed, bool resume, bool mirrored);
    bool spiralWalk(TprWord& word, CollisionIndex& placed, bool resume, bool mirrored);
    bool fits(const CloudRect& box, const CloudRect& area) const;

    TprWordCloud& m_cloud;
    // The spiral where the last walk stopped, for a walk that resumes it.
    qint32 m_segLength = 1;
    qint32 m_segPassed = 0;
    qint32 m_dx = -99;
    qint32 m_dy = -99;
};

} // namespace kestrum::wordcloud
