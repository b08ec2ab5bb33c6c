// The diagram editor in the main window on the demo report: showing the concept map changes
// nothing, an edit is stored when the selection moves on, and the cancel button drops unsaved
// changes by showing the stored page again.

#include "ScriptedDialogs.h"

#include "app/EditorArea.h"
#include "app/OutlineItemModel.h"
#include "app/OutlineView.h"
#include "app/PageDisplay.h"
#include "app/TKestrumM.h"
#include "cli/DemoReport.h"
#include "cli/ProjectSession.h"
#include "editors/diagram/DiagramStream.h"
#include "editors/diagram/widgets/TRMDiagramEditor.h"
#include "store/OutlineModel.h"
#include "store/PageTable.h"
#include "store/TRMData.h"

#include <QAction>
#include <QTemporaryDir>
#include <QtTest>

using namespace kestrum;
using store::OutlineNode;

class DiagramInWindowTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<test::ScopedScriptedDialogs> m_dialogs;
    std::unique_ptr<app::TKestrumM> m_window;

    void select(const OutlineNode* node)
    {
        m_window->outlineView()->setCurrentIndex(m_window->outlineModel()->indexFor(node));
        QApplication::processEvents();
    }
    OutlineNode* nodeOfKind(qint32 kind) const
    {
        for (OutlineNode* node : m_window->data().outline().nodesInOrder()) {
            if (node->parent() && node->imageIndex() == kind) {
                return node;
            }
        }
        return nullptr;
    }
    diagram::TRMDiagramEditor* editor() const
    {
        return qobject_cast<diagram::TRMDiagramEditor*>(
            m_window->editors().panel(store::EditorKind::Diagram));
    }
    QByteArray stored(const OutlineNode* node) const
    {
        return *m_window->data().table()->readContent(node->data()).value();
    }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_dialogs = std::make_unique<test::ScopedScriptedDialogs>();
        const QString file = m_dir->filePath(QStringLiteral("demo.kst"));
        {
            cli::ProjectSession session;
            cli::DemoReport::build(session.data(), file);
            session.data().CloseFile();
        }
        app::TKestrumM::Options options;
        options.settingsPath = m_dir->filePath(QStringLiteral("Kestrum.INI"));
        options.pollHandOff = false;
        options.restoreLayout = false;
        m_window = std::make_unique<app::TKestrumM>(std::move(options));
        m_window->resize(1200, 800);
        m_window->show();
        QVERIFY(m_window->openProject(file));
    }
    void cleanup()
    {
        m_window.reset();
        QVERIFY2(m_dialogs->unexpected().isEmpty(),
                 qPrintable(m_dialogs->unexpected().join(QLatin1Char(','))));
        m_dialogs.reset();
        m_dir.reset();
    }

    void showingTheDiagramChangesNothing()
    {
        OutlineNode* page = nodeOfKind(store::PageType::Diagram);
        QVERIFY(page);
        const QByteArray before = stored(page);
        QVERIFY(!editor()); // made when first needed
        select(page);
        QVERIFY(editor());
        QVERIFY(editor()->isVisible());
        QCOMPARE(editor()->diagramDocument().diagram().blocks().size(), std::size_t(14));
        QVERIFY(!m_window->pageDisplay().contentModified());
        select(nodeOfKind(store::PageType::Folder));
        QVERIFY(!editor()->isVisible());
        QCOMPARE(stored(page), before);
    }

    void editIsStoredWhenLeaving()
    {
        OutlineNode* page = nodeOfKind(store::PageType::Diagram);
        select(page);
        editor()->action(QStringLiteral("btnDiagramText"))->trigger();
        QVERIFY(m_window->pageDisplay().contentModified());
        select(nodeOfKind(store::PageType::Folder));
        const auto back = diagram::DiagramStream::read(stored(page));
        QVERIFY(back.ok());
        QVERIFY(!back->linkTextsVisible());
        // Shown again, the text button is up as the stored page says.
        select(page);
        QVERIFY(!editor()->action(QStringLiteral("btnDiagramText"))->isChecked());
    }

    void cancelDropsUnsavedChanges()
    {
        OutlineNode* page = nodeOfKind(store::PageType::Diagram);
        select(page);
        const QByteArray before = stored(page);
        editor()->action(QStringLiteral("btnDiagramZoomIn"))->trigger();
        editor()->diagramDocument().setSelection({0}, {});
        editor()->action(QStringLiteral("Delete1"))->trigger();
        QCOMPARE(editor()->diagramDocument().diagram().blocks().size(), std::size_t(13));
        QVERIFY(m_window->pageDisplay().contentModified());
        editor()->action(QStringLiteral("btnDiagramCancel"))->trigger();
        QVERIFY(!editor()->diagramChanged());
        QCOMPARE(editor()->diagramDocument().diagram().blocks().size(), std::size_t(14));
        QCOMPARE(editor()->diagramDocument().diagram().zoom(), 100);
        QVERIFY(!m_window->pageDisplay().contentModified());
        QCOMPARE(stored(page), before);
        QVERIFY(editor()->isVisible());
    }
};

QTEST_MAIN(DiagramInWindowTest)
#include "DiagramInWindowTest.moc"
