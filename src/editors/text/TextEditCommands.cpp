#include "TextEditCommands.h"

#include "editors/text/ColourTable.h"
#include "editors/text/TextProperties.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>

#include <algorithm>

namespace kestrum::text {

namespace {

constexpr int kMaxListLevel = 9;
constexpr int kMaxIndent = 20;

// Calls `visit` for every paragraph the cursor's selection touches (the caret's paragraph when
// nothing is selected).
template <typename Visit> void forEachSelectedBlock(const QTextCursor& cursor, Visit&& visit)
{
    const QTextDocument* doc = cursor.document();
    const QTextBlock last = doc->findBlock(cursor.selectionEnd());
    for (QTextBlock block = doc->findBlock(cursor.selectionStart()); block.isValid();
         block = block.next()) {
        visit(block);
        if (block == last) {
            break;
        }
    }
}

// Takes the selected paragraphs out of their lists; with `format`, puts them into one new list
// of that format. `resetIndent` also clears the indent their old list gave them.
void relistSelection(const QTextCursor& cursor, const std::optional<QTextListFormat>& format,
                     bool resetIndent)
{
    QTextList* created = nullptr;
    forEachSelectedBlock(cursor, [&](const QTextBlock& block) {
        if (QTextList* old = block.textList()) {
            old->remove(block);
            if (resetIndent) {
                QTextBlockFormat plain = block.blockFormat();
                plain.setIndent(0);
                QTextCursor(block).setBlockFormat(plain);
            }
        }
        if (format) {
            if (!created) {
                created = QTextCursor(block).createList(*format);
            } else {
                created->add(block);
            }
        }
    });
}

bool isBulletStyle(int style)
{
    // Bullet styles (disc, circle, square) are the negative numbers nearest zero.
    return style >= QTextListFormat::ListSquare;
}

// The properties of one side of a table cell's border.
struct CellSide
{
    int bit;
    int width;
    int style;
    int brush;
};

constexpr CellSide kCellSides[] = {
    {BorderSide::Top, QTextFormat::TableCellTopBorder, QTextFormat::TableCellTopBorderStyle,
     QTextFormat::TableCellTopBorderBrush},
    {BorderSide::Bottom, QTextFormat::TableCellBottomBorder,
     QTextFormat::TableCellBottomBorderStyle, QTextFormat::TableCellBottomBorderBrush},
    {BorderSide::Left, QTextFormat::TableCellLeftBorder, QTextFormat::TableCellLeftBorderStyle,
     QTextFormat::TableCellLeftBorderBrush},
    {BorderSide::Right, QTextFormat::TableCellRightBorder, QTextFormat::TableCellRightBorderStyle,
     QTextFormat::TableCellRightBorderBrush},
};

void setCellBorders(QTextTable* table, const QTextCursor& cursor, int sides,
                    TextEditCommands::BorderChange change)
{
    int firstRow = 0;
    int rows = 0;
    int firstColumn = 0;
    int columns = 0;
    cursor.selectedTableCells(&firstRow, &rows, &firstColumn, &columns);
    if (rows <= 0 || columns <= 0) {
        const QTextTableCell cell = table->cellAt(cursor);
        firstRow = cell.row();
        firstColumn = cell.column();
        rows = columns = 1;
    }
    const bool tableBorder = table->format().border() > 0;
    for (int r = firstRow; r < firstRow + rows; ++r) {
        for (int c = firstColumn; c < firstColumn + columns; ++c) {
            QTextTableCell cell = table->cellAt(r, c);
            if (cell.row() != r || cell.column() != c) {
                continue; // covered by a merged cell
            }
            QTextTableCellFormat format = cell.format().toTableCellFormat();
            for (const CellSide& side : kCellSides) {
                if (!(sides & side.bit)) {
                    continue;
                }
                // A cell without a border of its own shows the table's.
                const bool has =
                    format.hasProperty(side.width)
                        ? format.doubleProperty(side.width) > 0 &&
                              format.intProperty(side.style) != QTextFrameFormat::BorderStyle_None
                        : tableBorder;
                const bool set = change == TextEditCommands::BorderChange::Toggle
                                     ? !has
                                     : change == TextEditCommands::BorderChange::On;
                format.setProperty(side.width, set ? 1.0 : 0.0);
                format.setProperty(side.style, int(set ? QTextFrameFormat::BorderStyle_Solid
                                                       : QTextFrameFormat::BorderStyle_None));
                format.setProperty(side.brush, QBrush(Qt::black));
            }
            cell.setFormat(format);
        }
    }
}

} // namespace

// ---- lists and levels --------------------------------------------------------------------------

void TextEditCommands::toggleList(QTextListFormat::Style style)
{
    QTextList* list = m_cursor.currentList();
    const bool bullets = isBulletStyle(style);
    const bool sameKind = list && isBulletStyle(list->format().style()) == bullets;
    m_cursor.beginEditBlock();
    if (sameKind) {
        relistSelection(m_cursor, std::nullopt, true);
    } else {
        QTextListFormat format;
        format.setStyle(style);
        format.setIndent(list ? list->format().indent() : 1);
        if (!bullets) {
            format.setNumberSuffix(QStringLiteral("."));
        }
        relistSelection(m_cursor, format, false);
    }
    m_cursor.endEditBlock();
}

void TextEditCommands::setList(const std::optional<QTextListFormat>& format)
{
    m_cursor.beginEditBlock();
    relistSelection(m_cursor, format, true);
    m_cursor.endEditBlock();
}

void TextEditCommands::changeLevel(int delta)
{
    QTextList* list = m_cursor.currentList();
    m_cursor.beginEditBlock();
    if (list) {
        QTextListFormat format = list->format();
        const int indent = std::clamp(format.indent() + delta, 1, kMaxListLevel);
        if (indent != format.indent()) {
            format.setIndent(indent);
            relistSelection(m_cursor, format, false);
        }
    } else {
        QTextBlockFormat format = m_cursor.blockFormat();
        format.setIndent(std::clamp(format.indent() + delta, 0, kMaxIndent));
        m_cursor.setBlockFormat(format);
    }
    m_cursor.endEditBlock();
}

// ---- borders -----------------------------------------------------------------------------------

void TextEditCommands::setBorders(int sides, BorderChange change)
{
    m_cursor.beginEditBlock();
    if (QTextTable* table = m_cursor.currentTable()) {
        setCellBorders(table, m_cursor, sides, change);
    } else {
        forEachSelectedBlock(m_cursor, [&](const QTextBlock& block) {
            QTextBlockFormat format = block.blockFormat();
            int current = format.intProperty(TextProperty::BorderSides);
            switch (change) {
            case BorderChange::Toggle:
                current ^= sides;
                break;
            case BorderChange::On:
                current |= sides;
                break;
            case BorderChange::Off:
                current &= ~sides;
                break;
            }
            format.setProperty(TextProperty::BorderSides, current);
            QTextCursor(block).setBlockFormat(format);
        });
    }
    m_cursor.endEditBlock();
}

TextEditCommands::ParagraphBorder TextEditCommands::paragraphBorder() const
{
    const QTextBlockFormat current = m_cursor.blockFormat();
    ParagraphBorder border;
    border.sides = current.intProperty(TextProperty::BorderSides);
    if (current.hasProperty(TextProperty::BorderWidth)) {
        border.width = current.intProperty(TextProperty::BorderWidth);
    }
    if (current.hasProperty(TextProperty::BorderStyle)) {
        border.style = current.intProperty(TextProperty::BorderStyle);
    }
    border.spacing = current.intProperty(TextProperty::BorderSpacing);
    border.colour = current.property(TextProperty::BorderColour).value<QColor>();
    return border;
}

void TextEditCommands::setParagraphBorder(const ParagraphBorder& border, ColourTable& colours)
{
    QTextBlockFormat format;
    format.setProperty(TextProperty::BorderSides, border.sides);
    format.setProperty(TextProperty::BorderWidth, border.width);
    format.setProperty(TextProperty::BorderStyle, border.style);
    format.setProperty(TextProperty::BorderSpacing, border.spacing);
    if (border.colour.isValid()) {
        format.setProperty(TextProperty::BorderColour, border.colour);
        colours.enter(border.colour);
    }
    m_cursor.beginEditBlock();
    m_cursor.mergeBlockFormat(format);
    if (!border.colour.isValid()) {
        // The colour of the text: clear any colour the paragraphs had.
        forEachSelectedBlock(m_cursor, [](const QTextBlock& block) {
            QTextBlockFormat f = block.blockFormat();
            f.clearProperty(TextProperty::BorderColour);
            QTextCursor(block).setBlockFormat(f);
        });
    }
    m_cursor.endEditBlock();
}

// ---- tables ------------------------------------------------------------------------------------

QTextCursor TextEditCommands::insertTable(const TableShape& shape)
{
    QTextTableFormat format;
    format.setBorder(shape.border);
    format.setBorderStyle(shape.border > 0 ? QTextFrameFormat::BorderStyle_Solid
                                           : QTextFrameFormat::BorderStyle_None);
    format.setBorderBrush(QColor(Qt::black));
    format.setBorderCollapse(true);
    format.setCellSpacing(0);
    format.setCellPadding(shape.padding);
    QList<QTextLength> widths;
    for (int c = 0; c < shape.columns; ++c) {
        widths << QTextLength(QTextLength::PercentageLength, 100.0 / shape.columns);
    }
    format.setColumnWidthConstraints(widths);
    QTextTable* table = m_cursor.insertTable(shape.rows, shape.columns, format);
    return table->cellAt(0, 0).firstCursorPosition();
}

void TextEditCommands::insertRow()
{
    if (QTextTable* table = m_cursor.currentTable()) {
        const QTextTableCell cell = table->cellAt(m_cursor);
        table->insertRows(cell.row() + cell.rowSpan(), 1);
    }
}

void TextEditCommands::insertColumn()
{
    QTextTable* table = m_cursor.currentTable();
    if (!table) {
        return;
    }
    const QTextTableCell cell = table->cellAt(m_cursor);
    const int at = cell.column() + cell.columnSpan();
    QTextTableFormat format = table->format();
    QList<QTextLength> widths = format.columnWidthConstraints();
    table->insertColumns(at, 1);
    if (widths.isEmpty()) {
        return;
    }
    if (widths.first().type() == QTextLength::PercentageLength) {
        widths.clear();
        for (int c = 0; c < table->columns(); ++c) {
            widths << QTextLength(QTextLength::PercentageLength, 100.0 / table->columns());
        }
    } else {
        widths.insert(std::min<qsizetype>(at, widths.size()), widths.value(at - 1));
    }
    format = table->format();
    format.setColumnWidthConstraints(widths);
    table->setFormat(format);
}

void TextEditCommands::deleteRow()
{
    if (QTextTable* table = m_cursor.currentTable()) {
        table->removeRows(table->cellAt(m_cursor).row(), 1);
    }
}

void TextEditCommands::deleteColumn()
{
    QTextTable* table = m_cursor.currentTable();
    if (!table) {
        return;
    }
    const int column = table->cellAt(m_cursor).column();
    QTextTableFormat format = table->format();
    QList<QTextLength> widths = format.columnWidthConstraints();
    table->removeColumns(column, 1);
    if (table->columns() > 0 && column < widths.size()) {
        widths.removeAt(column);
        format = table->format();
        format.setColumnWidthConstraints(widths);
        table->setFormat(format);
    }
}

QTextCursor TextEditCommands::rowSelection() const
{
    QTextTable* table = m_cursor.currentTable();
    if (!table) {
        return m_cursor;
    }
    const int row = table->cellAt(m_cursor).row();
    QTextCursor selection = table->cellAt(row, 0).firstCursorPosition();
    selection.setPosition(table->cellAt(row, table->columns() - 1).lastCursorPosition().position(),
                          QTextCursor::KeepAnchor);
    return selection;
}

QTextCursor TextEditCommands::columnSelection() const
{
    QTextTable* table = m_cursor.currentTable();
    if (!table) {
        return m_cursor;
    }
    const int column = table->cellAt(m_cursor).column();
    QTextCursor selection = table->cellAt(0, column).firstCursorPosition();
    selection.setPosition(table->cellAt(table->rows() - 1, column).lastCursorPosition().position(),
                          QTextCursor::KeepAnchor);
    return selection;
}

// ---- colours -----------------------------------------------------------------------------------

QTextCharFormat TextEditCommands::foregroundFormat(const QColor& colour, ColourTable& colours)
{
    const int number = colours.enter(colour);
    QTextCharFormat format;
    format.setForeground(number > 0 ? colours.colour(number) : colour);
    return format;
}

QTextCharFormat TextEditCommands::backgroundFormat(const QColor& colour, ColourTable& colours)
{
    const bool black = colour.red() == 0 && colour.green() == 0 && colour.blue() == 0;
    const int number = black ? ColourTable::kBlackBackgroundNumber : colours.enter(colour);
    QTextCharFormat format;
    format.setBackground(number > 0 ? colours.colour(number) : colour);
    return format;
}

QColor TextEditCommands::shownForeground(const QTextCharFormat& format)
{
    if (format.hasProperty(QTextFormat::ForegroundBrush) &&
        format.foreground().style() != Qt::NoBrush) {
        return format.foreground().color();
    }
    return Qt::black;
}

QColor TextEditCommands::shownBackground(const QTextCharFormat& format, const ColourTable& colours)
{
    if (format.hasProperty(QTextFormat::BackgroundBrush) &&
        format.background().style() != Qt::NoBrush) {
        // A colour of its own: the table entry it is, or the colour itself.
        const int number = colours.indexOf(format.background().color());
        return number > 0 ? colours.colour(number) : format.background().color();
    }
    return Qt::white;
}

} // namespace kestrum::text
