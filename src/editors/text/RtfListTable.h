#pragma once

#include "editors/text/RtfReaderState.h"

#include <QHash>
#include <QString>

#include <vector>

namespace kestrum::text {

// The list destinations: the list table ({\*\listtable{\list\listid..{\listlevel..}}}), the
// list override table that numbers its lists for \lsN, and the older paragraph numbering
// ({\*\pn\pnlvlblt..{\pntxtb ..}}). Gives a paragraph its list format.
class RtfListTable
{
public:
    // The list a paragraph indents by this much per level, in twips.
    static constexpr int kIndentPerLevel = 600;

    // ---- list table
    void startList();
    void startLevel();
    void setListId(int id);
    void setLevelFormat(int format); // \levelnfcN
    void setLevelStart(int start);   // \levelstartatN
    void setLevelText(const QString& text);

    // ---- list override table
    void startOverride() { m_overrideList = 0; }
    void setOverrideListId(int id) { m_overrideList = id; }
    void addOverride(int number); // \lsN

    // A list word (\listidN, \levelnfcN, \levelstartatN, \pnXXX) read in `destination`.
    void word(const RtfWord& word, RtfDestination destination);

    // ---- older paragraph numbering
    void startLegacy() { m_pn = Legacy(); }
    void legacyWord(const RtfWord& word);
    void setLegacyBefore(const QString& text) { m_pn.before = text; }
    void setLegacyAfter(const QString& text) { m_pn.after = text; }
    // The numbering read since startLegacy() becomes a list; returns its number, -1 when the
    // reader holds too many.
    int addLegacy();

    // The list a paragraph in `state` belongs to, entered into `out`; false when none.
    bool format(const RtfParaState& state, RtfParagraph& out) const;

private:
    struct Level
    {
        int format = 0;
        int start = 1;
        QString text;
    };
    struct List
    {
        int id = 0;
        std::vector<Level> levels;
    };
    struct Legacy
    {
        bool bullet = true;
        int style = 0; // \levelnfc numbering of the old form
        int level = 0;
        int start = 1;
        QString before;
        QString after;
    };

    bool listFormat(const RtfParaState& state, RtfParagraph& out) const;
    bool legacyFormat(const RtfParaState& state, RtfParagraph& out) const;

    std::vector<List> m_lists;
    QHash<int, int> m_overrides; // \ls number -> \listid
    int m_overrideList = 0;
    std::vector<Legacy> m_legacy;
    Legacy m_pn;
};

} // namespace kestrum::text
