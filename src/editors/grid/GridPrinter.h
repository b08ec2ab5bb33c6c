#pragma once

#include <QDate>
#include <QFont>
#include <QRectF>
#include <QString>

#include <vector>

class QPagedPaintDevice;
class QPainter;

namespace kestrum::grid {

class GridDocument;

struct GridPrintOptions
{
    QString title;
    QFont titleFont = defaultTitleFont();
    int titleSpacing = 10; // pixels between the title and the table
    // Shrink the table to the page width (the mode used unless the grid is multi-line);
    // otherwise columns that do not fit go to further pages.
    bool fitToPageWidth = true;
    // Fixed rows and columns printed again on every page.
    bool repeatFixedCells = true;
    QString dateFormat = QStringLiteral("dd/MM/yyyy");
    QDate date = QDate::currentDate();
    QString pageNumberSeparator = QStringLiteral("/");

    static QFont defaultTitleFont();
};

// Prints a grid: the title centred at the top of every page, the page number ("2/5") at the
// bottom left and the date at the bottom right, the table with its fonts, colours and sizes.
// Works in grid pixels (96 an inch) scaled to the device; needs a QGuiApplication (fonts).
class GridPrinter
{
public:
    GridPrinter(const GridDocument& grid, GridPrintOptions options);

    // Splits the table into pages of `pageSize` grid pixels.
    void layout(const QSizeF& pageSize);
    int pageCount() const { return int(m_pages.size()); }
    // The scale applied to the table to fit the page width (1 when it fits).
    double tableScale() const { return m_scale; }
    // Paints page `index` (from 0) with the painter's coordinates in grid pixels.
    void paintPage(QPainter* painter, int index) const;
    // Lays out for the device and prints every page; false when painting cannot start.
    bool print(QPagedPaintDevice* device);

private:
    struct Page
    {
        int firstRow, lastRow; // body rows
        int band;              // index into m_bands
    };
    void paintCell(QPainter* painter, int col, int row, const QRectF& rect) const;

    const GridDocument& m_grid;
    GridPrintOptions m_options;
    QSizeF m_pageSize;
    double m_scale = 1.0;
    double m_headerHeight = 0;
    double m_footerHeight = 0;
    std::vector<std::vector<int>> m_bands; // body columns of each band
    std::vector<Page> m_pages;
};

} // namespace kestrum::grid
