// The text page editor's dialogs and table commands, headless with scripted dialogs.

#include "WPEditorFixture.h"

using namespace kestrum;
using namespace kestrum::text;
using namespace kestrum::text::test_support;

class WPEditorDialogsTest : public WPEditorFixture
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }
    void paragraphDialog();
    void bulletsDialog();
    void tabStopsDialog();
    void pageSetupDialog();
    void bordersDialogAndCommands();
    void tableCommands();
    void tabMovesThroughCells();
    void findAndReplace();
    void fontDialogAndLists();
};

void WPEditorDialogsTest::paragraphDialog()
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

void WPEditorDialogsTest::bulletsDialog()
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

void WPEditorDialogsTest::tabStopsDialog()
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

void WPEditorDialogsTest::pageSetupDialog()
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

void WPEditorDialogsTest::bordersDialogAndCommands()
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

void WPEditorDialogsTest::tableCommands()
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

void WPEditorDialogsTest::tabMovesThroughCells()
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

void WPEditorDialogsTest::findAndReplace()
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

void WPEditorDialogsTest::fontDialogAndLists()
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

QTEST_MAIN(WPEditorDialogsTest)
#include "WPEditorDialogsTest.moc"
