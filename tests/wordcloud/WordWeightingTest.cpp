// Words, weights and font sizes: AddWord, weight capping, the coverage fit and re-proportioning.

#include "common/Rounding.h"
#include "wordcloud/TprWordCloud.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QtTest>

using namespace kestrum::wordcloud;
using kestrum::common::halfUp;
using kestrum::common::roundHalfEven;

namespace {

// A word's box at `size` measured on an empty box: exactly the extent plus the padding.
QSize freshBox(const QString& text, qint32 size)
{
    TprWordCloud cloud;
    cloud.AddWord(text, size);
    TprWord* word = cloud.Word(0);
    word->SetStartingBoundsRect({});
    word->SetSize(size);
    const CloudRect& box = word->BoundsRect();
    return {box.width(), box.height()};
}

} // namespace

class WordWeightingTest : public QObject
{
    Q_OBJECT

private slots:
    void addWordRefusals_data();
    void addWordRefusals();
    void maxAndMinWeightFollowAddedWords();
    void placeCenterIsCopiedAtCreation();
    void heavyWeightsAreCappedAt1024();
    void textExtentUsesThreeQuartersOfTheHeight();
    void paddingIsRoundedHalfToEven_data();
    void paddingIsRoundedHalfToEven();
    void resizingKeepsTheCentre();
    void defaultSizeMakesRoomForTheOutline();
    void singleWordShrinksToFitWithTenPixelsToSpare();
    void singleWordOnATinyAreaEndsAtSizeOne();
    void equalWeightsGiveEqualSizes();
    void sizesAreProportionalToWeights();
};

void WordWeightingTest::addWordRefusals_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("weight");
    QTest::addColumn<int>("index");
    QTest::newRow("empty text") << QString() << 5 << -1;
    QTest::newRow("zero weight") << QStringLiteral("team") << 0 << -1;
    QTest::newRow("negative weight") << QStringLiteral("team") << -7 << -1;
    QTest::newRow("weight one") << QStringLiteral("team") << 1 << 1;
    QTest::newRow("blank text is a word") << QStringLiteral("  ") << 3 << 1;
}

void WordWeightingTest::addWordRefusals()
{
    QFETCH(QString, text);
    QFETCH(int, weight);
    QFETCH(int, index);
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(400, 300));
    QCOMPARE(cloud.AddWord(QStringLiteral("remote"), 10), 0);
    QCOMPARE(cloud.AddWord(text, weight), index);
    QCOMPARE(cloud.WordCount(), index < 0 ? 1 : 2);
    QCOMPARE(cloud.MinWeight(), index < 0 ? 10 : std::min(10, weight));
    if (index >= 0) {
        const TprWord* word = cloud.Word(index);
        QCOMPARE(word->Text(), text);
        QCOMPARE(word->Weight(), weight);
        QCOMPARE(word->FontSize(), weight); // the first font size is the weight
        QCOMPARE(word->TextColor(), 0);
        QCOMPARE(word->ParentCloud(), &cloud);
    }
}

void WordWeightingTest::maxAndMinWeightFollowAddedWords()
{
    TprWordCloud cloud;
    QCOMPARE(cloud.MaxWeight(), 0);
    QCOMPARE(cloud.MinWeight(), 2147483647);
    cloud.AddWord(QStringLiteral("a"), 40);
    cloud.AddWord(QStringLiteral("b"), 7);
    cloud.AddWord(QStringLiteral("c"), 90);
    QCOMPARE(cloud.MaxWeight(), 90);
    QCOMPARE(cloud.MinWeight(), 7);
    cloud.ClearWords();
    QCOMPARE(cloud.WordCount(), 0);
    QCOMPARE(cloud.MaxWeight(), 0);
    QCOMPARE(cloud.MinWeight(), 2147483647);
}

void WordWeightingTest::placeCenterIsCopiedAtCreation()
{
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(220, 120)); // area 10..210 x 10..110, centre (110, 60)
    cloud.AddWord(QStringLiteral("centred"), 20);
    cloud.SetPlaceCenter(false);
    cloud.AddWord(QStringLiteral("random"), 10);
    // The first word keeps the copy it got: it still starts at the centre.
    QVERIFY(cloud.Word(0)->PlaceCenter());
    QVERIFY(!cloud.Word(1)->PlaceCenter());
    TprWord* centred = cloud.Word(0);
    const qint32 w = centred->BoundsRect().width();
    const qint32 h = centred->BoundsRect().height();
    centred->SetStartingPosition();
    QCOMPARE(centred->BoundsRect(),
             (CloudRect{110 - halfUp(w), 60 - halfUp(h), 110 + halfUp(w), 60 + halfUp(h)}));

    // Words read from a document take the cloud's option at that moment, and keep it.
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    cloud.SaveToStream(buffer);
    TprWordCloud loaded;
    loaded.SetPlaceCenter(false);
    buffer.close();
    buffer.open(QIODevice::ReadOnly);
    QVERIFY(loaded.LoadFromStream(buffer));
    loaded.SetPlaceCenter(true);
    QCOMPARE(loaded.WordCount(), 2);
    for (const auto& word : loaded.Words()) {
        QVERIFY(!word->PlaceCenter());
    }
    // A cloud that takes over another's layout takes its words' copies too.
    loaded.AdoptLayout(cloud);
    QVERIFY(loaded.Word(0)->PlaceCenter());
    QVERIFY(!loaded.Word(1)->PlaceCenter());
}

void WordWeightingTest::heavyWeightsAreCappedAt1024()
{
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(800, 600));
    cloud.SetRandomSeed(3);
    cloud.AddWord(QStringLiteral("ten"), 10);
    cloud.AddWord(QStringLiteral("five thousand"), 5000);
    cloud.AddWord(QStringLiteral("half"), 2500);
    cloud.GenerateCloud(true);
    // Sorted heaviest first, then scaled by 1024 / 5000 and rounded.
    QCOMPARE(cloud.Word(0)->Weight(), 1024);
    QCOMPARE(cloud.Word(1)->Weight(), 512);
    QCOMPARE(cloud.Word(2)->Weight(), 2);
    QCOMPARE(cloud.Word(0)->Text(), QStringLiteral("five thousand"));
    QCOMPARE(cloud.MaxWeight(), 1024);
    QCOMPARE(cloud.MinWeight(), 2);
}

void WordWeightingTest::textExtentUsesThreeQuartersOfTheHeight()
{
    TprWordCloud cloud;
    cloud.AddWord(QStringLiteral("Belonging"), 30);
    const QSize extent = cloud.Word(0)->GetTextWidthAndHeight();
    // Size 30 is 40 pixels per em; the same face measured directly at that size.
    const QFontMetricsF metrics(cloud.Font().toQFont(40));
    QVERIFY(qAbs(extent.width() - metrics.horizontalAdvance(QStringLiteral("Belonging"))) <= 1.0);
    const double fullHeight = metrics.ascent() + metrics.descent();
    QVERIFY(qAbs(extent.height() - fullHeight * 0.75) <= 1.0);
    QVERIFY(extent.height() < fullHeight - 5);
}

void WordWeightingTest::paddingIsRoundedHalfToEven_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("padding");
    QTest::newRow("24: 0.48") << 24 << 0;
    QTest::newRow("25: 0.5 to even") << 25 << 0;
    QTest::newRow("75: 1.5 to even") << 75 << 2;
    QTest::newRow("125: 2.5 to even") << 125 << 2;
    QTest::newRow("130: 2.6") << 130 << 3;
}

void WordWeightingTest::paddingIsRoundedHalfToEven()
{
    QFETCH(int, size);
    QFETCH(int, padding);
    TprWordCloud cloud;
    cloud.AddWord(QStringLiteral("cohesion"), size);
    const TprWord* word = cloud.Word(0);
    QCOMPARE(word->Padding(), float(size * 0.02));
    const QSize extent = word->GetTextWidthAndHeight();
    QCOMPARE(freshBox(QStringLiteral("cohesion"), size), extent + QSize(padding, padding));
}

void WordWeightingTest::resizingKeepsTheCentre()
{
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(800, 600));
    cloud.AddWord(QStringLiteral("interviews"), 40);
    TprWord* word = cloud.Word(0);
    const QSize box = freshBox(QStringLiteral("interviews"), 40);

    // An empty box is placed at the origin with the measured size.
    word->SetStartingBoundsRect({});
    word->SetSize(40);
    QCOMPARE(word->BoundsRect(), (CloudRect{0, 0, box.width(), box.height()}));

    // Otherwise each side moves by half the change, odd halves rounded up: a change of 5 moves
    // both sides by 3, a change of 4 by 2.
    word->SetStartingBoundsRect({100, 200, 100 + box.width() - 5, 200 + box.height() - 4});
    word->SetSize(40);
    QCOMPARE(word->BoundsRect(),
             (CloudRect{97, 198, 100 + box.width() - 5 + 3, 200 + box.height() - 4 + 2}));
    QCOMPARE(word->StartingBoundsRect(), word->BoundsRect());

    // Shrinking by an odd amount: half(-3) is -2, so the box ends one pixel narrower than
    // measured.
    word->SetStartingBoundsRect({100, 200, 100 + box.width() + 3, 200 + box.height()});
    word->SetSize(40);
    QCOMPARE(halfUp(-3), -2);
    QCOMPARE(word->BoundsRect(), (CloudRect{102, 200, 101 + box.width(), 200 + box.height()}));
}

void WordWeightingTest::defaultSizeMakesRoomForTheOutline()
{
    TprWordCloud cloud;
    cloud.AddWord(QStringLiteral("Ag"), 150);
    TprWord* word = cloud.Word(0);
    const CloudRect before = word->BoundsRect();
    const int padding = int(roundHalfEven(word->Padding()));
    QCOMPARE(padding, 3);
    word->SetDefaultSize();
    const CloudRect after = word->BoundsRect();
    QCOMPARE(after.left, before.left);
    QCOMPARE(after.top, before.top);

    // "Ag" reaches from the cap height to below the baseline: its outline is taller than the
    // three-quarter extent, so the box grows to the outline's height plus 2.
    const QRectF ink = word->Outline().boundingRect();
    QVERIFY(ink.height() > before.height() + padding);
    QVERIFY(after.height() >= ink.height() + 2 - 1 && after.height() <= ink.height() + 2 + 1);
    // The outline's width stays within the padded box: only the padding is added.
    QVERIFY(ink.width() < before.width());
    QCOMPARE(after.width(), before.width() + padding);
    // The outline sits at (1, 1) of the word's own space and fits inside the box.
    QCOMPARE(ink.left(), 1.0);
    QCOMPARE(ink.top(), 1.0);
    QVERIFY(ink.right() <= after.width());
    QVERIFY(ink.bottom() <= after.height());
}

void WordWeightingTest::singleWordShrinksToFitWithTenPixelsToSpare()
{
    const QString text = QStringLiteral("collaboration");
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(220, 140)); // drawing area 200 x 120
    cloud.SetCoverage(1.0f);
    cloud.SetRandomSeed(1);
    cloud.AddWord(text, 60);
    cloud.GenerateCloud(true);
    const int size = cloud.Word(0)->FontSize();
    QVERIFY(size > 1);
    // At the final size the measured box leaves ten pixels in both directions, one size up it
    // does not (within the pixel the centred resizing may add).
    const QSize at = freshBox(text, size);
    const QSize above = freshBox(text, size + 1);
    QVERIFY2(
        at.width() + 10 <= 200 + 1 && at.height() + 10 <= 120 + 1,
        qPrintable(QStringLiteral("size %1: %2 x %3").arg(size).arg(at.width()).arg(at.height())));
    QVERIFY(above.width() + 10 > 200 - 1 || above.height() + 10 > 120 - 1);
    QVERIFY(cloud.Word(0)->Visible());
}

void WordWeightingTest::singleWordOnATinyAreaEndsAtSizeOne()
{
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(26, 26)); // drawing area 6 x 6
    cloud.SetRandomSeed(1);
    cloud.AddWord(QStringLiteral("misunderstanding"), 500);
    QVERIFY(!cloud.GenerateCloud(true));
    QCOMPARE(cloud.Word(0)->FontSize(), 1);
    QCOMPARE(cloud.CountVisibleWords(), 0);
    QVERIFY(!cloud.Word(0)->Visible());
}

void WordWeightingTest::equalWeightsGiveEqualSizes()
{
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(800, 600));
    cloud.SetRandomSeed(9);
    const QStringList words{QStringLiteral("trust"), QStringLiteral("calls"),
                            QStringLiteral("home"),  QStringLiteral("chat"),
                            QStringLiteral("email"), QStringLiteral("office")};
    for (const QString& w : words) {
        cloud.AddWord(w, 17);
    }
    cloud.AddWord(QStringLiteral("team"), 60);
    QVERIFY(cloud.GenerateCloud(true));
    QCOMPARE(cloud.Word(0)->Text(), QStringLiteral("team"));
    for (int i = 2; i < cloud.WordCount(); ++i) {
        QCOMPARE(cloud.Word(i)->FontSize(), cloud.Word(1)->FontSize());
    }
    QVERIFY(cloud.Word(0)->FontSize() > cloud.Word(1)->FontSize());
}

void WordWeightingTest::sizesAreProportionalToWeights()
{
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(800, 600));
    cloud.SetRandomSeed(4);
    const int weights[] = {100, 64, 50, 31, 20, 10, 7, 3};
    for (int w : weights) {
        cloud.AddWord(QStringLiteral("w%1").arg(w), w);
    }
    QVERIFY(cloud.GenerateCloud(true));
    // size = max(1, round(weight * F / W)) for one common factor F / W: every size is within
    // rounding of the heaviest word's ratio.
    const double ratio = double(cloud.Word(0)->FontSize()) / cloud.Word(0)->Weight();
    for (int i = 0; i < cloud.WordCount(); ++i) {
        const TprWord* word = cloud.Word(i);
        const double expected = std::max(1.0, word->Weight() * ratio);
        QVERIFY2(qAbs(word->FontSize() - expected) <= 1.0 + word->Weight() * ratio * 0.01,
                 qPrintable(QStringLiteral("%1: size %2, expected about %3")
                                .arg(word->Text())
                                .arg(word->FontSize())
                                .arg(expected)));
    }
}

QTEST_MAIN(WordWeightingTest)
#include "WordWeightingTest.moc"
