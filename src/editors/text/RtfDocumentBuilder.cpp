#include "RtfDocumentBuilder.h"

#include "editors/text/HiddenTextObject.h"
#include "editors/text/ListNumbering.h"
#include "editors/text/TextProperties.h"

#include <QTextDocument>
#include <QTextList>
#include <QTextTable>

#include <algorithm>
#include <cmath>

namespace kestrum::text {

namespace {
// The indent of one list level, in twips (the document's 40-pixel indent width).
constexpr int kListIndentTwips = 600;
} // namespace

namespace {

constexpr int kMaxOpenBookmarks = 10000;
// A text document's list does work in proportion to its length for every item added to it, so
// one long list would take time that grows with the square of its length: a list goes on as a
// new list, numbered on from where it stopped, after this many items.
constexpr int kMaxListItems = 256;
constexpr int kDefaultCellWidth = 1440;

} // namespace

bool RtfBorder::sameLine(const RtfBorder& other) const
{
    const QColor ink = colour.isValid() ? colour : QColor(Qt::black);
    const QColor otherInk = other.colour.isValid() ? other.colour : QColor(Qt::black);
    return style == other.style && width == other.width && ink == otherInk;
}

RtfDocumentBuilder::RtfDocumentBuilder(QTextDocument* document)
    : m_document(document), m_cursor(document)
{
    m_cursor.movePosition(QTextCursor::End);
}

void RtfDocumentBuilder::content(int depth)
{
    depth = std::clamp(depth, 0, kMaxTableDepth);
    while (int(m_tables.size()) > depth) {
        closeTable();
    }
    while (int(m_tables.size()) < depth) {
        if (!m_tables.empty()) {
            openRow(*m_tables.back()); // a nested table stands in a cell of an open row
        }
        m_tables.push_back(std::make_shared<PendingTable>());
    }
    if (depth > 0) {
        openRow(*m_tables.back());
    }
}

void RtfDocumentBuilder::openRow(PendingTable& table)
{
    if (!table.rowOpen) {
        table.rows.emplace_back();
        table.rows.back().cells.resize(1);
        table.cellIndex = 0;
        table.rowOpen = true;
    }
}

void RtfDocumentBuilder::record(Op op)
{
    if (m_tables.empty()) {
        apply(op);
        return;
    }
    PendingTable& table = *m_tables.back();
    openRow(table);
    table.rows.back().cells[std::size_t(table.cellIndex)].ops.push_back(std::move(op));
}

void RtfDocumentBuilder::insertText(const QString& text, const QTextCharFormat& format, int depth)
{
    if (text.isEmpty()) {
        return;
    }
    content(depth);
    record({Op::Kind::Text, text, format, {}});
}

void RtfDocumentBuilder::insertHidden(const QString& text, const QTextCharFormat& format, int depth)
{
    if (text.isEmpty()) {
        return;
    }
    content(depth);
    record({Op::Kind::Hidden, text, format, {}});
}

void RtfDocumentBuilder::insertImage(const QTextImageFormat& format, int depth)
{
    content(depth);
    record({Op::Kind::Image, {}, format, {}});
}

void RtfDocumentBuilder::endParagraph(const RtfParagraph& paragraph, const QTextCharFormat& mark,
                                      int depth)
{
    content(depth);
    record({Op::Kind::ParagraphEnd, {}, mark, paragraph});
}

void RtfDocumentBuilder::endCell(const RtfParagraph& paragraph, const QTextCharFormat& mark,
                                 int depth)
{
    content(std::max(1, depth));
    record({Op::Kind::CellEnd, {}, mark, paragraph});
    PendingTable& table = *m_tables.back();
    if (table.cellIndex + 1 < kMaxColumns) {
        ++table.cellIndex;
        PendingRow& row = table.rows.back();
        if (row.cells.size() <= std::size_t(table.cellIndex)) {
            row.cells.resize(std::size_t(table.cellIndex) + 1);
        }
    }
}

void RtfDocumentBuilder::endRow(const RtfRowDef& row, int depth)
{
    depth = std::clamp(depth, 1, kMaxTableDepth);
    if (int(m_tables.size()) < depth) {
        return;
    }
    while (int(m_tables.size()) > depth) {
        closeTable();
    }
    PendingTable& table = *m_tables.back();
    if (!table.rowOpen) {
        return;
    }
    PendingRow& pending = table.rows.back();
    pending.def = row;
    // The cell opened by the last \cell holds nothing.
    if (pending.cells.size() > 1 && pending.cells.back().ops.empty()) {
        pending.cells.pop_back();
    }
    table.rowOpen = false;
}

void RtfDocumentBuilder::pageBreak()
{
    if (m_tables.empty()) {
        m_pendingPageBreak = true;
    }
}

void RtfDocumentBuilder::bookmarkStart(const QString& name)
{
    if (name.isEmpty()) {
        return;
    }
    record({Op::Kind::BookmarkStart, name, {}, {}});
}

void RtfDocumentBuilder::bookmarkEnd(const QString& name)
{
    if (name.isEmpty()) {
        return;
    }
    record({Op::Kind::BookmarkEnd, name, {}, {}});
}

void RtfDocumentBuilder::finish(const RtfParagraph& last, const QTextCharFormat& mark)
{
    while (!m_tables.empty()) {
        closeTable();
    }
    if (m_blockHasContent) {
        applyParagraph(last, mark);
    } else if (m_lastWasParagraphEnd) {
        // A final \par closes the last paragraph; it does not open an empty one.
        const QTextBlock previous = m_cursor.block().previous();
        if (previous.isValid() && !QTextCursor(previous).currentTable() &&
            m_cursor.block().length() == 1) {
            m_cursor.deletePreviousChar();
        }
    }
    for (auto it = m_openBookmarks.cbegin(); it != m_openBookmarks.cend(); ++it) {
        m_bookmarks.push_back({it.key(), it.value(), m_document->characterCount() - 1});
    }
    m_openBookmarks.clear();
    applyBookmarks();
}

void RtfDocumentBuilder::appendNotes(const std::vector<QString>& notes)
{
    QTextCursor cursor(m_document);
    cursor.movePosition(QTextCursor::End);
    for (std::size_t i = 0; i < notes.size(); ++i) {
        if (notes[i].isEmpty()) {
            continue;
        }
        const int number = int(i) + 1;
        QTextBlockFormat block;
        block.setProperty(TextProperty::FootnoteNumber, number);
        if (!cursor.block().text().isEmpty() || cursor.currentTable() ||
            cursor.block().previous().isValid()) {
            cursor.insertBlock(block, QTextCharFormat());
        } else {
            cursor.setBlockFormat(block);
        }
        QTextCharFormat mark;
        mark.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
        cursor.insertText(QString::number(number), mark);
        QString text = notes[i];
        text.replace(QLatin1Char('\n'), QChar::LineSeparator);
        cursor.insertText(QLatin1Char(' ') + text, QTextCharFormat());
    }
}

void RtfDocumentBuilder::apply(const Op& op)
{
    switch (op.kind) {
    case Op::Kind::Text:
        m_cursor.insertText(op.text, op.format);
        m_blockHasContent = true;
        m_lastWasParagraphEnd = false;
        break;
    case Op::Kind::Hidden:
        HiddenTextObject::insert(m_cursor, op.text, op.format);
        m_blockHasContent = true;
        m_lastWasParagraphEnd = false;
        break;
    case Op::Kind::Image:
        m_cursor.insertImage(op.format.toImageFormat());
        m_blockHasContent = true;
        m_lastWasParagraphEnd = false;
        break;
    case Op::Kind::ParagraphEnd:
        applyParagraph(op.paragraph, op.format);
        m_cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
        m_blockHasContent = false;
        m_lastWasParagraphEnd = true;
        break;
    case Op::Kind::CellEnd:
        applyParagraph(op.paragraph, op.format);
        m_lastWasParagraphEnd = false;
        break;
    case Op::Kind::BookmarkStart:
        if (m_openBookmarks.size() < kMaxOpenBookmarks) {
            m_openBookmarks.insert(op.text, m_cursor.position());
        }
        break;
    case Op::Kind::Table:
        if (op.table) {
            placeTable(*op.table);
        }
        break;
    case Op::Kind::BookmarkEnd: {
        const auto it = m_openBookmarks.find(op.text);
        if (it != m_openBookmarks.end()) {
            if (m_bookmarks.size() < std::size_t(kMaxOpenBookmarks)) {
                m_bookmarks.push_back({op.text, it.value(), m_cursor.position()});
            }
            m_openBookmarks.erase(it);
        }
        break;
    }
    }
}

void RtfDocumentBuilder::applyParagraph(const RtfParagraph& paragraph, const QTextCharFormat& mark)
{
    QTextBlockFormat block = paragraph.block;
    if (m_pendingPageBreak) {
        block.setPageBreakPolicy(block.pageBreakPolicy() | QTextFormat::PageBreak_AlwaysBefore);
        m_pendingPageBreak = false;
    }
    const QString& key = paragraph.listKey;
    if (!key.isEmpty() && paragraph.listMarker) {
        m_listsWithMarkers.insert(key);
    } else if (!key.isEmpty() && key == m_previousListKey && m_listsWithMarkers.contains(key)) {
        // A further paragraph of the item before: no marker of its own, the item's indent.
        block.setLeftMargin(block.leftMargin() +
                            twipsToPixels(paragraph.list.indent() * kListIndentTwips));
        m_cursor.setBlockFormat(block);
        if (!m_blockHasContent) {
            setMarkFormat(mark);
        }
        return;
    }
    m_cursor.setBlockFormat(block);
    if (!m_blockHasContent) {
        setMarkFormat(mark);
    }
    if (!paragraph.listKey.isEmpty()) {
        QTextList* list = m_lists.value(paragraph.listKey);
        if (list && paragraph.listContinuesOnlyAdjacent && m_previousListKey != paragraph.listKey) {
            list = nullptr;
        }
        if (list && list->count() >= kMaxListItems) {
            QTextListFormat next = list->format();
            ListNumbering::setStart(next, ListNumbering::start(next) + list->count());
            m_lists.insert(paragraph.listKey, m_cursor.createList(next));
        } else if (list) {
            list->add(m_cursor.block());
        } else {
            m_lists.insert(paragraph.listKey, m_cursor.createList(paragraph.list));
        }
    }
    m_previousListKey = paragraph.listKey;
}

void RtfDocumentBuilder::setMarkFormat(const QTextCharFormat& mark)
{
    // The mark of a cell's first paragraph carries the cell's own format (borders, shading):
    // the paragraph's format joins it.
    if (m_cursor.block().position() == m_cellFirstBlock) {
        m_cursor.mergeBlockCharFormat(mark);
    } else {
        m_cursor.setBlockCharFormat(mark);
    }
}

void RtfDocumentBuilder::closeTable()
{
    std::shared_ptr<PendingTable> table = std::move(m_tables.back());
    m_tables.pop_back();
    if (table->rowOpen) {
        // A row without \row takes the definition of the row before it.
        PendingRow& pending = table->rows.back();
        if (table->rows.size() > 1) {
            pending.def = table->rows[table->rows.size() - 2].def;
        }
        if (pending.cells.size() > 1 && pending.cells.back().ops.empty()) {
            pending.cells.pop_back();
        }
        table->rowOpen = false;
    }
    if (table->rows.empty()) {
        return;
    }
    // A nested table is part of its cell's content; the outermost one is laid out now.
    record({Op::Kind::Table, {}, {}, {}, std::move(table)});
}

void RtfDocumentBuilder::placeTable(PendingTable& table)
{
    if (m_blockHasContent) {
        // Text before the table in the same paragraph keeps its own paragraph.
        m_cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
        m_blockHasContent = false;
        m_lastWasParagraphEnd = true;
    }
    buildTable(table);
}

void RtfDocumentBuilder::buildTable(PendingTable& pending)
{
    std::vector<PendingRow>& rows = pending.rows;
    // Drop rows that hold nothing at all (a stray \intbl paragraph mark).
    if (rows.empty()) {
        return;
    }

    // Cell boundaries of every row, strictly increasing.
    std::vector<std::vector<int>> bounds(rows.size());
    int origin = std::numeric_limits<int>::max();
    std::vector<int> edges;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        const PendingRow& row = rows[r];
        const std::size_t count =
            std::min<std::size_t>(std::max(row.cells.size(), row.def.cells.size()), kMaxColumns);
        int previous = row.def.left;
        origin = std::min(origin, row.def.left);
        for (std::size_t i = 0; i < count; ++i) {
            int right =
                i < row.def.cells.size() ? row.def.cells[i].right : previous + kDefaultCellWidth;
            if (right <= previous) {
                right = previous + (i < row.def.cells.size() ? 60 : kDefaultCellWidth);
            }
            bounds[r].push_back(right);
            edges.push_back(right);
            previous = right;
        }
    }
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    if (edges.size() > std::size_t(kMaxColumns)) {
        edges.resize(kMaxColumns);
    }
    if (edges.empty()) {
        edges.push_back(origin + kDefaultCellWidth);
    }
    const int columns = int(edges.size());
    auto columnOf = [&](int boundary) {
        const auto it = std::lower_bound(edges.begin(), edges.end(), boundary);
        return std::min(int(it - edges.begin()), columns - 1);
    };

    std::vector<std::vector<Placed>> placed(rows.size());
    for (std::size_t r = 0; r < rows.size(); ++r) {
        PendingRow& row = rows[r];
        int next = 0;
        for (std::size_t i = 0; i < bounds[r].size(); ++i) {
            const int end = columnOf(bounds[r][i]);
            if (next >= columns || end < next) {
                // No column left for this cell: its content joins the previous cell.
                if (i < row.cells.size() && !placed[r].empty()) {
                    auto& target = row.cells[placed[r].size() - 1].ops;
                    auto& source = row.cells[i].ops;
                    target.insert(target.end(), source.begin(), source.end());
                    source.clear();
                }
                continue;
            }
            placed[r].push_back({next, end - next + 1, false});
            next = end + 1;
        }
        row.cells.resize(std::max(row.cells.size(), placed[r].size()));
    }

    QTextTableFormat format;
    format.setBorderCollapse(true);
    format.setBorder(0);
    format.setCellSpacing(0);
    const std::optional<RtfBorder> whole = tableBorder(rows);
    if (whole) {
        format.setBorder(std::max(1.0, twipsToPixels(std::clamp(whole->width, 1, 1440))));
        format.setBorderStyle(QTextFrameFormat::BorderStyle(whole->style));
        format.setBorderBrush(whole->colour.isValid() ? whole->colour : QColor(Qt::black));
    }
    const RtfRowDef& first = rows.front().def;
    format.setCellPadding(twipsToPixels(std::clamp(first.gap, 0, 1440)));
    if (first.alignment == 1) {
        format.setAlignment(Qt::AlignHCenter);
    } else if (first.alignment == 2) {
        format.setAlignment(Qt::AlignRight);
    }
    if (origin > 0 && origin < 31680) {
        format.setLeftMargin(twipsToPixels(origin));
    }
    int headerRows = 0;
    while (headerRows < int(rows.size()) && rows[std::size_t(headerRows)].def.header) {
        ++headerRows;
    }
    format.setHeaderRowCount(headerRows);
    format.setColumnWidthConstraints(columnWidths(rows, placed, edges, origin));

    // Qt keeps the paragraph the table is inserted in before the table: an empty paragraph
    // opened by the last \par joins the one before it (in the same cell), so that no empty
    // line appears.
    // (The document's frames are not known while it is being built: cells are told apart by
    // the position of the cell's first paragraph.)
    if (!m_blockHasContent && m_lastWasParagraphEnd && m_cursor.block().length() == 1 &&
        m_cursor.block().position() != m_cellFirstBlock) {
        const QTextBlock previous = m_cursor.block().previous();
        if (previous.isValid()) {
            m_cursor.deletePreviousChar();
        }
    }
    QTextTable* table = m_cursor.insertTable(int(rows.size()), columns, format);

    // Merges: vertical runs first collected, then applied with their horizontal span.
    struct Run
    {
        int row;
        int column;
        int rows;
        int span;
    };
    std::vector<Run> runs;
    std::vector<int> openRun(std::size_t(columns), -1);
    for (std::size_t r = 0; r < rows.size(); ++r) {
        std::vector<bool> touched(std::size_t(columns), false);
        for (std::size_t i = 0; i < placed[r].size(); ++i) {
            Placed& cell = placed[r][i];
            const RtfCellDef def =
                i < rows[r].def.cells.size() ? rows[r].def.cells[i] : RtfCellDef();
            const int runIndex = openRun[std::size_t(cell.start)];
            touched[std::size_t(cell.start)] = true;
            if (def.verticalMerged && runIndex >= 0 &&
                runs[std::size_t(runIndex)].span == cell.span &&
                runs[std::size_t(runIndex)].row + runs[std::size_t(runIndex)].rows == int(r)) {
                ++runs[std::size_t(runIndex)].rows;
                cell.continuation = true;
                continue;
            }
            openRun[std::size_t(cell.start)] = -1;
            if (def.verticalFirst) {
                openRun[std::size_t(cell.start)] = int(runs.size());
            }
            runs.push_back({int(r), cell.start, 1, cell.span});
        }
        for (int c = 0; c < columns; ++c) {
            if (!touched[std::size_t(c)]) {
                openRun[std::size_t(c)] = -1;
            }
        }
    }
    for (const Run& run : runs) {
        if (run.rows > 1 || run.span > 1) {
            table->mergeCells(run.row, run.column, run.rows, run.span);
        }
    }

    auto rowBorder = [](const RtfRowDef& def, RtfSide side, bool outer) -> RtfBorder {
        switch (side) {
        case SideTop:
            return def.borders[outer ? 0 : 4];
        case SideBottom:
            return def.borders[outer ? 1 : 4];
        case SideLeft:
            return def.borders[outer ? 2 : 5];
        case SideRight:
            return def.borders[outer ? 3 : 5];
        case SideCount:
            break;
        }
        return {};
    };

    for (std::size_t r = 0; r < rows.size(); ++r) {
        PendingRow& row = rows[r];
        for (std::size_t i = 0; i < placed[r].size(); ++i) {
            const Placed& cellPlace = placed[r][i];
            if (cellPlace.continuation) {
                continue;
            }
            QTextTableCell cell = table->cellAt(int(r), cellPlace.start);
            if (!cell.isValid()) {
                continue;
            }
            const RtfCellDef def = i < row.def.cells.size() ? row.def.cells[i] : RtfCellDef();
            QTextTableCellFormat cellFormat;
            if (def.shading.isValid()) {
                cellFormat.setBackground(def.shading);
            }
            const bool edge[SideCount] = {r == 0, r + 1 == rows.size(), cellPlace.start == 0,
                                          cellPlace.start + cellPlace.span >= columns};
            for (int s = 0; s < SideCount; ++s) {
                RtfBorder border = def.borders[std::size_t(s)];
                if (whole) {
                    // The table's border shows where the cell has none of its own.
                    if (!border.given || border.sameLine(*whole)) {
                        continue;
                    }
                } else if (!border.isSet()) {
                    border = rowBorder(row.def, RtfSide(s), edge[s]);
                }
                if (!border.isSet() && !whole) {
                    continue;
                }
                // A side switched off in a table with a border: no width, no style.
                const qreal width =
                    border.isSet() ? std::max(1.0, twipsToPixels(std::clamp(border.width, 1, 1440)))
                                   : 0.0;
                const QBrush brush(border.colour.isValid() ? border.colour : QColor(Qt::black));
                const auto style = QTextFrameFormat::BorderStyle(border.style);
                switch (RtfSide(s)) {
                case SideTop:
                    cellFormat.setTopBorder(width);
                    cellFormat.setTopBorderStyle(style);
                    cellFormat.setTopBorderBrush(brush);
                    break;
                case SideBottom:
                    cellFormat.setBottomBorder(width);
                    cellFormat.setBottomBorderStyle(style);
                    cellFormat.setBottomBorderBrush(brush);
                    break;
                case SideLeft:
                    cellFormat.setLeftBorder(width);
                    cellFormat.setLeftBorderStyle(style);
                    cellFormat.setLeftBorderBrush(brush);
                    break;
                case SideRight:
                    cellFormat.setRightBorder(width);
                    cellFormat.setRightBorderStyle(style);
                    cellFormat.setRightBorderBrush(brush);
                    break;
                case SideCount:
                    break;
                }
            }
            if (def.verticalAlign == 1) {
                cellFormat.setVerticalAlignment(QTextCharFormat::AlignMiddle);
            } else if (def.verticalAlign == 2) {
                cellFormat.setVerticalAlignment(QTextCharFormat::AlignBottom);
            }
            cell.setFormat(cellFormat);

            m_cursor = cell.firstCursorPosition();
            m_cellFirstBlock = m_cursor.block().position();
            m_blockHasContent = false;
            m_lastWasParagraphEnd = false;
            if (i < row.cells.size()) {
                for (const Op& op : row.cells[i].ops) {
                    apply(op);
                }
            }
        }
    }
    m_cursor = table->lastCursorPosition();
    m_cursor.movePosition(QTextCursor::NextBlock);
    m_cellFirstBlock = -1;
    m_blockHasContent = false;
    m_lastWasParagraphEnd = false;
}

std::optional<RtfBorder> RtfDocumentBuilder::tableBorder(const std::vector<PendingRow>& rows)
{
    // The same border on every side of every row, between the cells too, is the table's.
    const RtfBorder& first = rows.front().def.borders[0];
    if (!first.given || !first.isSet()) {
        return std::nullopt;
    }
    for (const PendingRow& row : rows) {
        for (const RtfBorder& border : row.def.borders) {
            if (!border.given || !border.sameLine(first)) {
                return std::nullopt;
            }
        }
    }
    return first;
}

QList<QTextLength> RtfDocumentBuilder::columnWidths(const std::vector<PendingRow>& rows,
                                                    const std::vector<std::vector<Placed>>& placed,
                                                    const std::vector<int>& edges, int origin)
{
    // The cell boundaries give fixed widths; a cell of one column that asked for a share of
    // the page or an automatic width gives its column that instead.
    QList<QTextLength> widths;
    int left = std::max(0, origin);
    for (int edge : edges) {
        widths << QTextLength(QTextLength::FixedLength, twipsToPixels(std::max(60, edge - left)));
        left = edge;
    }
    std::vector<bool> decided(edges.size(), false);
    for (std::size_t r = 0; r < rows.size(); ++r) {
        const std::vector<RtfCellDef>& defs = rows[r].def.cells;
        for (std::size_t i = 0; i < placed[r].size() && i < defs.size(); ++i) {
            const Placed& cell = placed[r][i];
            const std::size_t column = std::size_t(cell.start);
            if (cell.span != 1 || decided[column]) {
                continue;
            }
            if (defs[i].widthKind == RtfCellDef::WidthPercent && defs[i].width > 0) {
                widths[qsizetype(column)] = QTextLength(QTextLength::PercentageLength,
                                                        std::min(defs[i].width, 5000) / 50.0);
            } else if (defs[i].widthKind == RtfCellDef::WidthAuto) {
                widths[qsizetype(column)] = QTextLength(QTextLength::VariableLength, 0);
            }
            decided[column] = true;
        }
    }
    // Shares that add up to the whole page within what fiftieths of a percent can say are
    // the whole page (three columns of 33.34% are thirds).
    double total = 0;
    for (const QTextLength& width : widths) {
        if (width.type() != QTextLength::PercentageLength) {
            return widths;
        }
        total += width.rawValue();
    }
    if (total > 0 && std::abs(total - 100.0) <= 0.02 * double(widths.size())) {
        for (QTextLength& width : widths) {
            width = QTextLength(QTextLength::PercentageLength, width.rawValue() * 100.0 / total);
        }
    }
    return widths;
}

void RtfDocumentBuilder::applyBookmarks()
{
    struct Piece
    {
        int start;
        int end;
        QStringList names;
    };
    const int documentEnd = m_document->characterCount() - 1;
    for (const Bookmark& bookmark : m_bookmarks) {
        const int start = std::clamp(bookmark.start, 0, documentEnd);
        int end = std::clamp(bookmark.end, start, documentEnd);
        if (end == start) {
            end = std::min(start + 1, documentEnd);
        }
        if (end <= start) {
            continue;
        }
        std::vector<Piece> pieces;
        for (QTextBlock block = m_document->findBlock(start);
             block.isValid() && block.position() < end; block = block.next()) {
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                const QTextFragment fragment = it.fragment();
                const int s = std::max(fragment.position(), start);
                const int e = std::min(fragment.position() + fragment.length(), end);
                if (s < e) {
                    QStringList names = fragment.charFormat().anchorNames();
                    if (!names.contains(bookmark.name)) {
                        names << bookmark.name;
                    }
                    pieces.push_back({s, e, names});
                }
            }
        }
        for (const Piece& piece : pieces) {
            QTextCursor cursor(m_document);
            cursor.setPosition(piece.start);
            cursor.setPosition(piece.end, QTextCursor::KeepAnchor);
            QTextCharFormat anchor;
            anchor.setAnchor(true);
            anchor.setAnchorNames(piece.names);
            cursor.mergeCharFormat(anchor);
        }
    }
    m_bookmarks.clear();
}

} // namespace kestrum::text
