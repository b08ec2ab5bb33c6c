// Reading the RTF word processors write: footnotes, old-style paragraph numbering, list start
// numbers, list items of several paragraphs, nested tables and multi-byte code pages; each
// read, written and read again.

#include "editors/text/ColourTable.h"
#include "editors/text/RtfReader.h"
#include "editors/text/RtfWriter.h"
#include "editors/text/TextProperties.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QtTest>

using namespace kestrum::text;

namespace {

struct Doc
{
    std::unique_ptr<QTextDocument> document = std::make_unique<QTextDocument>();
    ColourTable colours;
    RtfReadResult result;
};

std::unique_ptr<Doc> read(const QByteArray& rtf)
{
    auto out = std::make_unique<Doc>();
    out->result = RtfReader().read(rtf, out->document.get(), &out->colours);
    return out;
}

QByteArray write(const Doc& doc)
{
    return RtfWriter(*doc.document, doc.colours, PageLayout()).write();
}

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

QTEST_MAIN(RtfWordProcessorTest)
#include "RtfWordProcessorTest.moc"
