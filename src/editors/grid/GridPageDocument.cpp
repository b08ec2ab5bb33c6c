#include "GridPageDocument.h"

#include "editors/grid/DelimitedTextReader.h"
#include "editors/grid/GridExporter.h"
#include "editors/grid/GridSorter.h"
#include "editors/grid/GridStream.h"
#include "editors/grid/WgfFile.h"

#include <QFileInfo>
#include <QUndoCommand>

#include <algorithm>

namespace kestrum::grid {

namespace {

// Undo commands keep the state on the other side of the change and swap it with the
// document's on undo and redo, so each change is stored once.
class GridStateCommand : public QUndoCommand
{
public:
    GridStateCommand(GridPageDocument* document, GridDocument state, const QString& name)
        : QUndoCommand(name), m_document(document), m_state(std::move(state))
    {}
    void redo() override { m_document->exchangeGrid(m_state); }
    void undo() override { m_document->exchangeGrid(m_state); }

private:
    GridPageDocument* m_document;
    GridDocument m_state;
};

class CellsCommand : public QUndoCommand
{
public:
    CellsCommand(GridPageDocument* document, std::vector<GridPageDocument::CellState> cells,
                 const QString& name)
        : QUndoCommand(name), m_document(document), m_cells(std::move(cells))
    {}
    void redo() override { m_document->exchangeCells(m_cells); }
    void undo() override { m_document->exchangeCells(m_cells); }

private:
    GridPageDocument* m_document;
    std::vector<GridPageDocument::CellState> m_cells;
};

class SizeCommand : public QUndoCommand
{
public:
    SizeCommand(GridPageDocument* document, Qt::Orientation orientation, int index, int size)
        : QUndoCommand(orientation == Qt::Horizontal ? QStringLiteral("Column width")
                                                     : QStringLiteral("Row height")),
          m_document(document), m_orientation(orientation), m_index(index), m_size(size)
    {}
    void redo() override { m_document->exchangeSize(m_orientation, m_index, m_size); }
    void undo() override { m_document->exchangeSize(m_orientation, m_index, m_size); }
    int id() const override { return 0x4B47; }
    // Dragging a border resizes many times: one undo step per section.
    bool mergeWith(const QUndoCommand* other) override
    {
        const auto* next = static_cast<const SizeCommand*>(other);
        return next->m_orientation == m_orientation && next->m_index == m_index;
    }

private:
    GridPageDocument* m_document;
    Qt::Orientation m_orientation;
    int m_index;
    int m_size;
};

GridRect boundsOf(const std::vector<GridPageDocument::CellState>& cells)
{
    GridRect rect{std::numeric_limits<int>::max(), std::numeric_limits<int>::max(), -1, -1};
    for (const auto& s : cells) {
        rect.left = std::min(rect.left, s.cell.col);
        rect.top = std::min(rect.top, s.cell.row);
        rect.right = std::max(rect.right, s.cell.col);
        rect.bottom = std::max(rect.bottom, s.cell.row);
    }
    return rect;
}

bool isDelimitedName(const QString& path, const char* marker)
{
    return QFileInfo(path).fileName().toUpper().contains(QLatin1String(marker));
}

} // namespace

GridPageDocument::GridPageDocument(QObject* parent) : store::PageDocument(parent)
{
    m_undo.setUndoLimit(50);
}

GridPageDocument::~GridPageDocument()
{
    // The commands refer to this document: drop them first.
    m_undo.clear();
}

Result<QByteArray> GridPageDocument::writeContent()
{
    return GridStream::write(m_grid);
}

Status GridPageDocument::readContent(const QByteArray& in)
{
    if (in.isEmpty()) {
        clear();
        return {};
    }
    GridDocument loaded;
    if (const Status read = GridStream::read(in, &loaded); !read) {
        clear();
        return read;
    }
    loaded.unhideAllColumns();
    replaceSilently(std::move(loaded));
    return {};
}

void GridPageDocument::clear()
{
    replaceSilently(GridDocument());
}

void GridPageDocument::replaceSilently(GridDocument grid)
{
    emit gridAboutToBeReset();
    m_undo.clear();
    m_grid = std::move(grid);
    emit gridReset();
}

Status GridPageDocument::importFile(const QString& path)
{
    GridDocument first = m_grid;
    if (DelimitedTextReader::loadFile(path, m_delimiter, &first)) {
        replaceSilently(std::move(first));
    }
    GridDocument loaded = m_grid;
    if (isDelimitedName(path, ".CSV")) {
        m_delimiter = QLatin1Char(',');
        if (const Status read = DelimitedTextReader::loadFile(path, m_delimiter, &loaded); !read) {
            return read;
        }
    } else if (isDelimitedName(path, ".TAB")) {
        m_delimiter = QLatin1Char('\t');
        if (const Status read = DelimitedTextReader::loadFile(path, m_delimiter, &loaded); !read) {
            return read;
        }
    } else {
        if (const Status read = WgfFile::load(path, &loaded); !read) {
            return read;
        }
        loaded.unhideAllColumns();
        loaded.setFixedColumns(0);
        for (int c = 0; c < loaded.columnCount(); ++c) {
            if (loaded.columnWidth(c) < 4) {
                loaded.setColumnWidth(c, 20);
            }
        }
    }
    replaceSilently(std::move(loaded));
    return {};
}

bool GridPageDocument::storesImportImmediately(const QString& path) const
{
    return !isDelimitedName(path, ".CSV") && !isDelimitedName(path, ".TAB");
}

// ---- exchanges (undo and redo) ---------------------------------------------------------------

void GridPageDocument::exchangeGrid(GridDocument& other)
{
    emit gridAboutToBeReset();
    std::swap(m_grid, other);
    emit gridReset();
    emit contentChanged();
}

void GridPageDocument::exchangeCells(std::vector<CellState>& cells)
{
    for (CellState& s : cells) {
        if (!m_grid.isValidCell(s.cell.col, s.cell.row)) {
            continue;
        }
        QString text = m_grid.text(s.cell.col, s.cell.row);
        const quint32 id = m_grid.formatId(s.cell.col, s.cell.row);
        m_grid.setText(s.cell.col, s.cell.row, s.text);
        m_grid.setFormatId(s.cell.col, s.cell.row, s.formatId);
        s.text = std::move(text);
        s.formatId = id;
    }
    if (!cells.empty()) {
        emit cellsChanged(boundsOf(cells));
    }
    emit contentChanged();
}

void GridPageDocument::exchangeSize(Qt::Orientation orientation, int index, int& size)
{
    if (orientation == Qt::Horizontal) {
        if (index < 0 || index >= m_grid.columnCount()) {
            return;
        }
        const int old = m_grid.columnWidth(index);
        m_grid.setColumnWidth(index, size);
        size = old;
        emit columnWidthChanged(index);
    } else {
        if (index < 0 || index >= m_grid.rowCount()) {
            return;
        }
        const int old = m_grid.rowHeight(index);
        m_grid.setRowHeight(index, size);
        size = old;
        emit rowHeightChanged(index);
    }
    emit contentChanged();
}

void GridPageDocument::pushGrid(GridDocument changed, const QString& name)
{
    m_undo.push(new GridStateCommand(this, std::move(changed), name));
}

// ---- commands --------------------------------------------------------------------------------

void GridPageDocument::setCellText(int col, int row, const QString& text)
{
    if (!m_grid.isValidCell(col, row) || m_grid.text(col, row) == text) {
        return;
    }
    std::vector<CellState> cells{{{col, row}, text, m_grid.formatId(col, row)}};
    m_undo.push(new CellsCommand(this, std::move(cells), QStringLiteral("Typing")));
}

template <typename Change>
void GridPageDocument::changeFormats(const std::vector<GridCell>& cells, const QString& name,
                                     Change change)
{
    std::vector<CellState> states;
    states.reserve(cells.size());
    for (const GridCell& cell : cells) {
        if (!m_grid.isValidCell(cell.col, cell.row)) {
            continue;
        }
        GridCellFormat f = m_grid.format(cell.col, cell.row);
        change(f);
        states.push_back({cell, m_grid.text(cell.col, cell.row), m_grid.addFormat(f)});
    }
    if (states.empty()) {
        markModified();
        return;
    }
    m_undo.push(new CellsCommand(this, std::move(states), name));
}

void GridPageDocument::setAlignment(const GridSelection& selection, quint8 alignment)
{
    std::vector<GridCell> cells = selection.targets();
    // A whole column below its header: the header takes the alignment too.
    if (!selection.cells.empty() &&
        qint64(selection.cells.size()) == qint64(m_grid.rowCount()) - 1 &&
        selection.cells.front().col == selection.cells.back().col) {
        cells.push_back({selection.cells.front().col, 0});
    }
    changeFormats(cells, QStringLiteral("Alignment"),
                  [alignment](GridCellFormat& f) { f.alignment = alignment; });
}

void GridPageDocument::setFontColour(const GridSelection& selection, common::TColor colour)
{
    changeFormats(selection.targets(), QStringLiteral("Font colour"),
                  [colour](GridCellFormat& f) { f.fontColour = colour; });
}

void GridPageDocument::setBackColour(const GridSelection& selection, common::TColor colour)
{
    changeFormats(selection.targets(), QStringLiteral("Background colour"),
                  [colour](GridCellFormat& f) { f.background = colour; });
}

void GridPageDocument::addFontStyle(const GridSelection& selection, int styleNumber)
{
    const quint8 bit = FontStyle::bitOf(styleNumber);
    changeFormats(selection.targets(), QStringLiteral("Font style"),
                  [bit](GridCellFormat& f) { f.fontStyle |= bit; });
}

void GridPageDocument::removeFontStyle(const GridSelection& selection, int styleNumber)
{
    const quint8 bit = FontStyle::bitOf(styleNumber);
    changeFormats(selection.targets(), QStringLiteral("Font style"),
                  [bit](GridCellFormat& f) { f.fontStyle = quint8(f.fontStyle & ~bit); });
}

void GridPageDocument::setFont(const GridSelection& selection, const QString& name, int size,
                               common::TColor colour, quint8 style)
{
    changeFormats(selection.targets(), QStringLiteral("Font"), [&](GridCellFormat& f) {
        f.fontColour = colour;
        f.fontName = name;
        f.fontStyle = quint8(style & FontStyle::All);
        if (size > 0) {
            f.fontSize = size;
        }
    });
}

void GridPageDocument::clearCells(const GridSelection& selection)
{
    std::vector<CellState> states;
    for (const GridCell& cell : selection.targets()) {
        if (m_grid.isValidCell(cell.col, cell.row) && !m_grid.text(cell.col, cell.row).isEmpty()) {
            states.push_back({cell, QString(), m_grid.formatId(cell.col, cell.row)});
        }
    }
    if (states.empty()) {
        return;
    }
    m_undo.push(new CellsCommand(this, std::move(states), QStringLiteral("Clear")));
}

bool GridPageDocument::deleteRows(int top, int bottom)
{
    const int count = bottom - top + 1;
    if (count >= m_grid.rowCount() || top < 0 || count < 1) {
        return false;
    }
    GridDocument changed = m_grid;
    changed.removeRows(top, count);
    pushGrid(std::move(changed), QStringLiteral("Delete rows"));
    return true;
}

bool GridPageDocument::deleteColumns(int left, int right)
{
    const int count = right - left + 1;
    if (count >= m_grid.columnCount() || left < 0 || count < 1) {
        return false;
    }
    GridDocument changed = m_grid;
    changed.removeColumns(left, count);
    pushGrid(std::move(changed), QStringLiteral("Delete columns"));
    return true;
}

void GridPageDocument::pasteRows(GridCell at, const std::vector<QStringList>& rows)
{
    if (rows.empty() || at.col < 0 || at.row < 0) {
        return;
    }
    int width = 0;
    for (const QStringList& row : rows) {
        width = std::max(width, int(row.size()));
    }
    const int needCols = at.col + width;
    const int needRows = at.row + int(rows.size());
    if (needCols > m_grid.columnCount() || needRows > m_grid.rowCount()) {
        GridDocument changed = m_grid;
        changed.setSize(std::max(needCols, m_grid.columnCount()),
                        std::max(needRows, m_grid.rowCount()));
        for (int r = 0; r < int(rows.size()); ++r) {
            for (int c = 0; c < int(rows[std::size_t(r)].size()); ++c) {
                if (changed.isValidCell(at.col + c, at.row + r)) {
                    changed.setText(at.col + c, at.row + r, rows[std::size_t(r)][c]);
                }
            }
        }
        pushGrid(std::move(changed), QStringLiteral("Paste"));
        return;
    }
    std::vector<CellState> states;
    for (int r = 0; r < int(rows.size()); ++r) {
        for (int c = 0; c < int(rows[std::size_t(r)].size()); ++c) {
            states.push_back({{at.col + c, at.row + r},
                              rows[std::size_t(r)][c],
                              m_grid.formatId(at.col + c, at.row + r)});
        }
    }
    m_undo.push(new CellsCommand(this, std::move(states), QStringLiteral("Paste")));
}

void GridPageDocument::setFixedRows(int count)
{
    GridDocument changed = m_grid;
    changed.setFixedRows(count);
    if (changed.fixedRows() == m_grid.fixedRows()) {
        markModified();
        return;
    }
    pushGrid(std::move(changed), QStringLiteral("Fixed row"));
}

void GridPageDocument::setFixedColumns(int count)
{
    GridDocument changed = m_grid;
    changed.setFixedColumns(count);
    if (changed.fixedColumns() == m_grid.fixedColumns()) {
        markModified();
        return;
    }
    pushGrid(std::move(changed), QStringLiteral("Fixed column"));
}

void GridPageDocument::sortByColumn(int col, bool ascending)
{
    if (col < 0 || col >= m_grid.columnCount()) {
        markModified();
        return;
    }
    GridDocument changed = m_grid;
    GridSorter::sort(&changed, col, ascending);
    pushGrid(std::move(changed), QStringLiteral("Sort"));
}

void GridPageDocument::moveRow(int from, int to)
{
    if (from == to || !m_grid.isValidCell(0, from) || !m_grid.isValidCell(0, to)) {
        return;
    }
    GridDocument changed = m_grid;
    changed.moveRow(from, to);
    pushGrid(std::move(changed), QStringLiteral("Move row"));
}

void GridPageDocument::moveColumn(int from, int to)
{
    if (from == to || !m_grid.isValidCell(from, 0) || !m_grid.isValidCell(to, 0)) {
        return;
    }
    GridDocument changed = m_grid;
    changed.moveColumn(from, to);
    pushGrid(std::move(changed), QStringLiteral("Move column"));
}

void GridPageDocument::setColumnWidth(int col, int width)
{
    width = std::clamp(width, 0, GridDocument::kMaxSize);
    if (col < 0 || col >= m_grid.columnCount() || m_grid.columnWidth(col) == width) {
        return;
    }
    m_undo.push(new SizeCommand(this, Qt::Horizontal, col, width));
}

void GridPageDocument::setRowHeight(int row, int height)
{
    height = std::clamp(height, 0, GridDocument::kMaxSize);
    if (row < 0 || row >= m_grid.rowCount() || m_grid.rowHeight(row) == height) {
        return;
    }
    m_undo.push(new SizeCommand(this, Qt::Vertical, row, height));
}

void GridPageDocument::setMultiline(bool on, const std::vector<int>& rowHeights)
{
    GridDocument changed = m_grid;
    changed.setWordWrap(on);
    for (int r = 0; r < std::min(changed.rowCount(), int(rowHeights.size())); ++r) {
        changed.setRowHeight(r, rowHeights[std::size_t(r)]);
    }
    pushGrid(std::move(changed), QStringLiteral("Multilines"));
}

void GridPageDocument::unhideColumns(int minimum)
{
    GridDocument changed = m_grid;
    changed.unhideAllColumns();
    for (int c = 0; c < changed.columnCount(); ++c) {
        if (changed.columnWidth(c) < minimum) {
            changed.setColumnWidth(c, minimum);
        }
    }
    if (changed.sameContent(m_grid)) {
        markModified();
        return;
    }
    pushGrid(std::move(changed), QStringLiteral("Show columns"));
}

bool GridPageDocument::replaceCell(GridCell cell, const QString& text, const QString& with,
                                   const GridFindOptions& options)
{
    if (!m_grid.isValidCell(cell.col, cell.row) ||
        !GridFinder::matches(m_grid.text(cell.col, cell.row), text, options)) {
        return false;
    }
    const QString replaced =
        GridFinder::replaced(m_grid.text(cell.col, cell.row), text, with, options);
    std::vector<CellState> states{{cell, replaced, m_grid.formatId(cell.col, cell.row)}};
    m_undo.push(new CellsCommand(this, std::move(states), QStringLiteral("Replace")));
    return true;
}

int GridPageDocument::replaceAll(const QString& text, const QString& with,
                                 const GridFindOptions& options)
{
    std::vector<CellState> states;
    std::optional<GridCell> at;
    while ((at = GridFinder::find(m_grid, text, options, at))) {
        states.push_back({*at,
                          GridFinder::replaced(m_grid.text(at->col, at->row), text, with, options),
                          m_grid.formatId(at->col, at->row)});
    }
    const int count = int(states.size());
    if (count > 0) {
        m_undo.push(new CellsCommand(this, std::move(states), QStringLiteral("Replace all")));
    }
    return count;
}

Status GridPageDocument::exportTo(const QString& fileName, int format)
{
    if (format == ExportFormat::Xml && m_grid.fixedRows() != 1) {
        emit gridAboutToBeReset();
        Status written = GridExporter::exportGrid(&m_grid, fileName, format);
        emit gridReset();
        return written;
    }
    return GridExporter::exportGrid(&m_grid, fileName, format);
}

} // namespace kestrum::grid
