#pragma once

#include "editors/wordcloud_page/CloudPageDocument.h"
#include "ui/EditorPanel.h"

#include <QHash>
#include <QTimer>

#include <memory>

class QAction;
class QLabel;
class QMenu;
class QProgressBar;
class QPushButton;
class QPrinter;
class QThread;
class QWidget;

namespace kestrum::wordcloud_page {

class CloudCanvas;
class CloudLayoutJob;

// The word cloud page: one cloud filling the page, the commands of the main window's word
// cloud toolbar (CloudBar) and the page's pop-up menu: save the picture, print it, copy it,
// and the "Tag Cloud Options" dialog. A new layout runs on a thread of its own with its
// progress under the cloud and a "Cancel" button; the window stays usable meanwhile.
class TRMWordCloudEditor : public ui::EditorPanel
{
    Q_OBJECT
public:
    explicit TRMWordCloudEditor(QWidget* parent = nullptr);
    ~TRMWordCloudEditor() override;

    // ---- EditorPanel
    store::PageDocument& document() override { return m_document; }
    void populateToolBar(QToolBar* toolBar) override;

    CloudPageDocument& cloudDocument() { return m_document; }
    wordcloud::TprWordCloud& cloud() { return m_document.cloud(); }
    CloudCanvas* canvas() const { return m_canvas; }
    QMenu* popupMenu() const { return m_popupMenu; }
    QMenu* copyMenu() const { return m_copyMenu; }
    // The commands by object name ("BtnSaveCloud", "BtnPrintCloud", "BtnCloudPhoto",
    // "BtnCloudOptions", "CopyAsBitmap", "CopyAsMetafile").
    QAction* action(const QString& name) const { return m_actions.value(name); }
    QPrinter* printer();

    // ---- commands
    // The picture as shown, saved through the save dialog as PNG, BMP or JPEG by the chosen
    // filter, whose extension replaces the typed one.
    void SaveCloud();
    // The picture as shown, printed through the print dialog, fitted to the page.
    void PrintWordCloud();
    void BtnCloudPhotoClick();
    void BtnCloudOptionsClick();

    // A new layout of the words (new start positions) on the layout thread. While one runs,
    // another request waits for it to end and then runs.
    void UpdateWordCloud();
    bool isLayoutRunning() const { return m_job != nullptr; }
    // Asks the running layout to stop after the current word (it then retries sparser).
    void cancelLayout();
    // Waits until no layout runs (tests, closing).
    void waitForLayout();
    QProgressBar* progressBar() const { return m_progress; }
    QPushButton* cancelButton() const { return m_cancel; }

    static const QStringList& pictureFilters();

signals:
    // A layout ended and its words are shown.
    void layoutFinished();

private:
    QAction* makeAction(const QString& name, const QString& text, const QIcon& icon);
    void onContentReset();
    void onLayoutThreadFinished();
    void pollProgress();
    QImage pictureAsShown();

    CloudPageDocument m_document;
    CloudCanvas* m_canvas = nullptr;
    QWidget* m_progressRow = nullptr;
    QLabel* m_progressLabel = nullptr;
    QProgressBar* m_progress = nullptr;
    QPushButton* m_cancel = nullptr;
    QMenu* m_popupMenu = nullptr;
    QMenu* m_copyMenu = nullptr;
    QToolBar* m_toolBar = nullptr;
    QHash<QString, QAction*> m_actions;
    std::unique_ptr<QPrinter> m_printer;
    QString m_saveFolder;

    std::unique_ptr<CloudLayoutJob> m_job;
    QThread* m_thread = nullptr;
    QTimer m_progressTimer;
    // The page was replaced while the layout ran: its result is dropped.
    bool m_jobAbandoned = false;
    bool m_layoutPending = false;
};

} // namespace kestrum::wordcloud_page
