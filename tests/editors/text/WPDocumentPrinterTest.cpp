// Printing text pages: tables kept on one page where they fit, rows never cut.

#include "editors/text/widgets/WPDocumentPrinter.h"
#include "editors/text/PageLayout.h"

#include <QAbstractTextDocumentLayout>
#include <QFile>
#include <QPrinter>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>
#include <QtTest>

using namespace kestrum::text;

class WPDocumentPrinterTest : public QObject
{
    Q_OBJECT

private slots:
    void tablesKeepTogether();
};

void WPDocumentPrinterTest::tablesKeepTogether()
{
    // Text that ends near the bottom of the first page, a small table there, more text, then a
    // table longer than a page.
    QTextDocument source;
    QTextCursor cursor(&source);
    for (int i = 0; i < 64; ++i) {
        cursor.insertText(QStringLiteral("Paragraph %1 of the introduction.").arg(i));
        cursor.insertBlock();
    }
    QTextTableFormat tableFormat;
    tableFormat.setBorder(1);
    QTextTable* small = cursor.insertTable(6, 3, tableFormat);
    for (int r = 0; r < 6; ++r) {
        small->cellAt(r, 0).firstCursorPosition().insertText(QStringLiteral("row %1").arg(r));
    }
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(QStringLiteral("Between the tables."));
    QTextTable* large = cursor.insertTable(120, 2, tableFormat);
    for (int r = 0; r < 120; ++r) {
        large->cellAt(r, 0).firstCursorPosition().insertText(QStringLiteral("line %1").arg(r));
    }

    const PageLayout page;
    std::unique_ptr<QTextDocument> printed = WPDocumentPrinter::pagedCopy(source, page);
    const qreal pageHeight = printed->pageSize().height();
    QVERIFY(pageHeight > 0);
    const auto tables = printed->rootFrame()->childFrames();
    QCOMPARE(tables.size(), 2);
    QAbstractTextDocumentLayout* layout = printed->documentLayout();
    auto pageOf = [pageHeight](qreal y) { return int(y / pageHeight); };
    auto firstPage = [&](QTextFrame* t) { return pageOf(layout->frameBoundingRect(t).top()); };
    auto lastPage = [&](QTextFrame* t) {
        return pageOf(layout->frameBoundingRect(t).bottom() - 1);
    };

    // Laid out without the rule, the small table is cut by the first page end (the case the
    // rule exists for).
    {
        std::unique_ptr<QTextDocument> plainLayout(printed->clone());
        plainLayout->setPageSize(printed->pageSize());
        QTextFrame* first = plainLayout->rootFrame()->childFrames().first();
        QTextTableFormat format = qobject_cast<QTextTable*>(first)->format();
        format.setPageBreakPolicy(QTextFormat::PageBreak_Auto);
        qobject_cast<QTextTable*>(first)->setFormat(format);
        QAbstractTextDocumentLayout* plain = plainLayout->documentLayout();
        const QRectF box = plain->frameBoundingRect(first);
        QCOMPARE(pageOf(box.top()), 0);
        QCOMPARE(pageOf(box.bottom() - 1), 1);
    }
    // Printed, it starts the second page whole.
    QCOMPARE(firstPage(tables[0]), 1);
    QCOMPARE(lastPage(tables[0]), 1);
    // The long table cannot fit a page: it is left to run across pages.
    QVERIFY(lastPage(tables[1]) > firstPage(tables[1]));
    QVERIFY(!(qobject_cast<QTextTable*>(tables[1])->format().pageBreakPolicy() &
              QTextFormat::PageBreak_AlwaysBefore));
    // Its rows are never cut: each row's cells lie on one page.
    auto* longTable = qobject_cast<QTextTable*>(tables[1]);
    for (int r = 0; r < longTable->rows(); ++r) {
        const QRectF cell =
            layout->blockBoundingRect(longTable->cellAt(r, 0).firstCursorPosition().block());
        QVERIFY2(pageOf(cell.top()) == pageOf(cell.bottom() - 1), qPrintable(QString::number(r)));
    }

    // What the printer gets: the page count of the laid-out copy.
    QTemporaryDir dir;
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(dir.filePath(QStringLiteral("tables.pdf")));
    WPDocumentPrinter::print(source, page, &printer);
    QFile pdf(printer.outputFileName());
    QVERIFY(pdf.open(QIODevice::ReadOnly));
    const QByteArray bytes = pdf.readAll();
    QCOMPARE(int(bytes.count("/Type /Page\n") + bytes.count("/Type /Page\r")),
             printed->pageCount());
}

QTEST_MAIN(WPDocumentPrinterTest)
#include "WPDocumentPrinterTest.moc"
