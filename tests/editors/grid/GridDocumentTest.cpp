// Structure changes of the grid document and the scratch grid (CGrid).

#include "GridSamples.h"

#include "editors/grid/CGrid.h"
#include "editors/grid/GridDocument.h"
#include "editors/grid/GridNumberFormat.h"

#include <QTest>

using namespace kestrum::grid;
using kestrum::grid::test::sampleGrid;

namespace {

QStringList column(const GridDocument& g, int col)
{
    QStringList out;
    for (int r = 0; r < g.rowCount(); ++r) {
        out << g.text(col, r);
    }
    return out;
}

QStringList row(const GridDocument& g, int r)
{
    QStringList out;
    for (int c = 0; c < g.columnCount(); ++c) {
        out << g.text(c, r);
    }
    return out;
}

} // namespace

class GridDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void numbersShownWithTwoDecimals_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::newRow("decimal") << "33.3333"
                                 << "33.33";
        QTest::newRow("rounded up") << "2.675001"
                                    << "2.68";
        QTest::newRow("one decimal") << "0.5"
                                     << "0.50";
        QTest::newRow("negative") << "-12.5"
                                  << "-12.50";
        QTest::newRow("no leading digit") << ".25"
                                          << "0.25";
        QTest::newRow("trailing point") << "7."
                                        << "7.00";
        QTest::newRow("exponent") << "1.5e3"
                                  << "1500.00";
        QTest::newRow("blanks around") << " 4.125 "
                                       << "4.13";
        QTest::newRow("whole number") << "12"
                                      << "12";
        QTest::newRow("signed whole number") << "-3"
                                             << "-3";
        QTest::newRow("percent") << "33.3%"
                                 << "33.3%";
        QTest::newRow("words") << "Age (#)"
                               << "Age (#)";
        QTest::newRow("comma not the separator here") << "1,5"
                                                      << "1,5";
        QTest::newRow("two points") << "1.2.3"
                                    << "1.2.3";
        QTest::newRow("point alone") << "."
                                     << ".";
        QTest::newRow("empty") << ""
                               << "";
    }
    void numbersShownWithTwoDecimals()
    {
        QFETCH(QString, text);
        QFETCH(QString, shown);
        QCOMPARE(GridNumberFormat::displayText(text), shown);
    }

    void newGridDefaults()
    {
        const GridDocument g;
        QCOMPARE(g.columnCount(), 5);
        QCOMPARE(g.rowCount(), 10);
        QCOMPARE(g.fixedRows(), 1);
        QCOMPARE(g.fixedColumns(), 0);
        QCOMPARE(g.columnWidth(4), 64);
        QCOMPARE(g.rowHeight(0), 24);
        QCOMPARE(g.rowHeight(9), 22);
    }

    void resizeKeepsOverlap()
    {
        GridDocument g = sampleGrid();
        g.setSize(3, 8);
        QCOMPARE(row(g, 0), (QStringList{"Code", "Group A", "Group B"}));
        QCOMPARE(g.text(0, 7), QString());
        QCOMPARE(g.rowHeight(7), GridDocument::kDefaultRowHeight);
        QCOMPARE(g.format(2, 2).fontName, QStringLiteral("Courier New"));
        g.setSize(0, 0); // clamped to one cell
        QCOMPARE(g.columnCount(), 1);
        QCOMPARE(g.rowCount(), 1);
        QCOMPARE(g.fixedRows(), 1);
        QCOMPARE(g.fixedColumns(), 1);
    }

    void sizeLimits()
    {
        GridDocument g;
        g.setSize(GridDocument::kMaxColumns, GridDocument::kMaxRows);
        QVERIFY(g.cellCount() <= GridDocument::kMaxCells);
        QCOMPARE(g.columnCount(), GridDocument::kMaxColumns);
        g.insertRows(0, 1000000);
        QVERIFY(g.cellCount() <= GridDocument::kMaxCells);
    }

    void removeRowsAndColumns()
    {
        GridDocument g = sampleGrid();
        g.removeRows(1, 2);
        QCOMPARE(column(g, 0),
                 (QStringList{"Code", "Line\nbreak", "Zoom fatigue – Łódź", "Total"}));
        QCOMPARE(g.rowHeight(1), 40); // the height went with its row
        g.removeColumns(1, 3);
        QCOMPARE(row(g, 0), (QStringList{"Code", "Share"}));
        g.removeColumns(0, 5); // never the last column
        QCOMPARE(g.columnCount(), 1);
        g.removeRows(0, 100);
        QCOMPARE(g.rowCount(), 1);
        QCOMPARE(g.fixedRows(), 1);
    }

    void moveRowAndColumn()
    {
        GridDocument g = sampleGrid();
        g.moveRow(1, 4);
        QCOMPARE(column(g, 0), (QStringList{"Code", "Trust, \"earned\"", "Line\nbreak",
                                            "Zoom fatigue – Łódź", "Isolation", "Total"}));
        QCOMPARE(g.format(1, 4).fontColour, kestrum::common::clRed); // the format moved too
        g.moveRow(4, 1);
        QVERIFY(g.sameContent(sampleGrid()));
        g.moveColumn(0, 3);
        QCOMPARE(row(g, 0), (QStringList{"Group A", "Group B", "Age (#)", "Code", "Share"}));
        QCOMPARE(g.columnWidth(3), 140);
        g.moveColumn(3, 0);
        QVERIFY(g.sameContent(sampleGrid()));
    }

    void insertColumnsShiftsCells()
    {
        GridDocument g = sampleGrid();
        g.insertColumns(1, 2);
        QCOMPARE(row(g, 0),
                 (QStringList{"Code", "", "", "Group A", "Group B", "Age (#)", "Share"}));
        QCOMPARE(g.columnWidth(1), GridDocument::kDefaultColumnWidth);
        QCOMPARE(g.format(3, 1).fontColour, kestrum::common::clRed);
    }

    void moveToCGridTakesTheHeaders()
    {
        // Rows 2..3 x columns 2..3 of a grid with one fixed row and one fixed column.
        const GridDocument g = sampleGrid();
        CGrid cgrid;
        cgrid.MoveToCGrid(g, {2, 2, 3, 3});
        const GridDocument& c = cgrid.document();
        QCOMPARE(c.rowCount(), 3 - 2 + 1 + 1);
        QCOMPARE(c.columnCount(), 3 - 2 + 1 + 1);
        QCOMPARE(c.fixedRows(), 1);
        QCOMPARE(c.fixedColumns(), 1);
        QCOMPARE(row(c, 0), (QStringList{"", "Group B", "Age (#)"})); // the corner is not copied
        QCOMPARE(row(c, 1), (QStringList{"Trust, \"earned\"", "12", "41"}));
        QCOMPARE(row(c, 2), (QStringList{"Line\nbreak", "3", "29"}));
        QCOMPARE(c.format(1, 1).fontName,
                 QStringLiteral("Courier New")); // (2, 2) came with its format
        QVERIFY(c.format(1, 0).isBold());
        QCOMPARE(c.columnWidth(0), 140);
        QCOMPARE(c.rowHeight(2), 40);
    }

    void moveToCGridWithoutFixedCells()
    {
        GridDocument g = sampleGrid();
        g.setFixedRows(0);
        g.setFixedColumns(0);
        CGrid cgrid;
        cgrid.MoveToCGrid(g, {1, 3, 2, 4});
        QCOMPARE(cgrid.document().rowCount(), 2);
        QCOMPARE(cgrid.document().columnCount(), 2);
        QCOMPARE(row(cgrid.document(), 0), (QStringList{"0", "3"}));
        QCOMPARE(cgrid.document().rowHeight(0), 40);
    }

    void moveColumnsToCGridClamps_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<QStringList>("header");
        QTest::newRow("inside") << 1 << 2 << QStringList{"Group A", "Group B"};
        QTest::newRow("first below 0") << -3 << 0 << QStringList{"Code"};
        QTest::newRow("last past the end") << 3 << 99 << QStringList{"Age (#)", "Share"};
    }
    void moveColumnsToCGridClamps()
    {
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(QStringList, header);
        CGrid cgrid;
        cgrid.MoveColumnsToCGrid(sampleGrid(), first, last);
        QCOMPARE(row(cgrid.document(), 0), header);
        QCOMPARE(cgrid.document().rowCount(), sampleGrid().rowCount());
    }
};

QTEST_GUILESS_MAIN(GridDocumentTest)
#include "GridDocumentTest.moc"
