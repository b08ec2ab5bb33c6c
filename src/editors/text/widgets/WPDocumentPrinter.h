#pragma once

#include <memory>

class QPrinter;
class QTextDocument;

namespace kestrum::text {

struct PageLayout;

// Prints a text page: the visible text of the document on paper of the page's size and
// margins.
class WPDocumentPrinter
{
public:
    // Sets the printer up for the page's paper, then prints.
    static void print(const QTextDocument& document, const PageLayout& page, QPrinter* printer);
    // The document as it prints: its visible text laid out in pages of the page's paper, a
    // table that would be broken by a page end but fits on one page starting on a new page.
    static std::unique_ptr<QTextDocument> pagedCopy(const QTextDocument& document,
                                                    const PageLayout& page);
    // Moves each top-level table that a page end would cut, and that fits on a page, to the
    // start of the next page. The document must have a page size.
    static void keepTablesOnOnePage(QTextDocument* document);
};

} // namespace kestrum::text
