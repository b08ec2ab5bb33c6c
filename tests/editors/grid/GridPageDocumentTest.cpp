// The grid page's document: the commands' rules, undo, when the page counts as changed, and
// table files taken in through the store.

#include "GridSamples.h"
#include "ResultChecks.h"

#include "editors/grid/DelimitedTextWriter.h"
#include "editors/grid/GridPageDocument.h"
#include "editors/grid/GridStream.h"
#include "editors/grid/WgfFile.h"
#include "store/PageKind.h"
#include "store/PageTable.h"
#include "store/TRMData.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace kestrum;
using namespace kestrum::grid;
using kestrum::grid::test::sampleGrid;

namespace {

// The store imports tables through grid page documents.
store::PageKindTable gridKinds()
{
    store::PageKind kind;
    kind.kind = store::EditorKind::Grid;
    kind.pageTypes = {store::PageType::Grid};
    kind.makeDocument = [] { return std::make_unique<GridPageDocument>(); };
    kind.importExtensions = {QStringLiteral(".TAB"), QStringLiteral(".CSV"),
                             QStringLiteral(".GRID2")};
    return store::PageKindTable({kind});
}

void load(GridPageDocument& doc, const GridDocument& g)
{
    const Status read = doc.readContent(GridStream::write(g));
    QVERIFY2(read, qPrintable(read.error()));
}

GridSelection wholeColumnBelowHeader(const GridDocument& g, int col)
{
    GridSelection s;
    for (int r = 1; r < g.rowCount(); ++r) {
        s.cells.push_back({col, r});
    }
    s.rect = {col, 1, col, g.rowCount() - 1};
    s.current = {col, 1};
    return s;
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

} // namespace

class GridPageDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void loadingAndClearingAreNotChanges()
    {
        GridPageDocument doc;
        QSignalSpy changed(&doc, &store::PageDocument::contentChanged);
        QSignalSpy reset(&doc, &GridPageDocument::gridReset);
        load(doc, sampleGrid());
        doc.clear();
        QVERIFY(doc.readContent(QByteArray())); // empty content: a cleared grid
        QCOMPARE(changed.count(), 0);
        QCOMPARE(reset.count(), 3);
        QVERIFY(doc.grid().sameContent(GridDocument()));
    }

    void loadingShowsHiddenColumns()
    {
        GridDocument g = sampleGrid();
        g.setColumnHidden(2, true);
        GridPageDocument doc;
        load(doc, g);
        QVERIFY(!doc.grid().hasHiddenColumns());
    }

    void damagedContentLeavesAClearedGrid()
    {
        GridPageDocument doc;
        load(doc, sampleGrid());
        QString error;
        const Status read = doc.readContent(QByteArray("KSTG\x01\x00"));
        error = read.error();
        QVERIFY(!read);
        QVERIFY(error.startsWith(QLatin1String("damaged grid stream")));
        QVERIFY(doc.grid().sameContent(GridDocument()));
    }

    void everyCommandIsAChangeAndUndoes()
    {
        GridPageDocument doc;
        load(doc, sampleGrid());
        QSignalSpy changed(&doc, &store::PageDocument::contentChanged);
        const GridSelection cell = GridSelection::ofCell(2, 2);
        doc.setCellText(2, 2, QStringLiteral("new"));
        doc.setAlignment(cell, CellAlignment::Right);
        doc.setFontColour(cell, common::clBlue);
        doc.setBackColour(cell, common::clYellow);
        doc.addFontStyle(cell, 0);
        doc.setFont(cell, QStringLiteral("DejaVu Sans"), 14, common::clGreen, FontStyle::Italic);
        doc.clearCells(cell);
        QVERIFY(doc.deleteRows(3, 3));
        QVERIFY(doc.deleteColumns(4, 4));
        doc.pasteRows({1, 1}, {{QStringLiteral("p"), QStringLiteral("q")}});
        doc.pasteRows({3, 4}, {{QStringLiteral("grows")}, {QStringLiteral("the grid")}});
        doc.setFixedRows(0);
        doc.setFixedColumns(0);
        doc.sortByColumn(0, true);
        doc.moveRow(1, 2);
        doc.moveColumn(0, 1);
        doc.setColumnWidth(1, 99);
        doc.setRowHeight(1, 33);
        doc.setMultiline(true, {30, 30, 30});
        doc.unhideColumns(30);
        QCOMPARE(changed.count(), 20);
        QCOMPARE(doc.grid().rowCount(), 6);
        while (doc.undoStack()->canUndo()) {
            doc.undoStack()->undo();
        }
        QVERIFY(doc.grid().sameContent(sampleGrid()));
        while (doc.undoStack()->canRedo()) {
            doc.undoStack()->redo();
        }
        QCOMPARE(doc.grid().columnWidth(1), 99);
        QCOMPARE(doc.grid().columnWidth(2), 64);
        QCOMPARE(doc.grid().text(3, 5), QStringLiteral("the grid"));
    }

    void alignmentHeaderRule_data()
    {
        QTest::addColumn<int>("fixedRows");
        QTest::addColumn<int>("rowsSelected");
        QTest::addColumn<bool>("headerAligned");
        QTest::newRow("whole column below the header") << 1 << 5 << true;
        QTest::newRow("part of the column") << 1 << 4 << false;
        // The rule counts cells, not fixed rows: without a fixed row the same selection
        // still aligns row 0.
        QTest::newRow("no fixed row, rows 1 to the last") << 0 << 5 << true;
    }
    void alignmentHeaderRule()
    {
        QFETCH(int, fixedRows);
        QFETCH(int, rowsSelected);
        QFETCH(bool, headerAligned);
        GridDocument g = sampleGrid();
        g.setFixedRows(fixedRows);
        GridPageDocument doc;
        load(doc, g);
        GridSelection s = wholeColumnBelowHeader(doc.grid(), 3);
        s.cells.resize(std::size_t(rowsSelected));
        doc.setAlignment(s, CellAlignment::Right);
        QCOMPARE(doc.grid().format(3, 0).alignment == CellAlignment::Right, headerAligned);
        QCOMPARE(doc.grid().format(3, rowsSelected).alignment, CellAlignment::Right);
    }

    void alignmentOfTwoColumnsLeavesTheHeaders()
    {
        GridPageDocument doc;
        load(doc, sampleGrid());
        // As many cells as rows - 1, but first and last in different columns.
        GridSelection s = GridSelection::ofRect({2, 4, 3, 5});
        s.cells.push_back({3, 3});
        QCOMPARE(qint64(s.cells.size()), qint64(doc.grid().rowCount() - 1));
        doc.setAlignment(s, CellAlignment::Right);
        QCOMPARE(doc.grid().format(2, 0).alignment, CellAlignment::Centre);
        QCOMPARE(doc.grid().format(3, 0).alignment, CellAlignment::Centre);
    }

    void fontStylesAddAndRemoveOneStyle()
    {
        GridPageDocument doc;
        load(doc, sampleGrid());
        const GridSelection cells =
            GridSelection::ofRect({1, 1, 2, 2}); // (1, 1) is italic underlined
        doc.addFontStyle(cells, 0);
        QCOMPARE(doc.grid().format(1, 1).fontStyle,
                 quint8(FontStyle::Bold | FontStyle::Italic | FontStyle::Underline));
        QCOMPARE(doc.grid().format(2, 2).fontStyle, FontStyle::Bold);
        doc.removeFontStyle(cells, 2);
        QCOMPARE(doc.grid().format(1, 1).fontStyle, quint8(FontStyle::Bold | FontStyle::Italic));
        doc.removeFontStyle(cells, 0);
        QCOMPARE(doc.grid().format(2, 2).fontStyle, quint8(0));
        // The current cell alone when nothing is multi-selected.
        doc.addFontStyle(GridSelection::ofCell(3, 3), 1);
        QVERIFY(doc.grid().format(3, 3).isItalic());
        QVERIFY(!doc.grid().format(3, 4).isItalic());
    }

    void deletingRowsAndColumns_data()
    {
        QTest::addColumn<bool>("rows");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<bool>("deleted");
        QTest::newRow("rows 1 to 9 of ten") << true << 1 << 9 << true;
        QTest::newRow("all ten rows") << true << 0 << 9 << false;
        QTest::newRow("one row") << true << 4 << 4 << true;
        QTest::newRow("columns 1 to 4 of five") << false << 1 << 4 << true;
        QTest::newRow("all five columns") << false << 0 << 4 << false;
    }
    void deletingRowsAndColumns()
    {
        QFETCH(bool, rows);
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(bool, deleted);
        GridPageDocument doc;
        QSignalSpy changed(&doc, &store::PageDocument::contentChanged);
        const bool done = rows ? doc.deleteRows(first, last) : doc.deleteColumns(first, last);
        QCOMPARE(done, deleted);
        QCOMPARE(changed.count(), deleted ? 1 : 0);
        const int count = last - first + 1;
        QCOMPARE(rows ? doc.grid().rowCount() : doc.grid().columnCount(),
                 deleted ? (rows ? 10 : 5) - count : (rows ? 10 : 5));
    }

    void replaceAllIsOneStep()
    {
        GridPageDocument doc;
        load(doc, sampleGrid());
        const int n = doc.replaceAll(QStringLiteral("1"), QStringLiteral("one"), {});
        QCOMPARE(n, 5); // "14", "12", "41", "12.50", "100%": cells, not occurrences
        QCOMPARE(doc.grid().text(1, 1), QStringLiteral("one4"));
        QCOMPARE(doc.grid().text(0, 0), QStringLiteral("Code")); // fixed cells are not searched
        doc.undoStack()->undo();
        QVERIFY(doc.grid().sameContent(sampleGrid()));
        QCOMPARE(doc.replaceAll(QStringLiteral("ISOLATION"), QStringLiteral("x"), {true, false}),
                 0);
        QVERIFY(doc.replaceCell({1, 5}, QStringLiteral("28"), QStringLiteral("29"), {false, true}));
        QVERIFY(!doc.replaceCell({1, 5}, QStringLiteral("2"), QStringLiteral("3"), {false, true}));
    }

    void xmlExportKeepsOneFixedRowWithoutAChange()
    {
        QTemporaryDir dir;
        GridDocument g = sampleGrid();
        g.setFixedRows(2);
        GridPageDocument doc;
        load(doc, g);
        QSignalSpy changed(&doc, &store::PageDocument::contentChanged);
        QVERIFY(doc.exportTo(dir.filePath(QStringLiteral("t.xml")), 7));
        QCOMPARE(doc.grid().fixedRows(), 1);
        QCOMPARE(changed.count(), 0);
    }

    // ---- table files through the store ---------------------------------------------------

    void importByName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("storedAtOnce");
        QTest::addColumn<QString>("cell10");
        QTest::newRow("csv") << "codes.csv" << QByteArray("Code,Count\n\"a, b\",3\n") << false
                             << "a, b";
        QTest::newRow("csv upper case")
            << "CODES.CSV" << QByteArray("Code,Count\nx,3\n") << false << "x";
        QTest::newRow("tab") << "codes.tab" << QByteArray("Code\tCount\ny,z\t4\n") << false
                             << "y,z";
        QTest::newRow("native grid2") << "codes.grid2" << QByteArray() << true << "Isolation";
    }
    void importByName()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QFETCH(bool, storedAtOnce);
        QFETCH(QString, cell10);
        QTemporaryDir dir;
        const QString source = dir.filePath(name);
        if (bytes.isEmpty()) {
            GridDocument g = sampleGrid();
            g.setColumnWidth(2, 2);
            g.setColumnHidden(3, true);
            QVERIFY(WgfFile::save(source, g));
        } else {
            writeFile(source, bytes);
        }
        store::TRMData data;
        GridPageDocument doc;
        data.setPageKinds(gridKinds());
        KVERIFY_OK(data.DBCreate(dir.filePath(QStringLiteral("p.kst"))));
        QSignalSpy changed(&doc, &store::PageDocument::contentChanged);
        QSignalSpy warnings(&data, &store::TRMData::warning);
        store::OutlineNode* node = data.AppendFile(source, data.outline().root(), true).value();
        QVERIFY(node);
        QCOMPARE(node->imageIndex(), store::PageType::Grid);
        QCOMPARE(warnings.count(), 0);
        const QByteArray stored =
            data.table()->readContent(node->data()).value().value_or(QByteArray());
        QVERIFY(doc.readContent(storedAtOnce ? stored : data.unsavedImport()));
        QCOMPARE(changed.count(), 0); // taking a file in is no edit
        QCOMPARE(doc.grid().text(0, 1), cell10);
        QCOMPARE(!stored.isEmpty(), storedAtOnce);
        QCOMPARE(doc.storesImportImmediately(source), storedAtOnce);
        if (storedAtOnce) {
            GridDocument back;
            QVERIFY(GridStream::read(stored, &back));
            QCOMPARE(back.fixedColumns(), 0);  // fixed columns dropped
            QVERIFY(!back.hasHiddenColumns()); // columns shown
            QCOMPARE(back.columnWidth(2), 20); // too narrow to see: widened
            QCOMPARE(back.columnWidth(0), 140);
        }
    }

    void delimiterFollowsTheLastImport()
    {
        QTemporaryDir dir;
        writeFile(dir.filePath(QStringLiteral("a.tab")), "x\ty\n");
        writeFile(dir.filePath(QStringLiteral("b.csv")), "x,y\n");
        GridPageDocument doc;
        QCOMPARE(doc.delimiter(), QLatin1Char(','));
        QVERIFY(doc.importFile(dir.filePath(QStringLiteral("a.tab"))));
        QCOMPARE(doc.delimiter(), QLatin1Char('\t'));
        QVERIFY(doc.importFile(dir.filePath(QStringLiteral("b.csv"))));
        QCOMPARE(doc.delimiter(), QLatin1Char(','));
    }

    void badFilesAreReportedAndLeaveNothingStored_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        QTest::newRow("binary csv")
            << "photo.csv" << QByteArray("\xFF\xD8\xFF\xE0\0\x10JFIF\0", 11) << "binary data";
        QTest::newRow("text as grid file")
            << "table.grid2" << QByteArray("just,text\n") << "not a grid file";
        QTest::newRow("damaged grid file")
            << "table.grid2" << QByteArray("KWGF\x01\x00\x00\x00KSTG\x01", 13)
            << "damaged grid stream";
    }
    void badFilesAreReportedAndLeaveNothingStored()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        QTemporaryDir dir;
        const QString source = dir.filePath(name);
        writeFile(source, bytes);
        store::TRMData data;
        GridPageDocument doc;
        data.setPageKinds(gridKinds());
        KVERIFY_OK(data.DBCreate(dir.filePath(QStringLiteral("p.kst"))));
        QSignalSpy warnings(&data, &store::TRMData::warning);
        store::OutlineNode* node = data.AppendFile(source, data.outline().root(), true).value();
        QCOMPARE(warnings.count(), 1);
        QVERIFY2(warnings.at(0).at(0).toString().contains(message),
                 qPrintable(warnings.at(0).at(0).toString()));
        QVERIFY(data.table()->readContent(node->data()).value().value_or(QByteArray()).isEmpty());
    }

    void pageRoundTripThroughTheStore()
    {
        QTemporaryDir dir;
        store::TRMData data;
        GridPageDocument doc;
        data.setPageKinds(gridKinds());
        KVERIFY_OK(data.DBCreate(dir.filePath(QStringLiteral("p.kst"))));
        const qint32 id =
            data.AddRecord(store::PageType::Grid, QStringLiteral("Table"), QString()).value();
        load(doc, sampleGrid());
        doc.setCellText(1, 1, QStringLiteral("edited"));
        QVERIFY(data.SaveGrid(id, doc).value());
        doc.clear();
        QVERIFY(data.GetGrid(id, doc).value());
        QCOMPARE(doc.grid().text(1, 1), QStringLiteral("edited"));
        QCOMPARE(doc.grid().format(2, 2).fontName, QStringLiteral("Courier New"));
    }
};

QTEST_GUILESS_MAIN(GridPageDocumentTest)
#include "GridPageDocumentTest.moc"
