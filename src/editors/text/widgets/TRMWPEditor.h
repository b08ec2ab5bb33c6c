#pragma once

#include "editors/text/TextEditCommands.h"
#include "editors/text/TextFinder.h"
#include "editors/text/WPLanguageControl.h"
#include "editors/text/widgets/WPActionMenus.h"
#include "editors/text/widgets/WPTableCommands.h"
#include "ui/EditorPanel.h"

#include <QHash>
#include <QPointer>

#include <memory>

class QComboBox;
class QFontComboBox;
class QMenu;
class QPrinter;
class QTextCharFormat;
class QToolBar;

namespace kestrum::ui {
class ColourSelector;
}

namespace kestrum::text {

class TextPageDocument;
class WPFileCommands;
class WPFindDialog;
class WPRuler;
class WPView;

// The text page: the rich-text view over the page's document, its ruler and font toolbar, the
// actions of the page (in ActionList1, placed by the main window in WPBar and DocMenu and in the
// context menu MemoPopup2), the colour selectors and the engine's dialogs.
class TRMWPEditor : public ui::EditorPanel
{
    Q_OBJECT
public:
    explicit TRMWPEditor(QWidget* parent = nullptr);
    ~TRMWPEditor() override;

    store::PageDocument& document() override;
    TextPageDocument& pageDocument() { return *m_document; }
    void populateToolBar(QToolBar* toolBar) override;
    void populateMenu(QMenu* menu) override;
    bool canFind() const override { return true; }
    // Read-only: the page can be read, selected and copied, not changed.
    void setReadOnly(bool readOnly) override;
    void find() override;
    void replace() override;

    WPView* view() const { return m_view; }
    WPRuler* ruler() const { return m_ruler; }
    QToolBar* formatToolBar() const { return m_toolBar; }
    QMenu* popupMenu() const { return m_popup; }
    QObject* actionList() const { return m_actionList; }
    QList<QAction*> editorActions() const;
    // The action with that object name (WPFont, WPBold, ...), or null.
    QAction* editorAction(const QString& name) const;
    ui::ColourSelector* fontColourSelector() const { return m_fontColour; }
    ui::ColourSelector* backgroundColourSelector() const { return m_backColour; }

    // Loads a word-processor file through the converter; tells the user why when it cannot.
    bool LoadExternalFile(const QString& fileName);
    // Makes the editor's texts follow the user-interface language (see WPLanguageControl).
    void SetLanguage(const QString& language);
    // Where "WP.XML" is looked for (default: the program's folder).
    void setLanguageFile(const QString& path) { m_languageFile = path; }
    const WPLanguageControl& languageControl() const { return m_language; }
    // Gives the panels the main window's theme colour. Runs by itself whenever the window
    // holding the editor becomes active, with that window's colour.
    void FormActivate(const QColor& themeColour);

    // Finds the next match after the caret (or from the start) and selects it.
    bool findText(const QString& text, const FindOptions& options, bool fromStart = false);
    // The printer "Print" prints on (the default one until "Printer Setup" changes it).
    QPrinter* printer();
    // Prints the page with its paper size and margins.
    void printDocument(QPrinter* printer);

public slots:
    void WPFontColorSelectColor(const QColor& colour);
    void WPBackGroundColorSelectColor(const QColor& colour);
    // Shows the colours of the text at the caret in the two colour selectors.
    void WPViewCharacterAttrChange();

signals:
    // The enabled state of the actions changed: toolbars showing them may refresh.
    void actionsStateChanged();

protected:
    void showEvent(QShowEvent* event) override;
    bool event(QEvent* event) override;

private:
    template <typename Slot>
    QAction* makeAction(const char* name, const char* caption, Slot slot,
                        const QKeySequence& shortcut = {}, const QString& icon = {},
                        bool checkable = false);
    void createActions();
    void createMenus();
    void reloadStrings();
    QString text(const char* english) const;
    void updateFormatActions();
    void updateEditActions();
    void mergeFormat(const QTextCharFormat& format);

    WPActionMenus::Lookup lookup() const;

    // Action handlers.
    void chooseFont();
    void paragraphDialog();
    void bulletsDialog();
    void tabStopsDialog();
    void pageSetupDialog();
    void bordersDialog();
    void deleteText();
    void alignLeft();
    void alignCenter();
    void alignRight();
    void alignJustify();
    void toggleBullets();
    void toggleNumbers();
    void priorLevel();
    void nextLevel();
    void toggleBold();
    void toggleItalic();
    void toggleUnderline();
    void toggleStrikeOut();
    void toggleSubscript();
    void toggleSuperscript();
    void print();
    void printerSetup();
    void toggleList(int style);
    void changeLevel(int delta);
    void runFindDialog(bool replace);

    TextPageDocument* m_document;
    WPView* m_view;
    WPRuler* m_ruler;
    QToolBar* m_toolBar;
    QFontComboBox* m_fontName;
    QComboBox* m_fontSize;
    QWidget* m_panel1;
    QObject* m_actionList;
    QMenu* m_popup;
    QMenu* m_tableMenu;
    WPTableCommands m_tables;
    ui::ColourSelector* m_fontColour;
    ui::ColourSelector* m_backColour;
    QHash<QString, QAction*> m_actions;
    QList<QMenu*> m_menus; // menus titled by the editor (translated with it)
    WPLanguageControl m_language;
    QString m_languageFile;
    std::unique_ptr<WPFileCommands> m_files;
    std::unique_ptr<QPrinter> m_printer;
    bool m_updatingFormat = false;
};

} // namespace kestrum::text
