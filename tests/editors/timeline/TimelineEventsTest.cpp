// The page's rules over its events: the text-order sort, layout modes, the options dialog's
// colours, and selecting, deselecting and deleting an event.

#include "editors/timeline/TimelineEvents.h"
#include "editors/timeline/DateFormat.h"
#include "editors/timeline/EventSelection.h"

#include <QTest>

using namespace kestrum;
using namespace kestrum::timeline;

namespace {

TimelineModel threeEvents()
{
    TimelineModel m;
    const double positions[] = {40000, 9999, 30000.5};
    const char* names[] = {"forty", "nine", "thirty"};
    for (int i = 0; i < 3; ++i) {
        TimelineEvent e = m.newEvent();
        e.position = positions[i];
        e.annotation = QString::fromLatin1(names[i]);
        e.hint = QStringLiteral("hint ") + QString::fromLatin1(names[i]);
        e.annotationColor = 0x100 + i;
        e.tag = i;
        m.events.push_back(e);
    }
    return m;
}

} // namespace

class TimelineEventsTest : public QObject
{
    Q_OBJECT

private slots:
    void sortIsByPositionTextAndMovesOnlyThreeProperties()
    {
        TimelineModel m = threeEvents();
        TimelineEvents::sortEvents(m);
        // "30000.5" < "40000" < "9999" as texts.
        QCOMPARE(m.events[0].annotation, QStringLiteral("thirty"));
        QCOMPARE(m.events[0].position, 30000.5);
        QCOMPARE(m.events[0].hint, QStringLiteral("hint thirty"));
        QCOMPARE(m.events[1].annotation, QStringLiteral("forty"));
        QCOMPARE(m.events[2].annotation, QStringLiteral("nine"));
        QCOMPARE(m.events[2].position, 9999.0);
        // Colours and links stay with their slots.
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(m.events[std::size_t(i)].annotationColor, TColor(0x100 + i));
            QCOMPARE(m.events[std::size_t(i)].tag, i);
        }
    }

    void sortIgnoresCaseWithinEqualPositions()
    {
        TimelineModel m;
        for (const char* name : {"beta", "Alpha", "alpha2"}) {
            TimelineEvent e = m.newEvent();
            e.position = 40000;
            e.annotation = QString::fromLatin1(name);
            m.events.push_back(e);
        }
        TimelineEvents::sortEvents(m);
        QCOMPARE(m.events[0].annotation, QStringLiteral("Alpha"));
        QCOMPARE(m.events[1].annotation, QStringLiteral("alpha2"));
        QCOMPARE(m.events[2].annotation, QStringLiteral("beta"));
    }

    void layoutModes()
    {
        TimelineModel m = threeEvents();
        TimelineEvents::applyLayoutMode(m, LayoutMode::AllOnTop, 300);
        QCOMPARE(m.verticalMargin, 240);
        for (const TimelineEvent& e : m.events) {
            QCOMPARE(e.annotationPosition, AnnotationPosition::Top);
            QCOMPARE(e.shape, Shape::TriangleDown);
        }
        QCOMPARE(m.events[0].annotation, QStringLiteral("forty")); // modes 0 and 2 do not sort

        TimelineEvents::applyLayoutMode(m, LayoutMode::Alternate, 301);
        QCOMPARE(m.verticalMargin, 140);
        QCOMPARE(m.events[0].annotation, QStringLiteral("thirty"));
        QCOMPARE(m.events[0].annotationPosition, AnnotationPosition::Top);
        QCOMPARE(m.events[1].annotationPosition, AnnotationPosition::Bottom);
        QCOMPARE(m.events[1].shape, Shape::TriangleUp);
        QCOMPARE(m.events[2].annotationPosition, AnnotationPosition::Top);

        TimelineEvents::applyLayoutMode(m, LayoutMode::AllAtBottom, 301);
        QCOMPARE(m.verticalMargin, 5);
        for (const TimelineEvent& e : m.events) {
            QCOMPARE(e.annotationPosition, AnnotationPosition::Bottom);
            QCOMPARE(e.shape, Shape::TriangleUp);
        }
        // Integer division toward zero on a tiny control.
        QCOMPARE(TimelineEvents::verticalMarginFor(LayoutMode::Alternate, 5), -7);
    }

    void adjustColorsRecoloursEventsOfTheOldDefault()
    {
        TimelineModel m = threeEvents();
        m.events[1].annotationColor = m.defaultIndicator.annotationColor;
        TimelineEvents::Colours c{1, 2, 3, 4, common::clLime, true};
        TimelineEvents::AdjustColors(m, c);
        QCOMPARE(m.backgroundColor, TColor(1));
        QCOMPARE(m.barColorTo, TColor(4));
        QCOMPARE(m.defaultIndicator.annotationColor, common::clLime);
        QCOMPARE(m.events[1].annotationColor, common::clLime);
        QCOMPARE(m.events[1].colorTo, common::clLime);
        QCOMPARE(m.events[0].annotationColor, TColor(0x100));
        QVERIFY(m.events[0].annotationRounded && m.defaultIndicator.annotationRounded);

        TimelineModel empty;
        c.rounded = true;
        TimelineEvents::AdjustColors(empty, c);
        QVERIFY(!empty.defaultIndicator.annotationRounded); // no events: rounding unchanged
    }

    void selectionHighlightsAndRestores()
    {
        TimelineModel m = threeEvents();
        const TimelineEvent before = m.events[0];
        EventSelection s;
        QVERIFY(!s.click(m, 0));
        QCOMPARE(s.selected(), 0);
        QCOMPARE(m.events[0].annotationColor, EventSelection::kHighlight);
        QCOMPARE(m.events[0].annotationTextColor, common::clWhite);
        QCOMPARE(m.events[0].size, kSelectedEventSize);
        QVERIFY(s.click(m, 0)); // again: the context menu
        QVERIFY(!s.click(m, 1));
        QCOMPARE(m.events[0].annotationColor, before.annotationColor);
        QCOMPARE(m.events[0].color, before.annotationColor); // marker takes the balloon colour
        QCOMPARE(m.events[0].size, kNormalEventSize);
        QCOMPARE(m.events[1].size, kSelectedEventSize);
        s.deselect(m);
        QCOMPARE(s.selected(), -1);
        QCOMPARE(m.events[1].annotationColor, TColor(0x101));
        QVERIFY(!s.click(m, 7)); // not an event
        QCOMPARE(s.selected(), -1);
    }

    void deletingLeavesTheIndexOnTheNextEvent()
    {
        TimelineModel m = threeEvents();
        EventSelection s;
        s.click(m, 1);
        s.deleteSelected(m);
        QCOMPARE(m.events.size(), std::size_t(2));
        QCOMPARE(s.selected(), 1);
        QCOMPARE(m.events[1].annotation, QStringLiteral("thirty"));
        s.click(m, 1);
        QVERIFY(s.click(m, 1)); // "thirty" is now the selected event
    }

    void dateFormats_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("qt");
        QTest::addColumn<double>("day");
        QTest::addColumn<QString>("shown");
        QTest::newRow("year") << "yyyy"
                              << "yyyy" << 28491.0 << "1978";
        QTest::newRow("month and year") << " mmm\r\nyyyy"
                                        << "' 'MMM'\r\n'yyyy" << 28491.0 << " Jan\r\n1978";
        QTest::newRow("time") << "  hh:mm"
                              << "'  'hh':'mm" << 28491.75 << "  18:00";
        QTest::newRow("minutes by n") << "h:nn"
                                      << "h':'mm" << 28491.5 + 5 / 1440.0 << "12:05";
        QTest::newRow("month after day") << "dd/mm/yy"
                                         << "dd'/'MM'/'yy" << 28521.0 << "31/01/78";
        QTest::newRow("long month") << "d mmmm"
                                    << "d' 'MMMM" << 28521.0 << "31 January";
        QTest::newRow("quote") << "yyyy'd'"
                               << "yyyy''''d''''" << 28491.0 << "1978'1'";
    }
    void dateFormats()
    {
        QFETCH(QString, format);
        QFETCH(QString, qt);
        QFETCH(double, day);
        QFETCH(QString, shown);
        QCOMPARE(DateFormat::toQtFormat(format), qt);
        QCOMPARE(DateFormat::format(day, format, QLocale::c()), shown);
    }
};

QTEST_GUILESS_MAIN(TimelineEventsTest)
#include "TimelineEventsTest.moc"
