// The cloud document: writing, reading back, the load fit, and refusing or clamping bad input.

#include "wordcloud/CloudDocument.h"
#include "wordcloud/TprWordCloud.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

using kestrum::Status;
using namespace kestrum::wordcloud;

namespace {

void fillAndLayOut(TprWordCloud& cloud, QSize client = QSize(620, 420))
{
    cloud.SetClientSize(client);
    cloud.SetRandomSeed(11);
    const QStringList words{QStringLiteral("team"),      QStringLiteral("remote"),
                            QStringLiteral("trust"),     QStringLiteral("meetings"),
                            QStringLiteral("isolation"), QStringLiteral("обучение"),
                            QStringLiteral("a&b <c>"),   QStringLiteral("\"quoted\"")};
    for (int i = 0; i < words.size(); ++i) {
        cloud.AddWord(words[i], 90 - 10 * i);
    }
    QVERIFY(cloud.GenerateCloud(true));
}

QByteArray save(const TprWordCloud& cloud)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    cloud.SaveToStream(buffer);
    return buffer.data();
}

Status load(TprWordCloud& cloud, const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return cloud.LoadFromStream(buffer);
}

QByteArray document(const QByteArray& body, const QByteArray& version = "1.0")
{
    return "<?xml version=\"1.0\"?><WordCloud version=\"" + version + "\">" + body + "</WordCloud>";
}

QByteArray word(const QByteArray& text, const QByteArray& weight, const QByteArray& size,
                const QByteArray& bounds)
{
    return "<Word><Text>" + text + "</Text><TextColor>255</TextColor><Weight>" + weight +
           "</Weight><FontSize>" + size + "</FontSize><StartingBounds>" + bounds +
           "</StartingBounds></Word>";
}

} // namespace

class CloudDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void roundTripKeepsEverything();
    void elementsComeInTheirOrder();
    void paletteCloudHasNoGradient();
    void missingElementsKeepTheOptions();
    void readAsStored();
    void fontTextIsSplitAtCommas();
    void loadFitScalesIntoTheCurrentArea_data();
    void loadFitScalesIntoTheCurrentArea();
    void onlyThePlacedPrefixIsShown();
    void refusedDocuments_data();
    void refusedDocuments();
    void clampedValues_data();
    void clampedValues();
    void hugeWordCountIsBounded();
    void damagedDocumentsNeverCrash();
};

void CloudDocumentTest::roundTripKeepsEverything()
{
    TprWordCloud cloud;
    fillAndLayOut(cloud);
    // A font of its own, laid out again so that the words carry it.
    CloudFont font = cloud.Font();
    font.name = QStringLiteral("DejaVu Serif");
    font.style = CloudFont::Bold | CloudFont::Italic;
    font.color = 0x123456;
    cloud.SetFont(font);
    QVERIFY(cloud.GenerateCloud(true));
    cloud.SetBackgroundColor(0x00F0E0D0);
    cloud.SetShadow(false);
    cloud.SetCoverage(0.45f);
    cloud.Gradient().SetStartColor(0x0000FF);
    cloud.Gradient().SetMiddleColor(0x00FF00);
    cloud.Gradient().SetEndColor(0xFF0000);
    cloud.AssignColors();
    const QByteArray bytes = save(cloud);

    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("nuage é.xml"));
    QVERIFY(cloud.SaveToFile(file));

    TprWordCloud loaded;
    loaded.SetClientSize(QSize(620, 420));
    const Status read = loaded.LoadFromFile(file);
    QVERIFY2(read, qPrintable(read.error()));
    QVERIFY(loaded.LoadWarnings().isEmpty());
    QCOMPARE(loaded.BackgroundColor(), 0x00F0E0D0);
    QCOMPARE(loaded.Shadow(), false);
    QCOMPARE(loaded.Coverage(), 0.45f);
    QCOMPARE(loaded.UsePalette(), false);
    QCOMPARE(loaded.Gradient().StartColor(), 0x0000FF);
    QCOMPARE(loaded.Gradient().MiddleColor(), 0x00FF00);
    QCOMPARE(loaded.Gradient().EndColor(), 0xFF0000);
    QCOMPARE(loaded.Font(), font);
    QCOMPARE(loaded.StartingCanvasRect(), cloud.StartingCanvasRect());
    QCOMPARE(loaded.WordCount(), cloud.WordCount());
    for (int i = 0; i < cloud.WordCount(); ++i) {
        const TprWord* a = cloud.Word(i);
        const TprWord* b = loaded.Word(i);
        QCOMPARE(b->Text(), a->Text());
        QCOMPARE(b->Weight(), a->Weight());
        QCOMPARE(b->FontSize(), a->FontSize());
        QCOMPARE(b->TextColor(), a->TextColor());
        QCOMPARE(b->BoundsRect(), a->BoundsRect());
        QCOMPARE(b->Visible(), true);
        QCOMPARE(b->OutlineScale(), 1.0);
        QCOMPARE(b->Shadow(), false);
    }
    QCOMPARE(loaded.CountVisibleWords(), cloud.WordCount());
    // And it writes the same document again.
    QCOMPARE(save(loaded), bytes);
    // Same pixels as the cloud it came from.
    QCOMPARE(loaded.SaveToBitmap(), cloud.SaveToBitmap());
}

void CloudDocumentTest::elementsComeInTheirOrder()
{
    TprWordCloud cloud;
    fillAndLayOut(cloud);
    // Each element's path and text, in document order.
    QStringList elements;
    QXmlStreamReader xml(save(cloud));
    QStringList path;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            path << xml.name().toString();
            if (path.size() == 1) {
                QCOMPARE(xml.attributes().value(QStringLiteral("version")), QStringLiteral("1.0"));
            }
        } else if (xml.isEndElement()) {
            path.removeLast();
        } else if (xml.isCharacters() && !xml.isWhitespace()) {
            elements << path.join(QLatin1Char('/')) + QLatin1Char('=') + xml.text().toString();
        }
    }
    QVERIFY(!xml.hasError());
    const CloudRect b = cloud.Word(0)->StartingBoundsRect();
    const QStringList expectedStart{
        QStringLiteral("WordCloud/BackgroundColor=16777215"),
        QStringLiteral("WordCloud/Coverage=0.6"),
        QStringLiteral("WordCloud/Shadow=true"),
        QStringLiteral("WordCloud/Gradient/StartColor=8421504"),
        QStringLiteral("WordCloud/Gradient/MiddleColor=536870911"),
        QStringLiteral("WordCloud/Gradient/EndColor=0"),
        QStringLiteral("WordCloud/Font=Arial,1,0,10,0"),
        QStringLiteral("WordCloud/StartingBounds=10;10;610;410"),
        QStringLiteral("WordCloud/Words/Word/Text=team"),
        QStringLiteral("WordCloud/Words/Word/TextColor=%1").arg(cloud.Word(0)->TextColor()),
        QStringLiteral("WordCloud/Words/Word/Weight=90"),
        QStringLiteral("WordCloud/Words/Word/FontSize=%1").arg(cloud.Word(0)->FontSize()),
        QStringLiteral("WordCloud/Words/Word/StartingBounds=%1;%2;%3;%4")
            .arg(b.left)
            .arg(b.top)
            .arg(b.right)
            .arg(b.bottom),
        QStringLiteral("WordCloud/Words/Word/Text=remote"),
    };
    QCOMPARE(elements.mid(0, expectedStart.size()), expectedStart);
    QCOMPARE(elements.size(), 8 + 5 * cloud.WordCount());
}

void CloudDocumentTest::paletteCloudHasNoGradient()
{
    TprWordCloud cloud;
    fillAndLayOut(cloud);
    cloud.SetUsePalette(true);
    cloud.SetPalette(7);
    const QByteArray bytes = save(cloud);
    QVERIFY(!bytes.contains("<Gradient>"));
    QVERIFY(bytes.contains("<Palette>7</Palette>"));

    TprWordCloud loaded;
    QVERIFY(!loaded.UsePalette());
    QVERIFY(load(loaded, bytes));
    QVERIFY(loaded.UsePalette());
    QCOMPARE(loaded.Palette(), quint8(7));

    // A gradient document switches the palette off again.
    cloud.SetUsePalette(false);
    QVERIFY(load(loaded, save(cloud)));
    QVERIFY(!loaded.UsePalette());
}

void CloudDocumentTest::missingElementsKeepTheOptions()
{
    TprWordCloud cloud;
    cloud.SetBackgroundColor(0x00AABBCC);
    cloud.SetCoverage(0.3f);
    cloud.SetShadow(false);
    cloud.Gradient().SetEndColor(0x0000FF);
    QVERIFY(load(cloud, document("<Gradient><StartColor>65280</StartColor></Gradient>")));
    QCOMPARE(cloud.BackgroundColor(), 0x00AABBCC);
    QCOMPARE(cloud.Coverage(), 0.3f);
    QCOMPARE(cloud.Shadow(), false);
    QCOMPARE(cloud.Gradient().StartColor(), 0x00FF00);
    QCOMPARE(cloud.Gradient().EndColor(), 0x0000FF);
    QCOMPARE(cloud.WordCount(), 0);
}

void CloudDocumentTest::readAsStored()
{
    TprWordCloud cloud;
    // "Coverage" as read, also outside the range the options dialog offers.
    for (const float coverage : {1.5f, 0.005f, 0.0f, -0.25f, 10.0f}) {
        cloud.SetCoverage(0.6f);
        QVERIFY(load(cloud, document("<Coverage>" + QByteArray::number(coverage) + "</Coverage>")));
        QCOMPARE(cloud.Coverage(), coverage);
        QVERIFY(cloud.LoadWarnings().isEmpty());
    }
    // With a "Palette" the "Gradient" is not read, wherever it stands.
    cloud.Gradient().SetStartColor(0x111111);
    cloud.Gradient().SetEndColor(0x222222);
    QVERIFY(load(cloud, document("<Gradient><StartColor>255</StartColor><EndColor>65280"
                                 "</EndColor></Gradient><Palette>3</Palette>")));
    QVERIFY(cloud.UsePalette());
    QCOMPARE(cloud.Palette(), quint8(3));
    QCOMPARE(cloud.Gradient().StartColor(), 0x111111);
    QCOMPARE(cloud.Gradient().EndColor(), 0x222222);
    // Without one it is.
    QVERIFY(load(cloud, document("<Gradient><StartColor>255</StartColor></Gradient>")));
    QVERIFY(!cloud.UsePalette());
    QCOMPARE(cloud.Gradient().StartColor(), 0x0000FF);
    QCOMPARE(cloud.Gradient().EndColor(), 0x222222);
    // The root's name is not checked; its version is.
    QVERIFY(load(cloud, "<Cloud version=\"1.0\"><Shadow>false</Shadow><Words>" +
                            word("team", "5", "5", "0;0;9;9") + "</Words></Cloud>"));
    QCOMPARE(cloud.Shadow(), false);
    QCOMPARE(cloud.WordCount(), 1);
    QVERIFY(!load(cloud, "<Cloud version=\"2.0\"/>"));
}

void CloudDocumentTest::fontTextIsSplitAtCommas()
{
    TprWordCloud cloud;
    QVERIFY(load(cloud, document("<Font>Liberation Serif,0,255,14,3</Font>")));
    QCOMPARE(cloud.Font().name, QStringLiteral("Liberation Serif"));
    QCOMPARE(cloud.Font().charset, 0);
    QCOMPARE(cloud.Font().color, 255);
    QCOMPARE(cloud.Font().size, 14);
    QCOMPARE(cloud.Font().style, 3);
    // A name holding a comma: the last four fields are the numbers.
    QVERIFY(load(cloud, document("<Font>Odd, Name,1,0,12,0</Font>")));
    QCOMPARE(cloud.Font().name, QStringLiteral("Odd, Name"));
    QCOMPARE(cloud.Font().size, 12);
}

void CloudDocumentTest::loadFitScalesIntoTheCurrentArea_data()
{
    QTest::addColumn<QSize>("client");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QPoint>("offset");
    // The stored area is 10;10;610;410 (600 x 400).
    QTest::newRow("same size") << QSize(620, 420) << 1.0 << QPoint(10, 10);
    QTest::newRow("half size") << QSize(320, 220) << 0.5 << QPoint(10, 10);
    QTest::newRow("wider: centred across") << QSize(1220, 420) << 1.0 << QPoint(310, 10);
    QTest::newRow("taller: centred down") << QSize(320, 420) << 0.5 << QPoint(10, 110);
    QTest::newRow("double") << QSize(1220, 820) << 2.0 << QPoint(10, 10);
}

void CloudDocumentTest::loadFitScalesIntoTheCurrentArea()
{
    QFETCH(QSize, client);
    QFETCH(double, scale);
    QFETCH(QPoint, offset);
    TprWordCloud cloud;
    fillAndLayOut(cloud);
    const QByteArray bytes = save(cloud);
    TprWordCloud loaded;
    loaded.SetClientSize(client);
    QVERIFY(load(loaded, bytes));
    for (int i = 0; i < cloud.WordCount(); ++i) {
        const CloudRect a = cloud.Word(i)->BoundsRect();
        const CloudRect b = loaded.Word(i)->BoundsRect();
        QVERIFY(qAbs(b.left - (offset.x() + (a.left - 10) * scale)) <= 0.5);
        QVERIFY(qAbs(b.top - (offset.y() + (a.top - 10) * scale)) <= 0.5);
        QVERIFY(qAbs(b.right - (offset.x() + (a.right - 10) * scale)) <= 0.5);
        QVERIFY(qAbs(b.bottom - (offset.y() + (a.bottom - 10) * scale)) <= 0.5);
        QCOMPARE(loaded.Word(i)->OutlineScale(), scale);
        QCOMPARE(loaded.Word(i)->FontSize(), cloud.Word(i)->FontSize());
    }
    // The fitted cloud now belongs to the current area.
    QCOMPARE(loaded.StartingCanvasRect(), loaded.GetCanvasDimension());
    // Shadow offsets follow the scale (at least one pixel).
    QCOMPARE(loaded.Word(0)->ShadowOffset(),
             std::max(1, int(std::nearbyint(cloud.Word(0)->Padding() * scale))));
}

void CloudDocumentTest::onlyThePlacedPrefixIsShown()
{
    // Three words: the third sits on the first (it was never placed), so it and everything
    // after it stay hidden; an empty box ends the placed part too.
    const QByteArray words = "<Words>" + word("one", "9", "9", "10;10;50;30") +
                             word("two", "8", "8", "60;10;90;30") +
                             word("three", "7", "7", "20;15;40;25") +
                             word("four", "6", "6", "100;100;120;110") + "</Words>";
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(220, 220));
    QVERIFY(load(cloud, document("<StartingBounds>10;10;210;210</StartingBounds>" + words)));
    QCOMPARE(cloud.WordCount(), 4);
    QCOMPARE(cloud.CountVisibleWords(), 2);
    QVERIFY(cloud.Word(1)->Visible());
    QVERIFY(!cloud.Word(2)->Visible());
    QVERIFY(!cloud.Word(3)->Visible());
    QCOMPARE(cloud.MaxWeight(), 9);
    QCOMPARE(cloud.MinWeight(), 6);
}

void CloudDocumentTest::refusedDocuments_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("message");
    QTest::newRow("empty") << QByteArray() << QStringLiteral("empty");
    QTest::newRow("not XML") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16)
                             << QStringLiteral("not an XML");
    QTest::newRow("plain text") << QByteArray("team\t5\nremote\t3\n")
                                << QStringLiteral("not an XML");
    QTest::newRow("no version") << QByteArray("<WordCloud><Coverage>0.5</Coverage></WordCloud>")
                                << QStringLiteral("no version");
    QTest::newRow("version 2.0") << document("<Coverage>0.5</Coverage>", "2.0")
                                 << QStringLiteral("\"2.0\" is not 1.0");
    QTest::newRow("version 1.00") << document("", "1.00") << QStringLiteral("is not 1.0");
    QTest::newRow("truncated") << document(word("team", "5", "5", "0;0;9;9")).left(120)
                               << QStringLiteral("not well-formed");
    QTest::newRow("mismatched tags")
        << document("<Coverage>0.5</Shadow>") << QStringLiteral("not well-formed");
    QTest::newRow("element inside a value")
        << document("<Coverage><b>0.5</b></Coverage>") << QStringLiteral("not well-formed");
    QTest::newRow("garbage after the root")
        << document("") + "<more/>" << QStringLiteral("not well-formed");
    QTest::newRow("too large") << QByteArray(CloudDocument::kMaxBytes + 10, ' ')
                               << QStringLiteral("larger than 16 MiB");
}

void CloudDocumentTest::refusedDocuments()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(400, 300));
    cloud.SetCoverage(0.35f);
    cloud.AddWord(QStringLiteral("before"), 3);
    const Status read = load(cloud, bytes);
    QVERIFY(!read);
    QVERIFY2(read.error().contains(message), qPrintable(read.error()));
    // Refused: the words were cleared before reading, the options are untouched.
    QCOMPARE(cloud.WordCount(), 0);
    QCOMPARE(cloud.Coverage(), 0.35f);
}

void CloudDocumentTest::clampedValues_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("warning");
    QTest::addColumn<int>("words");
    QTest::newRow("coverage beyond 10")
        << QByteArray("<Coverage>750</Coverage>")
        << QStringLiteral("Coverage: 750 is beyond 10; ignored") << 0;
    QTest::newRow("coverage NaN") << QByteArray("<Coverage>nan</Coverage>")
                                  << QStringLiteral("not a number") << 0;
    QTest::newRow("font size of a million")
        << QByteArray("<Font>Arial,1,0,1000000,0</Font>")
        << QStringLiteral("Font size: 1000000 is out of range; 4096 used") << 0;
    QTest::newRow("bounds in three parts") << QByteArray("<StartingBounds>1;2;3</StartingBounds>")
                                           << QStringLiteral("four parts") << 0;
    QTest::newRow("bounds overflow")
        << QByteArray("<StartingBounds>0;0;99999999999;5</StartingBounds>")
        << QStringLiteral("out of range") << 0;
    QTest::newRow("word without text") << "<Words>" + word("", "5", "5", "0;0;9;9") +
                                              word("ok", "5", "5", "20;0;29;9") + "</Words>"
                                       << QStringLiteral("Word 1 has no text") << 1;
    QTest::newRow("word of weight 0") << "<Words>" + word("zero", "0", "5", "0;0;9;9") + "</Words>"
                                      << QStringLiteral("Word 1 has no weight") << 0;
    QTest::newRow("negative font size")
        << "<Words>" + word("neg", "5", "-40", "0;0;9;9") + "</Words>"
        << QStringLiteral("FontSize: -40 is out of range; 1 used") << 1;
    QTest::newRow("weight beyond 32 bits")
        << "<Words>" + word("w", "99999999999", "5", "0;0;9;9") + "</Words>"
        << QStringLiteral("2147483647 used") << 1;
    QTest::newRow("very long text")
        << "<Words>" + word(QByteArray(5000, 'x'), "5", "5", "0;0;9;9") + "</Words>"
        << QStringLiteral("shortened") << 1;
}

void CloudDocumentTest::clampedValues()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, warning);
    QFETCH(int, words);
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(400, 300));
    const Status read = load(cloud, document(body));
    QVERIFY2(read, qPrintable(read.error()));
    QVERIFY2(cloud.LoadWarnings().join(QLatin1Char('\n')).contains(warning),
             qPrintable(cloud.LoadWarnings().join(QLatin1Char('\n'))));
    QCOMPARE(cloud.WordCount(), words);
    QVERIFY(cloud.Coverage() >= 0.01f && cloud.Coverage() <= 1.0f);
    QVERIFY(cloud.Font().size <= CloudDocument::kMaxFontSize);
    for (const auto& w : cloud.Words()) {
        QVERIFY(w->FontSize() >= 1 && w->FontSize() <= CloudDocument::kMaxFontSize);
        QVERIFY(w->Text().size() <= CloudDocument::kMaxTextLength);
    }
    // Whatever was read can be painted.
    QCOMPARE(cloud.SaveToBitmap().size(), QSize(400, 300));
}

void CloudDocumentTest::hugeWordCountIsBounded()
{
    QByteArray body = "<Words>";
    const QByteArray one = word("w", "3", "3", "0;0;0;0");
    body.reserve(one.size() * (CloudDocument::kMaxWords + 50) + 100);
    for (int i = 0; i < CloudDocument::kMaxWords + 50; ++i) {
        body += one;
    }
    body += "</Words>";
    TprWordCloud cloud;
    QVERIFY(load(cloud, document(body)));
    QCOMPARE(cloud.WordCount(), CloudDocument::kMaxWords);
    QVERIFY(cloud.LoadWarnings()
                .join(QLatin1Char(' '))
                .contains(QStringLiteral("the rest are left out")));
    QCOMPARE(cloud.CountVisibleWords(), 0); // empty boxes are not shown
}

void CloudDocumentTest::damagedDocumentsNeverCrash()
{
    TprWordCloud source;
    fillAndLayOut(source);
    const QByteArray good = save(source);
    QRandomGenerator random(42);
    int accepted = 0;
    for (int n = 0; n < 300; ++n) {
        QByteArray bytes = good;
        const int edits = 1 + int(random.bounded(8));
        for (int e = 0; e < edits && !bytes.isEmpty(); ++e) {
            const int at = int(random.bounded(qsizetype(bytes.size())));
            switch (random.bounded(4)) {
            case 0:
                bytes[at] = char(random.bounded(256));
                break;
            case 1:
                bytes.remove(at, int(random.bounded(20)));
                break;
            case 2:
                bytes.insert(at, bytes.mid(int(random.bounded(qsizetype(bytes.size()))), 30));
                break;
            default:
                bytes.truncate(at);
                break;
            }
        }
        TprWordCloud cloud;
        cloud.SetClientSize(QSize(300, 200));
        if (const Status read = load(cloud, bytes)) {
            ++accepted;
            cloud.SaveToBitmap();
            cloud.GenerateCloud(true);
        } else {
            QVERIFY(!read.error().isEmpty());
            QCOMPARE(cloud.WordCount(), 0);
        }
    }
    QVERIFY(accepted > 0);
    QVERIFY(accepted < 300);
}

QTEST_MAIN(CloudDocumentTest)
#include "CloudDocumentTest.moc"
