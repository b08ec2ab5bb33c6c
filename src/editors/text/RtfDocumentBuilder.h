#pragma once

#include <QColor>
#include <QHash>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextFormat>
#include <QTextImageFormat>
#include <QTextListFormat>

#include <array>
#include <memory>
#include <optional>
#include <vector>

class QTextDocument;
class QTextList;

namespace kestrum::text {

// A border as RTF describes it (\brdrs\brdrwN\brdrcfN\brspN); width and space in twips.
struct RtfBorder
{
    int style = 0; // QTextFrameFormat::BorderStyle; 0 (none) when not set
    int width = 15;
    QColor colour;
    int space = 0;
    bool given = false; // named by \clbrdrX or \trbrdrX, even as \brdrnone
    bool isSet() const { return style != 0; }
    bool sameLine(const RtfBorder& other) const;
};

enum RtfSide
{
    SideTop = 0,
    SideBottom,
    SideLeft,
    SideRight,
    SideCount
};

// One cell of a table row definition (\clxxx ... \cellxN).
struct RtfCellDef
{
    int right = 0; // right boundary, twips from the row's origin
    bool mergeFirst = false;
    bool merged = false;
    bool verticalFirst = false;
    bool verticalMerged = false;
    QColor shading;
    std::array<RtfBorder, SideCount> borders;
    int verticalAlign = 0; // 0 top, 1 centre, 2 bottom
    // The width the cell asks for (\clftsWidthN\clwWidthN): its kind and value.
    enum WidthKind
    {
        WidthUnset = 0,
        WidthAuto = 1,
        WidthPercent = 2, // in fiftieths of a percent
        WidthTwips = 3
    };
    int widthKind = WidthUnset;
    int width = 0;
};

// A table row definition (\trowd ...).
struct RtfRowDef
{
    int left = 0;
    int gap = 108;     // half the space between cells (\trgaph)
    int alignment = 0; // 0 left, 1 centre, 2 right
    bool header = false;
    std::vector<RtfCellDef> cells;
    // top, bottom, left, right, inner horizontal, inner vertical (\trbrdrX)
    std::array<RtfBorder, 6> borders;
};

// What a paragraph becomes: its block format and, for list paragraphs, the list it joins.
struct RtfParagraph
{
    QTextBlockFormat block;
    QString listKey; // paragraphs with the same key share a list; empty: not in a list
    bool listContinuesOnlyAdjacent = false; // old-style (\pn) lists restart after other text
    // The paragraph carried its marker as text ({\listtext ..} or {\pntext ..}). Once a list's
    // items do, a paragraph of the list without one continues the item before it.
    bool listMarker = false;
    QTextListFormat list;
};

// Builds a QTextDocument from the reader's stream of paragraphs, runs, rows and bookmarks.
// Text outside tables goes straight into the document; a table is gathered row by row and laid
// out when it ends, on a column grid made of every cell boundary of its rows, so that rows
// with different cells line up as merged cells.
//
// Every piece of content comes with its table depth (RTF's \itapN: 0 outside tables, 1 in a
// table, 2 in a table inside a cell of that table...). The builder keeps one open table per
// level; a nested table that ends becomes part of the content of the cell it stands in, and is
// laid out inside that cell when the outer table is.
class RtfDocumentBuilder
{
public:
    static constexpr int kMaxColumns = 128;
    // Tables nested deeper than this take their content into the deepest allowed level.
    static constexpr int kMaxTableDepth = 8;

    explicit RtfDocumentBuilder(QTextDocument* document);

    void insertText(const QString& text, const QTextCharFormat& format, int depth);
    void insertHidden(const QString& text, const QTextCharFormat& format, int depth);
    void insertImage(const QTextImageFormat& format, int depth);
    // \par: `mark` is the character format of the paragraph mark (the height of an empty line).
    void endParagraph(const RtfParagraph& paragraph, const QTextCharFormat& mark, int depth);
    // \cell (depth 1) or \nestcell (depth 2 and more).
    void endCell(const RtfParagraph& paragraph, const QTextCharFormat& mark, int depth);
    // \row (depth 1) or \nestrow; tables nested deeper end first.
    void endRow(const RtfRowDef& row, int depth);
    void pageBreak();
    void bookmarkStart(const QString& name);
    void bookmarkEnd(const QString& name);
    // The end of the input: the last paragraph's format, open tables and bookmarks.
    void finish(const RtfParagraph& last, const QTextCharFormat& mark);
    // After finish(): the footnotes as numbered paragraphs at the end (note 1 first; empty
    // notes are left out).
    void appendNotes(const std::vector<QString>& notes);

private:
    struct PendingTable;
    struct Op
    {
        enum class Kind
        {
            Text,
            Hidden,
            Image,
            ParagraphEnd,
            CellEnd,
            BookmarkStart,
            BookmarkEnd,
            Table
        };
        Kind kind;
        QString text;
        QTextCharFormat format;
        RtfParagraph paragraph;
        std::shared_ptr<PendingTable> table = {};
    };
    struct PendingCell
    {
        std::vector<Op> ops;
    };
    struct PendingRow
    {
        RtfRowDef def;
        std::vector<PendingCell> cells;
    };
    struct PendingTable
    {
        std::vector<PendingRow> rows;
        bool rowOpen = false;
        int cellIndex = 0;
    };
    // Where a cell of a row went on the table's column grid.
    struct Placed
    {
        int start;
        int span;
        bool continuation;
    };
    struct Bookmark
    {
        QString name;
        int start;
        int end;
    };

    void content(int depth);
    void record(Op op);
    void apply(const Op& op);
    void applyParagraph(const RtfParagraph& paragraph, const QTextCharFormat& mark);
    void setMarkFormat(const QTextCharFormat& mark);
    static void openRow(PendingTable& table);
    void closeTable();
    void placeTable(PendingTable& table);
    void buildTable(PendingTable& table);
    static std::optional<RtfBorder> tableBorder(const std::vector<PendingRow>& rows);
    static QList<QTextLength> columnWidths(const std::vector<PendingRow>& rows,
                                           const std::vector<std::vector<Placed>>& placed,
                                           const std::vector<int>& edges, int origin);
    void applyBookmarks();

    QTextDocument* m_document;
    QTextCursor m_cursor;
    bool m_blockHasContent = false;
    bool m_lastWasParagraphEnd = false;
    bool m_pendingPageBreak = false;
    // The document deletes a list once its last paragraph has gone (e.g. joined into another).
    QHash<QString, QPointer<QTextList>> m_lists;
    QString m_previousListKey;
    QSet<QString> m_listsWithMarkers;

    // While a table is laid out: the position of the first paragraph of the cell being
    // filled (-1 when the cursor is past it).
    int m_cellFirstBlock = -1;
    // The open tables, outermost first.
    std::vector<std::shared_ptr<PendingTable>> m_tables;

    QHash<QString, int> m_openBookmarks;
    std::vector<Bookmark> m_bookmarks;
};

} // namespace kestrum::text
