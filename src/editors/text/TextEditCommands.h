#pragma once

#include <QColor>
#include <QTextCursor>
#include <QTextFrameFormat>
#include <QTextListFormat>

#include <optional>

class QTextCharFormat;

namespace kestrum::text {

class ColourTable;

// The editing commands of the text page that need no window: lists and levels, paragraph
// borders, tables (create, insert and delete rows and columns, select a row or column, cell
// borders) and the colour formats the colour selectors apply. Each works on the caret or the
// selection of the cursor it is given, as one undo step.
class TextEditCommands
{
public:
    // How a border command changes the sides it names.
    enum class BorderChange
    {
        Toggle,
        On,
        Off
    };

    // A new table: its size, border width and cell padding (pixels).
    struct TableShape
    {
        int rows = 2;
        int columns = 3;
        int border = 1;
        int padding = 4;
    };

    // A paragraph border as the borders dialog gives it; an invalid colour is the text's.
    struct ParagraphBorder
    {
        int sides = 0;  // BorderSide bits
        int width = 15; // twips
        int style = QTextFrameFormat::BorderStyle_Solid;
        int spacing = 0; // twips
        QColor colour;
    };

    explicit TextEditCommands(const QTextCursor& cursor) : m_cursor(cursor) {}

    const QTextCursor& cursor() const { return m_cursor; }

    // ---- lists and levels
    // Bullets (`style` a bullet style) or numbers on or off: the same kind of list again
    // takes the paragraphs out of it; otherwise they join one new list of that style.
    void toggleList(QTextListFormat::Style style);
    // The selected paragraphs into one list of `format` (none: out of their lists).
    void setList(const std::optional<QTextListFormat>& format);
    // One level deeper (`delta` 1) or higher (-1): the list level in a list (1 to 9), the
    // paragraph indent (0 to 20) outside one.
    void changeLevel(int delta);

    // ---- borders
    // In a table, the borders of the selected cells (the caret's cell); elsewhere the sides of
    // the selected paragraphs' borders.
    void setBorders(int sides, BorderChange change);
    // The border of the selected paragraphs; its colour is entered into `colours`.
    void setParagraphBorder(const ParagraphBorder& border, ColourTable& colours);
    // The border of the caret's paragraph.
    ParagraphBorder paragraphBorder() const;

    // ---- tables
    // Inserts a table at the caret, its columns sharing the width; returns the caret in its
    // first cell.
    QTextCursor insertTable(const TableShape& shape);
    // A row below the caret's cell (below all rows it spans).
    void insertRow();
    // A column right of the caret's cell; columns sharing the width in per cent share it
    // again, a fixed width is copied from the column at the left.
    void insertColumn();
    void deleteRow();
    void deleteColumn();
    // The whole row or column of the caret's cell selected (the cursor unchanged outside a
    // table).
    QTextCursor rowSelection() const;
    QTextCursor columnSelection() const;

    // ---- colours
    // The format giving text this colour, entered into the document's colour table.
    static QTextCharFormat foregroundFormat(const QColor& colour, ColourTable& colours);
    // The format giving text this background; black is colour number 18 and is not entered.
    static QTextCharFormat backgroundFormat(const QColor& colour, ColourTable& colours);
    // The text and background colours the selectors show for text in `format`.
    static QColor shownForeground(const QTextCharFormat& format);
    static QColor shownBackground(const QTextCharFormat& format, const ColourTable& colours);

private:
    QTextCursor m_cursor;
};

} // namespace kestrum::text
