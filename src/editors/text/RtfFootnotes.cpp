#include "RtfFootnotes.h"

namespace kestrum::text {

RtfFootnotes::NoteWord RtfFootnotes::noteWord(RtfKeyword keyword)
{
    switch (keyword) {
    case RtfKeyword::Par:
    case RtfKeyword::Sect:
        return NoteWord::Break;
    case RtfKeyword::Chftn: // the note's own number: written again with the note
    case RtfKeyword::Cell:
    case RtfKeyword::Row:
    case RtfKeyword::NestRow:
    case RtfKeyword::Page:
        return NoteWord::Ignored;
    default:
        return NoteWord::Text;
    }
}

int RtfFootnotes::addReference()
{
    if (m_notes.size() >= std::size_t(kMaxNotes)) {
        return 0;
    }
    m_notes.emplace_back();
    return int(m_notes.size());
}

int RtfFootnotes::addNote(const QString& text)
{
    const QString note = text.trimmed();
    if (m_nextNote < m_notes.size()) {
        m_notes[m_nextNote++] = note;
        return 0;
    }
    const int number = addReference();
    if (number > 0) {
        m_notes.back() = note;
        m_nextNote = m_notes.size();
    }
    return number;
}

} // namespace kestrum::text
