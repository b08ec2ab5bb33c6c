// Every registered page kind, headless: its content goes through its own document and back
// unchanged, through a real project file, and the registry's rules hold (one entry per kind,
// every page type claimed once, import extensions and export formats reachable).

#include "ResultChecks.h"
#include "editors/text/TextExporter.h"
#include "export/PageExports.h"
#include "store/PageDocument.h"
#include "store/PageTable.h"
#include "store/TRMData.h"

#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace kestrum;

namespace {

// An empty page of the kind as its document writes it once it has read it back (a fresh
// document may write its empty content in a shorter form).
QByteArray canonicalContent(const store::PageKind& kind)
{
    std::unique_ptr<store::PageDocument> fresh = kind.makeDocument();
    const Result<QByteArray> bytes = fresh->writeContent();
    if (!bytes) {
        qWarning("%s: %s", qPrintable(kind.name), qPrintable(bytes.error()));
        return {};
    }
    std::unique_ptr<store::PageDocument> reread = kind.makeDocument();
    if (const Status read = reread->readContent(*bytes); !read) {
        qWarning("%s: %s", qPrintable(kind.name), qPrintable(read.error()));
        return {};
    }
    const Result<QByteArray> again = reread->writeContent();
    if (!again) {
        qWarning("%s: %s", qPrintable(kind.name), qPrintable(again.error()));
        return {};
    }
    return *again;
}

} // namespace

class PageKindRegistryTest : public QObject
{
    Q_OBJECT
private slots:
    void everyKindIsRegisteredOnce()
    {
        QSet<int> kinds;
        QSet<qint32> pageTypes;
        for (const exports::CorePageKind& entry : exports::corePageKinds()) {
            const store::PageKind& kind = entry.page;
            QVERIFY2(!kinds.contains(int(kind.kind)), qPrintable(kind.name));
            kinds.insert(int(kind.kind));
            QVERIFY(!kind.name.isEmpty());
            QVERIFY2(kind.makeDocument, qPrintable(kind.name));
            QVERIFY(!kind.pageTypes.empty());
            for (qint32 type : kind.pageTypes) {
                QVERIFY2(!pageTypes.contains(type), qPrintable(kind.name));
                pageTypes.insert(type);
                QCOMPARE(store::editorKindFor(type), kind.kind);
                QCOMPARE(exports::pageKindTable().forPageType(type),
                         exports::pageKindTable().find(kind.kind));
            }
            std::unique_ptr<store::PageDocument> document = kind.makeDocument();
            QCOMPARE(document->kind(), kind.kind);
            for (const exports::PageFormat& format : entry.exports.formats) {
                QVERIFY(!format.extensions.isEmpty());
                QVERIFY(format.write);
                for (const QString& ext : format.extensions) {
                    QCOMPARE(exports::findPageFormat(kind.pageTypes.front(), ext), &format);
                }
            }
        }
        // Every kind with an editor is in the table.
        QCOMPARE(kinds.size(), store::kEditorKindCount - 1);
    }

    void filesBecomePagesOfTheirKind_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("pageType");
        QTest::newRow("rtf") << "a.rtf" << int(store::PageType::Text);
        QTest::newRow("no extension") << "README" << int(store::PageType::Text);
        QTest::newRow("csv") << "b.CSV" << int(store::PageType::Grid);
        QTest::newRow("grid2") << "c.grid2" << int(store::PageType::Grid);
        QTest::newRow("native chart") << "d.wsx" << int(store::PageType::Chart);
        QTest::newRow("png") << "e.png" << int(store::PageType::Image);
        QTest::newRow("jpeg") << "f.jpeg" << int(store::PageType::Image);
        // Substring rule: ".T" is in ".TEE" before ".TAB"; ".W" in ".WSX" before ".WMF".
        QTest::newRow("short T") << "g.t" << int(store::PageType::Chart);
        QTest::newRow("short W") << "h.w" << int(store::PageType::Chart);
        QTest::newRow("short G") << "i.g" << int(store::PageType::Grid);
    }
    void filesBecomePagesOfTheirKind()
    {
        QFETCH(QString, file);
        QFETCH(int, pageType);
        QCOMPARE(exports::pageKindTable().pageTypeForFile(file), pageType);
    }

    void everyKindRoundTripsThroughItsDocumentAndTheStore()
    {
        QTemporaryDir dir;
        store::TRMData data;
        data.setPageKinds(exports::pageKindTable());
        KVERIFY_OK(data.DBCreate(dir.filePath(QStringLiteral("kinds.kst"))));
        for (const store::PageKind& kind : exports::pageKindTable().kinds()) {
            const QByteArray content = canonicalContent(kind);
            // The document reads what it wrote and writes it again byte for byte.
            std::unique_ptr<store::PageDocument> first = kind.makeDocument();
            const Status read = first->readContent(content);
            QVERIFY2(read, qPrintable(kind.name + ": " + read.error()));
            const Result<QByteArray> again = first->writeContent();
            QVERIFY2(again, qPrintable(again.error()));
            QCOMPARE(*again, content);

            // Through a project file: saved from one document, loaded into another.
            const qint32 id = data.AddRecord(kind.pageTypes.front(), kind.name, {}).value();
            QVERIFY(data.savePage(id, *first).value());
            std::unique_ptr<store::PageDocument> second = kind.makeDocument();
            QVERIFY(data.loadPage(id, *second).value());
            const Result<QByteArray> loaded = second->writeContent();
            QVERIFY2(loaded, qPrintable(loaded.error()));
            QCOMPARE(*loaded, content);
            // Reading a page hands out its record and leaves the current record alone.
            const qint32 current = data.currentPageId();
            const std::optional<store::StoredPage> page = data.readPage(1).value();
            QVERIFY(page);
            QCOMPARE(data.currentPageId(), current);
        }
        data.CloseFile();
    }

    void exportsRefuseUnknownFormatsWithTheKnownOnes()
    {
        exports::PageSource page;
        page.pageId = 7;
        page.pageType = store::PageType::Grid;
        QTemporaryDir dir;
        const Status status = exports::exportPage(page, dir.filePath(QStringLiteral("x.pdfx")));
        QVERIFY(!status);
        QVERIFY2(status.error().contains(QLatin1String(".csv")), qPrintable(status.error()));
        QVERIFY(!QFileInfo::exists(dir.filePath(QStringLiteral("x.pdfx"))));
        const Status written = exports::exportPage(page, dir.filePath(QStringLiteral("x.csv")));
        QVERIFY2(written, qPrintable(written.error()));
    }

    void oversizeTextPagesAreRefusedBeforeReading()
    {
        // Over the bound by one byte; refused before any of it is read, in every format and
        // for the report's pieces alike, with the bound in the message.
        exports::PageSource page;
        page.pageId = 9;
        page.pageType = store::PageType::TextVariant6;
        page.content = "{\\rtf1 ";
        page.content.append(QByteArray(text::TextExporter::kMaxPageBytes - 7, 'w'));
        page.content.append('}');
        QCOMPARE(page.content.size(), text::TextExporter::kMaxPageBytes + 1);
        QTemporaryDir dir;
        for (const QString& extension : exports::exportExtensions(page.pageType)) {
            const QString out = dir.filePath(QStringLiteral("big.") + extension);
            const Status status = exports::exportPage(page, out);
            QVERIFY2(!status, qPrintable(extension));
            QVERIFY2(status.error().contains(QLatin1String("too large to export")) &&
                         status.error().contains(QLatin1String("65 MiB")) &&
                         status.error().contains(QLatin1String("up to 64 MiB")),
                     qPrintable(status.error()));
            QVERIFY(!QFileInfo::exists(out));
        }
        const exports::PageExports& pieces = exports::coreKind(store::EditorKind::Text)->exports;
        QVERIFY(!pieces.text(page));
        QVERIFY(!pieces.rtf(page));
        QVERIFY(!pieces.html(page, {}));
    }

    void textAndGridGiveReportPiecesAndSearchableText()
    {
        for (const auto kind : {store::EditorKind::Text, store::EditorKind::Grid}) {
            const exports::CorePageKind* entry = exports::coreKind(kind);
            QVERIFY(entry && entry->exports.html && entry->exports.rtf && entry->exports.text);
        }
        // A table page: its cells are found, its fragment is a table, its RTF a document.
        std::unique_ptr<store::PageDocument> grid =
            exports::pageKindTable().makeDocument(store::EditorKind::Grid);
        QTemporaryDir dir;
        const QString csv = dir.filePath(QStringLiteral("t.csv"));
        {
            QFile f(csv);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("Code,Count\nTrust,12\n");
        }
        QString error;
        const Status imported = grid->importFile(csv);
        error = imported.error();
        QVERIFY2(imported, qPrintable(imported.error()));
        exports::PageSource page;
        page.pageType = store::PageType::Grid;
        const Result<QByteArray> content = grid->writeContent();
        QVERIFY2(content, qPrintable(content.error()));
        page.content = *content;
        const exports::PageExports& pieces = exports::coreKind(store::EditorKind::Grid)->exports;
        const Result<QString> text = pieces.text(page);
        QVERIFY(text);
        QVERIFY2(text->contains(QLatin1String("Trust\t12")), qPrintable(*text));
        const Result<exports::HtmlFragment> html = pieces.html(page, {});
        QVERIFY(html);
        QVERIFY(html->html.contains(QLatin1String("<TABLE"), Qt::CaseInsensitive));
        const Result<QByteArray> rtf = pieces.rtf(page);
        QVERIFY(rtf && rtf->startsWith("{\\rtf1"));
        // Damaged content is an error value, not an exception.
        page.content = "KSTG\x01\xFF";
        QVERIFY(!pieces.text(page));
    }
};

QTEST_GUILESS_MAIN(PageKindRegistryTest)
#include "PageKindRegistryTest.moc"
