#include "TRMData.h"
#include "common/ScopedFlag.h"

#include "common/DayCount.h"
#include "common/IniFile.h"
#include "store/OutlineStream.h"
#include "store/PageDocument.h"
#include "store/PageTable.h"
#include "store/SqliteDatabase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace kestrum::store {

namespace {

const QString kOptions = QStringLiteral("OPTIONS");
const QString kPublicFileName = QStringLiteral("Public File Name");
const QString kSupModified = QStringLiteral("SUP Modified");
const QString kDefaultRootCaption = QStringLiteral("Project name");

// Reads the outline of a project file being opened without touching the open project, so that
// a file that cannot be used leaves everything as it was. Null when the file has none yet.
Result<std::unique_ptr<OutlineNode>> readStoredOutline(PageTable& table, const QString& fileName,
                                                       QByteArray* stored)
{
    const Result<std::optional<qint32>> first = table.firstId();
    if (!first.ok()) {
        return fail(first.error());
    }
    if (!*first) {
        return std::unique_ptr<OutlineNode>();
    }
    const Result<std::optional<QByteArray>> content = table.readContent(**first);
    if (!content.ok()) {
        return fail(content.error());
    }
    *stored = content->value_or(QByteArray());
    Result<std::unique_ptr<OutlineNode>> root = OutlineStream::read(*stored);
    if (!root) {
        return fail(QStringLiteral("Cannot open \"%1\": %2").arg(fileName, root.error()));
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
        static_cast<void>(SaveTree()); // nobody is left to tell of a failure
    }
    m_closing = true;
}

bool TRMData::isOpen() const
{
    return m_db && m_db->isOpen();
}

Status TRMData::requireWritable() const
{
    if (m_readOnly && isOpen()) {
        return fail(QStringLiteral("\"%1\" cannot be saved: the file is read-only")
                        .arg(QFileInfo(m_fileName).fileName()));
    }
    return {};
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

Status TRMData::DBCreate(const QString& fileName)
{
    const bool existed = QFile::exists(fileName);
    auto db = std::make_unique<SqliteDatabase>();
    if (Status opened = db->open(fileName, SqliteDatabase::OpenMode::ReadWriteCreate); !opened) {
        return opened;
    }
    // A file that is not a database is refused here, before the open project is closed.
    if (Status read = db->exec("SELECT count(*) FROM sqlite_schema"); !read) {
        return read;
    }

    CloseFile();
    setTitleFromFile(fileName);
    m_db = std::move(db);
    m_table = std::make_unique<PageTable>(*m_db);
    m_fileName = fileName;
    m_publicFileName = fileName;
    m_currentPageId = -1;
    m_currentNodeIndex = -1;
    const Status created = fillNewProject();
    if (!created) {
        m_outline.clear();
        m_table.reset();
        m_db.reset();
        m_fileName.clear();
        if (!existed) {
            QFile::remove(fileName);
        }
    }
    return created;
}

Status TRMData::fillNewProject()
{
    SqliteTransaction tx(*m_db);
    if (Status begun = tx.begin(); !begun) {
        return begun;
    }
    if (Status created = m_table->create(); !created) {
        return created;
    }
    m_outline.clear();
    OutlineNodeData rootData;
    rootData.caption = kDefaultRootCaption;
    rootData.imageIndex = PageType::OutlineRoot;
    rootData.data = 0;
    OutlineNode* root = m_outline.createRoot(rootData);
    const Result<qint32> outlineRecord =
        m_table->insert(now(), QStringLiteral("Outline"), PageType::OutlineRoot, {}, {}, 0);
    if (!outlineRecord) {
        return fail(outlineRecord.error());
    }
    if (Status saved = SaveTree(); !saved) {
        return saved;
    }
    for (const QString& caption :
         {QStringLiteral("First document"), QStringLiteral("Second document")}) {
        OutlineNodeData page;
        page.caption = caption;
        page.imageIndex = PageType::Text;
        OutlineNode* node = m_outline.addChild(root, page);
        const Result<qint32> id = AddRecord(PageType::Text, caption, {});
        if (!id) {
            return fail(id.error());
        }
        m_outline.setData(node, *id);
    }
    m_outline.setExpanded(root, true);
    if (Status saved = SaveTree(); !saved) {
        return saved;
    }
    return tx.commit();
}

Status TRMData::DBOpen(const QString& fileName, bool openReadOnly)
{
    // The open project is written first: it may be the very file being opened again.
    flushBeforeClose();
    // A file (or folder) that cannot be written is opened read-only, and says so.
    const QFileInfo info(fileName);
    const bool readOnly =
        openReadOnly ||
        (info.exists() && (!info.isWritable() || !QFileInfo(info.absolutePath()).isWritable()));
    auto db = std::make_unique<SqliteDatabase>();
    if (Status opened = db->open(fileName, readOnly ? SqliteDatabase::OpenMode::ReadOnly
                                                    : SqliteDatabase::OpenMode::ReadWrite);
        !opened) {
        return opened;
    }
    auto table = std::make_unique<PageTable>(*db);
    if (Status valid = table->validate(true); !valid) {
        return valid;
    }
    QByteArray storedOutline;
    Result<std::unique_ptr<OutlineNode>> stored =
        readStoredOutline(*table, fileName, &storedOutline);
    if (!stored) {
        return fail(stored.error());
    }
    std::unique_ptr<OutlineNode> root = std::move(*stored);
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
        if (Status taken = GetNewPages(); !taken) {
            emit warning(taken.error());
        }
    }
    emit outlineLoaded();
    restoreSelectionAfterOpen();
    emit selectionRestored();
    emit outlineSaved();
    return {};
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
    if (Status saved = SaveTree(); !saved) {
        emit warning(saved.error());
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

// ---- outline -----------------------------------------------------------------------------------

Status TRMData::SaveTree()
{
    if (m_readOnly) {
        return {}; // nothing on screen can have changed what a read-only file holds
    }
    // An outline reduced to the project node is written too: the stored outline is always
    // the one on screen.
    if (!usable() || m_outline.count() < 1) {
        return {};
    }
    m_outline.setData(m_outline.root(), m_outline.selectedIndex());
    const QByteArray stream = OutlineStream::write(m_outline.root());
    const Result<std::optional<qint32>> first = m_table->firstId();
    if (!first.ok()) {
        return fail(first.error());
    }
    if (*first) {
        // An outline that is already stored as it is costs no write (and leaves the file as it
        // was, for a command that was refused).
        if (stream != m_storedOutline) {
            if (const Result<bool> written = m_table->writeContent(**first, stream);
                !written.ok()) {
                return fail(written.error());
            }
        }
    } else {
        const Result<qint32> inserted =
            m_table->insert(now(), QStringLiteral("Outline"), PageType::OutlineRoot, stream, {}, 0);
        if (!inserted) {
            return fail(inserted.error());
        }
    }
    m_storedOutline = stream;
    emit outlineSaved();
    return {};
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
    if (const Status loaded = settings.load(); !loaded) {
        emit warning(loaded.error());
        return;
    }
    if (settings.readString(section, key) == value && settings.hasKey(section, key)) {
        return;
    }
    settings.writeString(section, key, value);
    if (const Status saved = settings.save(); !saved) {
        emit warning(saved.error());
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

} // namespace kestrum::store
