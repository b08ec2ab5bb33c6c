#pragma once

#include "app/EditorArea.h"

#include <QMainWindow>

#include <memory>

class QLabel;
class QMenu;
class QPlainTextEdit;
class QSplitter;
class QTimer;
class QToolBar;

namespace kestrum::store {
class OutlineCommands;
class OutlineNode;
class TRMData;
} // namespace kestrum::store

namespace kestrum::app {

class AppSettings;
class OutlineHistoryActions;
class OutlineItemModel;
class OutlineView;
class PageDisplay;

// The main window: the outline on the left; on the right the editor of the selected page with
// its comment under it. It owns the project store and one editor of each kind; the outline
// commands are core operations that its handlers call once the user has answered.
class TKestrumM : public QMainWindow
{
    Q_OBJECT
public:
    struct Options
    {
        QString settingsPath;                        // empty: AppSettings::defaultPath()
        DesktopPageKinds kinds = desktopPageKinds(); // the page kinds and their editors
        bool pollHandOff = true;                     // the one-second hand-off timer
        bool restoreLayout = true;                   // window geometry from the settings
    };
    explicit TKestrumM(Options options, QWidget* parent = nullptr);
    ~TKestrumM() override;

    store::TRMData& data() { return *m_data; }
    PageDisplay& pageDisplay() { return *m_display; }
    EditorArea& editors() { return *m_editors; }
    OutlineView* outlineView() const { return m_tree; }
    OutlineItemModel* outlineModel() const { return m_model; }
    QPlainTextEdit* commentPanel() const { return m_comment; }
    AppSettings& settings() { return *m_settings; }
    QString positionText() const;
    QMenu* itemsMenu() const { return m_itemsMenu; }
    QMenu* outlineContextMenu() const { return m_contextMenu; }
    QTimer* handOffTimer() const { return m_timer; }
    QLabel* readOnlyLabel() const { return m_readOnlyLabel; }

    // ---- project files (false when the user was told why not)
    bool createProject(const QString& fileName);
    bool openProject(const QString& fileName, bool readOnly = false);
    void closeProject();

    // ---- page display
    void ShowNode();
    void CheckButtons();
    // File > Export page...: the selected page to a file, in a format of its kind.
    void ExportPageClick();

public slots:
    // File menu
    void NewProjectClick();
    void OpenProjectClick();
    void CloseProjectClick();
    // Items menu, outline context menu and toolbar
    void NodeNewClick();
    void NodeImportClick();
    void NodeDeleteClick();
    void NodeRenameClick();
    void White1Click();
    void Yellow1Click();
    void Red1Click();
    void Green1Click();
    void Blue1Click();
    void Custom1Click();
    void NodeExpandClick();
    void NodeCollapseClick();
    void UpBtnClick();
    void DnBtnClick();
    void LeftBtnClick();
    void RightBtnClick();
    void Nodes1Click();
    void NodeOrderClick();
    void MoveToSupClick();
    void MainTreeDragDrop(kestrum::store::OutlineNode* dragged, kestrum::store::OutlineNode* target,
                          bool ctrl);
    void Timer1Timer();
    void Find1Click();
    void Replace1Click();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildCentralArea();
    void connectStore();
    void colourSelected(std::optional<qint32> colour);
    void afterOutlineMove();
    void selectAndShow(store::OutlineNode* node);
    void syncSelectionToView(store::OutlineNode* node);
    void syncExpansion();
    void refreshRecentMenu();
    void updateFileState();
    void restoreLayout();
    void saveLayout();
    // Runs a command (no hand-off is taken in meanwhile); when it gives a failed Status, the
    // user is told why.
    template <typename F> void guarded(F&& work);

    Options m_options;
    std::unique_ptr<AppSettings> m_settings;
    std::unique_ptr<store::TRMData> m_data;
    std::unique_ptr<store::OutlineCommands> m_commands;
    OutlineItemModel* m_model = nullptr;
    OutlineView* m_tree = nullptr;
    QPlainTextEdit* m_comment = nullptr;
    QSplitter* m_mainSplitter = nullptr;
    QSplitter* m_rightSplitter = nullptr;
    QWidget* m_editorContainer = nullptr;
    EditorArea* m_editors = nullptr;
    PageDisplay* m_display = nullptr;
    OutlineHistoryActions* m_history = nullptr;
    QLabel* m_position = nullptr;
    QTimer* m_timer = nullptr;
    QMenu* m_fileMenu = nullptr;
    QMenu* m_itemsMenu = nullptr;
    QMenu* m_contextMenu = nullptr;
    QToolBar* m_outlineBar = nullptr;
    QList<QAction*> m_recentActions;
    QList<QAction*> m_projectActions; // enabled only while a project is open
    QList<QAction*> m_changeActions;  // ... and only when it can be written
    QLabel* m_readOnlyLabel = nullptr;
    bool m_syncingSelection = false;
    bool m_inCommand = false;
};

} // namespace kestrum::app
