#pragma once

class QPagedPaintDevice;
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
};

} // namespace kestrum::text
