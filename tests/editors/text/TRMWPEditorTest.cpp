// The text page editor, headless with scripted dialogs: its actions and menus, the colour
// rules, the modified-flag rules, the dialogs, tables, the ruler, pictures, language and print.

#include "WPEditorFixture.h"

using namespace kestrum;
using namespace kestrum::text;
using namespace kestrum::text::test_support;

class TRMWPEditorTest : public WPEditorFixture
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }
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
    void importExport();
    void loadExternalFileWithoutConverter();
    void rulerShowsAndDragsIndents();
    void picturesResizeWithProportions();
    void tableColumnResize();
    void setLanguage();
    void printToPdf();
    void formActivate();
};

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
