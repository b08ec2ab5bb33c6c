// Printing the grid (pages, fitting, title and footer) and the row heights of multi-line mode.

#include "GridSamples.h"

#include "editors/grid/GridPrinter.h"
#include "editors/grid/GridRowSizer.h"

#include <QFile>
#include <QPaintEngine>
#include <QPainter>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <QTest>

#include <climits>
#include <vector>

using namespace kestrum::grid;
using kestrum::grid::test::sampleGrid;

namespace {

GridDocument tall(int rows, int cols = 5)
{
    GridDocument g;
    g.setSize(cols, rows);
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < cols; ++c) {
            g.setText(c, r, QStringLiteral("r%1c%2").arg(r).arg(c));
        }
    }
    return g;
}

// A paint device that records the texts drawn on it, with where they were drawn (device
// coordinates of the baseline start and the run's width).
class TextRecorder : public QPaintDevice
{
public:
    struct Run
    {
        QString text;
        QPointF at;
        qreal width;
        QFont font;
    };

    TextRecorder(int width, int height) : m_engine(this), m_width(width), m_height(height) {}
    QPaintEngine* paintEngine() const override { return &m_engine; }
    const std::vector<Run>& runs() const { return m_runs; }
    const Run* find(const QString& text) const
    {
        for (const Run& run : m_runs) {
            if (run.text == text) {
                return &run;
            }
        }
        return nullptr;
    }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
            return m_width;
        case PdmHeight:
            return m_height;
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return 96;
        case PdmDepth:
            return 32;
        case PdmWidthMM:
            return m_width * 254 / 960;
        case PdmHeightMM:
            return m_height * 254 / 960;
        case PdmNumColors:
            return INT_MAX;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return int(devicePixelRatioFScale());
        }
        return 0;
    }

private:
    class Engine : public QPaintEngine
    {
    public:
        explicit Engine(TextRecorder* device) : QPaintEngine(AllFeatures), m_device(device) {}
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState&) override {}
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
        void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
        void drawRects(const QRectF*, int) override {}
        void drawLines(const QLineF*, int) override {}
        void drawPath(const QPainterPath&) override {}
        void drawTextItem(const QPointF& p, const QTextItem& item) override
        {
            const QTransform t = painter()->transform();
            m_device->m_runs.push_back(
                {item.text(), t.map(p), t.m11() * item.width(), item.font()});
        }
        Type type() const override { return User; }

    private:
        TextRecorder* m_device;
    };

    mutable Engine m_engine;
    int m_width;
    int m_height;
    std::vector<Run> m_runs;
};

} // namespace

class GridPrintingTest : public QObject
{
    Q_OBJECT

private slots:
    void rowsSplitIntoPagesWithHeadersRepeated()
    {
        const GridDocument g = tall(200);
        GridPrintOptions options;
        options.title = QStringLiteral("Codes");
        GridPrinter printer(g, options);
        printer.layout(QSizeF(1000, 700));
        // 199 body rows of 22 px under a 24 px header, a title and a footer.
        QVERIFY(printer.pageCount() >= 199 * 22 / 700 + 1);
        QVERIFY(printer.pageCount() <= 199 * 22 / (700 - 120) + 1);
        QCOMPARE(printer.tableScale(), 1.0);
    }

    void wideTableFitsTheWidthOrSplitsIntoBands()
    {
        const GridDocument g = tall(10, 40); // 40 x 64 px = 2560 px
        GridPrintOptions fit;
        GridPrinter fitted(g, fit);
        fitted.layout(QSizeF(1000, 700));
        QCOMPARE(fitted.pageCount(), 1);
        QCOMPARE(fitted.tableScale(), 1000.0 / 2560.0);

        GridPrintOptions bands;
        bands.fitToPageWidth = false; // multi-line grids print at their size
        GridPrinter split(g, bands);
        split.layout(QSizeF(1000, 700));
        QCOMPARE(split.tableScale(), 1.0);
        QCOMPARE(split.pageCount(), 3); // 15 + 15 + 10 columns
    }

    void pageShowsTitleNumberAndDate()
    {
        const GridDocument g = sampleGrid();
        GridPrintOptions options;
        options.title = QStringLiteral("Code frequencies");
        options.date = QDate(2026, 12, 3);
        GridPrinter printer(g, options);
        printer.layout(QSizeF(800, 500));
        QCOMPARE(printer.pageCount(), 1);
        TextRecorder page(800, 500);
        {
            QPainter painter(&page);
            printer.paintPage(&painter, 0);
        }
        // The title, centred at the top, in its own font.
        const TextRecorder::Run* title = page.find(QStringLiteral("Code frequencies"));
        QVERIFY(title);
        QVERIFY(title->at.y() < 30);
        QVERIFY(qAbs(title->at.x() + title->width / 2 - 400) < 2);
        QCOMPARE(title->font.family(), options.titleFont.family());
        QVERIFY(title->font.bold());
        // The page mark at the bottom left, the date (day/month/year) at the bottom right.
        const TextRecorder::Run* mark = page.find(QStringLiteral("1/1"));
        QVERIFY(mark);
        QVERIFY(mark->at.x() < 2);
        QVERIFY(mark->at.y() > 470 && mark->at.y() <= 500);
        const TextRecorder::Run* date = page.find(QStringLiteral("03/12/2026"));
        QVERIFY(date);
        QVERIFY(qAbs(date->at.x() + date->width - 800) < 2);
        QVERIFY(date->at.y() > 470 && date->at.y() <= 500);
        // The cells print as they are shown: a decimal number with two decimals.
        QVERIFY(page.find(QStringLiteral("12.50")));
        QVERIFY(page.find(QStringLiteral("-3.50")));
        QVERIFY(page.find(QStringLiteral("14")));
        // Nothing else is drawn in the title band or the footer.
        for (const TextRecorder::Run& run : page.runs()) {
            if (&run == title || &run == mark || &run == date) {
                continue;
            }
            QVERIFY2(run.at.y() > title->at.y() && run.at.y() < mark->at.y() - 5,
                     qPrintable(run.text));
        }
    }

    void pageMarksCountThePages()
    {
        const GridDocument g = tall(120);
        GridPrintOptions options;
        options.date = QDate(2027, 1, 9);
        GridPrinter printer(g, options);
        printer.layout(QSizeF(800, 500));
        QVERIFY(printer.pageCount() >= 3);
        const QString last = QString::number(printer.pageCount());
        for (int index = 0; index < printer.pageCount(); ++index) {
            TextRecorder page(800, 500);
            {
                QPainter painter(&page);
                printer.paintPage(&painter, index);
            }
            QVERIFY(page.find(QStringLiteral("%1/%2").arg(index + 1).arg(last)));
            QVERIFY(page.find(QStringLiteral("09/01/2027")));
            // The header row is printed again on every page.
            QVERIFY(page.find(QStringLiteral("r0c1")));
        }
    }

    void printsEveryPageToAPdf()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("grid.pdf"));
        const GridDocument g = tall(300);
        GridPrinter printer(g, GridPrintOptions{});
        {
            QPdfWriter pdf(path);
            pdf.setPageOrientation(QPageLayout::Landscape);
            QVERIFY(printer.print(&pdf));
        }
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        // Page objects: "/Type /Page" not followed by "s" (that is the page tree).
        const qsizetype pages = bytes.count("/Type /Page") - bytes.count("/Type /Pages");
        QVERIFY(printer.pageCount() > 1);
        QCOMPARE(int(pages), printer.pageCount());
    }

    void multilineClamp_data()
    {
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("clamped");
        QTest::newRow("151") << 151 << 150;
        QTest::newRow("150") << 150 << 150;
        QTest::newRow("900") << 900 << 150;
        QTest::newRow("15") << 15 << 15;
        QTest::newRow("14") << 14 << 15;
        QTest::newRow("0") << 0 << 15;
        QTest::newRow("60") << 60 << 60;
    }
    void multilineClamp()
    {
        QFETCH(int, height);
        QFETCH(int, clamped);
        QCOMPARE(GridRowSizer::clampMultiline(height), clamped);
    }

    void fittedHeightsWrapOnlyWhenAsked()
    {
        GridDocument g;
        g.setSize(2, 3);
        g.setText(0, 1, QStringLiteral("several words that cannot fit in sixty-four pixels"));
        GridCellFormat big;
        big.fontSize = 30;
        g.setFormat(1, 2, big);
        g.setText(1, 2, QStringLiteral("Big"));
        const std::vector<int> single = GridRowSizer::fittedHeights(g, false);
        const std::vector<int> wrapped = GridRowSizer::fittedHeights(g, true);
        QVERIFY(wrapped[1] > 2 * single[1]);
        QCOMPARE(wrapped[0], single[0]);
        QVERIFY(single[2] > 2 * single[0]); // measured in the cell's own font
        const std::vector<int> multi = GridRowSizer::multilineHeights(g, true);
        QCOMPARE(multi[0], wrapped[0]); // row 0 is not clamped
    }
};

QTEST_MAIN(GridPrintingTest)
#include "GridPrintingTest.moc"
