#pragma once

#include "CloudDocument.h"

namespace kestrum::wordcloud {

class TprWordCloud;

// Between a cloud and what its XML document holds: the options and words to store, and a
// loaded document turned back into words, their shown prefix and their fit to the canvas.
class CloudDocumentMapping
{
public:
    static CloudDocumentData toDocument(const TprWordCloud& cloud);
    // Applies a read document to a cloud whose words were cleared.
    static void apply(TprWordCloud& cloud, const CloudDocumentData& doc);
    // Moves and scales the words laid out on `from` into the cloud's drawing area, centred.
    static void fitToCanvas(TprWordCloud& cloud, const CloudRect& from);
    // The words of `from`, as laid out, become the words of `to`.
    static void adoptLayout(TprWordCloud& to, const TprWordCloud& from);
};

} // namespace kestrum::wordcloud
