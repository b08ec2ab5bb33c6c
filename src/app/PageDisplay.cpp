#include "PageDisplay.h"
#include "ui/WaitCursor.h"

#include "app/EditorArea.h"
#include "store/PageDocument.h"
#include "store/TRMData.h"
#include "ui/Dialogs.h"
#include "ui/EditorPanel.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QPlainTextEdit>

namespace kestrum::app {

namespace PageType = store::PageType;

namespace {

// Pending window messages run, but no user input: a click must not start another show.
void letPendingMessagesRun()
{
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

} // namespace

PageDisplay::PageDisplay(store::TRMData& data, EditorArea& editors, QPlainTextEdit& comment,
                         QWidget* dialogParent)
    : QObject(&editors), m_data(data), m_editors(editors), m_comment(comment),
      m_dialogParent(dialogParent)
{
    connect(&m_editors, &EditorArea::contentChanged, this, &PageDisplay::onContentChanged);
    connect(&m_comment, &QPlainTextEdit::textChanged, this, [this] {
        if (!m_loading) {
            m_commentModified = true;
        }
    });
}

void PageDisplay::onContentChanged()
{
    // Loading a page, or filling a new record, never marks it modified.
    if (m_loading || m_data.isAdding()) {
        return;
    }
    if (m_data.isReadOnly()) {
        // An edit that cannot be stored is not taken: the page is shown again as stored.
        if (!m_reloadPending) {
            m_reloadPending = true;
            QMetaObject::invokeMethod(
                this,
                [this] {
                    m_reloadPending = false;
                    m_contentModified = false;
                    ShowNode();
                    ui::dialogs().information(
                        m_dialogParent,
                        QStringLiteral("This project is read-only: changes cannot be saved."));
                },
                Qt::QueuedConnection);
        }
        return;
    }
    m_contentModified = true;
}

void PageDisplay::clearComment()
{
    const bool wasLoading = m_loading;
    m_loading = true;
    m_comment.clear();
    m_loading = wasLoading;
    m_commentModified = false;
}

bool PageDisplay::SaveModif()
{
    bool ok = true;
    const int index = m_data.currentNodeIndex();
    const store::OutlineNode* node = m_data.outline().nodeAt(index);
    if (index >= 0 && node && m_contentModified) {
        m_data.markModified();
        if (ui::EditorPanel* panel = m_editors.panel(store::editorKindFor(node->imageIndex()))) {
            if (const Result<bool> saved = m_data.savePage(node->data(), panel->document());
                !saved.ok()) {
                qWarning("%s", qPrintable(saved.error()));
                ui::dialogs().warning(m_dialogParent, QStringLiteral("Cannot save data!"));
                ok = false;
            }
        }
    }
    // Comments of timeline and word cloud pages are shown but never written back.
    if (index >= 0 && node && m_commentModified &&
        (node->imageIndex() < PageType::Timeline || node->imageIndex() == PageType::Diagram)) {
        if (const Result<bool> saved = m_data.SaveComment(node->data(), m_comment.toPlainText());
            !saved.ok()) {
            qWarning("%s", qPrintable(saved.error()));
            ui::dialogs().warning(m_dialogParent, QStringLiteral("Cannot save data!"));
            ok = false;
        }
    }
    m_contentModified = false;
    m_commentModified = false;
    return ok;
}

void PageDisplay::ShowNode()
{
    store::OutlineNode* node = m_data.outline().selected();
    if (!node || !m_data.isOpen()) {
        return;
    }
    const qint32 kind = node->imageIndex();
    SaveModif();
    m_editors.ShowEditorNo(kind);
    letPendingMessagesRun();
    {
        ui::WaitCursor wait;
        m_loading = true;
        // The node may have gone while messages ran.
        node = m_data.outline().selected();
        const qint32 pageId = node ? node->data() : -1;
        const store::EditorKind editorKind = store::editorKindFor(kind);
        if (ui::EditorPanel* panel = m_editors.panel(editorKind)) {
            if (m_editors.clearedBeforeLoading(editorKind)) {
                // Emptied, and the window repainted, before a large page loads.
                panel->document().clear();
                letPendingMessagesRun();
            }
            if (const Result<bool> loaded = m_data.loadPage(pageId, panel->document());
                !loaded.ok()) {
                ui::dialogs().warning(m_dialogParent, loaded.error());
            }
        }

        m_comment.clear();
        if (kind == PageType::Folder) {
            m_comment.setEnabled(false);
        } else {
            m_comment.setEnabled(true);
            // Every node's comment is the one of the record its data names; for the project
            // node that is the record whose id equals the last selected index.
            const Result<std::optional<QString>> text = m_data.GetComment(pageId);
            if (!text.ok()) {
                ui::dialogs().warning(m_dialogParent, text.error());
            } else if (*text) {
                m_comment.setPlainText(**text);
            }
        }
        m_contentModified = false;
        m_commentModified = false;
        m_loading = false;
        m_data.setCurrentNodeIndex(node ? m_data.outline().indexOf(node) : -1);
    }
    if (m_afterShow) {
        m_afterShow();
    }
}

} // namespace kestrum::app
