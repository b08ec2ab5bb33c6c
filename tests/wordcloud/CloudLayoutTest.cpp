// The layout: spiral steps, start positions, placement without overlap, the coverage retries,
// progress and cancelling, reproducibility, and the fast walk against the reference walk.

#include "common/Rounding.h"
#include "wordcloud/TprWordCloud.h"
#include "wordcloud/WordCloudLog.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>

using namespace kestrum::wordcloud;
using kestrum::common::halfUp;

namespace {

QStringList g_debugMessages;

void captureDebug(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (type == QtDebugMsg && qstrcmp(context.category, "kestrum.wordcloud") == 0) {
        g_debugMessages << text;
    }
}

struct CloudSetup
{
    int words = 60;
    QSize client{620, 420};
    quint8 shape = TprWordCloud::Rectangle;
    bool placeCenter = true;
    bool continueFromLastWord = true;
    quint8 direction = 0;
    float coverage = 0.6f;
    quint64 seed = 1;
};

void fill(TprWordCloud& cloud, const CloudSetup& setup)
{
    cloud.SetClientSize(setup.client);
    cloud.SetCloudShape(setup.shape);
    cloud.SetPlaceCenter(setup.placeCenter);
    cloud.SetContinueFromLastWord(setup.continueFromLastWord);
    cloud.SetDirection(setup.direction);
    cloud.SetCoverage(setup.coverage);
    cloud.SetRandomSeed(setup.seed);
    QRandomGenerator random(quint32(setup.seed * 7919 + quint64(setup.words)));
    for (int i = 0; i < setup.words; ++i) {
        const int weight =
            std::max(1, int(std::lround(300.0 / std::pow(i + 1, 0.7))) + int(random.bounded(3)));
        QString text;
        const int letters = 2 + int(random.bounded(9));
        for (int j = 0; j < letters; ++j) {
            text += QChar(u'a' + int(random.bounded(26)));
        }
        cloud.AddWord(text, weight);
    }
}

struct Layout
{
    bool result = false;
    QList<CloudRect> boxes;
    QList<bool> visible;
    QStringList order;
    float coverage = 0;
    int placed = 0;
    QList<int> progress;
    QStringList messages;
};

// Progress calls (counted from 0 over the whole layout) at which the handler cancels; -1 in
// the list cancels at every call.
using CancelAt = QList<int>;

Layout layOut(const CloudSetup& setup, bool reference, const CancelAt& cancelAt = {},
              bool autoResize = true, bool watch = false)
{
    TprWordCloud cloud;
    fill(cloud, setup);
    cloud.SetReferenceLayout(reference);
    cloud.SetAutoResizeCoverage(autoResize);
    Layout out;
    if (watch || !cancelAt.isEmpty()) {
        QObject::connect(&cloud, &TprWordCloud::OnProgress, &cloud, [&](int percent) {
            if (cancelAt.contains(-1) || cancelAt.contains(out.progress.size())) {
                cloud.SetCancel(true);
            }
            out.progress << percent;
        });
    }
    g_debugMessages.clear();
    out.result = cloud.GenerateCloud(true);
    out.messages = g_debugMessages;
    for (const auto& word : cloud.Words()) {
        out.boxes << word->BoundsRect();
        out.visible << word->Visible();
        out.order << word->Text();
    }
    out.coverage = cloud.CurrentCoverage();
    out.placed = cloud.CountVisibleWords();
    return out;
}

bool insideEllipse(const CloudRect& area, double x, double y)
{
    const double a = area.width() / 2.0, b = area.height() / 2.0;
    const double u = (x - (area.left + a)) / a, v = (y - (area.top + b)) / b;
    return u * u + v * v <= 1.0;
}

// Everything a layout leaves behind, and what it said on the way.
void compareLayouts(const Layout& fast, const Layout& reference, const QString& what)
{
    QVERIFY2(fast.boxes == reference.boxes, qPrintable(what));
    QVERIFY2(fast.visible == reference.visible, qPrintable(what));
    QVERIFY2(fast.order == reference.order, qPrintable(what));
    QVERIFY2(fast.result == reference.result, qPrintable(what));
    QVERIFY2(fast.coverage == reference.coverage, qPrintable(what));
    QVERIFY2(fast.placed == reference.placed, qPrintable(what));
    QVERIFY2(fast.progress == reference.progress, qPrintable(what));
    QVERIFY2(fast.messages == reference.messages, qPrintable(what));
}

} // namespace

Q_DECLARE_METATYPE(CloudSetup)
Q_DECLARE_METATYPE(CancelAt)

class CloudLayoutTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void spiralStepIsAHundredFiftiethOfTheArea_data();
    void spiralStepIsAHundredFiftiethOfTheArea();
    void centredStartPosition();
    void randomStartPositionStaysInItsRange();
    void placedBoxesNeitherOverlapNorTouch_data();
    void placedBoxesNeitherOverlapNorTouch();
    void fastWalkMatchesReferenceWalk();
    void denseCloudsMatchReferenceLayout_data();
    void denseCloudsMatchReferenceLayout();
    void cancelActsAsInTheReferenceLayout_data();
    void cancelActsAsInTheReferenceLayout();
    void fixedSeedReproducesTheLayout();
    void seedsGiveDifferentLayouts();
    void nothingHappensWithoutWordsOrArea();
    void failedRunsRetryAtLowerCoverageUntilZero();
    void noRetryWithoutAutoResize();
    void cancelEndsTheRunAndTheRetryIsNotCancelled();
    void progressCountsTheWords();
    void clickSelectsTheWordUnderThePoint();

private:
    QtMessageHandler m_previousHandler = nullptr;
};

void CloudLayoutTest::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("kestrum.wordcloud.debug=true"));
    m_previousHandler = qInstallMessageHandler(captureDebug);
}

void CloudLayoutTest::init()
{
    g_debugMessages.clear();
}

void CloudLayoutTest::spiralStepIsAHundredFiftiethOfTheArea_data()
{
    QTest::addColumn<QSize>("area");
    QTest::addColumn<int>("stepX");
    QTest::addColumn<int>("stepY");
    QTest::newRow("100 gives round(0.67) = 1") << QSize(100, 800) << 1 << 5;
    QTest::newRow("74 gives 0, raised to 1") << QSize(74, 74) << 1 << 1;
    QTest::newRow("225 gives 1.5, to even 2") << QSize(225, 375) << 2 << 2;
    QTest::newRow("375 gives 2.5, to even 2") << QSize(375, 525) << 2 << 4;
    QTest::newRow("780 x 580") << QSize(780, 580) << 5 << 4;
}

void CloudLayoutTest::spiralStepIsAHundredFiftiethOfTheArea()
{
    QFETCH(QSize, area);
    QFETCH(int, stepX);
    QFETCH(int, stepY);
    TprWordCloud cloud;
    cloud.SetClientSize(area + QSize(20, 20));
    cloud.AddWord(QStringLiteral("x"), 5);
    cloud.GenerateCloud(true);
    QCOMPARE(int(cloud.StepX()), stepX);
    QCOMPARE(int(cloud.StepY()), stepY);
    QCOMPARE(cloud.StartingCanvasRect(), cloud.GetCanvasDimension());
}

void CloudLayoutTest::centredStartPosition()
{
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(221, 121)); // area 10..211 x 10..111: width 201, height 101
    cloud.AddWord(QStringLiteral("word"), 20);
    TprWord* word = cloud.Word(0);
    word->SetStartingBoundsRect({0, 0, 31, 12});
    word->SetStartingPosition();
    // Centre: left + half(width) with odd halves rounded up = (111, 61); the box extends
    // half(W) each way, so an odd width becomes even.
    QCOMPARE(word->BoundsRect(), (CloudRect{111 - 16, 61 - 6, 111 + 16, 61 + 6}));
}

void CloudLayoutTest::randomStartPositionStaysInItsRange()
{
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(420, 320)); // area 10..410 x 10..310
    cloud.SetPlaceCenter(false);
    cloud.AddWord(QStringLiteral("word"), 20);
    TprWord* word = cloud.Word(0);
    QVERIFY(!word->PlaceCenter());
    const int cx = 10 + halfUp(400);
    int lowest = 1 << 30, highest = -(1 << 30);
    for (quint64 seed = 1; seed <= 300; ++seed) {
        cloud.SetRandomSeed(seed);
        word->SetStartingBoundsRect({0, 0, 41, 20});
        word->SetStartingPosition();
        const CloudRect& box = word->BoundsRect();
        QCOMPARE(box.width(), 41); // a random start keeps the width
        const int x = box.left + halfUp(41);
        const int y = box.top + halfUp(20);
        QVERIFY(x >= cx - halfUp(cx) && x < cx + halfUp(cx));
        QVERIFY(y >= 10 && y < 310);
        lowest = std::min(lowest, x);
        highest = std::max(highest, x);
    }
    // Tied to half of cx: with the area's left at 10 the range is [105, 315).
    QVERIFY(lowest < 120);
    QVERIFY(highest > 300);
}

void CloudLayoutTest::placedBoxesNeitherOverlapNorTouch_data()
{
    QTest::addColumn<CloudSetup>("setup");
    for (quint64 seed = 1; seed <= 4; ++seed) {
        CloudSetup setup;
        setup.seed = seed;
        setup.words = 120;
        QTest::addRow("rectangle, centre, seed %llu", seed) << setup;
        setup.shape = TprWordCloud::Ellipse;
        QTest::addRow("ellipse, centre, seed %llu", seed) << setup;
        setup.placeCenter = false;
        QTest::addRow("ellipse, random, seed %llu", seed) << setup;
        setup.shape = TprWordCloud::Rectangle;
        setup.direction = TprWordCloud::Mirrored;
        QTest::addRow("rectangle, random, mirrored, seed %llu", seed) << setup;
    }
}

void CloudLayoutTest::placedBoxesNeitherOverlapNorTouch()
{
    QFETCH(CloudSetup, setup);
    TprWordCloud cloud;
    fill(cloud, setup);
    cloud.GenerateCloud(true);
    const CloudRect area = cloud.GetCanvasDimension();
    QList<CloudRect> placed;
    for (const auto& word : cloud.Words()) {
        if (!word->Visible()) {
            continue;
        }
        const CloudRect& b = word->BoundsRect();
        QVERIFY(!b.isEmpty());
        if (setup.shape == TprWordCloud::Ellipse) {
            QVERIFY(insideEllipse(area, b.left, b.top));
            QVERIFY(insideEllipse(area, b.right, b.bottom));
        } else {
            QVERIFY(b.left >= area.left && b.right <= area.right && b.top >= area.top &&
                    b.bottom <= area.bottom);
        }
        for (const CloudRect& other : placed) {
            // Not even touching: a pixel of gap on at least one side.
            QVERIFY(b.right < other.left || b.left > other.right || b.bottom < other.top ||
                    b.top > other.bottom);
        }
        placed << b;
    }
    QCOMPARE(placed.size(), cloud.CountVisibleWords());
    QVERIFY(placed.size() > 20);
}

void CloudLayoutTest::fastWalkMatchesReferenceWalk()
{
    // Many random clouds, every option: the indexed, step-skipping walk must put every word in
    // exactly the box the plain step-by-step walk with a linear scan finds.
    QRandomGenerator random(20240601);
    int failedRuns = 0;
    for (int n = 0; n < 36; ++n) {
        CloudSetup setup;
        setup.seed = random.generate64();
        setup.words = 5 + int(random.bounded(180));
        setup.client = QSize(90 + int(random.bounded(600)), 70 + int(random.bounded(450)));
        setup.shape = quint8(random.bounded(3)); // 2 acts as a rectangle
        setup.placeCenter = random.bounded(4) != 0;
        setup.continueFromLastWord = random.bounded(4) != 0;
        setup.direction = quint8(random.bounded(3));
        setup.coverage = float(0.2 + random.bounded(0.8));
        const Layout fast = layOut(setup, false);
        const Layout reference = layOut(setup, true);
        const QString what = QStringLiteral("cloud %1: %2 words on %3x%4, shape %5")
                                 .arg(n)
                                 .arg(setup.words)
                                 .arg(setup.client.width())
                                 .arg(setup.client.height())
                                 .arg(setup.shape);
        compareLayouts(fast, reference, what);
        if (QTest::currentTestFailed()) {
            return;
        }
        failedRuns += fast.coverage < setup.coverage;
    }
    QVERIFY(failedRuns > 0); // some clouds went through the retries
}

void CloudLayoutTest::denseCloudsMatchReferenceLayout_data()
{
    QTest::addColumn<quint8>("shape");
    QTest::addColumn<quint64>("seed");
    for (const quint64 seed : {3ull, 41ull, 977ull}) {
        QTest::addRow("rectangle, seed %llu", seed) << quint8(TprWordCloud::Rectangle) << seed;
        QTest::addRow("ellipse, seed %llu", seed) << quint8(TprWordCloud::Ellipse) << seed;
    }
}

void CloudLayoutTest::denseCloudsMatchReferenceLayout()
{
    // Many words at high coverage: several coverages fail before one places every word, so the
    // runs placed ahead on other threads decide the result, and walks cross packed stretches.
    QFETCH(quint8, shape);
    QFETCH(quint64, seed);
    QRandomGenerator random{quint32(seed)};
    int retried = 0;
    for (int n = 0; n < 5; ++n) {
        CloudSetup setup;
        setup.seed = seed * 31 + quint64(n);
        setup.shape = shape;
        setup.words = 120 + int(random.bounded(200));
        setup.client = QSize(160 + int(random.bounded(260)), 120 + int(random.bounded(200)));
        setup.coverage = float(0.55 + random.bounded(0.45));
        setup.placeCenter = n % 3 != 2;
        setup.continueFromLastWord = n % 4 != 3;
        setup.direction = quint8(n % 3);
        const bool watch = n % 2 == 0; // progress handled or not: two ways of waiting
        const Layout fast = layOut(setup, false, {}, true, watch);
        const Layout reference = layOut(setup, true, {}, true, watch);
        compareLayouts(fast, reference,
                       QStringLiteral("cloud %1: %2 words on %3x%4")
                           .arg(n)
                           .arg(setup.words)
                           .arg(setup.client.width())
                           .arg(setup.client.height()));
        if (QTest::currentTestFailed()) {
            return;
        }
        QCOMPARE(fast.progress.isEmpty(), !watch);
        retried += fast.messages.size() >= 2;
    }
    QVERIFY(retried > 0);
}

void CloudLayoutTest::cancelActsAsInTheReferenceLayout_data()
{
    QTest::addColumn<CancelAt>("cancelAt");
    QTest::addColumn<bool>("autoResize");
    QTest::newRow("early in the first run") << CancelAt{4} << true;
    QTest::newRow("in a retry") << CancelAt{260} << true;
    QTest::newRow("twice") << CancelAt{30, 250} << true;
    QTest::newRow("at every word") << CancelAt{-1} << true;
    QTest::newRow("without retries") << CancelAt{9} << false;
}

void CloudLayoutTest::cancelActsAsInTheReferenceLayout()
{
    // A cancel ends the run after the word under way, whichever thread placed it and however
    // far that thread had got; the retries follow as after any failure.
    QFETCH(CancelAt, cancelAt);
    QFETCH(bool, autoResize);
    CloudSetup setup;
    setup.words = 400;
    setup.client = QSize(300, 220);
    setup.coverage = 1.0f;
    for (const quint8 shape : {quint8(TprWordCloud::Rectangle), quint8(TprWordCloud::Ellipse)}) {
        setup.shape = shape;
        const Layout fast = layOut(setup, false, cancelAt, autoResize);
        const Layout reference = layOut(setup, true, cancelAt, autoResize);
        compareLayouts(fast, reference, QStringLiteral("shape %1").arg(shape));
        if (QTest::currentTestFailed()) {
            return;
        }
        QVERIFY(!fast.messages.isEmpty());
        if (!autoResize) {
            // The run stopped after the tenth word.
            QVERIFY(!fast.result);
            QCOMPARE(fast.placed, 10);
            QCOMPARE(fast.progress.size(), 10);
            QCOMPARE(fast.visible.count(true), 10);
        } else if (cancelAt.contains(-1)) {
            // Every run ended after its first word, down to the last coverage above 0.
            QCOMPARE(fast.placed, 1);
            QVERIFY(fast.coverage <= 0);
        }
    }
}

void CloudLayoutTest::fixedSeedReproducesTheLayout()
{
    CloudSetup setup;
    setup.words = 150;
    setup.placeCenter = false;
    setup.seed = 77;
    const Layout first = layOut(setup, false);
    const Layout second = layOut(setup, false);
    QCOMPARE(first.boxes, second.boxes);
    QCOMPARE(first.visible, second.visible);

    // A second layout of a laid-out cloud starts from the boxes of the first (resizing keeps
    // their centres), and is just as reproducible.
    auto twice = [&setup] {
        TprWordCloud cloud;
        fill(cloud, setup);
        cloud.GenerateCloud(true);
        cloud.GenerateCloud(true);
        QList<CloudRect> boxes;
        for (const auto& word : cloud.Words()) {
            boxes << word->BoundsRect();
        }
        return boxes;
    };
    QCOMPARE(twice(), twice());
}

void CloudLayoutTest::seedsGiveDifferentLayouts()
{
    CloudSetup setup;
    setup.words = 80;
    QSet<QString> layouts;
    for (quint64 seed = 1; seed <= 4; ++seed) {
        setup.seed = seed;
        const Layout l = layOut(setup, false);
        QString key;
        for (const CloudRect& b : l.boxes) {
            key += QStringLiteral("%1,%2;").arg(b.left).arg(b.top);
        }
        layouts.insert(key);
    }
    QVERIFY(layouts.size() >= 3);
}

void CloudLayoutTest::nothingHappensWithoutWordsOrArea()
{
    TprWordCloud empty;
    empty.SetClientSize(QSize(400, 300));
    QSignalSpy changed(&empty, &TprWordCloud::Changed);
    QSignalSpy progress(&empty, &TprWordCloud::OnProgress);
    QVERIFY(!empty.GenerateCloud(true));

    TprWordCloud noArea;
    noArea.SetClientSize(QSize(20, 300)); // margins of 10 leave a width of 0
    noArea.AddWord(QStringLiteral("word"), 5);
    QSignalSpy changed2(&noArea, &TprWordCloud::Changed);
    QVERIFY(!noArea.GenerateCloud(true));
    QCOMPARE(changed.count() + changed2.count() + progress.count(), 0);
    QVERIFY(g_debugMessages.isEmpty());
}

void CloudLayoutTest::failedRunsRetryAtLowerCoverageUntilZero()
{
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(30, 30)); // area 10 x 10: the word never fits
    cloud.SetRandomSeed(5);
    cloud.AddWord(QStringLiteral("misunderstanding"), 50);
    QVERIFY(!cloud.GenerateCloud(true));
    QVERIFY(g_debugMessages.size() >= 12);
    QCOMPARE(g_debugMessages.first(), QStringLiteral("Coverage Too High: 0.6"));
    QCOMPARE(g_debugMessages.at(1), QStringLiteral("Coverage Too High: 0.55"));
    double previous = 0.65;
    for (const QString& message : std::as_const(g_debugMessages)) {
        QVERIFY(message.startsWith(QLatin1String("Coverage Too High: ")));
        const double value = message.mid(19).toDouble();
        QVERIFY(qAbs(previous - value - 0.05) < 1e-6); // five points less each time
        QVERIFY(value > 0);
        previous = value;
    }
    QVERIFY(previous < 0.05 + 1e-6);
    QVERIFY(!(cloud.CurrentCoverage() > 0)); // the lowered coverage stopped the retries
    QCOMPARE(cloud.Coverage(), 0.6f);
}

void CloudLayoutTest::noRetryWithoutAutoResize()
{
    TprWordCloud cloud;
    cloud.SetClientSize(QSize(30, 30));
    cloud.SetAutoResizeCoverage(false);
    cloud.AddWord(QStringLiteral("misunderstanding"), 50);
    QVERIFY(!cloud.GenerateCloud(true));
    QCOMPARE(g_debugMessages, QStringList{QStringLiteral("Coverage Too High: 0.6")});
    QCOMPARE(cloud.CurrentCoverage(), 0.6f);
}

void CloudLayoutTest::cancelEndsTheRunAndTheRetryIsNotCancelled()
{
    TprWordCloud cloud;
    CloudSetup setup;
    setup.words = 40;
    setup.coverage = 0.3f;
    fill(cloud, setup);
    QList<int> percents;
    connect(&cloud, &TprWordCloud::OnProgress, this, [&](int percent) {
        percents << percent;
        if (percents.size() == 3) {
            cloud.SetCancel(true);
        }
    });
    QVERIFY(cloud.GenerateCloud(true));
    // The first run placed the word under way when it was cancelled and stopped; the retry at
    // five points less coverage placed everything.
    QCOMPARE(percents.mid(0, 4), (QList<int>{2, 5, 7, 2}));
    QCOMPARE(percents.size(), 3 + 40);
    QCOMPARE(g_debugMessages, QStringList{QStringLiteral("Coverage Too High: 0.3")});
    QCOMPARE(cloud.CurrentCoverage(), float(double(0.3f) - 0.05));
    QCOMPARE(cloud.CountVisibleWords(), 40);
    QVERIFY(!cloud.Cancel());
}

void CloudLayoutTest::progressCountsTheWords()
{
    TprWordCloud cloud;
    CloudSetup setup;
    setup.words = 7;
    setup.coverage = 0.2f;
    fill(cloud, setup);
    QSignalSpy progress(&cloud, &TprWordCloud::OnProgress);
    QSignalSpy changed(&cloud, &TprWordCloud::Changed);
    QVERIFY(cloud.GenerateCloud(true));
    QList<int> percents;
    for (const QList<QVariant>& args : std::as_const(progress)) {
        percents << args.at(0).toInt();
    }
    // truncate((i + 1) / count * 100)
    QCOMPARE(percents, (QList<int>{14, 28, 42, 57, 71, 85, 100}));
    QCOMPARE(changed.count(), 1);
}

void CloudLayoutTest::clickSelectsTheWordUnderThePoint()
{
    TprWordCloud cloud;
    CloudSetup setup;
    setup.words = 10;
    fill(cloud, setup);
    QVERIFY(cloud.GenerateCloud(true));
    TprWord* word = cloud.Word(3);
    const CloudRect box = word->BoundsRect();
    QSignalSpy clicked(&cloud, &TprWordCloud::OnClickWord);
    QVERIFY(cloud.ClickWord(QPoint(box.left, box.bottom - 1), Qt::RightButton, Qt::ShiftModifier));
    QCOMPARE(cloud.SelectedWord(), word);
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicked.at(0).at(0).value<Qt::MouseButton>(), Qt::RightButton);
    QCOMPARE(clicked.at(0).at(1).value<Qt::KeyboardModifiers>(),
             Qt::KeyboardModifiers(Qt::ShiftModifier));
    QCOMPARE(clicked.at(0).at(2).toInt(), box.left);
    QCOMPARE(clicked.at(0).at(4).value<TprWord*>(), word);

    // The margin holds no word: nothing happens, the selection stays.
    QVERIFY(!cloud.ClickWord(QPoint(2, 2), Qt::LeftButton, Qt::NoModifier));
    QCOMPARE(cloud.SelectedWord(), word);
    QCOMPARE(cloud.WordAt(QPoint(box.right, box.top)) == word, false); // right edge is outside
    cloud.ClearWords();
    QCOMPARE(cloud.SelectedWord(), nullptr);
}

QTEST_MAIN(CloudLayoutTest)
#include "CloudLayoutTest.moc"
