// The main window driven headless: outline commands through its handlers and menus, page
// display and editor switching, modified pages saved when the selection moves, failures told
// to the user, and the window's settings.

#include "ResultChecks.h"
#include "ScriptedDialogs.h"

#include "app/AppSettings.h"
#include "app/OutlineItemModel.h"
#include "app/OutlineView.h"
#include "app/PageDisplay.h"
#include "app/TKestrumM.h"
#include "app/TRMNewNoteDlg.h"
#include "common/IniFile.h"
#include "store/OutlineCommands.h"
#include "store/OutlineModel.h"
#include "store/PageTable.h"
#include "store/ProjectReader.h"
#include "store/RawPageDocument.h"
#include "store/SqliteDatabase.h"
#include "store/TRMData.h"
#include "ui/EditorPanel.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolBar>
#include <QtTest>

using namespace kestrum;
using namespace kestrum::app;
using store::EditorKind;
using store::OutlineNode;

namespace {

// A document whose saving can be made to fail, as a full disk or a broken editor would.
class TestDocument : public store::RawPageDocument
{
public:
    using RawPageDocument::RawPageDocument;
    bool failWrites = false;
    Result<QByteArray> writeContent() override
    {
        if (failWrites) {
            return fail(QStringLiteral("the editor could not write its page"));
        }
        return RawPageDocument::writeContent();
    }
};

// An editor that puts one command in the window's toolbar and menu for its kind.
class TestEditor : public ui::EditorPanel
{
public:
    explicit TestEditor(EditorKind kind, QWidget* parent) : ui::EditorPanel(parent), doc(kind)
    {
        setObjectName(QStringLiteral("Editor%1").arg(int(kind)));
    }
    store::PageDocument& document() override { return doc; }
    void populateToolBar(QToolBar* bar) override
    {
        bar->addAction(QStringLiteral("tool %1").arg(int(doc.kind())));
    }
    void populateMenu(QMenu* menu) override
    {
        menu->addAction(QStringLiteral("menu %1").arg(int(doc.kind())));
    }
    bool canFind() const override { return true; }
    void find() override { ++finds; }
    TestDocument doc;
    int finds = 0;
};

app::DesktopPageKinds testEditors()
{
    app::DesktopPageKinds kinds = app::desktopPageKinds();
    for (app::DesktopPageKind& entry : kinds) {
        const EditorKind kind = entry.kind;
        entry.makeEditor = [kind](QWidget* parent) { return new TestEditor(kind, parent); };
    }
    return kinds;
}

} // namespace

class TKestrumMTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void openingShowsTheRestoredNodeAndTitle();
    void damagedProjectLeavesThePreviousOneOpen();
    void editorsToolbarsAndMenusFollowTheKind_data();
    void editorsToolbarsAndMenusFollowTheKind();
    void folderAndProjectNodeShowNoEditor();
    void commentPanelLooksDisabledWhenOff();
    void modifiedPageIsSavedWhenTheSelectionMoves();
    void loadingAPageNeverMarksItModified();
    void commentsOfTimelineAndCloudPagesAreNotWrittenBack();
    void failedSaveSaysCannotSaveData();
    void buttonsAndPosition();
    void itemsMenuEnabling();
    void newItemDialog();
    void newItemCancelStillWritesTheOutline();
    void importSeveralFiles();
    void exportPageWritesTheChosenFormat();
    void deleteAsksThenWalks();
    void renameAndColours();
    void untitledPageShowsAPlaceholder();
    void moveCommandsAndDragDrop();
    void keepSelectedItemSaysSaved();
    void handOffTimerSelectsAfterTheFirstAdopted();
    void findGoesToTheShownEditor();
    void layoutAndRecentProjectsAreKept();
    void itemModelStaysConsistent();

private:
    QString path(const QString& name) const { return m_dir->filePath(name); }
    TestEditor* editor(EditorKind kind) const
    {
        return static_cast<TestEditor*>(m_window->editors().panel(kind));
    }
    QAction* action(const char* name) const
    {
        return m_window->findChild<QAction*>(QLatin1String(name));
    }
    OutlineNode* node(int index) const { return m_window->data().outline().nodeAt(index); }
    void select(int index);
    // A project with pages of several kinds: root, Text(1), Grid(2), Folder(3: Chart(4),
    // Timeline(5), Cloud(6)), Image(7).
    QString makeProject(const QString& name = QStringLiteral("window.kst"));
    std::unique_ptr<TKestrumM> makeWindow();

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<test::ScopedScriptedDialogs> m_dialogs;
    std::unique_ptr<TKestrumM> m_window;
};

void TKestrumMTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_dialogs = std::make_unique<test::ScopedScriptedDialogs>();
    store::SqliteDatabase::setBusyTimeout(10000);
    m_window = makeWindow();
}

void TKestrumMTest::cleanup()
{
    m_window.reset();
    QVERIFY2(m_dialogs->unexpected().isEmpty(),
             qPrintable(m_dialogs->unexpected().join(QLatin1Char(','))));
    m_dialogs.reset();
    m_dir.reset();
}

std::unique_ptr<TKestrumM> TKestrumMTest::makeWindow()
{
    TKestrumM::Options options;
    options.settingsPath = path(QStringLiteral("Kestrum.INI"));
    options.kinds = testEditors();
    options.pollHandOff = false;
    options.restoreLayout = false;
    return std::make_unique<TKestrumM>(std::move(options));
}

void TKestrumMTest::select(int index)
{
    // As a click in the tree does.
    m_window->outlineView()->setCurrentIndex(m_window->outlineModel()->indexFor(node(index)));
}

QString TKestrumMTest::makeProject(const QString& name)
{
    const QString file = path(name);
    store::TRMData data;
    KREQUIRE_OK(data.DBCreate(file));
    store::OutlineModel& m = data.outline();
    while (m.root()->hasChildren()) {
        KREQUIRE_OK(data.DeleteRecord(m.root()->childAt(0)->data()));
        m.removeNode(m.root()->childAt(0));
    }
    auto page = [&](OutlineNode* parent, qint32 type, const QString& title) {
        store::OutlineNodeData d;
        d.caption = title;
        d.imageIndex = type;
        d.data = data.appendRecord(type, title, title.toUtf8() + " content",
                                   title + QStringLiteral(" comment"))
                     .value();
        return m.addChild(parent, d);
    };
    page(m.root(), 0, QStringLiteral("Text"));
    page(m.root(), 1, QStringLiteral("Grid"));
    store::OutlineNodeData f;
    f.caption = QStringLiteral("Folder");
    f.imageIndex = 11;
    f.expanded = true;
    OutlineNode* folder = m.addChild(m.root(), f);
    page(folder, 2, QStringLiteral("Chart"));
    page(folder, 8, QStringLiteral("Timeline"));
    page(folder, 13, QStringLiteral("Cloud"));
    page(m.root(), 3, QStringLiteral("Image"));
    m.selectIndex(1);
    KREQUIRE_OK(data.SaveTree());
    data.CloseFile();
    return file;
}

void TKestrumMTest::openingShowsTheRestoredNodeAndTitle()
{
    const QString file = makeProject();
    QVERIFY(m_window->openProject(file));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Kestrum - WINDOW.KST"));
    QCOMPARE(m_window->data().outline().selectedIndex(), 1);
    QCOMPARE(m_window->outlineModel()->nodeFor(m_window->outlineView()->currentIndex()), node(1));
    QCOMPARE(editor(EditorKind::Text)->doc.bytes(), QByteArray("Text content"));
    QCOMPARE(m_window->commentPanel()->toPlainText(), QStringLiteral("Text comment"));
    QVERIFY(m_window->outlineView()->isExpanded(m_window->outlineModel()->indexFor(node(3))));

    select(4);
    m_window->closeProject();
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Kestrum"));
    QVERIFY(!action("NodeNew")->isEnabled());
    QVERIFY(m_window->openProject(file));
    QCOMPARE(m_window->data().outline().selectedIndex(), 4);
    QCOMPARE(editor(EditorKind::Chart)->doc.bytes(), QByteArray("Chart content"));
}

void TKestrumMTest::damagedProjectLeavesThePreviousOneOpen()
{
    const QString file = makeProject();
    QVERIFY(m_window->openProject(file));
    select(2);
    const QString bad = path(QStringLiteral("bad.kst"));
    QFile f(bad);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(QByteArray(3000, 'x'));
    f.close();
    QVERIFY(!m_window->openProject(bad));
    QCOMPARE(m_dialogs->messages().size(), 1);
    QVERIFY(m_dialogs->messages().first().contains(QLatin1String("bad.kst")));
    QCOMPARE(m_window->data().fileName(), file);
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Kestrum - WINDOW.KST"));
    QCOMPARE(m_window->data().outline().selectedIndex(), 2);
    QVERIFY(editor(EditorKind::Grid)->isVisibleTo(m_window.get()));
}

void TKestrumMTest::editorsToolbarsAndMenusFollowTheKind_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("toolBar");
    QTest::addColumn<QString>("menu");
    QTest::newRow("text") << 1 << int(EditorKind::Text) << "WPBar"
                          << "DocMenu";
    QTest::newRow("grid") << 2 << int(EditorKind::Grid) << "GridBar"
                          << "TableMenu";
    QTest::newRow("chart") << 4 << int(EditorKind::Chart) << "ChartBar"
                           << "ChartMenu";
    QTest::newRow("timeline") << 5 << int(EditorKind::Timeline) << ""
                              << "";
    QTest::newRow("word cloud") << 6 << int(EditorKind::WordCloud) << "CloudBar"
                                << "";
    QTest::newRow("image") << 7 << int(EditorKind::Image) << "ImageBar"
                           << "";
}

void TKestrumMTest::editorsToolbarsAndMenusFollowTheKind()
{
    QFETCH(int, index);
    QFETCH(int, kind);
    QFETCH(QString, toolBar);
    QFETCH(QString, menu);
    QVERIFY(m_window->openProject(makeProject()));
    QCOMPARE(m_window->editors().panel(EditorKind::Timeline), nullptr); // made on first use
    select(index);
    for (int k = 1; k < store::kEditorKindCount; ++k) {
        ui::EditorPanel* panel = m_window->editors().panel(EditorKind(k));
        if (panel) {
            QCOMPARE(panel->isVisibleTo(m_window.get()), k == kind);
        }
    }
    for (const char* bar : {"WPBar", "GridBar", "ChartBar", "ImageBar", "DiagramBar", "CloudBar"}) {
        QCOMPARE(m_window->findChild<QToolBar*>(QLatin1String(bar))->isVisibleTo(m_window.get()),
                 toolBar == QLatin1String(bar));
    }
    for (const char* m : {"DocMenu", "TableMenu", "ChartMenu"}) {
        QCOMPARE(m_window->findChild<QMenu*>(QLatin1String(m))->menuAction()->isVisible(),
                 menu == QLatin1String(m));
    }
    // Find and replace in the page only for text and tables.
    QCOMPARE(action("Find1")->isEnabled(),
             kind == int(EditorKind::Text) || kind == int(EditorKind::Grid));
    // Leaving the text page clears the text editor.
    if (kind != int(EditorKind::Text)) {
        QVERIFY(editor(EditorKind::Text)->doc.bytes().isEmpty());
    }
}

void TKestrumMTest::folderAndProjectNodeShowNoEditor()
{
    QVERIFY(m_window->openProject(makeProject()));
    select(3);
    QCOMPARE(m_window->editors().visiblePanel(), nullptr);
    QVERIFY(!m_window->commentPanel()->isEnabled());
    QVERIFY(m_window->commentPanel()->toPlainText().isEmpty());
    select(0);
    QCOMPARE(m_window->editors().visiblePanel(), nullptr);
    QVERIFY(m_window->commentPanel()->isEnabled());

    // The project node shows the comment of the record its data names, not the outline
    // record's.
    store::TRMData& data = m_window->data();
    QVERIFY(data.table()->writeComment(0, QStringLiteral("Outline comment")).value());
    select(1);
    data.outline().setData(node(0), node(2)->data());
    select(0);
    QCOMPARE(m_window->commentPanel()->toPlainText(), QStringLiteral("Grid comment"));
    // A data that names no record: an empty panel.
    select(1);
    data.outline().setData(node(0), 9999);
    select(0);
    QVERIFY(m_window->commentPanel()->isEnabled());
    QCOMPARE(m_window->commentPanel()->toPlainText(), QString());
}

void TKestrumMTest::commentPanelLooksDisabledWhenOff()
{
    // The colour of the panel as it is drawn on screen; invalid when more than one colour is
    // drawn (a text or a placeholder inviting to type).
    const auto background = [this] {
        QWidget* viewport = m_window->commentPanel()->viewport();
        const QImage picture = viewport->grab().toImage();
        const QColor corner = picture.pixelColor(picture.width() - 4, picture.height() - 4);
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixelColor(x, y) != corner) {
                    return QColor();
                }
            }
        }
        return corner;
    };
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QVERIFY(!m_window->commentPanel()->isEnabled());
    const QColor withoutProject = background();
    QVERIFY(m_window->openProject(makeProject()));
    QVERIFY(m_window->commentPanel()->isEnabled());
    m_window->commentPanel()->clear(); // the placeholder shows on a page without comment
    const QColor onAPage = background();
    QVERIFY(!onAPage.isValid());
    select(3);
    QVERIFY(!m_window->commentPanel()->isEnabled());
    const QColor onAFolder = background();
    QCOMPARE(onAFolder, m_window->palette().color(QPalette::Active, QPalette::Window));
    QVERIFY(onAFolder !=
            m_window->commentPanel()->palette().color(QPalette::Active, QPalette::Base));
    QCOMPARE(withoutProject, onAFolder);
}

void TKestrumMTest::modifiedPageIsSavedWhenTheSelectionMoves()
{
    const QString file = makeProject();
    QVERIFY(m_window->openProject(file));
    select(2);
    editor(EditorKind::Grid)->doc.setBytes("edited grid"); // as the user's edit
    QVERIFY(m_window->pageDisplay().contentModified());
    m_window->commentPanel()->setPlainText(QStringLiteral("new comment"));
    QVERIFY(m_window->pageDisplay().commentModified());
    select(1);
    QVERIFY(!m_window->pageDisplay().contentModified());
    QCOMPARE(*m_window->data().table()->readContent(node(2)->data()).value(),
             QByteArray("edited grid"));
    QCOMPARE(*m_window->data().table()->readComment(node(2)->data()).value(),
             QStringLiteral("new comment"));

    // Moving without changes writes nothing.
    const QByteArray before = *m_window->data().table()->readContent(node(1)->data()).value();
    QVERIFY(editor(EditorKind::Text)->doc.readContent("not by the user")); // a load, not an edit
    select(2);
    QCOMPARE(*m_window->data().table()->readContent(node(1)->data()).value(), before);

    // The page on screen is saved when the project closes.
    const qint32 grid = node(2)->data();
    editor(EditorKind::Grid)->doc.setBytes("saved on close");
    m_window->closeProject();
    store::ProjectReader reader;
    KVERIFY_OK(reader.open(file));
    QCOMPARE(*reader.table().readContent(grid).value(), QByteArray("saved on close"));
}

void TKestrumMTest::loadingAPageNeverMarksItModified()
{
    QVERIFY(m_window->openProject(makeProject()));
    for (int i : {2, 4, 5, 6, 7, 1}) {
        select(i);
        QVERIFY(!m_window->pageDisplay().contentModified());
        QVERIFY(!m_window->pageDisplay().commentModified());
    }
}

void TKestrumMTest::commentsOfTimelineAndCloudPagesAreNotWrittenBack()
{
    QVERIFY(m_window->openProject(makeProject()));
    for (int i : {5, 6}) {
        select(i);
        QVERIFY(m_window->commentPanel()->isEnabled());
        m_window->commentPanel()->setPlainText(QStringLiteral("lost"));
        select(1);
        QVERIFY(m_window->data()
                    .table()
                    ->readComment(node(i)->data())
                    .value()
                    ->endsWith(QLatin1String(" comment")));
    }
    select(4); // a chart comment is kept
    m_window->commentPanel()->setPlainText(QStringLiteral("kept"));
    select(1);
    QCOMPARE(*m_window->data().table()->readComment(node(4)->data()).value(),
             QStringLiteral("kept"));
}

void TKestrumMTest::failedSaveSaysCannotSaveData()
{
    QVERIFY(m_window->openProject(makeProject()));
    select(2);
    editor(EditorKind::Grid)->doc.failWrites = true;
    editor(EditorKind::Grid)->doc.setBytes("will not be saved");
    select(1);
    QCOMPARE(m_dialogs->messages(), QStringList({"Cannot save data!"}));
    // The switch went on.
    QCOMPARE(m_window->data().outline().selectedIndex(), 1);
    QVERIFY(editor(EditorKind::Text)->isVisibleTo(m_window.get()));
    QCOMPARE(*m_window->data().table()->readContent(node(2)->data()).value(),
             QByteArray("Grid content"));
}

void TKestrumMTest::buttonsAndPosition()
{
    QVERIFY(m_window->openProject(makeProject()));
    select(5); // the second of three children of the folder
    QCOMPARE(m_window->positionText(), QStringLiteral("2/3"));
    QVERIFY(action("UpBtn")->isEnabled());
    QVERIFY(action("DnBtn")->isEnabled());
    QVERIFY(action("LeftBtn")->isEnabled());
    QVERIFY(action("RightBtn")->isEnabled());
    select(4); // first child
    QVERIFY(!action("UpBtn")->isEnabled());
    QVERIFY(!action("RightBtn")->isEnabled());
    select(7); // last child of the project node
    QVERIFY(!action("DnBtn")->isEnabled());
    QVERIFY(!action("LeftBtn")->isEnabled());
    QCOMPARE(m_window->positionText(), QStringLiteral("4/4"));
    select(0);
    for (const char* b : {"DeleteNodebtn", "UpBtn", "DnBtn", "LeftBtn", "RightBtn"}) {
        QVERIFY(!action(b)->isEnabled());
    }
    QCOMPARE(m_window->positionText(), QStringLiteral("4/4")); // left as it was
}

void TKestrumMTest::itemsMenuEnabling()
{
    QVERIFY(m_window->openProject(makeProject()));
    select(4);
    emit m_window->itemsMenu()->aboutToShow();
    QVERIFY(!action("MoveUp1")->isEnabled());
    QVERIFY(action("MoveDown1")->isEnabled());
    QVERIFY(action("Promote1")->isEnabled());
    QVERIFY(!action("Demote1")->isEnabled());
    QVERIFY(action("NodeDelete")->isEnabled());
    select(0);
    emit m_window->itemsMenu()->aboutToShow();
    QVERIFY(!action("NodeDelete")->isEnabled());
    QStringList captions;
    for (QAction* a : m_window->itemsMenu()->actions()) {
        if (!a->isSeparator() && a->isVisible()) {
            captions << a->text();
        }
    }
    QCOMPARE(captions,
             QStringList({"New...", "Import files...", "Delete", "Rename...", "Change color",
                          "Expand all", "Colapse all", "Move up", "Move down", "Promote", "Demote",
                          "Keep selected item", "Recover pages without an item..."}));
    QVERIFY(m_window->outlineContextMenu()->actions().contains(action("NodeCollapse2")));
    QCOMPARE(action("NodeCollapse2")->text(), QStringLiteral("Collapse all"));
}

void TKestrumMTest::newItemDialog()
{
    QVERIFY(m_window->openProject(makeProject()));
    select(0);
    bool afterEnabled = true;
    m_dialogs->answerExec([&](QDialog* d) {
        auto* dialog = qobject_cast<TRMNewNoteDlg*>(d);
        afterEnabled = dialog->afterButton()->isEnabled();
        [&] {
            QVERIFY(dialog->underButton()->isChecked());
            QVERIFY(dialog->documentButton()->isChecked());
            QCOMPARE(dialog->titleEdit()->text(), QStringLiteral("{untitled}"));
            QCOMPARE(dialog->titleEdit()->selectedText(), QStringLiteral("{untitled}"));
        }();
        dialog->titleEdit()->setText(QStringLiteral("Under the root"));
        return int(QDialog::Accepted);
    });
    m_window->NodeNewClick();
    QVERIFY(!afterEnabled);
    OutlineNode* added = m_window->data().outline().selected();
    QCOMPARE(added->caption(), QStringLiteral("Under the root"));
    QCOMPARE(added->parent(), node(0));
    QCOMPARE(added->imageIndex(), 0);
    QVERIFY(m_window->data().table()->exists(added->data()).value());
    QVERIFY(editor(EditorKind::Text)->isVisibleTo(m_window.get()));

    select(4);
    m_dialogs->answerExec([](QDialog* d) {
        auto* dialog = qobject_cast<TRMNewNoteDlg*>(d);
        dialog->folderButton()->setChecked(true);
        dialog->afterButton()->setChecked(true);
        dialog->titleEdit()->setText(QStringLiteral("Sub folder"));
        return int(QDialog::Accepted);
    });
    m_window->NodeNewClick();
    QCOMPARE(node(5)->caption(), QStringLiteral("Sub folder"));
    QCOMPARE(node(5)->data(), -1);
    QVERIFY(!m_window->commentPanel()->isEnabled());
}

void TKestrumMTest::newItemCancelStillWritesTheOutline()
{
    const QString file = makeProject();
    QVERIFY(m_window->openProject(file));
    select(7);
    m_dialogs->answerExec([](QDialog*) { return int(QDialog::Rejected); });
    m_window->NodeNewClick();
    QCOMPARE(m_window->data().outline().count(), 8);
    store::ProjectReader reader;
    KVERIFY_OK(reader.open(file));
    QCOMPARE(reader.outline()->data(), 7); // the selection as written by the cancelled command
}

void TKestrumMTest::exportPageWritesTheChosenFormat()
{
    QVERIFY(m_window->openProject(makeProject()));
    // A folder has no page.
    select(3);
    m_window->ExportPageClick();
    QVERIFY(m_dialogs->messages().contains(QStringLiteral("This item cannot be exported.")));
    // The text page as plain text: the third format; the extension is added.
    select(1);
    m_dialogs->answerSaveFile(ui::Dialogs::FileChoice{path(QStringLiteral("exported")), 3});
    m_window->ExportPageClick();
    QFile out(path(QStringLiteral("exported.txt")));
    QVERIFY(out.open(QIODevice::ReadOnly));
    QCOMPARE(out.readAll().trimmed(), QByteArray("Text content"));
    // Cancelled: nothing written.
    m_dialogs->answerSaveFile(std::nullopt);
    m_window->ExportPageClick();
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("exported"))));
}

void TKestrumMTest::importSeveralFiles()
{
    QVERIFY(m_window->openProject(makeProject()));
    select(3);
    QStringList files;
    for (const char* name : {"Notes.txt", "Counts.csv", "Photo.png"}) {
        QFile f(path(QLatin1String(name)));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(QByteArray("bytes of ") + name);
        files << f.fileName();
    }
    m_dialogs->answerOpenFiles(files);
    m_window->NodeImportClick();
    const OutlineNode* folder = node(3);
    QCOMPARE(folder->childCount(), 6);
    QCOMPARE(folder->childAt(3)->caption(), QStringLiteral("Notes"));
    QCOMPARE(folder->childAt(4)->imageIndex(), 1);
    QCOMPARE(folder->childAt(5)->imageIndex(), 3);
    // The last imported page is the one shown.
    QCOMPARE(m_window->data().outline().selected(), folder->childAt(5));
    QVERIFY(editor(EditorKind::Image)->isVisibleTo(m_window.get()));
    // The table was stored (as a grid stream) although the next file followed at once.
    const QByteArray table =
        *m_window->data().table()->readContent(folder->childAt(4)->data()).value();
    QVERIFY(table.startsWith("KSTG"));
    QVERIFY(table.contains("bytes of Counts.csv"));
    m_dialogs->answerOpenFiles(std::nullopt); // cancelled: nothing happens
    m_window->NodeImportClick();
    QCOMPARE(folder->childCount(), 6);
}

void TKestrumMTest::deleteAsksThenWalks()
{
    QVERIFY(m_window->openProject(makeProject()));
    select(4);
    editor(EditorKind::Chart)->doc.setBytes("must not be written");
    m_dialogs->answerYesNo(false);
    m_window->NodeDeleteClick();
    QCOMPARE(m_window->data().outline().count(), 8);
    QCOMPARE(m_dialogs->messages().last(),
             QStringLiteral("Are you sure you want to delete item: Chart"));

    m_dialogs->answerYesNo(true);
    const qint32 chart = node(4)->data();
    const qint32 image = node(7)->data();
    m_window->NodeDeleteClick();
    // Every node from the chart to the end goes; only the chart's record is deleted.
    QCOMPARE(m_window->data().outline().count(), 4);
    QVERIFY(!m_window->data().table()->exists(chart).value());
    QVERIFY(m_window->data().table()->exists(image).value());
    QCOMPARE(m_window->data().outline().selectedIndex(), 3);
    QCOMPARE(m_window->editors().visiblePanel(), nullptr); // the folder is shown
}

void TKestrumMTest::renameAndColours()
{
    QVERIFY(m_window->openProject(makeProject()));
    select(2);
    m_dialogs->answerText(QStringLiteral("Code counts"));
    m_window->NodeRenameClick();
    QCOMPARE(m_dialogs->lastInitialText(), QStringLiteral("Grid"));
    QCOMPARE(node(2)->caption(), QStringLiteral("Code counts"));
    m_dialogs->answerText(std::nullopt);
    m_window->NodeRenameClick();
    QCOMPARE(node(2)->caption(), QStringLiteral("Code counts"));

    action("Blue1")->trigger();
    QCOMPARE(node(2)->fields().textColor, 0xFFFF00);
    const QModelIndex index = m_window->outlineModel()->indexFor(node(2));
    QCOMPARE(index.data(Qt::ForegroundRole).value<QBrush>().color(), QColor(0, 255, 255));
    m_dialogs->answerColour(QColor(0x12, 0x34, 0x56));
    action("Custom1")->trigger();
    QCOMPARE(node(2)->fields().textColor, 0x563412);
    m_dialogs->answerColour(std::nullopt); // cancelled: unchanged
    action("Custom1")->trigger();
    QCOMPARE(node(2)->fields().textColor, 0x563412);
    action("White1")->trigger();
    QVERIFY(node(2)->fields().usesTreeColours);
    QVERIFY(!index.data(Qt::ForegroundRole).isValid());
}

void TKestrumMTest::untitledPageShowsAPlaceholder()
{
    const QString file = makeProject();
    QVERIFY(m_window->openProject(file));
    select(2);
    m_dialogs->answerText(QString());
    m_window->NodeRenameClick();
    QCOMPARE(node(2)->caption(), QString());
    const QModelIndex index = m_window->outlineModel()->indexFor(node(2));
    QCOMPARE(index.data(Qt::DisplayRole).toString(), QStringLiteral("{untitled}"));
    QCOMPARE(index.data(Qt::EditRole).toString(), QString());
    QCOMPARE(index.data(Qt::ForegroundRole).value<QBrush>().color(),
             OutlineItemModel::untitledColour());
    QVERIFY(OutlineItemModel::untitledColour() !=
            m_window->outlineView()->palette().color(QPalette::Active, QPalette::Text));
    // Editing the title again starts from the empty caption, not from the placeholder.
    m_dialogs->answerText(std::nullopt);
    m_window->NodeRenameClick();
    QCOMPARE(m_dialogs->lastInitialText(), QString());
    // A colour mark is shown on the placeholder as on any caption.
    action("Red1")->trigger();
    QCOMPARE(index.data(Qt::ForegroundRole).value<QBrush>().color(), QColor(255, 0, 0));
    // Only the caption shown changes: the stored outline keeps it empty.
    m_window->closeProject();
    QVERIFY(m_window->openProject(file));
    QCOMPARE(node(2)->caption(), QString());
    QCOMPARE(m_window->outlineModel()->indexFor(node(1)).data().toString(), QStringLiteral("Text"));
}

void TKestrumMTest::moveCommandsAndDragDrop()
{
    QVERIFY(m_window->openProject(makeProject()));
    select(5);
    action("UpBtn")->trigger();
    QCOMPARE(node(4)->caption(), QStringLiteral("Timeline"));
    QCOMPARE(m_window->data().currentNodeIndex(), 4);
    QCOMPARE(m_window->positionText(), QStringLiteral("1/3"));
    action("LeftBtn")->trigger(); // promote: after the folder
    QCOMPARE(node(6)->caption(), QStringLiteral("Timeline"));
    QCOMPARE(node(6)->parent(), node(0));
    QCOMPARE(m_window->outlineModel()->nodeFor(m_window->outlineView()->currentIndex())->caption(),
             QStringLiteral("Timeline"));

    // Drops: never the root, never into its own subtree; Ctrl places before the target.
    OutlineNode* folder = node(3);
    OutlineNode* chart = node(4);
    QVERIFY(!store::OutlineCommands::canDrop(node(0), folder));
    QVERIFY(!store::OutlineCommands::canDrop(folder, chart));
    m_window->MainTreeDragDrop(chart, node(1), false);
    QCOMPARE(chart->parent(), node(1));
    QCOMPARE(m_window->data().outline().selected(), chart);
    QVERIFY(editor(EditorKind::Chart)->isVisibleTo(m_window.get()));
    m_window->MainTreeDragDrop(chart, node(1), true);
    QCOMPARE(chart->parent(), node(0));
    QCOMPARE(chart->row(), 0);
    store::ProjectReader reader;
    KVERIFY_OK(reader.open(m_window->data().fileName()));
    QCOMPARE(reader.outline()->childAt(0)->caption(), QStringLiteral("Chart"));
}

void TKestrumMTest::keepSelectedItemSaysSaved()
{
    QVERIFY(m_window->openProject(makeProject()));
    select(2);
    editor(EditorKind::Grid)->doc.setBytes("edited before keeping");
    action("KeepSelected1")->trigger();
    QCOMPARE(m_dialogs->messages(), QStringList({"Saved!"}));
    QCOMPARE(m_dialogs->noticeMilliseconds(), 500);
    store::ProjectReader kept;
    KVERIFY_OK(kept.open(path(QStringLiteral("window.sup"))));
    QCOMPARE(*kept.table().readContent(node(2)->data()).value(),
             QByteArray("edited before keeping"));
}

void TKestrumMTest::handOffTimerSelectsAfterTheFirstAdopted()
{
    const QString file = makeProject(QStringLiteral("Study.session.kst"));
    QVERIFY(m_window->openProject(file));
    select(2);
    {
        store::SqliteDatabase db;
        KVERIFY_OK(db.open(file, store::SqliteDatabase::OpenMode::ReadWrite));
        store::PageTable table(db);
        KVERIFY_OK(table.insert(46000, QStringLiteral("a\tb\tFirst"), 0, "one", {}));
        KVERIFY_OK(table.insert(46000, QStringLiteral("a\tb\tSecond"), 1, "two", {}));
    }
    QFile(path(QStringLiteral("session.new"))).open(QIODevice::WriteOnly);
    m_window->Timer1Timer();
    QCOMPARE(m_window->data().outline().selected()->caption(), QStringLiteral("Second"));
    QVERIFY(editor(EditorKind::Grid)->isVisibleTo(m_window.get()));
    QCOMPARE(editor(EditorKind::Grid)->doc.bytes(), QByteArray("two"));
    QVERIFY(!QFile::exists(path(QStringLiteral("session.new"))));
}

void TKestrumMTest::findGoesToTheShownEditor()
{
    QVERIFY(m_window->openProject(makeProject()));
    select(2);
    action("Find1")->trigger();
    QCOMPARE(editor(EditorKind::Grid)->finds, 1);
    QCOMPARE(editor(EditorKind::Text)->finds, 0);
}

void TKestrumMTest::layoutAndRecentProjectsAreKept()
{
    const QString file = makeProject();
    QVERIFY(m_window->openProject(file));
    m_window->resize(1000, 700);
    m_window->close(); // writes the layout and closes the project
    m_window.reset();
    common::IniFile ini(path(QStringLiteral("Kestrum.INI")));
    QVERIFY(ini.load());
    QCOMPARE(ini.readInteger(QStringLiteral("MAIN"), QStringLiteral("WIDTH"), 0), 1000);
    QVERIFY(ini.hasKey(QStringLiteral("MAIN"), QStringLiteral("LEFT PANEL")));
    QVERIFY(ini.hasKey(QStringLiteral("MAIN"), QStringLiteral("COMMENT")));
    QVERIFY(ini.hasKey(QStringLiteral("MAIN"), QStringLiteral("STATE")));
    AppSettings settings(path(QStringLiteral("Kestrum.INI")));
    QCOMPARE(settings.lastProject(), QFileInfo(file).absoluteFilePath());
    m_window = makeWindow();
    QVERIFY(m_window->openProject(settings.lastProject()));
}

void TKestrumMTest::itemModelStaysConsistent()
{
    QVERIFY(m_window->openProject(makeProject()));
    QAbstractItemModelTester tester(m_window->outlineModel(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    select(5);
    action("UpBtn")->trigger();
    action("DnBtn")->trigger();
    action("LeftBtn")->trigger();
    action("RightBtn")->trigger();
    m_window->MainTreeDragDrop(node(2), node(3), false);
    m_window->MainTreeDragDrop(node(4), node(1), true);
    m_dialogs->answerYesNo(true);
    select(6);
    m_window->NodeDeleteClick();
    m_window->closeProject();
    QVERIFY(m_window->openProject(makeProject(QStringLiteral("second.kst"))));
}

QTEST_MAIN(TKestrumMTest)
#include "TKestrumMTest.moc"
