#include "TKestrumM.h"

#include "app/AppSettings.h"
#include "app/Icons.h"
#include "app/MainMenus.h"
#include "app/OutlineHistoryActions.h"
#include "app/OutlineItemModel.h"
#include "app/OutlineView.h"
#include "app/OverviewPanel.h"
#include "app/PageDisplay.h"
#include "app/TRMNewNoteDlg.h"
#include "common/Colour.h"
#include "export/PageExports.h"
#include "store/OutlineCommands.h"
#include "store/PageDocument.h"
#include "store/TRMData.h"
#include "ui/Dialogs.h"
#include "ui/EditorPanel.h"
#include "ui/WaitCursor.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTimer>
#include <algorithm>

namespace kestrum::app {

using store::OutlineNode;

namespace {

const QStringList kProjectFilters{QStringLiteral("Kestrum projects (*.kst)"),
                                  QStringLiteral("All files (*)")};

const QStringList kImportFilters{
    QStringLiteral("All supported files (*.rtf *.txt *.doc *.wpd *.htm *.html *.csv *.tab *.grid2 "
                   "*.wgf *.bmp *.wmf *.jpg *.jpeg *.png *.tee *.wsx)"),
    QStringLiteral("Documents (*.rtf *.txt *.doc *.wpd *.htm *.html)"),
    QStringLiteral("Tables (*.csv *.tab *.grid2 *.wgf)"),
    QStringLiteral("Pictures (*.bmp *.wmf *.jpg *.jpeg *.png)"),
    QStringLiteral("Charts (*.tee *.wsx)"),
    QStringLiteral("All files (*)")};

} // namespace

TKestrumM::TKestrumM(Options options, QWidget* parent)
    : QMainWindow(parent), m_options(std::move(options))
{
    setObjectName(QStringLiteral("KestrumM"));
    setWindowTitle(QStringLiteral("Kestrum"));
    setWindowIcon(Icons::forPageKind(store::PageType::OutlineRoot));
    m_settings = std::make_unique<AppSettings>(
        m_options.settingsPath.isEmpty() ? AppSettings::defaultPath() : m_options.settingsPath);
    m_data = std::make_unique<store::TRMData>();
    m_data->setPageKinds(exports::pageKindTable());
    m_commands = std::make_unique<store::OutlineCommands>(*m_data);

    buildCentralArea();
    const MainMenus menus = MainMenus::build(this, menuBar(), m_outlineBar, m_tree);
    m_fileMenu = menus.fileMenu;
    m_itemsMenu = menus.itemsMenu;
    m_contextMenu = menus.contextMenu;
    m_projectActions = menus.projectActions;
    m_changeActions = menus.changeActions;
    m_editors = new EditorArea(*this, *m_editorContainer, *m_data, m_options.kinds);
    m_editors->setFindActions(findChild<QAction*>(QStringLiteral("Find1")),
                              findChild<QAction*>(QStringLiteral("Replace1")));
    m_editors->createStartupEditors();
    m_display = new PageDisplay(*m_data, *m_editors, *m_comment, this);
    m_history = new OutlineHistoryActions(*this, m_tree, findChild<QMenu*>(QStringLiteral("Edit1")),
                                          m_itemsMenu);
    m_display->setAfterShow([this] {
        m_editors->overview()->showNode(m_data->outline().selected());
        CheckButtons();
    });
    connect(m_editors->overview(), &OverviewPanel::newProjectRequested, this,
            &TKestrumM::NewProjectClick);
    connect(m_editors->overview(), &OverviewPanel::openProjectRequested, this,
            &TKestrumM::OpenProjectClick);
    connect(m_editors->overview(), &OverviewPanel::recentProjectRequested, this,
            [this](const QString& path) { openProject(path); });
    // An editor's cancel: its unsaved changes are dropped and the page is shown again.
    connect(m_editors, &EditorArea::reloadRequested, this, [this] {
        m_display->setContentModified(false);
        ShowNode();
    });
    connectStore();

    m_timer = new QTimer(this);
    m_timer->setObjectName(QStringLiteral("Timer1"));
    m_timer->setInterval(1000);
    connect(m_timer, &QTimer::timeout, this, &TKestrumM::Timer1Timer);

    m_editors->ShowEditorNo(store::PageType::Folder);
    m_comment->setEnabled(false);
    refreshRecentMenu();
    updateFileState();
    if (m_options.restoreLayout) {
        restoreLayout();
    } else {
        resize(1200, 760);
    }
}

TKestrumM::~TKestrumM()
{
    m_timer->stop();
    if (m_data->isOpen()) {
        m_data->CloseFile();
    }
    // The editor area unregisters the editors' documents from the store: it goes while the
    // store is still here (child objects would otherwise outlive the members).
    delete m_editors;
    m_editors = nullptr;
}

// ---- helpers -----------------------------------------------------------------------------------

template <typename F> void TKestrumM::guarded(F&& work)
{
    const bool outer = !m_inCommand;
    m_inCommand = true;
    if constexpr (std::is_void_v<decltype(work())>) {
        work();
    } else if (const Status done = work(); !done) {
        ui::dialogs().warning(this, done.error());
    }
    if (outer) {
        m_inCommand = false;
    }
}

void TKestrumM::syncSelectionToView(OutlineNode* node)
{
    m_syncingSelection = true;
    const QModelIndex index = m_model->indexFor(node);
    m_tree->setCurrentIndex(index);
    if (index.isValid()) {
        m_tree->scrollTo(index);
    }
    m_syncingSelection = false;
}

void TKestrumM::syncExpansion()
{
    for (const OutlineNode* node : m_data->outline().nodesInOrder()) {
        if (node->hasChildren()) {
            m_tree->setExpanded(m_model->indexFor(node),
                                node->fields().expanded || !node->parent());
        }
    }
}

void TKestrumM::selectAndShow(OutlineNode* node)
{
    m_data->outline().setSelected(node);
    ShowNode();
}

QString TKestrumM::positionText() const
{
    return m_position->text();
}

// ---- project files -----------------------------------------------------------------------------

bool TKestrumM::createProject(const QString& fileName)
{
    bool ok = false;
    guarded([&] {
        m_display->SaveModif();
        const Status created = m_data->DBCreate(fileName);
        ok = created.ok();
        return created;
    });
    if (ok) {
        m_settings->addRecentProject(fileName);
        m_settings->save();
        syncExpansion();
        m_data->outline().selectIndex(1);
        ShowNode();
    }
    refreshRecentMenu();
    updateFileState();
    return ok;
}

bool TKestrumM::openProject(const QString& fileName, bool readOnly)
{
    bool ok = false;
    guarded([&] {
        const Status opened = m_data->DBOpen(fileName, readOnly);
        ok = opened.ok();
        return opened;
    });
    if (ok) {
        m_settings->addRecentProject(fileName);
        m_settings->save();
    }
    refreshRecentMenu();
    updateFileState();
    return ok;
}

void TKestrumM::closeProject()
{
    guarded([&] { m_data->CloseFile(); });
    m_editors->ShowEditorNo(store::PageType::Folder);
    m_editors->HideAllEditors();
    m_display->clearComment();
    m_comment->setEnabled(false);
    m_position->clear();
    setWindowTitle(QStringLiteral("Kestrum"));
    updateFileState();
}

void TKestrumM::updateFileState()
{
    const bool open = m_data->isOpen();
    const bool readOnly = open && m_data->isReadOnly();
    for (QAction* a : m_projectActions) {
        a->setEnabled(open);
    }
    // A read-only project can be read, searched and exported; nothing that changes it is offered.
    for (QAction* a : m_changeActions) {
        a->setEnabled(open && !readOnly);
    }
    m_tree->setDragEnabled(!readOnly);
    m_history->updateState();
    m_comment->setReadOnly(readOnly);
    m_editors->setReadOnly(readOnly);
    if (readOnly) {
        m_readOnlyLabel->setText(QStringLiteral("Read-only: changes cannot be saved"));
        m_readOnlyLabel->show();
    } else {
        m_readOnlyLabel->hide();
    }
    if (!open) {
        m_editors->overview()->showNoProject(m_settings->recentProjects());
    }
    if (open) {
        if (m_options.pollHandOff) {
            m_timer->start();
        }
    } else {
        m_timer->stop();
        for (const char* name : {"DeleteNodebtn", "UpBtn", "DnBtn", "LeftBtn", "RightBtn"}) {
            findChild<QAction*>(QLatin1String(name))->setEnabled(false);
        }
    }
}

void TKestrumM::refreshRecentMenu()
{
    for (QAction* a : m_recentActions) {
        m_fileMenu->removeAction(a);
        a->deleteLater();
    }
    m_recentActions.clear();
    QAction* end = nullptr;
    for (QAction* a : m_fileMenu->actions()) {
        if (a->objectName() == QLatin1String("RecentEnd")) {
            end = a;
        }
    }
    const QStringList files = m_settings->recentProjects();
    for (int i = 0; i < files.size(); ++i) {
        auto* a = new QAction(
            QStringLiteral("&%1 %2").arg(i + 1).arg(QFileInfo(files[i]).fileName()), this);
        a->setToolTip(files[i]);
        a->setStatusTip(files[i]);
        const QString file = files[i];
        connect(a, &QAction::triggered, this, [this, file] {
            if (!QFileInfo::exists(file)) {
                ui::dialogs().warning(
                    this, QStringLiteral("The project \"%1\" no longer exists.").arg(file));
                m_settings->removeRecentProject(file);
                m_settings->save();
                refreshRecentMenu();
                return;
            }
            openProject(file);
        });
        m_fileMenu->insertAction(end, a);
        m_recentActions << a;
    }
}

void TKestrumM::NewProjectClick()
{
    ui::Dialogs::FileRequest request;
    request.caption = QStringLiteral("New project");
    request.filters = kProjectFilters;
    request.defaultSuffix = QStringLiteral("kst");
    request.fileName = QStringLiteral("Report.kst");
    if (const auto choice = ui::dialogs().getSaveFileName(this, request)) {
        createProject(choice->fileName);
    }
}

void TKestrumM::OpenProjectClick()
{
    ui::Dialogs::FileRequest request;
    request.caption = QStringLiteral("Open project");
    request.filters = kProjectFilters;
    if (const QString last = m_settings->lastProject(); !last.isEmpty()) {
        request.directory = QFileInfo(last).absolutePath();
    }
    if (const auto choice = ui::dialogs().getOpenFileName(this, request)) {
        openProject(choice->fileName);
    }
}

void TKestrumM::CloseProjectClick()
{
    closeProject();
}

// ---- page display ------------------------------------------------------------------------------

void TKestrumM::ShowNode()
{
    guarded([&] { m_display->ShowNode(); });
}

void TKestrumM::ExportPageClick()
{
    const OutlineNode* node = m_data->isOpen() ? m_data->outline().selected() : nullptr;
    const exports::CorePageKind* kind =
        node ? exports::coreKind(store::editorKindFor(node->imageIndex())) : nullptr;
    if (!node || node->data() <= 0 || !kind || kind->exports.formats.empty()) {
        ui::dialogs().information(this, QStringLiteral("This item cannot be exported."));
        return;
    }
    guarded([&]() -> Status {
        m_display->SaveModif(); // the page as shown is what is exported
        ui::Dialogs::FileRequest request;
        request.caption = QStringLiteral("Export page");
        request.fileName = node->caption();
        for (const exports::PageFormat& format : kind->exports.formats) {
            QStringList patterns;
            for (const QString& ext : format.extensions) {
                patterns << QStringLiteral("*.") + ext;
            }
            request.filters << QStringLiteral("%1 (%2)").arg(format.description,
                                                             patterns.join(QLatin1Char(' ')));
        }
        const auto choice = ui::dialogs().getSaveFileName(this, request);
        if (!choice) {
            return {};
        }
        QString fileName = choice->fileName;
        const int index = std::clamp(choice->filterIndex, 1, int(kind->exports.formats.size()));
        const exports::PageFormat& chosen = kind->exports.formats[std::size_t(index - 1)];
        if (!chosen.extensions.contains(QFileInfo(fileName).suffix().toLower())) {
            fileName += QLatin1Char('.') + chosen.extensions.front();
        }
        const Result<std::optional<store::StoredPage>> read = m_data->readPage(node->data());
        if (!read.ok()) {
            return fail(read.error());
        }
        const std::optional<store::StoredPage>& stored = *read;
        if (!stored) {
            ui::dialogs().warning(this, QStringLiteral("The page cannot be found."));
            return {};
        }
        ui::WaitCursor wait;
        const Status written = exports::exportPage(
            {stored->pageId, stored->type, stored->content, stored->info}, fileName);
        if (!written) {
            ui::dialogs().warning(
                this, QStringLiteral("Cannot export the page: %1").arg(written.error()));
        } else {
            statusBar()->showMessage(QStringLiteral("Exported to %1").arg(fileName), 5000);
        }
        return {};
    });
}

void TKestrumM::CheckButtons()
{
    const OutlineNode* selected = m_data->isOpen() ? m_data->outline().selected() : nullptr;
    store::OutlineButtons b = store::OutlineCommands::buttonsFor(selected);
    if (m_data->isReadOnly()) {
        b.deleteNode = b.demote = b.up = b.promote = b.down = false;
    }
    findChild<QAction*>(QStringLiteral("DeleteNodebtn"))->setEnabled(b.deleteNode);
    findChild<QAction*>(QStringLiteral("RightBtn"))->setEnabled(b.demote);
    findChild<QAction*>(QStringLiteral("UpBtn"))->setEnabled(b.up);
    findChild<QAction*>(QStringLiteral("LeftBtn"))->setEnabled(b.promote);
    findChild<QAction*>(QStringLiteral("DnBtn"))->setEnabled(b.down);
    if (b.position >= 0) {
        m_position->setText(QStringLiteral("%1/%2").arg(b.position + 1).arg(b.siblings));
    }
}

// ---- outline commands --------------------------------------------------------------------------

void TKestrumM::NodeNewClick()
{
    if (!m_data->isOpen()) {
        return;
    }
    guarded([&]() -> Status {
        m_display->SaveModif();
        store::OutlineModel& outline = m_data->outline();
        if (!outline.selected()) {
            outline.setSelected(outline.root());
        }
        OutlineNode* selected = outline.selected();
        TRMNewNoteDlg dialog(selected == outline.root(), this);
        if (ui::dialogs().exec(&dialog) != QDialog::Accepted) {
            return m_data->SaveTree(); // written in every case
        }
        const Result<OutlineNode*> node =
            m_commands->newItem(selected, {dialog.folder(), dialog.after(), dialog.title()});
        if (!node) {
            return fail(node.error());
        }
        m_display->clearComment();
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        if (*node) {
            m_display->ShowNode();
        }
        return {};
    });
}

void TKestrumM::NodeImportClick()
{
    if (!m_data->isOpen()) {
        return;
    }
    guarded([&]() -> Status {
        m_display->SaveModif();
        ui::Dialogs::FileRequest request;
        request.caption = QStringLiteral("Import files");
        request.filters = kImportFilters;
        const auto files = ui::dialogs().getOpenFileNames(this, request);
        if (!files || files->isEmpty()) {
            return {};
        }
        m_display->clearComment();
        store::OutlineModel& outline = m_data->outline();
        OutlineNode* parent = outline.selected() ? outline.selected() : outline.root();
        for (qsizetype i = 0; i < files->size(); ++i) {
            const Result<OutlineNode*> appended = m_data->AppendFile(files->at(i), parent, true);
            if (!appended) {
                return fail(appended.error());
            }
            OutlineNode* node = *appended;
            if (node && m_data->lastImportUnsaved()) {
                // The page is left modified so that leaving it stores the import; when more
                // files follow into the same editor it is stored at once.
                if (i + 1 < files->size()) {
                    const Result<bool> stored =
                        m_data->writePageContent(node->data(), m_data->unsavedImport());
                    if (!stored.ok()) {
                        return fail(stored.error());
                    }
                } else if (ui::EditorPanel* panel =
                               m_editors->panel(store::editorKindFor(node->imageIndex()))) {
                    // The kind wrote these bytes from the file it just read: they read back.
                    static_cast<void>(panel->document().readContent(m_data->unsavedImport()));
                    m_display->setContentModified(true);
                }
            }
        }
        m_display->ShowNode();
        return {};
    });
}

void TKestrumM::NodeDeleteClick()
{
    OutlineNode* selected = m_data->isOpen() ? m_data->outline().selected() : nullptr;
    if (!selected || !selected->parent()) {
        return;
    }
    if (!ui::dialogs().askYesNo(this, QStringLiteral("Kestrum"),
                                QStringLiteral("Are you sure you want to delete item: ") +
                                    selected->caption())) {
        return;
    }
    guarded([&]() -> Status {
        // Nothing of the pages being deleted is written back.
        m_display->setCommentModified(false);
        m_display->setContentModified(false);
        if (Status deleted = m_commands->deleteItem(selected); !deleted) {
            return deleted;
        }
        m_display->ShowNode();
        return {};
    });
}

void TKestrumM::NodeRenameClick()
{
    OutlineNode* selected = m_data->isOpen() ? m_data->outline().selected() : nullptr;
    if (!selected) {
        return;
    }
    guarded([&]() -> Status {
        m_display->SaveModif();
        if (const auto title =
                ui::dialogs().getText(this, QStringLiteral("Edit title"),
                                      QStringLiteral("Type the new title"), selected->caption())) {
            return m_commands->rename(selected, *title);
        }
        return {};
    });
}

void TKestrumM::colourSelected(std::optional<qint32> colour)
{
    OutlineNode* selected = m_data->isOpen() ? m_data->outline().selected() : nullptr;
    if (selected) {
        guarded([&] { return m_commands->setColour(selected, colour); });
    }
}

void TKestrumM::White1Click()
{
    colourSelected(std::nullopt);
}

void TKestrumM::Yellow1Click()
{
    colourSelected(0x00FFFF);
}

void TKestrumM::Red1Click()
{
    colourSelected(0x0000FF);
}

void TKestrumM::Green1Click()
{
    colourSelected(0x00FF00);
}

void TKestrumM::Blue1Click()
{
    colourSelected(0xFFFF00); // shows as aqua, as the outline has always marked "Blue"
}

void TKestrumM::Custom1Click()
{
    const OutlineNode* selected = m_data->isOpen() ? m_data->outline().selected() : nullptr;
    if (!selected) {
        return;
    }
    QColor initial = Qt::black;
    if (!selected->fields().usesTreeColours) {
        initial = common::toQColor(selected->fields().textColor);
    }
    if (const auto colour =
            ui::dialogs().getColour(this, initial, QStringLiteral("Change color"))) {
        colourSelected(common::fromQColor(*colour));
    }
}

void TKestrumM::NodeExpandClick()
{
    m_tree->expandAll();
    m_data->outline().setAllExpanded(true);
}

void TKestrumM::NodeCollapseClick()
{
    m_tree->collapseAll();
    m_data->outline().setAllExpanded(false);
}

void TKestrumM::afterOutlineMove()
{
    syncSelectionToView(m_data->outline().selected());
    CheckButtons();
}

void TKestrumM::UpBtnClick()
{
    OutlineNode* selected = m_data->isOpen() ? m_data->outline().selected() : nullptr;
    guarded([&]() -> Status {
        const Result<bool> moved = m_commands->moveUp(selected);
        if (moved.ok() && *moved) {
            afterOutlineMove();
        }
        return moved.ok() ? Status() : fail(moved.error());
    });
}

void TKestrumM::DnBtnClick()
{
    OutlineNode* selected = m_data->isOpen() ? m_data->outline().selected() : nullptr;
    guarded([&]() -> Status {
        const Result<bool> moved = m_commands->moveDown(selected);
        if (moved.ok() && *moved) {
            afterOutlineMove();
        }
        return moved.ok() ? Status() : fail(moved.error());
    });
}

void TKestrumM::LeftBtnClick()
{
    OutlineNode* selected = m_data->isOpen() ? m_data->outline().selected() : nullptr;
    guarded([&]() -> Status {
        const Result<bool> moved = m_commands->promote(selected);
        if (moved.ok() && *moved) {
            afterOutlineMove();
        }
        return moved.ok() ? Status() : fail(moved.error());
    });
}

void TKestrumM::RightBtnClick()
{
    OutlineNode* selected = m_data->isOpen() ? m_data->outline().selected() : nullptr;
    guarded([&]() -> Status {
        const Result<bool> moved = m_commands->demote(selected);
        if (moved.ok() && *moved) {
            afterOutlineMove();
        }
        return moved.ok() ? Status() : fail(moved.error());
    });
}

void TKestrumM::Nodes1Click()
{
    NodeOrderClick();
}

void TKestrumM::NodeOrderClick()
{
    auto copy = [this](const char* item, const char* button) {
        findChild<QAction*>(QLatin1String(item))
            ->setEnabled(findChild<QAction*>(QLatin1String(button))->isEnabled());
    };
    copy("MoveUp1", "UpBtn");
    copy("MoveDown1", "DnBtn");
    copy("Promote1", "LeftBtn");
    copy("Demote1", "RightBtn");
    const OutlineNode* selected = m_data->isOpen() ? m_data->outline().selected() : nullptr;
    findChild<QAction*>(QStringLiteral("NodeDelete"))->setEnabled(selected && selected->parent());
}

void TKestrumM::MoveToSupClick()
{
    if (!m_data->isOpen() || !m_data->outline().selected()) {
        return;
    }
    guarded([&]() -> Status {
        m_display->SaveModif(); // the kept copy holds what is on screen
        if (const Result<int> kept = m_data->MoveToSup(); !kept) {
            return fail(kept.error());
        }
        ui::dialogs().notice(this, QStringLiteral("Saved!"), 500);
        return {};
    });
}

void TKestrumM::MainTreeDragDrop(OutlineNode* dragged, OutlineNode* target, bool ctrl)
{
    if (!m_data->isOpen()) {
        return;
    }
    guarded([&]() -> Status {
        const OutlineNode* shown = m_data->outline().nodeAt(m_data->currentNodeIndex());
        const Result<bool> dropped = m_commands->drop(dragged, target, ctrl);
        afterOutlineMove();
        if (m_data->outline().selected() != shown) {
            m_display->ShowNode();
        }
        return dropped.ok() ? Status() : fail(dropped.error());
    });
}

void TKestrumM::Timer1Timer()
{
    // Not while a command or a dialog is under way: the outline must not change beneath it.
    if (!m_data->isOpen() || m_inCommand || QApplication::activeModalWidget()) {
        return;
    }
    const Result<bool> taken = m_data->pollHandOff();
    if (!taken.ok()) {
        statusBar()->showMessage(taken.error(), 10000);
    } else if (*taken && m_data->restoredSelectionIndex() > -1) {
        const int restored = m_data->restoredSelectionIndex();
        if (!m_data->outline().selectIndex(restored + 1)) {
            m_data->outline().selectIndex(restored);
        }
        ShowNode();
    }
}

void TKestrumM::Find1Click()
{
    if (ui::EditorPanel* panel = m_editors->visiblePanel(); panel && panel->canFind()) {
        panel->find();
    }
}

void TKestrumM::Replace1Click()
{
    if (ui::EditorPanel* panel = m_editors->visiblePanel(); panel && panel->canFind()) {
        panel->replace();
    }
}

void TKestrumM::closeEvent(QCloseEvent* event)
{
    m_timer->stop();
    saveLayout();
    guarded([&] { m_data->CloseFile(); });
    event->accept();
}

} // namespace kestrum::app
