// The project store's records and page content: adding and deleting records, the page
// documents' reads and writes, and comments.

#include "TRMData.h"

#include "common/ScopedFlag.h"
#include "store/PageDocument.h"
#include "store/PageTable.h"
#include "store/SqliteDatabase.h"
#include "store/StoreError.h"

#include <QFileInfo>

namespace kestrum::store {

// ---- records -----------------------------------------------------------------------------------

std::optional<qint32> TRMData::locate(qint32 pageId)
{
    if (pageId == -1) {
        if (m_currentPageId != -1 && m_table->exists(m_currentPageId)) {
            return m_currentPageId;
        }
        return std::nullopt;
    }
    if (!m_table->exists(pageId)) {
        return std::nullopt;
    }
    m_currentPageId = pageId;
    return pageId;
}

qint32 TRMData::appendRecord(qint32 pageType, const QString& info, const QByteArray& content,
                             const QString& comment)
{
    requireWritable();
    if (!usable()) {
        throw StoreError(QStringLiteral("No project file is open"));
    }
    const qint32 id = m_table->insert(now(), info, pageType, content, comment);
    m_currentPageId = id;
    return id;
}

std::vector<qint32> TRMData::appendRecords(const std::vector<NewPage>& pages)
{
    requireWritable();
    if (!usable()) {
        throw StoreError(QStringLiteral("No project file is open"));
    }
    std::vector<qint32> ids = m_table->insertMany(pages);
    if (!ids.empty()) {
        m_currentPageId = ids.back();
    }
    return ids;
}

qint32 TRMData::AddRecord(qint32 pageType, const QString& title, const QString& sourceFile)
{
    requireWritable();
    if (!usable()) {
        return -1;
    }
    common::ScopedFlag adding(m_adding);
    m_unsavedImport.reset();
    SqliteTransaction tx(*m_db);
    const qint32 id = m_table->insert(now(), title, pageType, {}, {});
    m_currentPageId = id;

    // Only the kinds a file can be added as take content here; the others start empty.
    const EditorKind kind =
        pageType <= PageType::TextVariant7 ? editorKindFor(pageType) : EditorKind::None;
    std::unique_ptr<PageDocument> document =
        kind == EditorKind::None ? nullptr : m_kinds.makeDocument(kind);
    if (document) {
        bool loaded = false;
        if (!sourceFile.isEmpty()) {
            const Status imported = document->importFile(sourceFile);
            loaded = imported.ok();
            if (!loaded) {
                emit warning(imported.error().isEmpty()
                                 ? QStringLiteral("Cannot import \"%1\"").arg(sourceFile)
                                 : imported.error());
                document->clear();
            }
        }
        // An empty text page is stored as an empty document, and the kinds that say so store
        // whatever they hold; other kinds store what they imported, unless the kind keeps
        // that import unsaved for now.
        const PageKind* entry = m_kinds.find(kind);
        if (kind == EditorKind::Text || (entry && entry->storedWhenAdded) ||
            (loaded && document->storesImportImmediately(sourceFile))) {
            savePage(id, *document);
        } else if (loaded) {
            Result<QByteArray> bytes = document->writeContent();
            if (!bytes) {
                throw StoreError(
                    QStringLiteral("Cannot import \"%1\": %2").arg(sourceFile, bytes.error()));
            }
            m_unsavedImport = std::move(*bytes);
        }
    }
    tx.commit();
    return id;
}

qint32 TRMData::AddWPRecord(const QString& title, qint32 pageType)
{
    requireWritable();
    if (!usable()) {
        return -1;
    }
    common::ScopedFlag adding(m_adding);
    SqliteTransaction tx(*m_db);
    const qint32 id = m_table->insert(now(), title, pageType, {}, {});
    m_currentPageId = id;
    if (std::unique_ptr<PageDocument> text = m_kinds.makeDocument(EditorKind::Text)) {
        savePage(id, *text);
    }
    tx.commit();
    return id;
}

void TRMData::DeleteRecord(qint32 pageId)
{
    requireWritable();
    if (!usable()) {
        return;
    }
    if (const auto id = locate(pageId)) {
        m_table->remove(*id);
        if (m_currentPageId == *id) {
            m_currentPageId = -1;
        }
    }
}

void TRMData::runInTransaction(const std::function<void()>& work)
{
    requireWritable();
    if (!usable()) {
        throw StoreError(QStringLiteral("No project file is open"));
    }
    SqliteTransaction tx(*m_db);
    work();
    tx.commit();
}

qint32 TRMData::pageTypeForFile(const QString& fileName) const
{
    return m_kinds.pageTypeForFile(fileName);
}

OutlineNode* TRMData::AppendFile(const QString& fileName, OutlineNode* node, bool asChild)
{
    requireWritable();
    if (!usable() || !node) {
        return nullptr;
    }
    OutlineNodeData data;
    data.caption = QFileInfo(fileName).completeBaseName();
    data.imageIndex = pageTypeForFile(fileName);
    data.data = -1;
    if (!asChild && !node->parent()) {
        asChild = true; // nothing can stand beside the project node
    }
    OutlineNode* added = asChild ? m_outline.addChild(node, data) : m_outline.addAfter(node, data);
    m_outline.setExpanded(node, true);
    m_outline.setSelected(added);
    m_currentNodeIndex = m_outline.indexOf(added);
    try {
        SqliteTransaction tx(*m_db);
        m_outline.setData(added, AddRecord(data.imageIndex, data.caption, fileName));
        SaveTree();
        tx.commit();
    } catch (...) {
        m_outline.removeNode(added);
        m_currentNodeIndex = -1;
        throw;
    }
    markModified();
    return added;
}

// ---- page content ------------------------------------------------------------------------------

std::optional<qint32> TRMData::find(qint32 pageId) const
{
    const qint32 id = pageId == -1 ? m_currentPageId : pageId;
    if (id == -1 || !m_table->exists(id)) {
        return std::nullopt;
    }
    return id;
}

std::optional<StoredPage> TRMData::readPage(qint32 pageId) const
{
    if (!usable()) {
        return std::nullopt;
    }
    const std::optional<qint32> id = find(pageId);
    if (!id) {
        return std::nullopt;
    }
    StoredPage page;
    page.pageId = *id;
    page.type = m_table->readType(*id).value_or(-1);
    page.info = m_table->readInfo(*id).value_or(QString());
    page.content = m_table->readContent(*id).value_or(QByteArray());
    return page;
}

bool TRMData::writePageContent(qint32 pageId, const QByteArray& content)
{
    requireWritable();
    if (!usable()) {
        return false;
    }
    const std::optional<qint32> id = locate(pageId);
    return id && m_table->writeContent(*id, content);
}

bool TRMData::savePage(qint32 pageId, PageDocument& document)
{
    requireWritable();
    if (!usable()) {
        return false;
    }
    const std::optional<qint32> id = locate(pageId);
    if (!id) {
        return false;
    }
    const Result<QByteArray> bytes = document.writeContent();
    if (!bytes) {
        throw StoreError(QStringLiteral("Cannot save page %1 of \"%2\": %3")
                             .arg(*id)
                             .arg(m_fileName, bytes.error()));
    }
    return m_table->writeContent(*id, *bytes);
}

bool TRMData::loadPage(qint32 pageId, PageDocument& document)
{
    if (!usable()) {
        return false;
    }
    const std::optional<qint32> id = locate(pageId);
    if (!id) {
        const PageKind* kind = m_kinds.find(document.kind());
        if (kind && kind->clearedWhenMissing) {
            document.clear();
        }
        return false;
    }
    document.clear(); // a page that cannot be read leaves the editor empty
    const std::optional<StoredPage> page = readPage(*id);
    if (!page) {
        return false;
    }
    document.setPageInfo(page->info);
    if (const Status read = document.readContent(page->content); !read) {
        document.clear();
        throw StoreError(QStringLiteral("Page %1 of \"%2\" cannot be shown: %3")
                             .arg(page->pageId)
                             .arg(m_fileName, read.error()));
    }
    return true;
}

bool TRMData::SaveComment(qint32 pageId, const QString& text)
{
    requireWritable();
    if (!usable()) {
        return false;
    }
    const std::optional<qint32> id = locate(pageId);
    return id && m_table->writeComment(*id, text);
}

bool TRMData::GetComment(qint32 pageId, QString* text)
{
    if (!usable()) {
        return false;
    }
    const std::optional<qint32> id = locate(pageId);
    if (!id) {
        return false;
    }
    *text = m_table->readComment(*id).value_or(QString());
    return true;
}

} // namespace kestrum::store
