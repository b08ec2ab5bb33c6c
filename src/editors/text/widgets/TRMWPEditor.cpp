#include "TRMWPEditor.h"
#include "ui/WaitCursor.h"

#include "editors/text/ColourTable.h"
#include "editors/text/TextEditCommands.h"
#include "editors/text/TextExporter.h"
#include "editors/text/TextPageDocument.h"
#include "editors/text/TextProperties.h"
#include "editors/text/widgets/WPActionMenus.h"
#include "editors/text/widgets/WPBordersDialog.h"
#include "editors/text/widgets/WPBulletsDialog.h"
#include "editors/text/widgets/WPDocumentPrinter.h"
#include "editors/text/widgets/WPFileCommands.h"
#include "editors/text/widgets/WPFindDialog.h"
#include "editors/text/widgets/WPIcons.h"
#include "editors/text/widgets/WPPageSetupDialog.h"
#include "editors/text/widgets/WPParagraphDialog.h"
#include "editors/text/widgets/WPRuler.h"
#include "editors/text/widgets/WPTabStopsDialog.h"
#include "editors/text/widgets/WPTableCommands.h"
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

constexpr const char* kEnglish = WPActionMenus::kEnglish;

} // namespace

TRMWPEditor::TRMWPEditor(QWidget* parent)
    : ui::EditorPanel(parent), m_document(new TextPageDocument(this)), m_view(new WPView(this)),
      m_ruler(new WPRuler(m_view, this)), m_toolBar(new QToolBar(this)),
      m_fontName(new QFontComboBox(this)), m_fontSize(new QComboBox(this)),
      m_panel1(new QWidget(this)), m_actionList(new QObject(this)), m_popup(new QMenu(this)),
      m_tableMenu(nullptr), m_tables(m_view),
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
    m_files = std::make_unique<WPFileCommands>(
        m_document, this, [this](const char* english) { return text(english); });

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
    // The hints read as the captions.
    action->setToolTip(action->text());
    action->setStatusTip(action->text());
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
    makeAction("WPImport", "Import...", [this] { m_files->importFile(); });
    makeAction("WPExport", "Export...", [this] { m_files->exportFile(); });
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

    makeAction("WPOpen", "Open", [this] { m_files->openFile(); });
    makeAction("WPSave", "Save", [this] { m_files->saveFile(); });
    makeAction("WPNew", "New", [this] { m_files->newDocument(); });

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

    makeAction(
        "WPCreateTable", "Create Table",
        [this] { m_tables.createTable(this, text("Create Table")); }, {}, QStringLiteral("table"));
    makeAction("WPInsertRow", "Insert Row", [this] { m_tables.insertRow(); });
    makeAction("WPInsertColumn", "Insert Column", [this] { m_tables.insertColumn(); });
    makeAction("WPDeleteRow", "Delete Row", [this] { m_tables.deleteRow(); });
    makeAction("WPDeleteColumn", "Delete Column", [this] { m_tables.deleteColumn(); });
    makeAction("WPSelectRow", "Select Row", [this] { m_tables.selectRow(); });
    makeAction("WPSelectColumn", "Select Column", [this] { m_tables.selectColumn(); });

    makeAction("WPTopBorders", "Top Borders", [this] { m_tables.toggleBorders(BorderSide::Top); });
    makeAction("WPBottomBorders", "Bottom Borders",
               [this] { m_tables.toggleBorders(BorderSide::Bottom); });
    makeAction("WPLeftBorders", "Left Borders",
               [this] { m_tables.toggleBorders(BorderSide::Left); });
    makeAction("WPRightBorders", "Right Borders",
               [this] { m_tables.toggleBorders(BorderSide::Right); });
    makeAction("WPBordersOn", "Switch Borders On", [this] { m_tables.switchBorders(true); });
    makeAction("WPBordersOff", "Switch Borders Off", [this] { m_tables.switchBorders(false); });

    auto* alignment = new QActionGroup(m_actionList);
    for (const char* name : {"WPAlignLeft", "WPAlignCenter", "WPAlignRight", "WPAlignJustify"}) {
        alignment->addAction(m_actions.value(QLatin1String(name)));
    }
}

void TRMWPEditor::createMenus()
{
    m_tableMenu = WPActionMenus::fillPopup(m_popup, lookup());
    m_menus << m_tableMenu;
}

void TRMWPEditor::populateToolBar(QToolBar* toolBar)
{
    WPActionMenus::fillToolBar(toolBar, lookup(), m_fontColour, m_backColour);
}

void TRMWPEditor::populateMenu(QMenu* menu)
{
    m_menus << WPActionMenus::fillMenu(menu, lookup());
    reloadStrings();
}

WPActionMenus::Lookup TRMWPEditor::lookup() const
{
    return [this](const char* name) { return m_actions.value(QLatin1String(name)); };
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

bool TRMWPEditor::event(QEvent* event)
{
    // The window passes its activation on to every widget it holds: take its colour then.
    if (event->type() == QEvent::WindowActivate && window() != this) {
        FormActivate(window()->palette().color(QPalette::Window));
    }
    return ui::EditorPanel::event(event);
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
    WPDocumentPrinter::print(*m_view->document(), m_document->pageLayout(), target);
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

// ---- files -------------------------------------------------------------------------------------

bool TRMWPEditor::LoadExternalFile(const QString& fileName)
{
    return m_files->loadWithMessage(fileName, true);
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
        action->setToolTip(caption);
        action->setStatusTip(caption);
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
