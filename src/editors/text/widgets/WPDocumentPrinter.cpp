#include "WPDocumentPrinter.h"

#include "editors/text/PageLayout.h"
#include "editors/text/TextExporter.h"

#include <QAbstractTextDocumentLayout>
#include <QPrinter>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>

#include <cmath>

namespace kestrum::text {

namespace {

// The page (from 0) that a vertical document position falls on.
int pageOf(qreal y, qreal pageHeight)
{
    return int(std::floor(y / pageHeight));
}

} // namespace

std::unique_ptr<QTextDocument> WPDocumentPrinter::pagedCopy(const QTextDocument& document,
                                                            const PageLayout& page)
{
    std::unique_ptr<QTextDocument> copy = TextExporter::visibleCopy(document);
    const qreal px = 96.0 / 1440.0;
    QTextFrameFormat root = copy->rootFrame()->frameFormat();
    root.setLeftMargin(page.marginLeft * px);
    root.setRightMargin(page.marginRight * px);
    root.setTopMargin(page.marginTop * px);
    root.setBottomMargin(page.marginBottom * px);
    copy->rootFrame()->setFrameFormat(root);
    copy->setPageSize(QSizeF(page.paperWidth * px, page.paperHeight * px));
    keepTablesOnOnePage(copy.get());
    return copy;
}

void WPDocumentPrinter::keepTablesOnOnePage(QTextDocument* document)
{
    const qreal pageHeight = document->pageSize().height();
    if (!(pageHeight > 0)) {
        return;
    }
    const QTextFrameFormat root = document->rootFrame()->frameFormat();
    // The room a table has on a page: the page less its top and bottom margins.
    const qreal room = pageHeight - root.topMargin() - root.bottomMargin();
    QAbstractTextDocumentLayout* layout = document->documentLayout();
    // In document order: moving one table moves everything after it, so each is measured
    // after the ones before it have found their place.
    for (QTextFrame* frame : document->rootFrame()->childFrames()) {
        auto* table = qobject_cast<QTextTable*>(frame);
        if (!table) {
            continue;
        }
        QTextTableFormat format = table->format();
        if (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore) {
            continue;
        }
        const QRectF box = layout->frameBoundingRect(table);
        const qreal pageEnd =
            (pageOf(box.top(), pageHeight) + 1) * pageHeight - root.bottomMargin();
        const bool cut = box.bottom() > pageEnd + 0.5;
        if (cut && box.height() <= room) {
            format.setPageBreakPolicy(format.pageBreakPolicy() |
                                      QTextFormat::PageBreak_AlwaysBefore);
            table->setFormat(format);
        }
    }
}

void WPDocumentPrinter::print(const QTextDocument& document, const PageLayout& page,
                              QPrinter* target)
{
    std::unique_ptr<QTextDocument> copy = pagedCopy(document, page);
    target->setFullPage(true);
    target->setPageSize(QPageSize(QSizeF(page.paperWidth / 20.0, page.paperHeight / 20.0),
                                  QPageSize::Point, QString(), QPageSize::ExactMatch));
    target->setPageOrientation(QPageLayout::Portrait);
    target->setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Point);
    copy->print(target);
}

} // namespace kestrum::text
