#include "WPDocumentPrinter.h"

#include "editors/text/PageLayout.h"
#include "editors/text/TextExporter.h"

#include <QPrinter>
#include <QTextDocument>
#include <QTextFrame>

#include <memory>

namespace kestrum::text {

void WPDocumentPrinter::print(const QTextDocument& document, const PageLayout& page,
                              QPrinter* target)
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
    target->setFullPage(true);
    target->setPageSize(QPageSize(QSizeF(page.paperWidth / 20.0, page.paperHeight / 20.0),
                                  QPageSize::Point, QString(), QPageSize::ExactMatch));
    target->setPageOrientation(QPageLayout::Portrait);
    target->setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Point);
    copy->print(target);
}

} // namespace kestrum::text
