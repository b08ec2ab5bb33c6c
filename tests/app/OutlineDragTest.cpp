// One real drag gesture in the outline tree, on a real X display (run under Xvfb): a page
// dragged onto a folder becomes its last child; the project node cannot be dragged.

#include "ScriptedDialogs.h"

#include "app/OutlineItemModel.h"
#include "app/OutlineView.h"
#include "app/TKestrumM.h"
#include "store/OutlineModel.h"
#include "store/RawPageDocument.h"
#include "store/TRMData.h"

#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

using namespace kestrum;
using store::OutlineNode;

class OutlineDragTest : public QObject
{
    Q_OBJECT
private slots:
    void dragPageOntoFolder();
};

void OutlineDragTest::dragPageOntoFolder()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        QSKIP("needs a real X display (xcb)");
    }
    QTemporaryDir dir;
    test::ScopedScriptedDialogs dialogs;
    const QString file = dir.filePath(QStringLiteral("drag.kst"));
    {
        store::TRMData data;
        data.DBCreate(file);
        store::OutlineNodeData folder;
        folder.caption = QStringLiteral("Folder");
        folder.imageIndex = 11;
        data.outline().addChild(data.outline().root(), folder);
        data.SaveTree();
        data.CloseFile();
    }
    app::TKestrumM::Options options;
    options.settingsPath = dir.filePath(QStringLiteral("Kestrum.INI"));
    options.pollHandOff = false;
    options.restoreLayout = false;
    app::TKestrumM window(std::move(options));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(window.openProject(file));

    app::OutlineView* tree = window.outlineView();
    store::OutlineModel& outline = window.data().outline();
    OutlineNode* page = outline.nodeAt(1); // "First document"
    OutlineNode* folder = outline.nodeAt(3);
    const QPoint from = tree->visualRect(window.outlineModel()->indexFor(page)).center();
    const QPoint to = tree->visualRect(window.outlineModel()->indexFor(folder)).center();
    QWidget* viewport = tree->viewport();

    // The drag runs its own event loop: the moves and the release come from a timer.
    QTimer::singleShot(200, viewport, [&] {
        for (int step = 1; step <= 10; ++step) {
            QTest::mouseMove(viewport, from + (to - from) * step / 10, 20);
        }
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, to, 50);
    });
    QTest::mousePress(viewport, Qt::LeftButton, {}, from);
    QTest::mouseMove(viewport, from + QPoint(0, 3), 20);
    QTest::mouseMove(viewport, from + QPoint(0, 30), 20);
    QTRY_COMPARE_WITH_TIMEOUT(page->parent(), folder, 5000);
    QCOMPARE(folder->childAt(folder->childCount() - 1), page);
}

QTEST_MAIN(OutlineDragTest)
#include "OutlineDragTest.moc"
