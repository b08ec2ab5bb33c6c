// Printing the grid (pages, fitting, title and footer) and the row heights of multi-line mode.

#include "GridSamples.h"

#include "editors/grid/GridPrinter.h"
#include "editors/grid/GridRowSizer.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <QTest>

using namespace kestrum::grid;
using kestrum::grid::test::sampleGrid;

namespace {

GridDocument tall(int rows, int cols = 5)
{
    GridDocument g;
    g.setSize(cols, rows);
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < cols; ++c) {
            g.setText(c, r, QStringLiteral("r%1c%2").arg(r).arg(c));
        }
    }
    return g;
}

bool hasInk(const QImage& image, const QRect& area)
{
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (qGray(image.pixel(x, y)) < 128) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

class GridPrintingTest : public QObject
{
    Q_OBJECT

private slots:
    void rowsSplitIntoPagesWithHeadersRepeated()
    {
        const GridDocument g = tall(200);
        GridPrintOptions options;
        options.title = QStringLiteral("Codes");
        GridPrinter printer(g, options);
        printer.layout(QSizeF(1000, 700));
        // 199 body rows of 22 px under a 24 px header, a title and a footer.
        QVERIFY(printer.pageCount() >= 199 * 22 / 700 + 1);
        QVERIFY(printer.pageCount() <= 199 * 22 / (700 - 120) + 1);
        QCOMPARE(printer.tableScale(), 1.0);
    }

    void wideTableFitsTheWidthOrSplitsIntoBands()
    {
        const GridDocument g = tall(10, 40); // 40 x 64 px = 2560 px
        GridPrintOptions fit;
        GridPrinter fitted(g, fit);
        fitted.layout(QSizeF(1000, 700));
        QCOMPARE(fitted.pageCount(), 1);
        QCOMPARE(fitted.tableScale(), 1000.0 / 2560.0);

        GridPrintOptions bands;
        bands.fitToPageWidth = false; // multi-line grids print at their size
        GridPrinter split(g, bands);
        split.layout(QSizeF(1000, 700));
        QCOMPARE(split.tableScale(), 1.0);
        QCOMPARE(split.pageCount(), 3); // 15 + 15 + 10 columns
    }

    void pageShowsTitleNumberAndDate()
    {
        const GridDocument g = sampleGrid();
        GridPrintOptions options;
        options.title = QStringLiteral("Code frequencies");
        options.date = QDate(2026, 12, 3);
        GridPrinter printer(g, options);
        printer.layout(QSizeF(800, 500));
        QImage page(800, 500, QImage::Format_RGB32);
        page.fill(Qt::white);
        QPainter painter(&page);
        printer.paintPage(&painter, 0);
        painter.end();
        QVERIFY(hasInk(page, QRect(300, 0, 200, 20)));    // title, centred
        QVERIFY(!hasInk(page, QRect(0, 0, 150, 15)));     // nothing at the top left
        QVERIFY(hasInk(page, QRect(0, 480, 40, 19)));     // "1/1"
        QVERIFY(hasInk(page, QRect(700, 480, 99, 19)));   // "03/12/2026"
        QVERIFY(!hasInk(page, QRect(300, 480, 200, 19))); // nothing in between
    }

    void printsEveryPageToAPdf()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grid.pdf"));
        const GridDocument g = tall(300);
        GridPrinter printer(g, GridPrintOptions{});
        {
            QPdfWriter pdf(path);
            pdf.setPageOrientation(QPageLayout::Landscape);
            QVERIFY(printer.print(&pdf));
        }
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        // Page objects: "/Type /Page" not followed by "s" (that is the page tree).
        const qsizetype pages = bytes.count("/Type /Page") - bytes.count("/Type /Pages");
        QVERIFY(printer.pageCount() > 1);
        QCOMPARE(int(pages), printer.pageCount());
    }

    void multilineClamp_data()
    {
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("clamped");
        QTest::newRow("151") << 151 << 150;
        QTest::newRow("150") << 150 << 150;
        QTest::newRow("900") << 900 << 150;
        QTest::newRow("15") << 15 << 15;
        QTest::newRow("14") << 14 << 15;
        QTest::newRow("0") << 0 << 15;
        QTest::newRow("60") << 60 << 60;
    }
    void multilineClamp()
    {
        QFETCH(int, height);
        QFETCH(int, clamped);
        QCOMPARE(GridRowSizer::clampMultiline(height), clamped);
    }

    void fittedHeightsWrapOnlyWhenAsked()
    {
        GridDocument g;
        g.setSize(2, 3);
        g.setText(0, 1, QStringLiteral("several words that cannot fit in sixty-four pixels"));
        GridCellFormat big;
        big.fontSize = 30;
        g.setFormat(1, 2, big);
        g.setText(1, 2, QStringLiteral("Big"));
        const std::vector<int> single = GridRowSizer::fittedHeights(g, false);
        const std::vector<int> wrapped = GridRowSizer::fittedHeights(g, true);
        QVERIFY(wrapped[1] > 2 * single[1]);
        QCOMPARE(wrapped[0], single[0]);
        QVERIFY(single[2] > 2 * single[0]); // measured in the cell's own font
        const std::vector<int> multi = GridRowSizer::multilineHeights(g, true);
        QCOMPARE(multi[0], wrapped[0]); // row 0 is not clamped
    }
};

QTEST_MAIN(GridPrintingTest)
#include "GridPrintingTest.moc"
