#include "MainMenus.h"

#include "app/Icons.h"
#include "app/TKestrumM.h"
#include "ui/Dialogs.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

namespace kestrum::app {

MainMenus MainMenus::build(TKestrumM* window, QMenuBar* menuBar, QToolBar* outlineBar,
                           QWidget* outline)
{
    MainMenus out;
    auto makeAction = [window](const QString& objectName, const QString& caption, const char* icon,
                               void (TKestrumM::*handler)()) {
        auto* action = new QAction(caption, window);
        action->setObjectName(objectName);
        if (icon) {
            action->setIcon(Icons::command(icon));
        }
        QObject::connect(action, &QAction::triggered, window, handler);
        return action;
    };

    // ---- File
    out.fileMenu = menuBar->addMenu(QStringLiteral("&File"));
    out.fileMenu->setObjectName(QStringLiteral("File1"));
    QAction* newProject =
        makeAction(QStringLiteral("NewProject"), QStringLiteral("&New project..."), "newproject",
                   &TKestrumM::NewProjectClick);
    newProject->setShortcut(QKeySequence::New);
    QAction* openProject =
        makeAction(QStringLiteral("OpenProject"), QStringLiteral("&Open project..."), "open",
                   &TKestrumM::OpenProjectClick);
    openProject->setShortcut(QKeySequence::Open);
    QAction* closeProject = makeAction(QStringLiteral("CloseProject"), QStringLiteral("&Close"),
                                       nullptr, &TKestrumM::CloseProjectClick);
    out.projectActions << closeProject;
    out.fileMenu->addAction(newProject);
    out.fileMenu->addAction(openProject);
    out.fileMenu->addAction(closeProject);
    out.fileMenu->addSeparator();
    QAction* exportPage =
        makeAction(QStringLiteral("ExportPage"), QStringLiteral("&Export page..."), nullptr,
                   &TKestrumM::ExportPageClick);
    out.projectActions << exportPage;
    out.fileMenu->addAction(exportPage);
    out.fileMenu->addSeparator();
    out.fileMenu->addSeparator()->setObjectName(QStringLiteral("RecentEnd"));
    QAction* exit = new QAction(QStringLiteral("E&xit"), window);
    exit->setObjectName(QStringLiteral("Exit1"));
    exit->setShortcut(QKeySequence::Quit);
    QObject::connect(exit, &QAction::triggered, window, &QWidget::close);
    out.fileMenu->addAction(exit);

    // ---- Edit: find and replace within the page
    QMenu* edit = menuBar->addMenu(QStringLiteral("&Edit"));
    edit->setObjectName(QStringLiteral("Edit1"));
    QAction* find = makeAction(QStringLiteral("Find1"), QStringLiteral("&Find..."), nullptr,
                               &TKestrumM::Find1Click);
    QAction* replace = makeAction(QStringLiteral("Replace1"), QStringLiteral("&Replace..."),
                                  nullptr, &TKestrumM::Replace1Click);
    edit->addAction(find);
    edit->addAction(replace);

    // ---- Items
    QAction* nodeNew = makeAction(QStringLiteral("NodeNew"), QStringLiteral("New..."), "new",
                                  &TKestrumM::NodeNewClick);
    nodeNew->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Insert));
    QAction* nodeImport =
        makeAction(QStringLiteral("NodeImport"), QStringLiteral("Import files..."), "import",
                   &TKestrumM::NodeImportClick);
    QAction* nodeDelete = makeAction(QStringLiteral("NodeDelete"), QStringLiteral("Delete"),
                                     "delete", &TKestrumM::NodeDeleteClick);
    QAction* nodeRename = makeAction(QStringLiteral("NodeRename"), QStringLiteral("Rename..."),
                                     "rename", &TKestrumM::NodeRenameClick);
    nodeRename->setShortcut(QKeySequence(Qt::Key_F2));
    // F2 renames while the outline has the focus; in a page editor the editor's F2 wins.
    nodeRename->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    outline->addAction(nodeRename);
    auto* colourMenu = new QMenu(QStringLiteral("Change color"), window);
    colourMenu->setObjectName(QStringLiteral("ChangeColor1"));
    colourMenu->setIcon(Icons::command("colour"));
    colourMenu->addAction(makeAction(QStringLiteral("White1"), QStringLiteral("White"), nullptr,
                                     &TKestrumM::White1Click));
    colourMenu->addAction(makeAction(QStringLiteral("Yellow1"), QStringLiteral("Yellow"), nullptr,
                                     &TKestrumM::Yellow1Click));
    colourMenu->addAction(
        makeAction(QStringLiteral("Red1"), QStringLiteral("Red"), nullptr, &TKestrumM::Red1Click));
    colourMenu->addAction(makeAction(QStringLiteral("Green1"), QStringLiteral("Green"), nullptr,
                                     &TKestrumM::Green1Click));
    colourMenu->addAction(makeAction(QStringLiteral("Blue1"), QStringLiteral("Blue"), nullptr,
                                     &TKestrumM::Blue1Click));
    colourMenu->addAction(makeAction(QStringLiteral("Custom1"), QStringLiteral("Custom..."),
                                     nullptr, &TKestrumM::Custom1Click));
    QAction* expand = makeAction(QStringLiteral("NodeExpand"), QStringLiteral("Expand all"),
                                 "expand", &TKestrumM::NodeExpandClick);
    QAction* collapse = makeAction(QStringLiteral("NodeCollapse"), QStringLiteral("Colapse all"),
                                   "collapse", &TKestrumM::NodeCollapseClick);
    QAction* collapseContext =
        makeAction(QStringLiteral("NodeCollapse2"), QStringLiteral("Collapse all"), "collapse",
                   &TKestrumM::NodeCollapseClick);
    QAction* moveUp = makeAction(QStringLiteral("MoveUp1"), QStringLiteral("Move up"), "up",
                                 &TKestrumM::UpBtnClick);
    QAction* moveDown = makeAction(QStringLiteral("MoveDown1"), QStringLiteral("Move down"), "down",
                                   &TKestrumM::DnBtnClick);
    QAction* promote = makeAction(QStringLiteral("Promote1"), QStringLiteral("Promote"), "promote",
                                  &TKestrumM::LeftBtnClick);
    QAction* demote = makeAction(QStringLiteral("Demote1"), QStringLiteral("Demote"), "demote",
                                 &TKestrumM::RightBtnClick);
    QAction* keep =
        makeAction(QStringLiteral("KeepSelected1"), QStringLiteral("Keep selected item"), "keep",
                   &TKestrumM::MoveToSupClick);
    QAction* properties = new QAction(QStringLiteral("Properties..."), window);
    properties->setObjectName(QStringLiteral("Properties1"));
    properties->setEnabled(false);
    properties->setVisible(false);
    QAction* order = makeAction(QStringLiteral("Order1"), QStringLiteral("Order"), nullptr,
                                &TKestrumM::NodeOrderClick);
    order->setVisible(false);

    out.itemsMenu = menuBar->addMenu(QStringLiteral("&Items"));
    out.itemsMenu->setObjectName(QStringLiteral("Nodes1"));
    QObject::connect(out.itemsMenu, &QMenu::aboutToShow, window, &TKestrumM::Nodes1Click);
    out.contextMenu = new QMenu(window);
    out.contextMenu->setObjectName(QStringLiteral("PopupMenu1"));
    for (QMenu* menu : {out.itemsMenu, out.contextMenu}) {
        const bool context = menu == out.contextMenu;
        menu->addAction(nodeNew);
        menu->addAction(nodeImport);
        menu->addSeparator();
        menu->addAction(nodeDelete);
        menu->addAction(nodeRename);
        menu->addMenu(colourMenu);
        menu->addSeparator();
        menu->addAction(expand);
        menu->addAction(context ? collapseContext : collapse);
        menu->addSeparator();
        menu->addAction(moveUp);
        menu->addAction(moveDown);
        menu->addAction(promote);
        menu->addAction(demote);
        menu->addSeparator();
        menu->addAction(keep);
        if (!context) {
            menu->addAction(properties);
            menu->addAction(order);
        }
    }
    out.projectActions << nodeNew << nodeImport << nodeDelete << nodeRename
                       << colourMenu->menuAction() << expand << collapse << collapseContext
                       << moveUp << moveDown << promote << demote << keep;
    out.changeActions << nodeNew << nodeImport << nodeDelete << nodeRename
                      << colourMenu->menuAction() << moveUp << moveDown << promote << demote
                      << keep;

    // ---- Help
    QMenu* help = menuBar->addMenu(QStringLiteral("&Help"));
    help->menuAction()->setObjectName(QStringLiteral("HelpMenu"));
    QAction* about = new QAction(QStringLiteral("About Kestrum"), window);
    QObject::connect(about, &QAction::triggered, window, [window] {
        ui::dialogs().information(window,
                                  QStringLiteral("Kestrum %1\nOrganiser of analysis reports.")
                                      .arg(QStringLiteral(KESTRUM_VERSION)));
    });
    help->addAction(about);

    // ---- the outline toolbar
    outlineBar->addAction(nodeNew);
    outlineBar->addAction(nodeImport);
    outlineBar->addSeparator();
    QAction* deleteBtn = makeAction(QStringLiteral("DeleteNodebtn"), QStringLiteral("Delete"),
                                    "delete", &TKestrumM::NodeDeleteClick);
    QAction* upBtn = makeAction(QStringLiteral("UpBtn"), QStringLiteral("Move up"), "up",
                                &TKestrumM::UpBtnClick);
    QAction* dnBtn = makeAction(QStringLiteral("DnBtn"), QStringLiteral("Move down"), "down",
                                &TKestrumM::DnBtnClick);
    QAction* leftBtn = makeAction(QStringLiteral("LeftBtn"), QStringLiteral("Promote"), "promote",
                                  &TKestrumM::LeftBtnClick);
    QAction* rightBtn = makeAction(QStringLiteral("RightBtn"), QStringLiteral("Demote"), "demote",
                                   &TKestrumM::RightBtnClick);
    for (QAction* a : {deleteBtn, upBtn, dnBtn, leftBtn, rightBtn}) {
        a->setEnabled(false);
        outlineBar->addAction(a);
    }
    outlineBar->addSeparator();
    outlineBar->addAction(keep);
    return out;
}

} // namespace kestrum::app
