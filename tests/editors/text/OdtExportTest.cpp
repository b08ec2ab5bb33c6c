// The text page's OpenDocument export: numbered lists start at the document's first numbers,
// and the package is otherwise what Qt's writer made of the document.

#include "editors/text/ListNumbering.h"
#include "editors/text/OdtPackage.h"
#include "editors/text/TextExporter.h"
#include "editors/text/WordConverter.h"

#include <QBuffer>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentWriter>
#include <QTextList>
#include <QUrl>
#include <QXmlStreamReader>
#include <QtTest>

using kestrum::text::ListNumbering;
using kestrum::text::OdtPackage;
using kestrum::text::TextExporter;

namespace {

QTextListFormat numbered(QTextListFormat::Style style, int indent, int start)
{
    QTextListFormat format;
    format.setStyle(style);
    format.setIndent(indent);
    ListNumbering::setStart(format, start);
    return format;
}

// "Intro", a list from 7 with a nested list from 3 among its items, a paragraph, a list from 1
// and, in a table cell, a lettered list from 5.
void fillDocument(QTextDocument& document)
{
    QTextCursor cursor(&document);
    cursor.insertText(QStringLiteral("Intro"));
    cursor.insertBlock();
    QTextList* outer = cursor.createList(numbered(QTextListFormat::ListDecimal, 1, 7));
    cursor.insertText(QStringLiteral("Seventh"));
    cursor.insertBlock();
    cursor.insertText(QStringLiteral("Eighth"));
    cursor.insertBlock();
    cursor.createList(numbered(QTextListFormat::ListDecimal, 2, 3));
    cursor.insertText(QStringLiteral("Nested third"));
    cursor.insertBlock();
    cursor.insertText(QStringLiteral("Nested fourth"));
    cursor.insertBlock();
    outer->add(cursor.block());
    cursor.insertText(QStringLiteral("Ninth"));
    cursor.insertBlock();
    cursor.setBlockFormat(QTextBlockFormat());
    cursor.insertText(QStringLiteral("Between"));
    cursor.insertBlock();
    cursor.createList(numbered(QTextListFormat::ListDecimal, 1, 1));
    cursor.insertText(QStringLiteral("First"));
    cursor.insertBlock();
    cursor.setBlockFormat(QTextBlockFormat());
    cursor.insertTable(1, 1);
    cursor.createList(numbered(QTextListFormat::ListUpperAlpha, 1, 5));
    cursor.insertText(QStringLiteral("Cell fifth"));
}

QByteArray entryData(const QList<OdtPackage::Entry>& entries, const QString& name)
{
    for (const OdtPackage::Entry& entry : entries) {
        if (entry.name == name) {
            return entry.data;
        }
    }
    return {};
}

// The first number each paragraph's list shows, by the paragraph's text: the start value of
// the level style of its innermost list's style, 1 without one; 0 outside lists.
QMap<QString, int> paragraphStarts(const QByteArray& content)
{
    QMap<QString, int> styleStarts;
    QMap<QString, int> starts;
    QStringList lists;
    QString style;
    QXmlStreamReader xml(content);
    while (!xml.atEnd()) {
        xml.readNext();
        const QStringView name = xml.name();
        if (xml.isStartElement()) {
            const QXmlStreamAttributes attributes = xml.attributes();
            if (name == QLatin1String("list-style")) {
                style = attributes.value(QLatin1String("style:name")).toString();
            } else if (name == QLatin1String("list-level-style-number")) {
                const QStringView value = attributes.value(QLatin1String("text:start-value"));
                styleStarts[style] = value.isEmpty() ? 1 : value.toInt();
            } else if (name == QLatin1String("list")) {
                lists.append(attributes.value(QLatin1String("text:style-name")).toString());
            } else if (name == QLatin1String("p")) {
                const QString text = xml.readElementText(QXmlStreamReader::IncludeChildElements);
                starts[text] = lists.isEmpty() ? 0 : styleStarts.value(lists.last(), -1);
            }
        } else if (xml.isEndElement() && name == QLatin1String("list")) {
            lists.removeLast();
        }
    }
    return starts;
}

} // namespace

class OdtExportTest : public QObject
{
    Q_OBJECT

private slots:
    void listStarts();
    void listsFromOneLeaveQtPackage();

private:
    QTemporaryDir m_dir;
};

void OdtExportTest::listStarts()
{
    QTextDocument document;
    fillDocument(document);
    const QString path = m_dir.filePath(QStringLiteral("lists.odt"));
    const kestrum::Status written = TextExporter::writeOdt(document, path);
    QVERIFY2(written, qPrintable(written.error()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();

    // The package opens with "mimetype", stored uncompressed.
    QCOMPARE(bytes.mid(30, 47), QByteArray("mimetypeapplication/vnd.oasis.opendocument.text"));
    QCOMPARE(bytes.mid(8, 2), QByteArray(2, '\0'));

    const auto entries = OdtPackage::read(bytes);
    QVERIFY2(entries.ok(), qPrintable(entries.error()));
    const QByteArray content = entryData(*entries, QStringLiteral("content.xml"));
    const QMap<QString, int> starts = paragraphStarts(content);
    QCOMPARE(starts.value(QStringLiteral("Intro"), -1), 0);
    QCOMPARE(starts.value(QStringLiteral("Seventh")), 7);
    QCOMPARE(starts.value(QStringLiteral("Ninth")), 7);
    QCOMPARE(starts.value(QStringLiteral("Nested third")), 3);
    QCOMPARE(starts.value(QStringLiteral("First")), 1);
    QCOMPARE(starts.value(QStringLiteral("Cell fifth")), 5);
    QCOMPARE(content.count("text:start-value="), 3);

    // Apart from the start values, every file is the one Qt's writer made.
    QByteArray qtBytes;
    QBuffer buffer(&qtBytes);
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(QTextDocumentWriter(&buffer, "odf").write(&document));
    const auto qtEntries = OdtPackage::read(qtBytes);
    QVERIFY(qtEntries.ok());
    QCOMPARE(entries->size(), qtEntries->size());
    for (qsizetype i = 0; i < entries->size(); ++i) {
        QCOMPARE(entries->at(i).name, qtEntries->at(i).name);
        QByteArray data = entries->at(i).data;
        for (const char* start :
             {" text:start-value=\"7\"", " text:start-value=\"3\"", " text:start-value=\"5\""}) {
            data.replace(start, "");
        }
        QCOMPARE(data, qtEntries->at(i).data);
    }

    // As an office suite shows it.
    const QString soffice = kestrum::text::WordConverter().program();
    if (soffice.isEmpty()) {
        QSKIP("LibreOffice (soffice) is not installed to read the OpenDocument file");
    }
    QProcess process;
    process.start(soffice,
                  {QStringLiteral("-env:UserInstallation=") +
                       QUrl::fromLocalFile(m_dir.filePath(QStringLiteral("profile"))).toString(),
                   QStringLiteral("--headless"), QStringLiteral("--convert-to"),
                   QStringLiteral("txt:Text (encoded):UTF8"), QStringLiteral("--outdir"),
                   m_dir.filePath(QStringLiteral("text")), path});
    QVERIFY(process.waitForFinished(120000));
    QFile text(m_dir.filePath(QStringLiteral("text/lists.txt")));
    QVERIFY2(text.open(QIODevice::ReadOnly), qPrintable(process.readAllStandardError()));
    const QString shown = QString::fromUtf8(text.readAll());
    // Each item on a line of its own, marker first, in the document's order.
    const QStringList expected = {
        QStringLiteral("7. Seventh"),      QStringLiteral("8. Eighth"),
        QStringLiteral("3. Nested third"), QStringLiteral("4. Nested fourth"),
        QStringLiteral("9. Ninth"),        QStringLiteral("1. First"),
        QStringLiteral("E. Cell fifth")};
    qsizetype at = 0;
    for (const QString& item : expected) {
        const QStringList parts = item.split(QLatin1Char(' '));
        const QRegularExpression line(
            QStringLiteral("^\\s*") + QRegularExpression::escape(parts.first()) +
                QStringLiteral("\\s+") + QRegularExpression::escape(parts.mid(1).join(' ')) +
                QLatin1Char('$'),
            QRegularExpression::MultilineOption);
        const QRegularExpressionMatch found = line.match(shown, at);
        QVERIFY2(found.hasMatch(), qPrintable(item + QStringLiteral(" in:\n") + shown));
        at = found.capturedEnd();
    }
}

void OdtExportTest::listsFromOneLeaveQtPackage()
{
    // Without lists that start elsewhere than 1 the file is Qt's package as it was written;
    // a list from 0 cannot be written (lists in the format count from 1) and numbers from 1.
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.createList(numbered(QTextListFormat::ListDecimal, 1, 1));
    cursor.insertText(QStringLiteral("One"));
    cursor.insertBlock();
    cursor.setBlockFormat(QTextBlockFormat());
    cursor.insertBlock();
    cursor.createList(numbered(QTextListFormat::ListDecimal, 1, 0));
    cursor.insertText(QStringLiteral("Zero"));
    const QString path = m_dir.filePath(QStringLiteral("plain.odt"));
    const kestrum::Status written = TextExporter::writeOdt(document, path);
    QVERIFY2(written, qPrintable(written.error()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    const auto entries = OdtPackage::read(bytes);
    QVERIFY(entries.ok());
    QVERIFY(!entryData(*entries, QStringLiteral("content.xml")).contains("start-value"));
    QVERIFY(entryData(*entries, QStringLiteral("content.xml")).contains("Zero"));

    // A reader given bytes that are no package says so.
    QVERIFY(!OdtPackage::read(QByteArray("PK\3\4 not a zip archive")).ok());
    QVERIFY(!OdtPackage::read(bytes.left(bytes.size() / 2)).ok());
}

QTEST_MAIN(OdtExportTest)
#include "OdtExportTest.moc"
