#pragma once

#include "editors/text/RtfKeywords.h"

#include <QString>

#include <vector>

namespace kestrum::text {

// The footnotes of a document being read. A reference mark (\chftn in the text) takes the next
// number; the note (a {\footnote ...} group) that follows is the text of the oldest reference
// still without one, or of a new reference when the note has no mark of its own.
class RtfFootnotes
{
public:
    static constexpr int kMaxNotes = 4096;

    // What a character word does inside a note: ends one of its paragraphs (a line of the
    // note), does nothing there (its own number, cells, rows, page breaks), or what it does in
    // the text (characters, \u).
    enum class NoteWord
    {
        Break,
        Ignored,
        Text
    };
    static NoteWord noteWord(RtfKeyword keyword);

    // A \chftn in the text: the number of its reference, 0 when the reader holds too many.
    int addReference();
    // A note's text. Returns the number of a new reference the caller inserts, or 0 when the
    // note belongs to a reference already in the text (or there are too many).
    int addNote(const QString& text);

    // The notes by number (the first is note 1); empty for references without a note.
    const std::vector<QString>& notes() const { return m_notes; }

private:
    std::vector<QString> m_notes;
    std::size_t m_nextNote = 0;
};

} // namespace kestrum::text
