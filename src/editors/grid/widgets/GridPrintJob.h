#pragma once

#include <QString>

class QPrinter;
class QWidget;

namespace kestrum::grid {

class GridDocument;
struct GridPrintOptions;

// Printing a grid page with a title: the "Printing title" box, the printer set up for a grid
// (landscape, narrow margins, its orientation put back afterwards) and the grid's print layout.
class GridPrintJob
{
public:
    // The print layout: the title in Arial 14 bold, fitted to the page width unless the grid
    // is in multi-line mode.
    static GridPrintOptions options(const QString& title, bool multiline);
    // Asks for the title (starting with `title`); "OK" prints at once, with no print dialog.
    static void print(QWidget* parent, QPrinter* printer, const GridDocument& grid,
                      const QString& title, bool multiline);
    // Asks for the title, then shows the print preview.
    static void preview(QWidget* parent, QPrinter* printer, const GridDocument& grid,
                        const QString& title, bool multiline);
};

} // namespace kestrum::grid
