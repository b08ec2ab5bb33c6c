#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace kestrum::text {

class TextPageDocument;

// The text page's file commands ("Import...", "Export...", "Open", "Save", "New") and the
// loading of word-processor files, with their dialogs and messages.
class WPFileCommands
{
public:
    // `text` gives a caption in the editor's current language.
    using Translate = std::function<QString(const char* english)>;

    WPFileCommands(TextPageDocument* document, QWidget* parent, Translate text);

    // Loads `path` (through the converter when `external`); tells the user why when it
    // cannot. A successful load is an edit of the page.
    bool loadWithMessage(const QString& path, bool external);
    void importFile();
    void exportFile();
    void openFile();
    void saveFile();
    void newDocument();

private:
    TextPageDocument* m_document;
    QWidget* m_parent;
    Translate m_text;
    QString m_fileName;
};

} // namespace kestrum::text
