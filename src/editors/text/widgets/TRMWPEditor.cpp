#include "TRMWPEditor.h"
#include "ui/WaitCursor.h"

#include "editors/text/ColourTable.h"
#include "editors/text/TextEditCommands.h"
#include "editors/text/TextExporter.h"
#include "editors/text/TextPageDocument.h"
#include "editors/text/TextProperties.h"
#include "editors/text/widgets/WPBordersDialog.h"
#include "editors/text/widgets/WPBulletsDialog.h"
#include "editors/text/widgets/WPFindDialog.h"
#include "editors/text/widgets/WPIcons.h"
#include "editors/text/widgets/WPPageSetupDialog.h"
#include "editors/text/widgets/WPParagraphDialog.h"
#include "editors/text/widgets/WPRuler.h"
#include "editors/text/widgets/WPTabStopsDialog.h"
#include "editors/text/widgets/WPTableDialog.h"
#include "editors/text/widgets/WPView.h"
#include "ui/ColourSelector.h"
#include "ui/Dialogs.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QCoreApplication>
#include <QFileInfo>
#include <QFontComboBox>
#include <QGuiApplication>
#include <QMenu>
#include <QPrinter>
#include <QPrinterInfo>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QToolBar>
#include <QVBoxLayout>

namespace kestrum::text {

namespace {

using ui::WaitCursor;

constexpr const char* kEnglish = "kestrumEnglishCaption";

const QStringList& importFilters()
{
    static const QStringList filters = {
        QStringLiteral("Rich Text Format (*.rtf)"),
        QStringLiteral("HTML (*.htm *.html)"),
        QStringLiteral("Plain text (*.txt)"),
        QStringLiteral("Word processor documents (*.doc *.docx *.odt *.wpd)"),
        QStringLiteral("All files (*)"),
    };
    return filters;
}

struct ExportFilter
{
    const char* label;
    const char* suffix;
    TextExporter::Format format;
};

constexpr ExportFilter kExportFilters[] = {
    {"Rich Text Format (*.rtf)", "rtf", TextExporter::Format::Rtf},
    {"HTML (*.htm *.html)", "html", TextExporter::Format::Html},
    {"Plain text (*.txt)", "txt", TextExporter::Format::PlainText},
    {"OpenDocument Text (*.odt)", "odt", TextExporter::Format::Odt},
};

} // namespace

TRMWPEditor::TRMWPEditor(QWidget* parent)
    : ui::EditorPanel(parent), m_document(new TextPageDocument(this)), m_view(new WPView(this)),
      m_ruler(new WPRuler(m_view, this)), m_toolBar(new QToolBar(this)),
      m_fontName(new QFontComboBox(this)), m_fontSize(new QComboBox(this)),
      m_panel1(new QWidget(this)), m_actionList(new QObject(this)), m_popup(new QMenu(this)),
      m_tableMenu(nullptr),
      m_fontColour(new ui::ColourSelector(ui::ColourSelector::Kind::Text,
                                          QStringLiteral("Font colour"), this)),
      m_backColour(new ui::ColourSelector(ui::ColourSelector::Kind::Background,
                                          QStringLiteral("Background colour"), this))
{
    setObjectName(QStringLiteral("TRMWPEditor"));
    m_actionList->setObjectName(QStringLiteral("ActionList1"));
    m_popup->setObjectName(QStringLiteral("MemoPopup2"));
    m_panel1->setObjectName(QStringLiteral("Panel1"));
    m_panel1->hide();
    m_toolBar->setObjectName(QStringLiteral("WPToolBar1"));
    m_fontName->setObjectName(QStringLiteral("WPFontName"));
    m_fontSize->setObjectName(QStringLiteral("WPFontSize"));
    m_fontColour->setObjectName(QStringLiteral("WPFontColor"));
    m_backColour->setObjectName(QStringLiteral("WPBackGroundColor"));
    m_fontColour->setProperty(kEnglish, QStringLiteral("Font colour"));
    m_backColour->setProperty(kEnglish, QStringLiteral("Background colour"));

    m_view->setPageDocument(m_document);

    // The font toolbar: font name and size only; enabled with the editor.
    m_fontSize->setEditable(true);
    for (int size : {6, 7, 8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 28, 32, 36, 48, 72}) {
        m_fontSize->addItem(QString::number(size));
    }
    m_fontSize->setMinimumContentsLength(3);
    m_toolBar->addWidget(m_fontName);
    m_toolBar->addWidget(m_fontSize);
    m_toolBar->setIconSize(QSize(16, 16));
    m_toolBar->setEnabled(false);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_panel1);
    layout->addWidget(m_toolBar);
    layout->addWidget(m_ruler);
    layout->addWidget(m_view, 1);

    createActions();
    createMenus();

    connect(m_fontName, &QFontComboBox::currentFontChanged, this, [this](const QFont& font) {
        if (m_updatingFormat) {
            return;
        }
        QTextCharFormat format;
        format.setFontFamilies({font.family()});
        mergeFormat(format);
        m_view->setFocus();
    });
    connect(m_fontSize, &QComboBox::textActivated, this, [this](const QString& text) {
        bool ok = false;
        const double size = text.toDouble(&ok);
        if (ok && size >= 1 && size <= 1638) {
            QTextCharFormat format;
            format.setFontPointSize(size);
            mergeFormat(format);
            m_view->setFocus();
        }
    });
    connect(m_fontColour, &ui::ColourSelector::colourSelected, this,
            &TRMWPEditor::WPFontColorSelectColor);
    connect(m_backColour, &ui::ColourSelector::colourSelected, this,
            &TRMWPEditor::WPBackGroundColorSelectColor);
    connect(m_view, &QTextEdit::currentCharFormatChanged, this, [this] {
        WPViewCharacterAttrChange();
        updateFormatActions();
    });
    connect(m_view, &QTextEdit::cursorPositionChanged, this, [this] {
        updateFormatActions();
        updateEditActions();
    });
    connect(m_view, &QTextEdit::copyAvailable, this, [this] { updateEditActions(); });
    connect(m_view->document(), &QTextDocument::undoAvailable,
            m_actions.value(QStringLiteral("WPUndo")), &QAction::setEnabled);
    connect(m_view->document(), &QTextDocument::redoAvailable,
            m_actions.value(QStringLiteral("WPRedo")), &QAction::setEnabled);
    if (QClipboard* clipboard = QGuiApplication::clipboard()) {
        connect(clipboard, &QClipboard::dataChanged, this, [this] { updateEditActions(); });
    }
    connect(m_document, &TextPageDocument::loaded, this, [this] {
        updateFormatActions();
        updateEditActions();
        WPViewCharacterAttrChange();
    });
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_view, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& pos) { m_popup->popup(m_view->viewport()->mapToGlobal(pos)); });

    updateFormatActions();
    updateEditActions();
    WPViewCharacterAttrChange();
}

TRMWPEditor::~TRMWPEditor() = default;

store::PageDocument& TRMWPEditor::document()
{
    return *m_document;
}

// ---- actions -----------------------------------------------------------------------------------

template <typename Slot>
QAction* TRMWPEditor::makeAction(const char* name, const char* caption, Slot slot,
                                 const QKeySequence& shortcut, const QString& icon, bool checkable)
{
    auto* action = new QAction(QString::fromUtf8(caption), m_actionList);
    action->setObjectName(QLatin1String(name));
    action->setProperty(kEnglish, QString::fromUtf8(caption));
    QString hint = QString::fromUtf8(caption);
    hint.remove(QStringLiteral("..."));
    action->setToolTip(hint);
    action->setStatusTip(hint);
    if (!shortcut.isEmpty()) {
        action->setShortcut(shortcut);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        addAction(action);
    }
    if (!icon.isEmpty()) {
        action->setIcon(WPIcons::icon(icon));
    }
    action->setCheckable(checkable);
    connect(action, &QAction::triggered, this, slot);
    connect(action, &QAction::enabledChanged, this, &TRMWPEditor::actionsStateChanged);
    m_actions.insert(action->objectName(), action);
    return action;
}

void TRMWPEditor::createActions()
{
    makeAction("WPImport", "Import...", &TRMWPEditor::importFile);
    makeAction("WPExport", "Export...", &TRMWPEditor::exportFile);
    makeAction("WPFont", "Fonts...", &TRMWPEditor::chooseFont);
    makeAction("WPParagraph", "Paragraphs...", &TRMWPEditor::paragraphDialog);
    makeAction("WPBullets", "Bullets...", &TRMWPEditor::bulletsDialog);
    makeAction("WPTabStops", "Tab stops...", &TRMWPEditor::tabStopsDialog);
    makeAction("WPPageSetup", "Page setup", &TRMWPEditor::pageSetupDialog);
    makeAction("WPBorders", "Borders...", &TRMWPEditor::bordersDialog);

    makeAction(
        "WPUndo", "Undo", [] {}, QKeySequence::Undo, QStringLiteral("undo"));
    makeAction(
        "WPRedo", "Redo", [] {}, QKeySequence::Redo, QStringLiteral("redo"));
    makeAction(
        "WPCopy", "Copy", [] {}, QKeySequence::Copy, QStringLiteral("copy"));
    makeAction(
        "WPCut", "Cut", [] {}, QKeySequence::Cut, QStringLiteral("cut"));
    makeAction(
        "WPPaste", "Paste", [] {}, QKeySequence::Paste, QStringLiteral("paste"));
    makeAction("WPFind", "Find", &TRMWPEditor::find, QKeySequence::Find, QStringLiteral("find"));
    makeAction("WPReplace", "Replace", &TRMWPEditor::replace, QKeySequence::Replace);
    makeAction(
        "WPSelectAll", "Select All", [] {}, QKeySequence::SelectAll);
    makeAction("WPDeleteText", "Delete Text", &TRMWPEditor::deleteText);
    // The clipboard and history commands go straight to the view.
    connect(m_actions.value(QStringLiteral("WPUndo")), &QAction::triggered, m_view,
            &QTextEdit::undo);
    connect(m_actions.value(QStringLiteral("WPRedo")), &QAction::triggered, m_view,
            &QTextEdit::redo);
    connect(m_actions.value(QStringLiteral("WPCopy")), &QAction::triggered, m_view,
            &QTextEdit::copy);
    connect(m_actions.value(QStringLiteral("WPCut")), &QAction::triggered, m_view, &QTextEdit::cut);
    connect(m_actions.value(QStringLiteral("WPPaste")), &QAction::triggered, m_view,
            &QTextEdit::paste);
    connect(m_actions.value(QStringLiteral("WPSelectAll")), &QAction::triggered, m_view,
            &QTextEdit::selectAll);

    makeAction("WPAlignLeft", "Left", &TRMWPEditor::alignLeft, QKeySequence(Qt::CTRL | Qt::Key_L),
               QStringLiteral("left"), true);
    makeAction("WPAlignCenter", "Center", &TRMWPEditor::alignCenter,
               QKeySequence(Qt::CTRL | Qt::Key_E), QStringLiteral("center"), true);
    makeAction("WPAlignRight", "Right", &TRMWPEditor::alignRight,
               QKeySequence(Qt::CTRL | Qt::Key_R), QStringLiteral("right"), true);
    makeAction("WPAlignJustify", "Justified", &TRMWPEditor::alignJustify,
               QKeySequence(Qt::CTRL | Qt::Key_J), QStringLiteral("justify"), true);
    makeAction("WPBulletList", "Bullets", &TRMWPEditor::toggleBullets, {},
               QStringLiteral("bullets"), true);
    makeAction("WPNumberList", "Numbers", &TRMWPEditor::toggleNumbers, {},
               QStringLiteral("numbers"), true);
    makeAction("WPPriorLevel", "Prior Level", &TRMWPEditor::priorLevel, {},
               QStringLiteral("outdent"));
    makeAction("WPNextLevel", "Next Level", &TRMWPEditor::nextLevel, {}, QStringLiteral("indent"));

    makeAction("WPOpen", "Open", &TRMWPEditor::openFile);
    makeAction("WPSave", "Save", &TRMWPEditor::saveFile);
    makeAction("WPNew", "New", &TRMWPEditor::newDocument);

    makeAction("WPBold", "Bold", &TRMWPEditor::toggleBold, QKeySequence::Bold,
               QStringLiteral("bold"), true);
    makeAction("WPItalic", "Italic", &TRMWPEditor::toggleItalic, QKeySequence::Italic,
               QStringLiteral("italic"), true);
    makeAction("WPUnderline", "Underlined", &TRMWPEditor::toggleUnderline, QKeySequence::Underline,
               QStringLiteral("underline"), true);
    makeAction("WPStrikeOut", "Strike Out", &TRMWPEditor::toggleStrikeOut, {},
               QStringLiteral("strike"), true);
    makeAction("WPSubscript", "Subscript", &TRMWPEditor::toggleSubscript, {},
               QStringLiteral("subscript"), true);
    makeAction("WPSuperscript", "Superscript", &TRMWPEditor::toggleSuperscript, {},
               QStringLiteral("superscript"), true);

    makeAction("WPPrint", "Print", &TRMWPEditor::print, QKeySequence::Print,
               QStringLiteral("print"));
    makeAction("WPPrinterSetup", "Printer Setup", &TRMWPEditor::printerSetup);

    makeAction("WPCreateTable", "Create Table", &TRMWPEditor::createTable, {},
               QStringLiteral("table"));
    makeAction("WPInsertRow", "Insert Row", &TRMWPEditor::insertRow);
    makeAction("WPInsertColumn", "Insert Column", &TRMWPEditor::insertColumn);
    makeAction("WPDeleteRow", "Delete Row", &TRMWPEditor::deleteRow);
    makeAction("WPDeleteColumn", "Delete Column", &TRMWPEditor::deleteColumn);
    makeAction("WPSelectRow", "Select Row", &TRMWPEditor::selectRow);
    makeAction("WPSelectColumn", "Select Column", &TRMWPEditor::selectColumn);

    makeAction("WPTopBorders", "Top Borders", &TRMWPEditor::topBorders);
    makeAction("WPBottomBorders", "Bottom Borders", &TRMWPEditor::bottomBorders);
    makeAction("WPLeftBorders", "Left Borders", &TRMWPEditor::leftBorders);
    makeAction("WPRightBorders", "Right Borders", &TRMWPEditor::rightBorders);
    makeAction("WPBordersOn", "Switch Borders On", &TRMWPEditor::bordersOn);
    makeAction("WPBordersOff", "Switch Borders Off", &TRMWPEditor::bordersOff);

    auto* alignment = new QActionGroup(m_actionList);
    for (const char* name : {"WPAlignLeft", "WPAlignCenter", "WPAlignRight", "WPAlignJustify"}) {
        alignment->addAction(m_actions.value(QLatin1String(name)));
    }
}

void TRMWPEditor::createMenus()
{
    auto a = [this](const char* name) { return m_actions.value(QLatin1String(name)); };
    m_popup->addAction(a("WPCut"));
    m_popup->addAction(a("WPCopy"));
    m_popup->addAction(a("WPPaste"));
    m_popup->addSeparator();
    m_popup->addAction(a("WPFind"));
    m_popup->addAction(a("WPReplace"));
    m_popup->addSeparator();
    m_popup->addAction(a("WPFont"));
    m_popup->addAction(a("WPParagraph"));
    m_popup->addAction(a("WPBorders"));
    m_popup->addAction(a("WPTabStops"));
    m_popup->addAction(a("WPBullets"));
    m_tableMenu = m_popup->addMenu(QStringLiteral("Table"));
    m_tableMenu->setObjectName(QStringLiteral("MemoPopup2Table"));
    m_tableMenu->setProperty(kEnglish, QStringLiteral("Table"));
    m_menus << m_tableMenu;
    m_tableMenu->addAction(a("WPCreateTable"));
    m_tableMenu->addSeparator();
    for (const char* name : {"WPInsertRow", "WPInsertColumn", "WPDeleteRow", "WPDeleteColumn",
                             "WPSelectRow", "WPSelectColumn"}) {
        m_tableMenu->addAction(a(name));
    }
}

void TRMWPEditor::populateToolBar(QToolBar* toolBar)
{
    auto a = [this](const char* name) { return m_actions.value(QLatin1String(name)); };
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
    toolBar->addWidget(m_fontColour);
    toolBar->addWidget(m_backColour);
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

void TRMWPEditor::populateMenu(QMenu* menu)
{
    auto a = [this](const char* name) { return m_actions.value(QLatin1String(name)); };
    auto sub = [this, menu](const char* title) {
        QMenu* m = menu->addMenu(QString::fromUtf8(title));
        m->setProperty(kEnglish, QString::fromUtf8(title));
        m_menus << m;
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
    reloadStrings();
}

QList<QAction*> TRMWPEditor::editorActions() const
{
    return m_actionList->findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly);
}

QAction* TRMWPEditor::editorAction(const QString& name) const
{
    return m_actions.value(name);
}

// ---- state -------------------------------------------------------------------------------------

void TRMWPEditor::showEvent(QShowEvent* event)
{
    ui::EditorPanel::showEvent(event);
    // The font toolbar comes alive with the editor.
    m_toolBar->setEnabled(m_view->isEnabled());
}

void TRMWPEditor::updateFormatActions()
{
    m_updatingFormat = true;
    const QTextCharFormat format = m_view->currentCharFormat();
    auto check = [this](const char* name, bool on) {
        m_actions.value(QLatin1String(name))->setChecked(on);
    };
    check("WPBold", format.fontWeight() >= QFont::DemiBold);
    check("WPItalic", format.fontItalic());
    check("WPUnderline",
          format.fontUnderline() || format.underlineStyle() != QTextCharFormat::NoUnderline);
    check("WPStrikeOut", format.fontStrikeOut());
    check("WPSubscript", format.verticalAlignment() == QTextCharFormat::AlignSubScript);
    check("WPSuperscript", format.verticalAlignment() == QTextCharFormat::AlignSuperScript);
    const Qt::Alignment align = m_view->alignment() & Qt::AlignHorizontal_Mask;
    check("WPAlignCenter", align & Qt::AlignHCenter);
    check("WPAlignRight",
          bool(align & (Qt::AlignRight | Qt::AlignTrailing)) && !(align & Qt::AlignHCenter));
    check("WPAlignJustify", align & Qt::AlignJustify);
    check("WPAlignLeft",
          !(align & (Qt::AlignHCenter | Qt::AlignRight | Qt::AlignTrailing | Qt::AlignJustify)));
    const QTextList* list = m_view->textCursor().currentList();
    const int style = list ? int(list->format().style()) : 0;
    check("WPBulletList", list && style >= QTextListFormat::ListSquare);
    check("WPNumberList", list && style <= QTextListFormat::ListDecimal);

    const QFont font = format.font();
    QStringList families = format.property(QTextFormat::FontFamilies).toStringList();
    m_fontName->setCurrentFont(
        QFont(families.isEmpty() ? m_view->document()->defaultFont().family() : families.first()));
    const qreal size = format.fontPointSize() > 0 ? format.fontPointSize()
                                                  : m_view->document()->defaultFont().pointSizeF();
    m_fontSize->setEditText(QString::number(size));
    m_updatingFormat = false;
}

void TRMWPEditor::updateEditActions()
{
    const QTextCursor cursor = m_view->textCursor();
    const bool selection = cursor.hasSelection();
    m_actions.value(QStringLiteral("WPCopy"))->setEnabled(selection);
    m_actions.value(QStringLiteral("WPCut"))->setEnabled(selection && !m_view->isReadOnly());
    m_actions.value(QStringLiteral("WPDeleteText"))->setEnabled(selection && !m_view->isReadOnly());
    m_actions.value(QStringLiteral("WPPaste"))->setEnabled(m_view->canPaste());
    m_actions.value(QStringLiteral("WPUndo"))->setEnabled(m_view->document()->isUndoAvailable());
    m_actions.value(QStringLiteral("WPRedo"))->setEnabled(m_view->document()->isRedoAvailable());
    const bool inTable = cursor.currentTable() != nullptr;
    for (const char* name : {"WPInsertRow", "WPInsertColumn", "WPDeleteRow", "WPDeleteColumn",
                             "WPSelectRow", "WPSelectColumn"}) {
        m_actions.value(QLatin1String(name))->setEnabled(inTable);
    }
}

void TRMWPEditor::mergeFormat(const QTextCharFormat& format)
{
    QTextCursor cursor = m_view->textCursor();
    if (cursor.hasSelection()) {
        cursor.mergeCharFormat(format);
    }
    m_view->mergeCurrentCharFormat(format);
    // Without a selection only the text typed next changes; that is an edit of the page too.
    m_document->notifyChanged();
}

// ---- colours -----------------------------------------------------------------------------------

void TRMWPEditor::WPFontColorSelectColor(const QColor& colour)
{
    if (colour.isValid()) {
        mergeFormat(TextEditCommands::foregroundFormat(colour, m_document->colours()));
    }
}

void TRMWPEditor::WPBackGroundColorSelectColor(const QColor& colour)
{
    if (colour.isValid()) {
        mergeFormat(TextEditCommands::backgroundFormat(colour, m_document->colours()));
    }
}

void TRMWPEditor::WPViewCharacterAttrChange()
{
    const QTextCharFormat format = m_view->currentCharFormat();
    m_fontColour->setColour(TextEditCommands::shownForeground(format));
    m_backColour->setColour(TextEditCommands::shownBackground(format, m_document->colours()));
}

// ---- files -------------------------------------------------------------------------------------

bool TRMWPEditor::loadWithMessage(const QString& path, bool external)
{
    Status loaded;
    {
        WaitCursor wait;
        WordConverterOptions options = m_document->converterOptions();
        options.idle = [] { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); };
        m_document->setConverterOptions(options);
        loaded = external ? m_document->loadExternalFile(path) : m_document->loadFile(path);
    }
    if (!loaded) {
        ui::dialogs().warning(this, loaded.error());
        return false;
    }
    m_document->notifyChanged();
    return true;
}

bool TRMWPEditor::LoadExternalFile(const QString& fileName)
{
    return loadWithMessage(fileName, true);
}

void TRMWPEditor::importFile()
{
    ui::Dialogs::FileRequest request;
    request.caption = text("Import...");
    request.filters = importFilters();
    const auto choice = ui::dialogs().getOpenFileName(this, request);
    if (choice) {
        loadWithMessage(choice->fileName, false);
    }
}

void TRMWPEditor::openFile()
{
    ui::Dialogs::FileRequest request;
    request.caption = text("Open");
    request.filters = importFilters();
    const auto choice = ui::dialogs().getOpenFileName(this, request);
    if (choice && loadWithMessage(choice->fileName, false)) {
        m_fileName = choice->fileName;
    }
}

void TRMWPEditor::exportFile()
{
    ui::Dialogs::FileRequest request;
    request.caption = text("Export...");
    for (const ExportFilter& filter : kExportFilters) {
        request.filters << QLatin1String(filter.label);
    }
    request.defaultSuffix = QStringLiteral("rtf");
    const auto choice = ui::dialogs().getSaveFileName(this, request);
    if (!choice) {
        return;
    }
    QString path = choice->fileName;
    const int index = std::clamp(choice->filterIndex, 1, int(std::size(kExportFilters))) - 1;
    TextExporter::Format format = kExportFilters[index].format;
    if (const auto bySuffix = TextExporter::formatForSuffix(QFileInfo(path).suffix())) {
        format = *bySuffix;
    } else {
        path += QLatin1Char('.') + QLatin1String(kExportFilters[index].suffix);
    }
    WaitCursor wait;
    if (const Status written = m_document->exportFile(path, format); !written) {
        ui::dialogs().warning(this, written.error());
    }
}

void TRMWPEditor::saveFile()
{
    if (m_fileName.isEmpty()) {
        ui::Dialogs::FileRequest request;
        request.caption = text("Save");
        request.filters = {QStringLiteral("Rich Text Format (*.rtf)")};
        request.defaultSuffix = QStringLiteral("rtf");
        const auto choice = ui::dialogs().getSaveFileName(this, request);
        if (!choice) {
            return;
        }
        m_fileName = choice->fileName;
    }
    const auto format = TextExporter::formatForSuffix(QFileInfo(m_fileName).suffix())
                            .value_or(TextExporter::Format::Rtf);
    if (const Status written = m_document->exportFile(m_fileName, format); !written) {
        ui::dialogs().warning(this, written.error());
    }
}

void TRMWPEditor::newDocument()
{
    m_document->clear();
    m_fileName.clear();
    m_document->notifyChanged();
}

// ---- dialogs -----------------------------------------------------------------------------------

void TRMWPEditor::chooseFont()
{
    const QFont current = m_view->currentCharFormat().font();
    if (const auto font = ui::dialogs().getFont(this, current, text("Fonts..."))) {
        QTextCharFormat format;
        format.setFont(*font, QTextCharFormat::FontPropertiesSpecifiedOnly);
        format.setFontFamilies({font->family()});
        if (font->pointSizeF() > 0) {
            format.setFontPointSize(font->pointSizeF());
        }
        format.setFontWeight(font->weight());
        format.setFontItalic(font->italic());
        format.setFontUnderline(font->underline());
        format.setFontStrikeOut(font->strikeOut());
        mergeFormat(format);
    }
}

void TRMWPEditor::paragraphDialog()
{
    WPParagraphDialog dialog(this);
    dialog.setWindowTitle(text("Paragraphs"));
    dialog.setFormat(m_view->textCursor().blockFormat());
    if (ui::dialogs().exec(&dialog) == QDialog::Accepted) {
        m_view->textCursor().mergeBlockFormat(dialog.format());
    }
}

void TRMWPEditor::bulletsDialog()
{
    WPBulletsDialog dialog(this);
    dialog.setWindowTitle(text("Bullets and numbering"));
    const QTextList* list = m_view->textCursor().currentList();
    dialog.setListFormat(list ? std::optional<QTextListFormat>(list->format()) : std::nullopt);
    if (ui::dialogs().exec(&dialog) == QDialog::Accepted) {
        TextEditCommands(m_view->textCursor()).setList(dialog.listFormat());
    }
}

void TRMWPEditor::tabStopsDialog()
{
    WPTabStopsDialog dialog(this);
    dialog.setWindowTitle(text("Tab stops"));
    dialog.setTabs(m_view->textCursor().blockFormat().tabPositions());
    if (ui::dialogs().exec(&dialog) == QDialog::Accepted) {
        QTextBlockFormat format;
        format.setTabPositions(dialog.tabs());
        m_view->textCursor().mergeBlockFormat(format);
    }
}

void TRMWPEditor::pageSetupDialog()
{
    WPPageSetupDialog dialog(this);
    dialog.setWindowTitle(text("Page setup"));
    dialog.setPageLayout(m_document->pageLayout());
    if (ui::dialogs().exec(&dialog) == QDialog::Accepted) {
        m_document->setPageLayout(dialog.pageLayout());
    }
}

void TRMWPEditor::bordersDialog()
{
    WPBordersDialog dialog(this);
    dialog.setWindowTitle(text("Borders"));
    TextEditCommands commands(m_view->textCursor());
    const TextEditCommands::ParagraphBorder current = commands.paragraphBorder();
    WPBordersDialog::Border border;
    border.sides = current.sides;
    border.width = current.width;
    border.style = current.style;
    border.spacing = current.spacing;
    border.colour = current.colour;
    dialog.setBorder(border);
    if (ui::dialogs().exec(&dialog) != QDialog::Accepted) {
        return;
    }
    const WPBordersDialog::Border chosen = dialog.border();
    commands.setParagraphBorder(
        {chosen.sides, chosen.width, chosen.style, chosen.spacing, chosen.colour},
        m_document->colours());
    m_view->viewport()->update();
}

// ---- editing -----------------------------------------------------------------------------------

void TRMWPEditor::deleteText()
{
    QTextCursor cursor = m_view->textCursor();
    cursor.removeSelectedText();
}

void TRMWPEditor::alignLeft()
{
    m_view->setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
}

void TRMWPEditor::alignCenter()
{
    m_view->setAlignment(Qt::AlignHCenter);
}

void TRMWPEditor::alignRight()
{
    m_view->setAlignment(Qt::AlignRight | Qt::AlignAbsolute);
}

void TRMWPEditor::alignJustify()
{
    m_view->setAlignment(Qt::AlignJustify);
}

void TRMWPEditor::toggleList(int style)
{
    TextEditCommands(m_view->textCursor()).toggleList(QTextListFormat::Style(style));
    updateFormatActions();
}

void TRMWPEditor::toggleBullets()
{
    toggleList(QTextListFormat::ListDisc);
}

void TRMWPEditor::toggleNumbers()
{
    toggleList(QTextListFormat::ListDecimal);
}

void TRMWPEditor::changeLevel(int delta)
{
    TextEditCommands(m_view->textCursor()).changeLevel(delta);
}

void TRMWPEditor::priorLevel()
{
    changeLevel(-1);
}

void TRMWPEditor::nextLevel()
{
    changeLevel(1);
}

void TRMWPEditor::toggleBold()
{
    QTextCharFormat format;
    format.setFontWeight(m_actions.value(QStringLiteral("WPBold"))->isChecked() ? QFont::Bold
                                                                                : QFont::Normal);
    mergeFormat(format);
}

void TRMWPEditor::toggleItalic()
{
    QTextCharFormat format;
    format.setFontItalic(m_actions.value(QStringLiteral("WPItalic"))->isChecked());
    mergeFormat(format);
}

void TRMWPEditor::toggleUnderline()
{
    QTextCharFormat format;
    const bool on = m_actions.value(QStringLiteral("WPUnderline"))->isChecked();
    format.setUnderlineStyle(on ? QTextCharFormat::SingleUnderline : QTextCharFormat::NoUnderline);
    mergeFormat(format);
}

void TRMWPEditor::toggleStrikeOut()
{
    QTextCharFormat format;
    format.setFontStrikeOut(m_actions.value(QStringLiteral("WPStrikeOut"))->isChecked());
    mergeFormat(format);
}

void TRMWPEditor::toggleSubscript()
{
    QTextCharFormat format;
    format.setVerticalAlignment(m_actions.value(QStringLiteral("WPSubscript"))->isChecked()
                                    ? QTextCharFormat::AlignSubScript
                                    : QTextCharFormat::AlignNormal);
    mergeFormat(format);
    updateFormatActions();
}

void TRMWPEditor::toggleSuperscript()
{
    QTextCharFormat format;
    format.setVerticalAlignment(m_actions.value(QStringLiteral("WPSuperscript"))->isChecked()
                                    ? QTextCharFormat::AlignSuperScript
                                    : QTextCharFormat::AlignNormal);
    mergeFormat(format);
    updateFormatActions();
}

// ---- printing ----------------------------------------------------------------------------------

QPrinter* TRMWPEditor::printer()
{
    if (!m_printer) {
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    }
    return m_printer.get();
}

void TRMWPEditor::printDocument(QPrinter* target)
{
    const PageLayout page = m_document->pageLayout();
    std::unique_ptr<QTextDocument> copy = TextExporter::visibleCopy(*m_view->document());
    const qreal px = 96.0 / 1440.0;
    QTextFrameFormat root = copy->rootFrame()->frameFormat();
    root.setLeftMargin(page.marginLeft * px);
    root.setRightMargin(page.marginRight * px);
    root.setTopMargin(page.marginTop * px);
    root.setBottomMargin(page.marginBottom * px);
    copy->rootFrame()->setFrameFormat(root);
    copy->setPageSize(QSizeF(page.paperWidth * px, page.paperHeight * px));
    target->setFullPage(true);
    target->setPageSize(QPageSize(QSizeF(page.paperWidth / 20.0, page.paperHeight / 20.0),
                                  QPageSize::Point, QString(), QPageSize::ExactMatch));
    target->setPageOrientation(QPageLayout::Portrait);
    target->setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Point);
    copy->print(target);
}

void TRMWPEditor::print()
{
    // The page goes to the printer as it is set up (the default printer and job settings until
    // "Printer Setup" changes them).
    QPrinter* target = printer();
    if (target->outputFileName().isEmpty() && QPrinterInfo::availablePrinterNames().isEmpty()) {
        ui::dialogs().warning(this, QStringLiteral("No printer is installed."));
        return;
    }
    WaitCursor wait;
    printDocument(target);
}

void TRMWPEditor::printerSetup()
{
    ui::dialogs().printSetup(this, printer());
}

// ---- tables ------------------------------------------------------------------------------------

void TRMWPEditor::createTable()
{
    WPTableDialog dialog(this);
    dialog.setWindowTitle(text("Create Table"));
    if (ui::dialogs().exec(&dialog) != QDialog::Accepted) {
        return;
    }
    const WPTableDialog::Table t = dialog.table();
    m_view->setTextCursor(TextEditCommands(m_view->textCursor())
                              .insertTable({t.rows, t.columns, t.border, t.padding}));
}

void TRMWPEditor::insertRow()
{
    TextEditCommands(m_view->textCursor()).insertRow();
}

void TRMWPEditor::insertColumn()
{
    TextEditCommands(m_view->textCursor()).insertColumn();
}

void TRMWPEditor::deleteRow()
{
    TextEditCommands(m_view->textCursor()).deleteRow();
}

void TRMWPEditor::deleteColumn()
{
    TextEditCommands(m_view->textCursor()).deleteColumn();
}

void TRMWPEditor::selectRow()
{
    m_view->setTextCursor(TextEditCommands(m_view->textCursor()).rowSelection());
}

void TRMWPEditor::selectColumn()
{
    m_view->setTextCursor(TextEditCommands(m_view->textCursor()).columnSelection());
}

void TRMWPEditor::setBorders(int sides, TextEditCommands::BorderChange change)
{
    TextEditCommands(m_view->textCursor()).setBorders(sides, change);
    m_view->viewport()->update();
}

void TRMWPEditor::topBorders()
{
    setBorders(BorderSide::Top, TextEditCommands::BorderChange::Toggle);
}

void TRMWPEditor::bottomBorders()
{
    setBorders(BorderSide::Bottom, TextEditCommands::BorderChange::Toggle);
}

void TRMWPEditor::leftBorders()
{
    setBorders(BorderSide::Left, TextEditCommands::BorderChange::Toggle);
}

void TRMWPEditor::rightBorders()
{
    setBorders(BorderSide::Right, TextEditCommands::BorderChange::Toggle);
}

void TRMWPEditor::bordersOn()
{
    setBorders(BorderSide::All, TextEditCommands::BorderChange::On);
}

void TRMWPEditor::bordersOff()
{
    setBorders(BorderSide::All, TextEditCommands::BorderChange::Off);
}

// ---- find and replace --------------------------------------------------------------------------

bool TRMWPEditor::findText(const QString& what, const FindOptions& options, bool fromStart)
{
    QTextCursor from = m_view->textCursor();
    if (fromStart) {
        from = QTextCursor(m_view->document());
        if (options.backwards) {
            from.movePosition(QTextCursor::End);
        }
    }
    FindOptions once = options;
    once.wrap = options.wrap && !fromStart;
    const QTextCursor found = TextFinder::find(*m_view->document(), what, from, once);
    if (found.isNull()) {
        return false;
    }
    m_view->setTextCursor(found);
    m_view->ensureCursorVisible();
    return true;
}

void TRMWPEditor::runFindDialog(bool replacing)
{
    WPFindDialog dialog(replacing ? WPFindDialog::Mode::Replace : WPFindDialog::Mode::Find, this);
    dialog.setWindowTitle(text(replacing ? "Replace" : "Find"));
    const QTextCursor cursor = m_view->textCursor();
    if (cursor.hasSelection() && !cursor.selectedText().contains(QChar::ParagraphSeparator)) {
        dialog.setFindText(cursor.selectedText());
    }
    connect(&dialog, &WPFindDialog::findNext, this, [this, &dialog] {
        if (!findText(dialog.findText(), dialog.options())) {
            ui::dialogs().information(&dialog, text("Not found!"));
        }
    });
    connect(&dialog, &WPFindDialog::replaceOne, this, [this, &dialog] {
        QTextCursor current = m_view->textCursor();
        if (TextFinder::replaceSelection(current, dialog.findText(), dialog.replaceText(),
                                         dialog.options())) {
            m_view->setTextCursor(current);
        }
        if (!findText(dialog.findText(), dialog.options())) {
            ui::dialogs().information(&dialog, text("Not found!"));
        }
    });
    connect(&dialog, &WPFindDialog::replaceAll, this, [this, &dialog] {
        const int count = TextFinder::replaceAll(m_view->document(), dialog.findText(),
                                                 dialog.replaceText(), dialog.options());
        if (count == 0) {
            ui::dialogs().information(&dialog, text("Not found!"));
        } else {
            ui::dialogs().information(&dialog, text("Replacements made: %1").arg(count));
        }
    });
    ui::dialogs().exec(&dialog);
}

void TRMWPEditor::find()
{
    runFindDialog(false);
}

void TRMWPEditor::replace()
{
    runFindDialog(true);
}

// ---- language and theme ------------------------------------------------------------------------

QString TRMWPEditor::text(const char* english) const
{
    return m_language.text(QString::fromUtf8(english));
}

void TRMWPEditor::SetLanguage(const QString& language)
{
    if (!m_language.hasLocNode()) {
        const QString file = m_languageFile.isEmpty() ? QCoreApplication::applicationDirPath() +
                                                            QStringLiteral("/WP.XML")
                                                      : m_languageFile;
        m_language.loadFile(file);
    }
    if (!m_language.hasLanguage(language)) {
        return; // the engine keeps its current language
    }
    m_language.setLanguage(language);
    reloadStrings();
}

void TRMWPEditor::reloadStrings()
{
    for (QAction* action : editorActions()) {
        const QString english = action->property(kEnglish).toString();
        if (english.isEmpty()) {
            continue;
        }
        const QString caption = m_language.text(english);
        action->setText(caption);
        QString hint = caption;
        hint.remove(QStringLiteral("..."));
        action->setToolTip(hint);
        action->setStatusTip(hint);
    }
    for (QMenu* menu : m_menus) {
        if (menu) {
            menu->setTitle(m_language.text(menu->property(kEnglish).toString()));
        }
    }
    for (ui::ColourSelector* selector : {m_fontColour, m_backColour}) {
        selector->setToolTip(m_language.text(selector->property(kEnglish).toString()));
    }
}

void TRMWPEditor::setReadOnly(bool readOnly)
{
    m_view->setReadOnly(readOnly);
    m_toolBar->setEnabled(!readOnly);
    m_ruler->setEnabled(!readOnly);
}

void TRMWPEditor::FormActivate(const QColor& themeColour)
{
    for (QWidget* widget :
         {static_cast<QWidget*>(this), m_panel1, static_cast<QWidget*>(m_toolBar)}) {
        QPalette palette = widget->palette();
        palette.setColor(QPalette::Window, themeColour);
        palette.setColor(QPalette::Button, themeColour);
        widget->setPalette(palette);
        widget->setAutoFillBackground(true);
    }
    m_ruler->update();
}

} // namespace kestrum::text
