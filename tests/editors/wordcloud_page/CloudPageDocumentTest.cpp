// The word cloud page's document: the store's contract (read, write, clear, signals), round
// trips through the kind table and a project file, the fit to the editor's size, and the
// exports written from stored content.

#include "editors/wordcloud_page/CloudPageDocument.h"
#include "CloudSamples.h"
#include "ResultChecks.h"
#include "editors/wordcloud_page/CloudPageExporter.h"
#include "export/PageExports.h"
#include "store/PageType.h"
#include "store/TRMData.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace kestrum;
using namespace kestrum::wordcloud_page;
using wordcloud::CloudRect;
using wordcloud::TprWordCloud;

namespace {

// Text, size and box of every word, and which are shown.
QStringList wordLines(const TprWordCloud& cloud)
{
    QStringList out;
    for (const auto& w : cloud.Words()) {
        const CloudRect& b = w->StartingBoundsRect();
        out << QStringLiteral("%1 %2 %3,%4,%5,%6 %7")
                   .arg(w->Text())
                   .arg(w->FontSize())
                   .arg(b.left)
                   .arg(b.top)
                   .arg(b.right)
                   .arg(b.bottom)
                   .arg(w->Visible() ? QStringLiteral("shown") : QStringLiteral("hidden"));
    }
    return out;
}

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

class CloudPageDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void roundTripThroughTheKindTable()
    {
        const QByteArray stored = samples::laidOutDocument(40);
        std::unique_ptr<store::PageDocument> doc =
            exports::pageKindTable().makeDocument(store::EditorKind::WordCloud);
        QVERIFY(doc);
        QCOMPARE(doc->kind(), store::EditorKind::WordCloud);
        QVERIFY(dynamic_cast<CloudPageDocument*>(doc.get()));
        QSignalSpy changed(doc.get(), &store::PageDocument::contentChanged);
        QSignalSpy reset(doc.get(), &store::PageDocument::contentReset);
        const Status read = doc->readContent(stored);
        QVERIFY2(read, qPrintable(read.error()));
        QCOMPARE(reset.count(), 1);
        QCOMPARE(changed.count(), 0); // loading is not an edit
        const Result<QByteArray> written = doc->writeContent();
        QVERIFY2(written, qPrintable(written.error()));
        // Without a drawing area the stored places are kept: the same document comes back.
        QCOMPARE(*written, stored);
    }

    void roundTripThroughAProjectFile()
    {
        QTemporaryDir dir;
        const QString project = dir.filePath(QStringLiteral("clouds.kst"));
        const QByteArray stored = samples::laidOutDocument(30);
        qint32 page = -1;
        {
            store::TRMData data;
            data.setPageKinds(exports::pageKindTable());
            KVERIFY_OK(data.DBCreate(project));
            page = data.appendRecord(store::PageType::WordCloud, QStringLiteral("Cloud"),
                                     QByteArray(), QString())
                       .value();
            CloudPageDocument doc;
            QVERIFY(doc.readContent(stored));
            doc.cloud().SetUsePalette(true);
            doc.cloud().SetPalette(5);
            QVERIFY(data.SaveWordCloud(page, doc).value());
            data.CloseFile();
        }
        store::TRMData reopened;
        reopened.setPageKinds(exports::pageKindTable());
        KVERIFY_OK(reopened.DBOpen(project));
        CloudPageDocument again;
        QVERIFY(reopened.GetWordCloud(page, again).value());
        QVERIFY(again.cloud().UsePalette());
        QCOMPARE(int(again.cloud().Palette()), 5);
        CloudPageDocument original;
        QVERIFY(original.readContent(stored));
        QCOMPARE(wordLines(again.cloud()), wordLines(original.cloud()));
        QCOMPARE(again.cloud().CountVisibleWords(), 30);
        reopened.CloseFile();
    }

    void emptyAndDamagedContent()
    {
        CloudPageDocument doc;
        QVERIFY(doc.readContent(samples::laidOutDocument(10)));
        QCOMPARE(doc.cloud().WordCount(), 10);
        // Empty content is an empty page.
        QVERIFY(doc.readContent(QByteArray()));
        QCOMPARE(doc.cloud().WordCount(), 0);

        QVERIFY(doc.readContent(samples::laidOutDocument(10)));
        QString error;
        QSignalSpy reset(&doc, &store::PageDocument::contentReset);
        const Status read2 = doc.readContent("<WordCloud version=\"2.0\"><Words/></WordCloud>");
        error = read2.error();
        QVERIFY(!read2);
        QVERIFY(!error.isEmpty());
        QCOMPARE(doc.cloud().WordCount(), 0); // left cleared
        QCOMPARE(reset.count(), 1);
        error.clear();
        const Status read3 = doc.readContent(QByteArray("\x00\xff garbage", 10));
        error = read3.error();
        QVERIFY(!read3);
        QVERIFY(!error.isEmpty());
    }

    void fitToClientScalesAndCentres()
    {
        CloudPageDocument doc;
        QVERIFY(doc.readContent(samples::laidOutDocument(20, {400, 300})));
        const CloudRect area = doc.cloud().StartingCanvasRect();
        QCOMPARE(area, (CloudRect{10, 10, 390, 290}));
        const QStringList before = wordLines(doc.cloud());
        const CloudRect first = doc.cloud().Word(0)->BoundsRect();

        // Twice as wide, as high: s = 2; the picture (760 x 560) fills the new area.
        doc.fitToClient({780, 580});
        QCOMPARE(doc.cloud().StartingCanvasRect(), (CloudRect{10, 10, 770, 570}));
        const CloudRect scaled = doc.cloud().Word(0)->BoundsRect();
        QCOMPARE(scaled.left, 10 + 2 * (first.left - 10));
        QCOMPARE(scaled.right, 10 + 2 * (first.right - 10));
        QCOMPARE(scaled.bottom, 10 + 2 * (first.bottom - 10));

        // Wider only: the smaller ratio (height, 1) wins and the picture is centred across.
        CloudPageDocument wide;
        QVERIFY(wide.readContent(samples::laidOutDocument(20, {400, 300})));
        wide.fitToClient({600, 300});
        const CloudRect moved = wide.cloud().Word(0)->BoundsRect();
        QCOMPARE(moved.width(), first.width());
        QCOMPARE(moved.left, first.left + 100); // (580 - 380) / 2
        QCOMPARE(moved.top, first.top);

        // Nothing is marked modified by a fit, and shrunk words may touch but never cover
        // each other.
        QSignalSpy changed(&doc, &store::PageDocument::contentChanged);
        doc.fitToClient({300, 200});
        QCOMPARE(changed.count(), 0);
        for (int i = 0; i < doc.cloud().WordCount(); ++i) {
            for (int j = i + 1; j < doc.cloud().WordCount(); ++j) {
                const CloudRect& a = doc.cloud().Word(i)->BoundsRect();
                const CloudRect& b = doc.cloud().Word(j)->BoundsRect();
                QVERIFY(a.right <= b.left || b.right <= a.left || a.bottom <= b.top ||
                        b.bottom <= a.top);
            }
        }
        QVERIFY(before.size() == wordLines(doc.cloud()).size());
    }

    void exportEveryFormat_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("format"); // image format; empty for text formats
        QTest::newRow("png") << "c.png" << QByteArray("png");
        QTest::newRow("bmp") << "c.bmp" << QByteArray("bmp");
        QTest::newRow("jpg") << "c.jpg" << QByteArray("jpeg");
        QTest::newRow("jpeg upper case") << "c.JPEG" << QByteArray("jpeg");
        QTest::newRow("svg") << "c.svg" << QByteArray("svg");
        QTest::newRow("xml") << "c.xml" << QByteArray();
    }
    void exportEveryFormat()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, format);
        QTemporaryDir dir;
        const QByteArray stored = samples::laidOutDocument(25, {500, 320});
        const QString out = dir.filePath(name);
        exports::PageSource page{1, store::PageType::WordCloud, stored, QStringLiteral("C")};
        const Status status = exports::exportPage(page, out);
        QVERIFY2(status.ok(), qPrintable(status.error()));
        const QByteArray bytes = readFile(out);
        if (format.isEmpty()) {
            QCOMPARE(bytes, stored);
        } else if (format == "svg") {
            QVERIFY(bytes.contains("<svg"));
            QVERIFY(bytes.contains("width=\"500\" height=\"320\""));
        } else {
            QImage image;
            QVERIFY(image.loadFromData(bytes, format.constData()));
            // Drawn at the size it was laid out for.
            QCOMPARE(image.size(), QSize(500, 320));
        }
        // Nothing but the file itself is left in the folder.
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{name});
    }

    void exportRefusesDamagedContent()
    {
        QTemporaryDir dir;
        exports::PageSource page{1, store::PageType::WordCloud, "<WordCloud version=\"9\"/>", {}};
        for (const QString& name : {QStringLiteral("c.png"), QStringLiteral("c.xml")}) {
            const Status status = exports::exportPage(page, dir.filePath(name));
            QVERIFY(!status.ok());
            QVERIFY(!QFile::exists(dir.filePath(name)));
        }
        const Status unknown =
            exports::exportPage({1, store::PageType::WordCloud, samples::laidOutDocument(3), {}},
                                dir.filePath("c.txt"));
        QVERIFY(!unknown.ok());
        QVERIFY(unknown.error().contains(QLatin1String(".svg")));
    }

    void reportPieces()
    {
        const exports::CorePageKind* kind = exports::coreKind(store::EditorKind::WordCloud);
        QVERIFY(kind);
        const QByteArray stored = samples::laidOutDocument(12, {300, 200});
        const exports::PageSource page{42, store::PageType::WordCloud, stored,
                                       QStringLiteral("A <cloud>")};

        const auto html =
            kind->exports.html(page, {QStringLiteral("R_files"), QStringLiteral("p_")});
        QVERIFY(html.ok());
        QCOMPARE(html->files.size(), std::size_t(1));
        QCOMPARE(html->files[0].first, QStringLiteral("p_cloud42.png"));
        QVERIFY(html->html.contains(QLatin1String("SRC=\"R_files/p_cloud42.png\"")));
        QVERIFY(html->html.contains(QLatin1String("A &lt;cloud&gt;")));
        QImage picture;
        QVERIFY(picture.loadFromData(html->files[0].second, "PNG"));
        QCOMPARE(picture.size(), QSize(300, 200));

        const auto rtf = kind->exports.rtf(page);
        QVERIFY(rtf.ok());
        QVERIFY(rtf->startsWith("{\\rtf1"));
        QVERIFY(rtf->contains("\\pngblip\\picw300\\pich200\\picwgoal4500\\pichgoal3000"));
        // The hexadecimal data is the PNG signature first.
        QVERIFY(rtf->contains("89504e470d0a1a0a"));

        const auto text = kind->exports.text(page);
        QVERIFY(text.ok());
        QStringList expected;
        for (int i = 0; i < 12; ++i) {
            expected << QStringLiteral("w%1").arg(i);
        }
        QCOMPARE(text->split(QLatin1Char('\n'), Qt::SkipEmptyParts), expected);
    }
};

QTEST_MAIN(CloudPageDocumentTest)
#include "CloudPageDocumentTest.moc"
