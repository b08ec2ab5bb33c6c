// The layout that runs on another thread: the same places as a layout on the cloud itself,
// progress, a cancel that gives a sparser cloud, and an abandoned layout that ends soon.

#include "editors/wordcloud_page/CloudLayoutJob.h"
#include "CloudSamples.h"

#include <QTest>
#include <QThread>

using namespace kestrum;
using namespace kestrum::wordcloud_page;
using wordcloud::TprWordCloud;

namespace {

QStringList places(const TprWordCloud& cloud)
{
    QStringList out;
    for (const auto& w : cloud.Words()) {
        const auto& b = w->BoundsRect();
        out << QStringLiteral("%1 %2 %3 %4 %5 %6 %7")
                   .arg(w->Text())
                   .arg(w->FontSize())
                   .arg(b.left)
                   .arg(b.top)
                   .arg(b.right)
                   .arg(b.bottom)
                   .arg(w->Visible());
    }
    return out;
}

} // namespace

class CloudLayoutJobTest : public QObject
{
    Q_OBJECT

private slots:
    void sameLayoutAsOnTheCloudItself()
    {
        for (const quint64 seed : {1ull, 5ull, 99ull}) {
            TprWordCloud direct;
            samples::fillCloud(direct, 80, {420, 300}, seed);
            direct.SetCloudShape(TprWordCloud::Ellipse);
            direct.GenerateCloud(true);

            TprWordCloud shown;
            samples::fillCloud(shown, 80, {420, 300}, seed);
            shown.SetCloudShape(TprWordCloud::Ellipse);
            shown.SetUsePalette(true);
            shown.SetPalette(3);
            CloudLayoutJob job(shown);
            QThread* thread = QThread::create([&job] { job.run(); });
            thread->start();
            QVERIFY(thread->wait(60000));
            delete thread;
            QVERIFY(job.finished());
            QCOMPARE(job.progress(), 100);
            // The shown cloud is untouched until the result is applied.
            QCOMPARE(shown.CountVisibleWords(), 0);
            job.applyTo(shown);
            QCOMPARE(places(shown), places(direct));
            QCOMPARE(shown.CountVisibleWords(), direct.CountVisibleWords());
            QCOMPARE(shown.CurrentCoverage(), direct.CurrentCoverage());
            QCOMPARE(shown.StartingCanvasRect(), direct.StartingCanvasRect());
            // Its own options stay.
            QVERIFY(shown.UsePalette());
            QCOMPARE(int(shown.Palette()), 3);
        }
    }

    void wordsKeepTheirOwnStartOption()
    {
        // Words made while the cloud started words at the centre, then the option turned off:
        // the layout still starts them at the centre, where the heaviest one stays.
        TprWordCloud shown;
        samples::fillCloud(shown, 30, {420, 300}, 3);
        shown.SetPlaceCenter(false);
        CloudLayoutJob job(shown);
        job.run();
        job.applyTo(shown);
        for (const auto& word : shown.Words()) {
            QVERIFY(word->PlaceCenter());
        }
        const auto& first = shown.Words().front()->BoundsRect();
        const auto area = shown.GetCanvasDimension();
        QVERIFY(shown.Words().front()->Visible());
        QVERIFY2(qAbs((first.left + first.right) / 2 - (area.left + area.right) / 2) <= 1 &&
                     qAbs((first.top + first.bottom) / 2 - (area.top + area.bottom) / 2) <= 1,
                 qPrintable(QStringLiteral("%1 %2 %3 %4")
                                .arg(first.left)
                                .arg(first.top)
                                .arg(first.right)
                                .arg(first.bottom)));
    }

    void cancelGivesASparserCloud()
    {
        // A coverage at which the first run places every word.
        TprWordCloud full;
        samples::fillCloud(full, 120, {400, 300});
        full.SetCoverage(0.4f);
        QVERIFY(full.GenerateCloud(true));
        QCOMPARE(full.CurrentCoverage(), 0.4f);

        TprWordCloud shown;
        samples::fillCloud(shown, 120, {400, 300});
        shown.SetCoverage(0.4f);
        CloudLayoutJob job(shown);
        // Cancelled before the first word: that run stops after it, and the retry at five
        // points less coverage runs to its end.
        job.requestCancel();
        job.run();
        job.applyTo(shown);
        QCOMPARE(shown.CountVisibleWords(), 120);
        QVERIFY(qAbs(shown.CurrentCoverage() - 0.35f) < 0.001f);
        qint64 fullArea = 0;
        qint64 shownArea = 0;
        for (int i = 0; i < 120; ++i) {
            fullArea += full.Word(i)->BoundsRect().area();
            shownArea += shown.Word(i)->BoundsRect().area();
        }
        QVERIFY(shownArea < fullArea);
    }

    void abandonedLayoutEndsSoon()
    {
        TprWordCloud shown;
        samples::fillCloud(shown, 300, {600, 400});
        CloudLayoutJob job(shown);
        job.abandon();
        // Every run stops after its first word: the coverage falls to nothing.
        QVERIFY(!job.run());
        QVERIFY(job.result().CurrentCoverage() <= 0.0f);
        QVERIFY(job.result().CountVisibleWords() <= 1);
    }
};

QTEST_MAIN(CloudLayoutJobTest)
#include "CloudLayoutJobTest.moc"
