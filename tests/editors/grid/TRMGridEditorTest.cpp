// The grid editor as the user drives it: context menu, toolbar, dialogs (scripted), clipboard,
// export, printing, sorting and multi-line mode.

#include "GridSamples.h"

#include "editors/grid/GridRowSizer.h"
#include "editors/grid/GridStream.h"
#include "editors/grid/widgets/GridFindDialog.h"
#include "editors/grid/widgets/GridReplaceDialog.h"
#include "editors/grid/widgets/GridTableModel.h"
#include "editors/grid/widgets/GridView.h"
#include "editors/grid/widgets/TRMGridEditor.h"
#include "support/ScriptedDialogs.h"
#include "ui/ColourSelector.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFontMetrics>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPrinter>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

using namespace kestrum;
using namespace kestrum::grid;
using kestrum::grid::test::sampleGrid;

namespace {

// Captions of a menu, submenus as "Parent > Child", separators left out.
QStringList captions(const QMenu* menu, const QString& prefix = {})
{
    QStringList out;
    for (QAction* a : menu->actions()) {
        if (a->isSeparator()) {
            continue;
        }
        out << prefix + a->text();
        if (a->menu()) {
            out << captions(a->menu(), prefix + a->text() + QStringLiteral(" > "));
        }
    }
    return out;
}

} // namespace

class TRMGridEditorTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TRMGridEditor> m_editor;
    std::unique_ptr<kestrum::test::ScopedScriptedDialogs> m_dialogs;

    TRMGridEditor& editor() { return *m_editor; }
    GridView& view() { return *m_editor->view(); }
    kestrum::test::ScopedScriptedDialogs& dialogs() { return *m_dialogs; }
    const GridDocument& grid() { return m_editor->gridDocument().grid(); }

    void load(const GridDocument& g)
    {
        QVERIFY(editor().document().readContent(GridStream::write(g)));
    }

private slots:
    void init()
    {
        m_dialogs = std::make_unique<kestrum::test::ScopedScriptedDialogs>();
        m_editor = std::make_unique<TRMGridEditor>();
        m_editor->resize(900, 600);
        load(sampleGrid());
    }
    void cleanup()
    {
        QVERIFY2(dialogs().unexpected().isEmpty(),
                 qPrintable(dialogs().unexpected().join(QLatin1String("; "))));
        m_editor.reset();
        m_dialogs.reset();
    }

    void popupMenuOrderAndCaptions()
    {
        QCOMPARE(editor().popupMenu()->objectName(), QStringLiteral("PopupMenu1"));
        QCOMPARE(captions(editor().popupMenu()), (QStringList{"Cut",
                                                              "Copy",
                                                              "Copy > Selection",
                                                              "Copy > Selection + Headers",
                                                              "Copy > Table",
                                                              "Paste",
                                                              "Clear",
                                                              "Delete",
                                                              "Delete > Entire row",
                                                              "Delete > Entire column",
                                                              "Font...",
                                                              "Alignment",
                                                              "Alignment > Left",
                                                              "Alignment > Center",
                                                              "Alignment > Right",
                                                              "Table",
                                                              "Table > Fixed row",
                                                              "Table > Fixed column",
                                                              "Export...",
                                                              "Print setup...",
                                                              "Print..."}));
    }

    void fixedChecksFollowTheGridWhenTheMenuOpens_data()
    {
        QTest::addColumn<int>("fixedRows");
        QTest::addColumn<int>("fixedCols");
        QTest::newRow("two fixed rows") << 2 << 0;
        QTest::newRow("none") << 0 << 0;
        QTest::newRow("column only") << 0 << 1;
    }
    void fixedChecksFollowTheGridWhenTheMenuOpens()
    {
        QFETCH(int, fixedRows);
        QFETCH(int, fixedCols);
        GridDocument g = sampleGrid();
        g.setFixedRows(fixedRows);
        g.setFixedColumns(fixedCols);
        load(g);
        editor().action(QStringLiteral("Fixedrow1"))->setChecked(fixedRows == 0);
        emit editor().popupMenu()->aboutToShow();
        QCOMPARE(editor().action(QStringLiteral("Fixedrow1"))->isChecked(), fixedRows >= 1);
        QCOMPARE(editor().action(QStringLiteral("Fixedcolumn1"))->isChecked(), fixedCols >= 1);
    }

    void fixedRowToggle()
    {
        QSignalSpy changed(&editor().document(), &store::PageDocument::contentChanged);
        QAction* fixedRow = editor().action(QStringLiteral("Fixedrow1"));
        QVERIFY(fixedRow->isChecked());
        fixedRow->trigger(); // unchecked: no fixed row
        QCOMPARE(grid().fixedRows(), 0);
        QVERIFY(view().horizontalHeader()->isHidden());
        QCOMPARE(view().model()->rowCount(), grid().rowCount());
        fixedRow->trigger();
        QCOMPARE(grid().fixedRows(), 1);
        QVERIFY(!view().horizontalHeader()->isHidden());
        QCOMPARE(view().model()->headerData(0, Qt::Horizontal).toString(),
                 QStringLiteral("Group A"));
        QCOMPARE(changed.count(), 2);
    }

    void deleteRowsAndColumns()
    {
        // All rows of a grid without a fixed row: refused.
        GridDocument g = sampleGrid();
        g.setFixedRows(0);
        g.setFixedColumns(0);
        load(g);
        view().selectRect({1, 0, 1, g.rowCount() - 1});
        editor().action(QStringLiteral("Row1"))->trigger();
        QCOMPARE(dialogs().messages(), QStringList{"Cannot delete all rows"});
        QCOMPARE(grid().rowCount(), g.rowCount());
        view().selectRect({0, 2, g.columnCount() - 1, 2});
        editor().action(QStringLiteral("Column1"))->trigger();
        QCOMPARE(dialogs().messages().last(), QStringLiteral("Cannot delete all collumns"));
        QCOMPARE(grid().columnCount(), g.columnCount());
        // Rows 2..4 and column 3.
        view().selectRect({3, 2, 3, 4});
        editor().action(QStringLiteral("Row1"))->trigger();
        QCOMPARE(grid().rowCount(), g.rowCount() - 3);
        editor().action(QStringLiteral("Column1"))->trigger();
        QCOMPARE(grid().columnCount(), g.columnCount() - 1);
        QCOMPARE(grid().text(3, 0), QStringLiteral("Share"));
    }

    void headerClickSelectsTheColumnAndAlignsItsHeader()
    {
        editor().show();
        QVERIFY(QTest::qWaitForWindowExposed(&editor()));
        QHeaderView* header = view().horizontalHeader();
        const int section = view().gridModel()->sectionOfColumn(3);
        QTest::mouseClick(
            header->viewport(), Qt::LeftButton, {},
            QPoint(header->sectionViewportPosition(section) + 5, header->height() / 2));
        const GridSelection selection = view().gridSelection();
        QCOMPARE(int(selection.cells.size()), grid().rowCount() - 1);
        editor().action(QStringLiteral("GridRightBtn"))->trigger();
        for (int r = 0; r < grid().rowCount(); ++r) {
            QCOMPARE(grid().format(3, r).alignment, CellAlignment::Right);
        }
        QVERIFY(editor().action(QStringLiteral("GridRightBtn"))->isChecked());
        QCOMPARE(grid().format(2, 1).alignment, CellAlignment::Left);
    }

    void toolbarFollowsTheCell()
    {
        QToolBar bar;
        editor().populateToolBar(&bar);
        QVERIFY(bar.actions().contains(editor().action(QStringLiteral("GridBoldBtn"))));
        QVERIFY(editor().multilinesCheck()->parent() == &bar);
        view().setCurrentCell({1, 1}); // red, right, italic underlined
        QVERIFY(!editor().action(QStringLiteral("GridBoldBtn"))->isChecked());
        QVERIFY(editor().action(QStringLiteral("GridItalicBtn"))->isChecked());
        QVERIFY(editor().action(QStringLiteral("GridUnderlineBtn"))->isChecked());
        QVERIFY(editor().action(QStringLiteral("GridRightBtn"))->isChecked());
        QVERIFY(!editor().action(QStringLiteral("GridLeftBtn"))->isChecked());
        QCOMPARE(common::fromQColor(editor().fontColourSelector()->colour()), common::clRed);
        view().setCurrentCell({2, 2});
        QVERIFY(editor().action(QStringLiteral("GridLeftBtn"))->isChecked());
        QCOMPARE(common::fromQColor(editor().backgroundSelector()->colour()),
                 common::rgbColour(0x12, 0x34, 0x56));
        QCOMPARE(common::fromQColor(editor().fontColourSelector()->colour()),
                 common::rgbColour(0xFE, 0xDC, 0xBA));
    }

    void boldToggleAndColourSelectors()
    {
        view().selectRect({2, 3, 3, 4});
        QAction* bold = editor().action(QStringLiteral("GridBoldBtn"));
        bold->trigger(); // now down
        QVERIFY(grid().format(2, 3).isBold() && grid().format(3, 4).isBold());
        bold->trigger();
        QVERIFY(!grid().format(2, 3).isBold() && !grid().format(3, 4).isBold());
        editor().fontColourSelector()->choose(common::toQColor(common::clGreen));
        editor().backgroundSelector()->choose(common::toQColor(common::clYellow));
        QCOMPARE(grid().format(3, 3).fontColour, common::clGreen);
        QCOMPARE(grid().format(2, 4).background, common::clYellow);
        QCOMPARE(grid().format(1, 3).background, common::clNone);
        editor().action(QStringLiteral("GridUndo"))->trigger();
        QCOMPARE(grid().format(2, 4).background, common::clNone);
    }

    void fontDialog()
    {
        QSignalSpy changed(&editor().document(), &store::PageDocument::contentChanged);
        view().selectRect({1, 1, 2, 2});
        QFont chosen(QStringLiteral("DejaVu Serif"));
        chosen.setPointSize(15);
        chosen.setBold(true);
        dialogs().answerFont(chosen);
        editor().action(QStringLiteral("GridFontBtn"))->trigger();
        for (const GridCell c : {GridCell{1, 1}, GridCell{2, 1}, GridCell{2, 2}}) {
            const GridCellFormat& f = grid().format(c.col, c.row);
            QCOMPARE(f.fontName, QStringLiteral("DejaVu Serif"));
            QCOMPARE(f.fontSize, 15);
            QCOMPARE(f.fontStyle, FontStyle::Bold);
            QCOMPARE(f.fontColour, common::clRed); // the first cell's colour, for every cell
        }
        const int afterOk = int(changed.count());
        dialogs().answerFont(std::nullopt);
        editor().action(QStringLiteral("GridFontBtn"))->trigger();
        QCOMPARE(changed.count(), afterOk + 1); // marked modified even when cancelled
        QCOMPARE(grid().format(1, 1).fontName, QStringLiteral("DejaVu Serif"));
    }

    void styleIsNotAvailable()
    {
        editor().action(QStringLiteral("Style1"))->trigger();
        QCOMPARE(dialogs().messages(), QStringList{"Not available yet!"});
    }

    void exportDialog_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("filter");
        QTest::addColumn<QString>("written");
        QTest::addColumn<QByteArray>("start");
        QTest::newRow("results.csv with the Excel filter")
            << "results.csv" << 4 << "results.CSV" << QByteArray("Code,Group A,Group B");
        QTest::newRow("no extension, tab filter")
            << "results" << 2 << "results.TAB" << QByteArray("Code\tGroup A");
        QTest::newRow("xls") << "book.xls" << 1 << "book.XLS" << QByteArray("\xD0\xCF\x11\xE0");
        QTest::newRow("html filter")
            << "page.html" << 6 << "page.HTM" << QByteArray("<!DOCTYPE html>");
    }
    void exportDialog()
    {
        QFETCH(QString, typed);
        QFETCH(int, filter);
        QFETCH(QString, written);
        QFETCH(QByteArray, start);
        QTemporaryDir dir;
        dialogs().answerSaveFile(ui::Dialogs::FileChoice{dir.filePath(typed), filter});
        editor().action(QStringLiteral("GridSaveBtn"))->trigger();
        QFile file(dir.filePath(written));
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(written));
        QVERIFY(file.readAll().startsWith(start));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files).size(), 1);
        const auto& request = dialogs().lastFileRequest();
        QVERIFY(request);
        QCOMPARE(request->filters,
                 (QStringList{"ASCII file (*.txt)", "Tab delimited (*.tab)",
                              "Comma delimited (*.csv)", "Excel (*.xls)", "MS Word (*.doc)",
                              "HTML file (*.htm *.html)", "XML file (*.xml)"}));
        QCOMPARE(request->fileName, QString());
    }

    void cancelledExportWritesNothing()
    {
        QSignalSpy changed(&editor().document(), &store::PageDocument::contentChanged);
        dialogs().answerSaveFile(std::nullopt);
        editor().SaveTableToDisk(QStringLiteral("/tmp/should-not-exist.csv"));
        QCOMPARE(dialogs().lastFileRequest()->fileName,
                 QStringLiteral("/tmp/should-not-exist.csv"));
        QVERIFY(!QFile::exists(QStringLiteral("/tmp/should-not-exist.CSV")));
        QCOMPARE(changed.count(), 0);
    }

    void printWithTitle()
    {
        QTemporaryDir dir;
        QPrinter* printer = editor().printer();
        printer->setOutputFormat(QPrinter::PdfFormat);
        printer->setOutputFileName(dir.filePath(QStringLiteral("grid.pdf")));
        printer->setPageOrientation(QPageLayout::Portrait);
        dialogs().answerText(QStringLiteral("Code frequencies"));
        editor().action(QStringLiteral("GridPrintBtn"))->trigger();
        QCOMPARE(dialogs().lastInitialText(), QString()); // the box starts empty from the toolbar
        // The title box is the only dialog: "OK" prints.
        QCOMPARE(dialogs().shown().size(), std::size_t(1));
        QCOMPARE(dialogs().shown().front().text, QStringLiteral("Printing title|Title:"));
        QFile pdf(dir.filePath(QStringLiteral("grid.pdf")));
        QVERIFY(pdf.open(QIODevice::ReadOnly));
        QVERIFY(pdf.readAll().startsWith("%PDF"));
        QCOMPARE(printer->pageLayout().orientation(), QPageLayout::Portrait); // put back
    }

    void cancelledPrintPrintsNothing()
    {
        QTemporaryDir dir;
        editor().printer()->setOutputFormat(QPrinter::PdfFormat);
        editor().printer()->setOutputFileName(dir.filePath(QStringLiteral("grid.pdf")));
        dialogs().answerText(std::nullopt);
        editor().PrintTheGrid(QStringLiteral("Start"));
        QCOMPARE(dialogs().lastInitialText(), QStringLiteral("Start"));
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("grid.pdf"))));
        QCOMPARE(dialogs().shown().size(), std::size_t(1));
    }

    void headerDoubleClickSortsThenReverses()
    {
        editor().show();
        QVERIFY(QTest::qWaitForWindowExposed(&editor()));
        QSignalSpy changed(&editor().document(), &store::PageDocument::contentChanged);
        QHeaderView* header = view().horizontalHeader();
        auto doubleClick = [&](int col) {
            const int section = view().gridModel()->sectionOfColumn(col);
            QTest::mouseDClick(
                header->viewport(), Qt::LeftButton, {},
                QPoint(header->sectionViewportPosition(section) + 5, header->height() / 2));
        };
        auto column = [this](int col) {
            QStringList texts;
            for (int r = 0; r < grid().rowCount(); ++r) {
                texts << grid().text(col, r);
            }
            return texts;
        };
        doubleClick(3); // "Age (#)": 34, 41, 29, 52, ""
        // Whole rows move with their key, numbers in numeric order, the empty cell last; the
        // header row stays on top.
        QCOMPARE(column(3), (QStringList{"Age (#)", "29", "34", "41", "52", ""}));
        QCOMPARE(column(0), (QStringList{"Code", "Line\nbreak", "Isolation", "Trust, \"earned\"",
                                         "Zoom fatigue – Łódź", "Total"}));
        QCOMPARE(column(1), (QStringList{"Group A", "0", "14", "7", "007", "28"}));
        QCOMPARE(column(4), (QStringList{"Share", "-3.5", "45.2%", "12.50", "n/a", "100%"}));
        doubleClick(3); // the same header again: the other way round
        QCOMPARE(column(3), (QStringList{"Age (#)", "52", "41", "34", "29", ""}));
        QCOMPARE(column(0), (QStringList{"Code", "Zoom fatigue – Łódź", "Trust, \"earned\"",
                                         "Isolation", "Line\nbreak", "Total"}));
        QCOMPARE(column(2), (QStringList{"Group B", "", "12", "9", "3", "24"}));
        // Another header keeps the direction of the last sort (descending here); "Group A"
        // sorts as numbers (28, 14, 7 and 007, 0), whole rows with it.
        doubleClick(1);
        const QStringList groupA = column(1);
        QCOMPARE(groupA.mid(0, 3), (QStringList{"Group A", "28", "14"}));
        QCOMPARE(groupA.last(), QStringLiteral("0"));
        const QStringList codes = column(0);
        QCOMPARE(codes.mid(0, 3), (QStringList{"Code", "Total", "Isolation"}));
        QCOMPARE(codes.last(), QStringLiteral("Line\nbreak"));
        QVERIFY(changed.count() >= 2);
    }

    void doubleClickOnABodyCellMarksModified()
    {
        editor().show();
        QVERIFY(QTest::qWaitForWindowExposed(&editor()));
        QSignalSpy changed(&editor().document(), &store::PageDocument::contentChanged);
        const QRect cell = view().visualRect(view().gridModel()->indexOf({2, 3}));
        QTest::mouseDClick(view().viewport(), Qt::LeftButton, {}, cell.center());
        QCOMPARE(changed.count(), 1);
        QCOMPARE(grid().text(3, 1), QStringLiteral("34")); // not sorted
    }

    void multilineClampsRows()
    {
        GridDocument g = sampleGrid();
        g.setText(1, 2, QString(QStringLiteral("a long passage that wraps ")).repeated(40));
        g.setText(0, 5, QString()); // row 5 nearly empty
        g.setText(1, 5, QString());
        g.setText(2, 5, QString());
        g.setText(4, 5, QString());
        g.setRowHeight(0, 60);
        load(g);
        QSignalSpy changed(&editor().document(), &store::PageDocument::contentChanged);
        editor().multilinesCheck()->click();
        QVERIFY(grid().wordWrap());
        QVERIFY(view().wordWrap());
        // Every row is fitted to its wrapped text; rows 1 and below are then kept between 15
        // and 150, row 0 is not.
        QCOMPARE(grid().rowHeight(2), 150); // the long passage needs far more
        // The emptied row: one line of its largest font.
        int oneLine = 0;
        for (int c = 0; c < grid().columnCount(); ++c) {
            oneLine = std::max(oneLine, QFontMetrics(grid().format(c, 5).font()).height());
        }
        QCOMPARE(grid().rowHeight(5), oneLine + GridRowSizer::kCellPadding);
        // "Line<break>break": two lines.
        QVERIFY(grid().rowHeight(3) > grid().rowHeight(5));
        const std::vector<int> fitted = GridRowSizer::fittedHeights(grid(), true);
        QVERIFY(fitted[2] > 150);
        for (int r = 1; r < grid().rowCount(); ++r) {
            QCOMPARE(grid().rowHeight(r), std::clamp(fitted[std::size_t(r)], 15, 150));
        }
        QCOMPARE(grid().rowHeight(0), fitted[0]); // row 0 fitted, not clamped
        QVERIFY(grid().rowHeight(0) < 60);
        QCOMPARE(changed.count(), 1);
        // Loading a page sets the check from the page.
        load(sampleGrid());
        QVERIFY(!editor().multilinesCheck()->isChecked());
    }

    void selectionWithHeadersGoesToTheClipboardAsHtml()
    {
        view().selectRect({2, 2, 3, 3});
        editor().action(QStringLiteral("CopySelectionHeaders"))->trigger();
        const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
        QVERIFY(mime && mime->hasHtml());
        const QString html = mime->html();
        QVERIFY(html.contains(QLatin1String("Group B")) && html.contains(QLatin1String("Age (#)")));
        QVERIFY(html.contains(QLatin1String("Trust, &quot;earned&quot;")));
        QVERIFY(!html.contains(QLatin1String("Code"))); // the corner cell stays behind
        QVERIFY(!html.contains(QLatin1String("Isolation")));
        QCOMPARE(
            mime->text(),
            QStringLiteral(
                "\tGroup B\tAge (#)\n\"Trust, \"\"earned\"\"\"\t12\t41\n\"Line\nbreak\"\t3\t29\n"));
        QCOMPARE(editor().cgrid().document().rowCount(), 3);
    }

    void copyCutAndPaste()
    {
        view().selectRect({1, 1, 2, 2});
        editor().action(QStringLiteral("GridCutBtn"))->trigger();
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("14\t9\n7\t12\n"));
        QCOMPARE(grid().text(1, 1), QString());
        view().setCurrentCell({3, 4});
        editor().action(QStringLiteral("GridPasteBtn"))->trigger();
        QCOMPARE(grid().text(3, 4), QStringLiteral("14"));
        QCOMPARE(grid().text(4, 5), QStringLiteral("12"));
        // Pasting past the edge grows the grid.
        QGuiApplication::clipboard()->setText(QStringLiteral("x\ty\tz\n"));
        view().setCurrentCell({4, 5});
        editor().action(QStringLiteral("GridPasteBtn"))->trigger();
        QCOMPARE(grid().columnCount(), 7);
        QCOMPARE(grid().text(6, 5), QStringLiteral("z"));
        editor().action(QStringLiteral("CopyTable"))->trigger();
        QVERIFY(QGuiApplication::clipboard()
                    ->mimeData()
                    ->data(QStringLiteral("text/rtf"))
                    .startsWith("{\\rtf1"));
    }

    void findDialog()
    {
        view().setCurrentCell({1, 1});
        dialogs().answerExec([](QDialog* dialog) {
            auto* find = qobject_cast<GridFindDialog*>(dialog);
            find->findChild<QLineEdit*>(QStringLiteral("findText"))->setText(QStringLiteral("2"));
            auto* next = find->findChild<QPushButton*>(QStringLiteral("findNext"));
            next->click(); // "45.2%" at (4, 1)
            next->click(); // "12" at (2, 2)
            return int(QDialog::Rejected);
        });
        editor().find();
        QCOMPARE(dialogs().shown().front().text, QStringLiteral("Find text"));
        QCOMPARE(view().currentCell()->col, 2);
        QCOMPARE(view().currentCell()->row, 2);
        dialogs().answerExec([](QDialog* dialog) {
            dialog->findChild<QLineEdit*>(QStringLiteral("findText"))
                ->setText(QStringLiteral("no such text"));
            dialog->findChild<QPushButton*>(QStringLiteral("findNext"))->click();
            return int(QDialog::Rejected);
        });
        editor().find();
        QCOMPARE(dialogs().messages(), QStringList{"Not found!"});
    }

    void replaceDialog()
    {
        dialogs().answerExec([](QDialog* dialog) {
            dialog->findChild<QLineEdit*>(QStringLiteral("findText"))
                ->setText(QStringLiteral("N/A"));
            dialog->findChild<QLineEdit*>(QStringLiteral("replaceText"))
                ->setText(QStringLiteral("—"));
            dialog->findChild<QPushButton*>(QStringLiteral("replaceAll"))->click();
            return int(QDialog::Rejected);
        });
        editor().replace();
        QCOMPARE(dialogs().shown().front().text, QStringLiteral("Replace text"));
        QCOMPARE(grid().text(4, 4), QStringLiteral("—"));
        QCOMPARE(dialogs().messages(), QStringList{"1 cell(s) replaced."});
    }

    void globalFindSteps()
    {
        QVERIFY(!editor().findFirst(QStringLiteral("2"), 2)); // whole cell: no cell is "2"
        QVERIFY(!editor().findNext());
        QVERIFY(editor().findFirst(QStringLiteral("2"), 0)); // "45.2%" at (4, 1), row by row
        QCOMPARE(view().currentCell()->col, 4);
        QCOMPARE(view().currentCell()->row, 1);
        QVERIFY(editor().findNext()); // "12" at (2, 2)
        QCOMPARE(view().currentCell()->col, 2);
        QCOMPARE(view().currentCell()->row, 2);
        QVERIFY(editor().findNext()); // "12.50"
        QCOMPARE(view().currentCell()->col, 4);
        QVERIFY(editor().findNext()); // "29"
        QCOMPARE(view().currentCell()->row, 3);
        QVERIFY(editor().findFirst(QStringLiteral("ISOLATION"), 0) == false); // fixed column
        QVERIFY(editor().findFirst(QStringLiteral("N/A"), 0));
        QVERIFY(!editor().findFirst(QStringLiteral("N/A"), 1)); // match case
    }

    void toolbarDoubleClickShowsAndWidensColumns()
    {
        GridDocument g = sampleGrid();
        g.setColumnWidth(2, 8);
        load(g);
        QToolBar bar;
        editor().populateToolBar(&bar);
        bar.resize(1600, 40);
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        QSignalSpy changed(&editor().document(), &store::PageDocument::contentChanged);
        QTest::mouseDClick(&bar, Qt::LeftButton, {}, QPoint(bar.width() - 5, bar.height() / 2));
        QCOMPARE(grid().columnWidth(2), 30);
        QCOMPARE(grid().columnWidth(0), 140);
        QCOMPARE(view().horizontalHeader()->sectionSize(view().gridModel()->sectionOfColumn(2)),
                 30);
        QVERIFY(changed.count() >= 1);
    }

    void columnResizeAndMoveGoThroughTheDocument()
    {
        QSignalSpy changed(&editor().document(), &store::PageDocument::contentChanged);
        QHeaderView* header = view().horizontalHeader();
        header->resizeSection(view().gridModel()->sectionOfColumn(3), 123);
        QCOMPARE(grid().columnWidth(3), 123);
        header->moveSection(0, 2); // column 1 to column 3
        QCOMPARE(grid().text(3, 0), QStringLiteral("Group A"));
        for (int section = 0; section < header->count(); ++section) {
            QCOMPARE(header->visualIndex(section), section); // the view shows the document's order
        }
        QCOMPARE(changed.count(), 2);
        editor().action(QStringLiteral("GridUndo"))->trigger();
        editor().action(QStringLiteral("GridUndo"))->trigger();
        QVERIFY(grid().sameContent(sampleGrid()));
        QCOMPARE(header->sectionSize(view().gridModel()->sectionOfColumn(3)), 64);
    }

    void fixedRowsAndColumnsAreSizedWithTheMouse()
    {
        editor().show();
        QVERIFY(QTest::qWaitForWindowExposed(&editor()));
        QSignalSpy changed(&editor().document(), &store::PageDocument::contentChanged);
        // The fixed row is the column header: dragging its bottom edge sizes row 0.
        QHeaderView* columns = view().horizontalHeader();
        const int rowHeight = grid().rowHeight(0);
        QCOMPARE(columns->height(), rowHeight);
        QWidget* top = columns->viewport();
        QTest::mousePress(top, Qt::LeftButton, {}, QPoint(20, rowHeight - 2));
        QTest::mouseMove(top, QPoint(20, rowHeight + 8));
        QCOMPARE(columns->height(), rowHeight + 10); // the header follows the mouse
        QCOMPARE(grid().rowHeight(0), rowHeight);    // the document takes it on release
        QTest::mouseRelease(top, Qt::LeftButton, {}, QPoint(20, rowHeight + 18));
        QCOMPARE(grid().rowHeight(0), rowHeight + 20);
        QCOMPARE(columns->height(), rowHeight + 20);
        QCOMPARE(changed.count(), 1);
        // The cells start right under the taller header (none hidden behind it).
        QCOMPARE(view().viewport()->geometry().top(), columns->geometry().bottom() + 1);
        // No sort, no column selection: the cells stay where they were.
        QCOMPARE(grid().text(3, 1), QStringLiteral("34"));

        // The fixed column is the row header: dragging its right edge sizes column 0, and no
        // narrower than 2 pixels.
        QHeaderView* rows = view().verticalHeader();
        const int width = grid().columnWidth(0);
        QCOMPARE(rows->width(), width);
        QWidget* left = rows->viewport();
        QTest::mousePress(left, Qt::LeftButton, {}, QPoint(width - 1, 10));
        QTest::mouseRelease(left, Qt::LeftButton, {}, QPoint(width + 29, 10));
        QCOMPARE(grid().columnWidth(0), width + 30);
        QCOMPARE(rows->width(), width + 30);
        QCOMPARE(view().viewport()->geometry().left(), rows->geometry().right() + 1);
        QTest::mousePress(left, Qt::LeftButton, {}, QPoint(width + 29, 10));
        QTest::mouseRelease(left, Qt::LeftButton, {}, QPoint(-500, 10));
        QCOMPARE(grid().columnWidth(0), 2);
        QCOMPARE(changed.count(), 3);

        // A press away from the edge is the header's own (no size change).
        QTest::mousePress(top, Qt::LeftButton, {}, QPoint(20, 3));
        QTest::mouseRelease(top, Qt::LeftButton, {}, QPoint(20, 40));
        QCOMPARE(grid().rowHeight(0), rowHeight + 20);
    }

    void editingACell()
    {
        QSignalSpy changed(&editor().document(), &store::PageDocument::contentChanged);
        QVERIFY(
            view().model()->setData(view().gridModel()->indexOf({2, 3}), QStringLiteral("typed")));
        QCOMPARE(grid().text(2, 3), QStringLiteral("typed"));
        QCOMPARE(changed.count(), 1);
        // A decimal number is shown with two decimals and edited as it was typed.
        const QModelIndex number = view().gridModel()->indexOf({2, 3});
        QVERIFY(view().model()->setData(number, QStringLiteral("41.66667")));
        QCOMPARE(number.data(Qt::DisplayRole).toString(), QStringLiteral("41.67"));
        QCOMPARE(number.data(Qt::EditRole).toString(), QStringLiteral("41.66667"));
        QCOMPARE(grid().text(2, 3), QStringLiteral("41.66667"));
    }

    void modelStaysConsistent()
    {
        QAbstractItemModelTester tester(view().model(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        load(sampleGrid());
        editor().gridDocument().setFixedColumns(0);
        editor().gridDocument().deleteRows(2, 3);
        editor().gridDocument().setCellText(1, 1, QStringLiteral("x"));
        editor().gridDocument().undoStack()->undo();
        editor().document().clear();
    }
};

QTEST_MAIN(TRMGridEditorTest)
#include "TRMGridEditorTest.moc"
