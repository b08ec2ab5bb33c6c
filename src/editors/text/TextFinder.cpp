#include "TextFinder.h"

#include <QTextDocument>

namespace kestrum::text {

namespace {

QTextDocument::FindFlags flagsOf(const FindOptions& options)
{
    QTextDocument::FindFlags flags;
    if (options.caseSensitive) {
        flags |= QTextDocument::FindCaseSensitively;
    }
    if (options.wholeWords) {
        flags |= QTextDocument::FindWholeWords;
    }
    if (options.backwards) {
        flags |= QTextDocument::FindBackward;
    }
    return flags;
}

} // namespace

QTextCursor TextFinder::find(const QTextDocument& document, const QString& text,
                             const QTextCursor& from, const FindOptions& options)
{
    if (text.isEmpty()) {
        return {};
    }
    const QTextDocument::FindFlags flags = flagsOf(options);
    int position = 0;
    if (!from.isNull()) {
        position = options.backwards ? from.selectionStart() : from.selectionEnd();
    } else if (options.backwards) {
        position = document.characterCount() - 1;
    }
    QTextCursor found = document.find(text, position, flags);
    if (found.isNull() && options.wrap) {
        found = document.find(text, options.backwards ? document.characterCount() - 1 : 0, flags);
    }
    return found;
}

bool TextFinder::replaceSelection(QTextCursor& cursor, const QString& text,
                                  const QString& replacement, const FindOptions& options)
{
    if (!cursor.hasSelection()) {
        return false;
    }
    const Qt::CaseSensitivity cs = options.caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive;
    if (cursor.selectedText().compare(text, cs) != 0) {
        return false;
    }
    cursor.insertText(replacement);
    return true;
}

int TextFinder::replaceAll(QTextDocument* document, const QString& text, const QString& replacement,
                           const FindOptions& options)
{
    if (text.isEmpty()) {
        return 0;
    }
    FindOptions forward = options;
    forward.backwards = false;
    const QTextDocument::FindFlags flags = flagsOf(forward);
    QTextCursor edit(document);
    edit.beginEditBlock();
    int count = 0;
    QTextCursor found = document->find(text, 0, flags);
    while (!found.isNull()) {
        found.insertText(replacement);
        ++count;
        found = document->find(text, found.position(), flags);
    }
    edit.endEditBlock();
    return count;
}

} // namespace kestrum::text
