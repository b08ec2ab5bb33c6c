#include "GridView.h"

#include "editors/grid/GridPageDocument.h"
#include "editors/grid/widgets/GridCellDelegate.h"
#include "editors/grid/widgets/GridFixedCellSizer.h"
#include "editors/grid/widgets/GridTableModel.h"

#include <QAbstractButton>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionHeader>

#include <map>

namespace kestrum::grid {

GridView::GridView(GridPageDocument* document, QWidget* parent)
    : QTableView(parent), m_document(document), m_model(new GridTableModel(document, this))
{
    setObjectName(QStringLiteral("GridView"));
    setModel(m_model);
    setItemDelegate(new GridCellDelegate(this));
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionBehavior(QAbstractItemView::SelectItems);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                    QAbstractItemView::AnyKeyPressed);
    setShowGrid(true);
    setCornerButtonEnabled(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    horizontalHeader()->setHighlightSections(true);
    horizontalHeader()->setMinimumSectionSize(0);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    verticalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    verticalHeader()->setMinimumSectionSize(0);
    verticalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setColumnSizingAndMoving(true);
    verticalHeader()->setSectionsMovable(true);

    connect(horizontalHeader(), &QHeaderView::sectionResized, this, &GridView::onColumnResized);
    connect(verticalHeader(), &QHeaderView::sectionResized, this, &GridView::onRowResized);
    connect(horizontalHeader(), &QHeaderView::sectionMoved, this, &GridView::onColumnMoved);
    connect(verticalHeader(), &QHeaderView::sectionMoved, this, &GridView::onRowMoved);
    connect(horizontalHeader(), &QHeaderView::sectionDoubleClicked, this, [this](int section) {
        emit cellDoubleClicked({m_model->gridColumn(section), 0});
    });

    connect(document, &GridPageDocument::gridAboutToBeReset, this,
            [this] { m_restoreCell = currentCell(); });
    connect(document, &GridPageDocument::gridReset, this, [this] {
        applyLayout();
        if (m_corner) {
            m_corner->update();
        }
        if (m_restoreCell &&
            m_document->grid().isValidCell(m_restoreCell->col, m_restoreCell->row)) {
            setCurrentCell(*m_restoreCell);
        }
        m_restoreCell.reset();
    });
    connect(document, &GridPageDocument::columnWidthChanged, this, [this](int col) {
        const int section = m_model->sectionOfColumn(col);
        if (section >= 0) {
            m_applying = true;
            horizontalHeader()->resizeSection(section, m_document->grid().columnWidth(col));
            m_applying = false;
        } else {
            applyLayout();
        }
    });
    connect(document, &GridPageDocument::rowHeightChanged, this, [this](int row) {
        const int section = m_model->sectionOfRow(row);
        if (section >= 0) {
            m_applying = true;
            verticalHeader()->resizeSection(section, m_document->grid().rowHeight(row));
            m_applying = false;
        } else {
            applyLayout();
        }
    });
    // The fixed rows and columns are sized on the headers' inner edges.
    new GridFixedCellSizer(
        horizontalHeader(), m_document, [this] { updateGeometries(); }, this);
    new GridFixedCellSizer(
        verticalHeader(), m_document, [this] { updateGeometries(); }, this);
    // The corner where the fixed rows and columns meet shows its cell, as a header does.
    m_corner = findChild<QAbstractButton*>(QString(), Qt::FindDirectChildrenOnly);
    if (m_corner) {
        m_corner->installEventFilter(this);
    }
    applyLayout();
}

QString GridView::cornerText() const
{
    const GridDocument& g = m_document->grid();
    QStringList lines;
    for (int r = 0; r < g.fixedRows(); ++r) {
        QStringList parts;
        for (int c = 0; c < g.fixedColumns(); ++c) {
            parts << g.text(c, r);
        }
        lines << parts.join(QLatin1String("  "));
    }
    return lines.join(QLatin1Char('\n'));
}

bool GridView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_corner && event->type() == QEvent::Paint) {
        QPainter painter(m_corner);
        QStyleOptionHeader option;
        option.initFrom(m_corner);
        // It does not select all, but reads as a header: drawn enabled, not greyed.
        option.state |= QStyle::State_Enabled;
        option.palette.setCurrentColorGroup(QPalette::Active);
        option.rect = m_corner->rect();
        option.position = QStyleOptionHeader::OnlyOneSection;
        option.textAlignment = Qt::AlignLeft | Qt::AlignVCenter;
        option.text = cornerText();
        const GridDocument& g = m_document->grid();
        if (g.fixedRows() > 0 && g.fixedColumns() > 0) {
            const GridCellFormat& f = g.format(g.fixedColumns() - 1, g.fixedRows() - 1);
            if (g.formatId(g.fixedColumns() - 1, g.fixedRows() - 1) != 0) {
                painter.setFont(f.font());
            }
            const QColor back = common::toQColor(f.background);
            if (back.isValid()) {
                option.palette.setColor(QPalette::Button, back);
                option.palette.setColor(QPalette::Window, back);
            }
        }
        style()->drawControl(QStyle::CE_Header, &option, &painter, m_corner);
        return true;
    }
    return QTableView::eventFilter(watched, event);
}

void GridView::setColumnSizingAndMoving(bool on)
{
    horizontalHeader()->setSectionsMovable(on);
    horizontalHeader()->setSectionResizeMode(on ? QHeaderView::Interactive : QHeaderView::Fixed);
}

void GridView::applyLayout()
{
    const GridDocument& g = m_document->grid();
    m_applying = true;
    setWordWrap(g.wordWrap());
    setTextElideMode(g.wordWrap() ? Qt::ElideNone : Qt::ElideRight);

    // Fixed rows form the column header, fixed columns the row header.
    int fixedHeight = 0;
    for (int r = 0; r < g.fixedRows(); ++r) {
        fixedHeight += g.rowHeight(r);
    }
    int fixedWidth = 0;
    for (int c = 0; c < g.fixedColumns(); ++c) {
        fixedWidth += g.columnWidth(c);
    }
    horizontalHeader()->setVisible(g.fixedRows() > 0);
    horizontalHeader()->setFixedHeight(std::max(fixedHeight, 1));
    verticalHeader()->setVisible(g.fixedColumns() > 0);
    verticalHeader()->setFixedWidth(std::max(fixedWidth, 1));
    // The cells start below and right of the headers' new sizes.
    updateGeometries();

    QHeaderView* columns = horizontalHeader();
    for (int section = 0; section < m_model->columnCount(); ++section) {
        const int col = m_model->gridColumn(section);
        columns->resizeSection(section, g.columnWidth(col));
        columns->setSectionHidden(section, g.isColumnHidden(col));
    }
    // Most rows share one height: that is the default, only the others are set one by one.
    QHeaderView* rows = verticalHeader();
    std::map<int, int> heights;
    for (int r = g.fixedRows(); r < g.rowCount(); ++r) {
        ++heights[g.rowHeight(r)];
    }
    int common = GridDocument::kDefaultRowHeight;
    int best = -1;
    for (const auto& [height, count] : heights) {
        if (count > best) {
            best = count;
            common = height;
        }
    }
    rows->setDefaultSectionSize(std::max(common, 0));
    for (int section = 0; section < m_model->rowCount(); ++section) {
        const int h = g.rowHeight(m_model->gridRow(section));
        if (h != common) {
            rows->resizeSection(section, h);
        }
    }
    m_applying = false;
}

GridSelection GridView::gridSelection() const
{
    GridSelection s;
    if (const auto current = currentCell()) {
        s.current = *current;
    } else {
        const GridRect body = m_document->grid().bodyCells();
        s.current = {body.left, body.top};
    }
    GridRect rect{std::numeric_limits<int>::max(), std::numeric_limits<int>::max(), -1, -1};
    const QItemSelection ranges =
        selectionModel() ? selectionModel()->selection() : QItemSelection();
    for (const QItemSelectionRange& range : ranges) {
        for (int r = range.top(); r <= range.bottom(); ++r) {
            for (int c = range.left(); c <= range.right(); ++c) {
                const GridCell cell = m_model->cellAt(m_model->index(r, c));
                s.cells.push_back(cell);
                rect.left = std::min(rect.left, cell.col);
                rect.top = std::min(rect.top, cell.row);
                rect.right = std::max(rect.right, cell.col);
                rect.bottom = std::max(rect.bottom, cell.row);
            }
        }
    }
    s.rect = s.cells.empty() ? GridRect{s.current.col, s.current.row, s.current.col, s.current.row}
                             : rect;
    return s;
}

std::optional<GridCell> GridView::currentCell() const
{
    const QModelIndex current = currentIndex();
    if (!current.isValid()) {
        return std::nullopt;
    }
    return m_model->cellAt(current);
}

void GridView::setCurrentCell(GridCell cell)
{
    const QModelIndex index = m_model->indexOf(cell);
    if (!index.isValid()) {
        return;
    }
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    scrollTo(index);
}

void GridView::selectRect(const GridRect& rect)
{
    const QModelIndex topLeft = m_model->indexOf({rect.left, rect.top});
    const QModelIndex bottomRight = m_model->indexOf({rect.right, rect.bottom});
    if (!topLeft.isValid() || !bottomRight.isValid()) {
        return;
    }
    selectionModel()->setCurrentIndex(topLeft, QItemSelectionModel::NoUpdate);
    selectionModel()->select(QItemSelection(topLeft, bottomRight),
                             QItemSelectionModel::ClearAndSelect);
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    if (index.isValid()) {
        const GridCell cell = m_model->cellAt(index);
        emit cellDoubleClicked(cell);
        if (cell.row == 0) {
            // Row 0 sorts; it is not edited by a double click.
            event->accept();
            return;
        }
    }
    QTableView::mouseDoubleClickEvent(event);
}

void GridView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QTableView::currentChanged(current, previous);
    if (current.isValid()) {
        emit cellSelected(m_model->cellAt(current));
    }
}

void GridView::onColumnResized(int section, int, int newSize)
{
    if (m_applying) {
        return;
    }
    m_document->setColumnWidth(m_model->gridColumn(section), newSize);
}

void GridView::onRowResized(int section, int, int newSize)
{
    if (m_applying) {
        return;
    }
    m_document->setRowHeight(m_model->gridRow(section), newSize);
}

void GridView::onColumnMoved(int, int oldVisual, int newVisual)
{
    if (m_applying) {
        return;
    }
    // The header only shows the move; the document makes it, and the view follows.
    m_applying = true;
    horizontalHeader()->moveSection(newVisual, oldVisual);
    m_applying = false;
    m_document->moveColumn(m_model->gridColumn(oldVisual), m_model->gridColumn(newVisual));
}

void GridView::onRowMoved(int, int oldVisual, int newVisual)
{
    if (m_applying) {
        return;
    }
    m_applying = true;
    verticalHeader()->moveSection(newVisual, oldVisual);
    m_applying = false;
    m_document->moveRow(m_model->gridRow(oldVisual), m_model->gridRow(newVisual));
}

} // namespace kestrum::grid
