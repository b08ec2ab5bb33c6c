#pragma once

#include "store/OutlineHistory.h"
#include "store/OutlineModel.h"
#include "store/PageKind.h"
#include "store/PageTable.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace kestrum::store {

class SqliteDatabase;

// The project store: one project file (an SQLite database with the page table "OUTPUT"), its
// outline, and the kept-items file beside it. Pages are read and written through the page
// documents registered for each kind. Failures of the file (locked, damaged, full, read-only)
// come back as an Error to the command that caused them, in words it shows the user as they
// are; multi-record changes are single transactions.
class TRMData : public QObject
{
    Q_OBJECT
public:
    explicit TRMData(QObject* parent = nullptr);
    ~TRMData() override;

    OutlineModel& outline() { return m_outline; }
    const OutlineModel& outline() const { return m_outline; }
    // The outline commands' undo history; it lasts while the project is open.
    OutlineHistory& history() { return m_history; }
    const OutlineHistory& history() const { return m_history; }
    // The page kinds whose documents pages are imported into (set once by the program).
    void setPageKinds(PageKindTable kinds) { m_kinds = std::move(kinds); }
    const PageKindTable& pageKinds() const { return m_kinds; }
    // Read access to the page table of the open project (null when closed).
    PageTable* table() const { return m_table.get(); }

    // ---- state
    bool isOpen() const;
    const QString& fileName() const { return m_fileName; }
    const QString& publicFileName() const { return m_publicFileName; }
    QString windowTitle() const { return m_windowTitle; }
    bool isClosing() const { return m_closing; }
    // The open project's file (or its folder) cannot be written: it was opened read-only, every
    // change is refused with an Error and the outline is never written.
    bool isReadOnly() const { return m_readOnly; }
    bool isAdding() const { return m_adding; }
    bool isModified() const { return m_modified; }
    void setModified(bool modified) { m_modified = modified; }
    int restoredSelectionIndex() const { return m_restoredSelection; }
    void setRestoredSelectionIndex(int index) { m_restoredSelection = index; }
    // Absolute index of the node whose page is loaded in its editor; -1 when none.
    int currentNodeIndex() const { return m_currentNodeIndex; }
    void setCurrentNodeIndex(int index) { m_currentNodeIndex = index; }
    // The current record: the page last found by id (-1 when none).
    qint32 currentPageId() const { return m_currentPageId; }

    // The time stamp of new records (a day count); replaceable for tests.
    void setClock(std::function<double()> clock) { m_clock = std::move(clock); }

    // ---- project files
    // Creates a project; a file that cannot be one leaves the open project as it was.
    Status DBCreate(const QString& fileName);
    // Opens a project; a file (or folder) that cannot be written is opened read-only, as is any
    // file when `readOnly` is set. A file that cannot be opened leaves the open project open.
    Status DBOpen(const QString& fileName, bool readOnly = false);
    // Writes the outline and closes; a failure to write it is announced by warning().
    void CloseFile();
    // Closes the project without writing anything, not even the selection: for a command that
    // was refused after opening.
    void closeUnchanged();

    // ---- records
    // The new record's page id; -1 when no project is open.
    Result<qint32> AddRecord(qint32 pageType, const QString& title, const QString& sourceFile);
    Result<qint32> AddWPRecord(const QString& title, qint32 pageType);
    Status DeleteRecord(qint32 pageId);
    // Runs `work` as one transaction of the project file: all of its writes, or none when it
    // (or the commit) fails.
    Status runInTransaction(const std::function<Status()>& work);
    // What a host program does: a record with no outline node (all columns given).
    Result<qint32> appendRecord(qint32 pageType, const QString& info, const QByteArray& content,
                                const QString& comment);
    // Many host-style records at once, in one transaction (compressed on every core).
    Result<std::vector<qint32>> appendRecords(const std::vector<NewPage>& pages);
    // The node added for the file; null when no project is open or there is no node to add to.
    // A failure leaves the outline as it was.
    Result<OutlineNode*> AppendFile(const QString& fileName, OutlineNode* node, bool asChild);
    // Whether the last AddRecord imported a file that its kind keeps unsaved for now (a
    // delimited table): the page is to be left modified, so that leaving it stores it.
    bool lastImportUnsaved() const { return m_unsavedImport.has_value(); }
    // That import's content, in the kind's stored format (empty when there is none).
    QByteArray unsavedImport() const { return m_unsavedImport.value_or(QByteArray()); }
    qint32 pageTypeForFile(const QString& fileName) const;

    // ---- outline
    Status SaveTree();

    // ---- page content (page id -1: the current record)
    // A page's stored record, read without side effects: the current record stays where it is.
    // nullopt when there is no such page (or no project).
    Result<std::optional<StoredPage>> readPage(qint32 pageId) const;
    // Writes the content of `document` into the page; false when the page does not exist.
    // Fails when the document cannot write itself or the file cannot be written.
    Result<bool> savePage(qint32 pageId, PageDocument& document);
    // Reads the page into `document` (its PageInfo first, then its content); the page becomes
    // the current record, as for every store operation by kind. A missing page
    // clears the document when its kind says so, else leaves it as it is; gives false then.
    // Fails when the content cannot be read (the document is left cleared).
    Result<bool> loadPage(qint32 pageId, PageDocument& document);
    // The store operations by kind: each saves or loads the given document.
    Result<bool> SaveWP(qint32 pageId, PageDocument& doc) { return savePage(pageId, doc); }
    Result<bool> GetWP(qint32 pageId, PageDocument& doc) { return loadPage(pageId, doc); }
    Result<bool> SaveGrid(qint32 pageId, PageDocument& doc) { return savePage(pageId, doc); }
    Result<bool> GetGrid(qint32 pageId, PageDocument& doc) { return loadPage(pageId, doc); }
    Result<bool> SaveChart(qint32 pageId, PageDocument& doc) { return savePage(pageId, doc); }
    Result<bool> GetChart(qint32 pageId, PageDocument& doc) { return loadPage(pageId, doc); }
    Result<bool> SaveImage(qint32 pageId, PageDocument& doc) { return savePage(pageId, doc); }
    Result<bool> GetImage(qint32 pageId, PageDocument& doc) { return loadPage(pageId, doc); }
    Result<bool> SaveDiagram(qint32 pageId, PageDocument& doc) { return savePage(pageId, doc); }
    Result<bool> GetDiagram(qint32 pageId, PageDocument& doc) { return loadPage(pageId, doc); }
    Result<bool> SaveWordCloud(qint32 pageId, PageDocument& doc) { return savePage(pageId, doc); }
    Result<bool> GetWordCloud(qint32 pageId, PageDocument& doc) { return loadPage(pageId, doc); }
    Result<bool> SaveTimeLine(qint32 pageId, PageDocument& doc) { return savePage(pageId, doc); }
    Result<bool> GetTimeLine(qint32 pageId, PageDocument& doc) { return loadPage(pageId, doc); }
    // Writes already serialised content into the page (a kind's stored format).
    Result<bool> writePageContent(qint32 pageId, const QByteArray& content);

    // False when the page does not exist.
    Result<bool> SaveComment(qint32 pageId, const QString& text);
    // The page's comment; nullopt when the page does not exist.
    Result<std::optional<QString>> GetComment(qint32 pageId);

    // ---- settings beside the project
    // The companion settings file when it exists (its extension in any case), else empty.
    QString companionSettingsPath() const;
    // Writes a value into the companion settings file only when that file exists.
    void writeCompanionSetting(const QString& section, const QString& key, const QString& value);
    // The mark-modified step.
    void markModified();

    // ---- hand-off intake and kept items
    // The hand-off file the timer looks for ("session.new" or "TLTree.new"), or empty.
    // `lowerCaseSupTest` chooses the timer's test over the one made on opening.
    QString handOffFileName(bool lowerCaseSupTest) const;
    // One tick of the hand-off poll: runs GetNewPages when the hand-off file exists.
    // Gives whether it ran.
    Result<bool> pollHandOff();
    // Adopts the records no node refers to; a failure leaves the outline and the hand-off
    // file as they were, for the next tick.
    Status GetNewPages();
    // The kept-items file beside the project (extension ".sup").
    QString keptItemsFileName() const;
    // "Keep selected item": copies the selected page, or the pages directly under a selected
    // node, into the kept-items file (created when missing). Gives the number copied.
    Result<int> MoveToSup();

signals:
    void titleChanged(const QString& title);
    // Before a project is closed: the window writes back the page on screen.
    void aboutToClose();
    // A project's outline was loaded; its selection is restored next.
    void outlineLoaded();
    // The selection moved to a page to be shown: after opening, and to each page kept from a
    // folder.
    void selectionRestored();
    // The outline was written (or a project opened with it).
    void outlineSaved();
    // Something the user should be told that does not stop the work (an import that failed).
    void warning(const QString& message);
    // What the outline commands can undo or redo changed.
    void historyChanged();

private:
    bool usable() const;
    // Fails with the read-only message when the open project cannot be written.
    Status requireWritable() const;
    // What closing does before the connection goes: the page on screen and the outline written.
    void flushBeforeClose();
    // The new project's table, outline and first two pages, in one transaction.
    Status fillNewProject();
    void closeConnections();
    // The page an operation by kind works on (the current record for -1); it becomes the
    // current record. nullopt when there is no such page or no usable project.
    Result<std::optional<qint32>> locate(qint32 pageId);
    // locate() for a change: fails first when the project cannot be written.
    Result<std::optional<qint32>> locateForWriting(qint32 pageId);
    // The page a read looks at: the current record for -1; does not move it.
    Result<std::optional<qint32>> find(qint32 pageId) const;
    void setTitleFromFile(const QString& fileName);
    void restoreSelectionAfterOpen();
    double now() const { return m_clock(); }

    OutlineModel m_outline;
    OutlineHistory m_history;
    PageKindTable m_kinds;
    std::unique_ptr<SqliteDatabase> m_db;
    std::unique_ptr<PageTable> m_table;
    QString m_fileName;
    QString m_publicFileName;
    QString m_windowTitle;
    bool m_closing = false;
    bool m_readOnly = false;
    bool m_adding = false;
    bool m_modified = false;
    int m_restoredSelection = -1;
    int m_currentNodeIndex = -1;
    qint32 m_currentPageId = -1;
    std::optional<QByteArray> m_unsavedImport;
    // The outline stream as the file holds it (what the last SaveTree wrote or opening read).
    QByteArray m_storedOutline;
    std::function<double()> m_clock;
};

} // namespace kestrum::store
