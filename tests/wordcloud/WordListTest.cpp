// Reading "word<TAB>weight" lists.

#include "wordcloud/WordList.h"

#include <QBuffer>
#include <QtTest>

using namespace kestrum::wordcloud;

namespace {

kestrum::Result<WordList::Result> readBytes(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return WordList::read(buffer);
}

QString describe(const WordList::Result& r)
{
    QStringList parts;
    for (const WordList::Entry& e : r.entries) {
        parts << QStringLiteral("%1=%2@%3").arg(e.text).arg(e.weight).arg(e.line);
    }
    return parts.join(QLatin1Char(' '));
}

} // namespace

class WordListTest : public QObject
{
    Q_OBJECT

private slots:
    void lines_data();
    void lines();
    void tooLargeIsRefused();
    void entriesAreBounded();
};

void WordListTest::lines_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("entries");
    QTest::addColumn<int>("warnings");
    QTest::newRow("plain") << QByteArray("team\t12\nremote work\t7\n")
                           << QStringLiteral("team=12@1 remote work=7@2") << 0;
    QTest::newRow("CRLF and BOM") << QByteArray("\xEF\xBB\xBFteam\t3\r\ntrust\t2\r\n")
                                  << QStringLiteral("team=3@1 trust=2@2") << 0;
    QTest::newRow("no final line end") << QByteArray("team\t3") << QStringLiteral("team=3@1") << 0;
    QTest::newRow("blank lines skipped")
        << QByteArray("\n\nteam\t3\n   \n") << QStringLiteral("team=3@3") << 0;
    QTest::newRow("blanks trimmed")
        << QByteArray("  team \t 3 \n") << QStringLiteral("team=3@1") << 0;
    QTest::newRow("no tab") << QByteArray("word weight\nteam\t3\n") << QStringLiteral("team=3@2")
                            << 1;
    QTest::newRow("header line") << QByteArray("word\tweight\nteam\t3\n")
                                 << QStringLiteral("team=3@2") << 1;
    QTest::newRow("extra fields ignored")
        << QByteArray("team\t3\tnoun\n") << QStringLiteral("team=3@1") << 0;
    // Empty words and weights below 1 are passed on: the cloud refuses them.
    QTest::newRow("empty word") << QByteArray("\t5\n") << QStringLiteral("=5@1") << 0;
    QTest::newRow("zero and negative")
        << QByteArray("a\t0\nb\t-4\n") << QStringLiteral("a=0@1 b=-4@2") << 0;
    QTest::newRow("beyond 32 bits") << QByteArray("a\t99999999999\nb\t-99999999999\n")
                                    << QStringLiteral("a=2147483647@1 b=-2147483648@2") << 1;
    QTest::newRow("duplicates kept")
        << QByteArray("a\t1\na\t2\n") << QStringLiteral("a=1@1 a=2@2") << 0;
    QTest::newRow("non-Latin") << QByteArray("обучение\t4\n協力\t2\n")
                               << QStringLiteral("обучение=4@1 協力=2@2") << 0;
    QTest::newRow("invalid UTF-8")
        << QByteArray("t\xFF\xFEm\t4\n") << QStringLiteral("t\uFFFD\uFFFDm=4@1") << 0;
}

void WordListTest::lines()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, entries);
    QFETCH(int, warnings);
    const auto result = readBytes(bytes);
    QVERIFY(result);
    QCOMPARE(describe(*result), entries);
    QCOMPARE(result->warnings.size(), warnings);
}

void WordListTest::tooLargeIsRefused()
{
    const auto tooLarge = readBytes(QByteArray(WordList::kMaxBytes + 1, 'a'));
    QVERIFY(!tooLarge);
    QVERIFY(tooLarge.error().contains(QStringLiteral("larger than 16 MiB")));
}

void WordListTest::entriesAreBounded()
{
    QByteArray bytes;
    for (int i = 0; i < WordList::kMaxEntries + 5; ++i) {
        bytes += "w\t1\n";
    }
    const auto result = readBytes(bytes);
    QVERIFY(result);
    QCOMPARE(result->entries.size(), WordList::kMaxEntries);
    QCOMPARE(result->warnings.size(), 1);
}

QTEST_GUILESS_MAIN(WordListTest)
#include "WordListTest.moc"
