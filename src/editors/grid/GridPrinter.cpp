#include "GridPrinter.h"

#include "editors/grid/GridDocument.h"
#include "editors/grid/GridNumberFormat.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPalette>

#include <algorithm>

namespace kestrum::grid {

namespace {

constexpr double kGridDpi = 96.0;
constexpr double kCellPadding = 2.0;

// Cell fonts are in points; the printer works in grid pixels, so fonts get pixel sizes.
QFont pixelFont(QFont font)
{
    if (font.pointSizeF() > 0) {
        font.setPixelSize(std::max(1, int(font.pointSizeF() * kGridDpi / 72.0 + 0.5)));
    }
    return font;
}

QFont footerFont()
{
    QFont f(QStringLiteral("Arial"));
    f.setPixelSize(12);
    return f;
}

} // namespace

QFont GridPrintOptions::defaultTitleFont()
{
    QFont f(QStringLiteral("Arial"));
    f.setPointSize(14);
    f.setBold(true);
    return f;
}

GridPrinter::GridPrinter(const GridDocument& grid, GridPrintOptions options)
    : m_grid(grid), m_options(std::move(options))
{}

void GridPrinter::layout(const QSizeF& pageSize)
{
    m_pageSize = pageSize;
    m_pages.clear();
    m_bands.clear();
    m_headerHeight = 0;
    if (!m_options.title.isEmpty()) {
        const QFontMetricsF fm(pixelFont(m_options.titleFont));
        const int lines = int(m_options.title.count(QLatin1Char('\n'))) + 1;
        m_headerHeight = fm.height() * lines + m_options.titleSpacing;
    }
    m_footerHeight = QFontMetricsF(footerFont()).height() + 6;

    const int fixedRows = m_options.repeatFixedCells ? m_grid.fixedRows() : 0;
    double fixedWidth = 0;
    std::vector<int> body;
    for (const int c : m_grid.visibleColumns()) {
        if (c < m_grid.fixedColumns()) {
            fixedWidth += m_grid.columnWidth(c);
        } else {
            body.push_back(c);
        }
    }
    double fixedHeight = 0;
    for (int r = 0; r < fixedRows; ++r) {
        fixedHeight += m_grid.rowHeight(r);
    }
    double bodyWidth = 0;
    for (const int c : body) {
        bodyWidth += m_grid.columnWidth(c);
    }

    const double availableWidth = std::max(1.0, pageSize.width());
    m_scale = 1.0;
    if (m_options.fitToPageWidth) {
        const double total = fixedWidth + bodyWidth;
        if (total > availableWidth) {
            m_scale = availableWidth / total;
        }
        m_bands.push_back(body);
    } else {
        std::vector<int> band;
        double used = fixedWidth;
        for (const int c : body) {
            const double w = m_grid.columnWidth(c);
            if (!band.empty() && used + w > availableWidth) {
                m_bands.push_back(band);
                band.clear();
                used = fixedWidth;
            }
            band.push_back(c);
            used += w;
        }
        m_bands.push_back(band);
    }

    const double availableHeight = std::max(
        1.0, (pageSize.height() - m_headerHeight - m_footerHeight) / m_scale - fixedHeight);
    std::vector<std::pair<int, int>> rowPages;
    const int first = m_grid.fixedRows();
    int start = first;
    double used = 0;
    for (int r = first; r < m_grid.rowCount(); ++r) {
        const double h = m_grid.rowHeight(r);
        if (r > start && used + h > availableHeight) {
            rowPages.emplace_back(start, r - 1);
            start = r;
            used = 0;
        }
        used += h;
    }
    rowPages.emplace_back(start, m_grid.rowCount() - 1); // may be empty (no body rows)
    for (int b = 0; b < int(m_bands.size()); ++b) {
        for (const auto& [top, bottom] : rowPages) {
            m_pages.push_back({top, bottom, b});
        }
    }
}

void GridPrinter::paintCell(QPainter* painter, int col, int row, const QRectF& rect) const
{
    const GridCellFormat& f = m_grid.format(col, row);
    const bool fixed = row < m_grid.fixedRows() || col < m_grid.fixedColumns();
    const QColor background = common::toQColor(f.background);
    if (background.isValid()) {
        painter->fillRect(rect, background);
    } else if (fixed) {
        painter->fillRect(rect, QColor(0xEE, 0xEE, 0xEE));
    }
    painter->setPen(QPen(QColor(0x80, 0x80, 0x80), 0));
    painter->drawRect(rect);
    const QString text = GridNumberFormat::displayText(m_grid.text(col, row));
    if (text.isEmpty()) {
        return;
    }
    painter->setFont(pixelFont(f.font()));
    QColor colour = common::toQColor(f.fontColour);
    painter->setPen(colour.isValid() ? colour : QColor(Qt::black));
    int flags = Qt::AlignVCenter;
    flags |= f.alignment == CellAlignment::Right    ? Qt::AlignRight
             : f.alignment == CellAlignment::Centre ? Qt::AlignHCenter
                                                    : Qt::AlignLeft;
    flags |= m_grid.wordWrap() ? Qt::TextWordWrap : Qt::TextSingleLine;
    painter->save();
    painter->setClipRect(rect);
    painter->drawText(rect.adjusted(kCellPadding, 0, -kCellPadding, 0), flags, text);
    painter->restore();
}

void GridPrinter::paintPage(QPainter* painter, int index) const
{
    if (index < 0 || index >= pageCount()) {
        return;
    }
    const Page& page = m_pages[std::size_t(index)];
    painter->save();

    if (!m_options.title.isEmpty()) {
        painter->setFont(pixelFont(m_options.titleFont));
        painter->setPen(Qt::black);
        painter->drawText(QRectF(0, 0, m_pageSize.width(), m_headerHeight - m_options.titleSpacing),
                          Qt::AlignHCenter | Qt::AlignTop, m_options.title);
    }
    painter->setFont(footerFont());
    painter->setPen(Qt::black);
    const QRectF footer(0, m_pageSize.height() - m_footerHeight, m_pageSize.width(),
                        m_footerHeight);
    painter->drawText(footer, Qt::AlignLeft | Qt::AlignBottom,
                      QString::number(index + 1) + m_options.pageNumberSeparator +
                          QString::number(pageCount()));
    painter->drawText(footer, Qt::AlignRight | Qt::AlignBottom,
                      m_options.date.toString(m_options.dateFormat));

    painter->translate(0, m_headerHeight);
    painter->scale(m_scale, m_scale);

    std::vector<int> columns;
    for (const int c : m_grid.visibleColumns()) {
        if (c < m_grid.fixedColumns()) {
            columns.push_back(c);
        }
    }
    const std::vector<int>& band = m_bands[std::size_t(page.band)];
    columns.insert(columns.end(), band.begin(), band.end());
    std::vector<int> rows;
    if (m_options.repeatFixedCells || index == 0) {
        for (int r = 0; r < m_grid.fixedRows(); ++r) {
            rows.push_back(r);
        }
    }
    for (int r = page.firstRow; r <= page.lastRow; ++r) {
        rows.push_back(r);
    }
    double y = 0;
    for (const int r : rows) {
        const double h = m_grid.rowHeight(r);
        double x = 0;
        for (const int c : columns) {
            const double w = m_grid.columnWidth(c);
            if (w > 0 && h > 0) {
                paintCell(painter, c, r, QRectF(x, y, w, h));
            }
            x += w;
        }
        y += h;
    }
    painter->restore();
}

bool GridPrinter::print(QPagedPaintDevice* device)
{
    QPainter painter;
    if (!painter.begin(device)) {
        return false;
    }
    const double toDevice = device->logicalDpiX() / kGridDpi;
    const QRect area = device->pageLayout().paintRectPixels(device->logicalDpiX());
    layout(QSizeF(area.width() / toDevice, area.height() / toDevice));
    for (int i = 0; i < pageCount(); ++i) {
        if (i > 0) {
            device->newPage();
        }
        painter.save();
        painter.scale(toDevice, toDevice);
        paintPage(&painter, i);
        painter.restore();
    }
    painter.end();
    return true;
}

} // namespace kestrum::grid
