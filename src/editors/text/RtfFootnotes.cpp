#include "RtfFootnotes.h"

namespace kestrum::text {

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
