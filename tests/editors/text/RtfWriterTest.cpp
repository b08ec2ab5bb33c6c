// Round trips through RTF: what the writer puts down, the reader gives back.

#include "editors/text/RtfWriter.h"
#include "editors/text/ColourTable.h"
#include "editors/text/DocumentPictures.h"
#include "editors/text/HiddenTextObject.h"
#include "editors/text/RtfReader.h"
#include "editors/text/TextProperties.h"

#include "RtfTestDoc.h"

#include <QBuffer>
#include <QFile>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QtTest>

using namespace kestrum::text;
using namespace kestrum::text::test_support;

namespace {

QTextCharFormat formatOf(const QTextDocument& document, const QString& text)
{
    const QTextCursor found = document.find(text, 0, QTextDocument::FindCaseSensitively);
    QTextCursor at(const_cast<QTextDocument*>(&document));
    at.setPosition(found.selectionStart() + 1);
    return at.charFormat();
}

QTextBlock blockOf(const QTextDocument& document, const QString& text)
{
    return document.find(text, 0, QTextDocument::FindCaseSensitively).block();
}

QStringList blockTexts(const QTextDocument& document)
{
    QStringList out;
    for (QTextBlock b = document.begin(); b.isValid(); b = b.next()) {
        out << b.text();
    }
    return out;
}

QByteArray fixture(const char* name)
{
    QFile file(qEnvironmentVariable("KESTRUM_TEST_DATA") + QStringLiteral("/rtf/") +
               QLatin1String(name));
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

} // namespace

class RtfWriterTest : public QObject
{
    Q_OBJECT

private slots:
    void characterFormats_data();
    void characterFormats();
    void paragraphFormats_data();
    void paragraphFormats();
    void lists();
    void tables();
    void tableAtEndAndEmptyParagraphs();
    void pictures();
    void linksBookmarksHidden();
    void unicodeText();
    void colourNumbersSurvive();
    void pageLayout();
    void emptyDocument();
    void stableOnSecondPass_data();
    void stableOnSecondPass();
    void sevenBitOutput();
};

void RtfWriterTest::characterFormats_data()
{
    QTest::addColumn<int>("property");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("bold") << int(QTextFormat::FontWeight) << QVariant(int(QFont::Bold));
    QTest::newRow("italic") << int(QTextFormat::FontItalic) << QVariant(true);
    QTest::newRow("underline") << int(QTextFormat::TextUnderlineStyle)
                               << QVariant(int(QTextCharFormat::SingleUnderline));
    QTest::newRow("wave underline")
        << int(QTextFormat::TextUnderlineStyle) << QVariant(int(QTextCharFormat::WaveUnderline));
    QTest::newRow("dash underline")
        << int(QTextFormat::TextUnderlineStyle) << QVariant(int(QTextCharFormat::DashUnderline));
    QTest::newRow("strike") << int(QTextFormat::FontStrikeOut) << QVariant(true);
    QTest::newRow("superscript") << int(QTextFormat::TextVerticalAlignment)
                                 << QVariant(int(QTextCharFormat::AlignSuperScript));
    QTest::newRow("subscript") << int(QTextFormat::TextVerticalAlignment)
                               << QVariant(int(QTextCharFormat::AlignSubScript));
    QTest::newRow("size") << int(QTextFormat::FontPointSize) << QVariant(17.5);
    QTest::newRow("family") << int(QTextFormat::FontFamilies)
                            << QVariant(QStringList{QStringLiteral("Liberation Serif")});
    QTest::newRow("non-ASCII family")
        << int(QTextFormat::FontFamilies) << QVariant(QStringList{QStringLiteral("Gill Sans {Ω}")});
    QTest::newRow("colour") << int(QTextFormat::ForegroundBrush)
                            << QVariant(QBrush(QColor(12, 34, 56)));
    QTest::newRow("background") << int(QTextFormat::BackgroundBrush)
                                << QVariant(QBrush(QColor(250, 240, 10)));
    QTest::newRow("all capitals") << int(QTextFormat::FontCapitalization)
                                  << QVariant(int(QFont::AllUppercase));
    QTest::newRow("small capitals")
        << int(QTextFormat::FontCapitalization) << QVariant(int(QFont::SmallCaps));
    QTest::newRow("letter spacing") << int(QTextFormat::FontLetterSpacing) << QVariant(2.0);
}

void RtfWriterTest::characterFormats()
{
    QFETCH(int, property);
    QFETCH(QVariant, value);
    Doc doc;
    QTextCursor cursor(doc.document.get());
    QTextCharFormat format;
    format.setProperty(property, value);
    if (property == QTextFormat::FontLetterSpacing) {
        format.setFontLetterSpacingType(QFont::AbsoluteSpacing);
    }
    cursor.insertText(QStringLiteral("before "));
    cursor.insertText(QStringLiteral("target"), format);
    cursor.insertText(QStringLiteral(" after"), QTextCharFormat());
    const auto back = roundTrip(doc);
    QCOMPARE(formatOf(*back->document, QStringLiteral("target")).property(property), value);
    // The format ends where it ended.
    const QVariant after = formatOf(*back->document, QStringLiteral("after")).property(property);
    QVERIFY2(after != value, qPrintable(after.toString()));
}

void RtfWriterTest::paragraphFormats_data()
{
    QTest::addColumn<int>("property");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("centred") << int(QTextFormat::BlockAlignment) << QVariant(int(Qt::AlignHCenter));
    QTest::newRow("right") << int(QTextFormat::BlockAlignment) << QVariant(int(Qt::AlignRight));
    QTest::newRow("justified") << int(QTextFormat::BlockAlignment)
                               << QVariant(int(Qt::AlignJustify));
    QTest::newRow("left margin") << int(QTextFormat::BlockLeftMargin) << QVariant(36.0);
    QTest::newRow("right margin") << int(QTextFormat::BlockRightMargin) << QVariant(20.0);
    QTest::newRow("first line") << int(QTextFormat::TextIndent) << QVariant(-12.0);
    QTest::newRow("space before") << int(QTextFormat::BlockTopMargin) << QVariant(10.0);
    QTest::newRow("space after") << int(QTextFormat::BlockBottomMargin) << QVariant(14.0);
    QTest::newRow("heading") << int(QTextFormat::HeadingLevel) << QVariant(3);
    QTest::newRow("page break") << int(QTextFormat::PageBreakPolicy)
                                << QVariant(int(QTextFormat::PageBreak_AlwaysBefore));
    QTest::newRow("keep lines") << int(QTextFormat::BlockNonBreakableLines) << QVariant(true);
    QTest::newRow("shading") << int(QTextFormat::BackgroundBrush)
                             << QVariant(QBrush(QColor(230, 230, 255)));
    QTest::newRow("border sides") << int(TextProperty::BorderSides)
                                  << QVariant(BorderSide::Top | BorderSide::Left);
    QTest::newRow("border width") << int(TextProperty::BorderWidth) << QVariant(45);
    QTest::newRow("border spacing") << int(TextProperty::BorderSpacing) << QVariant(60);
    QTest::newRow("border style") << int(TextProperty::BorderStyle)
                                  << QVariant(int(QTextFrameFormat::BorderStyle_Dashed));
    QTest::newRow("border colour")
        << int(TextProperty::BorderColour) << QVariant(QColor(200, 0, 100));
}

void RtfWriterTest::paragraphFormats()
{
    QFETCH(int, property);
    QFETCH(QVariant, value);
    Doc doc;
    QTextCursor cursor(doc.document.get());
    QTextBlockFormat format;
    format.setProperty(property, value);
    if (property >= TextProperty::BorderWidth && property <= TextProperty::BorderSpacing) {
        format.setProperty(TextProperty::BorderSides, BorderSide::Bottom);
    }
    cursor.insertText(QStringLiteral("plain"));
    cursor.insertBlock(format);
    cursor.insertText(QStringLiteral("target"));
    cursor.insertBlock(QTextBlockFormat());
    cursor.insertText(QStringLiteral("after"));
    const auto back = roundTrip(doc);
    QCOMPARE(blockTexts(*back->document), (QStringList{"plain", "target", "after"}));
    const QVariant got =
        blockOf(*back->document, QStringLiteral("target")).blockFormat().property(property);
    if (property == QTextFormat::BlockAlignment) {
        QCOMPARE(got.toInt() & Qt::AlignHorizontal_Mask, value.toInt());
    } else {
        QCOMPARE(got, value);
    }
    QVERIFY(blockOf(*back->document, QStringLiteral("after")).blockFormat().property(property) !=
            value);
}

void RtfWriterTest::lists()
{
    Doc doc;
    QTextCursor cursor(doc.document.get());
    auto list = [&](QTextListFormat::Style style, int indent, const QString& prefix,
                    const QString& suffix, const QStringList& items) {
        QTextListFormat format;
        format.setStyle(style);
        format.setIndent(indent);
        if (!prefix.isNull()) {
            format.setNumberPrefix(prefix);
            format.setNumberSuffix(suffix);
        }
        cursor.insertBlock();
        cursor.insertText(items.first());
        QTextList* created = cursor.createList(format);
        for (qsizetype i = 1; i < items.size(); ++i) {
            cursor.insertBlock();
            cursor.insertText(items[i]);
        }
        cursor.insertBlock(QTextBlockFormat());
        cursor.insertText(QStringLiteral("between ") + items.first());
        return created;
    };
    cursor.insertText(QStringLiteral("Lists"));
    list(QTextListFormat::ListDisc, 1, {}, {}, {"disc one", "disc two"});
    list(QTextListFormat::ListCircle, 2, {}, {}, {"circle one"});
    list(QTextListFormat::ListSquare, 1, {}, {}, {"square one"});
    list(QTextListFormat::ListDecimal, 1, QString(""), QStringLiteral("."),
         {"dec one", "dec two", "dec three"});
    list(QTextListFormat::ListLowerAlpha, 1, QStringLiteral("("), QStringLiteral(")"),
         {"alpha one", "alpha two"});
    list(QTextListFormat::ListUpperRoman, 3, QString(""), QStringLiteral(":"),
         {"roman one", "roman two"});

    const auto back = roundTrip(doc);
    const QTextDocument& d = *back->document;
    auto listOf = [&](const char* text) { return blockOf(d, QLatin1String(text)).textList(); };
    QVERIFY(listOf("disc one"));
    QCOMPARE(listOf("disc one"), listOf("disc two"));
    QCOMPARE(listOf("disc one")->format().style(), QTextListFormat::ListDisc);
    QCOMPARE(listOf("circle one")->format().style(), QTextListFormat::ListCircle);
    QCOMPARE(listOf("circle one")->format().indent(), 2);
    QCOMPARE(listOf("square one")->format().style(), QTextListFormat::ListSquare);
    QCOMPARE(listOf("dec three")->itemText(blockOf(d, QStringLiteral("dec three"))),
             QStringLiteral("3."));
    QCOMPARE(listOf("alpha two")->itemText(blockOf(d, QStringLiteral("alpha two"))),
             QStringLiteral("(b)"));
    QCOMPARE(listOf("roman two")->format().style(), QTextListFormat::ListUpperRoman);
    QCOMPARE(listOf("roman two")->format().indent(), 3);
    QCOMPARE(listOf("roman two")->itemText(blockOf(d, QStringLiteral("roman two"))),
             QStringLiteral("II:"));
    QVERIFY(!blockOf(d, QStringLiteral("between disc")).textList());
    QVERIFY(listOf("dec one") != listOf("disc one"));
    // The markers are not text.
    QCOMPARE(blockOf(d, QStringLiteral("dec two")).text(), QStringLiteral("dec two"));
}

void RtfWriterTest::tables()
{
    Doc doc;
    QTextCursor cursor(doc.document.get());
    cursor.insertText(QStringLiteral("Before"));
    QTextTableFormat format;
    format.setBorder(1);
    format.setCellPadding(4);
    format.setHeaderRowCount(1);
    format.setColumnWidthConstraints({QTextLength(QTextLength::FixedLength, 100),
                                      QTextLength(QTextLength::FixedLength, 150),
                                      QTextLength(QTextLength::FixedLength, 80)});
    QTextTable* table = cursor.insertTable(4, 3, format);
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 3; ++c) {
            table->cellAt(r, c).firstCursorPosition().insertText(
                QStringLiteral("r%1c%2").arg(r).arg(c));
        }
    }
    table->mergeCells(1, 0, 2, 1); // r1c0 runs down two rows
    table->mergeCells(3, 1, 1, 2); // r3c1 spans two columns
    QTextTableCellFormat shaded;
    shaded.setBackground(QColor(255, 220, 200));
    shaded.setTopBorder(3);
    shaded.setTopBorderStyle(QTextFrameFormat::BorderStyle_Double);
    shaded.setTopBorderBrush(QColor(0, 0, 160));
    shaded.setVerticalAlignment(QTextCharFormat::AlignMiddle);
    table->cellAt(0, 2).setFormat(shaded);
    QTextCursor inCell = table->cellAt(2, 2).lastCursorPosition();
    inCell.insertBlock();
    inCell.insertText(QStringLiteral("second paragraph"), [] {
        QTextCharFormat bold;
        bold.setFontWeight(QFont::Bold);
        return bold;
    }());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(QStringLiteral("After"));

    const auto back = roundTrip(doc);
    const QTextDocument& d = *back->document;
    QTextTable* t = d.find(QStringLiteral("r0c0")).currentTable();
    QVERIFY(t);
    QCOMPARE(t->rows(), 4);
    QCOMPARE(t->columns(), 3);
    QCOMPARE(t->format().headerRowCount(), 1);
    const QList<QTextLength> widths = t->format().columnWidthConstraints();
    QCOMPARE(widths.size(), 3);
    QCOMPARE(widths[0].rawValue(), 100.0);
    QCOMPARE(widths[1].rawValue(), 150.0);
    QCOMPARE(t->cellAt(1, 0).rowSpan(), 2);
    QCOMPARE(t->cellAt(1, 0).firstCursorPosition().block().text(), QStringLiteral("r1c0"));
    QCOMPARE(t->cellAt(3, 1).columnSpan(), 2);
    QCOMPARE(t->cellAt(3, 2).column(), 1);
    const QTextTableCellFormat cf = t->cellAt(0, 2).format().toTableCellFormat();
    QCOMPARE(cf.background().color(), QColor(255, 220, 200));
    QCOMPARE(cf.topBorder(), 3.0);
    QCOMPARE(cf.topBorderStyle(), QTextFrameFormat::BorderStyle_Double);
    QCOMPARE(cf.topBorderBrush().color(), QColor(0, 0, 160));
    QCOMPARE(cf.verticalAlignment(), QTextCharFormat::AlignMiddle);
    // The table border stays the table's; cells without borders of their own show it.
    QCOMPARE(t->format().border(), 1.0);
    QVERIFY(!t->cellAt(3, 0).format().hasProperty(QTextFormat::TableCellBottomBorder));
    QCOMPARE(t->cellAt(2, 2).lastCursorPosition().block().text(),
             QStringLiteral("second paragraph"));
    QCOMPARE(formatOf(d, QStringLiteral("second")).fontWeight(), int(QFont::Bold));
    QCOMPARE(t->format().cellPadding(), 4.0);
    QCOMPARE(blockTexts(d).first(), QStringLiteral("Before"));
    QCOMPARE(blockTexts(d).last(), QStringLiteral("After"));
}

void RtfWriterTest::tableAtEndAndEmptyParagraphs()
{
    Doc doc;
    QTextCursor cursor(doc.document.get());
    cursor.insertText(QStringLiteral("A"));
    cursor.insertBlock();
    cursor.insertBlock();
    cursor.insertTable(1, 2);
    const auto back = roundTrip(doc);
    // "A", an empty paragraph, the paragraph the table went into... as Qt builds it.
    QCOMPARE(blockTexts(*back->document), blockTexts(*doc.document));
    QVERIFY(back->document->find(QStringLiteral("A")).currentTable() == nullptr);
    int tables = 0;
    for (QTextFrame* frame : back->document->rootFrame()->childFrames()) {
        tables += qobject_cast<QTextTable*>(frame) ? 1 : 0;
    }
    QCOMPARE(tables, 1);

    Doc trailing;
    QTextCursor c2(trailing.document.get());
    c2.insertText(QStringLiteral("text"));
    c2.insertBlock();
    c2.insertBlock();
    QCOMPARE(blockTexts(*roundTrip(trailing)->document), (QStringList{"text", "", ""}));
}

void RtfWriterTest::pictures()
{
    Doc doc;
    QTextCursor cursor(doc.document.get());
    // A picture made in the editor: written as PNG.
    QImage drawn(20, 10, QImage::Format_RGB32);
    drawn.fill(QColor(0, 120, 240));
    DocumentPictures::Picture made;
    made.displaySize = QSizeF(40, 20);
    cursor.insertImage(DocumentPictures::add(doc.document.get(), drawn, made));
    // A JPEG read from a file: its bytes go back unchanged.
    QByteArray jpeg;
    {
        QBuffer buffer(&jpeg);
        buffer.open(QIODevice::WriteOnly);
        drawn.save(&buffer, "JPEG", 80);
    }
    DocumentPictures::Picture original;
    original.kind = PictureKind::Jpeg;
    original.data = jpeg;
    original.header = QStringLiteral("\\jpegblip\\picw20\\pich10");
    cursor.insertImage(DocumentPictures::add(doc.document.get(), QImage::fromData(jpeg), original));
    // A metafile shown as a placeholder: its bytes go back unchanged too.
    DocumentPictures::Picture metafile;
    metafile.kind = PictureKind::Emf;
    metafile.data = QByteArray::fromHex("0100000088000000");
    metafile.header = QStringLiteral("\\emfblip\\picw500\\pich300");
    metafile.displaySize = QSizeF(30, 18);
    cursor.insertImage(
        DocumentPictures::addPlaceholder(doc.document.get(), metafile, QStringLiteral("EMF")));

    const QByteArray rtf = write(doc);
    QVERIFY(rtf.contains("\\pngblip"));
    QVERIFY(rtf.contains("\\jpegblip"));
    QVERIFY(rtf.contains("\\emfblip\\picw500\\pich300"));
    const auto back = read(rtf);
    std::vector<QTextImageFormat> images;
    for (auto it = back->document->begin().begin(); !it.atEnd(); ++it) {
        for (int i = 0; i < it.fragment().length(); ++i) {
            images.push_back(it.fragment().charFormat().toImageFormat());
        }
    }
    QCOMPARE(images.size(), std::size_t(3));
    const QImage first = DocumentPictures::image(*back->document, images[0]);
    QCOMPARE(first.size(), QSize(20, 10));
    QCOMPARE(first.pixelColor(5, 5), QColor(0, 120, 240));
    QCOMPARE(images[0].width(), 40.0);
    QCOMPARE(images[0].height(), 20.0);
    QCOMPARE(images[1].property(TextProperty::PictureData).toByteArray(), jpeg);
    QCOMPARE(images[1].width(), 20.0);
    QCOMPARE(images[2].intProperty(TextProperty::PictureKind), int(PictureKind::Emf));
    QCOMPARE(images[2].property(TextProperty::PictureData).toByteArray(), metafile.data);
    QCOMPARE(images[2].width(), 30.0);
}

void RtfWriterTest::linksBookmarksHidden()
{
    Doc doc;
    QTextCursor cursor(doc.document.get());
    QTextCharFormat link;
    link.setAnchor(true);
    link.setAnchorHref(QStringLiteral("https://example.org/x?a=1&b=\"q\""));
    link.setFontUnderline(true);
    QTextCharFormat inner;
    inner.setAnchor(true);
    inner.setAnchorHref(QStringLiteral("#results"));
    QTextCharFormat mark;
    mark.setAnchor(true);
    mark.setAnchorNames({QStringLiteral("results")});
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    cursor.insertText(QStringLiteral("See "));
    cursor.insertText(QStringLiteral("the site"), link);
    cursor.insertText(QStringLiteral(" or "), QTextCharFormat());
    cursor.insertText(QStringLiteral("below"), inner);
    cursor.insertText(QStringLiteral(". "), QTextCharFormat());
    HiddenTextObject::insert(cursor, QStringLiteral("a hidden {note}"), bold);
    cursor.insertBlock();
    cursor.insertText(QStringLiteral("Results"), mark);
    mark.setFontItalic(true);
    cursor.insertText(QStringLiteral(" here"), mark);
    cursor.insertText(QStringLiteral(" not"), QTextCharFormat());

    const auto back = roundTrip(doc);
    const QTextDocument& d = *back->document;
    // A quote cannot stand in a field's argument: it is written as %22, as in any address.
    QCOMPARE(formatOf(d, QStringLiteral("the site")).anchorHref(),
             QStringLiteral("https://example.org/x?a=1&b=%22q%22"));
    QCOMPARE(formatOf(d, QStringLiteral("site")).fontUnderline(), true);
    QCOMPARE(formatOf(d, QStringLiteral("below")).anchorHref(), QStringLiteral("#results"));
    QVERIFY(!formatOf(d, QStringLiteral(" or")).isAnchor());
    QCOMPARE(formatOf(d, QStringLiteral("Results")).anchorNames(),
             QStringList{QStringLiteral("results")});
    QCOMPARE(formatOf(d, QStringLiteral("here")).anchorNames(),
             QStringList{QStringLiteral("results")});
    QVERIFY(formatOf(d, QStringLiteral("not")).anchorNames().isEmpty());
    QString hidden;
    for (auto it = d.begin().begin(); !it.atEnd(); ++it) {
        if (HiddenTextObject::isHidden(it.fragment().charFormat())) {
            hidden = HiddenTextObject::text(it.fragment().charFormat());
            QCOMPARE(it.fragment().charFormat().fontWeight(), int(QFont::Bold));
        }
    }
    QCOMPARE(hidden, QStringLiteral("a hidden {note}"));
    QVERIFY(!formatOf(d, QStringLiteral(". ")).hasProperty(QTextFormat::FontWeight));
}

void RtfWriterTest::unicodeText()
{
    const QString text =
        QStringLiteral("Zażółć gęślą jaźń – Ελληνικά – Русский – 中文 – 😀 – \\{braces}\t"
                       "nb\u00A0sp soft\u00ADhyphen nb\u2011hyphen line\u2028break € ™ ‰");
    Doc doc;
    QTextCursor(doc.document.get()).insertText(text);
    const auto back = roundTrip(doc);
    QCOMPARE(back->document->toRawText(), doc.document->toRawText());
    QVERIFY(back->document->toRawText().contains(QStringLiteral("nb\u00A0sp")));
}

void RtfWriterTest::colourNumbersSurvive()
{
    Doc doc;
    const int custom = doc.colours.enter(QColor(1, 2, 3));
    QCOMPARE(custom, ColourTable::standardColours().size() + 1);
    QTextCursor cursor(doc.document.get());
    QTextCharFormat shaded;
    shaded.setBackground(doc.colours.colour(ColourTable::kBlackBackgroundNumber));
    shaded.setForeground(QColor(1, 2, 3));
    cursor.insertText(QStringLiteral("x"), shaded);
    const QByteArray rtf = write(doc);
    QVERIFY(rtf.contains("\\chcbpat18"));
    QVERIFY(rtf.contains("\\cf" + QByteArray::number(custom)));
    const auto back = read(rtf);
    QCOMPARE(back->colours.entries(), doc.colours.entries());
    const QTextCharFormat format = formatOf(*back->document, QStringLiteral("x"));
    QCOMPARE(back->colours.indexOf(format.background().color()),
             ColourTable::kBlackBackgroundNumber);
    QCOMPARE(back->colours.indexOf(format.foreground().color()), custom);
}

void RtfWriterTest::pageLayout()
{
    Doc doc;
    doc.layout.paperWidth = 15840;
    doc.layout.paperHeight = 12240;
    doc.layout.marginLeft = 720;
    doc.layout.marginRight = 1000;
    doc.layout.marginTop = 500;
    doc.layout.marginBottom = 1500;
    QTextCursor(doc.document.get()).insertText(QStringLiteral("landscape"));
    const QByteArray rtf = write(doc);
    QVERIFY(rtf.contains("\\landscape"));
    QCOMPARE(read(rtf)->layout, doc.layout);
}

void RtfWriterTest::emptyDocument()
{
    const auto fromEmpty = read(RtfWriter::emptyDocument(PageLayout()));
    QVERIFY(fromEmpty->result.ok);
    QCOMPARE(blockTexts(*fromEmpty->document), QStringList{QString()});
    QCOMPARE(fromEmpty->colours.entries(), ColourTable().entries());
    Doc doc;
    QCOMPARE(blockTexts(*roundTrip(doc)->document), QStringList{QString()});
}

void RtfWriterTest::stableOnSecondPass_data()
{
    QTest::addColumn<QByteArray>("rtf");
    for (const char* name :
         {"styled-heavy.rtf", "minimal-editor.rtf", "office-suite.rtf", "code-pages.rtf"}) {
        QTest::newRow(name) << fixture(name);
    }
}

void RtfWriterTest::stableOnSecondPass()
{
    // Reading what was written and writing again gives the same bytes: nothing drifts when a
    // page is saved again and again.
    QFETCH(QByteArray, rtf);
    const auto first = read(rtf);
    const QByteArray once = write(*first);
    const auto second = read(once);
    QCOMPARE(second->document->toPlainText(), first->document->toPlainText());
    const QByteArray twice = write(*second);
    if (twice != once) {
        const QList<QByteArray> a = once.split('\n');
        const QList<QByteArray> b = twice.split('\n');
        for (qsizetype i = 0; i < qMin(a.size(), b.size()); ++i) {
            QCOMPARE(b[i], a[i]);
        }
    }
    QCOMPARE(twice, once);
}

void RtfWriterTest::sevenBitOutput()
{
    Doc doc;
    QTextCursor(doc.document.get()).insertText(QStringLiteral("é ж 中 😀"));
    const QByteArray rtf = write(doc);
    for (char c : rtf) {
        QVERIFY(quint8(c) < 0x80);
    }
    QVERIFY(rtf.startsWith("{\\rtf1\\ansi\\ansicpg1252"));
    QVERIFY(rtf.contains("\\'e9"));
    QVERIFY(rtf.contains("\\u1078?"));
    QVERIFY(rtf.contains("\\u-10179?\\u-8704?"));
}

QTEST_MAIN(RtfWriterTest)
#include "RtfWriterTest.moc"
