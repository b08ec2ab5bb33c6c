// Diagram pages through the kind table and a real project file, and what the report exports
// and the global find take from them.

#include "DiagramSamples.h"
#include "ResultChecks.h"
#include "editors/diagram/DiagramDocument.h"
#include "editors/diagram/DiagramPageDocument.h"
#include "editors/diagram/DiagramRenderer.h"
#include "editors/diagram/DiagramStream.h"
#include "export/PageExports.h"
#include "store/PageType.h"
#include "store/TRMData.h"

#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace kestrum;
using namespace kestrum::diagram;

namespace {

DiagramDocument colouredRing()
{
    DiagramDocument d = test::sampleRing();
    for (DiagramBlock& b : d.blocks()) {
        b.shape = BlockShape::Rectangle;
        b.gradientStart = 0x0000FF; // red all over
        b.colour = 0x0000FF;
        b.width = 40;
        b.height = 40;
        b.cells.front().text.clear();
    }
    d.links()[1].cells.front().text = QStringLiteral("0.75");
    return d;
}

} // namespace

class DiagramPageKindTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

private slots:
    void kindTableMakesADiagramDocument()
    {
        auto document = exports::pageKindTable().makeDocument(store::EditorKind::Diagram);
        QVERIFY(document);
        QVERIFY(qobject_cast<DiagramPageDocument*>(document.get()));
        const QByteArray content = DiagramStream::write(test::sampleRing());
        QString error;
        const Status read = document->readContent(content);
        error = read.error();
        QVERIFY(read);
        QByteArray out;
        const auto written = document->writeContent();
        QVERIFY2(written, qPrintable(written.error()));
        out = *written;
        QCOMPARE(out, content);
    }

    void loadingResetsAndEditingModifies()
    {
        DiagramPageDocument page;
        QSignalSpy changed(&page, &store::PageDocument::contentChanged);
        QSignalSpy reset(&page, &store::PageDocument::contentReset);
        QString error;
        const Status read2 = page.readContent(DiagramStream::write(test::sampleRing()));
        error = read2.error();
        QVERIFY(read2);
        QCOMPARE(changed.count(), 0);
        QCOMPARE(reset.count(), 1);
        page.change([](DiagramDocument& d) { d.setZoom(50); });
        QCOMPARE(changed.count(), 1);
        page.setSelection({1, 7}, {0});
        QVERIFY(page.diagram().blocks()[1].selected);
        QVERIFY(page.diagram().links()[0].selected);
        QCOMPARE(changed.count(), 1); // selecting does not modify
        // A damaged content leaves the page empty with the reason.
        const Status read3 = page.readContent(QByteArray("KSTD\x01\x00\x00\x00", 8));
        error = read3.error();
        QVERIFY(!read3);
        QVERIFY(error.startsWith(QLatin1String("damaged diagram stream")));
        QVERIFY(page.diagram().isEmpty());
        // An empty content is an empty diagram.
        const Status read4 = page.readContent({});
        error = read4.error();
        QVERIFY(read4);
        QVERIFY(page.diagram().isEmpty());
    }

    void pageRoundTripsThroughAProjectFile()
    {
        const QString file = m_dir.filePath(QStringLiteral("diagram.kst"));
        store::TRMData data;
        KVERIFY_OK(data.DBCreate(file));
        const qint32 id =
            data.AddRecord(store::PageType::Diagram, QStringLiteral("map"), {}).value();
        DiagramPageDocument page;
        DiagramDocument d = test::sampleRing();
        d.setLinkTextsVisible(false);
        d.setZoom(121);
        page.setDiagram(d);
        QVERIFY(data.SaveDiagram(id, page).value());
        data.CloseFile();

        store::TRMData again;
        KVERIFY_OK(again.DBOpen(file));
        DiagramPageDocument loaded;
        QVERIFY(again.GetDiagram(id, loaded).value());
        QVERIFY(loaded.diagram() == d);
        QVERIFY(!loaded.diagram().linkTextsVisible());
        // A missing page leaves the diagram as it was.
        QVERIFY(!again.GetDiagram(id + 100, loaded).value());
        QVERIFY(loaded.diagram() == d);
        again.CloseFile();
    }

    void pictureShowsTheBlocks()
    {
        const DiagramDocument d = colouredRing();
        const QImage image = DiagramRenderer::toImage(d);
        const QSize size = DiagramRenderer::pictureSize(d);
        QCOMPARE(image.size(), size);
        const QRectF bounds = DiagramRenderer::sceneBounds(d);
        // Block A's centre, through the picture's margin and origin.
        const QPointF centre = QPointF(20, 70) - bounds.topLeft() +
                               QPointF(DiagramRenderer::kMargin, DiagramRenderer::kMargin);
        QCOMPARE(image.pixelColor(centre.toPoint()), QColor(Qt::red));
        QCOMPARE(image.pixelColor(1, 1), QColor(Qt::white));
        // At 50 % the picture is smaller.
        DiagramDocument half = d;
        half.setZoom(50);
        QVERIFY(DiagramRenderer::pictureSize(half).width() < size.width());
    }

    void reportPiecesAndFindText()
    {
        const exports::CorePageKind* kind = exports::coreKind(store::EditorKind::Diagram);
        QVERIFY(kind);
        exports::PageSource page{7, store::PageType::Diagram, DiagramStream::write(colouredRing()),
                                 QStringLiteral("map")};
        auto html =
            kind->exports.html(page, {QStringLiteral("Report_files"), QStringLiteral("p_")});
        QVERIFY2(html.ok(), qPrintable(html.error()));
        QCOMPARE(html->html,
                 QStringLiteral("<IMG SRC=\"Report_files/p_diagram7.png\" ALT=\"Diagram\">"));
        QCOMPARE(html->files.size(), std::size_t(1));
        QVERIFY(html->files.front().second.startsWith("\x89PNG"));

        auto rtf = kind->exports.rtf(page);
        QVERIFY(rtf.ok());
        QVERIFY(rtf->startsWith("{\\rtf1"));
        QVERIFY(rtf->contains("\\pict\\pngblip"));
        QVERIFY(rtf->contains("89504e47")); // the PNG signature in hexadecimal

        auto text = kind->exports.text(page);
        QVERIFY(text.ok());
        QCOMPARE(*text, QStringLiteral("1\n0.75\n3\n4\n"));

        page.content = "KSTD";
        QVERIFY(!kind->exports.text(page).ok());
        QVERIFY(!kind->exports.html(page, {}).ok());
    }
};

QTEST_MAIN(DiagramPageKindTest)
#include "DiagramPageKindTest.moc"
