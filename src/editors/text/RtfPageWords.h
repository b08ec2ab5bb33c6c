#pragma once

#include "editors/text/RtfKeywords.h"

namespace kestrum::text {

struct PageLayout;

// The words of the page size and margins: the document's (\paperwN, \marglN...) and a
// section's (\pgwsxnN, \marglsxnN...), which both set the page's layout.
class RtfPageWords
{
public:
    // The field of `page` a word sets, in twips; null for other words.
    static int* field(RtfKeyword keyword, PageLayout& page);
};

} // namespace kestrum::text
