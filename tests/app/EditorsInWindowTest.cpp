// The real page editors in the main window, on the demo report: showing pages never marks them
// modified or changes what is stored, and an edit in each editor is stored when the selection
// moves on.

#include "ScriptedDialogs.h"

#include "app/EditorArea.h"
#include "app/OutlineItemModel.h"
#include "app/OutlineView.h"
#include "app/PageDisplay.h"
#include "app/TKestrumM.h"
#include "cli/DemoReport.h"
#include "cli/ProjectSession.h"
#include "editors/grid/GridPageDocument.h"
#include "editors/grid/widgets/TRMGridEditor.h"
#include "editors/text/TextPageDocument.h"
#include "editors/text/widgets/TRMWPEditor.h"
#include "editors/text/widgets/WPView.h"
#include "store/OutlineModel.h"
#include "store/PageTable.h"
#include "store/TRMData.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTextCursor>
#include <QTextDocument>
#include <QtTest>

using namespace kestrum;
using store::OutlineNode;

class EditorsInWindowTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void showingEveryPageChangesNothing();
    void textEditIsStoredWhenLeaving();
    void gridEditIsStoredWhenLeaving();
    void f2InATableCellEditsTheCell();
    void outlineStaysPutWhateverPageIsShown();
    void readOnlyProjectTakesNoEdit();
    void ctrlZUndoesInTheOutlineAndNotInAnEditor();
    void recoverTellsHowManyPagesCameBack();

private:
    void select(const OutlineNode* node);
    OutlineNode* firstOfKind(qint32 kind) const;

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<test::ScopedScriptedDialogs> m_dialogs;
    std::unique_ptr<app::TKestrumM> m_window;
};

void EditorsInWindowTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_dialogs = std::make_unique<test::ScopedScriptedDialogs>();
    const QString file = m_dir->filePath(QStringLiteral("demo.kst"));
    {
        cli::ProjectSession session;
        cli::DemoReport::build(session.data(), file);
        session.data().CloseFile();
    }
    app::TKestrumM::Options options;
    options.settingsPath = m_dir->filePath(QStringLiteral("Kestrum.INI"));
    options.pollHandOff = false;
    options.restoreLayout = false;
    m_window = std::make_unique<app::TKestrumM>(std::move(options));
    m_window->resize(1200, 800);
    m_window->show();
    QVERIFY(m_window->openProject(file));
}

void EditorsInWindowTest::cleanup()
{
    m_window.reset();
    QVERIFY2(m_dialogs->unexpected().isEmpty(),
             qPrintable(m_dialogs->unexpected().join(QLatin1Char(','))));
    m_dialogs.reset();
    m_dir.reset();
}

void EditorsInWindowTest::select(const OutlineNode* node)
{
    m_window->outlineView()->setCurrentIndex(m_window->outlineModel()->indexFor(node));
    QApplication::processEvents();
}

OutlineNode* EditorsInWindowTest::firstOfKind(qint32 kind) const
{
    for (OutlineNode* node : m_window->data().outline().nodesInOrder()) {
        if (node->parent() && node->imageIndex() == kind) {
            return node;
        }
    }
    return nullptr;
}

void EditorsInWindowTest::showingEveryPageChangesNothing()
{
    store::TRMData& data = m_window->data();
    std::vector<std::pair<qint32, QByteArray>> before;
    const std::vector<qint32> ids = data.table()->ids().value();
    for (const qint32 id : ids) {
        before.emplace_back(id, *data.table()->readContent(id).value());
    }
    const auto nodes = data.outline().nodesInOrder();
    for (int round = 0; round < 2; ++round) {
        for (const OutlineNode* node : nodes) {
            select(node);
            QVERIFY2(!m_window->pageDisplay().contentModified(), qPrintable(node->caption()));
            QVERIFY2(!m_window->pageDisplay().commentModified(), qPrintable(node->caption()));
        }
    }
    QVERIFY(m_dialogs->messages().isEmpty());
    for (const auto& [id, content] : before) {
        if (id != 0) { // the outline record holds the selection
            QCOMPARE(*data.table()->readContent(id).value(), content);
        }
    }
}

void EditorsInWindowTest::textEditIsStoredWhenLeaving()
{
    OutlineNode* page = firstOfKind(store::PageType::Text);
    QVERIFY(page);
    select(page);
    auto* editor =
        qobject_cast<text::TRMWPEditor*>(m_window->editors().panel(store::EditorKind::Text));
    QVERIFY(editor);
    QTextCursor cursor(editor->pageDocument().textDocument());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(QStringLiteral(" Added by the analyst."));
    QVERIFY(m_window->pageDisplay().contentModified());
    select(firstOfKind(store::PageType::Folder));
    const QByteArray stored = *m_window->data().table()->readContent(page->data()).value();
    QVERIFY2(stored.contains("Added by the analyst."), stored.left(200).constData());
    // And it comes back when the page is shown again.
    select(page);
    QVERIFY(editor->pageDocument().textDocument()->toPlainText().contains(
        QStringLiteral("Added by the analyst.")));
    QVERIFY(!m_window->pageDisplay().contentModified());
}

void EditorsInWindowTest::gridEditIsStoredWhenLeaving()
{
    OutlineNode* page = firstOfKind(store::PageType::Grid);
    QVERIFY(page);
    select(page);
    auto* editor =
        qobject_cast<grid::TRMGridEditor*>(m_window->editors().panel(store::EditorKind::Grid));
    QVERIFY(editor);
    editor->gridDocument().setCellText(1, 1, QStringLiteral("42"));
    QVERIFY(m_window->pageDisplay().contentModified());
    select(firstOfKind(store::PageType::Text));
    select(page);
    QCOMPARE(editor->gridDocument().grid().text(1, 1), QStringLiteral("42"));
}

void EditorsInWindowTest::f2InATableCellEditsTheCell()
{
    OutlineNode* page = firstOfKind(store::PageType::Grid);
    select(page);
    auto* editor =
        qobject_cast<grid::TRMGridEditor*>(m_window->editors().panel(store::EditorKind::Grid));
    QAbstractItemView* view = editor->findChild<QAbstractItemView*>();
    QVERIFY(view);
    view->setFocus();
    view->setCurrentIndex(view->model()->index(1, 1));
    const QString caption = page->caption();
    QTest::keyClick(view, Qt::Key_F2);
    // The cell is being edited; the page was not renamed (no title box was asked for).
    QVERIFY(view->indexWidget(view->currentIndex()) ||
            qobject_cast<QLineEdit*>(QApplication::focusWidget()) ||
            qobject_cast<QPlainTextEdit*>(QApplication::focusWidget()));
    for (const auto& shown : m_dialogs->shown()) {
        QVERIFY2(shown.kind != QLatin1String("text"), qPrintable(shown.text));
    }
    QCOMPARE(page->caption(), caption);
    // In the outline, F2 still renames.
    m_window->outlineView()->setFocus();
    m_dialogs->answerText(std::nullopt);
    QTest::keyClick(m_window->outlineView(), Qt::Key_F2);
    QVERIFY(m_dialogs->scriptUsedUp());
}

void EditorsInWindowTest::outlineStaysPutWhateverPageIsShown()
{
    QWidget* tree = m_window->outlineView();
    select(firstOfKind(store::PageType::Grid)); // a kind with a toolbar
    QCoreApplication::processEvents();
    const QPoint withBar = tree->mapTo(m_window.get(), QPoint(0, 0));
    select(firstOfKind(store::PageType::Folder)); // no toolbar
    QCoreApplication::processEvents();
    QCOMPARE(tree->mapTo(m_window.get(), QPoint(0, 0)), withBar);
    select(firstOfKind(store::PageType::Text));
    QCoreApplication::processEvents();
    QCOMPARE(tree->mapTo(m_window.get(), QPoint(0, 0)), withBar);
}

void EditorsInWindowTest::readOnlyProjectTakesNoEdit()
{
    const QString file = m_window->data().fileName();
    QFile project(file);
    QVERIFY(project.open(QIODevice::ReadOnly));
    const QByteArray before = project.readAll();
    project.close();
    QVERIFY(m_window->openProject(file, true));
    QVERIFY(m_window->windowTitle().endsWith(QLatin1String("(read-only)")));
    QVERIFY(m_window->readOnlyLabel()->isVisibleTo(m_window.get()));
    for (const char* name : {"NodeNew", "NodeImport", "DeleteNodebtn", "NodeRename", "UpBtn",
                             "Undo1", "Redo1", "RecoverPages1"}) {
        QVERIFY2(!m_window->findChild<QAction*>(QLatin1String(name))->isEnabled(), name);
    }
    // The text editor shows the page but takes no typing; an edit made anyway is not kept.
    OutlineNode* page = firstOfKind(store::PageType::Text);
    select(page);
    auto* editor =
        qobject_cast<text::TRMWPEditor*>(m_window->editors().panel(store::EditorKind::Text));
    QVERIFY(editor->view()->isReadOnly());
    const QString shown = editor->pageDocument().textDocument()->toPlainText();
    QTextCursor cursor(editor->pageDocument().textDocument());
    cursor.insertText(QStringLiteral("Sneaked in. "));
    QTRY_COMPARE(editor->pageDocument().textDocument()->toPlainText(), shown);
    QVERIFY(m_dialogs->messages().contains(
        QStringLiteral("This project is read-only: changes cannot be saved.")));
    QVERIFY(!m_window->pageDisplay().contentModified());
    select(firstOfKind(store::PageType::Grid));
    m_window->close();
    QVERIFY(project.open(QIODevice::ReadOnly));
    QCOMPARE(project.readAll(), before);
}

void EditorsInWindowTest::ctrlZUndoesInTheOutlineAndNotInAnEditor()
{
    store::OutlineModel& outline = m_window->data().outline();
    OutlineNode* page = firstOfKind(store::PageType::Text);
    const int index = outline.indexOf(page);
    const QString caption = page->caption();
    const qint32 pageId = page->data();
    select(page);
    QAction* undo = m_window->findChild<QAction*>(QStringLiteral("Undo1"));
    QAction* redo = m_window->findChild<QAction*>(QStringLiteral("Redo1"));
    QVERIFY(!undo->isEnabled() && !redo->isEnabled());
    m_dialogs->answerText(QStringLiteral("Renamed"));
    m_window->NodeRenameClick();
    QCOMPARE(page->caption(), QStringLiteral("Renamed"));
    QVERIFY(undo->isEnabled());

    // In the text editor Ctrl+Z is the editor's: the outline keeps its rename.
    auto* editor =
        qobject_cast<text::TRMWPEditor*>(m_window->editors().panel(store::EditorKind::Text));
    QWidget* view = editor->view();
    view->setFocus();
    QTest::keyClicks(view, QStringLiteral("xyz"));
    QTest::keyClick(view, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(outline.nodeAt(index)->caption(), QStringLiteral("Renamed"));
    // Nor anywhere else outside the outline.
    m_window->setFocus();
    QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(outline.nodeAt(index)->caption(), QStringLiteral("Renamed"));

    // An edit of the page on screen survives an undo in the outline: it is stored first.
    QTextCursor cursor(editor->pageDocument().textDocument());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(QStringLiteral(" Kept through undo."));
    m_window->outlineView()->setFocus();
    QTest::keyClick(m_window->outlineView(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(outline.nodeAt(index)->caption(), caption);
    QCOMPARE(outline.selected(), outline.nodeAt(index));
    QVERIFY(!undo->isEnabled() && redo->isEnabled());
    QVERIFY(m_window->data().table()->readContent(pageId).value()->contains("Kept through undo."));
    QVERIFY(editor->pageDocument().textDocument()->toPlainText().contains(
        QStringLiteral("Kept through undo.")));

    QTest::keyClick(m_window->outlineView(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(outline.nodeAt(index)->caption(), QStringLiteral("Renamed"));
    QVERIFY(undo->isEnabled() && !redo->isEnabled());
}

void EditorsInWindowTest::recoverTellsHowManyPagesCameBack()
{
    store::TRMData& data = m_window->data();
    QAction* recover = m_window->findChild<QAction*>(QStringLiteral("RecoverPages1"));
    QVERIFY(recover->isEnabled());
    recover->trigger();
    QVERIFY(m_dialogs->messages().contains(QStringLiteral("No page is without an item.")));
    const qint32 lost = data.appendRecord(store::PageType::Text, QStringLiteral("a\tb\tLost"),
                                          QByteArray(), QString())
                            .value();
    recover->trigger();
    QVERIFY2(m_dialogs->messages().contains(
                 QStringLiteral("1 page came back under \"Recovered items\".")),
             qPrintable(m_dialogs->messages().join(QLatin1Char('|'))));
    const OutlineNode* last = data.outline().nodeAt(data.outline().count() - 1);
    QCOMPARE(last->data(), lost);
    QCOMPARE(last->caption(), QStringLiteral("Lost"));
    QCOMPARE(last->parent()->caption(), QStringLiteral("Recovered items"));
    // Recovery is undone like any outline command.
    m_window->findChild<QAction*>(QStringLiteral("Undo1"))->trigger();
    for (const OutlineNode* node : data.outline().nodesInOrder()) {
        QVERIFY(node->data() != lost);
    }
}

QTEST_MAIN(EditorsInWindowTest)
#include "EditorsInWindowTest.moc"
