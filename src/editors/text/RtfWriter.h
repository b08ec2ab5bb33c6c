#pragma once

#include "common/RtfEmitter.h"
#include "editors/text/ColourTable.h"
#include "editors/text/ListItemNumbers.h"
#include "editors/text/PageLayout.h"
#include "editors/text/RtfFootnoteWriter.h"

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

class QTextBlock;
class QTextCharFormat;
class QTextDocument;
class QTextFragment;
class QTextList;
class QTextTable;
class QTextTableCell;

namespace kestrum::text {

// Writes a QTextDocument as RTF 1.x that word processors open: a font table, the document's
// colour table (so colour numbers are kept), list tables, paragraphs with their formats, tables
// with merged cells, shading and borders, pictures (their original bytes when they were read
// from RTF, PNG otherwise), hyperlinks as HYPERLINK fields, bookmarks, hidden text, the page
// size and margins. Text is 7-bit, escaped by the common RTF emitter.
class RtfWriter
{
public:
    RtfWriter(const QTextDocument& document, const ColourTable& colours, const PageLayout& layout);

    QByteArray write();
    // The colour table after writing: the document's, with any colour found in it entered.
    const ColourTable& colours() const { return m_colours; }

    // An empty document in the default font, for pages that were never filled.
    static QByteArray emptyDocument(const PageLayout& layout);

private:
    struct CharProps
    {
        int font = 0;
        int halfPoints = 24;
        bool bold = false;
        bool italic = false;
        bool strike = false;
        int underline = 0;
        int vertical = 0;
        int caps = 0;
        int foreground = 0;
        int background = 0;
        int spacing = 0;
    };

    void collect();
    void collectFormat(const QTextCharFormat& format);
    void writeHeader();
    void writeFrameContent(const QTextBlock& first, const QTextBlock& last, int depth);
    void writeRootFrame();
    // `depth`: 1 for a table in the text, 2 for a table inside a cell of one, and so on.
    void writeTable(const QTextTable* table, int depth);
    void writeRowDefinition(const QTextTable* table, int row, const std::vector<int>& widths);
    void writeCell(const QTextTableCell& cell, int depth, bool lastInRow);
    // `depth`: the table depth of the paragraph (0 outside tables).
    void writeBlock(const QTextBlock& block, int depth, bool lastInCell);
    void writeFragment(const QTextFragment& fragment);
    void writeCharDiff(const CharProps& target);
    CharProps charProps(const QTextCharFormat& format);
    void openLink(const QString& href);
    void closeLink();
    void updateBookmarks(const QStringList& names);
    void closeBookmarks();
    int colourNumber(const QColor& colour);
    int fontIndex(const QString& family);
    QString defaultFamily() const;

    const QTextDocument& m_document;
    ColourTable m_colours;
    PageLayout m_layout;
    common::RtfEmitter m_rtf;
    RtfFootnoteWriter m_footnotes;

    QStringList m_fonts;
    QHash<QString, int> m_fontIndex;
    QHash<const QTextList*, int> m_lists; // list -> \ls number
    QList<const QTextList*> m_listOrder;
    std::optional<ListItemNumbers> m_itemNumbers; // counted when the first marker is written
    int m_defaultHalfPoints = 22;

    CharProps m_current;
    QString m_link;
    CharProps m_beforeLink;
    QStringList m_openBookmarks;
};

} // namespace kestrum::text
