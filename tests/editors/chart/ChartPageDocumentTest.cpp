// Chart pages in the store and through the kind table: content round trips, the chart info
// read with a page, files added as pages (read or not), and the report pieces.

#include "editors/chart/ChartPageDocument.h"
#include "ChartSamples.h"
#include "ResultChecks.h"
#include "editors/chart/ChartCommands.h"
#include "editors/chart/ChartStream.h"
#include "export/PageExports.h"
#include "store/OutlineModel.h"
#include "store/PageTable.h"
#include "store/TRMData.h"

#include <QFile>
#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace kestrum;
using namespace kestrum::chart;

namespace {

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

} // namespace

class ChartPageDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void roundTripThroughTheKindTable()
    {
        const store::PageKind* kind = exports::pageKindTable().find(store::EditorKind::Chart);
        QVERIFY(kind);
        QCOMPARE(kind->importExtensions, QStringList({".WSX", ".TEE"}));
        auto doc = kind->makeDocument();
        QCOMPARE(doc->kind(), store::EditorKind::Chart);
        const QByteArray bytes = ChartStream::write(samples::everything());
        QVERIFY(doc->readContent(bytes));
        QByteArray back;
        const auto written = doc->writeContent();
        QVERIFY2(written, qPrintable(written.error()));
        back = *written;
        QCOMPARE(back, bytes);
        QVERIFY(doc->readContent(QByteArray())); // empty: an empty chart
        QVERIFY(static_cast<ChartPageDocument&>(*doc).chart() == Chart());
        QString error;
        const Status read = doc->readContent(QByteArray("KCHT\x07\x00\x00\x00", 8));
        error = read.error();
        QVERIFY(!read);
        QVERIFY2(error.contains(QLatin1String("version")), qPrintable(read.error()));
        QVERIFY(static_cast<ChartPageDocument&>(*doc).chart() == Chart()); // left cleared
    }

    void loadingIsNoEditButSwitchesAre()
    {
        ChartPageDocument doc;
        QSignalSpy changed(&doc, &store::PageDocument::contentChanged);
        QSignalSpy reset(&doc, &store::PageDocument::contentReset);
        QSignalSpy redraw(&doc, &ChartPageDocument::chartChanged);
        QVERIFY(doc.readContent(ChartStream::write(samples::grouped())));
        QCOMPARE(changed.count(), 0);
        QCOMPARE(reset.count(), 1);
        doc.changeView([](Chart& c) { c.setRotation(30); });
        QCOMPARE(changed.count(), 0);
        doc.edit(ChartCommands::swapSeries);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(redraw.count(), 3);
        QCOMPARE(doc.chart().seriesCount(), 4);
        QCOMPARE(doc.chart().view3D.rotation, 30);
    }

    void pagesKeepTheirChartAndInfoInAProject()
    {
        QTemporaryDir dir;
        store::TRMData data;
        data.setPageKinds(exports::pageKindTable());
        KVERIFY_OK(data.DBCreate(dir.filePath(QStringLiteral("p.kst"))));
        const QString info = QStringLiteral("S\tsrc\tScatter\t12");
        const qint32 id = data.appendRecord(store::PageType::Chart, info,
                                            ChartStream::write(samples::grouped()), {})
                              .value();
        ChartPageDocument doc;
        QCOMPARE(doc.chartInfo(), QStringLiteral("None"));
        QVERIFY(data.GetChart(id, doc).value());
        QCOMPARE(doc.chartInfo(), info);
        QCOMPARE(doc.chart().series[1].title, QStringLiteral("Staff"));
        doc.edit(ChartCommands::switchGroupLines);
        QVERIFY(data.SaveChart(id, doc).value());
        // The info is not written back with the chart.
        ChartPageDocument again;
        QVERIFY(data.GetChart(id, again).value());
        QVERIFY(again.chart() == doc.chart());
        QCOMPARE(data.table()->readInfo(id).value().value_or(QString()), info);

        // Reopened from disk.
        data.CloseFile();
        KVERIFY_OK(data.DBOpen(dir.filePath(QStringLiteral("p.kst"))));
        ChartPageDocument reopened;
        QVERIFY(data.GetChart(id, reopened).value());
        QCOMPARE(reopened.chart().series[0].kind, SeriesKind::Line);
        QVERIFY(!data.GetChart(id + 100, reopened).value()); // missing: kept as shown
        QCOMPARE(reopened.chart().series[0].kind, SeriesKind::Line);
    }

    void addedChartFilesBecomeChartPages()
    {
        QTemporaryDir dir;
        const QString good = dir.filePath(QStringLiteral("frequencies.wsx"));
        writeFile(good, ChartStream::write(samples::grouped()));
        const QString bad = dir.filePath(QStringLiteral("old.tee"));
        writeFile(bad, QByteArray("TPFO\x03 a chart of another program", 30));
        store::TRMData data;
        data.setPageKinds(exports::pageKindTable());
        KVERIFY_OK(data.DBCreate(dir.filePath(QStringLiteral("p.kst"))));
        QSignalSpy warnings(&data, &store::TRMData::warning);

        store::OutlineNode* node = data.AppendFile(good, data.outline().root(), true).value();
        QCOMPARE(node->imageIndex(), store::PageType::Chart);
        QCOMPARE(node->caption(), QStringLiteral("frequencies"));
        QCOMPARE(warnings.count(), 0);
        const QByteArray stored =
            data.table()->readContent(node->data()).value().value_or(QByteArray());
        QCOMPARE(stored, ChartStream::write(samples::grouped()));

        // A file that cannot be read: reported, and the page is still stored (an empty chart).
        store::OutlineNode* broken = data.AppendFile(bad, data.outline().root(), true).value();
        QCOMPARE(broken->imageIndex(), store::PageType::Chart);
        QCOMPARE(warnings.count(), 1);
        QVERIFY2(warnings.at(0).at(0).toString().contains(QLatin1String("not a chart stream")),
                 qPrintable(warnings.at(0).at(0).toString()));
        const QByteArray empty =
            data.table()->readContent(broken->data()).value().value_or(QByteArray());
        QCOMPARE(empty, ChartStream::write(Chart()));

        // No file at all: an empty chart too.
        const qint32 id =
            data.AddRecord(store::PageType::Chart, QStringLiteral("New"), QString()).value();
        QCOMPARE(data.table()->readContent(id).value().value_or(QByteArray()),
                 ChartStream::write(Chart()));
    }

    void reportPieces()
    {
        const exports::CorePageKind* kind = exports::coreKind(store::EditorKind::Chart);
        QVERIFY(kind);
        exports::PageSource page;
        page.pageId = 7;
        page.pageType = store::PageType::Chart;
        page.content = ChartStream::write(samples::grouped());
        const auto html =
            kind->exports.html(page, {QStringLiteral("r_files"), QStringLiteral("p7_")});
        QVERIFY2(html, qPrintable(html.error()));
        QVERIFY2(html->html.startsWith(QLatin1String("<IMG SRC=\"r_files/p7_chart7.png\"")),
                 qPrintable(html->html));
        QCOMPARE(html->files.size(), std::size_t(1));
        QImage picture;
        QVERIFY(picture.loadFromData(html->files[0].second, "PNG"));
        QCOMPARE(picture.size(), QSize(800, 500));

        const auto rtf = kind->exports.rtf(page);
        QVERIFY(rtf);
        QVERIFY(rtf->startsWith("{\\rtf1"));
        QVERIFY(rtf->contains("\\pict\\pngblip\\picw800\\pich500"));
        QVERIFY(rtf->contains("89504e47")); // the PNG signature in hexadecimal

        const auto text = kind->exports.text(page);
        QVERIFY(text);
        for (const char* word : {"Code frequencies", "Managers", "Staff", "Belonging", "C1"}) {
            QVERIFY2(text->contains(QLatin1String(word)), word);
        }

        page.content = QByteArray("KCHT\x01\x00\x00\x00\x05", 9);
        const auto damaged = kind->exports.text(page);
        QVERIFY(!damaged);
        QVERIFY(damaged.error().contains(QLatin1String("damaged chart stream")));
        QVERIFY(!kind->exports.html(page, {}));
    }
};

QTEST_MAIN(ChartPageDocumentTest)
#include "ChartPageDocumentTest.moc"
