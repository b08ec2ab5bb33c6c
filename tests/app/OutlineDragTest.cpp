// Real drag gestures in the outline tree of the main window, on a real X display (ctest runs this
// under Xvfb with the xcb platform): press, move past the drag distance, move onto a row and
// release there. A plain drop makes the node the target's last child; with Ctrl held at the drop
// the node goes before the target, at the target's level; a node never lands in its own subtree.
// Both the tree on screen and the outline stored in the project file are checked.

#include "ResultChecks.h"
#include "ScriptedDialogs.h"

#include "app/OutlineItemModel.h"
#include "app/OutlineView.h"
#include "app/TKestrumM.h"
#include "store/OutlineModel.h"
#include "store/OutlineNode.h"
#include "store/PageType.h"
#include "store/TRMData.h"

#include <QApplication>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

using namespace kestrum;
using store::OutlineNode;

namespace {

constexpr int kMoveSteps = 8;

// The project as the test creates it: the two first pages, then a folder holding one page.
QStringList createdShape()
{
    return {"Project name", "  First document", "  Second document", "  Folder", "    Inside"};
}

// The outline, one line per node in tree order: two spaces per level, the caption and, when
// asked, the page id the node carries (the root's is left out: it holds the selection).
QStringList shape(const store::OutlineModel& outline, bool withIds)
{
    QStringList lines;
    for (const OutlineNode* node : outline.nodesInOrder()) {
        QString line = QString(node->level() * 2, QLatin1Char(' ')) + node->caption();
        if (withIds && node->parent()) {
            line += QStringLiteral(" #%1").arg(node->data());
        }
        lines << line;
    }
    return lines;
}

OutlineNode* nodeCalled(const store::OutlineModel& outline, const QString& caption)
{
    for (OutlineNode* node : outline.nodesInOrder()) {
        if (node->caption() == caption) {
            return node;
        }
    }
    return nullptr;
}

// The outline as stored in the project file, read by a second store while the window still holds
// the file open: its shape with page ids, and the root's data (the selected node's index).
struct StoredOutline
{
    QStringList lines;
    qint32 rootData = 0;
};

StoredOutline readStored(const QString& file)
{
    store::TRMData stored;
    KREQUIRE_OK(stored.DBOpen(file, true));
    return {shape(stored.outline(), true), stored.outline().root()->data()};
}

} // namespace

class OutlineDragTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void dragGesture_data();
    void dragGesture();
};

void OutlineDragTest::initTestCase()
{
    if (qEnvironmentVariableIsSet("KESTRUM_NO_XVFB")) {
        QSKIP("xvfb-run is not installed: the drag gestures need a real X display (install the "
              "Debian packages xvfb and xauth)");
    }
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        QSKIP("the drag gestures need a real X display: run under xvfb-run with "
              "QT_QPA_PLATFORM=xcb (ctest does so)");
    }
}

void OutlineDragTest::dragGesture_data()
{
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("ctrl");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("plain drop: last child of the target")
        << "Second document"
        << "Folder" << false
        << QStringList{"Project name", "  First document", "  Folder", "    Inside",
                       "    Second document"};
    QTest::newRow("plain drop onto a deeper page")
        << "First document"
        << "Inside" << false
        << QStringList{"Project name", "  Second document", "  Folder", "    Inside",
                       "      First document"};
    QTest::newRow("ctrl drop: before the target, at its level")
        << "First document"
        << "Inside" << true
        << QStringList{"Project name", "  Second document", "  Folder", "    First document",
                       "    Inside"};
    QTest::newRow("ctrl drop onto a later sibling")
        << "First document"
        << "Folder" << true
        << QStringList{"Project name", "  Second document", "  First document", "  Folder",
                       "    Inside"};
    QTest::newRow("ctrl drop onto an earlier sibling")
        << "Folder"
        << "First document" << true
        << QStringList{"Project name", "  Folder", "    Inside", "  First document",
                       "  Second document"};
    QTest::newRow("never into its own subtree")
        << "Folder"
        << "Inside" << false
        << QStringList{"Project name", "  First document", "  Second document", "  Folder",
                       "    Inside"};
}

void OutlineDragTest::dragGesture()
{
    QFETCH(QString, dragged);
    QFETCH(QString, target);
    QFETCH(bool, ctrl);
    QFETCH(QStringList, expected);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    test::ScopedScriptedDialogs dialogs;
    const QString file = dir.filePath(QStringLiteral("drag.kst"));
    {
        store::TRMData data;
        KVERIFY_OK(data.DBCreate(file));
        store::OutlineModel& outline = data.outline();
        store::OutlineNodeData folderData;
        folderData.caption = QStringLiteral("Folder");
        folderData.imageIndex = store::PageType::Folder;
        OutlineNode* folder = outline.addChild(outline.root(), folderData);
        store::OutlineNodeData pageData;
        pageData.caption = QStringLiteral("Inside");
        OutlineNode* inside = outline.addChild(folder, pageData);
        outline.setData(inside,
                        data.AddRecord(store::PageType::Text, pageData.caption, {}).value());
        outline.setExpanded(folder, true);
        KVERIFY_OK(data.SaveTree());
        data.CloseFile();
    }

    app::TKestrumM::Options options;
    options.settingsPath = dir.filePath(QStringLiteral("Kestrum.INI"));
    options.pollHandOff = false;
    options.restoreLayout = false;
    app::TKestrumM window(std::move(options));
    window.resize(900, 600);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(window.openProject(file));
    store::OutlineModel& outline = window.data().outline();
    const QStringList before = shape(outline, true);
    const StoredOutline storedBefore = readStored(file);
    QCOMPARE(storedBefore.lines, before);
    QCOMPARE(shape(outline, false), createdShape());

    app::OutlineView* tree = window.outlineView();
    OutlineNode* draggedNode = nodeCalled(outline, dragged);
    OutlineNode* targetNode = nodeCalled(outline, target);
    QVERIFY(draggedNode && targetNode);
    const QRect fromRect = tree->visualRect(window.outlineModel()->indexFor(draggedNode));
    const QRect toRect = tree->visualRect(window.outlineModel()->indexFor(targetNode));
    QVERIFY(tree->viewport()->rect().contains(fromRect));
    QVERIFY(tree->viewport()->rect().contains(toRect));
    const QPoint from = fromRect.center();
    const QPoint to = toRect.center();
    // Along the row, so that the drag starts on the pressed node and nowhere else.
    const QPoint started = from + QPoint(QApplication::startDragDistance() + 2, 0);
    QWidget* viewport = tree->viewport();
    QWindow* x11Window = window.windowHandle();

    // QDrag::exec runs its own event loop: once the view has started the drag, a timer in that
    // loop carries the pointer onto the target and releases it there. Ctrl goes down during the
    // drag, as a user presses it (the drag's loop takes that key event for itself), and every
    // later mouse event carries it.
    const Qt::KeyboardModifiers atDrop = ctrl ? Qt::ControlModifier : Qt::NoModifier;
    bool sawDrag = false;
    bool released = false;
    QTimer driver;
    driver.setInterval(5);
    connect(&driver, &QTimer::timeout, viewport, [&] {
        if (!tree->draggedNode()) {
            return; // not yet (or never: the checks below say so)
        }
        driver.stop();
        sawDrag = tree->draggedNode() == draggedNode;
        if (ctrl) {
            QTest::keyPress(x11Window, Qt::Key_Control, Qt::ControlModifier);
        }
        for (int step = 1; step <= kMoveSteps; ++step) {
            QTest::mouseEvent(QTest::MouseMove, viewport, Qt::NoButton, atDrop,
                              started + (to - started) * step / kMoveSteps);
        }
        QTest::mouseRelease(viewport, Qt::LeftButton, atDrop, to);
        released = true;
    });
    driver.start();
    QTest::mousePress(viewport, Qt::LeftButton, {}, from);
    QTest::mouseMove(viewport, from + QPoint(1, 0)); // the view gets ready to drag
    QTest::mouseMove(viewport, started);
    // The drag ran (and ended) inside that move; the timer is stopped whatever happened.
    driver.stop();
    if (ctrl) {
        QTest::keyRelease(x11Window, Qt::Key_Control);
    }
    QVERIFY2(sawDrag, "the gesture did not start a drag of the pressed node");
    QVERIFY(released);
    QVERIFY(!tree->draggedNode());

    QCOMPARE(shape(outline, false), expected);
    const StoredOutline storedAfter = readStored(file);
    if (expected == createdShape()) {
        // A refused drop is no command: the stored outline is left as it was.
        QCOMPARE(storedAfter.lines, storedBefore.lines);
        QCOMPARE(storedAfter.rootData, storedBefore.rootData);
        return;
    }
    // The moved node is selected and current; the outline was written with it.
    QCOMPARE(outline.selected(), draggedNode);
    QCOMPARE(window.data().currentNodeIndex(), outline.indexOf(draggedNode));
    QCOMPARE(storedAfter.lines, shape(outline, true));
    QCOMPARE(storedAfter.rootData, outline.indexOf(draggedNode));
    // Every node keeps its page: the same captions with the same page ids, only placed anew.
    const auto unplaced = [](QStringList lines) {
        for (QString& line : lines) {
            line = line.trimmed();
        }
        lines.sort();
        return lines;
    };
    QCOMPARE(unplaced(storedAfter.lines), unplaced(before));
}

QTEST_MAIN(OutlineDragTest)
#include "OutlineDragTest.moc"
