// The text page's editing commands on a bare document, without the editor window: lists and
// levels, paragraph and cell borders, table rows and columns, each one undo step.

#include "editors/text/TextEditCommands.h"
#include "editors/text/ColourTable.h"
#include "editors/text/TextProperties.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QtTest>

using namespace kestrum::text;

namespace {

// A document of paragraphs, one per text.
void fill(QTextDocument* doc, const QStringList& paragraphs)
{
    doc->setPlainText(paragraphs.join(QLatin1Char('\n')));
}

// A cursor over whole paragraphs first..last.
QTextCursor paragraphs(QTextDocument* doc, int first, int last)
{
    QTextCursor cursor(doc->findBlockByNumber(first));
    cursor.setPosition(doc->findBlockByNumber(last).position(), QTextCursor::KeepAnchor);
    return cursor;
}

int sidesOf(const QTextBlock& block)
{
    return block.blockFormat().intProperty(TextProperty::BorderSides);
}

bool cellBorder(const QTextTableCell& cell, int widthProperty)
{
    return cell.format().doubleProperty(widthProperty) > 0;
}

} // namespace

class TextEditCommandsTest : public QObject
{
    Q_OBJECT
private slots:
    void numbersAndBulletsToggle();
    void levelsAreBoundedAndUndoneAtOnce();
    void paragraphBordersToggleAndSet();
    void paragraphBorderColourIsEnteredOrCleared();
    void tableGrowsAndShrinks();
    void fixedColumnWidthsFollowTheColumns();
    void rowGoesBelowAMergedCell();
    void cellBordersToggleAgainstTheTableBorder();
    void rowAndColumnSelections();
    void blackBackgroundIsNotEntered();
};

void TextEditCommandsTest::numbersAndBulletsToggle()
{
    QTextDocument doc;
    fill(&doc, {QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("three")});
    TextEditCommands(paragraphs(&doc, 0, 1)).toggleList(QTextListFormat::ListDecimal);
    QTextList* numbers = doc.findBlockByNumber(0).textList();
    QVERIFY(numbers);
    QCOMPARE(doc.findBlockByNumber(1).textList(), numbers); // one list, not two
    QVERIFY(!doc.findBlockByNumber(2).textList());
    QCOMPARE(numbers->format().style(), QTextListFormat::ListDecimal);
    QCOMPARE(numbers->format().numberSuffix(), QStringLiteral("."));

    // Bullets on a numbered list: the other kind replaces it, at the same level.
    TextEditCommands(paragraphs(&doc, 0, 1)).changeLevel(1);
    TextEditCommands(paragraphs(&doc, 0, 1)).toggleList(QTextListFormat::ListDisc);
    QTextList* bullets = doc.findBlockByNumber(0).textList();
    QVERIFY(bullets);
    QCOMPARE(bullets->format().style(), QTextListFormat::ListDisc);
    QCOMPARE(bullets->format().indent(), 2);
    QCOMPARE(doc.findBlockByNumber(1).textList(), bullets);

    // The same kind again (another bullet style) takes them out, indent cleared.
    TextEditCommands(paragraphs(&doc, 0, 1)).toggleList(QTextListFormat::ListSquare);
    QVERIFY(!doc.findBlockByNumber(0).textList());
    QVERIFY(!doc.findBlockByNumber(1).textList());
    QCOMPARE(doc.findBlockByNumber(0).blockFormat().indent(), 0);
    QCOMPARE(doc.toPlainText(), QStringLiteral("one\ntwo\nthree"));
}

void TextEditCommandsTest::levelsAreBoundedAndUndoneAtOnce()
{
    QTextDocument doc;
    fill(&doc, {QStringLiteral("item"), QStringLiteral("plain")});
    TextEditCommands(QTextCursor(doc.findBlockByNumber(0))).toggleList(QTextListFormat::ListDisc);
    for (int i = 0; i < 12; ++i) {
        TextEditCommands(QTextCursor(doc.findBlockByNumber(0))).changeLevel(1);
    }
    QCOMPARE(doc.findBlockByNumber(0).textList()->format().indent(), 9);
    for (int i = 0; i < 12; ++i) {
        TextEditCommands(QTextCursor(doc.findBlockByNumber(0))).changeLevel(-1);
    }
    QCOMPARE(doc.findBlockByNumber(0).textList()->format().indent(), 1);

    // Outside a list the paragraph indent moves, from 0 to at most 20.
    const QTextBlock plain = doc.findBlockByNumber(1);
    TextEditCommands(QTextCursor(plain)).changeLevel(-1);
    QCOMPARE(doc.findBlockByNumber(1).blockFormat().indent(), 0);
    TextEditCommands(QTextCursor(doc.findBlockByNumber(1))).changeLevel(1);
    QCOMPARE(doc.findBlockByNumber(1).blockFormat().indent(), 1);
    doc.undo();
    QCOMPARE(doc.findBlockByNumber(1).blockFormat().indent(), 0);
    for (int i = 0; i < 25; ++i) {
        TextEditCommands(QTextCursor(doc.findBlockByNumber(1))).changeLevel(1);
    }
    QCOMPARE(doc.findBlockByNumber(1).blockFormat().indent(), 20);
}

void TextEditCommandsTest::paragraphBordersToggleAndSet()
{
    QTextDocument doc;
    fill(&doc, {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    TextEditCommands(paragraphs(&doc, 0, 1))
        .setBorders(BorderSide::Top, TextEditCommands::BorderChange::Toggle);
    QCOMPARE(sidesOf(doc.findBlockByNumber(0)), BorderSide::Top);
    QCOMPARE(sidesOf(doc.findBlockByNumber(1)), BorderSide::Top);
    QCOMPARE(sidesOf(doc.findBlockByNumber(2)), 0);

    TextEditCommands(paragraphs(&doc, 1, 2))
        .setBorders(BorderSide::All, TextEditCommands::BorderChange::On);
    TextEditCommands(paragraphs(&doc, 0, 1))
        .setBorders(BorderSide::Top | BorderSide::Left, TextEditCommands::BorderChange::Toggle);
    QCOMPARE(sidesOf(doc.findBlockByNumber(0)), BorderSide::Left);
    QCOMPARE(sidesOf(doc.findBlockByNumber(1)), BorderSide::Bottom | BorderSide::Right);
    TextEditCommands(paragraphs(&doc, 0, 2))
        .setBorders(BorderSide::Left | BorderSide::Right, TextEditCommands::BorderChange::Off);
    QCOMPARE(sidesOf(doc.findBlockByNumber(0)), 0);
    QCOMPARE(sidesOf(doc.findBlockByNumber(1)), BorderSide::Bottom);
    QCOMPARE(sidesOf(doc.findBlockByNumber(2)), BorderSide::Top | BorderSide::Bottom);
    doc.undo(); // the last command, all three paragraphs
    QCOMPARE(sidesOf(doc.findBlockByNumber(0)), BorderSide::Left);
    QCOMPARE(sidesOf(doc.findBlockByNumber(2)), BorderSide::All);
}

void TextEditCommandsTest::paragraphBorderColourIsEnteredOrCleared()
{
    QTextDocument doc;
    fill(&doc, {QStringLiteral("a"), QStringLiteral("b")});
    ColourTable colours;
    const int entries = colours.count();
    TextEditCommands::ParagraphBorder border;
    border.sides = BorderSide::Bottom;
    border.width = 30;
    border.style = QTextFrameFormat::BorderStyle_Double;
    border.colour = QColor(3, 4, 5);
    TextEditCommands(paragraphs(&doc, 0, 1)).setParagraphBorder(border, colours);
    QCOMPARE(colours.count(), entries + 1);
    const TextEditCommands::ParagraphBorder read =
        TextEditCommands(QTextCursor(doc.findBlockByNumber(1))).paragraphBorder();
    QCOMPARE(read.sides, BorderSide::Bottom);
    QCOMPARE(read.width, 30);
    QCOMPARE(read.style, int(QTextFrameFormat::BorderStyle_Double));
    QCOMPARE(read.colour, QColor(3, 4, 5));

    // No colour: the text's colour, and the old one goes from every selected paragraph.
    border.colour = QColor();
    TextEditCommands(paragraphs(&doc, 0, 1)).setParagraphBorder(border, colours);
    QVERIFY(!doc.findBlockByNumber(0).blockFormat().hasProperty(TextProperty::BorderColour));
    QVERIFY(!doc.findBlockByNumber(1).blockFormat().hasProperty(TextProperty::BorderColour));
    QCOMPARE(colours.count(), entries + 1);

    // A paragraph without a border reads as the dialog's defaults.
    QTextDocument empty;
    fill(&empty, {QStringLiteral("x")});
    const TextEditCommands::ParagraphBorder none =
        TextEditCommands(QTextCursor(&empty)).paragraphBorder();
    QCOMPARE(none.sides, 0);
    QCOMPARE(none.width, 15);
    QCOMPARE(none.style, int(QTextFrameFormat::BorderStyle_Solid));
    QVERIFY(!none.colour.isValid());
}

void TextEditCommandsTest::tableGrowsAndShrinks()
{
    QTextDocument doc;
    TextEditCommands::TableShape shape;
    shape.rows = 2;
    shape.columns = 3;
    const QTextCursor first = TextEditCommands(QTextCursor(&doc)).insertTable(shape);
    QTextTable* table = first.currentTable();
    QVERIFY(table);
    QCOMPARE(table->cellAt(first).row(), 0);
    QCOMPARE(table->cellAt(first).column(), 0);
    QCOMPARE(table->format().columnWidthConstraints().size(), 3);

    table->cellAt(0, 1).firstCursorPosition().insertText(QStringLiteral("B"));
    TextEditCommands(table->cellAt(0, 1).firstCursorPosition()).insertColumn();
    QCOMPARE(table->columns(), 4);
    // The new column is right of the caret's; per-cent columns share the width again.
    QCOMPARE(table->cellAt(0, 1).firstCursorPosition().block().text(), QStringLiteral("B"));
    const QList<QTextLength> widths = table->format().columnWidthConstraints();
    QCOMPARE(widths.size(), 4);
    for (const QTextLength& w : widths) {
        QCOMPARE(w.type(), QTextLength::PercentageLength);
        QCOMPARE(w.rawValue(), 25.0);
    }

    TextEditCommands(table->cellAt(1, 0).firstCursorPosition()).insertRow();
    QCOMPARE(table->rows(), 3);
    TextEditCommands(table->cellAt(0, 1).firstCursorPosition()).deleteColumn();
    QCOMPARE(table->columns(), 3);
    QCOMPARE(table->format().columnWidthConstraints().size(), 3);
    QVERIFY(!doc.toPlainText().contains(QLatin1Char('B')));
    TextEditCommands(table->cellAt(2, 0).firstCursorPosition()).deleteRow();
    QCOMPARE(table->rows(), 2);

    // Outside a table the table commands change nothing.
    QTextCursor after(&doc);
    after.movePosition(QTextCursor::End);
    const QString text = doc.toPlainText();
    TextEditCommands(after).insertRow();
    TextEditCommands(after).deleteColumn();
    QCOMPARE(doc.toPlainText(), text);
    QCOMPARE(TextEditCommands(after).rowSelection(), after);
}

void TextEditCommandsTest::fixedColumnWidthsFollowTheColumns()
{
    QTextDocument doc;
    QTextTableFormat format;
    format.setColumnWidthConstraints(
        {QTextLength(QTextLength::FixedLength, 100), QTextLength(QTextLength::FixedLength, 40)});
    QTextTable* table = QTextCursor(&doc).insertTable(1, 2, format);
    TextEditCommands(table->cellAt(0, 0).firstCursorPosition()).insertColumn();
    QCOMPARE(table->format().columnWidthConstraints(),
             (QList<QTextLength>{QTextLength(QTextLength::FixedLength, 100),
                                 QTextLength(QTextLength::FixedLength, 100),
                                 QTextLength(QTextLength::FixedLength, 40)}));
    TextEditCommands(table->cellAt(0, 2).firstCursorPosition()).deleteColumn();
    QCOMPARE(table->format().columnWidthConstraints(),
             (QList<QTextLength>{QTextLength(QTextLength::FixedLength, 100),
                                 QTextLength(QTextLength::FixedLength, 100)}));
}

void TextEditCommandsTest::rowGoesBelowAMergedCell()
{
    QTextDocument doc;
    QTextTable* table = QTextCursor(&doc).insertTable(3, 2);
    table->mergeCells(0, 0, 2, 1); // the first cell spans rows 0 and 1
    table->cellAt(2, 0).firstCursorPosition().insertText(QStringLiteral("last"));
    TextEditCommands(table->cellAt(0, 0).firstCursorPosition()).insertRow();
    QCOMPARE(table->rows(), 4);
    QCOMPARE(table->cellAt(0, 0).rowSpan(), 2); // the merged cell is not split
    QCOMPARE(table->cellAt(2, 0).firstCursorPosition().block().text(), QString());
    QCOMPARE(table->cellAt(3, 0).firstCursorPosition().block().text(), QStringLiteral("last"));
}

void TextEditCommandsTest::cellBordersToggleAgainstTheTableBorder()
{
    QTextDocument doc;
    TextEditCommands::TableShape shape;
    shape.rows = 2;
    shape.columns = 2;
    shape.border = 1;
    QTextTable* table = TextEditCommands(QTextCursor(&doc)).insertTable(shape).currentTable();
    // A cell of a bordered table shows the table's border: toggling takes it away.
    TextEditCommands(table->cellAt(0, 0).firstCursorPosition())
        .setBorders(BorderSide::Top, TextEditCommands::BorderChange::Toggle);
    QVERIFY(!cellBorder(table->cellAt(0, 0), QTextFormat::TableCellTopBorder));
    QVERIFY(table->cellAt(0, 0).format().hasProperty(QTextFormat::TableCellTopBorder));
    QVERIFY(!table->cellAt(0, 1).format().hasProperty(QTextFormat::TableCellTopBorder));
    TextEditCommands(table->cellAt(0, 0).firstCursorPosition())
        .setBorders(BorderSide::Top, TextEditCommands::BorderChange::Toggle);
    QVERIFY(cellBorder(table->cellAt(0, 0), QTextFormat::TableCellTopBorder));

    // A selection of cells: every one of them, every side named.
    QTextCursor cells = table->cellAt(0, 0).firstCursorPosition();
    cells.setPosition(table->cellAt(1, 1).firstCursorPosition().position(),
                      QTextCursor::KeepAnchor);
    TextEditCommands(cells).setBorders(BorderSide::All, TextEditCommands::BorderChange::Off);
    for (int r = 0; r < 2; ++r) {
        for (int c = 0; c < 2; ++c) {
            for (int side : {QTextFormat::TableCellTopBorder, QTextFormat::TableCellBottomBorder,
                             QTextFormat::TableCellLeftBorder, QTextFormat::TableCellRightBorder}) {
                QVERIFY(!cellBorder(table->cellAt(r, c), side));
            }
        }
    }
    // The paragraphs inside the cells got no paragraph border.
    QCOMPARE(sidesOf(table->cellAt(0, 0).firstCursorPosition().block()), 0);
    doc.undo(); // one step: the cells are back to the table's border
    QVERIFY(!table->cellAt(1, 1).format().hasProperty(QTextFormat::TableCellTopBorder));
    QVERIFY(cellBorder(table->cellAt(0, 0), QTextFormat::TableCellTopBorder));
}

void TextEditCommandsTest::rowAndColumnSelections()
{
    QTextDocument doc;
    QTextTable* table = QTextCursor(&doc).insertTable(3, 3);
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            table->cellAt(r, c).firstCursorPosition().insertText(
                QStringLiteral("%1%2").arg(QChar(u'a' + r)).arg(c));
        }
    }
    const QTextCursor middle = table->cellAt(1, 1).firstCursorPosition();
    int firstRow = 0, rows = 0, firstColumn = 0, columns = 0;
    TextEditCommands(middle).rowSelection().selectedTableCells(&firstRow, &rows, &firstColumn,
                                                               &columns);
    QCOMPARE(QList<int>({firstRow, rows, firstColumn, columns}), QList<int>({1, 1, 0, 3}));
    TextEditCommands(middle).columnSelection().selectedTableCells(&firstRow, &rows, &firstColumn,
                                                                  &columns);
    QCOMPARE(QList<int>({firstRow, rows, firstColumn, columns}), QList<int>({0, 3, 1, 1}));
}

void TextEditCommandsTest::blackBackgroundIsNotEntered()
{
    ColourTable colours;
    const int entries = colours.count();
    const QTextCharFormat black = TextEditCommands::backgroundFormat(Qt::black, colours);
    QCOMPARE(colours.count(), entries);
    QCOMPARE(black.background().color(), colours.colour(ColourTable::kBlackBackgroundNumber));
    QCOMPARE(TextEditCommands::shownBackground(black, colours),
             colours.colour(ColourTable::kBlackBackgroundNumber));
    const QTextCharFormat text = TextEditCommands::foregroundFormat(QColor(9, 8, 7), colours);
    QCOMPARE(colours.count(), entries + 1);
    QCOMPARE(TextEditCommands::shownForeground(text), QColor(9, 8, 7));
    // Text without colours of its own shows black on white.
    QCOMPARE(TextEditCommands::shownForeground(QTextCharFormat()), QColor(Qt::black));
    QCOMPARE(TextEditCommands::shownBackground(QTextCharFormat(), colours), QColor(Qt::white));
}

QTEST_MAIN(TextEditCommandsTest)
#include "TextEditCommandsTest.moc"
