// The timeline page as a user drives it: layout modes, zoom and scroll, selecting with the
// click timer, the context menu, picture export and copy, the toolbar's messages and the
// options dialog. Dialogs answer from a script.

#include "editors/timeline/widgets/TRMTimeLineDlg.h"
#include "editors/timeline/TimelineNavigation.h"
#include "editors/timeline/TimelineRenderer.h"
#include "editors/timeline/widgets/ColourWell.h"
#include "editors/timeline/widgets/TRMTimeLineOptionsDlg.h"
#include "editors/timeline/widgets/TimelineView.h"
#include "support/ScriptedDialogs.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

using namespace kestrum;
using namespace kestrum::timeline;

namespace {

// Three events, out of order, the second with a location that can be shown.
const QByteArray kPage = "Max Range\t36526\t40179\r\nRange\t36526\t40179\r\n"
                         "Event\tThird\th3\t39000\t\t1\t1\r\n"
                         "Event\tFirst\th1\t37000\tdoc\bpar\bproj\b2 passage\t1\t1\r\n"
                         "Event\tSecond\th2\t38000\tdoc\bpar\bproj\b1 memo\t1\t1";

} // namespace

class TRMTimeLineDlgTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<test::ScopedScriptedDialogs> m_dialogs;
    std::unique_ptr<TRMTimeLineDlg> m_page;

    TRMTimeLineDlg& page() { return *m_page; }
    QRect balloonOf(const QString& annotation)
    {
        const auto lay = TimelineRenderer::layout(page().model(), page().timeLine()->size());
        for (const auto& g : lay.events) {
            if (page().model().events[std::size_t(g.index)].annotation == annotation) {
                return g.balloon;
            }
        }
        return {};
    }
    int indexOf(const QString& annotation)
    {
        const auto& events = page().model().events;
        for (std::size_t i = 0; i < events.size(); ++i) {
            if (events[i].annotation == annotation) {
                return int(i);
            }
        }
        return -1;
    }

private slots:
    void init()
    {
        m_dialogs = std::make_unique<test::ScopedScriptedDialogs>();
        m_page = std::make_unique<TRMTimeLineDlg>();
        m_page->resize(900, 420);
        m_page->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
        QVERIFY(page().document().readContent(kPage));
    }
    void cleanup()
    {
        QVERIFY2(m_dialogs->unexpected().isEmpty(),
                 qPrintable(m_dialogs->unexpected().join(QLatin1Char(','))));
        m_page.reset();
        m_dialogs.reset();
    }

    void loadedPageIsLaidOutAlternating()
    {
        const int h = page().timeLine()->height();
        QCOMPARE(page().layoutMode(), 1);
        QCOMPARE(page().model().verticalMargin, (h - 20) / 2);
        const auto& e = page().model().events;
        QCOMPARE(e[0].annotation, QStringLiteral("First")); // sorted by position text
        QCOMPARE(e[0].annotationPosition, AnnotationPosition::Top);
        QCOMPARE(e[1].annotationPosition, AnnotationPosition::Bottom);
        QVERIFY(page().button(QStringLiteral("Pos1"))->defaultAction()->isChecked());
        QCOMPARE(page().timeLine()->hintPause(), 800); // while the page is shown

        QSignalSpy changed(&page().document(), &store::PageDocument::contentChanged);
        page().button(QStringLiteral("Pos0"))->click();
        QCOMPARE(page().layoutMode(), 0);
        QCOMPARE(page().model().verticalMargin, h - 60);
        QCOMPARE(changed.count(), 1);
        page().button(QStringLiteral("Pos2"))->click();
        QCOMPARE(page().model().verticalMargin, 5);
        QCOMPARE(page().model().events[0].annotationPosition, AnnotationPosition::Bottom);
        // A resize moves the bar only.
        page().resize(900, 500);
        QApplication::processEvents();
        QCOMPARE(page().model().verticalMargin, 5);
    }

    void zoomAndScroll()
    {
        QVERIFY(!page().button(QStringLiteral("ZoomOutBtn"))->isEnabled()); // whole range shown
        QSignalSpy changed(&page().document(), &store::PageDocument::contentChanged);
        page().button(QStringLiteral("ZoomInBtn"))->click();
        const double span = 40179 - 36526;
        QVERIFY(std::abs(page().model().rangeTo - (36526 + span * std::pow(0.95, 10))) < 1e-6);
        QVERIFY(page().button(QStringLiteral("ZoomOutBtn"))->isEnabled());
        QCOMPARE(changed.count(), 1);
        // Six years visible: half-year divisions; the bar's page follows the span.
        QCOMPARE(page().model().divisionType, int(DivisionType::Month));
        QCOMPARE(page().model().divisions, 6);
        QCOMPARE(page().scrollBar()->pageStep(), TimelineNavigation::pageSize(page().model()));

        const double width = page().model().rangeTo - page().model().rangeFrom;
        page().scrollBar()->setValue(500);
        QCOMPARE(page().model().rangeFrom, 36526 + span / 2);
        QVERIFY(std::abs(page().model().rangeTo - page().model().rangeFrom - width) < 1e-9);

        // Dragging the timeline 100 pixels to the right shows earlier days; the bar follows on
        // a scale of 100.
        const QPoint start(page().timeLine()->width() / 2, 10);
        const double before = page().model().rangeFrom;
        QTest::mousePress(page().timeLine(), Qt::LeftButton, {}, start);
        QTest::mouseMove(page().timeLine(), start + QPoint(50, 0));
        QTest::mouseMove(page().timeLine(), start + QPoint(100, 0));
        QTest::mouseRelease(page().timeLine(), Qt::LeftButton, {}, start + QPoint(100, 0));
        const double after = page().model().rangeFrom;
        QVERIFY(after < before);
        QCOMPARE(page().scrollBar()->value(), int(std::nearbyint((after - 36526) / span * 100)));
    }

    void clickSelectsAndTheTimerDeselects()
    {
        const QRect balloon = balloonOf(QStringLiteral("Second"));
        QVERIFY(!balloon.isEmpty());
        const int second = indexOf(QStringLiteral("Second"));
        const TColor colour = page().model().events[std::size_t(second)].annotationColor;
        QTest::mouseClick(page().timeLine(), Qt::LeftButton, {}, balloon.center());
        QTest::qWait(40); // the click timer has fired: the event click came after the release
        QCOMPARE(page().selection().selected(), second);
        QCOMPARE(page().model().events[std::size_t(second)].annotationColor,
                 EventSelection::kHighlight);
        QCOMPARE(page().model().events[std::size_t(second)].size, kSelectedEventSize);

        // A right-button release asks twice for the menu of the selected event.
        QTest::mouseClick(page().timeLine(), Qt::RightButton, {}, QPoint(5, 5));
        QCOMPARE(page().menuRequests(), 2);
        page().popupMenu()->close();

        // A click on empty ground deselects once the timer fires.
        QTest::mouseClick(page().timeLine(), Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(page().selection().selected(), second);
        QTest::qWait(40);
        QCOMPARE(page().selection().selected(), -1);
        QCOMPARE(page().model().events[std::size_t(second)].annotationColor, colour);
        QCOMPARE(page().model().events[std::size_t(second)].color, colour);
    }

    void contextMenuCommands()
    {
        QSignalSpy changed(&page().document(), &store::PageDocument::contentChanged);
        // The sort moved texts and days but not the links: slot 1 now shows "Second" with the
        // link that came with "First" ("2 passage"), slot 2 "Third" with "1 memo".
        const int second = indexOf(QStringLiteral("Second"));
        QCOMPARE(second, 1);
        page().TimeLineIndicatorClick(second);
        page().PopupMenu1Popup();
        QVERIFY(page().menuItem(QStringLiteral("Followlink1"))->isEnabled());
        QVERIFY(page().menuItem(QStringLiteral("Position1"))->isEnabled());    // mode 1
        QVERIFY(page().menuItem(QStringLiteral("Atthebottom1"))->isChecked()); // odd slot
        page().Followlink1Click();
        QCOMPARE(page().lastLocation(), QStringLiteral("2 passage"));

        page().Ontop1Click();
        QCOMPARE(page().model().events[1].annotationPosition, AnnotationPosition::Top);
        QCOMPARE(page().model().events[1].shape, Shape::TriangleDown);
        page().PopupMenu1Popup();
        QVERIFY(page().menuItem(QStringLiteral("Ontop1"))->isChecked());

        m_dialogs->answerColour(QColor(0, 128, 0));
        page().Color1Click();
        QCOMPARE(page().model().events[1].annotationColor, common::clGreen);
        QCOMPARE(page().model().events[1].colorTo, common::clGreen);
        m_dialogs->answerColour(std::nullopt);
        page().Color1Click(); // cancelled: nothing changes
        QCOMPARE(page().model().events[1].annotationColor, common::clGreen);

        page().TimeLineIndicatorClick(2);
        page().PopupMenu1Popup();
        QVERIFY(!page().menuItem(QStringLiteral("Followlink1"))->isEnabled()); // "1 memo"
        page().AdjustPosition(0);
        page().PopupMenu1Popup();
        QVERIFY(!page().menuItem(QStringLiteral("Position1"))->isEnabled());

        page().TimeLineIndicatorClick(1);
        page().Delete1Click();
        QCOMPARE(page().model().events.size(), std::size_t(2));
        QCOMPARE(page().selection().selected(), 1); // left as it was: now "Third"
        QCOMPARE(page().model().events[1].annotation, QStringLiteral("Third"));
        QCOMPARE(changed.count(), 4); // above, colour, mode, delete
    }

    void picturesCopyAndMessages()
    {
        QTemporaryDir dir;
        m_dialogs->answerSaveFile(
            test::ScriptedDialogs::FileChoice{dir.filePath(QStringLiteral("pic.png")), 4});
        page().SaveChart2Click();
        QCOMPARE(m_dialogs->lastFileRequest()->filters.size(), 4);
        QFile gif(dir.filePath(QStringLiteral("pic.gif")));
        QVERIFY(gif.open(QIODevice::ReadOnly));
        QVERIFY(gif.read(6) == "GIF89a");
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("pic.png"))));
        QCOMPARE(QImage(gif.fileName()).size(), page().timeLine()->size());
        m_dialogs->answerSaveFile(std::nullopt);
        page().SaveChart2Click(); // cancelled

        page().CopyChart2Click();
        QCOMPARE(QApplication::clipboard()->image().size(), page().timeLine()->size());
        QVERIFY(QFile::exists(TRMTimeLineDlg::copyFileName()));

        page().button(QStringLiteral("BitBtn3"))->click();
        QCOMPARE(m_dialogs->messages().last(), QStringLiteral("Not available yet!"));
        QCOMPARE(page().button(QStringLiteral("TrackingBtn"))->toolTip(),
                 QStringLiteral("Synchronize timeline with main window"));
        QVERIFY(page().button(QStringLiteral("TrackingBtn"))->isChecked());

        QTest::mouseClick(page().panel(), Qt::LeftButton, {},
                          QPoint(page().panel()->width() - 5, 5));
        const QString message = m_dialogs->messages().last();
        QVERIFY2(message.contains(QLatin1String(" to ")) &&
                     message.endsWith(QLatin1String("\r\n1  1")),
                 qPrintable(message));
        QCOMPARE(page().model().divisionType, int(DivisionType::Month));
        QCOMPARE(page().model().divisions, 12);
    }

    void optionsDialog()
    {
        QSignalSpy changed(&page().document(), &store::PageDocument::contentChanged);
        const int first = indexOf(QStringLiteral("First"));
        page().model().events[std::size_t(first)].annotationColor =
            page().model().defaultIndicator.annotationColor;
        m_dialogs->answerFont(QFont(QStringLiteral("Tahoma"), 11, QFont::Bold));
        m_dialogs->answerColour(QColor(Qt::red));
        m_dialogs->answerExec([&](QDialog* dialog) {
            auto* options = qobject_cast<TRMTimeLineOptionsDlg*>(dialog);
            if (!options) {
                return int(QDialog::Rejected);
            }
            // What the dialog shows on opening.
            if (options->well(QStringLiteral("BackgroundColor"))->colour() != 0x984E00 ||
                options->datePanel()->text() != QStringLiteral(" Segoe UI 8")) {
                return int(QDialog::Rejected);
            }
            options->TimeLineFontClick();
            options->well(QStringLiteral("AnnotationColor"))->click();
            options->roundCorners()->click();
            return int(QDialog::Accepted);
        });
        page().SpeedButton1Click();
        const TimelineModel& m = page().model();
        QCOMPARE(m.divisionFont.name, QStringLiteral("Tahoma"));
        QVERIFY(m.divisionFont.bold);
        QCOMPARE(m.subDivisionFont.name, QStringLiteral("Tahoma"));
        QCOMPARE(page().optionsDialog()->datePanel()->text(), QStringLiteral(" Tahoma Bold 11"));
        QCOMPARE(m.defaultIndicator.annotationColor, common::clRed);
        QCOMPARE(m.events[std::size_t(first)].annotationColor, common::clRed);
        QCOMPARE(m.events[std::size_t(indexOf(QStringLiteral("Second")))].annotationColor,
                 TColor(1));
        QVERIFY(m.defaultIndicator.annotationRounded && m.events[0].annotationRounded);
        QCOMPARE(changed.count(), 1);
    }

    void hintPauseGoesBackWhenThePageHides()
    {
        page().hide();
        QCOMPARE(page().timeLine()->hintPause(), 100);
        page().show();
        QCOMPARE(page().timeLine()->hintPause(), 800);
    }

    void damagedPageShowsWhy()
    {
        QVERIFY(page().document().readContent("Event\ta\tb\tnot a day"));
        QCOMPARE(page().model().events.size(), std::size_t(1));
        QVERIFY(m_dialogs->messages().last().contains(QLatin1String("'not a day'")));
    }
};

QTEST_MAIN(TRMTimeLineDlgTest)
#include "TRMTimeLineDlgTest.moc"
