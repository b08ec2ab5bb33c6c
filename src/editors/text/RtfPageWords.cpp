#include "RtfPageWords.h"

#include "editors/text/PageLayout.h"

namespace kestrum::text {

int* RtfPageWords::field(RtfKeyword keyword, PageLayout& page)
{
    switch (keyword) {
    case RtfKeyword::PaperW:
    case RtfKeyword::PgWsxn:
        return &page.paperWidth;
    case RtfKeyword::PaperH:
    case RtfKeyword::PgHsxn:
        return &page.paperHeight;
    case RtfKeyword::MargL:
    case RtfKeyword::MargLsxn:
        return &page.marginLeft;
    case RtfKeyword::MargR:
    case RtfKeyword::MargRsxn:
        return &page.marginRight;
    case RtfKeyword::MargT:
    case RtfKeyword::MargTsxn:
        return &page.marginTop;
    case RtfKeyword::MargB:
    case RtfKeyword::MargBsxn:
        return &page.marginBottom;
    default:
        return nullptr; // \landscape: the paper size says it
    }
}

} // namespace kestrum::text
