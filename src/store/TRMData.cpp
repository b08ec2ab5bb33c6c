#include "TRMData.h"
#include "common/ScopedFlag.h"

#include "common/DayCount.h"
#include "common/IniFile.h"
#include "common/TabFields.h"
#include "store/HandOffFile.h"
#include "store/KeptItemsFile.h"
#include "store/OutlineStream.h"
#include "store/PageDocument.h"
#include "store/PageTable.h"
#include "store/SqliteDatabase.h"
#include "store/StoreError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <algorithm>

namespace kestrum::store {

namespace {

const QString kOptions = QStringLiteral("OPTIONS");
const QString kPublicFileName = QStringLiteral("Public File Name");
const QString kSupModified = QStringLiteral("SUP Modified");
const QString kNewItems = QStringLiteral("New items");
const QString kDefaultRootCaption = QStringLiteral("Project name");

OutlineNodeData folderNode(const QString& caption)
{
    OutlineNodeData d;
    d.caption = caption;
    d.imageIndex = PageType::Folder;
    d.data = -1;
    return d;
}

// Opens a project file and checks it without touching the open project, so that a file that
// cannot be used leaves everything as it was.
std::unique_ptr<OutlineNode> readStoredOutline(PageTable& table, const QString& fileName,
                                               QByteArray* stored)
{
    const std::optional<qint32> first = table.firstId();
    if (!first) {
        return {};
    }
    *stored = table.readContent(*first).value_or(QByteArray());
    QString why;
    std::unique_ptr<OutlineNode> root = OutlineStream::read(*stored, &why);
    if (!root && !why.isEmpty()) {
        throw StoreError(QStringLiteral("Cannot open \"%1\": %2").arg(fileName, why));
    }
    return root;
}

} // namespace

TRMData::TRMData(QObject* parent)
    : QObject(parent), m_outline(this), m_clock(&common::currentDayCount)
{
    m_history.setOnChange([this] { emit historyChanged(); });
}

TRMData::~TRMData()
{
    // Teardown without the window: nothing is left to save but the outline, and nobody is left
    // to tell.
    blockSignals(true);
    m_outline.blockSignals(true);
    if (isOpen()) {
        try {
            SaveTree();
        } catch (const StoreError&) {
        }
    }
    m_closing = true;
}

bool TRMData::isOpen() const
{
    return m_db && m_db->isOpen();
}

void TRMData::requireWritable() const
{
    if (m_readOnly && isOpen()) {
        throw StoreError(QStringLiteral("\"%1\" is read-only: the change cannot be saved")
                             .arg(QFileInfo(m_fileName).fileName()));
    }
}

bool TRMData::usable() const
{
    return !m_closing && isOpen();
}

void TRMData::setTitleFromFile(const QString& fileName)
{
    // A public name written by the host on another system may use backslashes: only the part
    // after the last separator of either kind is shown.
    const qsizetype slash =
        std::max(fileName.lastIndexOf(QLatin1Char('/')), fileName.lastIndexOf(QLatin1Char('\\')));
    m_windowTitle = QStringLiteral("Kestrum - ") + fileName.mid(slash + 1).toUpper();
    if (m_readOnly) {
        m_windowTitle += QStringLiteral(" (read-only)");
    }
    emit titleChanged(m_windowTitle);
}

// ---- project files -----------------------------------------------------------------------------

void TRMData::DBCreate(const QString& fileName)
{
    const bool existed = QFile::exists(fileName);
    auto db = std::make_unique<SqliteDatabase>();
    db->open(fileName, SqliteDatabase::OpenMode::ReadWriteCreate);
    // A file that is not a database is refused here, before the open project is closed.
    db->exec("SELECT count(*) FROM sqlite_schema");

    CloseFile();
    setTitleFromFile(fileName);
    m_db = std::move(db);
    m_table = std::make_unique<PageTable>(*m_db);
    m_fileName = fileName;
    m_publicFileName = fileName;
    m_currentPageId = -1;
    m_currentNodeIndex = -1;
    try {
        SqliteTransaction tx(*m_db);
        m_table->create();
        m_outline.clear();
        OutlineNodeData rootData;
        rootData.caption = kDefaultRootCaption;
        rootData.imageIndex = PageType::OutlineRoot;
        rootData.data = 0;
        OutlineNode* root = m_outline.createRoot(rootData);
        m_table->insert(now(), QStringLiteral("Outline"), PageType::OutlineRoot, {}, {}, 0);
        SaveTree();
        for (const QString& caption :
             {QStringLiteral("First document"), QStringLiteral("Second document")}) {
            OutlineNodeData page;
            page.caption = caption;
            page.imageIndex = PageType::Text;
            OutlineNode* node = m_outline.addChild(root, page);
            m_outline.setData(node, AddRecord(PageType::Text, caption, {}));
        }
        m_outline.setExpanded(root, true);
        SaveTree();
        tx.commit();
    } catch (...) {
        m_outline.clear();
        m_table.reset();
        m_db.reset();
        m_fileName.clear();
        if (!existed) {
            QFile::remove(fileName);
        }
        throw;
    }
}

void TRMData::DBOpen(const QString& fileName, bool openReadOnly)
{
    // The open project is written first: it may be the very file being opened again.
    flushBeforeClose();
    // A file (or folder) that cannot be written is opened read-only, and says so.
    const QFileInfo info(fileName);
    const bool readOnly =
        openReadOnly ||
        (info.exists() && (!info.isWritable() || !QFileInfo(info.absolutePath()).isWritable()));
    auto db = std::make_unique<SqliteDatabase>();
    db->open(fileName,
             readOnly ? SqliteDatabase::OpenMode::ReadOnly : SqliteDatabase::OpenMode::ReadWrite);
    auto table = std::make_unique<PageTable>(*db);
    table->validate(true);
    QByteArray storedOutline;
    std::unique_ptr<OutlineNode> root = readStoredOutline(*table, fileName, &storedOutline);
    if (!root) {
        // A table without an outline yet (a host may create one): only the project node.
        OutlineNodeData rootData;
        rootData.caption = kDefaultRootCaption;
        rootData.imageIndex = PageType::OutlineRoot;
        rootData.data = 0;
        root = std::make_unique<OutlineNode>(rootData);
    }

    m_restoredSelection = -1;
    closeConnections();
    m_db = std::move(db);
    m_table = std::move(table);
    m_readOnly = readOnly;
    m_fileName = fileName;
    m_currentPageId = -1;
    m_currentNodeIndex = -1;

    m_publicFileName = fileName;
    if (const QString wpj = companionSettingsPath(); !wpj.isEmpty()) {
        common::IniFile settings(wpj);
        if (settings.load()) {
            m_publicFileName = settings.readString(kOptions, kPublicFileName, fileName);
        }
    }
    setTitleFromFile(m_publicFileName);

    m_outline.reset(std::move(root));
    m_storedOutline = storedOutline;

    if (const QString handOff = handOffFileName(false);
        !m_readOnly && !handOff.isEmpty() && QFile::exists(handOff)) {
        try {
            GetNewPages();
        } catch (const StoreError& e) {
            emit warning(e.message());
        }
    }
    emit outlineLoaded();
    restoreSelectionAfterOpen();
    emit selectionRestored();
    emit outlineSaved();
}

void TRMData::restoreSelectionAfterOpen()
{
    OutlineNode* root = m_outline.root();
    if (!root) {
        return;
    }
    const int count = m_outline.count();
    bool selected = false;
    if (m_restoredSelection > -1) {
        selected = m_outline.selectIndex(m_restoredSelection + 1);
        if (selected) {
            m_outline.setData(root, m_restoredSelection + 1);
        } else {
            // The node after the first adopted one does not exist: the adopted node itself.
            selected = m_outline.selectIndex(m_restoredSelection);
        }
    } else if (root->data() > 1 && root->data() < count) {
        selected = m_outline.selectIndex(root->data());
    }
    if (!selected && !m_outline.selectIndex(1)) {
        m_outline.selectIndex(0);
    }
}

void TRMData::CloseFile()
{
    flushBeforeClose();
    closeConnections();
}

void TRMData::closeUnchanged()
{
    closeConnections();
}

void TRMData::flushBeforeClose()
{
    if (!isOpen()) {
        return;
    }
    emit aboutToClose();
    try {
        SaveTree();
    } catch (const StoreError& e) {
        emit warning(e.message());
    }
}

void TRMData::closeConnections()
{
    {
        common::ScopedFlag closing(m_closing);
        m_table.reset();
        m_db.reset();
        m_fileName.clear();
        m_outline.clear();
    }
    m_currentPageId = -1;
    m_storedOutline.clear();
    m_history.clear();
    m_readOnly = false;
    m_currentNodeIndex = -1;
}

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
            QString why;
            loaded = document->importFile(sourceFile, &why);
            if (!loaded) {
                emit warning(why.isEmpty() ? QStringLiteral("Cannot import \"%1\"").arg(sourceFile)
                                           : why);
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
            QByteArray bytes;
            QString why;
            if (!document->writeContent(bytes, &why)) {
                throw StoreError(QStringLiteral("Cannot import \"%1\": %2").arg(sourceFile, why));
            }
            m_unsavedImport = bytes;
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

// ---- outline -----------------------------------------------------------------------------------

void TRMData::SaveTree()
{
    if (m_readOnly) {
        return; // nothing on screen can have changed what a read-only file holds
    }
    // An outline reduced to the project node is written too: the stored outline is always
    // the one on screen.
    if (!usable() || m_outline.count() < 1) {
        return;
    }
    m_outline.setData(m_outline.root(), m_outline.selectedIndex());
    const QByteArray stream = OutlineStream::write(m_outline.root());
    const std::optional<qint32> first = m_table->firstId();
    if (first) {
        // An outline that is already stored as it is costs no write (and leaves the file as it
        // was, for a command that was refused).
        if (stream != m_storedOutline) {
            m_table->writeContent(*first, stream);
        }
    } else {
        m_table->insert(now(), QStringLiteral("Outline"), PageType::OutlineRoot, stream, {}, 0);
    }
    m_storedOutline = stream;
    emit outlineSaved();
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
    QByteArray bytes;
    QString why;
    if (!document.writeContent(bytes, &why)) {
        throw StoreError(
            QStringLiteral("Cannot save page %1 of \"%2\": %3").arg(*id).arg(m_fileName, why));
    }
    return m_table->writeContent(*id, bytes);
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
    QString why;
    if (!document.readContent(page->content, &why)) {
        document.clear();
        throw StoreError(QStringLiteral("Page %1 of \"%2\" cannot be shown: %3")
                             .arg(page->pageId)
                             .arg(m_fileName, why));
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

// ---- settings beside the project -----------------------------------------------------------

QString TRMData::companionSettingsPath() const
{
    if (m_fileName.isEmpty()) {
        return {};
    }
    const QFileInfo info(m_fileName);
    const QString base = info.completeBaseName();
    const QDir dir = info.absoluteDir();
    for (const QString& ext : {QStringLiteral(".WPJ"), QStringLiteral(".wpj")}) {
        if (QFileInfo::exists(dir.filePath(base + ext))) {
            return dir.filePath(base + ext);
        }
    }
    // Any other spelling of the extension, as written on a case-insensitive system.
    const QString wanted = base + QStringLiteral(".wpj");
    for (const QString& entry : dir.entryList(QDir::Files | QDir::Hidden)) {
        if (entry.compare(wanted, Qt::CaseInsensitive) == 0) {
            return dir.filePath(entry);
        }
    }
    return {};
}

void TRMData::writeCompanionSetting(const QString& section, const QString& key,
                                    const QString& value)
{
    if (m_readOnly) {
        return;
    }
    const QString path = companionSettingsPath();
    if (path.isEmpty()) {
        return; // never created here: the file belongs to the host
    }
    common::IniFile settings(path);
    QString why;
    if (!settings.load(&why) && !why.isEmpty()) {
        emit warning(why);
        return;
    }
    if (settings.readString(section, key) == value && settings.hasKey(section, key)) {
        return;
    }
    settings.writeString(section, key, value);
    if (!settings.save(&why)) {
        emit warning(why);
    }
}

void TRMData::markModified()
{
    if (m_readOnly) {
        return;
    }
    m_modified = true;
    writeCompanionSetting(kOptions, kSupModified, QStringLiteral("T"));
}

// ---- hand-off intake ---------------------------------------------------------------------------

QString TRMData::handOffFileName(bool lowerCaseSupTest) const
{
    if (!isOpen()) {
        return {};
    }
    return HandOffFile::nameFor(m_fileName, lowerCaseSupTest);
}

bool TRMData::pollHandOff()
{
    if (m_readOnly) {
        return false; // pages cannot be taken into a file that cannot be written
    }
    if (!usable()) {
        return false;
    }
    const QString handOff = handOffFileName(true);
    if (handOff.isEmpty() || !QFile::exists(handOff)) {
        return false;
    }
    GetNewPages();
    return true;
}

void TRMData::GetNewPages()
{
    requireWritable();
    if (!usable()) {
        return;
    }
    // The file the poll or the opening found; the two tests differ only in letter case.
    QString handOff = handOffFileName(true);
    if (handOff.isEmpty() || !QFile::exists(handOff)) {
        handOff = handOffFileName(false);
    }
    if (handOff.isEmpty() || !QFile::exists(handOff)) {
        return;
    }
    m_restoredSelection = -1;
    const HandOffFile::Stamp readStamp = HandOffFile::stamp(handOff);
    const QString firstLine = handOff.contains(QLatin1String("session.new"))
                                  ? HandOffFile::readFirstLine(handOff)
                                  : QString();

    // Page ids carried by the outline. The root's data is the last selected index, not a page.
    QSet<qint32> referenced;
    referenced.reserve(m_outline.count() + 1);
    referenced.insert(0);
    OutlineNode* newItems = nullptr;
    OutlineNode* namedParent = nullptr;
    for (OutlineNode* node : m_outline.nodesInOrder()) {
        if (node != m_outline.root()) {
            referenced.insert(node->data());
        }
        if (node->caption() == kNewItems) {
            newItems = node;
        }
        if (!firstLine.isEmpty() && node->caption() == firstLine) {
            namedParent = node;
        }
    }

    std::vector<OutlineNodeData> adopted;
    for (const PageSummary& record : m_table->summaries()) {
        if (record.idOutOfRange) {
            emit warning(QStringLiteral("The page with id %1 cannot be taken in: page ids above "
                                        "2147483647 are not supported")
                             .arg(record.storedId));
            continue;
        }
        if (referenced.contains(record.pageId)) {
            continue;
        }
        OutlineNodeData d;
        d.caption = record.infoDamaged
                        ? QStringLiteral("Page %1 (damaged title)").arg(record.pageId)
                        : common::tabField(record.info, 3);
        d.imageIndex = record.type;
        d.data = record.pageId;
        adopted.push_back(std::move(d));
        referenced.insert(record.pageId);
    }

    if (!adopted.empty()) {
        std::vector<OutlineNode*> created;
        try {
            if (!newItems) {
                newItems = m_outline.addChild(m_outline.root(), folderNode(kNewItems));
                created.push_back(newItems);
            }
            OutlineNode* parent = newItems;
            if (!firstLine.isEmpty()) {
                parent = namedParent;
                if (!parent) {
                    parent = m_outline.addChild(newItems, folderNode(firstLine));
                    created.push_back(parent);
                }
            }
            const int firstRow = parent->childCount();
            OutlineNode* first = m_outline.appendChildren(parent, adopted);
            m_restoredSelection = m_outline.indexOf(first);
            m_outline.setExpanded(parent, true);
            try {
                SaveTree();
            } catch (...) {
                // Undo the adoption so that the next tick tries again with the file intact.
                while (parent->childCount() > firstRow) {
                    m_outline.removeNode(parent->childAt(parent->childCount() - 1));
                }
                throw;
            }
        } catch (...) {
            for (auto it = created.rbegin(); it != created.rend(); ++it) {
                m_outline.removeNode(*it);
            }
            m_restoredSelection = -1;
            throw;
        }
    }
    // A hand-off written again while this one was taken in stays for the next tick. The file
    // is first moved aside (one atomic step), so that a host renaming a new one into place
    // between the test and the deletion is not lost: what was moved is tested, and put back
    // when it is not the one that was read.
    if (HandOffFile::stamp(handOff) != readStamp) {
        return;
    }
    const QString taken = handOff + QStringLiteral(".taken");
    QFile::remove(taken); // left over from an interrupted intake
    if (!QFile::rename(handOff, taken)) {
        if (QFile::exists(handOff)) {
            emit warning(QStringLiteral("Cannot delete the hand-off file \"%1\"").arg(handOff));
        }
        return;
    }
    // Moving the file changed its status time only: the same inode, size and modification
    // time say it is still the writing that was read.
    const HandOffFile::Stamp moved = HandOffFile::stamp(taken);
    const bool same = moved.inode == readStamp.inode && moved.size == readStamp.size &&
                      moved.modifiedNs == readStamp.modifiedNs;
    if (!same && !QFile::exists(handOff)) {
        QFile::rename(taken, handOff);
    } else if (!QFile::remove(taken)) {
        QFile::rename(taken, handOff);
        emit warning(QStringLiteral("Cannot delete the hand-off file \"%1\"").arg(handOff));
    }
}

// ---- kept items --------------------------------------------------------------------------------

QString TRMData::keptItemsFileName() const
{
    if (m_fileName.isEmpty()) {
        return {};
    }
    const QFileInfo info(m_fileName);
    return info.absoluteDir().filePath(info.completeBaseName() + QStringLiteral(".sup"));
}

int TRMData::MoveToSup()
{
    requireWritable();
    if (!usable()) {
        return 0;
    }
    OutlineNode* selected = m_outline.selected();
    if (!selected) {
        return 0;
    }
    const QString supPath = keptItemsFileName();
    if (QFileInfo(supPath).absoluteFilePath() == QFileInfo(m_fileName).absoluteFilePath()) {
        throw StoreError(QStringLiteral("\"%1\" is itself a kept-items file: its pages cannot be "
                                        "kept in it")
                             .arg(m_fileName));
    }
    KeptItemsFile kept(supPath, now());
    int copied = 0;
    auto copyPage = [&](const OutlineNode* node) {
        // Folders and the project node have no record to keep.
        if (node == m_outline.root() || node->data() <= 0) {
            return;
        }
        if (const std::optional<RawPageRow> row = m_table->readRaw(node->data())) {
            kept.add(*row);
            m_currentPageId = node->data();
            ++copied;
        }
    };
    if (selected->hasChildren()) {
        const int start = m_outline.indexOf(selected);
        for (int i = start + 1; i < m_outline.count(); ++i) {
            OutlineNode* node = m_outline.nodeAt(i);
            if (!node->isUnder(selected) || node->hasChildren()) {
                break;
            }
            m_outline.setSelected(node);
            emit selectionRestored();
            copyPage(node);
        }
    } else {
        copyPage(selected);
    }
    kept.commit();
    return copied;
}

} // namespace kestrum::store
