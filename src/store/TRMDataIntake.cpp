// The project store's exchanges with the host program: the hand-off file it leaves for new
// pages, and the kept-items file that selected pages are copied into.

#include "TRMData.h"

#include "common/TabFields.h"
#include "store/HandOffFile.h"
#include "store/KeptItemsFile.h"
#include "store/PageTable.h"
#include "store/SqliteDatabase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>

namespace kestrum::store {

namespace {

const QString kNewItems = QStringLiteral("New items");

OutlineNodeData folderNode(const QString& caption)
{
    OutlineNodeData d;
    d.caption = caption;
    d.imageIndex = PageType::Folder;
    d.data = -1;
    return d;
}

} // namespace

// ---- hand-off intake ---------------------------------------------------------------------------

QString TRMData::handOffFileName(bool lowerCaseSupTest) const
{
    if (!isOpen()) {
        return {};
    }
    return HandOffFile::nameFor(m_fileName, lowerCaseSupTest);
}

Result<bool> TRMData::pollHandOff()
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
    if (Status taken = GetNewPages(); !taken) {
        return fail(taken.error());
    }
    return true;
}

Status TRMData::GetNewPages()
{
    if (Status writable = requireWritable(); !writable) {
        return writable;
    }
    if (!usable()) {
        return {};
    }
    // The file the poll or the opening found; the two tests differ only in letter case.
    QString handOff = handOffFileName(true);
    if (handOff.isEmpty() || !QFile::exists(handOff)) {
        handOff = handOffFileName(false);
    }
    if (handOff.isEmpty() || !QFile::exists(handOff)) {
        return {};
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

    const Result<std::vector<PageSummary>> records = m_table->summaries();
    if (!records) {
        return fail(records.error());
    }
    std::vector<OutlineNodeData> adopted;
    for (const PageSummary& record : *records) {
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
        if (Status saved = SaveTree(); !saved) {
            // Undo the adoption so that the next tick tries again with the file intact.
            while (parent->childCount() > firstRow) {
                m_outline.removeNode(parent->childAt(parent->childCount() - 1));
            }
            for (auto it = created.rbegin(); it != created.rend(); ++it) {
                m_outline.removeNode(*it);
            }
            m_restoredSelection = -1;
            return saved;
        }
    }
    // A hand-off written again while this one was taken in stays for the next tick. The file
    // is first moved aside (one atomic step), so that a host renaming a new one into place
    // between the test and the deletion is not lost: what was moved is tested, and put back
    // when it is not the one that was read.
    if (HandOffFile::stamp(handOff) != readStamp) {
        return {};
    }
    const QString taken = handOff + QStringLiteral(".taken");
    QFile::remove(taken); // left over from an interrupted intake
    if (!QFile::rename(handOff, taken)) {
        if (QFile::exists(handOff)) {
            emit warning(QStringLiteral("Cannot delete the hand-off file \"%1\"").arg(handOff));
        }
        return {};
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
    return {};
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

Result<int> TRMData::MoveToSup()
{
    if (Status writable = requireWritable(); !writable) {
        return fail(writable.error());
    }
    if (!usable()) {
        return 0;
    }
    OutlineNode* selected = m_outline.selected();
    if (!selected) {
        return 0;
    }
    const QString supPath = keptItemsFileName();
    if (QFileInfo(supPath).absoluteFilePath() == QFileInfo(m_fileName).absoluteFilePath()) {
        return fail(QStringLiteral("\"%1\" is itself a kept-items file: its pages cannot be "
                                   "kept in it")
                        .arg(m_fileName));
    }
    KeptItemsFile kept;
    if (Status opened = kept.open(supPath, now()); !opened) {
        return fail(opened.error());
    }
    int copied = 0;
    auto copyPage = [&](const OutlineNode* node) -> Status {
        // Folders and the project node have no record to keep.
        if (node == m_outline.root() || node->data() <= 0) {
            return {};
        }
        const Result<std::optional<RawPageRow>> row = m_table->readRaw(node->data());
        if (!row) {
            return fail(row.error());
        }
        if (*row) {
            if (Status added = kept.add(**row); !added) {
                return added;
            }
            m_currentPageId = node->data();
            ++copied;
        }
        return {};
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
            if (Status done = copyPage(node); !done) {
                return fail(done.error());
            }
        }
    } else if (Status done = copyPage(selected); !done) {
        return fail(done.error());
    }
    if (Status committed = kept.commit(); !committed) {
        return fail(committed.error());
    }
    return copied;
}

} // namespace kestrum::store
