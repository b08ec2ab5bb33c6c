// The one escaping rule of RTF text (both the text and the grid writers use it) and the
// delimiting of control words.

#include "common/RtfEmitter.h"

#include <QtTest>

using namespace kestrum::common;

class RtfEmitterTest : public QObject
{
    Q_OBJECT
private slots:
    void escapesText_data();
    void escapesText();
    void outputIsSevenBit();
    void delimitsWordsOnlyBeforeLettersAndDigits();
    void hexDataBreaksLines();
};

void RtfEmitterTest::escapesText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("rtf");

    QTest::newRow("plain") << QStringLiteral("Plain 42.") << QByteArray("Plain 42.");
    QTest::newRow("braces and backslash")
        << QStringLiteral("a{b}\\c") << QByteArray("a\\{b\\}\\\\c");
    QTest::newRow("tab") << QStringLiteral("a\tb") << QByteArray("a\\tab b");
    QTest::newRow("tab before a symbol") << QStringLiteral("\t{") << QByteArray("\\tab \\{");
    QTest::newRow("line feed") << QStringLiteral("a\nb") << QByteArray("a\\line b");
    QTest::newRow("CR LF is one break") << QStringLiteral("a\r\nb") << QByteArray("a\\line b");
    QTest::newRow("lone CR") << QStringLiteral("a\rb") << QByteArray("a\\line b");
    QTest::newRow("two breaks") << QStringLiteral("a\n\nb") << QByteArray("a\\line\\line b");
    QTest::newRow("line separator") << QString::fromUtf16(u"a\u2028b") << QByteArray("a\\line b");
    QTest::newRow("other controls dropped")
        << QString::fromUtf16(u"a\u0001\u001fb\u007f") << QByteArray("ab");
    QTest::newRow("object replacement dropped")
        << QString::fromUtf16(u"a\ufffcb") << QByteArray("ab");
    QTest::newRow("no-break space, soft and no-break hyphen")
        << QString::fromUtf16(u"a\u00a0b\u00adc\u2011d") << QByteArray("a\\~b\\-c\\_d");
    QTest::newRow("Latin-1 as code page byte")
        << QString::fromUtf16(u"caf\u00e9") << QByteArray("caf\\'e9");
    QTest::newRow("Windows-1252 high bytes")
        << QString::fromUtf16(u"\u20ac\u2013\u201c\u0178") << QByteArray("\\'80\\'96\\'93\\'9f");
    QTest::newRow("outside the code page")
        << QString::fromUtf16(u"\u0141\u00f3d\u017a") << QByteArray("\\u321?\\'f3d\\u378?");
    QTest::newRow("above 0x7fff is negative")
        << QString::fromUtf16(u"\uff21") << QByteArray("\\u-223?");
    QTest::newRow("surrogate pair: two units, one fallback each")
        << QString::fromUcs4(U"x\U0001F600y") << QByteArray("x\\u-10179?\\u-8704?y");
    QTest::newRow("no byte in Windows-1252")
        << QString::fromUtf16(u"\u0081") << QByteArray("\\u129?");
}

void RtfEmitterTest::escapesText()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, rtf);
    QCOMPARE(RtfEmitter::escape(text), rtf);
}

void RtfEmitterTest::outputIsSevenBit()
{
    QString every;
    for (char16_t u = 0; u < 0xFFFF; u += 7) {
        every.append(QChar(u));
    }
    const QByteArray out = RtfEmitter::escape(every);
    QVERIFY(!out.isEmpty());
    for (const char c : out) {
        QVERIFY(uchar(c) >= 0x20 && uchar(c) < 0x80);
    }
    // Every brace in the output is escaped: the text cannot open or close a group.
    for (qsizetype i = 0; i < out.size(); ++i) {
        if (out[i] == '{' || out[i] == '}') {
            qsizetype slashes = 0;
            for (qsizetype j = i - 1; j >= 0 && out[j] == '\\'; --j) {
                ++slashes;
            }
            QVERIFY2(slashes % 2 == 1, out.mid(std::max<qsizetype>(0, i - 8), 16).constData());
        }
    }
}

void RtfEmitterTest::delimitsWordsOnlyBeforeLettersAndDigits()
{
    RtfEmitter rtf;
    rtf.word("b");
    rtf.text(u"bold");
    rtf.word("fs", 24);
    rtf.text(u"7");
    rtf.word("i");
    rtf.text(u"\u00e9");
    rtf.words("\\pard\\intbl");
    rtf.text(u"x");
    rtf.raw("{");
    rtf.text(u"y");
    rtf.hexByte(0x01);
    rtf.text(u"z");
    rtf.word("par");
    rtf.raw("}");
    QCOMPARE(rtf.bytes(), QByteArray("\\b bold\\fs24 7\\i\\'e9\\pard\\intbl x{y\\'01z\\par}"));

    rtf.clear();
    rtf.word("tab");
    rtf.text(u"a");
    QCOMPARE(rtf.bytes(), QByteArray("\\tab a"));
    rtf.clear();
    rtf.words("");
    rtf.text(u"a");
    QCOMPARE(rtf.bytes(), QByteArray("a"));
}

void RtfEmitterTest::hexDataBreaksLines()
{
    RtfEmitter rtf;
    rtf.word("pngblip");
    QByteArray data;
    for (int i = 0; i < 5; ++i) {
        data.append(char(0xF0 + i));
    }
    rtf.hexData(data, 2);
    // The data is set off from the word before it: "\\pngblipf0" would be another word.
    QCOMPARE(rtf.bytes(), QByteArray("\\pngblip f0f1\nf2f3\nf4"));
    rtf.text(u"a");
    QVERIFY(rtf.bytes().endsWith("f4a"));
}

QTEST_GUILESS_MAIN(RtfEmitterTest)
#include "RtfEmitterTest.moc"
