// The text page document: format detection, the load/edit rules of contentChanged, imports by
// extension, the store's Save/Get through a real project file, and the exports.

#include "editors/text/TextPageDocument.h"
#include "ResultChecks.h"
#include "editors/text/DocumentPictures.h"
#include "editors/text/HiddenTextObject.h"
#include "editors/text/ListItemNumbers.h"
#include "editors/text/ListNumbering.h"
#include "editors/text/TextExporter.h"
#include "store/PageKind.h"
#include "store/PageTable.h"
#include "store/PageType.h"
#include "store/TRMData.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QtTest>

using namespace kestrum;
using namespace kestrum::text;
using Format = TextFormatDetector::Format;

namespace {

QString writeFile(const QTemporaryDir& dir, const QString& name, const QByteArray& bytes)
{
    const QString path = dir.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("cannot write %s", qPrintable(path));
    }
    file.write(bytes);
    return path;
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

QString plain(TextPageDocument& doc)
{
    QString text = doc.textDocument()->toPlainText();
    text.remove(QChar::ObjectReplacementCharacter);
    return text;
}

const QByteArray kRtf = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\b Bold\\b0  words\\par}";

// A converter that never answers, and one that fails.
QString script(const QTemporaryDir& dir, const QString& name, const QByteArray& body)
{
    const QString path = writeFile(dir, name, "#!/bin/sh\n" + body + "\n");
    QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::ExeOwner);
    return path;
}

} // namespace

class TextPageDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void detection_data();
    void detection();
    void readsEachFormat_data();
    void readsEachFormat();
    void loadingIsNotAnEdit();
    void editsAreReported();
    void undoStartsAfterLoading();
    void importByExtension_data();
    void importByExtension();
    void converterMissingTimesOutOrFails();
    void storeRoundTrip();
    void storeMissingPageLeavesTheEditor();
    void htmlPageFromTheStoreLoads();
    void exports();
    void htmlForReports();
    void plainTextExport();
    void longListsNumberOn();
    void itemNumbersMatchTheLists();
};

// The store imports text files through text page documents.
static store::PageKindTable textKinds()
{
    store::PageKind kind;
    kind.kind = store::EditorKind::Text;
    kind.pageTypes = {store::PageType::Text};
    kind.makeDocument = [] { return std::make_unique<TextPageDocument>(); };
    return store::PageKindTable({kind});
}

void TextPageDocumentTest::detection_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("format");
    QTest::newRow("empty") << QByteArray() << int(Format::Empty);
    QTest::newRow("blanks") << QByteArray("  \r\n ") << int(Format::Empty);
    QTest::newRow("rtf") << kRtf << int(Format::Rtf);
    QTest::newRow("rtf after BOM and blanks")
        << QByteArray("\xEF\xBB\xBF\n {\\rtf1 x}") << int(Format::Rtf);
    QTest::newRow("html") << QByteArray("<!DOCTYPE html><html><body><p>x</p></body></html>")
                          << int(Format::Html);
    QTest::newRow("html fragment") << QByteArray("<p>Some <b>bold</b></p>") << int(Format::Html);
    const QString utf16 = QStringLiteral("<html><body>\u00e9</body></html>");
    QTest::newRow("html in UTF-16")
        << QByteArray("\xFF\xFE") +
               QByteArray(reinterpret_cast<const char*>(utf16.utf16()), utf16.size() * 2)
        << int(Format::Html);
    QTest::newRow("text with a less-than")
        << QByteArray("<3 is not a tag\nsecond line") << int(Format::PlainText);
    QTest::newRow("plain") << QByteArray("Just words, {braces} and \\backslashes.")
                           << int(Format::PlainText);
    QTest::newRow("binary noise") << QByteArray("\x01\x02\xFF\xFE\x00zz", 7)
                                  << int(Format::PlainText);
}

void TextPageDocumentTest::detection()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, format);
    QCOMPARE(int(TextFormatDetector::detect(bytes)), format);
}

void TextPageDocumentTest::readsEachFormat_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("format");
    QTest::newRow("rtf") << kRtf << QStringLiteral("Bold words") << int(Format::Rtf);
    QTest::newRow("html")
        << QByteArray(
               "<html><head><meta "
               "charset=\"windows-1250\"></head><body><p>Za\xbf\xf3\xb3\xe6</p></body></html>")
        << QStringLiteral("Zażółć") << int(Format::Html);
    QTest::newRow("utf-8 text") << QByteArray("caf\xc3\xa9\nline") << QStringLiteral("café\nline")
                                << int(Format::PlainText);
    QTest::newRow("windows-1252 text")
        << QByteArray("caf\xe9 \x80") << QStringLiteral("café €") << int(Format::PlainText);
    QTest::newRow("utf-16 text") << QByteArray("\xFF\xFEh\0i\0", 6) << QStringLiteral("hi")
                                 << int(Format::PlainText);
    QTest::newRow("empty") << QByteArray() << QString() << int(Format::Empty);
}

void TextPageDocumentTest::readsEachFormat()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QFETCH(int, format);
    TextPageDocument doc;
    const Status read = doc.readContent(bytes);
    QVERIFY2(read, qPrintable(read.error()));
    QCOMPARE(plain(doc), text);
    QCOMPARE(int(doc.loadedFormat()), format);
    // Whatever was read is written as RTF.
    QByteArray out;
    const auto written = doc.writeContent();
    QVERIFY2(written, qPrintable(written.error()));
    out = *written;
    QVERIFY(out.startsWith("{\\rtf1"));
    TextPageDocument again;
    const Status read2 = again.readContent(out);
    QVERIFY(read2);
    QCOMPARE(plain(again), text);
}

void TextPageDocumentTest::loadingIsNotAnEdit()
{
    QTemporaryDir dir;
    TextPageDocument doc;
    QSignalSpy changed(&doc, &store::PageDocument::contentChanged);
    const Status read = doc.readContent(kRtf);
    QVERIFY(read);
    doc.clear();
    const Status read2 = doc.readContent("<p>html</p>");
    QVERIFY(read2);
    const Status imported = doc.importFile(writeFile(dir, "a.rtf", kRtf));
    QVERIFY(imported);
    const Status imported2 = doc.importFile(writeFile(dir, "b.txt", "text"));
    QVERIFY(imported2);
    const Status loaded = doc.loadFile(writeFile(dir, "c.htm", "<p>c</p>"));
    QVERIFY(loaded);
    QCOMPARE(changed.count(), 0);
    QVERIFY(!doc.textDocument()->isModified());
}

void TextPageDocumentTest::editsAreReported()
{
    TextPageDocument doc;
    const Status read = doc.readContent(kRtf);
    QVERIFY(read);
    QSignalSpy changed(&doc, &store::PageDocument::contentChanged);
    QTextCursor cursor(doc.textDocument());
    cursor.insertText(QStringLiteral("typed "));
    QVERIFY(changed.count() >= 1);
    const int afterTyping = changed.count();
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    cursor.select(QTextCursor::WordUnderCursor);
    cursor.mergeCharFormat(bold);
    QVERIFY(changed.count() > afterTyping);
    const int afterFormat = changed.count();
    PageLayout layout = doc.pageLayout();
    layout.marginLeft += 100;
    doc.setPageLayout(layout);
    QCOMPARE(changed.count(), afterFormat + 1);
    doc.setPageLayout(layout); // no change, no report
    QCOMPARE(changed.count(), afterFormat + 1);
}

void TextPageDocumentTest::undoStartsAfterLoading()
{
    TextPageDocument doc;
    QTextCursor(doc.textDocument()).insertText(QStringLiteral("page one edit"));
    QVERIFY(doc.textDocument()->isUndoAvailable());
    const Status read = doc.readContent(kRtf);
    QVERIFY(read);
    QVERIFY(!doc.textDocument()->isUndoAvailable());
    QVERIFY(doc.textDocument()->isUndoRedoEnabled());
}

void TextPageDocumentTest::importByExtension_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("loaded");
    QTest::addColumn<QString>("text");
    QTest::newRow(".rtf") << "notes.rtf" << kRtf << true << QStringLiteral("Bold words");
    QTest::newRow(".RTF upper case") << "NOTES.RTF" << kRtf << true << QStringLiteral("Bold words");
    QTest::newRow(".rtf that is plain text") << "mislabelled.rtf" << QByteArray("plain after all")
                                             << true << QStringLiteral("plain after all");
    QTest::newRow(".txt keeps RTF as text")
        << "raw.txt" << kRtf << true << QString::fromLatin1(kRtf);
    QTest::newRow(".txt") << "list.txt" << QByteArray("one\ntwo") << true
                          << QStringLiteral("one\ntwo");
    QTest::newRow(".tx (a part of .TXT)")
        << "odd.tx" << QByteArray("short") << true << QStringLiteral("short");
    QTest::newRow("other extension") << "data.xyz" << QByteArray("zzz") << false << QString();
    QTest::newRow("no extension") << "README" << QByteArray("zzz") << false << QString();
}

void TextPageDocumentTest::importByExtension()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(bool, loaded);
    QFETCH(QString, text);
    QTemporaryDir dir;
    TextPageDocument doc;
    QString error;
    const Status imported = doc.importFile(writeFile(dir, name, bytes));
    error = imported.error();
    QCOMPARE(imported.ok(), loaded);
    QCOMPARE(plain(doc), text);
    if (!loaded) {
        QVERIFY(error.contains(name));
        QVERIFY(error.contains(QStringLiteral("RTF, TXT, DOC, WPD and HTML")));
    }
}

void TextPageDocumentTest::converterMissingTimesOutOrFails()
{
    QTemporaryDir dir;
    const QString doc1 = writeFile(dir, "report.doc", "not really a doc");
    const QString html = writeFile(dir, "page.HTML", "<p>x</p>");
    TextPageDocument doc;
    QString error;

    WordConverterOptions missing;
    missing.program = dir.filePath(QStringLiteral("no-such-soffice"));
    doc.setConverterOptions(missing);
    const Status read = doc.readContent(kRtf);
    error = read.error();
    QVERIFY(read);
    const Status imported = doc.importFile(doc1);
    error = imported.error();
    QVERIFY(!imported);
    QVERIFY(error.contains(QStringLiteral("no word-processor converter is installed")));
    QVERIFY(error.contains(QStringLiteral("report.doc")));
    QCOMPARE(plain(doc), QString()); // nothing loaded: an empty page
    const Status imported2 = doc.importFile(html);
    error = imported2.error();
    QVERIFY(!imported2);
    QVERIFY(error.contains(QStringLiteral("page.HTML")));

    WordConverterOptions slow;
    slow.program = script(dir, "slow-soffice", "sleep 30");
    slow.timeoutMs = 400;
    doc.setConverterOptions(slow);
    QElapsedTimer timer;
    timer.start();
    const Status imported3 = doc.importFile(doc1);
    error = imported3.error();
    QVERIFY(!imported3);
    QVERIFY(timer.elapsed() < 10000);
    QVERIFY2(error.contains(QStringLiteral("did not finish")), qPrintable(error));

    WordConverterOptions failing;
    failing.program =
        script(dir, "bad-soffice", "echo 'Error: source file could not be loaded' >&2; exit 1");
    doc.setConverterOptions(failing);
    const Status imported4 = doc.importFile(doc1);
    error = imported4.error();
    QVERIFY(!imported4);
    QVERIFY2(error.contains(QStringLiteral("could not be loaded")), qPrintable(imported4.error()));

    // A converter that writes its RTF where LibreOffice does.
    WordConverterOptions fake;
    fake.program = script(dir, "fake-soffice",
                          "for last; do :; done\n"
                          "out=\"\"; prev=\"\"; for a in \"$@\"; do [ \"$prev\" = \"--outdir\" ] "
                          "&& out=\"$a\"; prev=\"$a\"; done\n"
                          "printf '{\\\\rtf1 converted text\\\\par}' > \"$out/document.rtf\"");
    doc.setConverterOptions(fake);
    const Status imported5 = doc.importFile(doc1);
    error = imported5.error();
    QVERIFY2(imported5, qPrintable(imported5.error()));
    QCOMPARE(plain(doc), QStringLiteral("converted text"));
}

void TextPageDocumentTest::storeRoundTrip()
{
    QTemporaryDir dir;
    TextPageDocument doc;
    store::TRMData data;
    data.setPageKinds(textKinds());
    QSignalSpy changed(&doc, &store::PageDocument::contentChanged);
    const QString project = dir.filePath(QStringLiteral("report.kst"));
    KVERIFY_OK(data.DBCreate(project));
    // AddRecord: an RTF file and a text file become pages; loading marks nothing modified.
    const qint32 rtfPage = data.AddRecord(store::PageType::Text, QStringLiteral("From RTF"),
                                          writeFile(dir, "in.rtf", kRtf))
                               .value();
    const qint32 txtPage =
        data.AddRecord(store::PageType::TextVariant6, QStringLiteral("From text"),
                       writeFile(dir, "in.txt", "first\nsecond"))
            .value();
    const qint32 other = data.AddRecord(store::PageType::Text, QStringLiteral("Other"),
                                        writeFile(dir, "in.bin", "xx"))
                             .value();
    QCOMPARE(changed.count(), 0);
    QVERIFY(data.table()->readContent(rtfPage).value()->startsWith("{\\rtf1"));

    QVERIFY(data.GetWP(txtPage, doc).value());
    QCOMPARE(plain(doc), QStringLiteral("first\nsecond"));
    QVERIFY(data.GetWP(other, doc).value());
    QCOMPARE(plain(doc), QString());
    QVERIFY(data.GetWP(rtfPage, doc).value());
    QCOMPARE(plain(doc), QStringLiteral("Bold words"));
    QCOMPARE(changed.count(), 0);

    // An edit, saved and read back in another session.
    QTextCursor cursor(doc.textDocument());
    cursor.movePosition(QTextCursor::End);
    QTextCharFormat red;
    red.setForeground(QColor(255, 0, 0));
    cursor.insertText(QStringLiteral(" and red"), red);
    QVERIFY(changed.count() > 0);
    QVERIFY(data.SaveWP(rtfPage, doc).value());
    data.CloseFile();

    TextPageDocument second;
    store::TRMData reopened;
    reopened.setPageKinds(textKinds());
    KVERIFY_OK(reopened.DBOpen(project));
    QVERIFY(reopened.GetWP(rtfPage, second).value());
    QCOMPARE(plain(second), QStringLiteral("Bold words and red"));
    QTextCursor at(second.textDocument());
    at.setPosition(plain(second).size());
    QCOMPARE(at.charFormat().foreground().color(), QColor(255, 0, 0));
    QTextCursor start(second.textDocument());
    start.setPosition(1);
    QCOMPARE(start.charFormat().fontWeight(), int(QFont::Bold));
    reopened.CloseFile();
}

void TextPageDocumentTest::storeMissingPageLeavesTheEditor()
{
    QTemporaryDir dir;
    TextPageDocument doc;
    store::TRMData data;
    data.setPageKinds(textKinds());
    KVERIFY_OK(data.DBCreate(dir.filePath(QStringLiteral("p.kst"))));
    const Status read = doc.readContent(kRtf);
    QVERIFY(read);
    const QString shown = plain(doc);
    QVERIFY(!shown.isEmpty());
    QVERIFY(!data.GetWP(987654, doc).value());
    QCOMPARE(plain(doc), shown);
    data.CloseFile();
}

void TextPageDocumentTest::htmlPageFromTheStoreLoads()
{
    // A host may store a text page as HTML: it is shown, and saved as RTF from then on.
    QTemporaryDir dir;
    TextPageDocument doc;
    store::TRMData data;
    data.setPageKinds(textKinds());
    KVERIFY_OK(data.DBCreate(dir.filePath(QStringLiteral("h.kst"))));
    const qint32 id =
        data.appendRecord(
                store::PageType::Text, QStringLiteral("Html"),
                "<html><body><h1>Title</h1><ul><li>one</li><li>two</li></ul></body></html>", {})
            .value();
    QVERIFY(data.GetWP(id, doc).value());
    QCOMPARE(plain(doc), QStringLiteral("Title\none\ntwo"));
    QVERIFY(doc.textDocument()->findBlockByNumber(1).textList());
    QVERIFY(data.SaveWP(id, doc).value());
    QVERIFY(data.table()->readContent(id).value()->startsWith("{\\rtf1"));
    QVERIFY(data.GetWP(id, doc).value());
    QVERIFY(doc.textDocument()->findBlockByNumber(2).textList());
    data.CloseFile();
}

void TextPageDocumentTest::exports()
{
    QTemporaryDir dir;
    TextPageDocument doc;
    QTextCursor cursor(doc.textDocument());
    cursor.insertText(QStringLiteral("Exported text "));
    HiddenTextObject::insert(cursor, QStringLiteral("SECRET"), QTextCharFormat());
    cursor.insertBlock();
    QImage image(6, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    cursor.insertImage(DocumentPictures::add(doc.textDocument(), image, {}));

    const QString rtf = dir.filePath(QStringLiteral("out.rtf"));
    QVERIFY(doc.exportFile(rtf, TextExporter::Format::Rtf));
    QVERIFY(readFile(rtf).contains("SECRET")); // hidden text stays in RTF, as hidden text
    QVERIFY(readFile(rtf).contains("{\\v"));

    const QString html = dir.filePath(QStringLiteral("out.html"));
    QVERIFY(doc.exportFile(html, TextExporter::Format::Html));
    const QByteArray htmlBytes = readFile(html);
    QVERIFY(htmlBytes.startsWith("<HTML><HEAD>"));
    QVERIFY(htmlBytes.contains("<BODY>"));
    QVERIFY(htmlBytes.contains("Exported text"));
    QVERIFY(!htmlBytes.contains("SECRET"));
    QVERIFY(htmlBytes.contains("src=\"./out_files/picture1.png\""));
    QVERIFY(QImage(dir.filePath(QStringLiteral("out_files/picture1.png"))).pixelColor(1, 1) ==
            QColor(Qt::red));

    const QString txt = dir.filePath(QStringLiteral("out.txt"));
    QVERIFY(doc.exportFile(txt, TextExporter::Format::PlainText));
    QCOMPARE(QString::fromUtf8(readFile(txt)), QStringLiteral("Exported text \n\n"));

    const QString odt = dir.filePath(QStringLiteral("out.odt"));
    QVERIFY(doc.exportFile(odt, TextExporter::Format::Odt));
    const QByteArray zip = readFile(odt);
    QVERIFY(zip.startsWith("PK"));
    QVERIFY(zip.contains("application/vnd.oasis.opendocument.text"));

    const Status refused = doc.exportFile(dir.filePath(QStringLiteral("missing/folder/x.rtf")),
                                          TextExporter::Format::Rtf);
    QVERIFY(!refused);
    QVERIFY(refused.error().contains(QStringLiteral("Cannot write")));
}

void TextPageDocumentTest::htmlForReports()
{
    TextPageDocument doc;
    const Status read = doc.readContent("{\\rtf1 Page {\\b one}\\par}");
    QVERIFY(read);
    QTextCursor cursor(doc.textDocument());
    cursor.movePosition(QTextCursor::End);
    QImage image(3, 3, QImage::Format_RGB32);
    image.fill(Qt::blue);
    cursor.insertImage(DocumentPictures::add(doc.textDocument(), image, {}));
    // Embedded pictures when no folder is given; otherwise files with the page's prefix.
    const QByteArray embedded = doc.toHtml({}).value_or(QByteArray());
    QVERIFY(embedded.contains("src=\"data:image/png;base64,"));
    QTemporaryDir dir;
    HtmlExportOptions options;
    options.imageFolder = dir.filePath(QStringLiteral("report_files"));
    options.imageUrlPrefix = QStringLiteral("./report_files/");
    options.imageFilePrefix = QStringLiteral("page7-");
    const Result<QByteArray> written = doc.toHtml(options);
    QVERIFY2(written, qPrintable(written.error()));
    const QByteArray html = *written;
    QVERIFY(html.contains("./report_files/page7-picture1.png"));
    QVERIFY(QFile::exists(dir.filePath(QStringLiteral("report_files/page7-picture1.png"))));
    // One plain <BODY> so that a report can cut each page at it.
    QCOMPARE(html.count("<BODY>"), qsizetype(1));
    QVERIFY(html.contains("font-weight:700") || html.contains("font-weight:600"));
}

void TextPageDocumentTest::plainTextExport()
{
    TextPageDocument doc;
    QVERIFY(doc.readContent(
        "{\\rtf1{\\*\\listtable{\\list{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00.;}}\\listid1}}"
        "{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}"
        "Intro\\par\\pard\\ls1 first\\par second\\par\\pard"
        "\\trowd\\cellx1000\\cellx2000\\intbl a\\cell b\\cell\\row\\pard end{\\v  hidden}\\par}"));
    QCOMPARE(TextExporter::toPlainText(*doc.textDocument()),
             QStringLiteral("Intro\n1. first\n2. second\na\tb\nend\n"));
}

void TextPageDocumentTest::longListsNumberOn()
{
    // A list long enough to be kept as several lists: its items still number 1..n in every
    // format, and it reads back so from the page's own RTF.
    constexpr int kItems = 700;
    QByteArray rtf =
        "{\\rtf1{\\*\\listtable{\\list{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00.;}}"
        "\\listid1}}{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}";
    for (int i = 1; i <= kItems; ++i) {
        rtf += "\\pard\\ls1 item" + QByteArray::number(i) + "\\par";
    }
    rtf += "}";
    TextPageDocument doc;
    QVERIFY(doc.readContent(rtf));
    auto expectNumbered = [&](const QTextDocument& document) {
        const QStringList lines = TextExporter::toPlainText(document).split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), kItems + 1); // and the empty text after the final line break
        for (int i = 1; i <= kItems; ++i) {
            QCOMPARE(lines[i - 1], QStringLiteral("%1. item%1").arg(i));
        }
    };
    expectNumbered(*doc.textDocument());
    QVERIFY(doc.textDocument()->lastBlock().previous().textList() !=
            doc.textDocument()->firstBlock().textList());

    const Result<QByteArray> written = doc.writeContent();
    QVERIFY(written);
    QVERIFY(written->contains("{\\listtext\\pard\\plain\\f0\\fs24 700.\\tab}"));
    TextPageDocument reread;
    QVERIFY(reread.readContent(*written));
    expectNumbered(*reread.textDocument());

    // HTML: every list after the first opens at its own number, so browsers count on.
    const QString html = QString::fromUtf8(doc.toHtml({}).value_or(QByteArray()));
    int expectedStart = 1;
    qsizetype at = 0;
    int lists = 0;
    while ((at = html.indexOf(QLatin1String("<ol"), at)) >= 0) {
        const qsizetype end = html.indexOf(QLatin1Char('>'), at);
        const QString tag = html.mid(at, end - at);
        if (expectedStart == 1) {
            QVERIFY(!tag.contains(QLatin1String("start=")));
        } else {
            QVERIFY2(tag.contains(QStringLiteral("start=\"%1\"").arg(expectedStart)),
                     qPrintable(tag));
        }
        const QTextList* list = nullptr;
        for (QTextBlock b = doc.textDocument()->begin(); b.isValid(); b = b.next()) {
            if (b.textList() && ListNumbering::start(b.textList()->format()) == expectedStart) {
                list = b.textList();
                break;
            }
        }
        QVERIFY(list);
        expectedStart += list->count();
        ++lists;
        at = end;
    }
    QVERIFY(lists > 1);
    QCOMPARE(expectedStart, kItems + 1);
}

void TextPageDocumentTest::itemNumbersMatchTheLists()
{
    // The one-pass numbering against the lists' own, on interleaved lists, nested levels and a
    // table between items.
    TextPageDocument doc;
    QTextCursor cursor(doc.textDocument());
    QTextListFormat decimal;
    decimal.setStyle(QTextListFormat::ListDecimal);
    QTextListFormat roman;
    roman.setStyle(QTextListFormat::ListUpperRoman);
    roman.setIndent(2);
    cursor.insertText(QStringLiteral("intro"));
    cursor.insertBlock();
    QTextList* first = cursor.createList(decimal);
    cursor.insertText(QStringLiteral("a"));
    cursor.insertBlock();
    QTextList* second = cursor.createList(roman);
    cursor.insertText(QStringLiteral("b"));
    for (int i = 0; i < 12; ++i) {
        cursor.insertBlock();
        (i % 3 == 0 ? second : first)->add(cursor.block());
        cursor.insertText(QString::number(i));
        if (i == 5) {
            cursor.insertTable(2, 2);
            cursor.movePosition(QTextCursor::End);
        }
    }
    const ListItemNumbers numbers(*doc.textDocument());
    int listed = 0;
    for (QTextBlock block = doc.textDocument()->begin(); block.isValid(); block = block.next()) {
        const QTextList* list = block.textList();
        QCOMPARE(numbers.itemNumber(block), list ? list->itemNumber(block) : -1);
        QCOMPARE(numbers.itemText(block), ListNumbering::itemText(block));
        listed += list ? 1 : 0;
    }
    QCOMPARE(listed, 14);
    QCOMPARE(numbers.itemText(second->item(second->count() - 1)), QStringLiteral("V."));
}

QTEST_MAIN(TextPageDocumentTest)
#include "TextPageDocumentTest.moc"
