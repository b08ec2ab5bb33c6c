// Reading the RTF word processors write: footnotes, old-style paragraph numbering, list start
// numbers, list items of several paragraphs, nested tables and multi-byte code pages; each
// read, written and read again.

#include "editors/text/ColourTable.h"
#include "editors/text/ListNumbering.h"
#include "editors/text/RtfReader.h"
#include "editors/text/RtfWriter.h"
#include "editors/text/TextExporter.h"
#include "editors/text/TextProperties.h"

#include "RtfTestDoc.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QtTest>

using namespace kestrum::text;
using namespace kestrum::text::test_support;

namespace {

// The file as read, and as read again after being written.
std::vector<std::unique_ptr<Doc>> readAndRoundTrip(const QByteArray& rtf)
{
    std::vector<std::unique_ptr<Doc>> out;
    out.push_back(read(rtf));
    out.push_back(read(write(*out.front())));
    return out;
}

QStringList blockTexts(const QTextDocument& document)
{
    QStringList out;
    for (QTextBlock b = document.begin(); b.isValid(); b = b.next()) {
        out << b.text();
    }
    return out;
}

QTextBlock blockWith(const QTextDocument& document, const QString& text)
{
    const QTextCursor found = document.find(text, 0, QTextDocument::FindCaseSensitively);
    return found.isNull() ? QTextBlock() : found.block();
}

// The character format of the character at `position`.
QTextCharFormat formatAt(const QTextDocument& document, int position)
{
    QTextCursor at(const_cast<QTextDocument*>(&document));
    at.setPosition(position + 1);
    return at.charFormat();
}

} // namespace

class RtfWordProcessorTest : public QObject
{
    Q_OBJECT

private slots:
    void footnotes();
    void oldStyleNumbering();
    void listItemOfSeveralParagraphs();
    void listStartNumbers();
    void nestedTableFallbackIsSkipped();
    void plainTextKeepsListLevels();
    void multiByteCodePages_data();
    void multiByteCodePages();
};

void RtfWordProcessorTest::footnotes()
{
    // The reference mark, then the note; a second note with two paragraphs and a field; a note
    // with no mark of its own.
    const QByteArray rtf = "{\\rtf1\\ansi Text.\\chftn{\\footnote\\pard\\plain{\\up6\\chftn} Note "
                           "text.}\\par More{\\super\\chftn}{\\footnote{\\super\\chftn} Second"
                           "\\par {\\field{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt line}}}"
                           " and{\\footnote Bare.} end.\\par}";
    const auto docs = readAndRoundTrip(rtf);
    for (const auto& doc : docs) {
        const QTextDocument& d = *doc->document;
        QCOMPARE(blockTexts(d),
                 (QStringList{QStringLiteral("Text.1"), QStringLiteral("More2 and3 end."),
                              QStringLiteral("1 Note text."), QStringLiteral("2 Second\u2028line"),
                              QStringLiteral("3 Bare.")}));
        // The marks are superscript numbers that know their note.
        const QTextBlock more = blockWith(d, QStringLiteral("More2"));
        for (const auto& [offset, number] : {std::pair{4, 2}, std::pair{9, 3}}) {
            const QTextCharFormat mark = formatAt(d, more.position() + offset);
            QCOMPARE(mark.verticalAlignment(), QTextCharFormat::AlignSuperScript);
            QCOMPARE(mark.intProperty(TextProperty::FootnoteReference), number);
        }
        QVERIFY(!formatAt(d, more.position() + 3).hasProperty(TextProperty::FootnoteReference));
        QCOMPARE(blockWith(d, QStringLiteral("Bare."))
                     .blockFormat()
                     .intProperty(TextProperty::FootnoteNumber),
                 3);
        QVERIFY(!blockWith(d, QStringLiteral("Text."))
                     .blockFormat()
                     .hasProperty(TextProperty::FootnoteNumber));
    }
    // Written back, the notes are footnotes and not paragraphs of the text.
    const QByteArray written = write(*docs.front());
    QCOMPARE(written.count("{\\footnote"), 3);
    QCOMPARE(written.count("Note text."), 1);
    QVERIFY(written.contains("{\\footnote\\pard\\plain{\\super\\chftn} Note text.}"));
}

void RtfWordProcessorTest::oldStyleNumbering()
{
    struct Case
    {
        QByteArray rtf;
        QTextListFormat::Style style;
        QStringList markers; // the item texts of "A" and "B"
    };
    const QByteArray listTable =
        "{\\*\\listtable{\\list\\listid7{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00.;}}}}"
        "{\\*\\listoverridetable{\\listoverride\\listid7\\ls1}}";
    const Case cases[] = {
        // \ls with no list table: the \pn group is the list.
        {"{\\rtf1\\ansi\\pard{\\*\\pn\\pnlvlblt{\\pntxtb \\'b7}}\\ls1 A\\par B\\par}",
         QTextListFormat::ListDisc,
         {}},
        {"{\\rtf1\\ansi\\pard\\ls2{\\*\\pn\\pnlvlbody\\pnlcltr{\\pntxtb (}{\\pntxta )}} A\\par "
         "B\\par\\pard C\\par}",
         QTextListFormat::ListLowerAlpha,
         {QStringLiteral("(a)"), QStringLiteral("(b)")}},
        {"{\\rtf1\\ansi\\pard{\\*\\pn\\pnlvlbody\\pnucrm{\\pntxta .}} A\\par B\\par}",
         QTextListFormat::ListUpperRoman,
         {QStringLiteral("I."), QStringLiteral("II.")}},
        {"{\\rtf1\\ansi\\pard{\\*\\pn\\pnlvlbody\\pndec{\\pntxta ]}}\\ls3 A\\par B\\par}",
         QTextListFormat::ListDecimal,
         {QStringLiteral("1]"), QStringLiteral("2]")}},
        // A list table behind \ls has the last word.
        {"{\\rtf1\\ansi" + listTable + "\\pard{\\*\\pn\\pnlvlblt{\\pntxtb o}}\\ls1 A\\par B\\par}",
         QTextListFormat::ListDecimal,
         {QStringLiteral("1."), QStringLiteral("2.")}},
    };
    for (const Case& c : cases) {
        for (const auto& doc : readAndRoundTrip(c.rtf)) {
            const QTextDocument& d = *doc->document;
            const QTextBlock a = blockWith(d, QStringLiteral("A"));
            const QTextBlock b = blockWith(d, QStringLiteral("B"));
            QVERIFY2(a.textList() && a.textList() == b.textList(), c.rtf.constData());
            QCOMPARE(a.textList()->format().style(), c.style);
            if (!c.markers.isEmpty()) {
                QCOMPARE((QStringList{a.textList()->itemText(a), b.textList()->itemText(b)}),
                         c.markers);
            }
            const QTextBlock after = blockWith(d, QStringLiteral("C"));
            QVERIFY(!after.isValid() || !after.textList());
        }
    }
}

void RtfWordProcessorTest::listItemOfSeveralParagraphs()
{
    const QByteArray header =
        "{\\rtf1\\ansi{\\*\\listtable{\\list\\listid1{\\listlevel\\levelnfc0{\\leveltext"
        "\\'02\\'00.;}}}}{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}";
    // Items carry their numbers as text; the paragraph without one continues item 1.
    const QByteArray marked = header +
                              "\\pard\\ls1\\li720{\\listtext 1.\\tab}One\\par\\pard\\ls1\\li720 "
                              "more of one\\par\\pard\\ls1\\li720 and more\\par\\pard\\ls1\\li720"
                              "{\\listtext 2.\\tab}Two\\par\\pard After\\par}";
    for (const auto& doc : readAndRoundTrip(marked)) {
        const QTextDocument& d = *doc->document;
        const QTextBlock one = blockWith(d, QStringLiteral("One"));
        const QTextBlock two = blockWith(d, QStringLiteral("Two"));
        QVERIFY(one.textList() && one.textList() == two.textList());
        QCOMPARE(two.textList()->itemText(two), QStringLiteral("2."));
        for (const QString& text : {QStringLiteral("more of one"), QStringLiteral("and more")}) {
            const QTextBlock more = blockWith(d, text);
            QVERIFY2(!more.textList(), qPrintable(text));
            // Lined up with the item's text: \li720 is 48 pixels.
            QCOMPARE(more.blockFormat().leftMargin(), 48.0);
        }
        QVERIFY(!blockWith(d, QStringLiteral("After")).textList());
    }
    // A file that never writes the markers: every paragraph of the list is an item.
    const auto plain = readAndRoundTrip(
        header + "\\pard\\ls1 One\\par\\pard\\ls1 Two\\par\\pard\\ls1 Three\\par}");
    for (const auto& doc : plain) {
        const QTextBlock three = blockWith(*doc->document, QStringLiteral("Three"));
        QVERIFY(three.textList());
        QCOMPARE(three.textList()->itemText(three), QStringLiteral("3."));
    }
    // Old-style numbering: {\\pntext} marks the items.
    const auto pn = readAndRoundTrip(
        "{\\rtf1\\ansi\\pard{\\pntext 1.\\tab}{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}\\ls1 A"
        "\\par B cont\\par{\\pntext 2.\\tab}C\\par}");
    for (const auto& doc : pn) {
        const QTextDocument& d = *doc->document;
        const QTextBlock c = blockWith(d, QStringLiteral("C"));
        QVERIFY(!blockWith(d, QStringLiteral("B cont")).textList());
        QVERIFY(c.textList() && c.textList() == blockWith(d, QStringLiteral("A")).textList());
        QCOMPARE(c.textList()->itemText(c), QStringLiteral("2."));
    }
}

void RtfWordProcessorTest::listStartNumbers()
{
    const QByteArray rtf =
        "{\\rtf1\\ansi{\\*\\listtable{\\list\\listid1{\\listlevel\\levelnfc0\\levelstartat7"
        "{\\leveltext\\'02\\'00.;}}}}{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}"
        "\\pard\\ls1 A\\par B\\par\\pard Between\\par"
        "\\pard{\\*\\pn\\pnlvlbody\\pnucrm\\pnstart5{\\pntxta )}}C\\par D\\par"
        "\\pard{\\*\\pn\\pnlvlbody\\pnlcltr\\pnstart27{\\pntxta .}}E\\par}";
    const auto docs = readAndRoundTrip(rtf);
    for (const auto& doc : docs) {
        const QTextDocument& d = *doc->document;
        QStringList markers;
        for (const char* text : {"A", "B", "C", "D", "E"}) {
            markers << ListNumbering::itemText(blockWith(d, QLatin1String(text)));
        }
        QCOMPARE(markers,
                 (QStringList{QStringLiteral("7."), QStringLiteral("8."), QStringLiteral("V)"),
                              QStringLiteral("VI)"), QStringLiteral("aa.")}));
        QCOMPARE(TextExporter::toPlainText(d),
                 QStringLiteral("7. A\n8. B\nBetween\nV) C\nVI) D\naa. E\n"));
        const auto written = TextExporter::toHtml(d, HtmlExportOptions());
        QVERIFY2(written, qPrintable(written.error()));
        const QString html = QString::fromUtf8(*written);
        QVERIFY(html.contains(QLatin1String("<ol start=\"7\"")));
        QVERIFY(html.contains(QLatin1String("<ol start=\"5\"")));
        QVERIFY(html.contains(QLatin1String("<ol start=\"27\"")));
    }
    const QByteArray written = write(*docs.front());
    QVERIFY(written.contains("\\levelstartat7"));
    QVERIFY(written.contains("\\levelstartat5"));
    QVERIFY(written.contains("{\\listtext\\pard\\plain\\f0\\fs24 VI)\\tab}"));
    // Lists that start at 1 carry no start of their own.
    const auto plain = read("{\\rtf1\\ansi\\pard{\\*\\pn\\pnlvlbody\\pndec\\pnstart1}A\\par}");
    const QTextBlock a = blockWith(*plain->document, QStringLiteral("A"));
    QVERIFY(a.textList());
    QVERIFY(!a.textList()->format().hasProperty(TextProperty::ListStart));

    // Numbers in each style, past the alphabet and into long roman numerals.
    QCOMPARE(ListNumbering::numberText(QTextListFormat::ListLowerAlpha, 26), QStringLiteral("z"));
    QCOMPARE(ListNumbering::numberText(QTextListFormat::ListUpperAlpha, 28), QStringLiteral("AB"));
    QCOMPARE(ListNumbering::numberText(QTextListFormat::ListUpperRoman, 1994),
             QStringLiteral("MCMXCIV"));
    QCOMPARE(ListNumbering::numberText(QTextListFormat::ListLowerRoman, 4), QStringLiteral("iv"));
    QCOMPARE(ListNumbering::numberText(QTextListFormat::ListLowerRoman, 0), QStringLiteral("0"));
    QCOMPARE(ListNumbering::numberText(QTextListFormat::ListDecimal, 0), QStringLiteral("0"));
}

void RtfWordProcessorTest::nestedTableFallbackIsSkipped()
{
    const QByteArray rtf =
        "{\\rtf1\\ansi\\trowd\\cellx5000\\pard\\intbl\\itap2 X\\nestcell{\\*\\nesttableprops"
        "\\trowd\\cellx4000\\nestrow}{\\nonesttables FALLBACK\\par}\\pard\\intbl\\itap1 Y\\cell"
        "\\row\\pard After\\par}";
    for (const auto& doc : readAndRoundTrip(rtf)) {
        const QTextDocument& d = *doc->document;
        QVERIFY(!d.toPlainText().contains(QLatin1String("FALLBACK")));
        const QTextBlock x = blockWith(d, QStringLiteral("X"));
        QTextCursor at(x);
        const QTextTable* table = at.currentTable();
        QVERIFY(table);
        QCOMPARE(table->rows(), 1);
        QCOMPARE(table->columns(), 1);
        // The inner table stands in the cell of the outer one that holds "Y".
        const QTextTable* outer = QTextCursor(blockWith(d, QStringLiteral("Y"))).currentTable();
        QVERIFY(outer);
        QVERIFY(outer != table);
        QCOMPARE(table->parentFrame(), outer);
        QCOMPARE(outer->rows(), 1);
        QCOMPARE(outer->columns(), 1);
        QVERIFY(!QTextCursor(blockWith(d, QStringLiteral("After"))).currentTable());
    }
}

void RtfWordProcessorTest::plainTextKeepsListLevels()
{
    const QByteArray rtf =
        "{\\rtf1\\ansi{\\*\\listtable{\\list\\listid1{\\listlevel\\levelnfc0{\\leveltext"
        "\\'02\\'00.;}}{\\listlevel\\levelnfc4{\\leveltext\\'02\\'01);}}{\\listlevel\\levelnfc23"
        "{\\leveltext\\'01\\u9642 ?;}}{\\listlevel\\levelnfc23{\\leveltext\\'01o;}}}}"
        "{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}\\pard\\ls1 A\\par\\pard\\ls1"
        "\\ilvl1 B\\par C\\par\\pard\\ls1\\ilvl2 D\\par\\pard\\ls1\\ilvl3 E\\par\\pard\\ls1 F"
        "\\par\\pard G\\par}";
    for (const auto& doc : readAndRoundTrip(rtf)) {
        QCOMPARE(TextExporter::toPlainText(*doc->document),
                 QStringLiteral("1. A\n    a) B\n    b) C\n        \u25AA D\n"
                                "            \u25E6 E\n2. F\nG\n"));
    }
}

void RtfWordProcessorTest::multiByteCodePages_data()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("text");
    // Pairs escaped, a trail byte written as it is, a single-byte half-width katakana.
    QTest::newRow("932") << QByteArray("{\\rtf1\\ansi\\ansicpg932 \\'82\\'a0\\'83e\\'b1!\\par}")
                         << QStringLiteral("\u3042\u30C6\uFF71!");
    QTest::newRow("936") << QByteArray("{\\rtf1\\ansi\\ansicpg936 \\'d6\\'d0\\'ce\\'c4\\par}")
                         << QStringLiteral("\u4E2D\u6587");
    QTest::newRow("949") << QByteArray("{\\rtf1\\ansi\\ansicpg949 \\'c7\\'d1\\'b1\\'db\\par}")
                         << QStringLiteral("\uD55C\uAE00");
    QTest::newRow("950") << QByteArray("{\\rtf1\\ansi\\ansicpg950 \\'a4\\'a4\\'a4\\'e5\\par}")
                         << QStringLiteral("\u4E2D\u6587");
    // The font's character set chooses the code page of its text.
    QTest::newRow("fcharset")
        << QByteArray(
               "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0\\fcharset0 Arial;}{\\f1\\fcharset128 "
               "Mincho;}{\\f2\\fcharset134 SimSun;}{\\f3\\fcharset129 Gulim;}{\\f4\\fcharset136 "
               "Ming;}}\\f0 caf\\'e9 {\\f1 \\'82\\'a0}{\\f2 \\'d6\\'d0}{\\f3 \\'c7\\'d1}{\\f4 "
               "\\'a4\\'a4} \\'e9\\par}")
        << QStringLiteral("caf\u00E9 \u3042\u4E2D\uD55C\u4E2D \u00E9");
    // A lead byte cut off by a group's end or a control word stands for nothing.
    QTest::newRow("cut lead byte")
        << QByteArray("{\\rtf1\\ansi\\ansicpg932 a{\\'82}b\\'82\\tab c\\'82\\par}")
        << QStringLiteral("ab\tc");
}

void RtfWordProcessorTest::multiByteCodePages()
{
    QFETCH(QByteArray, rtf);
    QFETCH(QString, text);
    for (const auto& doc : readAndRoundTrip(rtf)) {
        QCOMPARE(doc->document->toPlainText(), text);
    }
}

QTEST_MAIN(RtfWordProcessorTest)
#include "RtfWordProcessorTest.moc"
