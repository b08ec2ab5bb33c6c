#pragma once

// Small diagrams the diagram tests share.

#include "editors/diagram/DiagramDocument.h"

#include <QString>

namespace kestrum::test {

inline diagram::DiagramBlock sampleBlock(const QString& text, double left, double top)
{
    diagram::DiagramBlock b;
    b.left = left;
    b.top = top;
    b.cells.front().text = text;
    return b;
}

inline diagram::DiagramLink sampleLink(int source, int target, const QString& text = {})
{
    diagram::DiagramLink l;
    l.source = source;
    l.target = target;
    l.cells.front().text = text;
    return l;
}

// Blocks A..D in a row, 100 apart; links A->B "1", B->C "2", C->D "3", D->A "4" (a cycle).
inline diagram::DiagramDocument sampleRing()
{
    diagram::DiagramDocument d;
    const QStringList names{"A", "B", "C", "D"};
    for (int i = 0; i < names.size(); ++i) {
        d.blocks().push_back(sampleBlock(names[i], 100.0 * i, 50));
    }
    for (int i = 0; i < 4; ++i) {
        d.links().push_back(sampleLink(i, (i + 1) % 4, QString::number(i + 1)));
    }
    return d;
}

// The texts of the links' sources and targets, "A>B B>C ...", to compare after deletions.
inline QString linkNames(const diagram::DiagramDocument& d)
{
    QStringList out;
    for (const auto& l : d.links()) {
        out << d.blocks()[std::size_t(l.source)].cells.front().text + QLatin1Char('>') +
                   d.blocks()[std::size_t(l.target)].cells.front().text;
    }
    return out.join(QLatin1Char(' '));
}

inline QString blockNames(const diagram::DiagramDocument& d)
{
    QStringList out;
    for (const auto& b : d.blocks()) {
        out << b.cells.front().text;
    }
    return out.join(QLatin1Char(' '));
}

} // namespace kestrum::test
