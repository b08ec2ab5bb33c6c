// The word cloud page as the user drives it: the toolbar and pop-up menu, saving the picture
// (filters, forced extensions, cancel), printing, copying, the options dialog through the
// dialogs interface, and layouts on their own thread with progress and "Cancel".

#include "editors/wordcloud_page/widgets/TRMWordCloudEditor.h"
#include "CloudSamples.h"
#include "editors/wordcloud_page/CloudLayoutJob.h"
#include "editors/wordcloud_page/widgets/CloudCanvas.h"
#include "editors/wordcloud_page/widgets/TRMTagOptionsDlg.h"
#include "support/ScriptedDialogs.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QImageReader>
#include <QMenu>
#include <QMimeData>
#include <QPrinter>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

using namespace kestrum;
using namespace kestrum::wordcloud_page;

namespace {

QStringList captions(const QList<QAction*>& actions)
{
    QStringList out;
    for (QAction* a : actions) {
        if (!a->isSeparator()) {
            out << a->text();
        }
    }
    return out;
}

} // namespace

class TRMWordCloudEditorTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<kestrum::test::ScopedScriptedDialogs> m_dialogs;
    std::unique_ptr<TRMWordCloudEditor> m_editor;

    TRMWordCloudEditor& editor() { return *m_editor; }
    kestrum::test::ScopedScriptedDialogs& dialogs() { return *m_dialogs; }

private slots:
    void init()
    {
        m_dialogs = std::make_unique<kestrum::test::ScopedScriptedDialogs>();
        m_editor = std::make_unique<TRMWordCloudEditor>();
        m_editor->resize(640, 420);
        m_editor->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_editor.get()));
        QVERIFY(editor().document().readContent(samples::laidOutDocument(40, {400, 300})));
    }
    void cleanup()
    {
        QVERIFY2(dialogs().unexpected().isEmpty(),
                 qPrintable(dialogs().unexpected().join(QLatin1String("; "))));
        m_editor.reset();
        m_dialogs.reset();
    }

    void cloudFillsThePage()
    {
        const QSize canvas = editor().canvas()->size();
        QCOMPARE(editor().cloud().ClientSize(), canvas);
        // The stored 380 x 280 drawing area is scaled into the canvas's, centred.
        const auto area = editor().cloud().StartingCanvasRect();
        QCOMPARE(area, editor().cloud().GetCanvasDimension());
        editor().resize(900, 700);
        QApplication::processEvents();
        QCOMPARE(editor().cloud().ClientSize(), editor().canvas()->size());
        QVERIFY(editor().cloud().Word(0)->BoundsRect().width() >
                editor().cloud().Word(0)->StartingBoundsRect().width() - 1);
        const QImage shown = editor().canvas()->grab().toImage();
        QCOMPARE(shown.size(), editor().canvas()->size() * shown.devicePixelRatio());
    }

    void toolbarAndMenus()
    {
        QToolBar bar;
        editor().populateToolBar(&bar);
        QCOMPARE(captions(bar.actions()),
                 (QStringList{"Save picture...", "Print...", "Copy", "Options..."}));
        QCOMPARE(captions(editor().copyMenu()->actions()),
                 (QStringList{"Copy as bitmap", "Copy as metafile"}));
        QCOMPARE(captions(editor().popupMenu()->actions()),
                 (QStringList{"Save picture...", "Print...", "Copy as bitmap", "Copy as metafile",
                              "Options..."}));
    }

    void savePictureByFilter_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("filter");
        QTest::addColumn<QString>("written");
        QTest::addColumn<QByteArray>("format");
        QTest::newRow("png") << "cloud.png" << 1 << "cloud.PNG" << QByteArray("png");
        QTest::newRow("bmp, no extension") << "cloud" << 2 << "cloud.BMP" << QByteArray("bmp");
        QTest::newRow("jpeg filter, png name")
            << "cloud.png" << 3 << "cloud.JPG" << QByteArray("jpeg");
    }
    void savePictureByFilter()
    {
        QFETCH(QString, typed);
        QFETCH(int, filter);
        QFETCH(QString, written);
        QFETCH(QByteArray, format);
        QTemporaryDir dir;
        dialogs().answerSaveFile(ui::Dialogs::FileChoice{dir.filePath(typed), filter});
        editor().action(QStringLiteral("BtnSaveCloud"))->trigger();
        QCOMPARE(dialogs().lastFileRequest()->filters,
                 (QStringList{"Portable Network Graphic (*.png)", "Windows Bitmap (*.bmp)",
                              "JPEG (*,jpg) (*.jpg)"}));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{written});
        QImageReader reader(dir.filePath(written));
        QCOMPARE(reader.format(), format);
        QCOMPARE(reader.size(), editor().canvas()->size());

        // The next dialog opens in the folder of the last picture.
        dialogs().answerSaveFile(std::nullopt);
        editor().SaveCloud();
        QCOMPARE(dialogs().lastFileRequest()->directory, dir.path());
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files).size(), 1); // cancel writes nothing
    }

    void printFitsThePictureToThePage()
    {
        QTemporaryDir dir;
        const QString pdf = dir.filePath(QStringLiteral("cloud.pdf"));
        editor().printer()->setOutputFormat(QPrinter::PdfFormat);
        editor().printer()->setOutputFileName(pdf);
        dialogs().answerPrint(false);
        editor().action(QStringLiteral("BtnPrintCloud"))->trigger();
        QVERIFY(!QFile::exists(pdf)); // cancelled: nothing printed
        dialogs().answerPrint(true);
        editor().PrintWordCloud();
        QFile file(pdf);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(bytes.startsWith("%PDF"));
        QVERIFY(bytes.contains("/Subtype /Image") || bytes.contains("/Subtype/Image"));
    }

    void copyAsBitmapAndAsSvg()
    {
        editor().action(QStringLiteral("CopyAsBitmap"))->trigger();
        const QImage copied = QApplication::clipboard()->image();
        QCOMPARE(copied.size(), editor().canvas()->size());
        editor().action(QStringLiteral("CopyAsMetafile"))->trigger();
        const QMimeData* mime = QApplication::clipboard()->mimeData();
        QVERIFY(mime->hasFormat(QStringLiteral("image/svg+xml")));
        QVERIFY(mime->data(QStringLiteral("image/svg+xml")).contains("<svg"));
    }

    void optionsDialogIsModalAndMarksModified()
    {
        QSignalSpy changed(&editor().document(), &store::PageDocument::contentChanged);
        dialogs().answerExec([](QDialog* d) {
            auto* options = qobject_cast<TRMTagOptionsDlg*>(d);
            if (!options) {
                return int(QDialog::Rejected);
            }
            options->isColorEach()->click();
            return int(QDialog::Accepted);
        });
        editor().cloud().SetUsePalette(false);
        editor().action(QStringLiteral("BtnCloudOptions"))->trigger();
        QCOMPARE(dialogs().shown().back().text, QStringLiteral("Tag Cloud Options"));
        QVERIFY(editor().cloud().UsePalette());
        QCOMPARE(changed.count(), 1);
    }

    void layoutRunsOffTheGuiThread()
    {
        QSignalSpy changed(&editor().document(), &store::PageDocument::contentChanged);
        QSignalSpy finished(&editor(), &TRMWordCloudEditor::layoutFinished);
        const auto before = editor().cloud().Word(0)->BoundsRect();
        editor().cloud().SetCloudShape(wordcloud::TprWordCloud::Ellipse);
        editor().UpdateWordCloud();
        QVERIFY(editor().isLayoutRunning());
        QVERIFY(editor().progressBar()->isVisibleTo(&editor()));
        QVERIFY(finished.wait(60000));
        QVERIFY(!editor().isLayoutRunning());
        QVERIFY(!editor().progressBar()->isVisibleTo(&editor()));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(editor().cloud().CountVisibleWords(), 40);
        QCOMPARE(editor().cloud().ClientSize(), editor().canvas()->size());
        // Laid out anew on the canvas's own area, inside the ellipse.
        QCOMPARE(editor().cloud().StartingCanvasRect(), editor().cloud().GetCanvasDimension());
        QVERIFY(editor().cloud().Word(0)->BoundsRect() != before);
    }

    void cancelGivesASparserCloud()
    {
        // Many words: the layout takes long enough to be cancelled while it runs.
        wordcloud::TprWordCloud many;
        samples::fillCloud(many, 400, {400, 300});
        QVERIFY(editor().document().readContent(samples::documentOf(many)));
        editor().cloud().SetAutoResizeCoverage(true);
        editor().cloud().SetRandomSeed(11);
        // A coverage at which the first run places every word.
        editor().cloud().SetCoverage(0.3f);
        editor().canvas()->fitCloud();
        CloudLayoutJob reference(editor().cloud());
        QVERIFY(reference.run());
        QCOMPARE(reference.result().CurrentCoverage(), 0.3f);

        QSignalSpy finished(&editor(), &TRMWordCloudEditor::layoutFinished);
        editor().UpdateWordCloud();
        editor().cancelButton()->click();
        QVERIFY(finished.wait(120000));
        // The cancelled run counts as failed: the retry ran at lower coverage, to its end.
        QVERIFY(qAbs(editor().cloud().CurrentCoverage() - 0.25f) < 0.001f);
        QCOMPARE(editor().cloud().CountVisibleWords(), 400);
    }

    void loadingAnotherPageDropsTheRunningLayout()
    {
        wordcloud::TprWordCloud many;
        samples::fillCloud(many, 400, {400, 300});
        QVERIFY(editor().document().readContent(samples::documentOf(many)));
        QSignalSpy changed(&editor().document(), &store::PageDocument::contentChanged);
        editor().UpdateWordCloud();
        const QByteArray other = samples::laidOutDocument(7, {300, 200});
        QVERIFY(editor().document().readContent(other));
        editor().waitForLayout();
        QCOMPARE(changed.count(), 0);
        QCOMPARE(editor().cloud().WordCount(), 7);
    }
};

QTEST_MAIN(TRMWordCloudEditorTest)
#include "TRMWordCloudEditorTest.moc"
