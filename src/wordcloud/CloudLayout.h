#pragma once

#include "CloudRect.h"
#include "CollisionIndex.h"
#include "OccupancyMap.h"

#include <QtGlobal>

namespace kestrum::wordcloud {

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
    bool placeWord(TprWord& word, bool resume, bool mirrored);
    bool spiralWalk(TprWord& word, bool resume, bool mirrored);
    // Along a leg on which the box moves by (vx, vy) per step (one of them 0): the first step
    // in 0..last at which the box fits the shape and covers no placed pixel, or -1.
    qint64 firstFreeStep(const CloudRect& box, qint32 vx, qint32 vy, qint64 last,
                         const CloudRect& area);
    bool fits(const CloudRect& box, const CloudRect& area) const;

    TprWordCloud& m_cloud;
    const bool m_reference;
    CollisionIndex m_placed;
    OccupancyMap m_occupancy;
    OccupancyMap::Line m_line; // scratch for firstFreeStep
    bool m_placedInverted = false;
    // The spiral where the last walk stopped, for a walk that resumes it.
    qint32 m_segLength = 1;
    qint32 m_segPassed = 0;
    qint32 m_dx = -99;
    qint32 m_dy = -99;
};

} // namespace kestrum::wordcloud
