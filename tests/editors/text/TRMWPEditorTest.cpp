// The text page editor, headless with scripted dialogs: its actions and menus, the colour
// rules, the modified-flag rules, the dialogs, tables, the ruler, pictures, language and print.

#include "editors/text/widgets/TRMWPEditor.h"
#include "editors/text/ColourTable.h"
#include "editors/text/HiddenTextObject.h"
#include "editors/text/TextPageDocument.h"
#include "editors/text/TextProperties.h"
#include "editors/text/widgets/WPBordersDialog.h"
#include "editors/text/widgets/WPBulletsDialog.h"
#include "editors/text/widgets/WPFindDialog.h"
#include "editors/text/widgets/WPPageSetupDialog.h"
#include "editors/text/widgets/WPParagraphDialog.h"
#include "editors/text/widgets/WPRuler.h"
#include "editors/text/widgets/WPTabStopsDialog.h"
#include "editors/text/widgets/WPTableDialog.h"
#include "editors/text/widgets/WPView.h"
#include "support/ScriptedDialogs.h"
#include "ui/ColourSelector.h"

#include <QAbstractTextDocumentLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QFontComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextList>
#include <QTextTable>
#include <QToolBar>
#include <QVBoxLayout>
#include <QtTest>

using namespace kestrum;
using namespace kestrum::text;

namespace {

const QByteArray kPage =
    "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}{\\colortbl;\\red255\\green0\\blue0;}"
    "First paragraph with some words.\\par "
    "Second {\\chcbpat1 shaded} paragraph.\\par "
    "{\\field{\\*\\fldinst HYPERLINK \"https://example.org\"}{\\fldrslt a link}} and "
    "{\\*\\bkmkstart mark}a bookmark{\\*\\bkmkend mark}\\par}";

template <typename T> T* child(QDialog* dialog, const char* name)
{
    T* found = dialog->findChild<T*>(QLatin1String(name));
    if (!found) {
        qFatal("no %s in %s", name, qPrintable(dialog->objectName()));
    }
    return found;
}

QStringList menuTexts(const QMenu* menu)
{
    QStringList out;
    for (QAction* a : menu->actions()) {
        out << (a->isSeparator() ? QStringLiteral("-") : a->text());
    }
    return out;
}

} // namespace

class TRMWPEditorTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void actionCaptions_data();
    void actionCaptions();
    void contextMenuOrder();
    void toolBarAndMenu();
    void viewSetUp();
    void redCaret();
    void hiddenTextTakesNoRoom();
    void listStartShowsInTheView();
    void linkAndBookmarkDecorations();
    void blackBackgroundIsColourNumber18();
    void fontColourEntersTheTable();
    void selectorsFollowTheCaret();
    void loadingNeverMarksModified();
    void editsMarkModified();
    void characterAndParagraphActions();
    void listActions();
    void paragraphDialog();
    void bulletsDialog();
    void tabStopsDialog();
    void pageSetupDialog();
    void bordersDialogAndCommands();
    void tableCommands();
    void tabMovesThroughCells();
    void findAndReplace();
    void fontDialogAndLists();
    void importExport();
    void loadExternalFileWithoutConverter();
    void rulerShowsAndDragsIndents();
    void picturesResizeWithProportions();
    void tableColumnResize();
    void setLanguage();
    void printToPdf();
    void formActivate();

private:
    std::unique_ptr<test::ScopedScriptedDialogs> m_dialogs;
    std::unique_ptr<TRMWPEditor> m_editor;
    TextPageDocument* m_doc = nullptr;

    void load(const QByteArray& content)
    {
        const Status read = m_doc->readContent(content);
        QVERIFY(read);
    }
    void selectText(const QString& text)
    {
        const QTextCursor found =
            m_doc->textDocument()->find(text, 0, QTextDocument::FindCaseSensitively);
        QVERIFY2(!found.isNull(), qPrintable(text));
        m_editor->view()->setTextCursor(found);
    }
    QAction* action(const char* name) { return m_editor->editorAction(QLatin1String(name)); }
};

void TRMWPEditorTest::init()
{
    m_dialogs = std::make_unique<test::ScopedScriptedDialogs>();
    m_editor = std::make_unique<TRMWPEditor>();
    m_editor->resize(800, 600);
    m_editor->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_editor.get()));
    m_doc = &m_editor->pageDocument();
    QCOMPARE(&m_editor->document(), static_cast<store::PageDocument*>(m_doc));
}

void TRMWPEditorTest::cleanup()
{
    QVERIFY2(m_dialogs->unexpected().isEmpty(),
             qPrintable(m_dialogs->unexpected().join(QLatin1String(", "))));
    m_editor.reset();
    m_dialogs.reset();
}

void TRMWPEditorTest::actionCaptions_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("caption");
    const std::pair<const char*, const char*> table[] = {
        {"WPImport", "Import..."},
        {"WPExport", "Export..."},
        {"WPFont", "Fonts..."},
        {"WPParagraph", "Paragraphs..."},
        {"WPBullets", "Bullets..."},
        {"WPTabStops", "Tab stops..."},
        {"WPPageSetup", "Page setup"},
        {"WPBorders", "Borders..."},
        {"WPUndo", "Undo"},
        {"WPRedo", "Redo"},
        {"WPCopy", "Copy"},
        {"WPCut", "Cut"},
        {"WPPaste", "Paste"},
        {"WPFind", "Find"},
        {"WPReplace", "Replace"},
        {"WPSelectAll", "Select All"},
        {"WPDeleteText", "Delete Text"},
        {"WPAlignLeft", "Left"},
        {"WPAlignCenter", "Center"},
        {"WPAlignRight", "Right"},
        {"WPAlignJustify", "Justified"},
        {"WPBulletList", "Bullets"},
        {"WPNumberList", "Numbers"},
        {"WPPriorLevel", "Prior Level"},
        {"WPNextLevel", "Next Level"},
        {"WPOpen", "Open"},
        {"WPSave", "Save"},
        {"WPNew", "New"},
        {"WPBold", "Bold"},
        {"WPItalic", "Italic"},
        {"WPUnderline", "Underlined"},
        {"WPStrikeOut", "Strike Out"},
        {"WPSubscript", "Subscript"},
        {"WPSuperscript", "Superscript"},
        {"WPPrint", "Print"},
        {"WPPrinterSetup", "Printer Setup"},
        {"WPCreateTable", "Create Table"},
        {"WPInsertRow", "Insert Row"},
        {"WPInsertColumn", "Insert Column"},
        {"WPDeleteRow", "Delete Row"},
        {"WPDeleteColumn", "Delete Column"},
        {"WPSelectRow", "Select Row"},
        {"WPSelectColumn", "Select Column"},
        {"WPTopBorders", "Top Borders"},
        {"WPBottomBorders", "Bottom Borders"},
        {"WPLeftBorders", "Left Borders"},
        {"WPRightBorders", "Right Borders"},
        {"WPBordersOn", "Switch Borders On"},
        {"WPBordersOff", "Switch Borders Off"},
    };
    for (const auto& [name, caption] : table) {
        QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(caption);
    }
}

void TRMWPEditorTest::actionCaptions()
{
    QFETCH(QString, name);
    QFETCH(QString, caption);
    QAction* a = m_editor->editorAction(name);
    QVERIFY(a);
    QCOMPARE(a->text(), caption);
    // The hints read exactly as the captions, dots included.
    QCOMPARE(a->toolTip(), caption);
    QCOMPARE(a->statusTip(), caption);
    QCOMPARE(a->parent(), m_editor->actionList());
    QCOMPARE(m_editor->actionList()->objectName(), QStringLiteral("ActionList1"));
    QCOMPARE(m_editor->editorActions().size(), 49);
}

void TRMWPEditorTest::contextMenuOrder()
{
    QMenu* popup = m_editor->popupMenu();
    QCOMPARE(popup->objectName(), QStringLiteral("MemoPopup2"));
    QCOMPARE(menuTexts(popup),
             (QStringList{"Cut", "Copy", "Paste", "-", "Find", "Replace", "-", "Fonts...",
                          "Paragraphs...", "Borders...", "Tab stops...", "Bullets...", "Table"}));
    QMenu* table = popup->actions().last()->menu();
    QVERIFY(table);
    QCOMPARE(menuTexts(table),
             (QStringList{"Create Table", "-", "Insert Row", "Insert Column", "Delete Row",
                          "Delete Column", "Select Row", "Select Column"}));
}

void TRMWPEditorTest::toolBarAndMenu()
{
    QToolBar bar;
    bar.setObjectName(QStringLiteral("WPBar"));
    m_editor->populateToolBar(&bar);
    QVERIFY(bar.findChild<ui::ColourSelector*>(QStringLiteral("WPFontColor")));
    QVERIFY(bar.findChild<ui::ColourSelector*>(QStringLiteral("WPBackGroundColor")));
    QVERIFY(bar.actions().contains(action("WPBold")));
    QVERIFY(bar.actions().contains(action("WPAlignJustify")));
    QMenu docMenu;
    docMenu.setObjectName(QStringLiteral("DocMenu"));
    m_editor->populateMenu(&docMenu);
    // Every action of the page can be reached from DocMenu.
    QSet<QAction*> reachable;
    std::function<void(QMenu*)> walk = [&](QMenu* menu) {
        for (QAction* a : menu->actions()) {
            reachable.insert(a);
            if (a->menu()) {
                walk(a->menu());
            }
        }
    };
    walk(&docMenu);
    for (QAction* a : m_editor->editorActions()) {
        QVERIFY2(reachable.contains(a), qPrintable(a->objectName()));
    }
    QVERIFY(m_editor->canFind());
    // The font toolbar: font name and size, enabled with the shown editor.
    QToolBar* fonts = m_editor->formatToolBar();
    QCOMPARE(fonts->objectName(), QStringLiteral("WPToolBar1"));
    QVERIFY(fonts->findChild<QFontComboBox*>(QStringLiteral("WPFontName")));
    QVERIFY(fonts->findChild<QComboBox*>(QStringLiteral("WPFontSize")));
    QVERIFY(fonts->isEnabled());
    QVERIFY(m_editor->findChild<QWidget*>(QStringLiteral("Panel1"))->isHidden());
}

void TRMWPEditorTest::viewSetUp()
{
    WPView* view = m_editor->view();
    QCOMPARE(view->objectName(), QStringLiteral("WPView"));
    QCOMPARE(view->lineWrapMode(), QTextEdit::WidgetWidth);
    QCOMPARE(view->frameShape(), QFrame::Box);
    QCOMPARE(view->lineWidth(), 1);
    QVERIFY(view->isUndoRedoEnabled());
    QCOMPARE(view->document(), m_doc->textDocument());
    QCOMPARE(m_editor->ruler()->objectName(), QStringLiteral("WPRuler1"));
}

void TRMWPEditorTest::redCaret()
{
    load(kPage);
    WPView* view = m_editor->view();
    view->setFocus();
    QTRY_VERIFY(view->hasFocus());
    view->moveCursor(QTextCursor::Start);
    QTRY_VERIFY(view->caretShown());
    const QImage image = view->viewport()->grab().toImage();
    const QRect caret = view->cursorRect();
    QCOMPARE(image.pixelColor(caret.x(), caret.center().y()), QColor(Qt::red));
}

void TRMWPEditorTest::hiddenTextTakesNoRoom()
{
    QTextCursor cursor(m_doc->textDocument());
    cursor.insertText(QStringLiteral("ab"));
    HiddenTextObject::insert(cursor, QStringLiteral("A LONG HIDDEN RUN OF TEXT"),
                             QTextCharFormat());
    cursor.insertText(QStringLiteral("cd"));
    QTextCursor second(m_doc->textDocument());
    second.setPosition(1, QTextCursor::MoveAnchor);
    WPView* view = m_editor->view();
    QTextCursor before(m_doc->textDocument());
    before.setPosition(2);
    QTextCursor after(m_doc->textDocument());
    after.setPosition(3);
    QCOMPARE(view->cursorRect(after).x(), view->cursorRect(before).x());
}

void TRMWPEditorTest::listStartShowsInTheView()
{
    // The marker beside "A" of a list that starts at 7 looks like the seventh item's marker
    // of a list numbered from 1.
    const QByteArray table =
        "{\\*\\listtable{\\list\\listid1{\\listlevel\\levelnfc0\\levelstartat%1{\\leveltext"
        "\\'02\\'00.;}}}}{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}";
    WPView* view = m_editor->view();
    view->clearFocus();
    auto markerStrip = [&](const QByteArray& items, int start) {
        load("{\\rtf1\\ansi" + QString::fromLatin1(table).arg(start).toLatin1() + items + "}");
        const QTextCursor at =
            m_doc->textDocument()->find(QStringLiteral("A"), 0, QTextDocument::FindCaseSensitively);
        QTextCursor start0(at.block());
        const QRect caret = view->cursorRect(start0);
        return view->viewport()->grab().toImage().copy(
            QRect(0, caret.y(), caret.x() - 1, caret.height()));
    };
    const QImage seventh =
        markerStrip(QByteArray("\\pard\\ls1 x\\par x\\par x\\par x\\par x\\par x\\par A\\par"), 1);
    const QImage first = markerStrip(QByteArray("\\pard\\ls1 A\\par"), 1);
    const QImage startAt7 = markerStrip(QByteArray("\\pard\\ls1 A\\par"), 7);
    QVERIFY(!seventh.isNull());
    QVERIFY(seventh != first);
    QCOMPARE(startAt7, seventh);
}

void TRMWPEditorTest::linkAndBookmarkDecorations()
{
    load(kPage);
    WPView* view = m_editor->view();
    view->refreshDecorations();
    const QList<QTextEdit::ExtraSelection> selections = view->extraSelections();
    QCOMPARE(selections.size(), 2);
    QCOMPARE(selections[0].cursor.selectedText(), QStringLiteral("a link"));
    QCOMPARE(selections[0].format.underlineColor(), QColor(Qt::blue));
    QVERIFY(!selections[0].format.hasProperty(QTextFormat::ForegroundBrush));
    QCOMPARE(selections[1].cursor.selectedText(), QStringLiteral("a bookmark"));
    QCOMPARE(selections[1].format.underlineColor(), QColor(Qt::darkGreen));
    // The mouse over the link turns it red, text and line.
    QTextCursor onLink = m_doc->textDocument()->find(QStringLiteral("link"));
    const QRect r = view->cursorRect(onLink);
    QTest::mouseMove(view->viewport(), QPoint(r.x() - 3, r.center().y()));
    QTRY_COMPARE(view->hoveredLink(), QStringLiteral("https://example.org"));
    const QTextEdit::ExtraSelection hovered = view->extraSelections()[0];
    QCOMPARE(hovered.format.underlineColor(), QColor(Qt::red));
    QCOMPARE(hovered.format.foreground().color(), QColor(Qt::red));
    // The document itself is untouched by the decorations.
    QTextCursor plain(m_doc->textDocument());
    plain.setPosition(onLink.selectionStart());
    QVERIFY(!plain.charFormat().hasProperty(QTextFormat::TextUnderlineColor));
}

void TRMWPEditorTest::blackBackgroundIsColourNumber18()
{
    load(kPage);
    selectText(QStringLiteral("some words"));
    const int entries = m_doc->colours().count();
    m_editor->WPBackGroundColorSelectColor(QColor(Qt::black));
    QCOMPARE(m_doc->colours().count(), entries); // black was not entered
    QTextCursor at(m_doc->textDocument());
    at.setPosition(m_doc->textDocument()->find(QStringLiteral("some")).selectionStart() + 1);
    const QColor background = at.charFormat().background().color();
    QCOMPARE(m_doc->colours().indexOf(background), ColourTable::kBlackBackgroundNumber);
    QByteArray rtf;
    QString error;
    const auto written = m_doc->writeContent();
    QVERIFY2(written, qPrintable(written.error()));
    rtf = *written;
    QVERIFY(rtf.contains("\\chcbpat18 some words"));
    // Through the selector as the user does it.
    selectText(QStringLiteral("First"));
    emit m_editor->backgroundColourSelector()->colourSelected(QColor(Qt::black));
    at.setPosition(2);
    QCOMPARE(m_doc->colours().indexOf(at.charFormat().background().color()),
             ColourTable::kBlackBackgroundNumber);
    // Any other colour is entered as it is.
    selectText(QStringLiteral("paragraph"));
    m_editor->WPBackGroundColorSelectColor(QColor(10, 20, 30));
    QCOMPARE(m_doc->colours().count(), entries + 1);
    QCOMPARE(m_doc->colours().indexOf(QColor(10, 20, 30)), entries);
}

void TRMWPEditorTest::fontColourEntersTheTable()
{
    load(kPage);
    selectText(QStringLiteral("Second"));
    const int entries = m_doc->colours().count();
    m_editor->WPFontColorSelectColor(QColor(1, 99, 200));
    QCOMPARE(m_doc->colours().count(), entries + 1);
    QTextCursor at(m_doc->textDocument());
    at.setPosition(m_doc->textDocument()->find(QStringLiteral("Second")).selectionStart() + 1);
    QCOMPARE(at.charFormat().foreground().color(), QColor(1, 99, 200));
    // A standard colour is found, not added again.
    m_editor->WPFontColorSelectColor(QColor(255, 0, 0));
    QCOMPARE(m_doc->colours().count(), entries + 1);
    // Without a selection the colour is for the text typed next.
    QTextCursor caret(m_doc->textDocument());
    caret.movePosition(QTextCursor::End);
    m_editor->view()->setTextCursor(caret);
    m_editor->WPFontColorSelectColor(QColor(0, 128, 0));
    m_editor->view()->insertPlainText(QStringLiteral("green"));
    QTextCursor typed(m_doc->textDocument());
    typed.movePosition(QTextCursor::End);
    QCOMPARE(typed.charFormat().foreground().color(), QColor(0, 128, 0));
}

void TRMWPEditorTest::selectorsFollowTheCaret()
{
    load(kPage);
    ui::ColourSelector* text = m_editor->fontColourSelector();
    ui::ColourSelector* back = m_editor->backgroundColourSelector();
    QTextCursor cursor(m_doc->textDocument());
    cursor.setPosition(m_doc->textDocument()->find(QStringLiteral("shaded")).selectionStart() + 2);
    m_editor->view()->setTextCursor(cursor);
    QCOMPARE(back->colour(), QColor(255, 0, 0));
    // Background colour number 0 shows white; automatic text colour shows black.
    cursor.setPosition(3);
    m_editor->view()->setTextCursor(cursor);
    QCOMPARE(back->colour(), QColor(Qt::white));
    QCOMPARE(text->colour(), QColor(Qt::black));
    selectText(QStringLiteral("words"));
    m_editor->WPFontColorSelectColor(QColor(0, 0, 128));
    cursor.setPosition(m_doc->textDocument()->find(QStringLiteral("words")).selectionStart() + 2);
    m_editor->view()->setTextCursor(cursor);
    QCOMPARE(text->colour(), QColor(0, 0, 128));
}

void TRMWPEditorTest::loadingNeverMarksModified()
{
    QSignalSpy changed(&m_editor->document(), &store::PageDocument::contentChanged);
    load(kPage);
    m_doc->clear();
    load("<html><body><p>html page</p></body></html>");
    load(kPage);
    QCoreApplication::processEvents();
    QCOMPARE(changed.count(), 0);
    QVERIFY(!action("WPUndo")->isEnabled());
}

void TRMWPEditorTest::editsMarkModified()
{
    load(kPage);
    QSignalSpy changed(&m_editor->document(), &store::PageDocument::contentChanged);
    WPView* view = m_editor->view();
    view->setFocus();
    view->moveCursor(QTextCursor::End);
    QTest::keyClicks(view, QStringLiteral("xyz"));
    QVERIFY(changed.count() > 0);
    QVERIFY(action("WPUndo")->isEnabled());
    // Choosing a colour with nothing selected marks the page modified too.
    const int before = changed.count();
    m_editor->WPBackGroundColorSelectColor(QColor(Qt::yellow));
    QVERIFY(changed.count() > before);
    const int afterColour = changed.count();
    action("WPUndo")->trigger();
    QVERIFY(changed.count() > afterColour);
}

void TRMWPEditorTest::characterAndParagraphActions()
{
    load(kPage);
    selectText(QStringLiteral("First"));
    action("WPBold")->trigger();
    action("WPItalic")->trigger();
    action("WPUnderline")->trigger();
    action("WPStrikeOut")->trigger();
    action("WPSuperscript")->trigger();
    QTextCursor at(m_doc->textDocument());
    at.setPosition(2);
    const QTextCharFormat f = at.charFormat();
    QCOMPARE(f.fontWeight(), int(QFont::Bold));
    QVERIFY(f.fontItalic());
    QCOMPARE(f.underlineStyle(), QTextCharFormat::SingleUnderline);
    QVERIFY(f.fontStrikeOut());
    QCOMPARE(f.verticalAlignment(), QTextCharFormat::AlignSuperScript);
    QVERIFY(action("WPBold")->isChecked());
    action("WPSubscript")->trigger();
    at.setPosition(2);
    QCOMPARE(at.charFormat().verticalAlignment(), QTextCharFormat::AlignSubScript);
    QVERIFY(!action("WPSuperscript")->isChecked());
    action("WPBold")->trigger(); // off again
    at.setPosition(2);
    QCOMPARE(at.charFormat().fontWeight(), int(QFont::Normal));

    action("WPAlignCenter")->trigger();
    QCOMPARE(m_doc->textDocument()->begin().blockFormat().alignment() & Qt::AlignHorizontal_Mask,
             Qt::AlignHCenter);
    QVERIFY(action("WPAlignCenter")->isChecked());
    action("WPAlignJustify")->trigger();
    QCOMPARE(m_doc->textDocument()->begin().blockFormat().alignment() & Qt::AlignHorizontal_Mask,
             Qt::AlignJustify);
    QVERIFY(!action("WPAlignCenter")->isChecked());

    // Clipboard and deletion commands follow the selection.
    QVERIFY(action("WPCopy")->isEnabled());
    action("WPCopy")->trigger();
    QVERIFY(action("WPPaste")->isEnabled());
    action("WPDeleteText")->trigger();
    QVERIFY(!m_doc->textDocument()->toPlainText().startsWith(QStringLiteral("First")));
    QVERIFY(!action("WPCopy")->isEnabled());
    action("WPPaste")->trigger();
    QVERIFY(m_doc->textDocument()->toPlainText().startsWith(QStringLiteral("First")));
    action("WPSelectAll")->trigger();
    QCOMPARE(m_editor->view()->textCursor().selectedText().size(),
             m_doc->textDocument()->characterCount() - 1);
}

void TRMWPEditorTest::listActions()
{
    load(kPage);
    selectText(QStringLiteral("First"));
    action("WPBulletList")->trigger();
    QTextList* list = m_doc->textDocument()->begin().textList();
    QVERIFY(list);
    QCOMPARE(list->format().style(), QTextListFormat::ListDisc);
    QVERIFY(action("WPBulletList")->isChecked());
    action("WPNextLevel")->trigger();
    QCOMPARE(m_doc->textDocument()->begin().textList()->format().indent(), 2);
    action("WPPriorLevel")->trigger();
    QCOMPARE(m_doc->textDocument()->begin().textList()->format().indent(), 1);
    action("WPNumberList")->trigger();
    QCOMPARE(m_doc->textDocument()->begin().textList()->format().style(),
             QTextListFormat::ListDecimal);
    action("WPNumberList")->trigger();
    QVERIFY(!m_doc->textDocument()->begin().textList());
    // Outside lists the levels indent the paragraph.
    action("WPNextLevel")->trigger();
    QCOMPARE(m_doc->textDocument()->begin().blockFormat().indent(), 1);
}

void TRMWPEditorTest::paragraphDialog()
{
    load(kPage);
    selectText(QStringLiteral("Second"));
    m_dialogs->answerExec([](QDialog* dialog) {
        child<QComboBox>(dialog, "alignment")->setCurrentIndex(2);
        child<QDoubleSpinBox>(dialog, "leftIndent")->setValue(2.54);
        child<QDoubleSpinBox>(dialog, "firstLine")->setValue(-1.27);
        child<QDoubleSpinBox>(dialog, "spaceAfter")->setValue(12);
        child<QComboBox>(dialog, "lineSpacing")->setCurrentIndex(4); // exactly
        child<QDoubleSpinBox>(dialog, "lineSpacingValue")->setValue(18);
        return int(QDialog::Accepted);
    });
    action("WPParagraph")->trigger();
    const QTextBlockFormat f = m_doc->textDocument()->findBlockByNumber(1).blockFormat();
    QCOMPARE(f.alignment() & Qt::AlignHorizontal_Mask, Qt::AlignRight);
    QCOMPARE(f.leftMargin(), 96.0);
    QCOMPARE(f.textIndent(), -48.0);
    QCOMPARE(f.bottomMargin(), 16.0);
    QCOMPARE(f.lineHeightType(), int(QTextBlockFormat::FixedHeight));
    QCOMPARE(f.lineHeight(), 24.0);
    QCOMPARE(m_doc->textDocument()->begin().blockFormat().leftMargin(), 0.0);
    // The dialog opens with the paragraph's values.
    m_dialogs->answerExec([](QDialog* dialog) {
        [&] { QCOMPARE(child<QDoubleSpinBox>(dialog, "leftIndent")->value(), 2.54); }();
        [&] { QCOMPARE(child<QComboBox>(dialog, "lineSpacing")->currentIndex(), 4); }();
        return int(QDialog::Rejected);
    });
    action("WPParagraph")->trigger();
    QCOMPARE(m_dialogs->shown().back().text, QStringLiteral("Paragraphs"));
}

void TRMWPEditorTest::bulletsDialog()
{
    load(kPage);
    QTextCursor both(m_doc->textDocument());
    both.setPosition(0);
    both.setPosition(m_doc->textDocument()->findBlockByNumber(1).position() + 3,
                     QTextCursor::KeepAnchor);
    m_editor->view()->setTextCursor(both);
    m_dialogs->answerExec([](QDialog* dialog) {
        auto* style = child<QComboBox>(dialog, "style");
        style->setCurrentIndex(style->findData(int(QTextListFormat::ListUpperRoman)));
        child<QLineEdit>(dialog, "prefix")->setText(QStringLiteral("("));
        child<QLineEdit>(dialog, "suffix")->setText(QStringLiteral(")"));
        return int(QDialog::Accepted);
    });
    action("WPBullets")->trigger();
    const QTextBlock first = m_doc->textDocument()->begin();
    const QTextBlock second = first.next();
    QVERIFY(first.textList());
    QCOMPARE(first.textList(), second.textList());
    QCOMPARE(first.textList()->itemText(second), QStringLiteral("(II)"));
    QVERIFY(!second.next().textList());
    m_dialogs->answerExec([](QDialog* dialog) {
        child<QComboBox>(dialog, "style")->setCurrentIndex(0); // none
        return int(QDialog::Accepted);
    });
    action("WPBullets")->trigger();
    QVERIFY(!m_doc->textDocument()->begin().textList());
    QVERIFY(!m_doc->textDocument()->begin().next().textList());
}

void TRMWPEditorTest::tabStopsDialog()
{
    load(kPage);
    m_dialogs->answerExec([](QDialog* dialog) {
        auto* tabs = qobject_cast<WPTabStopsDialog*>(dialog);
        child<QDoubleSpinBox>(dialog, "position")->setValue(5.08);
        child<QComboBox>(dialog, "kind")->setCurrentIndex(1); // right
        tabs->setTab();
        child<QDoubleSpinBox>(dialog, "position")->setValue(2.54);
        child<QComboBox>(dialog, "kind")->setCurrentIndex(3); // decimal
        tabs->setTab();
        return int(QDialog::Accepted);
    });
    action("WPTabStops")->trigger();
    const QList<QTextOption::Tab> tabs =
        m_doc->textDocument()->begin().blockFormat().tabPositions();
    QCOMPARE(tabs.size(), 2);
    QCOMPARE(tabs[0].position, 96.0);
    QCOMPARE(tabs[0].type, QTextOption::DelimiterTab);
    QCOMPARE(tabs[1].position, 192.0);
    QCOMPARE(tabs[1].type, QTextOption::RightTab);
    m_dialogs->answerExec([](QDialog* dialog) {
        qobject_cast<WPTabStopsDialog*>(dialog)->clearAll();
        return int(QDialog::Accepted);
    });
    action("WPTabStops")->trigger();
    QVERIFY(m_doc->textDocument()->begin().blockFormat().tabPositions().isEmpty());
}

void TRMWPEditorTest::pageSetupDialog()
{
    load(kPage);
    QSignalSpy changed(&m_editor->document(), &store::PageDocument::contentChanged);
    m_dialogs->answerExec([](QDialog* dialog) {
        child<QComboBox>(dialog, "paper")->setCurrentText(QStringLiteral("Letter"));
        child<QComboBox>(dialog, "orientation")->setCurrentIndex(1);
        child<QDoubleSpinBox>(dialog, "marginLeft")->setValue(2.54);
        return int(QDialog::Accepted);
    });
    action("WPPageSetup")->trigger();
    const PageLayout layout = m_doc->pageLayout();
    QCOMPARE(layout.paperWidth, 15840);
    QCOMPARE(layout.paperHeight, 12240);
    QCOMPARE(layout.marginLeft, 1440);
    QCOMPARE(changed.count(), 1);
    // A cancelled dialog changes nothing.
    m_dialogs->answerExec([](QDialog* dialog) {
        child<QComboBox>(dialog, "paper")->setCurrentText(QStringLiteral("A5"));
        return int(QDialog::Rejected);
    });
    action("WPPageSetup")->trigger();
    QCOMPARE(m_doc->pageLayout(), layout);
}

void TRMWPEditorTest::bordersDialogAndCommands()
{
    load(kPage);
    selectText(QStringLiteral("Second"));
    m_dialogs->answerColour(QColor(0, 0, 200));
    m_dialogs->answerExec([](QDialog* dialog) {
        child<QCheckBox>(dialog, "top")->setChecked(true);
        child<QCheckBox>(dialog, "bottom")->setChecked(true);
        child<QComboBox>(dialog, "style")->setCurrentIndex(3); // double
        child<QDoubleSpinBox>(dialog, "width")->setValue(1.5);
        child<QPushButton>(dialog, "colour")->click();
        return int(QDialog::Accepted);
    });
    action("WPBorders")->trigger();
    QTextBlockFormat f = m_doc->textDocument()->findBlockByNumber(1).blockFormat();
    QCOMPARE(f.intProperty(TextProperty::BorderSides), BorderSide::Top | BorderSide::Bottom);
    QCOMPARE(f.intProperty(TextProperty::BorderWidth), 30);
    QCOMPARE(f.intProperty(TextProperty::BorderStyle), int(QTextFrameFormat::BorderStyle_Double));
    QCOMPARE(f.property(TextProperty::BorderColour).value<QColor>(), QColor(0, 0, 200));
    // The side commands toggle one side; on and off set all four.
    action("WPTopBorders")->trigger();
    action("WPLeftBorders")->trigger();
    f = m_doc->textDocument()->findBlockByNumber(1).blockFormat();
    QCOMPARE(f.intProperty(TextProperty::BorderSides), BorderSide::Bottom | BorderSide::Left);
    action("WPBordersOn")->trigger();
    QCOMPARE(m_doc->textDocument()->findBlockByNumber(1).blockFormat().intProperty(
                 TextProperty::BorderSides),
             BorderSide::All);
    action("WPBordersOff")->trigger();
    QCOMPARE(m_doc->textDocument()->findBlockByNumber(1).blockFormat().intProperty(
                 TextProperty::BorderSides),
             0);

    // In a table the commands set the borders of the cell.
    QTextCursor end(m_doc->textDocument());
    end.movePosition(QTextCursor::End);
    QTextTableFormat plainTable;
    plainTable.setBorder(0);
    QTextTable* table = end.insertTable(2, 2, plainTable);
    m_editor->view()->setTextCursor(table->cellAt(1, 1).firstCursorPosition());
    action("WPBottomBorders")->trigger();
    QTextTableCellFormat cell = table->cellAt(1, 1).format().toTableCellFormat();
    QCOMPARE(cell.bottomBorder(), 1.0);
    QCOMPARE(cell.bottomBorderStyle(), QTextFrameFormat::BorderStyle_Solid);
    action("WPBottomBorders")->trigger();
    QCOMPARE(table->cellAt(1, 1).format().toTableCellFormat().bottomBorder(), 0.0);
    action("WPBordersOn")->trigger();
    cell = table->cellAt(1, 1).format().toTableCellFormat();
    QCOMPARE(cell.leftBorder(), 1.0);
    QCOMPARE(cell.topBorder(), 1.0);
    QCOMPARE(table->cellAt(0, 0).format().toTableCellFormat().topBorder(), 0.0);
}

void TRMWPEditorTest::tableCommands()
{
    load(kPage);
    QVERIFY(!action("WPInsertRow")->isEnabled());
    QTextCursor end(m_doc->textDocument());
    end.movePosition(QTextCursor::End);
    m_editor->view()->setTextCursor(end);
    m_dialogs->answerExec([](QDialog* dialog) {
        child<QSpinBox>(dialog, "rows")->setValue(3);
        child<QSpinBox>(dialog, "columns")->setValue(2);
        child<QSpinBox>(dialog, "border")->setValue(2);
        return int(QDialog::Accepted);
    });
    action("WPCreateTable")->trigger();
    QTextTable* table = m_editor->view()->textCursor().currentTable();
    QVERIFY(table);
    QCOMPARE(table->rows(), 3);
    QCOMPARE(table->columns(), 2);
    QCOMPARE(table->format().border(), 2.0);
    QVERIFY(action("WPInsertRow")->isEnabled());
    action("WPInsertRow")->trigger();
    QCOMPARE(table->rows(), 4);
    action("WPInsertColumn")->trigger();
    QCOMPARE(table->columns(), 3);
    QCOMPARE(table->format().columnWidthConstraints().size(), 3);
    action("WPDeleteColumn")->trigger();
    QCOMPARE(table->columns(), 2);
    action("WPDeleteRow")->trigger();
    QCOMPARE(table->rows(), 3);
    table->cellAt(0, 0).firstCursorPosition().insertText(QStringLiteral("r0"));
    table->cellAt(0, 1).firstCursorPosition().insertText(QStringLiteral("c1"));
    m_editor->view()->setTextCursor(table->cellAt(0, 1).firstCursorPosition());
    action("WPSelectRow")->trigger();
    int firstRow = -1;
    int rows = 0;
    int firstColumn = -1;
    int columns = 0;
    m_editor->view()->textCursor().selectedTableCells(&firstRow, &rows, &firstColumn, &columns);
    QCOMPARE(rows, 1);
    QCOMPARE(columns, 2);
    action("WPSelectColumn")->trigger();
    m_editor->view()->textCursor().selectedTableCells(&firstRow, &rows, &firstColumn, &columns);
    QCOMPARE(rows, 3);
    QCOMPARE(columns, 1);
}

void TRMWPEditorTest::tabMovesThroughCells()
{
    QTextCursor cursor(m_doc->textDocument());
    QTextTable* table = cursor.insertTable(1, 2);
    WPView* view = m_editor->view();
    view->setFocus();
    view->setTextCursor(table->cellAt(0, 0).firstCursorPosition());
    QTest::keyClicks(view, QStringLiteral("a"));
    QTest::keyClick(view, Qt::Key_Tab);
    QTest::keyClicks(view, QStringLiteral("b"));
    QTest::keyClick(view, Qt::Key_Tab); // past the last cell: a new row
    QTest::keyClicks(view, QStringLiteral("c"));
    QCOMPARE(table->rows(), 2);
    QCOMPARE(table->cellAt(0, 1).firstCursorPosition().block().text(), QStringLiteral("b"));
    QCOMPARE(table->cellAt(1, 0).firstCursorPosition().block().text(), QStringLiteral("c"));
    QTest::keyClick(view, Qt::Key_Backtab);
    QCOMPARE(table->cellAt(view->textCursor()).row(), 0);
    QCOMPARE(table->cellAt(view->textCursor()).column(), 1);
}

void TRMWPEditorTest::findAndReplace()
{
    load("{\\rtf1 Alpha beta alpha gamma ALPHA.{\\v alpha hidden}\\par}");
    m_editor->view()->moveCursor(QTextCursor::Start);
    int found = 0;
    m_dialogs->answerExec([&found, this](QDialog* dialog) {
        auto* find = qobject_cast<WPFindDialog*>(dialog);
        find->setFindText(QStringLiteral("alpha"));
        child<QCheckBox>(dialog, "matchCase")->setChecked(true);
        child<QPushButton>(dialog, "findNext")->click();
        found = m_editor->view()->textCursor().selectionStart();
        child<QPushButton>(dialog, "findNext")->click(); // wraps to the same single match
        return int(QDialog::Rejected);
    });
    m_editor->find();
    QCOMPARE(found, 11);
    QCOMPARE(m_editor->view()->textCursor().selectionStart(), 11);
    QCOMPARE(m_dialogs->shown().front().text, QStringLiteral("Find"));

    m_dialogs->answerExec([](QDialog* dialog) {
        qobject_cast<WPFindDialog*>(dialog)->setFindText(QStringLiteral("delta"));
        child<QPushButton>(dialog, "findNext")->click();
        return int(QDialog::Rejected);
    });
    m_editor->find();
    QVERIFY(m_dialogs->messages().contains(QStringLiteral("Not found!")));

    m_dialogs->answerExec([](QDialog* dialog) {
        auto* replace = qobject_cast<WPFindDialog*>(dialog);
        replace->setFindText(QStringLiteral("alpha"));
        replace->setReplaceText(QStringLiteral("omega"));
        child<QPushButton>(dialog, "replaceAll")->click();
        return int(QDialog::Rejected);
    });
    m_editor->replace();
    QString text = m_doc->textDocument()->toPlainText();
    text.remove(QChar::ObjectReplacementCharacter);
    QCOMPARE(text, QStringLiteral("omega beta omega gamma omega."));
    QVERIFY(m_dialogs->messages().contains(QStringLiteral("Replacements made: 3")));
    // Hidden text is not searched.
    QVERIFY(!m_editor->findText(QStringLiteral("hidden"), {}, true));
    QVERIFY(m_editor->findText(QStringLiteral("gamma"), {}, true));
    QCOMPARE(m_editor->view()->textCursor().selectedText(), QStringLiteral("gamma"));
}

void TRMWPEditorTest::fontDialogAndLists()
{
    load(kPage);
    selectText(QStringLiteral("First"));
    QFont chosen(QStringLiteral("Liberation Serif"));
    chosen.setPointSizeF(15);
    chosen.setItalic(true);
    m_dialogs->answerFont(chosen);
    action("WPFont")->trigger();
    QTextCursor at(m_doc->textDocument());
    at.setPosition(2);
    QCOMPARE(at.charFormat().property(QTextFormat::FontFamilies).toStringList().value(0),
             QStringLiteral("Liberation Serif"));
    QCOMPARE(at.charFormat().fontPointSize(), 15.0);
    QVERIFY(at.charFormat().fontItalic());
    // The font toolbar shows and sets the font at the caret.
    m_editor->view()->setTextCursor(at);
    QCOMPARE(m_editor->findChild<QComboBox*>(QStringLiteral("WPFontSize"))->currentText(),
             QStringLiteral("15"));
    selectText(QStringLiteral("Second"));
    auto* size = m_editor->findChild<QComboBox*>(QStringLiteral("WPFontSize"));
    size->setEditText(QStringLiteral("20"));
    emit size->textActivated(QStringLiteral("20"));
    QTextCursor second(m_doc->textDocument());
    second.setPosition(m_doc->textDocument()->find(QStringLiteral("Second")).selectionStart() + 1);
    QCOMPARE(second.charFormat().fontPointSize(), 20.0);
}

void TRMWPEditorTest::importExport()
{
    QTemporaryDir dir;
    const QString source = dir.filePath(QStringLiteral("in.rtf"));
    QFile file(source);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{\\rtf1 Imported {\\b text}\\par}");
    file.close();
    QSignalSpy changed(&m_editor->document(), &store::PageDocument::contentChanged);
    m_dialogs->answerOpenFile(ui::Dialogs::FileChoice{source, 1});
    action("WPImport")->trigger();
    QCOMPARE(m_doc->textDocument()->toPlainText(), QStringLiteral("Imported text"));
    QVERIFY(changed.count() > 0); // an import by the user is an edit of the page
    QVERIFY(m_dialogs->lastFileRequest()->filters.first().contains(QStringLiteral("*.rtf")));

    for (int filter = 1; filter <= 4; ++filter) {
        const QString target = dir.filePath(QStringLiteral("out%1").arg(filter));
        m_dialogs->answerSaveFile(ui::Dialogs::FileChoice{target, filter});
        action("WPExport")->trigger();
        const char* suffixes[] = {"rtf", "html", "txt", "odt"};
        QVERIFY2(QFile::exists(target + QLatin1Char('.') + QLatin1String(suffixes[filter - 1])),
                 suffixes[filter - 1]);
    }
    QCOMPARE(m_dialogs->lastFileRequest()->filters.size(), 4);

    // A file that cannot be read: the page stays, the user is told.
    m_dialogs->answerOpenFile(
        ui::Dialogs::FileChoice{dir.filePath(QStringLiteral("missing.rtf")), 1});
    action("WPImport")->trigger();
    QVERIFY(m_dialogs->messages().last().contains(QStringLiteral("missing.rtf")));

    action("WPNew")->trigger();
    QCOMPARE(m_doc->textDocument()->toPlainText(), QString());
}

void TRMWPEditorTest::loadExternalFileWithoutConverter()
{
    QTemporaryDir dir;
    const QString doc = dir.filePath(QStringLiteral("old.wpd"));
    QFile file(doc);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("WPC binary");
    file.close();
    WordConverterOptions none;
    none.program = dir.filePath(QStringLiteral("absent/soffice"));
    m_doc->setConverterOptions(none);
    load(kPage);
    const QString before = m_doc->textDocument()->toPlainText();
    QSignalSpy changed(m_doc, &store::PageDocument::contentChanged);
    QVERIFY(!m_editor->LoadExternalFile(doc));
    QCOMPARE(m_dialogs->messages().size(), 1);
    QVERIFY(m_dialogs->messages().first().contains(QStringLiteral("no word-processor converter")));
    // Nothing was loaded: the page is as it was, and not marked modified.
    QCOMPARE(m_doc->textDocument()->toPlainText(), before);
    QCOMPARE(changed.count(), 0);

    // A converter that runs but writes something other than RTF changes nothing either.
    const QString fake = dir.filePath(QStringLiteral("fake-soffice"));
    QFile script(fake);
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\n"
                 "out=\"\"; prev=\"\"; for a in \"$@\"; do [ \"$prev\" = \"--outdir\" ] "
                 "&& out=\"$a\"; prev=\"$a\"; done\n"
                 "printf 'not rich text' > \"$out/old.rtf\"\n");
    script.close();
    QFile::setPermissions(fake, QFile::permissions(fake) | QFileDevice::ExeOwner);
    WordConverterOptions broken;
    broken.program = fake;
    m_doc->setConverterOptions(broken);
    QVERIFY(!m_editor->LoadExternalFile(doc));
    QCOMPARE(m_dialogs->messages().size(), 2);
    QVERIFY2(m_dialogs->messages().last().contains(QStringLiteral("old.wpd")),
             qPrintable(m_dialogs->messages().last()));
    QCOMPARE(m_doc->textDocument()->toPlainText(), before);
    QCOMPARE(changed.count(), 0);
}

void TRMWPEditorTest::rulerShowsAndDragsIndents()
{
    load(kPage);
    WPRuler* ruler = m_editor->ruler();
    QTextCursor cursor(m_doc->textDocument());
    QTextBlockFormat indented;
    indented.setLeftMargin(40);
    indented.setTextIndent(20);
    indented.setRightMargin(30);
    cursor.mergeBlockFormat(indented);
    m_editor->view()->setTextCursor(cursor);
    QCoreApplication::processEvents();
    WPRuler::Markers m = ruler->markers();
    QCOMPARE(m.left - m.textLeft, 40.0);
    QCOMPARE(m.firstLine - m.textLeft, 60.0);
    QVERIFY(qAbs((m.textRight - m.right) - 30.0) < 0.5);
    // Drag the left indent (bottom marker) right by about a centimetre: the first line stays.
    const int y = ruler->height() - 3;
    QTest::mousePress(ruler, Qt::LeftButton, {}, QPoint(int(m.left), y));
    QTest::mouseMove(ruler, QPoint(int(m.left + 38), y));
    QTest::mouseRelease(ruler, Qt::LeftButton, {}, QPoint(int(m.left + 38), y));
    QTextBlockFormat after = m_doc->textDocument()->begin().blockFormat();
    QVERIFY2(qAbs(after.leftMargin() - (40 + 96 / 2.54)) < 10,
             qPrintable(QString::number(after.leftMargin())));
    QVERIFY(qAbs(after.leftMargin() + after.textIndent() - 60) < 0.01);
    // A click in the text area sets a tab stop; dragging it off the ruler removes it.
    m = ruler->markers();
    const int tabX = int(m.textLeft + 200);
    QTest::mouseClick(ruler, Qt::LeftButton, {}, QPoint(tabX, y));
    QCOMPARE(m_doc->textDocument()->begin().blockFormat().tabPositions().size(), 1);
    m = ruler->markers();
    QTest::mousePress(ruler, Qt::LeftButton, {}, QPoint(int(m.tabs.first()), y));
    QTest::mouseRelease(ruler, Qt::LeftButton, {}, QPoint(int(m.tabs.first()), y + 40));
    QVERIFY(m_doc->textDocument()->begin().blockFormat().tabPositions().isEmpty());
}

void TRMWPEditorTest::picturesResizeWithProportions()
{
    load(kPage);
    QImage image(200, 100, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QTextCursor end(m_doc->textDocument());
    end.movePosition(QTextCursor::End);
    m_editor->view()->setTextCursor(end);
    m_editor->view()->insertPicture(image);
    const int position = m_doc->textDocument()->characterCount() - 2;
    QVERIFY(m_editor->view()->resizePicture(position, 100));
    QTextCursor at(m_doc->textDocument());
    at.setPosition(position + 1);
    QCOMPARE(at.charFormat().toImageFormat().width(), 100.0);
    QCOMPARE(at.charFormat().toImageFormat().height(), 50.0);
    // A click on the picture selects it; Delete removes it.
    QCoreApplication::processEvents();
    const QRect r = m_editor->view()->pictureRect(position);
    QVERIFY(r.isValid());
    QTest::mouseClick(m_editor->view()->viewport(), Qt::LeftButton, {}, r.center());
    QCOMPARE(m_editor->view()->selectedPicture(), position);
    QTest::keyClick(m_editor->view(), Qt::Key_Delete);
    QVERIFY(!m_doc->textDocument()->toPlainText().contains(QChar::ObjectReplacementCharacter));
}

void TRMWPEditorTest::tableColumnResize()
{
    QTextCursor cursor(m_doc->textDocument());
    QTextTable* table = cursor.insertTable(1, 3);
    for (int c = 0; c < 3; ++c) {
        table->cellAt(0, c).firstCursorPosition().insertText(QStringLiteral("cell %1").arg(c));
    }
    QCoreApplication::processEvents();
    QVERIFY(m_editor->view()->resizeTableColumn(table->firstPosition(), 1, 150));
    const QList<QTextLength> widths = table->format().columnWidthConstraints();
    QCOMPARE(widths.size(), 3);
    QCOMPARE(widths[1].type(), QTextLength::FixedLength);
    QCOMPARE(widths[1].rawValue(), 150.0);
    QCOMPARE(widths[0].type(), QTextLength::FixedLength);
}

void TRMWPEditorTest::setLanguage()
{
    QTemporaryDir dir;
    const QString xml = dir.filePath(QStringLiteral("WP.XML"));
    m_editor->setLanguageFile(xml);
    m_editor->SetLanguage(QStringLiteral("FR")); // no file: nothing happens, nothing is shown
    QCOMPARE(action("WPFont")->text(), QStringLiteral("Fonts..."));
    QFile file(xml);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><loc>"
        "<FR><string id=\"Fonts...\">Polices...</string><string id=\"Table\">Tableau</string>"
        "<string id=\"Paragraphs\">Paragraphes</string></FR>"
        "<ESN><string id=\"Fonts...\">Fuentes...</string></ESN></loc>");
    file.close();
    m_editor->SetLanguage(QStringLiteral("FR"));
    QCOMPARE(action("WPFont")->text(), QStringLiteral("Polices..."));
    QCOMPARE(action("WPBold")->text(), QStringLiteral("Bold")); // no translation: English stays
    QCOMPARE(m_editor->popupMenu()->actions().last()->text(), QStringLiteral("Tableau"));
    m_editor->SetLanguage(QStringLiteral("PLK")); // no /loc/PLK: French stays
    QCOMPARE(action("WPFont")->text(), QStringLiteral("Polices..."));
    m_editor->SetLanguage(QStringLiteral("ESN"));
    QCOMPARE(action("WPFont")->text(), QStringLiteral("Fuentes..."));
    m_dialogs->answerExec([](QDialog*) { return int(QDialog::Rejected); });
    m_editor->SetLanguage(QStringLiteral("FR"));
    action("WPParagraph")->trigger();
    QCOMPARE(m_dialogs->shown().back().text, QStringLiteral("Paragraphes"));
    QVERIFY(m_dialogs->messages().isEmpty());
}

void TRMWPEditorTest::printToPdf()
{
    load(kPage);
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("page.pdf"));
    QPrinter* printer = m_editor->printer();
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setOutputFileName(pdf);
    action("WPPrint")->trigger();
    QFile file(pdf);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.read(5) == "%PDF-");
    if (QPrinterInfo::availablePrinterNames().isEmpty()) {
        printer->setOutputFileName(QString());
        printer->setOutputFormat(QPrinter::NativeFormat);
        action("WPPrint")->trigger();
        QVERIFY(m_dialogs->messages().contains(QStringLiteral("No printer is installed.")));
    }
    m_dialogs->answerPrint(false);
    action("WPPrinterSetup")->trigger();
    QCOMPARE(m_dialogs->shown().back().kind, QStringLiteral("print setup"));
}

void TRMWPEditorTest::formActivate()
{
    // Activating the window that holds the editor gives the editor that window's colour.
    {
        QWidget window;
        QPalette palette = window.palette();
        palette.setColor(QPalette::Window, QColor(10, 120, 60));
        window.setPalette(palette);
        auto* layout = new QVBoxLayout(&window);
        TRMWPEditor* docked = new TRMWPEditor(&window);
        layout->addWidget(docked);
        docked->setPalette(QPalette(QColor(250, 250, 250)));
        QCOMPARE(docked->palette().color(QPalette::Window), QColor(250, 250, 250));
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTRY_COMPARE(docked->palette().color(QPalette::Window), QColor(10, 120, 60));
        QCOMPARE(docked->formatToolBar()->palette().color(QPalette::Window), QColor(10, 120, 60));
        QVERIFY(docked->autoFillBackground());
    }

    m_editor->FormActivate(QColor(200, 220, 240));
    QCOMPARE(m_editor->palette().color(QPalette::Window), QColor(200, 220, 240));
    QCOMPARE(m_editor->formatToolBar()->palette().color(QPalette::Window), QColor(200, 220, 240));
    QVERIFY(m_editor->autoFillBackground());
}

QTEST_MAIN(TRMWPEditorTest)
#include "TRMWPEditorTest.moc"
