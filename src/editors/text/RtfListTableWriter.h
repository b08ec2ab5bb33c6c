#pragma once

#include <QList>

class QTextList;

namespace kestrum::common {
class RtfEmitter;
}

namespace kestrum::text {

// The list table and list override table of written RTF: one list definition per list of the
// document (nine levels, or one for a list at the first level), numbered \ls1, \ls2... in the
// order given.
class RtfListTableWriter
{
public:
    // The indent of one list level, in twips: the document's 40-pixel indent width.
    static constexpr int kIndentPerLevel = 600;

    // Writes nothing for no lists.
    static void write(common::RtfEmitter& rtf, const QList<const QTextList*>& lists);
};

} // namespace kestrum::text
