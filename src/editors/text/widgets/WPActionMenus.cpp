#include "WPActionMenus.h"

#include <QAction>
#include <QMenu>
#include <QToolBar>

namespace kestrum::text {

QMenu* WPActionMenus::fillPopup(QMenu* popup, const Lookup& a)
{
    popup->addAction(a("WPCut"));
    popup->addAction(a("WPCopy"));
    popup->addAction(a("WPPaste"));
    popup->addSeparator();
    popup->addAction(a("WPFind"));
    popup->addAction(a("WPReplace"));
    popup->addSeparator();
    popup->addAction(a("WPFont"));
    popup->addAction(a("WPParagraph"));
    popup->addAction(a("WPBorders"));
    popup->addAction(a("WPTabStops"));
    popup->addAction(a("WPBullets"));
    QMenu* tableMenu = popup->addMenu(QStringLiteral("Table"));
    tableMenu->setObjectName(QStringLiteral("MemoPopup2Table"));
    tableMenu->setProperty(kEnglish, QStringLiteral("Table"));
    tableMenu->addAction(a("WPCreateTable"));
    tableMenu->addSeparator();
    for (const char* name : {"WPInsertRow", "WPInsertColumn", "WPDeleteRow", "WPDeleteColumn",
                             "WPSelectRow", "WPSelectColumn"}) {
        tableMenu->addAction(a(name));
    }
    return tableMenu;
}

void WPActionMenus::fillToolBar(QToolBar* toolBar, const Lookup& a, QWidget* fontColour,
                                QWidget* backColour)
{
    toolBar->addAction(a("WPUndo"));
    toolBar->addAction(a("WPRedo"));
    toolBar->addSeparator();
    toolBar->addAction(a("WPCut"));
    toolBar->addAction(a("WPCopy"));
    toolBar->addAction(a("WPPaste"));
    toolBar->addSeparator();
    toolBar->addAction(a("WPBold"));
    toolBar->addAction(a("WPItalic"));
    toolBar->addAction(a("WPUnderline"));
    toolBar->addSeparator();
    toolBar->addWidget(fontColour);
    toolBar->addWidget(backColour);
    toolBar->addSeparator();
    toolBar->addAction(a("WPAlignLeft"));
    toolBar->addAction(a("WPAlignCenter"));
    toolBar->addAction(a("WPAlignRight"));
    toolBar->addAction(a("WPAlignJustify"));
    toolBar->addSeparator();
    toolBar->addAction(a("WPBulletList"));
    toolBar->addAction(a("WPNumberList"));
    toolBar->addAction(a("WPPriorLevel"));
    toolBar->addAction(a("WPNextLevel"));
    toolBar->addSeparator();
    toolBar->addAction(a("WPCreateTable"));
    toolBar->addAction(a("WPPrint"));
}

QList<QMenu*> WPActionMenus::fillMenu(QMenu* menu, const Lookup& a)
{
    QList<QMenu*> made;
    auto sub = [menu, &made](const char* title) {
        QMenu* m = menu->addMenu(QString::fromUtf8(title));
        m->setProperty(kEnglish, QString::fromUtf8(title));
        made << m;
        return m;
    };
    for (const char* name : {"WPNew", "WPOpen", "WPSave"}) {
        menu->addAction(a(name));
    }
    menu->addSeparator();
    menu->addAction(a("WPImport"));
    menu->addAction(a("WPExport"));
    menu->addSeparator();
    menu->addAction(a("WPUndo"));
    menu->addAction(a("WPRedo"));
    menu->addSeparator();
    for (const char* name : {"WPCut", "WPCopy", "WPPaste", "WPDeleteText", "WPSelectAll"}) {
        menu->addAction(a(name));
    }
    menu->addSeparator();
    menu->addAction(a("WPFind"));
    menu->addAction(a("WPReplace"));
    menu->addSeparator();
    for (const char* name :
         {"WPFont", "WPParagraph", "WPBullets", "WPTabStops", "WPBorders", "WPPageSetup"}) {
        menu->addAction(a(name));
    }
    QMenu* style = sub("Character");
    for (const char* name :
         {"WPBold", "WPItalic", "WPUnderline", "WPStrikeOut", "WPSubscript", "WPSuperscript"}) {
        style->addAction(a(name));
    }
    QMenu* alignment = sub("Alignment");
    for (const char* name : {"WPAlignLeft", "WPAlignCenter", "WPAlignRight", "WPAlignJustify"}) {
        alignment->addAction(a(name));
    }
    QMenu* lists = sub("Lists");
    for (const char* name : {"WPBulletList", "WPNumberList", "WPPriorLevel", "WPNextLevel"}) {
        lists->addAction(a(name));
    }
    QMenu* table = sub("Table");
    table->addAction(a("WPCreateTable"));
    table->addSeparator();
    for (const char* name : {"WPInsertRow", "WPInsertColumn", "WPDeleteRow", "WPDeleteColumn",
                             "WPSelectRow", "WPSelectColumn"}) {
        table->addAction(a(name));
    }
    QMenu* borders = sub("Cell and paragraph borders");
    for (const char* name : {"WPTopBorders", "WPBottomBorders", "WPLeftBorders", "WPRightBorders",
                             "WPBordersOn", "WPBordersOff"}) {
        borders->addAction(a(name));
    }
    menu->addSeparator();
    menu->addAction(a("WPPrint"));
    menu->addAction(a("WPPrinterSetup"));
    return made;
}

} // namespace kestrum::text
