// Tables through RTF: tables inside table cells, and the tables the editor inserts, read,
// written and read again.

#include "editors/text/ColourTable.h"
#include "editors/text/RtfReader.h"
#include "editors/text/RtfWriter.h"
#include "editors/text/TextEditCommands.h"
#include "editors/text/TextExporter.h"
#include "editors/text/TextProperties.h"

#include "RtfTestDoc.h"

#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextTable>
#include <QtTest>

using namespace kestrum::text;
using namespace kestrum::text::test_support;

namespace {

// The tables directly inside `frame` (the document's root frame or a table).
QList<QTextTable*> tablesIn(const QTextFrame* frame)
{
    QList<QTextTable*> out;
    for (QTextFrame* child : frame->childFrames()) {
        if (auto* table = qobject_cast<QTextTable*>(child)) {
            out << table;
        }
    }
    return out;
}

// The tables inside one cell.
QList<QTextTable*> tablesInCell(const QTextTableCell& cell)
{
    QList<QTextTable*> out;
    for (auto it = cell.begin(); !it.atEnd(); ++it) {
        if (auto* table = qobject_cast<QTextTable*>(it.currentFrame())) {
            out << table;
        }
    }
    return out;
}

// The paragraphs of a cell that are not inside a table of the cell, empty ones left out.
QStringList cellTexts(const QTextTableCell& cell)
{
    QStringList out;
    for (auto it = cell.begin(); !it.atEnd(); ++it) {
        if (!it.currentFrame() && !it.currentBlock().text().isEmpty()) {
            out << it.currentBlock().text();
        }
    }
    return out;
}

// An outer table of two rows and two columns; cell (0, 1) holds "Left of inner", a table of
// two rows and two columns (its cell (1, 0) holding a third table of one cell) and "Below
// inner". The nested rows are described after their cells, as RTF writes them.
const QByteArray kNested =
    "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}"
    "\\pard Before\\par"
    "\\trowd\\trgaph108\\cellx3000\\cellx9000"
    "\\pard\\intbl A\\cell"
    "\\pard\\intbl Left of inner\\par"
    "\\pard\\intbl\\itap2 a\\nestcell\\pard\\intbl\\itap2 b\\nestcell"
    "\\pard\\intbl\\itap2{\\*\\nesttableprops\\trowd\\trgaph108\\cellx5000\\cellx8000\\nestrow}"
    "{\\nonesttables\\par}"
    "\\pard\\intbl\\itap3 deep\\nestcell"
    "\\pard\\intbl\\itap3{\\*\\nesttableprops\\trowd\\cellx4500\\nestrow}{\\nonesttables\\par}"
    "\\pard\\intbl\\itap2 c\\nestcell\\pard\\intbl\\itap2 d\\nestcell"
    "\\pard\\intbl\\itap2{\\*\\nesttableprops\\trowd\\trgaph108\\cellx5000\\cellx8000\\nestrow}"
    "{\\nonesttables\\par}"
    "\\pard\\intbl\\itap1 Below inner\\cell"
    "\\trowd\\trgaph108\\cellx3000\\cellx9000\\row"
    "\\pard\\intbl C\\cell\\pard\\intbl D\\cell\\row"
    "\\pard After\\par}";

// Checks the structure of kNested in a document read from it (or from what was written).
void checkNested(const QTextDocument& d)
{
    QVERIFY(!d.toPlainText().contains(QLatin1String("FALLBACK")));
    const QList<QTextTable*> outerTables = tablesIn(d.rootFrame());
    QCOMPARE(outerTables.size(), 1);
    const QTextTable* outer = outerTables.first();
    QCOMPARE(outer->rows(), 2);
    QCOMPARE(outer->columns(), 2);
    QCOMPARE(cellTexts(outer->cellAt(0, 0)), QStringList{"A"});
    QCOMPARE(cellTexts(outer->cellAt(1, 1)), QStringList{"D"});
    const QTextTableCell holder = outer->cellAt(0, 1);
    QCOMPARE(cellTexts(holder), (QStringList{"Left of inner", "Below inner"}));

    const QList<QTextTable*> inners = tablesInCell(holder);
    QCOMPARE(inners.size(), 1);
    const QTextTable* inner = inners.first();
    QCOMPARE(inner->rows(), 2);
    QCOMPARE(inner->columns(), 2);
    QCOMPARE(cellTexts(inner->cellAt(0, 0)), QStringList{"a"});
    QCOMPARE(cellTexts(inner->cellAt(0, 1)), QStringList{"b"});
    QCOMPARE(cellTexts(inner->cellAt(1, 0)), QStringList{"c"});
    QCOMPARE(cellTexts(inner->cellAt(1, 1)), QStringList{"d"});
    // The inner columns are the widths its rows described.
    const QList<QTextLength> widths = inner->format().columnWidthConstraints();
    QCOMPARE(widths.size(), 2);
    QVERIFY(widths[1].rawValue() < widths[0].rawValue());

    const QList<QTextTable*> deepest = tablesInCell(inner->cellAt(1, 0));
    QCOMPARE(deepest.size(), 1);
    QCOMPARE(deepest.first()->rows(), 1);
    QCOMPARE(deepest.first()->columns(), 1);
    QCOMPARE(cellTexts(deepest.first()->cellAt(0, 0)), QStringList{"deep"});
    QVERIFY(tablesInCell(inner->cellAt(0, 0)).isEmpty());

    QVERIFY(!QTextCursor(d.find(QStringLiteral("Before")).block()).currentTable());
    QVERIFY(!QTextCursor(d.find(QStringLiteral("After")).block()).currentTable());
}

// The border a side of a cell shows: its own, or else the table's ("none" when none shows).
QString shownBorder(const QTextTable* table, int row, int column, int side)
{
    const QTextTableCellFormat cell = table->cellAt(row, column).format().toTableCellFormat();
    const int widths[] = {QTextFormat::TableCellTopBorder, QTextFormat::TableCellBottomBorder,
                          QTextFormat::TableCellLeftBorder, QTextFormat::TableCellRightBorder};
    const int styles[] = {
        QTextFormat::TableCellTopBorderStyle, QTextFormat::TableCellBottomBorderStyle,
        QTextFormat::TableCellLeftBorderStyle, QTextFormat::TableCellRightBorderStyle};
    const int brushes[] = {
        QTextFormat::TableCellTopBorderBrush, QTextFormat::TableCellBottomBorderBrush,
        QTextFormat::TableCellLeftBorderBrush, QTextFormat::TableCellRightBorderBrush};
    const int width = widths[side];
    const int style = styles[side];
    const int brush = brushes[side];
    double shownWidth = table->format().border();
    int shownStyle = table->format().borderStyle();
    QColor colour = table->format().borderBrush().color();
    if (cell.hasProperty(width)) {
        shownWidth = cell.doubleProperty(width);
        shownStyle = cell.intProperty(style);
        colour = cell.brushProperty(brush).color();
    }
    if (shownWidth <= 0 || shownStyle == QTextFrameFormat::BorderStyle_None) {
        return QStringLiteral("none");
    }
    return QStringLiteral("%1 %2 %3").arg(shownWidth).arg(shownStyle).arg(colour.name());
}

QString widthText(const QTextLength& length)
{
    return QStringLiteral("%1:%2").arg(int(length.type())).arg(length.rawValue(), 0, 'f', 3);
}

// The `index`th table of the document's text.
const QTextTable* tableAt(const QTextDocument& document, int index)
{
    const QList<QTextTable*> tables = tablesIn(document.rootFrame());
    return index < tables.size() ? tables[index] : nullptr;
}

} // namespace

class RtfTableTest : public QObject
{
    Q_OBJECT

private slots:
    void nestedTablesStayInTheirCells();
    void nestedTablesInExports();
    void nestedTableFallbackForOlderReaders();
    void insertedTablesKeepWidthsAndBorders();
};

void RtfTableTest::nestedTablesStayInTheirCells()
{
    const auto first = read(kNested);
    checkNested(*first->document);
    if (QTest::currentTestFailed()) {
        return;
    }
    const QByteArray written = write(*first);
    QVERIFY(written.contains("\\itap2"));
    QVERIFY(written.contains("\\itap3"));
    QVERIFY(written.contains("\\nestcell"));
    QVERIFY(written.contains("{\\*\\nesttableprops\\trowd"));
    const auto second = read(written);
    checkNested(*second->document);
    // A second pass writes the same again: no paragraph is gained or lost around the tables.
    QCOMPARE(write(*second), written);
}

void RtfTableTest::nestedTablesInExports()
{
    const auto doc = read(kNested);
    // The inner table on its cell's line: rows in brackets, cells apart by " | ".
    QCOMPARE(TextExporter::toPlainText(*doc->document),
             QStringLiteral("Before\nA\tLeft of inner [a | b] [[deep] c | d] Below inner\n"
                            "C\tD\nAfter\n"));

    const QString html = QString::fromUtf8(
        TextExporter::toHtml(*doc->document, HtmlExportOptions()).value_or(QByteArray()));
    // The tables open one inside another's cell: "deep" stands three tables down.
    static const QRegularExpression tags(QStringLiteral("<table|</table>|<td|</td>|>deep<"));
    int tables = 0;
    int cells = 0;
    int deepTables = -1;
    for (auto it = tags.globalMatch(html); it.hasNext();) {
        const QString tag = it.next().captured();
        if (tag == QLatin1String("<table")) {
            QCOMPARE(cells, tables); // a table opens in the cell of the one around it
            ++tables;
        } else if (tag == QLatin1String("</table>")) {
            --tables;
        } else if (tag == QLatin1String("<td")) {
            ++cells;
        } else if (tag == QLatin1String("</td>")) {
            --cells;
        } else {
            deepTables = tables;
        }
    }
    QCOMPARE(deepTables, 3);
    QCOMPARE(tables, 0);
    QCOMPARE(html.count(QLatin1String("<table")), 3);
}

void RtfTableTest::nestedTableFallbackForOlderReaders()
{
    // A reader that knows no nested tables skips \itapN, \nestcell and the unknown
    // {\*\nesttableprops} group, and reads the text of {\nonesttables ...}.
    static const QRegularExpression unknown(
        QStringLiteral("\\\\itap\\d+|\\\\nestcell|\\{\\\\\\*\\\\nesttableprops[^}]*\\}"));
    QString text = QString::fromLatin1(write(*read(kNested)));
    text.remove(unknown);
    text.replace(QLatin1String("{\\nonesttables"), QLatin1String("{"));
    const auto doc = read(text.toLatin1());
    const QList<QTextTable*> tables = tablesIn(doc->document->rootFrame());
    QCOMPARE(tables.size(), 1);
    QCOMPARE(tables.first()->columns(), 2);
    // Each inner row is a paragraph of the outer cell, its cells apart by tabs.
    QCOMPARE(cellTexts(tables.first()->cellAt(0, 1)),
             (QStringList{"Left of inner", "a\tb", "deep", "c\td", "Below inner"}));
}

void RtfTableTest::insertedTablesKeepWidthsAndBorders()
{
    // Tables as the editor inserts them, left empty: columns sharing the width, the border of
    // the table; one with fixed columns (resized by hand), cells whose borders were switched
    // off or on, and a table without a border.
    Doc doc;
    QTextCursor cursor(doc.document.get());
    cursor.insertText(QStringLiteral("Shares"));
    TextEditCommands(cursor).insertTable({2, 3, 1, 4});
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(QStringLiteral("Fixed"));
    QTextCursor inFixed = TextEditCommands(cursor).insertTable({3, 2, 2, 6});
    QTextTable* fixed = inFixed.currentTable();
    QTextTableFormat format = fixed->format();
    format.setColumnWidthConstraints(
        {QTextLength(QTextLength::FixedLength, 120), QTextLength(QTextLength::FixedLength, 250)});
    fixed->setFormat(format);
    QTextCursor offCell = fixed->cellAt(1, 1).firstCursorPosition();
    TextEditCommands(offCell).setBorders(BorderSide::Top | BorderSide::Right,
                                         TextEditCommands::BorderChange::Off);
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(QStringLiteral("Bare"));
    QTextCursor inBare = TextEditCommands(cursor).insertTable({1, 4, 0, 2});
    TextEditCommands(inBare).setBorders(BorderSide::Bottom, TextEditCommands::BorderChange::On);

    const auto back = read(write(doc));
    for (int t = 0; t < 3; ++t) {
        const QTextTable* before = tableAt(*doc.document, t);
        const QTextTable* after = tableAt(*back->document, t);
        QVERIFY(before);
        QVERIFY(after);
        QCOMPARE(after->rows(), before->rows());
        QCOMPARE(after->columns(), before->columns());
        const QList<QTextLength> widths = before->format().columnWidthConstraints();
        const QList<QTextLength> readWidths = after->format().columnWidthConstraints();
        QCOMPARE(readWidths.size(), widths.size());
        for (qsizetype c = 0; c < widths.size(); ++c) {
            QCOMPARE(widthText(readWidths[c]), widthText(widths[c]));
        }
        QCOMPARE(after->format().cellPadding(), before->format().cellPadding());
        // The table's own border, and only the cells' own borders on the cells.
        QCOMPARE(after->format().border(), before->format().border());
        if (before->format().border() > 0) {
            QCOMPARE(after->format().borderStyle(), before->format().borderStyle());
            QCOMPARE(after->format().borderBrush().color(), before->format().borderBrush().color());
        }
        for (int r = 0; r < before->rows(); ++r) {
            for (int c = 0; c < before->columns(); ++c) {
                QVERIFY(after->cellAt(r, c).firstCursorPosition().block().text().isEmpty());
                for (const int side :
                     {QTextFormat::TableCellTopBorder, QTextFormat::TableCellBottomBorder,
                      QTextFormat::TableCellLeftBorder, QTextFormat::TableCellRightBorder}) {
                    QCOMPARE(after->cellAt(r, c).format().hasProperty(side),
                             before->cellAt(r, c).format().hasProperty(side));
                }
                for (int side = 0; side < 4; ++side) {
                    QCOMPARE(shownBorder(after, r, c, side), shownBorder(before, r, c, side));
                }
            }
        }
    }
    // What was switched off stays off; the table's border shows elsewhere.
    QCOMPARE(shownBorder(tableAt(*back->document, 1), 1, 1, 0), QStringLiteral("none"));
    QCOMPARE(shownBorder(tableAt(*back->document, 1), 1, 1, 1), QStringLiteral("2 3 #000000"));
    QCOMPARE(shownBorder(tableAt(*back->document, 2), 0, 0, 1), QStringLiteral("1 3 #000000"));
    QCOMPARE(shownBorder(tableAt(*back->document, 2), 0, 0, 0), QStringLiteral("none"));
}

QTEST_GUILESS_MAIN(RtfTableTest)
#include "RtfTableTest.moc"
