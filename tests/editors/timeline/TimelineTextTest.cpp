// The timeline page text: what the writer puts down, what the reader takes back (and, on
// purpose, what it does not), field extraction, replace-all and the reader's bounds.

#include "editors/timeline/TimelineText.h"

#include <QTest>

using namespace kestrum;
using namespace kestrum::timeline;

namespace {

TimelineModel withEvents()
{
    TimelineModel m;
    m.minimumRange = 36526;
    m.maximumRange = 45658.5;
    m.rangeFrom = 40000.25;
    m.rangeTo = 42000;
    const struct
    {
        const char* annotation;
        const char* hint;
        double position;
        const char* link;
    } events[] = {
        {"Kick-off", "First meeting", 40634.4456712963,
         "Interview 04\tpar. 3\tInterviews\t2\tCode"},
        {"Été", "Accents survive", 41000, ""},
    };
    for (const auto& s : events) {
        TimelineEvent e = m.newEvent();
        e.annotation = QString::fromUtf8(s.annotation);
        e.hint = QString::fromUtf8(s.hint);
        e.position = s.position;
        e.annotationImageIndex = 3;
        e.annotationColor = 0x123456;
        m.links << QString::fromUtf8(s.link);
        e.tag = int(m.links.size() - 1);
        m.events.push_back(e);
    }
    return m;
}

} // namespace

class TimelineTextTest : public QObject
{
    Q_OBJECT

private slots:
    void emptyPageIsExactlyTheEightSettingLines()
    {
        TimelineModel m;
        m.divisionFont.bold = true;
        m.divisionFont.pointSize = 9;
        const QString text = TimelineText::SaveTimeLineToString(m);
        QCOMPARE(text, QStringLiteral("BackGround\t$00984E00\t$00FFF0D2\r\n"
                                      "LineBar\t$00FFEFE3\t$00FFD2AF\r\n"
                                      "Indicator\t$00AAD9FF\t0\r\n"
                                      "Timeline Font\t Segoe UI Bold 9\r\n"
                                      "Event font\t Segoe UI 8\r\n"
                                      "Image\t16\t16\r\n"
                                      "Max Range\t28491\t40544\r\n"
                                      "Range\t28491\t35243"));
        TimelineModel back = withEvents();
        QVERIFY(TimelineText::LoadTimeLinefromString(back, text).ok());
        QVERIFY(back.events.empty());
        QVERIFY(back.links.isEmpty());
        QCOMPARE(back.rangeTo, 35243.0);
    }

    void eventLinesAndColourNames()
    {
        TimelineModel m = withEvents();
        m.backgroundColor = common::clWhite;
        m.defaultIndicator.annotationRounded = true;
        const QStringList lines =
            TimelineText::SaveTimeLineToString(m).split(QStringLiteral("\r\n"));
        QCOMPARE(lines.size(), 10);
        QCOMPARE(lines[0], QStringLiteral("BackGround\tclWhite\t$00FFF0D2"));
        QCOMPARE(lines[2], QStringLiteral("Indicator\t$00AAD9FF\t-1"));
        QCOMPARE(lines[8], QStringLiteral("Event\tKick-off\tFirst meeting\t40634.4456712963\t"
                                          "Interview 04\bpar. 3\bInterviews\b2\bCode\t3\t1193046"));
        QCOMPARE(lines[9], QString::fromUtf8("Event\tÉté\tAccents survive\t41000\t\t3\t1193046"));
    }

    void roundTripKeepsTextsPositionsLinksAndRangeOnly()
    {
        TimelineModel m = withEvents();
        m.defaultIndicator.annotationRounded = true;
        m.annotationFont.name = QStringLiteral("Tahoma");
        m.imageWidth = 32;
        TimelineModel back;
        QVERIFY(
            TimelineText::LoadTimeLinefromString(back, TimelineText::SaveTimeLineToString(m)).ok());
        QCOMPARE(back.events.size(), std::size_t(2));
        QCOMPARE(back.events[0].annotation, QStringLiteral("Kick-off"));
        QCOMPARE(back.events[0].hint, QStringLiteral("First meeting"));
        QCOMPARE(back.events[0].position, 40634.4456712963);
        QCOMPARE(back.events[1].annotation, QString::fromUtf8("Été"));
        QCOMPARE(back.links, m.links); // TABs inside a link survive
        QCOMPARE(back.events[0].tag, 0);
        QCOMPARE(back.events[1].tag, 1);
        QCOMPARE(back.minimumRange, 36526.0);
        QCOMPARE(back.maximumRange, 45658.5);
        QCOMPARE(back.rangeFrom, 40000.25);
        // Deliberately not restored: image index and colour (both become 1), rounding, fonts,
        // image size; the marker colours come from the default indicator.
        for (const TimelineEvent& e : back.events) {
            QCOMPARE(e.annotationImageIndex, 1);
            QCOMPARE(e.annotationColor, TColor(1));
            QCOMPARE(e.color, back.defaultIndicator.color);
        }
        QVERIFY(!back.defaultIndicator.annotationRounded);
        QCOMPARE(back.annotationFont.name, QStringLiteral("Segoe UI"));
        QCOMPARE(back.imageWidth, 16);
    }

    void missingColourFieldKeepsTheDefaultColour()
    {
        TimelineModel m;
        QVERIFY(TimelineText::LoadTimeLinefromString(
                    m, QStringLiteral("Indicator\tclRed\tTrue\nEvent\tA\tB\t40000\tlink"))
                    .ok());
        QVERIFY(m.defaultIndicator.annotationRounded);
        QCOMPARE(m.events.size(), std::size_t(1));
        QCOMPARE(m.events[0].annotationColor, common::clRed);
        QCOMPARE(m.events[0].annotationImageIndex, 1);
        QCOMPARE(m.links, QStringList{QStringLiteral("link")});
    }

    void tabsAndLineBreaksInAnnotationsSplitTheLine()
    {
        TimelineModel m;
        TimelineEvent e = m.newEvent();
        e.annotation = QStringLiteral("two\tparts");
        e.hint = QStringLiteral("hint");
        e.position = 40000;
        m.events.push_back(e);
        e.annotation = QStringLiteral("two\r\nlines");
        m.events.push_back(e);
        TimelineModel back;
        const Status loaded =
            TimelineText::LoadTimeLinefromString(back, TimelineText::SaveTimeLineToString(m));
        // The first event's hint field now holds "parts" and its position field "hint".
        QVERIFY(!loaded.ok());
        QVERIFY2(
            loaded.error().contains(QLatin1String("'hint' is not a valid floating point value")),
            qPrintable(loaded.error()));
        QCOMPARE(back.events.size(), std::size_t(1));
        QCOMPARE(back.events[0].annotation, QStringLiteral("two"));
        QCOMPARE(back.events[0].hint, QStringLiteral("parts"));
    }

    void keysAreCaseSensitiveAndTheLastRangeWins()
    {
        TimelineModel m;
        const QString text = QStringLiteral(
            "event\tignored\t\t1\n\nRange\t1\t2\nImage\tx\ty\nTimeline font\tanything\n"
            "Unknown\t\nRange\t3\t4\nMax Range\t0\t10\r\nLineBar\t255\tclBlack");
        QVERIFY(TimelineText::LoadTimeLinefromString(m, text).ok());
        QVERIFY(m.events.empty());
        QCOMPARE(m.rangeFrom, 3.0);
        QCOMPARE(m.rangeTo, 4.0);
        QCOMPARE(m.maximumRange, 10.0);
        QCOMPARE(m.barColor, common::clRed); // a plain decimal is a colour too
        QCOMPARE(m.barColorTo, common::clBlack);
    }

    void damagedLinesStopTheLoadKeepingWhatCameBefore_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("events");
        QTest::addColumn<double>("rangeFrom");
        QTest::addColumn<TColor>("background");
        QTest::newRow("bad date") << "Range\t100\t200\nEvent\ta\tb\t12/03/2020\nRange\t1\t2"
                                  << "Line 2: '12/03/2020' is not a valid floating point value" << 1
                                  << 100.0 << TColor(0x984E00);
        QTest::newRow("missing position")
            << "Event\ta"
            << "Line 1: '' is not a valid floating point value" << 1 << 28491.0 << TColor(0x984E00);
        QTest::newRow("infinite range")
            << "Range\tinf\t2"
            << "'inf' is not a valid floating point value" << 0 << 28491.0 << TColor(0x984E00);
        QTest::newRow("one colour only")
            << "BackGround\tclRed"
            << "Line 1: '' is not a valid colour" << 0 << 28491.0 << TColor(common::clRed);
        QTest::newRow("bad colour")
            << "Range\t5\t6\r\nBackGround\tpurple\tclRed"
            << "Line 2: 'purple' is not a valid colour" << 0 << 5.0 << TColor(0x984E00);
    }
    void damagedLinesStopTheLoadKeepingWhatCameBefore()
    {
        QFETCH(QString, text);
        QFETCH(QString, message);
        QFETCH(int, events);
        QFETCH(double, rangeFrom);
        QFETCH(TColor, background);
        TimelineModel m;
        const Status loaded = TimelineText::LoadTimeLinefromString(m, text);
        QVERIFY(!loaded.ok());
        QVERIFY2(loaded.error().contains(message), qPrintable(loaded.error()));
        QCOMPARE(int(m.events.size()), events);
        QCOMPARE(m.rangeFrom, rangeFrom);
        QCOMPARE(m.backgroundColor, background);
    }

    void readerIsBounded()
    {
        TimelineTextLimits limits;
        limits.maxEvents = 3;
        TimelineModel m;
        QString text;
        for (int i = 0; i < 5; ++i) {
            text += QStringLiteral("Event\te\th\t%1\r\n").arg(40000 + i);
        }
        Status loaded = TimelineText::LoadTimeLinefromString(m, text, limits);
        QVERIFY(!loaded.ok());
        QVERIFY(loaded.error().contains(QLatin1String("more than 3 events")));
        QCOMPARE(m.events.size(), std::size_t(3));

        limits.maxChars = 10;
        loaded = TimelineText::LoadTimeLinefromString(m, text, limits);
        QVERIFY(!loaded.ok());
        QVERIFY(m.events.empty());
    }

    void fieldExtraction()
    {
        const QString line = QStringLiteral("a\tb\t\td");
        QCOMPARE(TimelineText::field(line, 1), QStringLiteral("a"));
        QCOMPARE(TimelineText::field(line, 2), QStringLiteral("b"));
        QCOMPARE(TimelineText::field(line, 3), QString());
        QCOMPARE(TimelineText::field(line, 4), QStringLiteral("d"));
        QCOMPARE(TimelineText::field(line, 5), QString());
        QCOMPARE(TimelineText::field(QStringLiteral("whole"), 1), QStringLiteral("whole"));
        QCOMPARE(TimelineText::field(line, 256), QString());
        QCOMPARE(TimelineText::field(line, 0), QString());
    }

    void replaceAllRules()
    {
        // Each round replaces the first occurrence of the text as it now stands.
        QCOMPARE(TimelineText::replaceAll(QStringLiteral("aaa"), QStringLiteral("aa"),
                                          QStringLiteral("a")),
                 QStringLiteral("a"));
        QCOMPARE(TimelineText::replaceAll(QStringLiteral("x\ty\tz"), QStringLiteral("\t"),
                                          QStringLiteral("\b")),
                 QStringLiteral("x\by\bz"));
        // A replacement that holds the searched text is made once only.
        QCOMPARE(TimelineText::replaceAll(QStringLiteral("a-a-a"), QStringLiteral("a"),
                                          QStringLiteral("ba")),
                 QStringLiteral("ba-a-a"));
        QCOMPARE(TimelineText::replaceAll(QStringLiteral("abc"), QString(), QStringLiteral("x")),
                 QStringLiteral("abc"));
    }

    void fontTextAndNumbers()
    {
        FontStyle f;
        f.name = QStringLiteral("Tahoma");
        f.bold = true;
        f.italic = true;
        f.pointSize = 11;
        QCOMPARE(TimelineText::fontText(f), QStringLiteral(" Tahoma Bold Italic 11"));
        QCOMPARE(TimelineText::floatText(28491), QStringLiteral("28491"));
        QCOMPARE(TimelineText::floatText(40634.4456712963), QStringLiteral("40634.4456712963"));
        QCOMPARE(TimelineText::floatText(1234567.5), QStringLiteral("1234567.5")); // no grouping
        double v = 0;
        QVERIFY(TimelineText::readFloat(QStringLiteral(" 42.5 "), &v));
        QCOMPARE(v, 42.5);
        QVERIFY(!TimelineText::readFloat(QStringLiteral("nan"), &v));
        QVERIFY(!TimelineText::readFloat(QStringLiteral("1,234"), &v));
    }

    void bytesDecodeAsUtf8OrLatin1()
    {
        QCOMPARE(TimelineText::decode(QByteArray("\xEF\xBB\xBFRange\t1\t2")),
                 QStringLiteral("Range\t1\t2"));
        QCOMPARE(TimelineText::decode(QByteArray("Event\t\xE9t\xE9")),
                 QString::fromUtf8("Event\tété"));
        QCOMPARE(TimelineText::decode(TimelineText::encode(QString::fromUtf8("Łódź"))),
                 QString::fromUtf8("Łódź"));
    }
};

QTEST_GUILESS_MAIN(TimelineTextTest)
#include "TimelineTextTest.moc"
