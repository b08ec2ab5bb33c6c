// Timeline pages through the core's kind table and through a real project file, damaged page
// texts, and the page's exports for reports and find.

#include "ResultChecks.h"
#include "editors/timeline/TimelinePageDocument.h"
#include "editors/timeline/TimelineText.h"
#include "export/PageExports.h"
#include "store/TRMData.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace kestrum;
using namespace kestrum::timeline;

namespace {

const QByteArray kPage =
    "BackGround\tclNavy\t$00FFF0D2\r\nLineBar\t$00FFEFE3\t$00FFD2AF\r\nIndicator\t$00AAD9FF\t0\r\n"
    "Timeline Font\t Segoe UI 8\r\nEvent font\t Segoe UI 8\r\nImage\t16\t16\r\n"
    "Max Range\t36526\t45658\r\nRange\t40000\t42000\r\n"
    "Event\tKick-off\tFirst meeting\t40634.5\tInterview 04\bpar. 3\bInterviews\b2\t1\t1\r\n"
    "Event\tReview\tSecond meeting\t41000\t\t1\t1";

} // namespace

class TimelinePageKindTest : public QObject
{
    Q_OBJECT

private slots:
    void roundTripThroughTheKindTable()
    {
        std::unique_ptr<store::PageDocument> doc =
            exports::pageKindTable().makeDocument(store::EditorKind::Timeline);
        QVERIFY(doc);
        QVERIFY(dynamic_cast<TimelinePageDocument*>(doc.get()));
        QSignalSpy reset(doc.get(), &store::PageDocument::contentReset);
        QSignalSpy changed(doc.get(), &store::PageDocument::contentChanged);
        QString error;
        const Status read = doc->readContent(kPage);
        error = read.error();
        QVERIFY(read);
        QCOMPARE(reset.count(), 1);
        QCOMPARE(changed.count(), 0); // loading is not an edit
        QByteArray out;
        const auto written = doc->writeContent();
        QVERIFY2(written, qPrintable(written.error()));
        out = *written;
        QCOMPARE(out, kPage); // a page written by this program reads and writes unchanged
        QCOMPARE(exports::pageKindTable().pageTypeForFile(QStringLiteral("x.png")),
                 store::PageType::Image);
    }

    void roundTripThroughAProjectFile()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("p.kst"));
        qint32 id = -1;
        {
            store::TRMData data;
            data.setPageKinds(exports::pageKindTable());
            KVERIFY_OK(data.DBCreate(file));
            id =
                data.AddRecord(store::PageType::Timeline, QStringLiteral("Milestones"), {}).value();
            TimelinePageDocument doc;
            QVERIFY(doc.readContent(kPage));
            doc.model().events[1].annotation = QStringLiteral("Édition");
            QVERIFY(data.SaveTimeLine(id, doc).value());
            data.CloseFile();
        }
        store::TRMData data;
        data.setPageKinds(exports::pageKindTable());
        KVERIFY_OK(data.DBOpen(file));
        TimelinePageDocument doc;
        QVERIFY(data.GetTimeLine(id, doc).value());
        QCOMPARE(doc.model().events.size(), std::size_t(2));
        QCOMPARE(doc.model().events[1].annotation, QString::fromUtf8("Édition"));
        QCOMPARE(doc.model().links[0], QStringLiteral("Interview 04\tpar. 3\tInterviews\t2"));
        QCOMPARE(doc.model().backgroundColor, common::clNavy);
        QVERIFY(doc.loadWarning().isEmpty());

        // A page that is not there: the events go, the range stays.
        QVERIFY(!data.GetTimeLine(id + 100, doc).value());
        QVERIFY(doc.model().events.empty());
        QVERIFY(doc.model().links.isEmpty());
        QCOMPARE(doc.model().rangeFrom, 40000.0);
    }

    void damagedTextsKeepWhatWasReadAndSayWhy()
    {
        TimelinePageDocument doc;
        QString error;
        QVERIFY(doc.readContent("Range\t1\t2\r\nEvent\ta\tb\t40000\r\nEvent\tc\td\tyesterday\r\n"
                                "Event\te\tf\t40001"));
        QCOMPARE(doc.model().events.size(), std::size_t(2));
        QCOMPARE(doc.model().rangeTo, 2.0);
        QVERIFY(doc.loadWarning().contains(QLatin1String("Line 3: 'yesterday'")));

        // A text with more events than a page holds is refused whole.
        QByteArray huge;
        for (int i = 0; i < 200001; ++i) {
            huge += "Event\t\t\t1\n";
        }
        const Status read2 = doc.readContent(huge);
        error = read2.error();
        QVERIFY(!read2);
        QVERIFY2(error.contains(QLatin1String("more than 200000 events")),
                 qPrintable(read2.error()));
        QVERIFY(doc.model().events.empty());

        const Status read3 = doc.readContent(QByteArray());
        error = read3.error();
        QVERIFY(read3); // an empty content is an empty page
        QVERIFY(doc.model().events.empty());
        QCOMPARE(doc.model().rangeFrom, 28491.0);
    }

    void reportAndFindExports()
    {
        const exports::CorePageKind* kind = exports::coreKind(store::EditorKind::Timeline);
        QVERIFY(kind);
        exports::PageSource page{12, store::PageType::Timeline, kPage, QStringLiteral("t")};
        const auto text = kind->exports.text(page);
        QVERIFY(text.ok());
        QCOMPARE(*text, QStringLiteral("Kick-off\tFirst meeting\nReview\tSecond meeting\n"));
        const auto html =
            kind->exports.html(page, {QStringLiteral("Report_files"), QStringLiteral("p_")});
        QVERIFY(html.ok());
        QCOMPARE(html->html.left(44),
                 QStringLiteral("<IMG SRC=\"Report_files/p_timeline12.png\" WID"));
        QCOMPARE(html->files.size(), std::size_t(1));
        QVERIFY(html->files[0].second.startsWith("\x89PNG"));
        const auto rtf = kind->exports.rtf(page);
        QVERIFY(rtf.ok());
        QVERIFY(rtf->contains("{\\pict\\pngblip\\picw1000\\pich420"));
        QVERIFY(rtf->contains("89504e47")); // the PNG signature, in hexadecimal

        page.content = "Range\tx\t1";
        const auto failed = kind->exports.text(page);
        QVERIFY(!failed.ok());
        QVERIFY(failed.error().contains(QLatin1String("page 12")));
    }
};

QTEST_MAIN(TimelinePageKindTest)
#include "TimelinePageKindTest.moc"
