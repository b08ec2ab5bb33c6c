// The image editor as a user drives it: the program-wide zoom and its status text, opening a
// picture, saving with the filter's extension, and copying (which leaves the page alone).

#include "editors/image/widgets/TRMImageEditor.h"
#include "editors/image/BmpFile.h"
#include "editors/image/widgets/ImageView.h"
#include "support/ScriptedDialogs.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QMenu>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

using namespace kestrum;
using namespace kestrum::image;

namespace {

QImage picture(int w, int h)
{
    QImage image(w, h, QImage::Format_RGB888);
    image.fill(QColor(30, 120, 200));
    return image;
}

} // namespace

class TRMImageEditorTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<test::ScopedScriptedDialogs> m_dialogs;

private slots:
    void init()
    {
        m_dialogs = std::make_unique<test::ScopedScriptedDialogs>();
        TRMImageEditor::setZoomPercent(100);
    }
    void cleanup()
    {
        QVERIFY(m_dialogs->unexpected().isEmpty());
        m_dialogs.reset();
    }

    void zoomIsSharedAndSnapsToTens()
    {
        TRMImageEditor a;
        TRMImageEditor b;
        QVERIFY(a.document().readContent(BmpFile::write(picture(200, 100))));
        QCOMPARE(a.view()->size(), QSize(200, 100));
        QSignalSpy status(&a, &TRMImageEditor::statusText);
        QSignalSpy changed(&a.document(), &store::PageDocument::contentChanged);
        a.action(QStringLiteral("ZoomOutImageBtn"))->trigger();
        QCOMPARE(status.last().at(0).toString(), QStringLiteral(" 90%"));
        QCOMPARE(a.view()->size(), QSize(180, 90));
        for (int i = 0; i < 9; ++i) {
            a.ZoomOut();
        }
        QCOMPARE(TRMImageEditor::zoom(), 20);
        QCOMPARE(status.last().at(0).toString(), QStringLiteral(" 20%"));
        QCOMPARE(changed.count(), 0); // zooming is not a change of the page
        // Another page opened in another editor shows at the same zoom.
        QVERIFY(b.document().readContent(BmpFile::write(picture(50, 30))));
        QCOMPARE(b.view()->size(), QSize(10, 6));
        TRMImageEditor::setZoomPercent(75);
        b.ZoomIn();
        QCOMPARE(TRMImageEditor::zoom(), 80);
        QCOMPARE(b.view()->size(), QSize(40, 24));
        QByteArray stored;
        const auto written = b.document().writeContent();
        QVERIFY2(written, qPrintable(written.error()));
        stored = *written;
        QCOMPARE(BmpFile::read(stored)->size(), QSize(50, 30)); // stored full size
    }

    void openFileReplacesThePicture()
    {
        QTemporaryDir dir;
        QImage alpha(8, 6, QImage::Format_ARGB32);
        alpha.fill(Qt::transparent);
        const QString file = dir.filePath(QStringLiteral("alpha.png"));
        QVERIFY(alpha.save(file));
        TRMImageEditor editor;
        QSignalSpy changed(&editor.document(), &store::PageDocument::contentChanged);
        m_dialogs->answerOpenFile(std::nullopt);
        editor.Load1Click(); // cancelled: nothing happens
        QCOMPARE(changed.count(), 0);
        m_dialogs->answerOpenFile(test::ScriptedDialogs::FileChoice{file, 1});
        editor.popupMenu()->actions().at(0)->trigger();
        QCOMPARE(editor.popupMenu()->actions().at(0)->text(), QStringLiteral("Open file"));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(editor.imageDocument().picture().size(), QSize(8, 6));
        QCOMPARE(editor.imageDocument().picture().pixelColor(3, 3), QColor(Qt::white));
        QCOMPARE(editor.view()->size(), QSize(8, 6));

        const QString broken = dir.filePath(QStringLiteral("broken.jpg"));
        QFile f(broken);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("not a jpeg");
        f.close();
        m_dialogs->answerOpenFile(test::ScriptedDialogs::FileChoice{broken, 1});
        editor.Load1Click();
        QVERIFY(m_dialogs->messages().last().contains(QLatin1String("Cannot read the picture")));
    }

    void saveForcesTheExtensionAndCopyLeavesThePage()
    {
        QTemporaryDir dir;
        TRMImageEditor editor;
        QVERIFY(editor.document().readContent(BmpFile::write(picture(40, 30))));
        m_dialogs->answerSaveFile(
            test::ScriptedDialogs::FileChoice{dir.filePath(QStringLiteral("shot.png")), 2});
        editor.action(QStringLiteral("SaveImageBtn"))->trigger();
        QCOMPARE(m_dialogs->lastFileRequest()->filters.at(2),
                 QStringLiteral("JPEG (*,jpg) (*.jpg)"));
        QFile bmp(dir.filePath(QStringLiteral("shot.BMP")));
        QVERIFY(bmp.open(QIODevice::ReadOnly));
        QVERIFY(bmp.read(2) == "BM");
        // The next dialog starts in the folder chosen last.
        m_dialogs->answerSaveFile(std::nullopt);
        editor.SaveImageBtnClick();
        QCOMPARE(m_dialogs->lastFileRequest()->directory, dir.path());

        QSignalSpy changed(&editor.document(), &store::PageDocument::contentChanged);
        editor.action(QStringLiteral("CutImageBtn"))->trigger();
        QCOMPARE(QApplication::clipboard()->image().size(), QSize(40, 30));
        QCOMPARE(editor.imageDocument().picture().size(), QSize(40, 30));
        QCOMPARE(changed.count(), 0);

        QToolBar bar;
        editor.populateToolBar(&bar);
        QStringList names;
        for (QAction* a : bar.actions()) {
            names << a->objectName();
        }
        QCOMPARE(names, (QStringList{QStringLiteral("SaveImageBtn"), QStringLiteral("CutImageBtn"),
                                     QStringLiteral("ZoomInImageBtn"),
                                     QStringLiteral("ZoomOutImageBtn")}));
        QCOMPARE(editor.windowTitle(), QStringLiteral("Image Editor"));
    }
};

QTEST_MAIN(TRMImageEditorTest)
#include "TRMImageEditorTest.moc"
