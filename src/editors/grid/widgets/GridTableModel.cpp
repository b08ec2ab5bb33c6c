#include "GridTableModel.h"

#include "editors/grid/GridNumberFormat.h"
#include "editors/grid/GridPageDocument.h"

#include <QBrush>

namespace kestrum::grid {

GridTableModel::GridTableModel(GridPageDocument* document, QObject* parent)
    : QAbstractTableModel(parent), m_document(document)
{
    connect(document, &GridPageDocument::gridAboutToBeReset, this, [this] { beginResetModel(); });
    connect(document, &GridPageDocument::gridReset, this, [this] {
        m_fonts.clear();
        m_fontKnown.clear();
        endResetModel();
    });
    connect(document, &GridPageDocument::cellsChanged, this, &GridTableModel::onCellsChanged);
}

int GridTableModel::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid()) {
        return 0;
    }
    const GridDocument& g = m_document->grid();
    return g.rowCount() - g.fixedRows();
}

int GridTableModel::columnCount(const QModelIndex& parent) const
{
    if (parent.isValid()) {
        return 0;
    }
    const GridDocument& g = m_document->grid();
    return g.columnCount() - g.fixedColumns();
}

GridCell GridTableModel::cellAt(const QModelIndex& index) const
{
    const GridDocument& g = m_document->grid();
    return {index.column() + g.fixedColumns(), index.row() + g.fixedRows()};
}

QModelIndex GridTableModel::indexOf(GridCell cell) const
{
    const GridDocument& g = m_document->grid();
    return index(cell.row - g.fixedRows(), cell.col - g.fixedColumns());
}

int GridTableModel::gridColumn(int section) const
{
    return section + m_document->grid().fixedColumns();
}

int GridTableModel::gridRow(int section) const
{
    return section + m_document->grid().fixedRows();
}

int GridTableModel::sectionOfColumn(int col) const
{
    return col - m_document->grid().fixedColumns();
}

int GridTableModel::sectionOfRow(int row) const
{
    return row - m_document->grid().fixedRows();
}

const QFont& GridTableModel::fontFor(quint32 formatId) const
{
    if (formatId >= m_fonts.size()) {
        m_fonts.resize(formatId + 1);
        m_fontKnown.resize(formatId + 1, false);
    }
    if (!m_fontKnown[formatId]) {
        m_fonts[formatId] = m_document->grid().formatAt(formatId).font();
        m_fontKnown[formatId] = true;
    }
    return m_fonts[formatId];
}

QVariant GridTableModel::cellRole(int col, int row, int role) const
{
    const GridDocument& g = m_document->grid();
    switch (role) {
    case Qt::DisplayRole:
        return GridNumberFormat::displayText(g.text(col, row));
    case Qt::EditRole:
    case Qt::ToolTipRole: {
        const QString& text = g.text(col, row);
        if (role == Qt::ToolTipRole && text.size() < 40) {
            return {};
        }
        return text;
    }
    case Qt::FontRole: {
        const quint32 id = g.formatId(col, row);
        if (id == 0) {
            return {};
        }
        return fontFor(id);
    }
    case Qt::ForegroundRole: {
        const common::TColor colour = g.format(col, row).fontColour;
        if (colour == common::clWindowText) {
            return {};
        }
        const QColor c = common::toQColor(colour);
        return c.isValid() ? QVariant(QBrush(c)) : QVariant();
    }
    case Qt::BackgroundRole: {
        const QColor c = common::toQColor(g.format(col, row).background);
        return c.isValid() ? QVariant(QBrush(c)) : QVariant();
    }
    case Qt::TextAlignmentRole: {
        const quint8 a = g.format(col, row).alignment;
        const Qt::Alignment h = a == CellAlignment::Right    ? Qt::AlignRight
                                : a == CellAlignment::Centre ? Qt::AlignHCenter
                                                             : Qt::AlignLeft;
        return QVariant::fromValue(int(h | Qt::AlignVCenter));
    }
    default:
        return {};
    }
}

QVariant GridTableModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const GridCell cell = cellAt(index);
    return cellRole(cell.col, cell.row, role);
}

bool GridTableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return false;
    }
    const GridCell cell = cellAt(index);
    m_document->setCellText(cell.col, cell.row, value.toString());
    return true;
}

Qt::ItemFlags GridTableModel::flags(const QModelIndex& index) const
{
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable;
}

QVariant GridTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const GridDocument& g = m_document->grid();
    if (orientation == Qt::Horizontal) {
        const int col = gridColumn(section);
        if (col < 0 || col >= g.columnCount()) {
            return {};
        }
        if (g.fixedRows() == 0) {
            return role == Qt::DisplayRole ? QVariant(QString::number(section + 1)) : QVariant();
        }
        if (role == Qt::DisplayRole) {
            QStringList lines;
            for (int r = 0; r < g.fixedRows(); ++r) {
                lines << g.text(col, r);
            }
            return lines.join(QLatin1Char('\n'));
        }
        return cellRole(col, g.fixedRows() - 1, role);
    }
    const int row = gridRow(section);
    if (row < 0 || row >= g.rowCount()) {
        return {};
    }
    if (g.fixedColumns() == 0) {
        return role == Qt::DisplayRole ? QVariant(QString::number(section + 1)) : QVariant();
    }
    if (role == Qt::DisplayRole) {
        QStringList parts;
        for (int c = 0; c < g.fixedColumns(); ++c) {
            parts << g.text(c, row);
        }
        return parts.join(QLatin1String("  "));
    }
    return cellRole(g.fixedColumns() - 1, row, role);
}

void GridTableModel::onCellsChanged(const GridRect& rect)
{
    const GridDocument& g = m_document->grid();
    if (rect.top < g.fixedRows()) {
        emit headerDataChanged(Qt::Horizontal, std::max(0, sectionOfColumn(rect.left)),
                               std::max(0, sectionOfColumn(rect.right)));
    }
    if (rect.left < g.fixedColumns()) {
        emit headerDataChanged(Qt::Vertical, std::max(0, sectionOfRow(rect.top)),
                               std::max(0, sectionOfRow(rect.bottom)));
    }
    const int top = std::max(0, sectionOfRow(rect.top));
    const int left = std::max(0, sectionOfColumn(rect.left));
    const int bottom = sectionOfRow(rect.bottom);
    const int right = sectionOfColumn(rect.right);
    if (bottom >= top && right >= left && bottom < rowCount() && right < columnCount()) {
        emit dataChanged(index(top, left), index(bottom, right));
    }
}

} // namespace kestrum::grid
