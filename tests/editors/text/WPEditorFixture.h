#pragma once

// What the text page editor's tests share: an editor shown with scripted dialogs, a sample
// page and small helpers.

#include "editors/text/ColourTable.h"
#include "editors/text/HiddenTextObject.h"
#include "editors/text/TextPageDocument.h"
#include "editors/text/TextProperties.h"
#include "editors/text/widgets/TRMWPEditor.h"
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

namespace kestrum::text::test_support {

inline const QByteArray kPage =
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

inline QStringList menuTexts(const QMenu* menu)
{
    QStringList out;
    for (QAction* a : menu->actions()) {
        out << (a->isSeparator() ? QStringLiteral("-") : a->text());
    }
    return out;
}

// An editor shown at 800 x 600 with scripted dialogs; a test fails when a dialog came that
// no script expected.
class WPEditorFixture : public QObject
{
protected:
    void setUp()
    {
        m_dialogs = std::make_unique<test::ScopedScriptedDialogs>();
        m_editor = std::make_unique<TRMWPEditor>();
        m_editor->resize(800, 600);
        m_editor->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_editor.get()));
        m_doc = &m_editor->pageDocument();
        QCOMPARE(&m_editor->document(), static_cast<store::PageDocument*>(m_doc));
    }

    void tearDown()
    {
        QVERIFY2(m_dialogs->unexpected().isEmpty(),
                 qPrintable(m_dialogs->unexpected().join(QLatin1String(", "))));
        m_editor.reset();
        m_dialogs.reset();
    }

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

} // namespace kestrum::text::test_support
