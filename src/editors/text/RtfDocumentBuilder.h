#pragma once

#include <QColor>
#include <QHash>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextImageFormat>
#include <QTextListFormat>

#include <array>
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
    bool isSet() const { return style != 0; }
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
class RtfDocumentBuilder
{
public:
    static constexpr int kMaxColumns = 128;

    explicit RtfDocumentBuilder(QTextDocument* document);

    void insertText(const QString& text, const QTextCharFormat& format, bool inTable);
    void insertHidden(const QString& text, const QTextCharFormat& format, bool inTable);
    void insertImage(const QTextImageFormat& format, bool inTable);
    // \par: `mark` is the character format of the paragraph mark (the height of an empty line).
    void endParagraph(const RtfParagraph& paragraph, const QTextCharFormat& mark, bool inTable);
    void endCell(const RtfParagraph& paragraph, const QTextCharFormat& mark);
    void endRow(const RtfRowDef& row);
    void pageBreak();
    void bookmarkStart(const QString& name);
    void bookmarkEnd(const QString& name);
    // The end of the input: the last paragraph's format, open tables and bookmarks.
    void finish(const RtfParagraph& last, const QTextCharFormat& mark);
    // After finish(): the footnotes as numbered paragraphs at the end (note 1 first; empty
    // notes are left out).
    void appendNotes(const std::vector<QString>& notes);

private:
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
            BookmarkEnd
        };
        Kind kind;
        QString text;
        QTextCharFormat format;
        RtfParagraph paragraph;
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
    struct Bookmark
    {
        QString name;
        int start;
        int end;
    };

    void content(bool inTable);
    void record(Op op);
    void apply(const Op& op);
    void applyParagraph(const RtfParagraph& paragraph, const QTextCharFormat& mark);
    void startTableIfNeeded();
    void endTable();
    void buildTable();
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

    bool m_inTable = false;
    bool m_rowOpen = false;
    int m_cellIndex = 0;
    std::vector<PendingRow> m_rows;

    QHash<QString, int> m_openBookmarks;
    std::vector<Bookmark> m_bookmarks;
};

} // namespace kestrum::text
