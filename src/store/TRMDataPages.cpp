// The project store's records and page content: adding and deleting records, the page
// documents' reads and writes, and comments.

#include "TRMData.h"

#include "common/ScopedFlag.h"
#include "store/PageDocument.h"
#include "store/PageTable.h"
#include "store/SqliteDatabase.h"

#include <QFileInfo>

namespace kestrum::store {

// ---- records -----------------------------------------------------------------------------------

namespace {
const QString kNoProject = QStringLiteral("No project file is open");
} // namespace

Result<std::optional<qint32>> TRMData::locate(qint32 pageId)
{
    if (!usable()) {
        return std::optional<qint32>();
    }
    const qint32 id = pageId == -1 ? m_currentPageId : pageId;
    if (id == -1) {
        return std::optional<qint32>();
    }
    const Result<bool> exists = m_table->exists(id);
    if (!exists.ok()) {
        return fail(exists.error());
    }
    if (!*exists) {
        return std::optional<qint32>();
    }
    m_currentPageId = id;
    return std::optional<qint32>(id);
}

Result<std::optional<qint32>> TRMData::locateForWriting(qint32 pageId)
{
    if (Status writable = requireWritable(); !writable) {
        return fail(writable.error());
    }
    return locate(pageId);
}

Result<qint32> TRMData::appendRecord(qint32 pageType, const QString& info,
                                     const QByteArray& content, const QString& comment)
{
    if (Status writable = requireWritable(); !writable) {
        return fail(writable.error());
    }
    if (!usable()) {
        return fail(kNoProject);
    }
    const Result<qint32> id = m_table->insert(now(), info, pageType, content, comment);
    if (id) {
        m_currentPageId = *id;
    }
    return id;
}

Result<std::vector<qint32>> TRMData::appendRecords(const std::vector<NewPage>& pages)
{
    if (Status writable = requireWritable(); !writable) {
        return fail(writable.error());
    }
    if (!usable()) {
        return fail(kNoProject);
    }
    Result<std::vector<qint32>> ids = m_table->insertMany(pages);
    if (ids && !ids->empty()) {
        m_currentPageId = ids->back();
    }
    return ids;
}

Result<qint32> TRMData::AddRecord(qint32 pageType, const QString& title, const QString& sourceFile)
{
    if (Status writable = requireWritable(); !writable) {
        return fail(writable.error());
    }
    if (!usable()) {
        return -1;
    }
    common::ScopedFlag adding(m_adding);
    m_unsavedImport.reset();
    SqliteTransaction tx(*m_db);
    if (Status begun = tx.begin(); !begun) {
        return fail(begun.error());
    }
    const Result<qint32> id = m_table->insert(now(), title, pageType, {}, {});
    if (!id.ok()) {
        return id;
    }
    m_currentPageId = *id;

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
            if (const Result<bool> saved = savePage(*id, *document); !saved.ok()) {
                return fail(saved.error());
            }
        } else if (loaded) {
            Result<QByteArray> bytes = document->writeContent();
            if (!bytes) {
                return fail(
                    QStringLiteral("Cannot import \"%1\": %2").arg(sourceFile, bytes.error()));
            }
            m_unsavedImport = std::move(*bytes);
        }
    }
    if (Status committed = tx.commit(); !committed) {
        m_unsavedImport.reset();
        return fail(committed.error());
    }
    return id;
}

Result<qint32> TRMData::AddWPRecord(const QString& title, qint32 pageType)
{
    if (Status writable = requireWritable(); !writable) {
        return fail(writable.error());
    }
    if (!usable()) {
        return -1;
    }
    common::ScopedFlag adding(m_adding);
    SqliteTransaction tx(*m_db);
    if (Status begun = tx.begin(); !begun) {
        return fail(begun.error());
    }
    const Result<qint32> id = m_table->insert(now(), title, pageType, {}, {});
    if (!id.ok()) {
        return id;
    }
    m_currentPageId = *id;
    if (std::unique_ptr<PageDocument> text = m_kinds.makeDocument(EditorKind::Text)) {
        if (const Result<bool> saved = savePage(*id, *text); !saved.ok()) {
            return fail(saved.error());
        }
    }
    if (Status committed = tx.commit(); !committed) {
        return fail(committed.error());
    }
    return id;
}

Status TRMData::DeleteRecord(qint32 pageId)
{
    const Result<std::optional<qint32>> id = locateForWriting(pageId);
    if (!id.ok()) {
        return fail(id.error());
    }
    if (*id) {
        if (const Result<bool> removed = m_table->remove(**id); !removed.ok()) {
            return fail(removed.error());
        }
        if (m_currentPageId == **id) {
            m_currentPageId = -1;
        }
    }
    return {};
}

Status TRMData::runInTransaction(const std::function<Status()>& work)
{
    if (Status writable = requireWritable(); !writable) {
        return writable;
    }
    if (!usable()) {
        return fail(kNoProject);
    }
    SqliteTransaction tx(*m_db);
    if (Status begun = tx.begin(); !begun) {
        return begun;
    }
    if (Status done = work(); !done) {
        return done;
    }
    return tx.commit();
}

qint32 TRMData::pageTypeForFile(const QString& fileName) const
{
    return m_kinds.pageTypeForFile(fileName);
}

Result<OutlineNode*> TRMData::AppendFile(const QString& fileName, OutlineNode* node, bool asChild)
{
    if (Status writable = requireWritable(); !writable) {
        return fail(writable.error());
    }
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
    const Status stored = runInTransaction([&]() -> Status {
        const Result<qint32> id = AddRecord(data.imageIndex, data.caption, fileName);
        if (!id.ok()) {
            return fail(id.error());
        }
        m_outline.setData(added, *id);
        return SaveTree();
    });
    if (!stored) {
        m_outline.removeNode(added);
        m_currentNodeIndex = -1;
        return fail(stored.error());
    }
    markModified();
    return added;
}

// ---- page content ------------------------------------------------------------------------------

Result<std::optional<qint32>> TRMData::find(qint32 pageId) const
{
    const qint32 id = pageId == -1 ? m_currentPageId : pageId;
    if (id == -1) {
        return std::optional<qint32>();
    }
    const Result<bool> exists = m_table->exists(id);
    if (!exists.ok()) {
        return fail(exists.error());
    }
    return *exists ? std::optional<qint32>(id) : std::nullopt;
}

Result<std::optional<StoredPage>> TRMData::readPage(qint32 pageId) const
{
    if (!usable()) {
        return std::optional<StoredPage>();
    }
    const Result<std::optional<qint32>> id = find(pageId);
    if (!id.ok()) {
        return fail(id.error());
    }
    if (!*id) {
        return std::optional<StoredPage>();
    }
    const Result<std::optional<qint32>> type = m_table->readType(**id);
    if (!type.ok()) {
        return fail(type.error());
    }
    const Result<std::optional<QString>> info = m_table->readInfo(**id);
    if (!info.ok()) {
        return fail(info.error());
    }
    const Result<std::optional<QByteArray>> content = m_table->readContent(**id);
    if (!content.ok()) {
        return fail(content.error());
    }
    StoredPage page;
    page.pageId = **id;
    page.type = type->value_or(-1);
    page.info = info->value_or(QString());
    page.content = content->value_or(QByteArray());
    return std::optional<StoredPage>(std::move(page));
}

Result<bool> TRMData::writePageContent(qint32 pageId, const QByteArray& content)
{
    const Result<std::optional<qint32>> id = locateForWriting(pageId);
    if (!id.ok()) {
        return fail(id.error());
    }
    return *id ? m_table->writeContent(**id, content) : Result<bool>(false);
}

Result<bool> TRMData::savePage(qint32 pageId, PageDocument& document)
{
    const Result<std::optional<qint32>> id = locateForWriting(pageId);
    if (!id.ok()) {
        return fail(id.error());
    }
    if (!*id) {
        return false;
    }
    const Result<QByteArray> bytes = document.writeContent();
    if (!bytes) {
        return fail(QStringLiteral("Cannot save page %1 of \"%2\": %3")
                        .arg(**id)
                        .arg(m_fileName, bytes.error()));
    }
    return m_table->writeContent(**id, *bytes);
}

Result<bool> TRMData::loadPage(qint32 pageId, PageDocument& document)
{
    if (!usable()) {
        return false; // no project: the editor is left as it is
    }
    const Result<std::optional<qint32>> id = locate(pageId);
    if (!id.ok()) {
        return fail(id.error());
    }
    if (!*id) {
        const PageKind* kind = m_kinds.find(document.kind());
        if (kind && kind->clearedWhenMissing) {
            document.clear();
        }
        return false;
    }
    document.clear(); // a page that cannot be read leaves the editor empty
    const Result<std::optional<StoredPage>> page = readPage(**id);
    if (!page.ok()) {
        return fail(page.error());
    }
    if (!*page) {
        return false;
    }
    document.setPageInfo((*page)->info);
    if (const Status read = document.readContent((*page)->content); !read) {
        document.clear();
        return fail(QStringLiteral("Page %1 of \"%2\" cannot be shown: %3")
                        .arg((*page)->pageId)
                        .arg(m_fileName, read.error()));
    }
    return true;
}

Result<bool> TRMData::SaveComment(qint32 pageId, const QString& text)
{
    const Result<std::optional<qint32>> id = locateForWriting(pageId);
    if (!id.ok()) {
        return fail(id.error());
    }
    return *id ? m_table->writeComment(**id, text) : Result<bool>(false);
}

Result<std::optional<QString>> TRMData::GetComment(qint32 pageId)
{
    const Result<std::optional<qint32>> id = locate(pageId);
    if (!id.ok()) {
        return fail(id.error());
    }
    if (!*id) {
        return std::optional<QString>();
    }
    const Result<std::optional<QString>> comment = m_table->readComment(**id);
    if (!comment.ok()) {
        return comment;
    }
    return std::optional<QString>(comment->value_or(QString()));
}

} // namespace kestrum::store
