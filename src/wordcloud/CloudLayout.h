#pragma once

#include "CloudRect.h"

#include <QtGlobal>

#include <memory>

namespace kestrum::wordcloud {

class TprWord;
class TprWordCloud;

// One layout of a cloud's words: sizes them to the coverage, walks each word along a spiral
// from its start position to the first place where it fits without touching the words placed
// before it (SpiralPlacer), and retries at lower coverage when a word finds no place.
//
// The words are sized on the calling thread; placing works on copies of their boxes, so the
// retries at lower coverages are placed on other threads while an earlier one still runs. The
// result is taken from the first coverage that places every word, exactly as if the runs had
// been made one after the other; progress and cancelling are replayed in that order too.
class CloudLayout
{
public:
    explicit CloudLayout(TprWordCloud& cloud);
    ~CloudLayout();

    // Lays every word out; true when all were placed. With AutoResizeCoverage a failed run
    // retries at 0.05 less coverage while the coverage stays above 0.
    bool run(bool resetPosition);

private:
    struct Attempt;
    struct Outcome
    {
        int placed = 0; // words placed
        int tried = 0;  // words whose walk ran (the placed ones and the one that found no place)
    };

    // Sizes the words for a run at `coverage` and takes their start boxes.
    std::unique_ptr<Attempt> prepare(bool resetPosition, float coverage);
    // Raises the progress of a run word by word as its placing gets there, and ends the run
    // early when a progress handler cancels it.
    Outcome replay(Attempt& attempt);
    // Gives the words the sizes and places of a run.
    void commit(const Attempt& attempt, const Outcome& outcome);

    void sortWords();
    void capWeights();
    void fitSizesToCoverage();
    void reproportionToWeight();

    TprWordCloud& m_cloud;
};

} // namespace kestrum::wordcloud
