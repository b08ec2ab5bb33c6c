#pragma once

#include "CloudRect.h"
#include "CollisionIndex.h"
#include "OccupancyMap.h"

#include <QtGlobal>

#include <functional>
#include <vector>

namespace kestrum::wordcloud {

class CloudRandom;

// The placing half of a layout, on plain boxes: walks each box along a square spiral from its
// start position to the first place where it fits the shape without touching the boxes placed
// before it, and stops at the first box that finds no place. It touches no word and no cloud,
// so layouts at several coverages can be placed at once on different threads.
//
// Along each straight leg of the spiral the walk looks the first free position up in a bitmap
// of the placed boxes instead of trying step after step. The reference walk tries every step
// against a plain scan of the placed boxes, remembering the last box it ran into; both find the
// same places.
class SpiralPlacer
{
public:
    enum Sense : quint8
    {
        RandomSense = 0,
        Forward = 1,
        Mirrored = 2
    };
    struct Options
    {
        CloudRect area;
        qint64 budget = 0; // steps per walk
        qint32 stepX = 1;
        qint32 stepY = 1;
        bool ellipse = false;
        // Start every word's walk in the forward sense, the later ones next to the last placed.
        bool chain = false;
        quint8 direction = RandomSense;
        bool reference = false;
    };

    explicit SpiralPlacer(const Options& options);

    // Places boxes[0], boxes[1], ... in turn, each box moved to where its walk ended (also the
    // box that found no place), drawing from `random` as the walks need. `goOn(i)` is asked
    // before box i; false stops there. Returns how many were placed.
    int placeAll(std::vector<CloudRect>& boxes, CloudRandom& random,
                 const std::function<bool(int)>& goOn);

private:
    bool placeWord(CloudRect& box, bool resume, bool mirrored, CloudRandom& random);
    bool spiralWalk(CloudRect& box, bool resume, bool mirrored, CloudRandom& random);
    // Along a leg on which the box moves by (vx, vy) per step (one of them 0): the first step
    // in 0..last at which the box fits the shape and covers no placed pixel, or -1.
    qint64 firstFreeStep(const CloudRect& box, qint32 vx, qint32 vy, qint64 last);
    bool fits(const CloudRect& box) const;

    const Options m_options;
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
