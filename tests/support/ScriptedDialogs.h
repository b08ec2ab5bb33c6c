#pragma once

#include "ui/Dialogs.h"

#include <QStringList>

#include <deque>
#include <functional>
#include <optional>

namespace kestrum::test {

// Dialogs that answer from a script. Each kind of dialog takes the next queued answer; a
// dialog with no answer queued is cancelled and recorded in unexpected(), so a test that
// forgets to script a dialog fails visibly instead of blocking. Messages shown are recorded.
class ScriptedDialogs : public ui::Dialogs
{
public:
    ScriptedDialogs();
    ~ScriptedDialogs() override;

    // ---- script
    void answerYesNo(bool yes) { m_yesNo.push_back(yes); }
    void answerText(std::optional<QString> text) { m_texts.push_back(std::move(text)); }
    void answerColour(std::optional<QColor> colour) { m_colours.push_back(std::move(colour)); }
    void answerFont(std::optional<QFont> font) { m_fonts.push_back(std::move(font)); }
    void answerOpenFile(std::optional<FileChoice> choice)
    {
        m_openFiles.push_back(std::move(choice));
    }
    void answerOpenFiles(std::optional<QStringList> files)
    {
        m_openFileLists.push_back(std::move(files));
    }
    void answerSaveFile(std::optional<FileChoice> choice)
    {
        m_saveFiles.push_back(std::move(choice));
    }
    void answerPrint(bool accept) { m_prints.push_back(accept); }
    // The function sets the dialog's controls as a user would and returns its result code.
    void answerExec(std::function<int(QDialog*)> handler) { m_execs.push_back(std::move(handler)); }

    // ---- record
    struct Shown
    {
        QString kind; // "question", "information", "warning", "notice", "text", ...
        QString text; // message, prompt or caption
    };
    const std::vector<Shown>& shown() const { return m_shown; }
    QStringList messages() const; // texts of questions, information, warnings and notices
    const QStringList& unexpected() const { return m_unexpected; }
    // The last file request seen (to check captions, filters and initial names).
    const std::optional<FileRequest>& lastFileRequest() const { return m_lastFileRequest; }
    void clearRecord();
    bool scriptUsedUp() const;

    // ---- Dialogs
    bool askYesNo(QWidget* parent, const QString& title, const QString& text) override;
    void information(QWidget* parent, const QString& text) override;
    void warning(QWidget* parent, const QString& text) override;
    void notice(QWidget* parent, const QString& text, int milliseconds) override;
    std::optional<QString> getText(QWidget* parent, const QString& title, const QString& prompt,
                                   const QString& initial) override;
    std::optional<QColor> getColour(QWidget* parent, const QColor& initial,
                                    const QString& title) override;
    std::optional<QFont> getFont(QWidget* parent, const QFont& initial,
                                 const QString& title) override;
    std::optional<FileChoice> getOpenFileName(QWidget* parent, const FileRequest& request) override;
    std::optional<QStringList> getOpenFileNames(QWidget* parent,
                                                const FileRequest& request) override;
    std::optional<FileChoice> getSaveFileName(QWidget* parent, const FileRequest& request) override;
    bool print(QWidget* parent, QPrinter* printer) override;
    bool printSetup(QWidget* parent, QPrinter* printer) override;
    bool printPreview(QWidget* parent, QPrinter* printer,
                      const std::function<void(QPrinter*)>& paint) override;
    int exec(QDialog* dialog) override;

    // The last text prompt's initial value (what the input box was preset to).
    const QString& lastInitialText() const { return m_lastInitialText; }
    int noticeMilliseconds() const { return m_noticeMs; }

private:
    template <typename T> std::optional<T> next(std::deque<T>& queue, const QString& what);

    std::deque<bool> m_yesNo;
    std::deque<std::optional<QString>> m_texts;
    std::deque<std::optional<QColor>> m_colours;
    std::deque<std::optional<QFont>> m_fonts;
    std::deque<std::optional<FileChoice>> m_openFiles;
    std::deque<std::optional<QStringList>> m_openFileLists;
    std::deque<std::optional<FileChoice>> m_saveFiles;
    std::deque<bool> m_prints;
    std::deque<std::function<int(QDialog*)>> m_execs;

    std::vector<Shown> m_shown;
    QStringList m_unexpected;
    std::optional<FileRequest> m_lastFileRequest;
    QString m_lastInitialText;
    int m_noticeMs = 0;
};

// Installs scripted dialogs for the lifetime of a test object.
class ScopedScriptedDialogs : public ScriptedDialogs
{
public:
    ScopedScriptedDialogs() { ui::setDialogs(this); }
    ~ScopedScriptedDialogs() override { ui::setDialogs(nullptr); }
};

} // namespace kestrum::test
