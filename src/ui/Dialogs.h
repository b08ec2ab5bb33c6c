#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class QDialog;
class QPrinter;
class QWidget;

namespace kestrum::ui {

// Every message box, input box and file, colour, font and print dialog of the program goes
// through this interface. The desktop installs QtDialogs; tests install a scripted one, so that
// every command can run headless.
class Dialogs
{
public:
    virtual ~Dialogs();

    // A question with Yes and No; true for Yes.
    virtual bool askYesNo(QWidget* parent, const QString& title, const QString& text) = 0;
    virtual void information(QWidget* parent, const QString& text) = 0;
    virtual void warning(QWidget* parent, const QString& text) = 0;
    // A short message that closes itself after `milliseconds` ("Saved!").
    virtual void notice(QWidget* parent, const QString& text, int milliseconds) = 0;

    virtual std::optional<QString> getText(QWidget* parent, const QString& title,
                                           const QString& prompt, const QString& initial) = 0;
    virtual std::optional<QColor> getColour(QWidget* parent, const QColor& initial,
                                            const QString& title = {}) = 0;
    virtual std::optional<QFont> getFont(QWidget* parent, const QFont& initial,
                                         const QString& title = {}) = 0;

    struct FileRequest
    {
        QString caption;
        QString directory;
        QString fileName;
        // Each entry "Label (*.ext *.ext2)"; `filterIndex` is 1-based into this list.
        QStringList filters;
        int filterIndex = 1;
        QString defaultSuffix;
    };
    struct FileChoice
    {
        QString fileName;
        int filterIndex = 1; // 1-based, as chosen by the user
    };
    virtual std::optional<FileChoice> getOpenFileName(QWidget* parent,
                                                      const FileRequest& request) = 0;
    virtual std::optional<QStringList> getOpenFileNames(QWidget* parent,
                                                        const FileRequest& request) = 0;
    virtual std::optional<FileChoice> getSaveFileName(QWidget* parent,
                                                      const FileRequest& request) = 0;

    // The print dialog for `printer`; true when the user chose to print.
    virtual bool print(QWidget* parent, QPrinter* printer) = 0;
    // The printer and page setup dialog; true on OK.
    virtual bool printSetup(QWidget* parent, QPrinter* printer) = 0;
    // A print preview of what `paint` draws on the printer; true when it was shown.
    virtual bool printPreview(QWidget* parent, QPrinter* printer,
                              const std::function<void(QPrinter*)>& paint) = 0;

    // Any other modal dialog of the program (New Item, options dialogs); returns its result
    // code (QDialog::Accepted or Rejected).
    virtual int exec(QDialog* dialog) = 0;
};

// The dialogs in use (QtDialogs unless one was installed).
Dialogs& dialogs();
// Installs `dialogs` (not owned); null goes back to QtDialogs.
void setDialogs(Dialogs* dialogs);

// Converts the filter lists of the file dialogs into "A (*.a);;B (*.b)".
QString joinFilters(const QStringList& filters);

} // namespace kestrum::ui
