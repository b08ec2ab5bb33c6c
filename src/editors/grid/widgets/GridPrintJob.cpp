#include "GridPrintJob.h"

#include "editors/grid/GridDocument.h"
#include "editors/grid/GridPrinter.h"
#include "ui/Dialogs.h"
#include "ui/WaitCursor.h"

#include <QPrinter>
#include <QPrinterInfo>

#include <optional>

namespace kestrum::grid {

namespace {

// Asks for the printing title, then runs `print` on the printer set up for a grid (landscape,
// narrow margins); the printer's orientation is put back afterwards.
template <typename Print>
void withPrintTitle(QWidget* parent, QPrinter* printer, const QString& title, Print&& print)
{
    const std::optional<QString> chosen = ui::dialogs().getText(
        parent, QStringLiteral("Printing title"), QStringLiteral("Title:"), title);
    if (!chosen) {
        return;
    }
    const QPageLayout::Orientation orientation = printer->pageLayout().orientation();
    printer->setPageOrientation(QPageLayout::Landscape);
    printer->setPageMargins(QMarginsF(5, 5, 5, 5), QPageLayout::Millimeter);
    print(*chosen);
    printer->setPageOrientation(orientation);
}

} // namespace

GridPrintOptions GridPrintJob::options(const QString& title, bool multiline)
{
    GridPrintOptions options;
    options.title = title;
    QFont titleFont(QStringLiteral("Arial"));
    titleFont.setPointSize(14);
    titleFont.setBold(true);
    options.titleFont = titleFont;
    options.titleSpacing = 10;
    options.fitToPageWidth = !multiline;
    return options;
}

void GridPrintJob::print(QWidget* parent, QPrinter* printer, const GridDocument& grid,
                         const QString& title, bool multiline)
{
    // "OK" in the title box prints at once, on the printer as it is set up.
    withPrintTitle(parent, printer, title, [&](const QString& chosen) {
        if (printer->outputFileName().isEmpty() &&
            QPrinterInfo::availablePrinterNames().isEmpty()) {
            ui::dialogs().warning(parent, QStringLiteral("No printer is installed."));
            return;
        }
        ui::WaitCursor wait;
        GridPrinter gridPrinter(grid, options(chosen, multiline));
        gridPrinter.print(printer);
    });
}

void GridPrintJob::preview(QWidget* parent, QPrinter* printer, const GridDocument& grid,
                           const QString& title, bool multiline)
{
    withPrintTitle(parent, printer, title, [&](const QString& chosen) {
        const GridPrintOptions layout = options(chosen, multiline);
        ui::dialogs().printPreview(parent, printer, [&grid, &layout](QPrinter* target) {
            GridPrinter gridPrinter(grid, layout);
            gridPrinter.print(target);
        });
    });
}

} // namespace kestrum::grid
