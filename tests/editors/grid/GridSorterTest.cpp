// Sorting with the kind of the column detected, and the header's double-click direction.

#include "editors/grid/GridSorter.h"
#include "editors/grid/GridDocument.h"

#include <QTest>

using namespace kestrum::grid;

namespace {

GridDocument columnOf(const QStringList& texts)
{
    GridDocument g;
    g.setSize(2, int(texts.size()) + 1);
    g.setText(0, 0, QStringLiteral("Header"));
    for (int i = 0; i < texts.size(); ++i) {
        g.setText(0, i + 1, texts[i]);
        g.setText(1, i + 1, QString::number(i)); // the row's identity
    }
    return g;
}

QStringList sorted(const GridDocument& g)
{
    QStringList out;
    for (int r = 1; r < g.rowCount(); ++r) {
        out << g.text(0, r);
    }
    return out;
}

} // namespace

class GridSorterTest : public QObject
{
    Q_OBJECT

private slots:
    void sorting_data()
    {
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QStringList>("ascending");
        QTest::newRow("numbers, not text order")
            << QStringList{"10", "9", "-2.5", "100", "0.75"} << int(GridSorter::Kind::Number)
            << QStringList{"-2.5", "0.75", "9", "10", "100"};
        QTest::newRow("percentages")
            << QStringList{"45.2%", "5%", "12.5 %"} << int(GridSorter::Kind::Number)
            << QStringList{"5%", "12.5 %", "45.2%"};
        QTest::newRow("empty cells last")
            << QStringList{"3", "", "1", " "} << int(GridSorter::Kind::Number)
            << QStringList{"1", "3", "", " "};
        QTest::newRow("dates") << QStringList{"24/10/2026", "29/09/2026", "2026-10-01"}
                               << int(GridSorter::Kind::Date)
                               << QStringList{"29/09/2026", "2026-10-01", "24/10/2026"};
        QTest::newRow("text, case-insensitive, digits by value")
            << QStringList{"item 10", "Item 2", "apple", "Banana"} << int(GridSorter::Kind::Text)
            << QStringList{"apple", "Banana", "Item 2", "item 10"};
        QTest::newRow("one word makes it text")
            << QStringList{"3", "n/a", "12"} << int(GridSorter::Kind::Text)
            << QStringList{"3", "12", "n/a"};
    }
    void sorting()
    {
        QFETCH(QStringList, texts);
        QFETCH(int, kind);
        QFETCH(QStringList, ascending);
        GridDocument g = columnOf(texts);
        QCOMPARE(int(GridSorter::detect(g, 0)), kind);
        GridSorter::sort(&g, 0, true);
        QCOMPARE(sorted(g), ascending);
        QCOMPARE(g.text(0, 0), QStringLiteral("Header")); // the fixed row stays
        // Descending: the non-empty cells reversed, empty ones still last.
        GridSorter::sort(&g, 0, false);
        QStringList nonEmpty;
        QStringList empty;
        for (const QString& t : ascending) {
            (t.trimmed().isEmpty() ? empty : nonEmpty) << t;
        }
        std::reverse(nonEmpty.begin(), nonEmpty.end());
        QCOMPARE(sorted(g), nonEmpty + empty);
    }

    void rowsMoveWhole()
    {
        GridDocument g = columnOf({"b", "a", "c"});
        g.setRowHeight(1, 50);
        GridCellFormat bold;
        bold.fontStyle = FontStyle::Bold;
        g.setFormat(1, 1, bold);
        GridSorter::sort(&g, 0, true);
        QCOMPARE(g.text(1, 2), QStringLiteral("0")); // "b" came with its neighbour
        QCOMPARE(g.rowHeight(2), 50);
        QVERIFY(g.format(1, 2).isBold());
    }

    void equalKeysKeepTheirOrder()
    {
        GridDocument g = columnOf({"2", "1", "2", "1", "2"});
        GridSorter::sort(&g, 0, true);
        QStringList identities;
        for (int r = 1; r < g.rowCount(); ++r) {
            identities << g.text(1, r);
        }
        QCOMPARE(identities, (QStringList{"1", "3", "0", "2", "4"}));
    }

    void headerDoubleClickDirection()
    {
        HeaderSortState state;
        QVERIFY(state.next(2));  // first double click: ascending
        QVERIFY(!state.next(2)); // the same header again: descending
        QVERIFY(state.next(2));
        QVERIFY(state.next(3)); // another column keeps the direction it had
        QVERIFY(!state.next(3));
        QCOMPARE(state.lastColumn(), 3);
    }
};

QTEST_GUILESS_MAIN(GridSorterTest)
#include "GridSorterTest.moc"
