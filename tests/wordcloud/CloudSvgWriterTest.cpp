// The SVG picture: each distinct glyph written once and shared, words and shadows drawn as the
// bitmap draws them (checked on pixels after drawing the SVG back), clipping and word
// backgrounds.

#include "wordcloud/TprWordCloud.h"

#include <QBuffer>
#include <QPainter>
#include <QRegularExpression>
#include <QSvgRenderer>
#include <QtTest>

using namespace kestrum::wordcloud;

namespace {

QByteArray svgOf(TprWordCloud& cloud)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!cloud.SaveToMetafile(buffer)) {
        return {};
    }
    return buffer.data();
}

QImage drawBack(const QByteArray& svg, QSize size)
{
    QSvgRenderer renderer(svg);
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter p(&image);
    renderer.render(&p);
    p.end();
    return image;
}

// Share of pixels whose colours differ by more than `tolerance` in any channel.
double differingShare(const QImage& a, const QImage& b, int tolerance)
{
    qint64 differing = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            if (qAbs(qRed(p) - qRed(q)) > tolerance || qAbs(qGreen(p) - qGreen(q)) > tolerance ||
                qAbs(qBlue(p) - qBlue(q)) > tolerance) {
                ++differing;
            }
        }
    }
    return double(differing) / double(qint64(a.width()) * a.height());
}

int count(const QByteArray& text, const char* what)
{
    return int(text.count(what));
}

} // namespace

class CloudSvgWriterTest : public QObject
{
    Q_OBJECT

private slots:
    void eachGlyphOnceAndEveryWordOnce()
    {
        TprWordCloud cloud;
        cloud.SetClientSize({500, 300});
        cloud.SetRandomSeed(3);
        // Distinct letters: a, b, n (and the words reuse them).
        for (const char* w : {"banana", "nab", "ban", "abba", "nan"}) {
            cloud.AddWord(QString::fromLatin1(w), 60 - int(qstrlen(w)));
        }
        QVERIFY(cloud.GenerateCloud(true));
        const QByteArray svg = svgOf(cloud);
        QCOMPARE(count(svg, "<path "), 3);
        QCOMPARE(count(svg, "<g id=\"w"), 5);
        // Each word: five shadows and five words refer to the word groups.
        QCOMPARE(count(svg, "xlink:href=\"#w"), 10);
        // Its glyphs: 6 + 3 + 3 + 4 + 3 references.
        QCOMPARE(count(svg, "xlink:href=\"#g"), 19);
        QVERIFY(svg.contains("width=\"500\" height=\"300\" viewBox=\"0 0 500 300\""));

        // Without shadows nothing refers to the words but the words.
        cloud.SetShadow(false);
        QCOMPARE(count(svgOf(cloud), "xlink:href=\"#w"), 5);
    }

    void drawnBackItIsTheBitmap_data()
    {
        QTest::addColumn<bool>("shadow");
        QTest::addColumn<bool>("palette");
        QTest::newRow("gradient, shadows") << true << false;
        QTest::newRow("palette, no shadows") << false << true;
    }
    void drawnBackItIsTheBitmap()
    {
        QFETCH(bool, shadow);
        QFETCH(bool, palette);
        TprWordCloud cloud;
        cloud.SetClientSize({620, 420});
        cloud.SetRandomSeed(9);
        cloud.SetShadow(shadow);
        cloud.SetUsePalette(palette);
        cloud.SetPalette(4);
        const QStringList words =
            QStringLiteral("team remote work meetings colleagues trust home calls "
                           "video office quiet rhythm belonging isolation")
                .split(QLatin1Char(' '));
        for (int i = 0; i < words.size(); ++i) {
            cloud.AddWord(words[i], 150 - 10 * i);
        }
        QVERIFY(cloud.GenerateCloud(true));
        const QImage bitmap = cloud.SaveToBitmap();
        const QImage drawn = drawBack(svgOf(cloud), bitmap.size());
        // Edges are anti-aliased differently; the glyphs, colours and places are the same.
        const double share = differingShare(bitmap, drawn, 48);
        QVERIFY2(share < 0.01, qPrintable(QString::number(share)));
        if (!qEnvironmentVariableIsEmpty("KESTRUM_SVG_DUMP")) {
            drawn.save(qEnvironmentVariable("KESTRUM_SVG_DUMP") + QStringLiteral("/svg.png"));
            bitmap.save(qEnvironmentVariable("KESTRUM_SVG_DUMP") + QStringLiteral("/bitmap.png"));
        }
    }

    void wordBackgroundsAndClips()
    {
        TprWordCloud cloud;
        cloud.SetClientSize({300, 200});
        cloud.SetRandomSeed(1);
        cloud.AddWord(QStringLiteral("Wy"), 40);
        cloud.AddWord(QStringLiteral("ok"), 20);
        QVERIFY(cloud.GenerateCloud(true));
        // The words take the surface's colour at paint time: the surface is filled, no box.
        cloud.SetBackgroundColor(0x00FFFF); // yellow
        QByteArray svg = svgOf(cloud);
        QVERIFY(svg.contains("fill=\"#ffff00\""));
        QCOMPARE(count(svg, "<rect x="), 0);

        // A box shrunk below its ink is clipped to the box.
        TprWord* word = cloud.Word(0);
        CloudRect box = word->BoundsRect();
        box.right = box.left + box.width() / 2;
        word->SetStartingBoundsRect(box);
        svg = svgOf(cloud);
        QVERIFY(svg.contains("<clipPath id=\"c0\">"));
        static const QRegularExpression clipRect(QStringLiteral(
            "<clipPath id=\"c0\"><rect x=\"(-?\\d+)\" y=\"(-?\\d+)\" width=\"(\\d+)\""));
        const auto m = clipRect.match(QString::fromLatin1(svg));
        QVERIFY(m.hasMatch());
        QCOMPARE(m.captured(1).toInt(), box.left);
        QCOMPARE(m.captured(3).toInt(), box.width());
        QVERIFY(svg.contains("clip-path=\"url(#c0)\""));
    }
};

QTEST_MAIN(CloudSvgWriterTest)
#include "CloudSvgWriterTest.moc"
