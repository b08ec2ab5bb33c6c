#pragma once

#include <QString>
#include <QTextCursor>

class QTextDocument;

namespace kestrum::text {

struct FindOptions
{
    bool caseSensitive = false;
    bool wholeWords = false;
    bool backwards = false;
    // Continue from the other end of the document once.
    bool wrap = true;
};

// Find and replace in a rich-text document. Hidden text is never found: it is not text of the
// document's flow.
class TextFinder
{
public:
    // The next match after `from` (its selection end; its start when searching backwards); a
    // null cursor when there is none.
    static QTextCursor find(const QTextDocument& document, const QString& text,
                            const QTextCursor& from, const FindOptions& options);
    // Replaces the selection of `cursor` when it is a match of `text`; true when it did.
    static bool replaceSelection(QTextCursor& cursor, const QString& text,
                                 const QString& replacement, const FindOptions& options);
    // Replaces every match in one undo step; returns how many.
    static int replaceAll(QTextDocument* document, const QString& text, const QString& replacement,
                          const FindOptions& options);
};

} // namespace kestrum::text
