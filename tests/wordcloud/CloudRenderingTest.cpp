// Colouring and painting, checked on real pixels, and the exports.

#include "wordcloud/CloudPalettes.h"
#include "wordcloud/TprWordCloud.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImageReader>
#include <QMimeData>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QtTest>

using namespace kestrum::wordcloud;
using kestrum::common::TColor;

namespace {

constexpr TColor kRed = 0x0000FF;

// Pixels of exactly `colour` inside `box`.
int countPixels(const QImage& image, const CloudRect& box, const QColor& colour)
{
    int n = 0;
    const QRgb wanted = colour.rgb();
    for (int y = std::max(0, box.top); y < std::min(image.height(), box.bottom); ++y) {
        for (int x = std::max(0, box.left); x < std::min(image.width(), box.right); ++x) {
            n += (image.pixel(x, y) | 0xFF000000u) == (wanted | 0xFF000000u);
        }
    }
    return n;
}

int countOtherThan(const QImage& image, const CloudRect& box, const QColor& colour)
{
    return box.area() - countPixels(image, box, colour);
}

void layOutWords(TprWordCloud& cloud, const QStringList& words, QSize client = QSize(620, 420))
{
    cloud.SetClientSize(client);
    cloud.SetRandomSeed(5);
    for (int i = 0; i < words.size(); ++i) {
        cloud.AddWord(words[i], 100 - 9 * i);
    }
    QVERIFY(cloud.GenerateCloud(true));
}

const QStringList kWords{
    QStringLiteral("team"),     QStringLiteral("remote"), QStringLiteral("trust"),
    QStringLiteral("meetings"), QStringLiteral("calls"),  QStringLiteral("office"),
    QStringLiteral("home"),     QStringLiteral("chat"),   QStringLiteral("email")};

} // namespace

class CloudRenderingTest : public QObject
{
    Q_OBJECT

private slots:
    void blendRoundsHalfToEven();
    void gradientTable();
    void gradientIndexFollowsWeight();
    void paletteColoursRepeat();
    void customAndUnknownPalettes();
    void backgroundFillsTheSurface();
    void heaviestWordIsPaintedInTheEndColour();
    void shadowPresentOrAbsent();
    void onlyVisibleWordsArePainted();
    void nonLatinWordsAreDrawn_data();
    void nonLatinWordsAreDrawn();
    void svgHasTheGlyphsAsPaths();
    void pictureFiles_data();
    void pictureFiles();
    void clipboard();
};

void CloudRenderingTest::blendRoundsHalfToEven()
{
    QCOMPARE(TprGradient::Blend(0x000000, 0x010101, 50), 0x000000); // 0.5 -> 0
    QCOMPARE(TprGradient::Blend(0x000000, 0x030303, 50), 0x020202); // 1.5 -> 2
    QCOMPARE(TprGradient::Blend(0x0000FF, 0xFF0000, 0), 0x0000FF);
    QCOMPARE(TprGradient::Blend(0x0000FF, 0xFF0000, 100), 0xFF0000);
    QCOMPARE(TprGradient::Blend(0x808080, 0x000000, 1), 0x7F7F7F); // 126.72
}

void CloudRenderingTest::gradientTable()
{
    TprGradient g;
    g.SetStartColor(0x0000FF);
    g.SetEndColor(0xFF0000);
    g.GenerateColors();
    QCOMPARE(g.GetColor(100), 0xFF0000);
    QCOMPARE(g.GetColor(50), TprGradient::Blend(0x0000FF, 0xFF0000, 50));
    QCOMPARE(g.GetColor(0), g.GetColor(1)); // 0 is read as 1
    QCOMPARE(g.GetColor(250), g.GetColor(100));

    // With a middle colour the two halves run at double speed.
    g.SetMiddleColor(0x00FF00);
    g.GenerateColors();
    QCOMPARE(g.GetColor(50), 0x00FF00);
    QCOMPARE(g.GetColor(25), TprGradient::Blend(0x0000FF, 0x00FF00, 50));
    QCOMPARE(g.GetColor(75), TprGradient::Blend(0x00FF00, 0xFF0000, 50));
    QCOMPARE(g.GetColor(100), 0xFF0000);

    // System colours are resolved to plain RGB first.
    TprGradient system;
    system.SetStartColor(kestrum::common::clWindowText);
    system.SetEndColor(kestrum::common::clWindowText);
    system.GenerateColors();
    QCOMPARE(system.GetColor(40),
             kestrum::common::fromQColor(QGuiApplication::palette().color(QPalette::Text)));
}

void CloudRenderingTest::gradientIndexFollowsWeight()
{
    // Weights 1, 50 and 100 with the default grey-to-black gradient: indexes 1 (0 read as 1),
    // round(49 / 99 * 100) = 49 and 100.
    TprWordCloud cloud;
    cloud.AddWord(QStringLiteral("light"), 1);
    cloud.AddWord(QStringLiteral("middle"), 50);
    cloud.AddWord(QStringLiteral("heavy"), 100);
    cloud.AssignColors();
    QCOMPARE(cloud.Word(0)->TextColor(), 0x7F7F7F);
    QCOMPARE(cloud.Word(1)->TextColor(), TprGradient::Blend(0x808080, 0, 49));
    QCOMPARE(cloud.Word(1)->TextColor(), 0x414141);
    QCOMPARE(cloud.Word(2)->TextColor(), 0x000000);
    QCOMPARE(cloud.Word(2)->Font().color, 0x000000);

    // Equal weights all take the end colour.
    TprWordCloud equal;
    equal.Gradient().SetEndColor(kRed);
    equal.AddWord(QStringLiteral("a"), 5);
    equal.AddWord(QStringLiteral("b"), 5);
    equal.AssignColors();
    QCOMPARE(equal.Word(0)->TextColor(), kRed);
    QCOMPARE(equal.Word(1)->TextColor(), kRed);
}

void CloudRenderingTest::paletteColoursRepeat()
{
    // Palette 15 has four colours: with nine words, words 4 and 8 share word 0's colour.
    TprWordCloud cloud;
    for (int i = 0; i < 9; ++i) {
        cloud.AddWord(QStringLiteral("w%1").arg(i), 20 - i);
    }
    cloud.SetUsePalette(true);
    cloud.SetPalette(15);
    cloud.AssignColors();
    QCOMPARE(CloudPalettes::name(15), QStringLiteral("BlackOnBlack"));
    QCOMPARE(cloud.Word(0)->TextColor(), 0x5AE6C8);
    QCOMPARE(cloud.Word(4)->TextColor(), cloud.Word(0)->TextColor());
    QCOMPARE(cloud.Word(8)->TextColor(), cloud.Word(0)->TextColor());
    QCOMPARE(cloud.Word(3)->TextColor(), 0x0FA0E6);
    QVERIFY(cloud.Word(1)->TextColor() != cloud.Word(0)->TextColor());
}

void CloudRenderingTest::customAndUnknownPalettes()
{
    QCOMPARE(CloudPalettes::names().size(), 21);
    QCOMPARE(CloudPalettes::names().first(), QStringLiteral("Excel"));
    QCOMPARE(CloudPalettes::names().last(), QStringLiteral("Seewash"));
    QCOMPARE(CloudPalettes::colours(7).size(), 25);

    TprWordCloud cloud;
    for (int i = 0; i < 3; ++i) {
        cloud.AddWord(QStringLiteral("w%1").arg(i), 10 - i);
    }
    cloud.SetUsePalette(true);
    cloud.SetPalette(21);
    cloud.SetCustomColor({0x111111, 0x222222});
    cloud.AssignColors();
    QCOMPARE(cloud.Word(0)->TextColor(), 0x111111);
    QCOMPARE(cloud.Word(1)->TextColor(), 0x222222);
    QCOMPARE(cloud.Word(2)->TextColor(), 0x111111);

    // No custom colours, or an unknown palette: palette 0.
    cloud.SetCustomColor({});
    cloud.AssignColors();
    QCOMPARE(cloud.Word(1)->TextColor(), 0x663399);
    cloud.SetPalette(99);
    cloud.AssignColors();
    QCOMPARE(cloud.Word(0)->TextColor(), 0xFF9999);
}

void CloudRenderingTest::backgroundFillsTheSurface()
{
    TprWordCloud cloud;
    cloud.SetBackgroundColor(0x00FFFF); // yellow
    layOutWords(cloud, kWords);
    const QImage image = cloud.SaveToBitmap();
    QCOMPARE(image.size(), QSize(620, 420));
    QCOMPARE(image.pixelColor(0, 0), QColor(255, 255, 0));
    QCOMPARE(image.pixelColor(619, 419), QColor(255, 255, 0));
    QCOMPARE(cloud.Word(0)->BackgroundColor(), 0x00FFFF);

    // The parent's brush colour replaces it while ParentColor is set.
    cloud.SetParentColor(true);
    cloud.SetParentBrushColor(0x00FF00);
    QCOMPARE(cloud.SaveToBitmap().pixelColor(5, 5), QColor(0, 255, 0));
    QCOMPARE(cloud.Word(0)->BackgroundColor(), 0x00FF00);
}

void CloudRenderingTest::heaviestWordIsPaintedInTheEndColour()
{
    TprWordCloud cloud;
    cloud.Gradient().SetStartColor(0xC0C0C0);
    cloud.Gradient().SetEndColor(kRed);
    layOutWords(cloud, kWords);
    const QImage image = cloud.SaveToBitmap();
    const CloudRect heavy = cloud.Word(0)->BoundsRect();
    // A solid share of the heaviest word's box is exactly the end colour...
    QVERIFY(countPixels(image, heavy, Qt::red) > heavy.area() / 10);
    // ...and the lightest word has none of it.
    const CloudRect light = cloud.Word(cloud.WordCount() - 1)->BoundsRect();
    QCOMPARE(countPixels(image, light, Qt::red), 0);
    QVERIFY(countOtherThan(image, light, Qt::white) > 0);
    // Outside every box only the background shows.
    QImage masked = image;
    {
        QPainter p(&masked);
        for (const auto& word : cloud.Words()) {
            p.fillRect(word->BoundsRect().toQRect(), Qt::white);
        }
    }
    QCOMPARE(countOtherThan(masked, {0, 0, 620, 420}, Qt::white), 0);
}

void CloudRenderingTest::shadowPresentOrAbsent()
{
    // Red glyphs on white: wherever they are anti-aliased, red stays above green and blue, so a
    // grey (neutral, not white) pixel can only belong to the shadow.
    const QColor shadow = TprWord::ShadowColorFor(Qt::white);
    QCOMPARE(shadow.red(), shadow.green());
    QCOMPARE(shadow.green(), shadow.blue());
    QVERIFY(shadow.red() < 230);
    auto greyPixels = [](const QImage& image, const CloudRect& box) {
        int n = 0;
        for (int y = box.top; y < box.bottom; ++y) {
            for (int x = box.left; x < box.right; ++x) {
                const QColor c = image.pixelColor(x, y);
                n += c.red() == c.green() && c.green() == c.blue() && c.red() < 250;
            }
        }
        return n;
    };
    TprWordCloud cloud;
    cloud.Gradient().SetStartColor(kRed);
    cloud.Gradient().SetEndColor(kRed);
    layOutWords(cloud, kWords);
    QVERIFY(cloud.Shadow());
    const CloudRect heavy = cloud.Word(0)->BoundsRect();
    const QImage with = cloud.SaveToBitmap();
    QVERIFY2(greyPixels(with, heavy) > heavy.area() / 50,
             qPrintable(QString::number(greyPixels(with, heavy))));
    QVERIFY(countPixels(with, heavy, shadow) > 0);

    cloud.SetShadow(false);
    QVERIFY(!cloud.Word(0)->Shadow());
    const QImage without = cloud.SaveToBitmap();
    QCOMPARE(greyPixels(without, heavy), 0);
    QVERIFY(countPixels(without, heavy, Qt::red) > heavy.area() / 10);
}

void CloudRenderingTest::onlyVisibleWordsArePainted()
{
    TprWordCloud cloud;
    layOutWords(cloud, kWords);
    TprWord* word = cloud.Word(2);
    QVERIFY(countOtherThan(cloud.SaveToBitmap(), word->BoundsRect(), Qt::white) > 0);
    word->SetVisible(false);
    QCOMPARE(countOtherThan(cloud.SaveToBitmap(), word->BoundsRect(), Qt::white), 0);
}

void CloudRenderingTest::nonLatinWordsAreDrawn_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("Cyrillic") << QStringLiteral("обучение");
    QTest::newRow("Greek") << QStringLiteral("συνεργασία");
    QTest::newRow("Arabic") << QStringLiteral("العمل عن بعد");
    QTest::newRow("Hebrew") << QStringLiteral("עבודה");
    QTest::newRow("accents and ligatures") << QStringLiteral("Zusammenarbeit ﬁnale œuvre");
}

void CloudRenderingTest::nonLatinWordsAreDrawn()
{
    QFETCH(QString, text);
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(620, 420));
    cloud.SetRandomSeed(1);
    cloud.AddWord(text, 80);
    cloud.AddWord(QStringLiteral("team"), 20);
    QVERIFY(cloud.GenerateCloud(true));
    const TprWord* word = cloud.Word(0);
    QCOMPARE(word->Text(), text);
    const QRectF ink = word->Outline().boundingRect();
    QVERIFY(ink.width() > word->BoundsRect().width() / 2);
    QVERIFY(countOtherThan(cloud.SaveToBitmap(), word->BoundsRect(), Qt::white) >
            word->BoundsRect().area() / 20);
}

void CloudRenderingTest::svgHasTheGlyphsAsPaths()
{
    TprWordCloud cloud;
    cloud.Gradient().SetEndColor(kRed);
    layOutWords(cloud, kWords);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(cloud.SaveToMetafile(buffer));
    const QByteArray svg = buffer.data();
    QVERIFY(svg.contains("<path"));
    QVERIFY(!svg.contains("<text"));

    // Drawn back, the heaviest word is red where the bitmap has it red.
    QSvgRenderer renderer(svg);
    QVERIFY(renderer.isValid());
    QCOMPARE(renderer.defaultSize(), QSize(620, 420));
    QImage drawn(620, 420, QImage::Format_RGB32);
    drawn.fill(Qt::black);
    QPainter p(&drawn);
    renderer.render(&p);
    p.end();
    const CloudRect heavy = cloud.Word(0)->BoundsRect();
    const int svgRed = countPixels(drawn, heavy, Qt::red);
    const int bitmapRed = countPixels(cloud.SaveToBitmap(), heavy, Qt::red);
    QVERIFY2(qAbs(svgRed - bitmapRed) < bitmapRed / 10,
             qPrintable(QStringLiteral("%1 %2").arg(svgRed).arg(bitmapRed)));
    QCOMPARE(drawn.pixelColor(1, 1), QColor(Qt::white));
}

void CloudRenderingTest::pictureFiles_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("readAs");
    QTest::newRow("png") << QStringLiteral("png") << QByteArray("png");
    QTest::newRow("bmp") << QStringLiteral("bmp") << QByteArray("bmp");
    QTest::newRow("jpg") << QStringLiteral("jpg") << QByteArray("jpeg");
    QTest::newRow("svg") << QStringLiteral("svg") << QByteArray("svg");
}

void CloudRenderingTest::pictureFiles()
{
    QFETCH(QString, format);
    QFETCH(QByteArray, readAs);
    TprWordCloud cloud;
    layOutWords(cloud, kWords);
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("cloud.") + format);
    const kestrum::Status saved = cloud.SaveToPictureFile(file, format);
    QVERIFY2(saved, qPrintable(saved.error()));
    QImageReader reader(file);
    QCOMPARE(reader.format(), readAs);
    const QImage image = reader.read();
    QCOMPARE(image.size(), QSize(620, 420));
    QVERIFY(!image.hasAlphaChannel() || format == QLatin1String("svg"));

    const kestrum::Status gif =
        cloud.SaveToPictureFile(dir.filePath(QStringLiteral("x.gif")), QStringLiteral("gif"));
    QVERIFY(!gif);
    QVERIFY(gif.error().contains(QStringLiteral("unknown picture format")));
    QVERIFY(!cloud.SaveToPictureFile(dir.filePath(QStringLiteral("missing/x.png")),
                                     QStringLiteral("png")));
}

void CloudRenderingTest::clipboard()
{
    TprWordCloud cloud;
    layOutWords(cloud, kWords);
    cloud.CopyToClipboardAsBitmap();
    QCOMPARE(QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32),
             cloud.SaveToBitmap());
    cloud.CopyToClipboardAsMetafile();
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    QVERIFY(mime && mime->hasFormat(QStringLiteral("image/svg+xml")));
    QVERIFY(QSvgRenderer(mime->data(QStringLiteral("image/svg+xml"))).isValid());
}

QTEST_MAIN(CloudRenderingTest)
#include "CloudRenderingTest.moc"
