// The chart editor: toolbar states after loading, the switches, walls, rotation by the mouse,
// the animation, the copy menu, import, export with its filter rules, the editor dialog and
// printing, all headless with scripted dialogs.

#include "editors/chart/widgets/TRMChartEditor.h"
#include "ChartSamples.h"
#include "ScriptedDialogs.h"
#include "editors/chart/ChartMotion.h"
#include "editors/chart/ChartStream.h"
#include "editors/chart/widgets/ChartEditorDialog.h"
#include "editors/chart/widgets/ChartView.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDoubleSpinBox>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QPrinter>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

using namespace kestrum;
using namespace kestrum::chart;

namespace {

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

Chart cloud()
{
    Chart c;
    c.series.push_back(
        samples::points(QStringLiteral("cloud"), {{0, 0}, {4, 2}, {1, 5}}, SeriesKind::Point3D));
    c.panelColour = common::clSkyBlue;
    return c;
}

} // namespace

class TRMChartEditorTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<test::ScopedScriptedDialogs> m_dialogs;
    std::unique_ptr<TRMChartEditor> m_editor;
    QTemporaryDir m_dir;

    void load(const Chart& chart)
    {
        QVERIFY(m_editor->document().readContent(ChartStream::write(chart)));
    }
    bool down(const char* name) const { return m_editor->action(QLatin1String(name))->isChecked(); }
    bool enabled(const char* name) const
    {
        return m_editor->action(QLatin1String(name))->isEnabled();
    }
    void trigger(const char* name) { m_editor->action(QLatin1String(name))->trigger(); }

private slots:
    void init()
    {
        m_dialogs = std::make_unique<test::ScopedScriptedDialogs>();
        m_editor = std::make_unique<TRMChartEditor>();
        m_editor->resize(640, 420);
        m_editor->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_editor.get()));
        TRMChartEditor::motion() = ChartMotion();
    }
    void cleanup()
    {
        m_editor.reset();
        QVERIFY2(m_dialogs->unexpected().isEmpty(),
                 qPrintable(m_dialogs->unexpected().join(QLatin1Char(','))));
        m_dialogs.reset();
    }

    void loadingSetsTheButtons()
    {
        QSignalSpy changed(&m_editor->document(), &store::PageDocument::contentChanged);
        Chart one;
        one.series.push_back(samples::bars(QStringLiteral("s"), {1, 2, 3}));
        load(one);
        QVERIFY(enabled("HBarBtn") && enabled("VBarBtn") && enabled("PieBtn"));
        QVERIFY(down("VBarBtn") && !down("HBarBtn") && !down("PieBtn"));
        QVERIFY(!enabled("SwapSeriesBtn") && !enabled("RotationBtn") && !enabled("ZoomInBtn"));
        QVERIFY(enabled("View3D") && !down("View3D"));
        load(samples::grouped());
        QVERIFY(!enabled("HBarBtn"));
        QVERIFY(enabled("GroupBarBtn") && down("GroupBarBtn") && !down("GroupLineBtn"));
        load(cloud());
        QVERIFY(enabled("RotationBtn") && enabled("AnimateBtn") && enabled("ZoomInBtn"));
        QVERIFY(enabled("ViewWalls") && down("ViewWalls") && !down("BaseLineBtn"));
        QVERIFY(!m_editor->animationTimer().isActive()); // the animate button is up
        QCOMPARE(changed.count(), 0);                    // loading is no edit
    }

    void switchesMarkThePageAndRefreshTheToolBar()
    {
        load(samples::grouped());
        QSignalSpy changed(&m_editor->document(), &store::PageDocument::contentChanged);
        trigger("GroupLineBtn");
        QCOMPARE(changed.count(), 1);
        QCOMPARE(m_editor->chartDocument().chart().series[2].kind, SeriesKind::Line);
        QVERIFY(down("GroupLineBtn") && !down("GroupBarBtn"));
        trigger("SwapSeriesBtn");
        QCOMPARE(m_editor->chartDocument().chart().seriesCount(), 4);
        QCOMPARE(changed.count(), 2);

        Chart one;
        one.series.push_back(samples::bars(QStringLiteral("s"), {1, 2, 3}));
        load(one);
        trigger("PieBtn");
        QVERIFY(down("PieBtn") && !down("VBarBtn"));
        trigger("HBarBtn");
        QVERIFY(down("HBarBtn") && !down("PieBtn"));
        QCOMPARE(m_editor->chartDocument().chart().series[0].kind, SeriesKind::HorizBar);
        QCOMPARE(changed.count(), 4);
    }

    void threeDViewEnablesRotation()
    {
        load(samples::grouped());
        QSignalSpy changed(&m_editor->document(), &store::PageDocument::contentChanged);
        QVERIFY(!enabled("RotationBtn"));
        trigger("View3D");
        QVERIFY(m_editor->chartDocument().chart().view3D.enabled);
        QVERIFY(enabled("RotationBtn"));
        trigger("View3D");
        QVERIFY(!m_editor->chartDocument().chart().view3D.enabled);
        QVERIFY(!enabled("RotationBtn"));
        QCOMPARE(changed.count(), 2);
    }

    void wallsFollowTheButtonAndThePanelColour()
    {
        load(cloud());
        QSignalSpy changed(&m_editor->document(), &store::PageDocument::contentChanged);
        trigger("ViewWalls"); // up
        const Chart& c = m_editor->chartDocument().chart();
        QVERIFY(!c.walls.visible && !c.walls.backPen.visible && !c.walls.clipPoints);
        QCOMPARE(c.panelColour, common::clWhite);
        trigger("ViewWalls"); // down again
        QVERIFY(c.walls.visible);
        QCOMPARE(c.panelColour, common::clSkyBlue); // the colour saved at loading
        trigger("BaseLineBtn");
        QVERIFY(c.series[0].baseLine.visible);
        QCOMPARE(changed.count(), 3);
    }

    void dragTurnsTheChartInRotationMode()
    {
        load(cloud());
        QSignalSpy changed(&m_editor->document(), &store::PageDocument::contentChanged);
        trigger("RotationBtn");
        QVERIFY(TRMChartEditor::motion().rotationMode);
        QVERIFY(down("RotationBtn"));
        ChartView* view = m_editor->view();
        const int r0 = m_editor->chartDocument().chart().view3D.rotation;
        const int e0 = m_editor->chartDocument().chart().view3D.elevation;
        const QPoint to(100 + view->width() / 4, 200 - view->height() / 10);
        const int dr = int(std::nearbyint(double(to.x() - 100) / view->width() * 100));
        const int de = int(std::nearbyint(double(200 - to.y()) / view->height() * 100));
        QVERIFY(dr > 20 && de > 5);
        QTest::mousePress(view, Qt::LeftButton, {}, QPoint(100, 200));
        QTest::mouseMove(view, to);
        QCOMPARE(m_editor->chartDocument().chart().view3D.rotation, (r0 + dr) % 360);
        QCOMPARE(m_editor->chartDocument().chart().view3D.elevation, (e0 + de) % 360);
        QCOMPARE(changed.count(), 0);
        QTest::mouseRelease(view, Qt::LeftButton, {}, to);
        QCOMPARE(changed.count(), 1);
        QVERIFY(!TRMChartEditor::motion().dragging);
        // Without the mode, a drag leaves the chart alone.
        trigger("RotationBtn");
        QTest::mousePress(view, Qt::LeftButton, {}, QPoint(10, 10));
        QTest::mouseMove(view, QPoint(300, 300));
        QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(300, 300));
        QCOMPARE(m_editor->chartDocument().chart().view3D.rotation, (r0 + dr) % 360);
    }

    void zoomByRectangleAndBack()
    {
        Chart map;
        map.series.push_back(samples::points(QStringLiteral("p"), {{0, 0}, {10, 10}}));
        load(map);
        QSignalSpy changed(&m_editor->document(), &store::PageDocument::contentChanged);
        ChartView* view = m_editor->view();
        QVERIFY(enabled("ZoomInBtn"));
        // Before the zoom button is down a drag does nothing.
        QTest::mousePress(view, Qt::LeftButton, {}, QPoint(100, 100));
        QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(300, 300));
        QVERIFY(!view->isZoomed());
        trigger("ZoomInBtn");
        QCOMPARE(changed.count(), 1);
        QVERIFY(view->zoomAllowed());
        const ChartGeometry before = view->chartGeometry();
        const QPointF from = before.toDevice(2, 8);
        const QPointF to = before.toDevice(6, 4);
        QTest::mousePress(view, Qt::LeftButton, {}, from.toPoint());
        QTest::mouseMove(view, to.toPoint());
        QTest::mouseRelease(view, Qt::LeftButton, {}, to.toPoint());
        QVERIFY(view->isZoomed());
        QVERIFY(view->renderOptions().zoomWindow);
        const QRectF window = *view->renderOptions().zoomWindow;
        QVERIFY(std::abs(window.left() - 2) < 0.2 && std::abs(window.right() - 6) < 0.2);
        QVERIFY(std::abs(window.top() - 4) < 0.2 && std::abs(window.bottom() - 8) < 0.2);
        view->repaint();
        QVERIFY(std::abs(view->chartGeometry().bottom.minimum - 2) < 0.2);
        // Dragging up and left undoes it; so does the zoom-out button.
        QTest::mousePress(view, Qt::LeftButton, {}, QPoint(300, 300));
        QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(100, 100));
        QVERIFY(!view->isZoomed());
        QTest::mousePress(view, Qt::LeftButton, {}, from.toPoint());
        QTest::mouseRelease(view, Qt::LeftButton, {}, to.toPoint());
        QVERIFY(view->isZoomed());
        trigger("ZoomOutBtn");
        QVERIFY(!view->isZoomed());
        // Raising the zoom button ends the mouse zoom.
        trigger("ZoomInBtn");
        QVERIFY(!view->zoomAllowed());
    }

    void animationTicksWithCrossedStartValues()
    {
        Chart c = cloud();
        c.view3D.rotation = 100;
        c.view3D.elevation = 20;
        load(c);
        m_editor->setCoin([] { return 0; });
        QCOMPARE(m_editor->animationTimer().interval(), 100);
        trigger("AnimateBtn");
        QVERIFY(m_editor->animationTimer().isActive());
        m_editor->Timer1Timer();
        // up-R and up-E start down: one step back from the crossed start values.
        QCOMPARE(m_editor->chartDocument().chart().view3D.rotation, 19);
        QCOMPARE(m_editor->chartDocument().chart().view3D.elevation, 99);
        trigger("AnimateBtn");
        QVERIFY(!m_editor->animationTimer().isActive());
        // A page whose first series cannot animate stops the timer.
        trigger("AnimateBtn");
        load(samples::grouped());
        QVERIFY(!m_editor->animationTimer().isActive());
    }

    void exportFollowsTheFilter_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("filter");
        QTest::addColumn<QString>("written");
        QTest::addColumn<QByteArray>("start");
        QTest::newRow("png, no extension") << "chart" << 5 << "chart.PNG" << QByteArray("\x89PNG");
        QTest::newRow("png into .bmp") << "chart.bmp" << 5 << "chart.bmp" << QByteArray("\x89PNG");
        QTest::newRow("native") << "c" << 1 << "c.WSX" << QByteArray("KCHT");
        QTest::newRow("bitmap") << "c" << 2 << "c.BMP" << QByteArray("BM");
        QTest::newRow("metafile as svg") << "c" << 3 << "c.WMF" << QByteArray("<?xml");
        QTest::newRow("enhanced metafile as svg") << "c" << 4 << "c.EMF" << QByteArray("<?xml");
        QTest::newRow("jpeg") << "c" << 6 << "c.JPG" << QByteArray("\xFF\xD8\xFF");
    }
    void exportFollowsTheFilter()
    {
        QFETCH(QString, typed);
        QFETCH(int, filter);
        QFETCH(QString, written);
        QFETCH(QByteArray, start);
        load(samples::grouped());
        QTemporaryDir dir;
        m_dialogs->answerSaveFile(ui::Dialogs::FileChoice{dir.filePath(typed), filter});
        trigger("ChartExport");
        QCOMPARE(m_dialogs->lastFileRequest()->filters, TRMChartEditor::saveFilters());
        const QByteArray bytes = readFile(dir.filePath(written));
        QVERIFY2(bytes.startsWith(start), qPrintable(written));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files).size(), 1);
    }

    void exportFiltersAndCancel()
    {
        QCOMPARE(TRMChartEditor::saveFilters(),
                 QStringList({"Tavlo Chart (*.WSX)", "Windows Bitmap (*.BMP)",
                              "Windows Meta File, written as SVG (*.WMF)",
                              "Windows Enhanced Meta File, written as SVG (*.EMF)",
                              "PNG file (*.PNG)", "JPeg file (*.JPG *.JPEG)"}));
        m_dialogs->answerSaveFile(std::nullopt);
        trigger("ChartExport");
        QVERIFY(m_dialogs->messages().isEmpty());
    }

    void copyMenuPutsTheChartOnTheClipboard()
    {
        load(cloud());
        QCOMPARE(m_editor->copyMenu()->actions().size(), 2);
        QCOMPARE(m_editor->copyMenu()->actions()[0]->text(), QStringLiteral("Copy as bitmap"));
        QCOMPARE(m_editor->copyMenu()->actions()[1]->text(), QStringLiteral("Copy as Metafile"));
        trigger("Asbitmap1");
        const QImage image = QApplication::clipboard()->image();
        QCOMPARE(image.size(), m_editor->view()->size());
        QCOMPARE(QColor(image.pixel(2, 2)), QColor(Qt::white)); // copied on white
        QCOMPARE(m_editor->chartDocument().chart().panelColour, common::clBtnFace);
        trigger("AsMetafile1");
        const QMimeData* data = QApplication::clipboard()->mimeData();
        QVERIFY(data->data(QStringLiteral("image/svg+xml")).contains("<svg"));
    }

    void importReplacesTheChart()
    {
        load(samples::grouped());
        const QString file = m_dir.filePath(QStringLiteral("other.wsx"));
        {
            QFile f(file);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write(ChartStream::write(cloud()));
        }
        QSignalSpy changed(&m_editor->document(), &store::PageDocument::contentChanged);
        m_dialogs->answerOpenFile(ui::Dialogs::FileChoice{file, 1});
        trigger("ChartImport");
        QCOMPARE(m_dialogs->lastFileRequest()->filters, QStringList({"Tavlo chart (*.WSX)"}));
        QCOMPARE(m_editor->chartDocument().chart().series[0].kind, SeriesKind::Point3D);
        QCOMPARE(changed.count(), 1);
        QVERIFY(enabled("AnimateBtn"));

        m_dialogs->answerOpenFile(ui::Dialogs::FileChoice{m_dir.filePath("none.wsx"), 1});
        trigger("ChartImport");
        QCOMPARE(m_dialogs->messages().size(), 1); // reported; the chart stays
        QCOMPARE(m_editor->chartDocument().chart().series[0].kind, SeriesKind::Point3D);
    }

    void editorDialogChangesTitlesAndAxes()
    {
        load(samples::grouped());
        QSignalSpy changed(&m_editor->document(), &store::PageDocument::contentChanged);
        m_dialogs->answerExec([](QDialog* d) {
            auto* dialog = qobject_cast<ChartEditorDialog*>(d);
            dialog->titleEdit()->setText(QStringLiteral("Renamed"));
            dialog->seriesList()->setCurrentRow(1);
            dialog->seriesTitleEdit()->setText(QStringLiteral("Employees"));
            dialog->leftAxisControls().automatic->setChecked(false);
            dialog->leftAxisControls().maximum->setValue(60);
            dialog->leftAxisControls().title->setText(QStringLiteral("Count"));
            return int(QDialog::Accepted);
        });
        trigger("ChartEdit");
        const Chart& c = m_editor->chartDocument().chart();
        QCOMPARE(c.title, QStringLiteral("Renamed"));
        QCOMPARE(c.series[1].title, QStringLiteral("Employees"));
        QCOMPARE(c.series[0].title, QStringLiteral("Managers"));
        QVERIFY(!c.leftAxis.automatic);
        QCOMPARE(c.leftAxis.maximum, 60.0);
        QCOMPARE(c.leftAxis.title, QStringLiteral("Count"));
        QCOMPARE(changed.count(), 1);
        // Cancelled: nothing changes, the page is marked all the same.
        m_dialogs->answerExec([](QDialog*) { return int(QDialog::Rejected); });
        trigger("ChartEdit");
        QCOMPARE(c.title, QStringLiteral("Renamed"));
        QCOMPARE(changed.count(), 2);
    }

    void printPreviewUsesFiveMillimetreMargins()
    {
        load(samples::grouped());
        const QString pdf = m_dir.filePath(QStringLiteral("preview.pdf"));
        m_editor->printer()->setOutputFormat(QPrinter::PdfFormat);
        m_editor->printer()->setOutputFileName(pdf);
        m_dialogs->answerPrint(true);
        trigger("ChartPrint");
        const QMarginsF margins =
            m_editor->printer()->pageLayout().margins(QPageLayout::Millimeter);
        QCOMPARE(margins, QMarginsF(5, 5, 5, 5));
        QVERIFY(readFile(pdf).startsWith("%PDF"));
    }
};

QTEST_MAIN(TRMChartEditorTest)
#include "TRMChartEditorTest.moc"
