// The renderer on images: what each kind puts where, the overlays of point charts, the 3D
// effects, and the picture files.

#include "editors/chart/ChartRenderer.h"
#include "ChartSamples.h"
#include "editors/chart/ChartExporter.h"
#include "editors/chart/ChartStream.h"
#include "editors/chart/SeriesPainter.h"

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QImageReader>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

using namespace kestrum;
using namespace kestrum::chart;

namespace {

constexpr QSize kSize{600, 400};

QColor colourOf(common::TColor c)
{
    return common::toQColor(c);
}

// Pixels of exactly `colour` inside `area` of the image.
int countColour(const QImage& image, QColor colour, QRect area = {})
{
    area = area.isNull() ? image.rect() : area.intersected(image.rect());
    const QRgb want = colour.rgb();
    int n = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            n += image.pixel(x, y) == want ? 1 : 0;
        }
    }
    return n;
}

Chart singleBars(std::vector<double> values)
{
    Chart c;
    c.legendVisible = false;
    c.series.push_back(samples::bars(QStringLiteral("Frequencies"), std::move(values)));
    c.series[0].colour = common::clRed;
    return c;
}

Chart twoPointSeries()
{
    Chart c;
    c.legendVisible = false;
    c.series.push_back(samples::points(QStringLiteral("a"), {{-4, -3}, {5, 6}}));
    c.series.push_back(samples::points(QStringLiteral("b"), {{-2, 4}, {3, -5}}));
    c.series[0].colour = common::clGreen;
    c.series[1].colour = common::clGreen;
    return c;
}

} // namespace

class ChartRendererTest : public QObject
{
    Q_OBJECT

private slots:
    void barsGrowWithTheirValues()
    {
        Chart c = singleBars({10, 40});
        QImage image = ChartRenderer::image(c, kSize);
        QCOMPARE(image.size(), kSize);
        QImage probe(kSize, QImage::Format_RGB32);
        QPainter painter(&probe);
        const ChartGeometry g = ChartRenderer::paint(painter, QRectF(QPointF(0, 0), kSize), c);
        painter.end();
        QVERIFY(g.hasAxes);
        // Each bar's column: red from its top down to the zero line, panel colour above.
        const QPointF low = g.toDevice(0, 10);
        const QPointF high = g.toDevice(1, 40);
        image = image.convertToFormat(QImage::Format_RGB32);
        const QColor red = colourOf(common::clRed);
        QCOMPARE(QColor(image.pixel(int(low.x()), int(low.y()) + 3)), red);
        QVERIFY(QColor(image.pixel(int(low.x()), int(low.y()) - 3)) != red);
        QCOMPARE(QColor(image.pixel(int(high.x()), int(high.y()) + 3)), red);
        QVERIFY(high.y() < low.y() - 100); // four times the value, far higher
        const int lowArea = countColour(image, red, QRect(0, 0, int(g.bottomToX(0.5)), 400));
        const int highArea = countColour(image, red, QRect(int(g.bottomToX(0.5)), 0, 300, 400));
        QVERIFY2(highArea > 3 * lowArea,
                 qPrintable(QStringLiteral("%1 %2").arg(lowArea).arg(highArea)));
    }

    void horizontalBarsRunAlongTheBottom()
    {
        Chart c = singleBars({10, 40});
        c.series[0].kind = SeriesKind::HorizBar;
        c.valueScale = {0, 50, 10};
        c.bottomAxis.automatic = false;
        c.bottomAxis.maximum = 50;
        c.bottomAxis.increment = 10;
        c.leftAxis.inverted = true;
        QImage probe(kSize, QImage::Format_RGB32);
        QPainter painter(&probe);
        const ChartGeometry g = ChartRenderer::paint(painter, QRectF(QPointF(0, 0), kSize), c);
        painter.end();
        // Inverted: the first category at the top.
        QVERIFY(g.leftToY(0) < g.leftToY(1));
        const QPointF end = g.toDevice(40, 1);
        const QColor red = colourOf(common::clRed);
        QCOMPARE(QColor(probe.pixel(int(end.x()) - 3, int(end.y()))), red);
        QVERIFY(QColor(probe.pixel(int(end.x()) + 3, int(end.y()))) != red);
    }

    void pieSlicesShareTheCircle()
    {
        Chart c;
        c.legendVisible = false;
        c.series.push_back(samples::bars(QStringLiteral("p"), {1, 3}, SeriesKind::Pie));
        c.series[0].colourEachPoint = true;
        c.series[0].points[0].colour = common::clRed;
        c.series[0].points[1].colour = common::clBlue;
        const QImage image = ChartRenderer::image(c, kSize).convertToFormat(QImage::Format_RGB32);
        const int red = countColour(image, colourOf(common::clRed));
        const int blue = countColour(image, colourOf(common::clBlue));
        QVERIFY(red > 1000);
        const double ratio = double(blue) / red;
        QVERIFY2(ratio > 2.7 && ratio < 3.3, qPrintable(QString::number(ratio)));
    }

    void pieMarksUseThePercentFormat()
    {
        QCOMPARE(SeriesPainter::formatPercent(25, QStringLiteral(" ##0.0%")),
                 QStringLiteral(" 25.0%"));
        QCOMPARE(SeriesPainter::formatPercent(12.345, QStringLiteral("##0.##%")),
                 QStringLiteral("12.35%"));
        QCOMPARE(SeriesPainter::formatPercent(50, QStringLiteral("##0.##%")),
                 QStringLiteral("50%"));
        QCOMPARE(SeriesPainter::formatPercent(7.5, QStringLiteral("##0.##%")),
                 QStringLiteral("7.5%"));
    }

    void originCrossOnlyForTwoPointSeries()
    {
        Chart c = twoPointSeries();
        QVERIFY(ChartRenderer::hasOriginCross(c));
        QImage image(kSize, QImage::Format_RGB32);
        QPainter painter(&image);
        const ChartGeometry g = ChartRenderer::paint(painter, QRectF(QPointF(0, 0), kSize), c);
        painter.end();
        const QColor red(255, 0, 0);
        const int x = int(g.bottomToX(0));
        const int y = int(g.leftToY(0));
        // Red runs along the whole vertical line at x = 0 and the horizontal one at y = 0.
        QVERIFY(countColour(image, red, QRect(x - 1, int(g.plot.top()), 3, int(g.plot.height()))) >
                int(g.plot.height()) / 2);
        QVERIFY(countColour(image, red, QRect(int(g.plot.left()), y - 1, int(g.plot.width()), 3)) >
                int(g.plot.width()) / 2);

        c.series[1].active = false;
        QVERIFY(!ChartRenderer::hasOriginCross(c));
        const QImage without = ChartRenderer::image(c, kSize).convertToFormat(QImage::Format_RGB32);
        QCOMPARE(countColour(without, red), 0);
        c.series[1].active = true;
        c.series.push_back(samples::points(QStringLiteral("c"), {{1, 1}}));
        QVERIFY(!ChartRenderer::hasOriginCross(c));
    }

    void fittedCurveFollowsTheChartInfo()
    {
        Chart c = twoPointSeries();
        c.series.pop_back(); // no origin cross
        RenderOptions options;
        // y = 1 + 0.5 x, drawn blue over the plot.
        options.chartInfo = QStringLiteral("S\tx\tFit\t12") + QChar(30) + QStringLiteral("1") +
                            QChar(30) + QStringLiteral("0.5") + QString(QChar(30)) +
                            QStringLiteral("0") + QChar(30) + QStringLiteral("0") + QChar(30) +
                            QStringLiteral("0") + QChar(30) + QStringLiteral("0") + QChar(30) +
                            QStringLiteral("0");
        QImage image(kSize, QImage::Format_RGB32);
        QPainter painter(&image);
        const ChartGeometry g =
            ChartRenderer::paint(painter, QRectF(QPointF(0, 0), kSize), c, options);
        painter.end();
        const QColor blue(0, 0, 255);
        const QPointF at = g.toDevice(2, 2); // on the line
        QVERIFY(countColour(image, blue, QRect(int(at.x()) - 2, int(at.y()) - 2, 5, 5)) > 0);
        const QPointF off = g.toDevice(2, -2);
        QCOMPARE(countColour(image, blue, QRect(int(off.x()) - 2, int(off.y()) - 2, 5, 5)), 0);
        options.chartInfo = QStringLiteral("None");
        QCOMPARE(countColour(
                     ChartRenderer::image(c, kSize, options).convertToFormat(QImage::Format_RGB32),
                     blue),
                 0);
    }

    void threeDViewAddsDepth()
    {
        Chart c = singleBars({10, 40});
        QImage probe(kSize, QImage::Format_RGB32);
        QPainter painter(&probe);
        const ChartGeometry flat = ChartRenderer::paint(painter, QRectF(QPointF(0, 0), kSize), c);
        c.view3D.enabled = true;
        const ChartGeometry deep = ChartRenderer::paint(painter, QRectF(QPointF(0, 0), kSize), c);
        painter.end();
        QVERIFY(flat.depth.isNull());
        QVERIFY(deep.depth.x() > 5 && deep.depth.y() < -5);
        // The bar's top face: lighter red above the front face.
        const QPointF top = deep.toDevice(1, 40) + deep.depth / 2;
        QCOMPARE(probe.pixel(top.toPoint()), colourOf(common::clRed).lighter(125).rgb());
    }

    void threeDPointsTurnWithTheRotation()
    {
        Chart c;
        c.legendVisible = false;
        ChartSeries s = samples::points(QStringLiteral("cloud"), {{0, 0}, {10, 3}, {5, 8}},
                                        SeriesKind::Point3D);
        s.colour = common::clRed;
        s.pointerWidth = 6;
        s.pointerHeight = 6;
        c.series.push_back(s);
        const QImage a = ChartRenderer::image(c, kSize);
        c.setRotation(c.view3D.rotation + 60);
        const QImage b = ChartRenderer::image(c, kSize);
        QVERIFY(a != b);
        const QImage rgbA = a.convertToFormat(QImage::Format_RGB32);
        QVERIFY(countColour(rgbA, colourOf(common::clRed)) > 3 * 60);
    }

    void everyPictureFormatIsWritten_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("start");
        QTest::newRow("png") << "c.png" << QByteArray("\x89PNG");
        QTest::newRow("jpg") << "c.JPG" << QByteArray("\xFF\xD8\xFF");
        QTest::newRow("bmp") << "c.bmp" << QByteArray("BM");
        QTest::newRow("svg") << "c.svg" << QByteArray("<?xml");
        QTest::newRow("emf as svg") << "c.emf" << QByteArray("<?xml");
        QTest::newRow("pdf") << "c.pdf" << QByteArray("%PDF");
        QTest::newRow("native") << "c.wsx" << QByteArray("KCHT");
    }
    void everyPictureFormatIsWritten()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, start);
        QTemporaryDir dir;
        const QString path = dir.filePath(name);
        const Chart c = samples::grouped();
        const auto format = ChartExporter::formatForSuffix(QFileInfo(path).suffix());
        QVERIFY(format);
        const Status written = ChartExporter::write(c, path, *format, {640, 480});
        QVERIFY2(written, qPrintable(written.error()));
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QByteArray bytes = f.readAll();
        QVERIFY(bytes.startsWith(start));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files).size(), 1); // no temporary left
        if (*format == ChartFileFormat::Png || *format == ChartFileFormat::Bmp) {
            QImage back;
            QVERIFY(back.loadFromData(bytes));
            QCOMPARE(back.size(), QSize(640, 480));
            QVERIFY(!back.hasAlphaChannel());
        }
        if (*format == ChartFileFormat::Svg) {
            QVERIFY(bytes.contains("Managers")); // the legend's text
        }
        if (*format == ChartFileFormat::Native) {
            QVERIFY(ChartExporter::readFile(path));
        }
    }

    void unreadableFilesAreReported()
    {
        QTemporaryDir dir;
        QVERIFY(!ChartExporter::readFile(dir.filePath(QStringLiteral("missing.wsx"))));
        QFile f(dir.filePath(QStringLiteral("bad.wsx")));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("TPFO this is some other chart program's file");
        f.close();
        const Result<Chart> r = ChartExporter::readFile(f.fileName());
        QVERIFY(!r);
        QVERIFY2(r.error().contains(QLatin1String("not a chart stream")), qPrintable(r.error()));
        QVERIFY(!ChartExporter::write(Chart(), dir.filePath(QStringLiteral("no/such/dir/c.png")),
                                      ChartFileFormat::Png));
    }

    void degenerateChartsDraw()
    {
        // Nothing to show, one point, tiny areas, values far apart: drawn without trouble.
        Chart c;
        QVERIFY(!ChartRenderer::image(c, {10, 10}).isNull());
        c.series.push_back(samples::bars(QString(), {1e300, -1e300}));
        c.dataTableVisible = true;
        c.view3D.enabled = true;
        QVERIFY(!ChartRenderer::image(c, kSize).isNull());
        c.series[0].kind = SeriesKind::Pie;
        c.series[0].points[0].y = 0;
        c.series[0].points[1].y = 0;
        QVERIFY(!ChartRenderer::image(c, kSize).isNull());
        c.series[0].kind = SeriesKind::Line;
        c.series[0].points.resize(1);
        QVERIFY(!ChartRenderer::image(c, {30, 20}).isNull());
    }
};

QTEST_MAIN(ChartRendererTest)
#include "ChartRendererTest.moc"
