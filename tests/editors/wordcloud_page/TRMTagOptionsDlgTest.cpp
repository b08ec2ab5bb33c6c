// "Tag Cloud Options": what each control does to the cloud, the colour schemes and their
// quirks, the font change at 99 % coverage, and which changes repaint, mark modified or ask
// for a new layout.

#include "editors/wordcloud_page/widgets/TRMTagOptionsDlg.h"
#include "CloudSamples.h"
#include "support/ScriptedDialogs.h"
#include "wordcloud/CloudPalettes.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>

using namespace kestrum;
using namespace kestrum::wordcloud_page;
using wordcloud::TprWordCloud;

class TRMTagOptionsDlgTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<kestrum::test::ScopedScriptedDialogs> m_dialogs;
    std::unique_ptr<TprWordCloud> m_cloud;
    std::unique_ptr<TRMTagOptionsDlg> m_dlg;
    std::unique_ptr<QSignalSpy> m_repaints;
    std::unique_ptr<QSignalSpy> m_modified;
    std::unique_ptr<QSignalSpy> m_layouts;

    TprWordCloud& cloud() { return *m_cloud; }
    TRMTagOptionsDlg& dlg() { return *m_dlg; }

    void open()
    {
        m_dlg = std::make_unique<TRMTagOptionsDlg>(cloud());
        m_repaints = std::make_unique<QSignalSpy>(m_dlg.get(), &TRMTagOptionsDlg::repaintRequested);
        m_modified = std::make_unique<QSignalSpy>(m_dlg.get(), &TRMTagOptionsDlg::modified);
        m_layouts = std::make_unique<QSignalSpy>(m_dlg.get(), &TRMTagOptionsDlg::layoutRequested);
    }
    // Repaints, modified reports and layout requests since the last call.
    QList<int> counts()
    {
        const QList<int> out{int(m_repaints->count()), int(m_modified->count()),
                             int(m_layouts->count())};
        m_repaints->clear();
        m_modified->clear();
        m_layouts->clear();
        return out;
    }

private slots:
    void init()
    {
        m_dialogs = std::make_unique<kestrum::test::ScopedScriptedDialogs>();
        m_cloud = std::make_unique<TprWordCloud>();
        samples::fillCloud(cloud(), 5);
        open();
    }
    void cleanup()
    {
        QVERIFY2(m_dialogs->unexpected().isEmpty(),
                 qPrintable(m_dialogs->unexpected().join(QLatin1String("; "))));
        m_dlg.reset();
        m_cloud.reset();
        m_dialogs.reset();
    }

    void tabsControlsAndCaptions()
    {
        QCOMPARE(dlg().windowTitle(), QStringLiteral("Tag Cloud Options"));
        QCOMPARE(dlg().tabs()->count(), 3);
        QCOMPARE(dlg().tabs()->tabText(0), QStringLiteral("Text Color"));
        QCOMPARE(dlg().tabs()->tabText(1), QStringLiteral("Text Font"));
        QCOMPARE(dlg().tabs()->tabText(2), QStringLiteral("Shape"));
        QCOMPARE(dlg().isColorEach()->text(), QStringLiteral("Color each with palette:"));
        QCOMPARE(dlg().isGradient()->text(), QStringLiteral("Gradient scheme:"));
        QCOMPARE(dlg().isShadow()->text(), QStringLiteral("Shadown"));
        QCOMPARE(dlg().colorPalette()->count(), 21);
        QCOMPARE(dlg().colorPalette()->itemText(0), QStringLiteral("Excel"));
        QCOMPARE(dlg().colorPalette()->itemText(20), QStringLiteral("Seewash"));
        QStringList schemes;
        for (int i = 0; i < dlg().colorScheme()->count(); ++i) {
            schemes << dlg().colorScheme()->itemText(i);
        }
        QCOMPARE(schemes, (QStringList{"Multicolor", "Warm", "Cool", "Gray Scale", "Custom"}));
        // The shadow size exists, hidden, 0..10 at 1.
        auto* size = dlg().findChild<QSpinBox*>(QStringLiteral("ShadowSize"));
        QVERIFY(size);
        QVERIFY(size->isHidden());
        QCOMPARE(size->maximum(), 10);
        QCOMPARE(size->value(), 1);
        QCOMPARE(counts(), (QList<int>{0, 0, 0})); // loading acts on nothing
    }

    void openingReflectsTheCloud()
    {
        cloud().SetUsePalette(false);
        cloud().SetPalette(7);
        cloud().SetShadow(false);
        cloud().SetCloudShape(TprWordCloud::Ellipse);
        cloud().SetPlaceCenter(false);
        cloud().Gradient().SetStartColor(0x112233);
        cloud().Gradient().SetMiddleColor(common::clNone);
        cloud().Gradient().SetEndColor(0x445566);
        wordcloud::CloudFont font = cloud().Font();
        font.name = QStringLiteral("Tahoma");
        font.style = 3;
        cloud().SetFont(font);
        open();
        QCOMPARE(dlg().colorPalette()->currentIndex(), 7);
        QVERIFY(dlg().isGradient()->isChecked());
        QVERIFY(!dlg().isShadow()->isChecked());
        QVERIFY(dlg().isEllipse()->isChecked());
        QVERIFY(dlg().isRandom()->isChecked());
        QVERIFY(!dlg().isMiddle()->isChecked());
        QVERIFY(!dlg().well(TRMTagOptionsDlg::MiddleWell)->isEnabled());
        QCOMPARE(dlg().wellColour(TRMTagOptionsDlg::StartWell), 0x112233u);
        QCOMPARE(dlg().wellColour(TRMTagOptionsDlg::EndWell), 0x445566u);
        QCOMPARE(dlg().fontName()->text(), QStringLiteral("Tahoma Bold Italic"));
        QCOMPARE(counts(), (QList<int>{0, 0, 0}));
    }

    void paletteChoiceDoesNotSwitchPalettesOn()
    {
        cloud().SetUsePalette(false);
        open();
        dlg().colorPalette()->setCurrentIndex(4);
        QCOMPARE(int(cloud().Palette()), 4);
        QVERIFY(!cloud().UsePalette());
        QCOMPARE(counts(), (QList<int>{1, 1, 0}));
        dlg().isColorEach()->click();
        QVERIFY(cloud().UsePalette());
        QCOMPARE(counts(), (QList<int>{1, 1, 0}));
    }

    void schemesFillTheWells_data()
    {
        QTest::addColumn<int>("scheme");
        QTest::addColumn<uint>("start");
        QTest::addColumn<uint>("middle"); // what the gradient gets
        QTest::addColumn<uint>("end");
        QTest::addColumn<bool>("isMiddle");
        QTest::newRow("Multicolor") << 0 << 0x0000FFu << 0xFF0000u << 0x00FF00u << true;
        // Checked with no middle colour: the gradient has none.
        QTest::newRow("Warm") << 1 << 0x8DE9F3u << 0x1FFFFFFFu << 0x0000FFu << true;
        QTest::newRow("Cool") << 2 << 0x829643u << 0x1FFFFFFFu << 0xA46242u << false;
        // The middle well holds grey, but unchecked: the gradient has no middle colour.
        QTest::newRow("Gray Scale") << 3 << 0x000000u << 0x1FFFFFFFu << 0xC0C0C0u << false;
    }
    void schemesFillTheWells()
    {
        QFETCH(int, scheme);
        QFETCH(uint, start);
        QFETCH(uint, middle);
        QFETCH(uint, end);
        QFETCH(bool, isMiddle);
        open();
        // From "Custom", so that every scheme is a change of the list.
        dlg().colorScheme()->setCurrentIndex(TRMTagOptionsDlg::Custom);
        cloud().SetUsePalette(true);
        counts();
        dlg().colorScheme()->setCurrentIndex(scheme);
        QVERIFY(dlg().isGradient()->isChecked());
        QVERIFY(!cloud().UsePalette());
        QCOMPARE(dlg().isMiddle()->isChecked(), isMiddle);
        QCOMPARE(dlg().well(TRMTagOptionsDlg::MiddleWell)->isEnabled(), isMiddle);
        QCOMPARE(cloud().Gradient().StartColor(), start);
        QCOMPARE(cloud().Gradient().MiddleColor(), middle);
        QCOMPARE(cloud().Gradient().EndColor(), end);
        QCOMPARE(counts(), (QList<int>{1, 1, 0}));
        if (scheme == 3) {
            QCOMPARE(dlg().wellColour(TRMTagOptionsDlg::MiddleWell), 0x808080u);
        }
    }

    void customLeavesTheWellsAndAWellMakesCustom()
    {
        dlg().colorScheme()->setCurrentIndex(TRMTagOptionsDlg::Cool);
        counts();
        dlg().colorScheme()->setCurrentIndex(TRMTagOptionsDlg::Custom);
        // Nothing changes: the wells keep the cool colours, applied again.
        QCOMPARE(cloud().Gradient().StartColor(), 0x829643u);
        QCOMPARE(cloud().Gradient().EndColor(), 0xA46242u);

        dlg().colorScheme()->setCurrentIndex(TRMTagOptionsDlg::Multicolor);
        counts();
        m_dialogs->answerColour(QColor(0x10, 0x20, 0x30));
        dlg().well(TRMTagOptionsDlg::EndWell)->click();
        QCOMPARE(dlg().colorScheme()->currentIndex(), int(TRMTagOptionsDlg::Custom));
        QCOMPARE(cloud().Gradient().EndColor(), common::TColor(0x302010));
        QCOMPARE(cloud().Gradient().MiddleColor(), 0xFF0000u);
        QCOMPARE(counts(), (QList<int>{1, 1, 0}));
        // Unchecking "Middle:" drops the middle colour and disables its well.
        dlg().isMiddle()->click();
        QCOMPARE(cloud().Gradient().MiddleColor(), common::clNone);
        QVERIFY(!dlg().well(TRMTagOptionsDlg::MiddleWell)->isEnabled());
        // A cancelled colour dialog changes nothing.
        m_dialogs->answerColour(std::nullopt);
        dlg().well(TRMTagOptionsDlg::StartWell)->click();
        QCOMPARE(cloud().Gradient().StartColor(), 0x0000FFu);
    }

    void fontChangeLaysOutAgainAtNinetyNinePercent()
    {
        cloud().SetCoverage(0.4f);
        QFont chosen(QStringLiteral("DejaVu Serif"));
        chosen.setPointSize(30);
        chosen.setItalic(true);
        m_dialogs->answerFont(chosen);
        dlg().findChild<QPushButton*>(QStringLiteral("ChangeFont"))->click();
        QCOMPARE(cloud().Font().name, QStringLiteral("DejaVu Serif"));
        QCOMPARE(cloud().Font().style, 2);
        QCOMPARE(cloud().Coverage(), 0.99f);
        QCOMPARE(dlg().fontName()->text(), QStringLiteral("DejaVu Serif Italic"));
        const QList<int> c = counts();
        QCOMPARE(c[2], 1);
        QVERIFY(c[1] >= 1);

        // Cancelled: nothing changes.
        cloud().SetCoverage(0.5f);
        m_dialogs->answerFont(std::nullopt);
        dlg().ChangeFontClick();
        QCOMPARE(cloud().Coverage(), 0.5f);
        QCOMPARE(counts(), (QList<int>{0, 0, 0}));
    }

    void shapeAndStartAskForALayout()
    {
        dlg().isEllipse()->click();
        QCOMPARE(int(cloud().CloudShape()), int(TprWordCloud::Ellipse));
        QCOMPARE(counts(), (QList<int>{0, 1, 1}));
        dlg().isRandom()->click();
        QVERIFY(!cloud().PlaceCenter());
        QCOMPARE(counts(), (QList<int>{0, 1, 1}));
        dlg().isRectangular()->click();
        dlg().isFromCenter()->click();
        QCOMPARE(int(cloud().CloudShape()), int(TprWordCloud::Rectangle));
        QVERIFY(cloud().PlaceCenter());
    }

    void shadowOnlyRepaints()
    {
        QVERIFY(cloud().Shadow());
        dlg().isShadow()->click();
        QVERIFY(!cloud().Shadow());
        QVERIFY(!cloud().Word(0)->Shadow());
        QCOMPARE(counts(), (QList<int>{1, 0, 0}));
    }
};

QTEST_MAIN(TRMTagOptionsDlgTest)
#include "TRMTagOptionsDlgTest.moc"
